#include <gtest/gtest.h>

#include <zlib.h>     // for gzopen
#include <algorithm>  // for minmax_element
#include <cmath>      // for sqrt

// Its vectors come from aligned_alloc with sizes that the address sanitizer does not allow.
#define POCKETFFT_NO_VECTORS
#include <gemmi/fourier.hpp>  // for transform_f_phi_to_map

#include "reflection/mtz_maker.h"
#include "support/messages.h"
#include "support/shared_data.h"
#include "support/temp_dir.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mtz.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/reflection.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;
using vxgrid_test::MtzContent;
using Level = VXErrorLevel;

// A file with these columns, "label:type", and a few reflections.
std::string bytes_with(const std::vector<std::string>& columns) {
  MtzContent content;
  content.hkl = {{1, 2, 3}, {0, 2, 4}, {3, 1, 2}, {2, 0, 1}};
  float value = 20;
  for (const std::string& column : columns) {
    const std::size_t colon = column.rfind(':');
    content.columns.push_back(
        {column.substr(0, colon), column[colon + 1], {value, value / 2, value / 3, value / 4}});
    value += 17;
  }
  return vxgrid_test::mtz_bytes(content);
}

const std::vector<std::string> all_columns = {"FP:F",      "SIGFP:Q", "FC:F",   "PHIC:P",
                                              "PHI:P",     "FWT:F",   "PHWT:P", "DELFWT:F",
                                              "PHDELWT:P", "FREE:I",  "I:J",    "SIGI:M"};

class MtzFile : public testing::Test {
 protected:
  std::string write(const std::vector<std::string>& columns, const std::string& name = "a.mtz") {
    return write_bytes(bytes_with(columns), name);
  }
  std::string write_bytes(const std::string& bytes, const std::string& name = "a.mtz") {
    vxgrid_test::write_file(dir_.file(name), bytes);
    return dir_.file(name);
  }

  vxgrid_test::TempDir dir_;
};

TEST_F(MtzFile, sorts_its_labels_by_column_type) {
  const VXMTZ mtz(write({"A:F", "B:G", "C:J", "D:K", "E:P", "F:L", "G:M", "H2:Q", "I:I", "J:W"}));
  using Labels = std::vector<std::string>;
  EXPECT_TRUE(mtz.IsValid());
  EXPECT_EQ(mtz.GetAmplitudes(), (Labels{"A", "B", "C", "D"}));
  EXPECT_EQ(mtz.GetPhases(), (Labels{"E"}));
  EXPECT_EQ(mtz.GetSigmaA(), (Labels{"F", "G", "H2"}));
  EXPECT_EQ(mtz.GetFreeR(), (Labels{"I"}));
  EXPECT_TRUE(mtz.FindColumn("H"));
  EXPECT_FALSE(mtz.FindColumn("a"));
}

TEST_F(MtzFile, is_valid_with_the_right_extension_and_columns_only) {
  MessageCapture messages;
  const std::string bytes = bytes_with(all_columns);
  const std::string packed = dir_.file("packed.mtz.gz");
  gzFile gz = gzopen(packed.c_str(), "wb");
  gzwrite(gz, bytes.data(), static_cast<unsigned int>(bytes.size()));
  gzclose(gz);
  EXPECT_TRUE(VXMTZ(packed).IsValid());
  EXPECT_FALSE(VXMTZ(write_bytes(bytes, "a.MTZ")).IsValid());
  EXPECT_FALSE(VXMTZ(write_bytes(bytes, "mtz")).IsValid());
  EXPECT_FALSE(VXMTZ(write_bytes("X" + bytes, "bad.mtz")).IsValid());
  EXPECT_FALSE(VXMTZ(write_bytes("", "empty.mtz")).IsValid());
  EXPECT_TRUE(messages.messages.empty());
  const std::string missing = dir_.file("missing.mtz");
  EXPECT_FALSE(VXMTZ(missing).IsValid());
  EXPECT_TRUE(messages.has(Level::Error, "Unable to open file " + missing));
  messages.messages.clear();
  VXSkewGrid grid;
  EXPECT_FALSE(VXReadMTZ(dir_.file("a.MTZ"), grid, VXMTZMapType::Fwt));
  EXPECT_TRUE(messages.messages.empty());
  EXPECT_TRUE(VXReadMTZ(packed, grid, VXMTZMapType::Fwt));
}

struct AutomaticCase {
  std::vector<std::string> columns;
  bool result;
  // Fc, Phic, Fobs, SigmaA, Fdelwt, Phidelwt, Fwt, Phiwt
  std::vector<std::string> labels;
};

TEST_F(MtzFile, chooses_columns_by_the_labels_of_refinement_programs) {
  const std::vector<std::string> defaults = {"FC",     "PHIC",    "FP",  "SIGF",
                                             "DELFWT", "PHDELWT", "FWT", "PHWT"};
  const auto with = [&defaults](std::vector<std::pair<std::size_t, std::string>> changes) {
    std::vector<std::string> labels = defaults;
    for (const auto& [field, label] : changes)
      labels[field] = label;
    return labels;
  };
  const std::vector<AutomaticCase> cases = {
      {{"FC:F", "PHIC:P"}, false, defaults},
      {{"F-model:F", "PHIF-model:P"}, false, with({{0, "F-model"}, {1, "PHIF-model"}})},
      {{"F-model:F", "FC:F"}, false, defaults},
      {{"FP:F", "F:F"}, false, with({{2, "F"}})},
      {{"F-obs:F"}, false, with({{0, "F-obs"}})},
      {{"FC:F", "F-obs:F"}, false, with({{0, "F-obs"}})},
      {{"FP:F", "F-obs:F"}, false, defaults},
      {{"SIGFP:Q"}, false, with({{3, "SIGFP"}})},
      {{"SIGF-Obs:Q"}, false, with({{3, "SIGF-Obs"}})},
      {{"SIGFP:Q", "SIGF:Q"}, false, defaults},
      {{"FWT:F", "PHWT:P", "DELFWT:F"}, false, defaults},
      {{"FWT:F", "PHWT:P", "DELFWT:F", "PHDELWT:P"}, true, defaults},
      {{"2FOFCWT:F", "PH2FOFCWT:P", "FOFCWT:F", "PHFOFCWT:P"},
       true,
       with({{4, "FOFCWT"}, {5, "PHFOFCWT"}, {6, "2FOFCWT"}, {7, "PH2FOFCWT"}})}};
  for (const AutomaticCase& c : cases) {
    SCOPED_TRACE(c.columns.front());
    VXMTZColumns cols;
    EXPECT_EQ(VXMTZ(write(c.columns)).AutoGetColumns(cols), c.result);
    EXPECT_EQ((std::vector<std::string>{cols.GetFc(), cols.GetPhic(), cols.GetFobs(),
                                        cols.GetSigmaA(), cols.GetFdelwt(), cols.GetPhidelwt(),
                                        cols.GetFwt(), cols.GetPhiwt()}),
              c.labels);
    EXPECT_EQ(cols.GetPhi(), "");
  }
}

TEST_F(MtzFile, reports_what_columns_there_are) {
  MessageCapture messages;
  const VXMTZ mtz(write({"FP:F"}));
  vxosstream out;
  mtz.PrintColumns(out);
  EXPECT_EQ(out.str(), "Available Columns:\n\tH\n\tK\n\tL\n\tFP\n");
  EXPECT_TRUE(messages.warned("Available columns:"));
  EXPECT_TRUE(mtz.FindColumns({}));
  EXPECT_TRUE(mtz.FindColumns({"FP", "H"}));
  testing::internal::CaptureStderr();
  EXPECT_FALSE(mtz.FindColumns({"FP", "fp", "X"}));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), out.str());
  EXPECT_TRUE(messages.has(Level::Error, "Requested column 'fp' not found."));
  EXPECT_FALSE(messages.has(Level::Error, "Requested column 'X' not found."));
}

using Messages = std::vector<std::pair<Level, std::string>>;

TEST_F(MtzFile, tells_the_columns_it_chose) {
  MessageCapture messages(Level::Verbose);
  VXSkewGrid grid;
  VXMTZColumns cols;
  EXPECT_TRUE(VXMTZ(write(all_columns)).MakeMap(grid, VXMTZMapType::Fwt, cols, true, true));
  EXPECT_EQ(messages.messages, (Messages{{Level::Verbose, "Automatically chosen MTZ Columns"},
                                         {Level::Verbose, "MTZ Column\tFWT\tFWT"},
                                         {Level::Verbose, "MTZ Column\tPHIFWT\tPHWT"},
                                         {Level::Verbose, "MTZ Column\tFDELWT\tDELFWT"},
                                         {Level::Verbose, "MTZ Column\tPHIDELWT\tPHDELWT"},
                                         {Level::Verbose, "MTZ Column\tFC\tFC"},
                                         {Level::Verbose, "MTZ Column\tPHIC\tPHIC"},
                                         {Level::Verbose, "MTZ Column\tF\tFP"},
                                         {Level::Verbose, "MTZ Column\tPHI\t"},
                                         {Level::Verbose, "MTZ Column\tSIGF\tSIGFP"},
                                         {Level::Verbose, " Fwt:   Using column FWT"},
                                         {Level::Verbose, " Phiwt: Using column PHWT"},
                                         {Level::Info, "MTZ File should be okay for reading."}}));
  EXPECT_FALSE(grid);
}

TEST_F(MtzFile, looks_for_the_columns_of_each_map_type) {
  const VXMTZ mtz(write(all_columns));
  const Messages observed = {{Level::Verbose, " FObs: Using column FP"},
                             {Level::Verbose, " Fc:   Using column FC"},
                             {Level::Verbose, " Phic: Using column PHIC"}};
  const Messages calculated(observed.begin() + 1, observed.end());
  Messages sigmaa = observed;
  sigmaa.emplace_back(Level::Verbose, " SigmaA: Using column SIGFP");
  const std::vector<std::pair<unsigned int, Messages>> expected = {
      {0,
       {{Level::Warning, "Using PHIC in place of PHI for observed map."},
        {Level::Verbose, " FObs:   Using column FP"},
        {Level::Verbose, " Phi:    Using column PHIC"}}},
      {1, calculated},
      {2, observed},
      {3, observed},
      {4, observed},
      {5, observed},
      {6, sigmaa},
      {7, sigmaa},
      {11,
       {{Level::Verbose, " Fdelwt:   Using column DELFWT"},
        {Level::Verbose, " Phidelwt: Using column PHDELWT"}}},
      {12, calculated}};
  VXSkewGrid grid;
  for (const auto& [type, lines] : expected) {
    MessageCapture messages(Level::Verbose);
    VXMTZColumns cols;
    cols.SetSigmaA("SIGFP");
    EXPECT_TRUE(mtz.MakeMap(grid, type, cols, false, true));
    ASSERT_EQ(messages.messages.size(), lines.size() + 1) << type;
    messages.messages.pop_back();
    EXPECT_EQ(messages.messages, lines) << type;
    EXPECT_EQ(cols.GetPhi(), type == 0 ? "PHIC" : "");
  }
  for (unsigned int type : {8U, 9U, 13U, 99U}) {
    MessageCapture messages;
    VXMTZColumns cols;
    EXPECT_FALSE(mtz.MakeMap(grid, type, cols, false, true));
    EXPECT_EQ(messages.messages, (Messages{{Level::Error, "Unknown map type"}}));
  }
}

TEST_F(MtzFile, says_why_it_makes_no_map) {
  VXSkewGrid grid;
  grid.SetTitle("untouched");
  {
    MessageCapture messages;
    for (unsigned int type : {3U, 4U, 5U, 7U, 8U, 9U, 12U, 13U}) {
      messages.messages.clear();
      EXPECT_FALSE(VXMTZ(write(all_columns)).MakeMap(grid, type));
      EXPECT_EQ(messages.messages,
                (Messages{{Level::Error,
                           "Maptype must be one of Fdelwt, Fwt, 2Fo-Fc, 2Fo-FcSigmaA or Fc for "
                           "automatically opening an mtz file."}}));
    }
  }
  {
    MessageCapture messages;
    EXPECT_FALSE(VXReadMTZ(write({"FC:F", "PHIC:P"}), grid, VXMTZMapType::Fc));
    EXPECT_EQ(messages.messages,
              (Messages{{Level::Warning, "Could not find appropriate columns for auto opening."}}));
  }
  {
    MessageCapture messages;
    VXMTZColumns cols;
    const std::string file = write({"FC:F"});
    testing::internal::CaptureStderr();
    EXPECT_FALSE(VXMTZ(file).MakeMap(grid, VXMTZMapType::Fc, cols, false, false));
    const std::string inventory = "Available Columns:\n\tH\n\tK\n\tL\n\tFC\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), inventory + inventory);
    EXPECT_EQ(messages.messages,
              (Messages{{Level::Warning, "Available columns:"},
                        {Level::Error, "Requested column 'PHIC' not found."},
                        {Level::Warning, "Unable to find desired columns in file " + file},
                        {Level::Warning, "Available columns:"}}));
  }
  const Messages not_expanded = {
      {Level::Warning, "Could not expand input map to desired maptype."}};
  {
    MessageCapture messages;  // no HLA: the SigmaA types have no amplitudes
    EXPECT_FALSE(VXReadMTZ(write(all_columns), grid, VXMTZMapType::TwoFoFcSigmaA));
    EXPECT_EQ(messages.messages, not_expanded);
  }
  {
    MessageCapture messages;
    const std::string no_cell = vxgrid_test::with_record(bytes_with(all_columns), "CELL", "");
    EXPECT_FALSE(VXReadMTZ(write_bytes(no_cell), grid, VXMTZMapType::Fwt));
    EXPECT_EQ(messages.messages, not_expanded);
  }
  {
    MessageCapture messages;  // the reader's failures have no message
    const std::string no_l =
        vxgrid_test::with_record(bytes_with(all_columns), "COLUMN L", "COLUMN M H");
    EXPECT_FALSE(VXReadMTZ(write_bytes(no_l), grid, VXMTZMapType::Fwt));
    EXPECT_TRUE(messages.messages.empty());
  }
  EXPECT_EQ(grid.GetTitle(), "untouched");
}

TEST_F(MtzFile, turns_a_header_position_of_no_sense_into_a_false_result) {
  // The text records stand where the position says, but that is inside of the first block.
  std::string bytes = bytes_with(all_columns);
  const std::string records = bytes.substr(vxgrid_test::header_start(bytes));
  bytes = vxgrid_test::with_header_words(bytes.substr(0, 16) + records, 5);
  const VXMTZ mtz(write_bytes(bytes));
  ASSERT_TRUE(mtz.IsValid());
  MessageCapture messages;
  VXSkewGrid grid;
  EXPECT_FALSE(mtz.MakeMap(grid, VXMTZMapType::Fwt));
  EXPECT_TRUE(messages.messages.empty());
}

TEST_F(MtzFile, makes_a_map_on_sigma_scale_with_the_statistics_of_what_it_was) {
  const std::string file = write(all_columns);
  VXSkewGrid grid;
  grid.SetIntData("FObs", 1);
  ASSERT_TRUE(VXReadMTZ(file, grid, VXMTZMapType::Fwt));

  // The same map, by hand.
  VXReflection set;
  vxifstream stream(file);
  ASSERT_TRUE(VXReadReflectionMTZ(stream, set, VXMTZColumnNames()) && set.Expand());
  VXSkewGrid raw;
  ASSERT_TRUE(set.MakeMap(raw, VXMTZMapType::Fwt));
  const unsigned int n = raw.GetSize();
  const float* values = raw.GetValues();
  double sum = 0;
  for (unsigned int i = 0; i < n; ++i)
    sum += values[i];
  double squares = 0;
  for (unsigned int i = 0; i < n; ++i)
    squares += (values[i] - sum / n) * (values[i] - sum / n);
  const double sigma = std::sqrt(squares / (n - 1));
  const auto [low, high] = std::minmax_element(values, values + n);

  const VXBrioGrid& brio = grid.GetImpl().GetImpl();
  EXPECT_EQ(brio.GetFloatData("AMIN"), *low);
  EXPECT_EQ(brio.GetFloatData("AMAX"), *high);
  EXPECT_FLOAT_EQ(brio.GetFloatData("AMEAN"), static_cast<float>(sum / n));
  EXPECT_FLOAT_EQ(brio.GetFloatData("ARMS"), static_cast<float>(sigma));
  EXPECT_FLOAT_EQ(grid.GetFloatData("SIGMA"), static_cast<float>(sigma));
  EXPECT_TRUE(brio.GetBoolData("vx_no_norm") && grid.GetBoolData("vx_no_norm"));
  EXPECT_FALSE(grid.HasData("ARMS"));
  ASSERT_EQ(grid.GetSize(), n);
  for (unsigned int i = 0; i < n; ++i)
    ASSERT_NEAR(grid.GetValues()[i], values[i] / sigma, 1e-6 * std::fabs(values[i] / sigma));

  EXPECT_EQ(grid.GetStringData("mtz_filename"), file);
  EXPECT_EQ(grid.GetStringData("fobs"), "FP|FC|FWT|DELFWT|I");
  EXPECT_EQ(grid.GetStringData("sigma"), "SIGFP|SIGI");
  EXPECT_EQ(grid.GetStringData("rfree"), "FREE");
  EXPECT_FALSE(grid.HasData("FObs"));
  EXPECT_EQ(grid.GetSpaceGroup(), 19U);
  EXPECT_EQ(grid.GetDoubleData("resolution"), set.GetResolution());
}

TEST_F(MtzFile, marks_difference_maps) {
  const VXMTZ mtz(write(all_columns));
  for (unsigned int type : {0U, 1U, 2U, 3U, 4U, 5U, 10U, 11U, 12U}) {
    MessageCapture silence(Level::Error);
    VXSkewGrid grid;
    VXMTZColumns cols;
    ASSERT_TRUE(mtz.MakeMap(grid, type, cols, false, false)) << type;
    const bool is_difference = type == 3 || type == 11 || type == 12;
    EXPECT_EQ(grid.GetType(), is_difference ? VXGridType::DifferenceMap : VXGridType::RegularMap);
    unsigned int made = 0;
    grid.GetData("MapType", made);
    EXPECT_EQ(made, type == 12 ? VXMTZMapType::Fc : type);
  }
}

TEST_F(MtzFile, serves_one_map_after_another_and_copies_by_opening_the_file_again) {
  VXMTZ mtz(write({"FP:F"}, "other.mtz"));
  {
    const VXMTZ first(write(all_columns));
    mtz = first;
    const VXMTZ second(first);
    EXPECT_TRUE(second.FindColumn("FWT"));
  }
  VXSkewGrid once, twice;
  ASSERT_TRUE(mtz.MakeMap(once, VXMTZMapType::Fwt) && mtz.MakeMap(twice, VXMTZMapType::Fwt));
  ASSERT_EQ(once.GetSize(), twice.GetSize());
  EXPECT_TRUE(std::equal(once.GetValues(), once.GetValues() + once.GetSize(), twice.GetValues()));
}

TEST(DepositedMtz, gives_the_map_of_an_independent_transform) {
  const std::string path = vxgrid_test::shared_data("5wkd_phases.mtz");
  if (!vxgrid_test::has_shared_data("5wkd_phases.mtz"))
    GTEST_SKIP() << vxgrid_test::missing_data("5wkd_phases.mtz");
  const gemmi::Mtz mtz = gemmi::read_mtz_file(path);
  struct Case {
    unsigned int type;
    const char* amplitude;
    const char* phase;
  };
  for (const Case& c :
       {Case{VXMTZMapType::Fwt, "FWT", "PHWT"}, Case{VXMTZMapType::Fdelwt, "DELFWT", "PHDELWT"},
        Case{VXMTZMapType::Fc, "FC", "PHIC"}}) {
    VXSkewGrid grid;
    ASSERT_TRUE(VXReadMTZ(path, grid, c.type)) << c.amplitude;
    // 2.5 times the largest indices 26, 2, 8 plus 1, made even.
    ASSERT_EQ(grid.GetXDim(), 69U);
    ASSERT_EQ(grid.GetYDim(), 9U);
    ASSERT_EQ(grid.GetZDim(), 23U);
    const gemmi::MtzDataProxy proxy{mtz};
    const auto coefficients = gemmi::FPhiProxy<gemmi::MtzDataProxy>(
        proxy, proxy.column_index(c.amplitude), proxy.column_index(c.phase));
    const gemmi::Grid<float> expected =
        gemmi::transform_f_phi_to_map<float>(coefficients, {{68, 8, 22}}, 0, true);
    const double sigma = grid.GetFloatData("SIGMA");
    for (unsigned int i = 0; i < grid.GetSize(); ++i) {
      unsigned int x = 0, y = 0, z = 0;
      ASSERT_TRUE(grid.ElementToGridIdx(i, x, y, z));
      const float value =
          expected.get_value(static_cast<int>(x), static_cast<int>(y), static_cast<int>(z));
      ASSERT_NEAR(grid.GetValues()[i], value / sigma, 1e-3) << x << " " << y << " " << z;
    }
  }
}

}  // namespace
