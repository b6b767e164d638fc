// Maps of mmCIF reflection files: a deposited one against gemmi's own transform, small and damaged
// ones for what is said of them.
#include "vxgrid/reflection/mmcif_map.h"

#include <gtest/gtest.h>
#include <stdlib.h>  // for setenv, unsetenv
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gemmi/cif.hpp>
// Its vectors come from aligned_alloc with sizes that the address sanitizer does not allow.
#define POCKETFFT_NO_VECTORS
#include <gemmi/fourier.hpp>
#include <gemmi/mtz.hpp>
#include <gemmi/refln.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "support/bad_input.h"
#include "support/messages.h"
#include "support/shared_data.h"
#include "support/temp_dir.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mtz.h"

namespace {

using namespace VXCore;
using Level = VXErrorLevel;

/// TMPDIR is a folder of the test's own while it runs.
class MmcifMap : public testing::Test {
 protected:
  void SetUp() override {
    if (const char* folder = std::getenv("TMPDIR")) before_ = folder;
    setenv("TMPDIR", temp_dir.file("").c_str(), 1);
  }
  void TearDown() override {
    if (before_)
      setenv("TMPDIR", before_->c_str(), 1);
    else
      unsetenv("TMPDIR");
  }

  /// Writes a file of this text and makes a map of it.
  bool make_map(const std::string& text, VXSkewGrid& grid,
                unsigned int maptype = VXMTZMapType::Fwt) const {
    vxgrid_test::write_file(source, text);
    return VXReadCIFGridFile(source, grid, maptype);
  }

  vxgrid_test::TempDir temp_dir;
  const std::string source = temp_dir.file("source.cif");
  const std::string converted = temp_dir.file("convert.mtz");

 private:
  std::optional<std::string> before_;
};

std::string block(const std::string& name, const std::string& columns, const std::string& rows) {
  return "data_" + name +
         "\n_cell.length_a 10\n_cell.length_b 12\n_cell.length_c 14\n_cell.angle_alpha 90\n"
         "_cell.angle_beta 90\n_cell.angle_gamma 90\n"
         "_symmetry.space_group_name_H-M 'P 21 21 21'\nloop_\n_refln.index_h\n_refln.index_k\n"
         "_refln.index_l\n" +
         columns + rows;
}

const std::string map_columns =
    "_refln.status\n_refln.F_meas_au\n_refln.pdbx_FWT\n_refln.pdbx_PHWT\n_refln.pdbx_DELFWT\n"
    "_refln.pdbx_DELPHWT\n";
const std::string map_rows =
    "1 2 1 o 10 12.5 40 2 140\n2 0 3 f 7(2) 6 0 3 180\n0 1 4 x ? 9 270 ? ?\n3 1 2 o 5 4 88 1 300\n";

double correlation(const VXSkewGrid& a, const VXSkewGrid& b) {
  double n = a.GetSize(), sa = 0, sb = 0, saa = 0, sbb = 0, sab = 0;
  const float* x = a.GetValues();
  const float* y = b.GetValues();
  for (unsigned int i = 0; i < a.GetSize(); ++i) {
    sa += x[i];
    sb += y[i];
    saa += double{x[i]} * x[i];
    sbb += double{y[i]} * y[i];
    sab += double{x[i]} * y[i];
  }
  return (n * sab - sa * sb) / std::sqrt((n * saa - sa * sa) * (n * sbb - sb * sb));
}

TEST_F(MmcifMap, of_a_deposited_file_is_that_of_an_independent_transform) {
  for (const char* file : {"5wkd-sf.cif", "5wkd_phases.mtz"})
    if (!vxgrid_test::has_shared_data(file)) GTEST_SKIP() << vxgrid_test::missing_data(file);
  const std::string path = vxgrid_test::shared_data("5wkd-sf.cif");
  gemmi::cif::Document document = gemmi::cif::read_file(path);
  const std::vector<gemmi::ReflnBlock> blocks = gemmi::as_refln_blocks(std::move(document.blocks));
  struct Case {
    unsigned int type;
    const char* amplitude;
    const char* phase;
    unsigned int grid_type;
  };
  for (const Case& c :
       {Case{VXMTZMapType::Fwt, "pdbx_FWT", "pdbx_PHWT", VXGridType::RegularMap},
        Case{VXMTZMapType::Fdelwt, "pdbx_DELFWT", "pdbx_DELPHWT", VXGridType::DifferenceMap}}) {
    VXSkewGrid grid;
    ASSERT_TRUE(VXReadCIFGridFile(path, grid, c.type)) << c.amplitude;
    EXPECT_EQ(grid.GetStringData("mtz_filename"), converted);
    EXPECT_EQ(grid.GetType(), c.grid_type);
    const gemmi::ReflnDataProxy proxy(blocks.at(0));
    const gemmi::FPhiProxy<gemmi::ReflnDataProxy> coefficients(
        proxy, proxy.column_index(c.amplitude), proxy.column_index(c.phase));
    const auto size = [](unsigned int dim) { return static_cast<int>(dim) - 1; };
    const gemmi::Grid<float> expected = gemmi::transform_f_phi_to_map<float>(
        coefficients, {{size(grid.GetXDim()), size(grid.GetYDim()), size(grid.GetZDim())}}, 0,
        true);
    const double sigma = grid.GetFloatData("SIGMA");
    ASSERT_GT(grid.GetSize(), 10000U);
    for (unsigned int i = 0; i < grid.GetSize(); ++i) {
      unsigned int x = 0, y = 0, z = 0;
      ASSERT_TRUE(grid.ElementToGridIdx(i, x, y, z));
      const float value =
          expected.get_value(static_cast<int>(x), static_cast<int>(y), static_cast<int>(z));
      ASSERT_NEAR(grid.GetValues()[i], value / sigma, 1e-3) << x << " " << y << " " << z;
    }
  }

  VXSkewGrid deposited, refined;
  ASSERT_TRUE(VXReadCIFGridFile(path, deposited, VXMTZMapType::Fwt));
  ASSERT_TRUE(VXReadMTZ(vxgrid_test::shared_data("5wkd_phases.mtz"), refined, VXMTZMapType::Fwt));
  ASSERT_EQ(deposited.GetSize(), refined.GetSize());
  EXPECT_NEAR(correlation(deposited, refined), 0.977, 0.002);
}

TEST_F(MmcifMap, goes_through_an_mtz_file_with_the_labels_that_maps_look_for) {
  VXSkewGrid grid;
  ASSERT_TRUE(make_map(block("one", map_columns, map_rows), grid, VXMTZMapType::Fdelwt));
  const gemmi::Mtz mtz = gemmi::read_mtz_file(converted);
  std::string labels;
  for (const gemmi::Mtz::Column& column : mtz.columns)
    labels += column.label + " ";
  EXPECT_EQ(labels, "H K L FreeR_flag FP FWT PHWT DELFWT PHDELWT ");
  ASSERT_EQ(mtz.history.size(), 1U);
  EXPECT_EQ(mtz.history[0], "From gemmi-cif2mtz 0.7.1");
  EXPECT_EQ(mtz.nreflections, 4);
  EXPECT_EQ(mtz.column_with_label("FP")->at(1), 7);
  EXPECT_TRUE(std::isnan(mtz.column_with_label("DELFWT")->at(2)));
}

TEST_F(MmcifMap, is_of_the_first_block_alone_and_of_gzipped_files_too) {
  VXSkewGrid alone, of_two, zipped;
  const std::string first = block("one", map_columns, map_rows);
  ASSERT_TRUE(make_map(first, alone));
  // The second one is not even looked at.
  ASSERT_TRUE(
      make_map(first + block("two", map_columns, "5 5 5 o 1 9 0 9 0\n") + "loop_ 'broken", of_two));
  EXPECT_EQ(gemmi::read_mtz_file(converted).nreflections, 4);
  const std::string gz_path = temp_dir.file("zipped.cif.gz");
  gzFile out = gzopen(gz_path.c_str(), "wb");
  gzwrite(out, first.data(), static_cast<unsigned int>(first.size()));
  gzclose(out);
  ASSERT_TRUE(VXReadCIFGridFile(gz_path, zipped, VXMTZMapType::Fwt));
  for (const VXSkewGrid* grid : {&of_two, &zipped}) {
    ASSERT_EQ(grid->GetSize(), alone.GetSize());
    EXPECT_TRUE(
        std::equal(alone.GetValues(), alone.GetValues() + alone.GetSize(), grid->GetValues()));
  }
}

TEST_F(MmcifMap, of_observed_amplitudes_alone_lacks_its_phases) {
  vxgrid_test::MessageCapture messages;
  VXSkewGrid grid;
  EXPECT_FALSE(make_map(block("one", "_refln.F_meas_au\n", "1 2 1 10\n"), grid, VXMTZMapType::Fo));
  using Message = std::pair<Level, std::string>;
  const std::vector<Message> expected = {
      {Level::Warning, "Using PHIC in place of PHI for observed map."},
      {Level::Warning, "Available columns:"},
      {Level::Error, "Requested column 'PHIC' not found."},
      {Level::Warning, "Unable to find desired columns in file " + converted},
      {Level::Warning, "Available columns:"}};
  EXPECT_EQ(messages.messages, expected);
}

TEST_F(MmcifMap, of_no_reflections_is_none) {
  vxgrid_test::MessageCapture messages;
  VXSkewGrid grid;
  EXPECT_FALSE(make_map(block("one", map_columns, ""), grid));
  ASSERT_EQ(messages.messages.size(), 1U);
  EXPECT_TRUE(messages.warned("Could not expand input map to desired maptype."));
}

TEST_F(MmcifMap, is_refused_with_gemmis_reason_and_a_second_warning) {
  const struct {
    std::string text;
    std::string reason;
  } cases[] = {
      {"data_x\n_cell.length_a 10\n", "_refln category not found in mmCIF block: x"},
      {block("x", "", "1 2 3\n"), "Data not found in block x"},
      {block("x", "_refln.F_calc\n", "1 2 a 3\n"), "not an integer: a"},
      {block("x", "_refln.F_calc\n", "1 ? 2 3\n"), "not an integer: ?"},
      {block("x", "_refln.F_calc\n", "1 2 12345678 3\n"), "index_l is out of range: 12345678"},
      {"data_z\nloop_\n_refln.index_h\n_refln.index_k\n_refln.index_l\n_refln.F_calc\n1 2 3 4\n",
       "Cannot write Mtz which has no space group: " + converted},
      {"data_u\nloop_\n_diffrn_refln.index_h\n_diffrn_refln.index_k\n_diffrn_refln.index_l\n"
       "_diffrn_refln.pdbx_image_id\n1 2 3 9e99\n",
       "pdbx_image_id is out of range: 9e99"},
      {"data_u\nloop_\n_diffrn_refln.index_h\n_diffrn_refln.index_k\n_diffrn_refln.index_l\n"
       "_diffrn_refln.diffrn_id\n1 2 3 1999999999\n",
       "diffrn_id is out of range: 1999999999"},
  };
  const auto expect_refusal = [&](const std::string& path, const std::string& reason) {
    vxgrid_test::MessageCapture messages;
    VXSkewGrid grid;
    grid.SetTitle("untouched");
    EXPECT_FALSE(VXReadCIFGridFile(path, grid, VXMTZMapType::Fwt)) << reason;
    ASSERT_EQ(messages.messages.size(), 2U) << reason;
    EXPECT_EQ(messages.messages[0].first, Level::Warning);
    EXPECT_EQ(messages.messages[0].second, "Warning: " + reason + ".");
    EXPECT_EQ(messages.messages[1].second,
              "Warning: Failed to convert and make map from the input file, " + path + ".");
    EXPECT_EQ(grid.GetTitle(), "untouched");
  };
  for (const auto& c : cases) {
    vxgrid_test::write_file(source, c.text);
    expect_refusal(source, c.reason);
  }
  // Not even when an earlier file has left its conversion behind.
  VXSkewGrid grid;
  ASSERT_TRUE(make_map(block("one", map_columns, map_rows), grid));
  for (const char* text : {"", "# a remark\n"}) {
    vxgrid_test::write_file(source, text);
    expect_refusal(source, "no data block in " + source);
  }
  expect_refusal(temp_dir.file(""), "no data block in " + temp_dir.file(""));
  const std::string missing = temp_dir.file("missing.cif");
  expect_refusal(missing, "Failed to open " + missing + ": No such file or directory");
  vxgrid_test::write_file(source, "1 2 3");
  expect_refusal(source, source + ":1:1: parse error");
}

TEST_F(MmcifMap, stands_on_a_conversion_that_gives_each_block_a_file) {
  vxgrid_test::MessageCapture messages;
  const std::string both =
      block("one", map_columns, map_rows) + block("two", "_refln.F_calc\n", "5 5 5 1\n4 4 4 ?\n");
  vxgrid_test::write_file(source, both);
  ASSERT_TRUE(vx_cif_to_mtz(source, temp_dir.file("sf.mtz"), false));
  EXPECT_EQ(gemmi::read_mtz_file(temp_dir.file("sf_one.mtz")).nreflections, 4);
  EXPECT_EQ(gemmi::read_mtz_file(temp_dir.file("sf_two.mtz")).nreflections, 2);
  EXPECT_TRUE(messages.messages.empty());

  vxgrid_test::write_file(source, block("../one", map_columns, map_rows));
  EXPECT_FALSE(vx_cif_to_mtz(source, temp_dir.file("sf.mtz"), false));
  EXPECT_TRUE(messages.warned("Warning: block name cannot be part of a file name: ../one."));
  EXPECT_FALSE(vx_cif_to_mtz(source, temp_dir.file("no/such/folder.mtz"), true));
}

TEST_F(MmcifMap, takes_files_that_are_cut_or_damaged) {
  vxgrid_test::MessageCapture messages;
  testing::internal::CaptureStderr();  // what gemmi and the inventory of columns say
  const std::string whole = block("one", map_columns, map_rows);
  VXSkewGrid grid;
  vxgrid_test::for_every_cut(whole,
                             [&](const std::string& text, std::size_t) { make_map(text, grid); });
  vxgrid_test::for_random_bytes(whole, 100, [&](const std::string& text) { make_map(text, grid); });
  testing::internal::GetCapturedStderr();
  EXPECT_TRUE(make_map(whole, grid));
}

}  // namespace
