// Grids of every class through every format, by stream and by name, and what is said when not.
#include "vxgrid/gridio/dispatch.h"

#include <gtest/gtest.h>

#include <cmath>       // for abs
#include <filesystem>  // for exists, file_size
#include <string>      // for string

#include "support/bad_input.h"
#include "support/grid_probes.h"
#include "support/messages.h"
#include "support/temp_dir.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/host/streams.h"

using namespace VXCore;
using vxgrid_test::MessageCapture;
using vxgrid_test::place_of;
using vxgrid_test::TempDir;
using Level = VXErrorLevel;

namespace {

// A field that trilinear interpolation gives back everywhere inside.
float linear(float x, float y, float z) {
  return 1.0f + 2.0f * x - 0.5f * y + 0.25f * z;
}

VXScalarGrid linear_grid(int xdim, int ydim, int zdim, float spacing) {
  VXScalarGrid grid(xdim, ydim, zdim, 1.0f, -2.0f, 0.5f, spacing, "linear");
  for (unsigned int i = 0; i < grid.GetSize(); ++i) {
    const auto [x, y, z] = place_of(grid, i);
    grid[i] = linear(x, y, z);
  }
  return grid;
}

// The largest distance from the linear field over all points, infinite when there are none.
template <class Grid>
float worst_error(const Grid& grid) {
  float worst = grid.GetSize() > 0 ? 0.0f : 1e30f;
  for (unsigned int i = 0; i < grid.GetSize(); ++i) {
    const auto [x, y, z] = place_of(grid, i);
    worst = std::max(worst, std::abs(grid.GetValues()[i] - linear(x, y, z)));
  }
  return worst;
}

TEST(Dispatch, a_regular_grid_keeps_its_field_through_every_format_and_class) {
  const TempDir folder;
  const VXScalarGrid grid = linear_grid(7, 9, 11, 0.5f);
  for (const char* name :
       {"a.grd", "a.agd", "a.map", "a.MRC", "a.grd.gz", "a.map.gz", "a.agd.gz"}) {
    const std::string path = folder.file(name);
    ASSERT_TRUE(VXWriteGrid(path, grid)) << name;
    VXScalarGrid scalar;
    VXBrioGrid brio, regular;
    VXSkewGrid skew;
    ASSERT_TRUE(VXReadGrid(path, scalar) && VXReadGrid(path, brio) && VXReadGrid(path, skew))
        << name;
    ASSERT_TRUE(VXReadGrid(path, regular, true)) << name;
    EXPECT_EQ(brio.GetSize(), grid.GetSize()) << name;
    EXPECT_LT(worst_error(brio), 1e-4f) << name;
    EXPECT_LT(worst_error(skew), 1e-4f) << name;
    EXPECT_EQ(scalar.GetSpacing(), 0.5f) << name;
    EXPECT_EQ(regular.GetSpacing(), 0.5f) << name;
  }
}

TEST(Dispatch, a_grasp_map_is_stretched_over_a_grid_that_has_more_points) {
  const TempDir folder;
  const std::string path = folder.file("a.phi");
  ASSERT_TRUE(VXWriteGrid(path, linear_grid(100, 20, 20, 0.5f)));
  VXBrioGrid back;
  ASSERT_TRUE(VXReadGrid(path, back));
  EXPECT_EQ(back.GetSize(), 65u * 65u * 65u);
  EXPECT_NEAR(back.GetSpacing(), 100.0f * 0.5f / 65.0f, 1e-6f);
  // Where the source has no values the map has zeros; within, the field.
  unsigned int inside = 0;
  for (unsigned int i = 0; i < back.GetSize(); ++i) {
    if (back.GetValues()[i] == 0.0f) continue;
    const auto [x, y, z] = place_of(back, i);
    ++inside;
    EXPECT_NEAR(back.GetValues()[i], linear(x, y, z), 1e-3f);
  }
  EXPECT_GT(inside, 8000u);

  ASSERT_TRUE(VXWriteGrid(path, linear_grid(65, 65, 65, 0.25f)));
  ASSERT_TRUE(VXReadGrid(path, back));
  EXPECT_EQ(back.GetSpacing(), 0.25f);
  EXPECT_LT(worst_error(back), 1e-4f);
}

TEST(Dispatch, streams_take_every_class_in_the_format_given) {
  const VXScalarGrid scalar = linear_grid(5, 5, 5, 0.5f);
  const VXSkewGrid skew(scalar);
  for (const unsigned int type : {2u, 3u, 5u}) {
    VXHost::vxosstream from_scalar, from_skew;
    ASSERT_TRUE(VXWriteGrid(from_scalar, scalar, type));
    ASSERT_TRUE(VXWriteGrid(from_skew, skew, type));
    VXScalarGrid scalar_back;
    VXSkewGrid skew_back;
    VXHost::vxisstream in(from_skew.str());
    ASSERT_TRUE(VXReadGrid(in, scalar_back, type));
    in.set(from_scalar.str());
    ASSERT_TRUE(VXReadGrid(in, skew_back, type));
    EXPECT_LT(worst_error(skew_back), 1e-4f) << type;
    // The title of an Ascii file stays behind.
    EXPECT_EQ(skew_back.AsRegularGrid().IsTitleSet(), type != VXGridFileType::Ascii);
  }
}

TEST(Dispatch, failures_of_names_are_told) {
  const TempDir folder;
  const std::string empty_map = folder.file("empty.map"), text = folder.file("file.txt");
  const std::string missing = folder.file("missing.map");
  for (const std::string& name : {empty_map, text})
    vxgrid_test::write_file(name, "");

  const auto heard_by = [](auto&& read) {
    const MessageCapture heard;
    EXPECT_FALSE(read());
    std::string all;
    for (const auto& [level, message] : heard.messages)
      all += (level == Level::Error ? "Error " : "Warning ") + message + "\n";
    return all;
  };
  VXBrioGrid brio;
  VXSkewGrid skew;
  VXScalarGrid scalar;
  const std::string unreadable =
      "Warning File " + text + " does not contain a readable grid file.\n";
  EXPECT_EQ(heard_by([&] { return VXReadGrid(text, brio); }), unreadable);
  EXPECT_EQ(heard_by([&] { return VXReadGrid(text, skew); }), unreadable);
  EXPECT_EQ(heard_by([&] { return VXReadGrid(text, scalar); }), unreadable);
  const std::string unopened = "Warning Unable to open grid file: " + missing + ".\n";
  EXPECT_EQ(heard_by([&] { return VXReadGrid(missing, brio, true); }), unopened);
  EXPECT_EQ(heard_by([&] { return VXReadGrid(missing, skew); }), unopened);
  EXPECT_EQ(heard_by([&] { return VXReadGrid(empty_map, brio); }),
            "Warning Unable to open grid file: " + empty_map + ".\n");
  // An empty file is a stream that opened, to all but the Brio grid.
  const std::string of_format = heard_by([&] { return VXReadGrid(empty_map, skew); });
  EXPECT_NE(of_format.find("Warning Problem reading CCP4 grid file\n"), std::string::npos);

  VXHost::vxisstream in("");
  EXPECT_EQ(heard_by([&] { return VXReadGrid(in, brio, 9u); }),
            "Error File does not contain a readable grid file\n");
  const std::string legacy =
      heard_by([&] { return vx_read_grid_object(missing.c_str(), brio) != 0; });
  EXPECT_EQ(legacy.find("Unable to open"), std::string::npos);
  EXPECT_EQ(heard_by([&] { return vx_read_grid_object(nullptr, brio) != 0; }),
            "Error File does not contain a readable grid file\n");
}

TEST(Dispatch, a_file_is_made_before_its_format_is_judged) {
  const TempDir folder;
  const VXScalarGrid grid = linear_grid(3, 3, 3, 1.0f);
  for (const auto& [name, format] :
       {std::pair{"a.txt", "UNDEFINED"}, {"a.xplor", "XPLOR Map"}, {"noext", "UNDEFINED"}}) {
    const MessageCapture heard;
    const std::string path = folder.file(name);
    EXPECT_FALSE(VXWriteGrid(path, grid));
    ASSERT_EQ(heard.messages.size(), 1u);
    EXPECT_TRUE(heard.has(
        Level::Error, std::string("Error: ") + format + " is not a writeable grid file format"));
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(std::filesystem::file_size(path), 0u);
  }
  const std::string nowhere = folder.file("no/such/folder.grd");
  const MessageCapture heard;
  EXPECT_FALSE(VXWriteGrid(nowhere, VXBrioGrid(grid)));
  EXPECT_FALSE(VXWriteGrid(nowhere, VXSkewGrid(grid)));
  EXPECT_EQ(vx_write_grid_object(nowhere.c_str(), VXBrioGrid(grid)), 0);
  ASSERT_EQ(heard.messages.size(), 3u);
  EXPECT_TRUE(heard.warned("Unable to open file for grid writing: " + nowhere));
  const std::string path = folder.file("legacy.grd");
  EXPECT_EQ(vx_write_grid_object(path.c_str(), VXBrioGrid(grid)), 1);
  VXBrioGrid back;
  EXPECT_EQ(vx_read_grid_object(path.c_str(), back), 1);
  EXPECT_LT(worst_error(back), 1e-5f);
}

TEST(Dispatch, a_full_disk_is_a_failure) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  const TempDir folder;
  const std::string path = folder.file("full.grd");
  std::filesystem::create_symlink("/dev/full", path);
  EXPECT_FALSE(VXWriteGrid(path, linear_grid(5, 5, 5, 1.0f)));
}

// Through gzip the length of a file is not known; a claim must not become memory.
TEST(Dispatch, a_compressed_file_that_claims_far_too_much_is_refused) {
  const TempDir folder;
  using vxgrid_test::bytes_of;
  std::string huge_grd;
  for (const int word : {0, 0, 0, 0, 0, 1, 1000, 1, 1000, 1, 2000, 1})
    huge_grd += bytes_of(word);
  huge_grd += std::string(4000, 'v');
  const std::string huge_ascii =
      "Title:\nMid: 0 0 0\nDim: 1000 1000 2000\nSpacing: 1\nValues:\n1\n2\n";
  for (const auto& [name, bytes] : {std::pair{"a.grd.gz", huge_grd}, {"a.agd.gz", huge_ascii}}) {
    const std::string path = folder.file(name);
    VXHost::vxofstream out(path);
    out << bytes;
    ASSERT_TRUE(out.close());
    const MessageCapture heard;
    VXBrioGrid grid;
    EXPECT_FALSE(VXReadGrid(path, grid)) << name;
    EXPECT_EQ(grid.GetSize(), 0u) << name;
  }
}

}  // namespace
