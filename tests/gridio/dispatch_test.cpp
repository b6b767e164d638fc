// Grids of every class through every format, by stream and by name, and what is said when not.
#include "vxgrid/gridio/dispatch.h"

#include <gtest/gtest.h>

#include <cmath>       // for abs, sin
#include <filesystem>  // for exists, file_size
#include <string>      // for string

#include "support/bad_input.h"
#include "support/messages.h"
#include "support/temp_dir.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/host/streams.h"

using namespace VXCore;
using vxgrid_test::MessageCapture;
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
    float x = 0, y = 0, z = 0;
    grid.ElementToSpatialCoord(i, x, y, z);
    grid[i] = linear(x, y, z);
  }
  return grid;
}

VXSkewGrid crystal_grid() {
  VXSkewGrid grid;
  grid.SetDim(7, 8, 9);
  grid.SetMid(0.0f, 0.0f, 0.0f);
  grid.SetUnitCell(20.0f, 21.0f, 25.0f, 85.0f, 95.0f, 105.0f, 40, 42, 50);
  grid.SetSpaceGroup(1);
  for (unsigned int i = 0; i < grid.GetSize(); ++i) {
    grid.GetValues()[i] = std::sin(static_cast<float>(i));
  }
  return grid;
}

// The largest distance from the linear field over all points, infinite when there are none.
template <class Grid>
float worst_error(const Grid& grid) {
  float worst = grid.GetSize() > 0 ? 0.0f : 1e30f;
  for (unsigned int i = 0; i < grid.GetSize(); ++i) {
    float x = 0, y = 0, z = 0;
    grid.ElementToSpatialCoord(i, x, y, z);
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
    ASSERT_TRUE(VXReadGrid(path, scalar)) << name;
    ASSERT_TRUE(VXReadGrid(path, brio)) << name;
    ASSERT_TRUE(VXReadGrid(path, regular, true)) << name;
    ASSERT_TRUE(VXReadGrid(path, skew)) << name;
    EXPECT_EQ(brio.GetSize(), grid.GetSize()) << name;
    EXPECT_LT(worst_error(brio), 1e-4f) << name;
    EXPECT_LT(worst_error(skew), 1e-4f) << name;
    EXPECT_EQ(scalar.GetSpacing(), 0.5f) << name;
    EXPECT_EQ(regular.GetSpacing(), 0.5f) << name;
  }
}

TEST(Dispatch, a_crystal_grid_keeps_its_cell_and_values_through_the_formats_that_know_cells) {
  const TempDir folder;
  const VXSkewGrid grid = crystal_grid();
  for (const char* name : {"a.grd", "a.ccp4"}) {
    const std::string path = folder.file(name);
    ASSERT_TRUE(VXWriteGrid(path, grid)) << name;
    VXSkewGrid back;
    ASSERT_TRUE(VXReadGrid(path, back)) << name;
    EXPECT_EQ(back.GetSpaceGroup(), 1u);
    ASSERT_EQ(back.GetSize(), grid.GetSize());
    for (unsigned int i = 0; i < grid.GetSize(); ++i) {
      ASSERT_EQ(back.GetValues()[i], grid.GetValues()[i]);
    }
    EXPECT_EQ(back.HasData("AMEAN"), std::string(name) == "a.ccp4");
    EXPECT_FALSE(back.IsRegular());
    VXBrioGrid regular;
    ASSERT_TRUE(VXReadGrid(path, regular, true));
    EXPECT_TRUE(regular.IsRegular());
    VXScalarGrid scalar;
    ASSERT_TRUE(VXReadGrid(path, scalar));
    EXPECT_EQ(scalar.GetSpacing(), grid.GetSpacing());
    EXPECT_EQ(scalar.HasData("AMEAN"), std::string(name) == "a.ccp4");
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
    float x = 0, y = 0, z = 0;
    back.ElementToSpatialCoord(i, x, y, z);
    ++inside;
    EXPECT_NEAR(back.GetValues()[i], linear(x, y, z), 1e-3f);
  }
  EXPECT_GT(inside, 8000u);

  ASSERT_TRUE(VXWriteGrid(path, linear_grid(65, 65, 65, 0.25f)));
  ASSERT_TRUE(VXReadGrid(path, back));
  EXPECT_EQ(back.GetSpacing(), 0.25f);
  EXPECT_LT(worst_error(back), 1e-4f);
}

TEST(Dispatch, the_title_of_an_ascii_file_stays_behind) {
  const VXScalarGrid grid = linear_grid(3, 4, 5, 0.5f);
  VXHost::vxosstream out;
  ASSERT_TRUE(VXWriteGrid(out, grid, VXGridFileType::Ascii));
  VXBrioGrid brio;
  brio.SetFloatsMultiple(2);
  VXHost::vxisstream in(out.str());
  ASSERT_TRUE(VXReadGrid(in, brio, VXGridFileType::Ascii));
  EXPECT_FALSE(brio.IsTitleSet());
  EXPECT_EQ(brio.GetFloatsMultiple(), 2);
  EXPECT_LT(worst_error(brio), 1e-5f);
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
  }
}

TEST(Dispatch, failures_of_names_are_told) {
  const TempDir folder;
  const auto touch = [&](const char* name) {
    vxgrid_test::write_file(folder.file(name), "");
    return folder.file(name);
  };
  const std::string empty_map = touch("empty.map");
  const std::string text = touch("file.txt");
  const std::string missing = folder.file("missing.map");

  const auto heard_by = [](auto&& read) {
    const MessageCapture heard;
    EXPECT_FALSE(read());
    std::string all;
    for (const auto& [level, message] : heard.messages) {
      all += (level == Level::Error ? "Error " : "Warning ") + message + "\n";
    }
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
  EXPECT_EQ(heard_by([&] {
              return vx_read_grid_object(missing.c_str(), brio) != 0;
            }).find("Unable to open"),
            std::string::npos);
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
  const std::string huge_grd = bytes_of(0) + bytes_of(0) + bytes_of(0) + bytes_of(0) + bytes_of(0) +
                               bytes_of(1) + bytes_of(1000) + bytes_of(1) + bytes_of(1000) +
                               bytes_of(1) + bytes_of(2000) + bytes_of(1) + std::string(4000, 'v');
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
