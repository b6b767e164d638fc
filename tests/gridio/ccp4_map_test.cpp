// The image of a CCP4 map file: every word through reading and writing, and the way to grids.
#include <gtest/gtest.h>

#include <cmath>           // for sqrt
#include <gemmi/ccp4.hpp>  // for Ccp4
#include <limits>          // for numeric_limits

#include "gridio/ccp4_bytes.h"
#include "support/messages.h"
#include "support/shared_data.h"
#include "support/temp_dir.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/host/streams.h"

namespace {

using namespace vxgrid_test;
using VXCore::VXBrioGrid;
using VXCore::VXCCP4Map;
using VXCore::VXErrorLevel;
using VXCore::VXScalarGrid;

bool read(const std::string& bytes, VXCCP4Map& map) {
  VXHost::vxisstream in(bytes.data(), bytes.size());
  return map.Read(in);
}

std::string written(VXCCP4Map& map) {
  VXHost::vxosstream out;
  EXPECT_TRUE(map.Write(out));
  return out.str();
}

// A file whose words all differ, in the order of their numbers.
CCP4File file_of_distinct_words() {
  CCP4File file;
  file.symmetry = {std::string(79, 'a') + "y", std::string(79, 'b') + "z"};
  for (int word = 25; word <= 56; ++word) {
    const bool is_real = (word >= 26 && word <= 37) || word == 55;
    file.words[word] = is_real ? std::bit_cast<std::uint32_t>(static_cast<float>(word) + 0.5f)
                               : static_cast<std::uint32_t>(word);
  }
  return file;
}

TEST(CCP4Map, reads_every_word_and_writes_it_back_in_every_axis_order) {
  for (const auto& axes : axis_orders) {
    CCP4File file = file_of_distinct_words();
    file.axes = axes;
    const std::string little = file.bytes();
    file.big_endian = true;
    const std::string big = file.bytes();

    VXCCP4Map map, other;
    ASSERT_TRUE(read(little, map));
    ASSERT_TRUE(read(big, other));
    EXPECT_EQ((std::array{map.MAPC, map.MAPR, map.MAPS}), axes);
    EXPECT_EQ(map.NCSTART, file.start[static_cast<std::size_t>(axes[0] - 1)]);
    EXPECT_EQ((std::array{char(map.reserved[14]), map.labels[1][0], map.symmetry.at(1)[79]}),
              (std::array{'4', 's', 'z'}));
    ASSERT_EQ(map.GetGridSize(), 210u);
    for (int e = 0; e < 210; ++e)
      ASSERT_EQ(map.values[static_cast<std::size_t>(e)], CCP4File::real(e % 5, e / 5 % 6, e / 30));
    EXPECT_EQ(written(map), little);
    EXPECT_EQ(written(other), little);

    // The first writing took the last character of each record; a copy made now stands apart.
    VXCCP4Map copy = map;
    std::string second = little;
    second[1024 + 79] = second[1024 + 159] = '\0';
    EXPECT_EQ(written(map), second);
    copy.symmetry[0][0] = '!';
    copy.values[0] = -1;
    EXPECT_EQ(written(map), second);
  }
}

TEST(CCP4Map, turns_the_axes_of_maps_that_take_many_blocks) {
  std::vector<CCP4File> files(6);
  for (std::size_t i = 0; i < 6; ++i) {
    files[i].points = {70, 45, 41};
    files[i].axes = axis_orders[i];
  }
  // One section that is too large for a block.
  files.emplace_back();
  files.back().points = {1500, 1450, 1};
  files.back().axes = {2, 1, 3};
  for (const CCP4File& file : files) {
    const std::string bytes = file.bytes();
    VXCCP4Map map;
    ASSERT_TRUE(read(bytes, map));
    const auto [nx, ny, nz] = file.points;
    ASSERT_EQ(map.GetGridSize(), static_cast<std::size_t>(nx * ny * nz));
    int e = 0, wrong = 0;
    for (const float value : map.values) {
      wrong += value != CCP4File::real(e % nx, e / nx % ny, e / (nx * ny));
      ++e;
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_TRUE(written(map) == bytes);
  }
}

TEST(CCP4Map, keeps_one_byte_of_each_reserved_word) {
  CCP4File file;
  file.words = {{38, 0x01020304}, {52, 0xfffffff5}};
  VXCCP4Map map;
  ASSERT_TRUE(read(file.bytes(), map));
  file.words = {{38, 0x04}, {52, 0xf5}};
  EXPECT_EQ(written(map), file.bytes());
}

TEST(CCP4Map, scales_bytes_by_the_rounded_step_that_tops_out_above_the_maximum) {
  CCP4File file;
  file.mode = 0;
  file.points = {256, 1, 1};
  VXCCP4Map map;
  ASSERT_TRUE(read(file.bytes(), map));
  const auto [low, high] = std::minmax_element(map.values.begin(), map.values.end());
  EXPECT_NEAR(*low, -50.5 + 750.75 * 0.00392 * 128, 1e-3);
  EXPECT_NEAR(*high, -50.5 + 750.75 * 0.00392 * 383, 1e-3);
}

TEST(CCP4Map, says_why_it_refuses_a_file_and_which_bytes_are_left_over) {
  struct Case {
    std::map<int, std::uint32_t> words;
    const char* error;  // null for a refusal without a word
  };
  const char* const mode = "VXCCP4Map::Can only read CCP4 Maps of type 2 (Real Numbers)";
  const char* const axes = "VXCCP4Map::Map axes must correspond to 1(x) 2(y) or 3(z)";
  const char* const pair = "VXCCP4Map::indices not independent!";
  const std::vector<Case> cases{{{{4, 1}}, mode},
                                {{{4, 3}}, mode},
                                {{{4, 1}, {17, 0}}, mode},
                                {{{17, 0}}, axes},
                                {{{18, 4}}, axes},
                                {{{19, 0xffffffff}}, axes},
                                {{{18, 1}}, pair},
                                {{{1, 0xffffffff}}, nullptr},
                                {{{1, 65536}, {2, 65536}}, nullptr},
                                {{{1, 1000}, {2, 1000}, {3, 1000}}, nullptr},
                                {{{24, 0x7fffffff}}, nullptr}};
  for (const Case& c : cases) {
    CCP4File file;
    file.words = c.words;
    MessageCapture messages;
    VXCCP4Map map;
    map.SetGridSize(3);
    EXPECT_FALSE(read(file.bytes(), map));
    ASSERT_EQ(messages.messages.size(), c.error ? 1u : 0u);
    if (c.error) {
      EXPECT_TRUE(messages.has(VXErrorLevel::Error, c.error));
    }
    EXPECT_EQ(map.GetGridSize(), 0u);
  }
  // MAPS is not asked for an index; no points need no axes; surplus bytes are told and dropped.
  CCP4File file;
  file.words = {{19, 1}};
  MessageCapture messages;
  VXCCP4Map map;
  EXPECT_TRUE(read(file.bytes(), map));
  EXPECT_TRUE(messages.messages.empty());
  file.words = {{3, 0}, {18, 1}};
  EXPECT_TRUE(read(file.bytes(), map));
  EXPECT_TRUE(messages.warned(
      "Read 840 bytes more, initial bytes 0, total data bytes = 840 (should be 0)"));
  file.words.clear();
  EXPECT_TRUE(read(file.bytes() + "spare", map));
  EXPECT_TRUE(messages.warned(
      "Read 5 bytes more, initial bytes 840, total data bytes = 845 (should be 840)"));
  EXPECT_EQ(map.GetGridSize(), 210u);
  EXPECT_EQ(messages.messages.size(), 2u);
}

TEST(CCP4Map, takes_what_a_short_file_lacks_for_zero) {
  CCP4File file;
  file.points = {2, 3, 2};
  file.axes = {2, 3, 1};
  file.symmetry = {"X,Y,Z"};
  const std::string whole = file.bytes();
  for (std::size_t cut = 0; cut < whole.size(); ++cut) {
    MessageCapture quiet;
    VXCCP4Map map, padded;
    const bool is_read = read(whole.substr(0, cut), map);
    ASSERT_EQ(is_read, cut >= 73) << cut;
    if (!is_read) continue;
    const std::size_t kept = cut < 1104 ? cut : cut - cut % 4;
    std::string filled = whole.substr(0, kept);
    filled.resize(whole.size(), '\0');
    ASSERT_TRUE(read(filled, padded));
    ASSERT_EQ(written(map), written(padded)) << cut;
  }
}

TEST(CCP4Map, refuses_to_write_what_no_file_can_hold) {
  VXCCP4Map map;
  ASSERT_TRUE(read(CCP4File().bytes(), map));
  struct Case {
    void (*spoil)(VXCCP4Map&);
    const char* error;
    std::size_t bytes;
  };
  const std::vector<Case> cases{
      {[](VXCCP4Map& m) { m.SetGridSize(0); }, nullptr, 0},
      {[](VXCCP4Map& m) { m.MODE = 0; },
       "VXCCP4Map::Can only write CCP4 Maps of type 2 (Real Numbers)", 16},
      {[](VXCCP4Map& m) { m.MAPR = 1; }, "VXCCP4Map::indices not independent!", 1024},
      {[](VXCCP4Map& m) { m.SetGridSize(209); }, nullptr, 1024},
      {[](VXCCP4Map& m) { m.NC = m.NR = m.NS = 65536; }, nullptr, 1024}};
  for (const Case& c : cases) {
    VXCCP4Map spoilt = map;
    c.spoil(spoilt);
    MessageCapture messages;
    VXHost::vxosstream out;
    EXPECT_FALSE(spoilt.Write(out));
    EXPECT_EQ(out.str().size(), c.bytes);
    ASSERT_EQ(messages.messages.size(), c.error ? 1u : 0u);
    if (c.error) {
      EXPECT_TRUE(messages.has(VXErrorLevel::Error, c.error));
    }
  }
}

TEST(CCP4Map, clears_the_content_and_keeps_the_words_that_place_it) {
  VXCCP4Map map;
  ASSERT_TRUE(read(file_of_distinct_words().bytes(), map));
  map.Clear();
  EXPECT_EQ(map.GetGridSize(), 0u);
  EXPECT_TRUE(map.symmetry.empty());
  EXPECT_EQ((std::array{map.NSYMBT, map.NLABL, map.LSKFLG}), (std::array{0, 0, 0}));
  EXPECT_EQ(map.SKWMAT, (std::array<float, 9>{}));
  EXPECT_EQ(map.SKWTRN, (std::array<float, 3>{}));
  EXPECT_EQ(map.reserved, (std::array<unsigned char, 15>{}));
  EXPECT_EQ(std::string(map.labels[1].data(), 80), std::string(80, ' '));
  EXPECT_EQ((std::array{map.NC, map.NR, map.NS, map.MODE, map.NX, map.MAPS, map.ISPG}),
            (std::array{5, 6, 7, 2, 20, 3, 2}));
  EXPECT_EQ((std::array{map.ARMS, map.Gamma}), (std::array{55.5f, 107.0f}));
}

TEST(CCP4Map, reports_its_header_line_by_line) {
  VXCCP4Map map;
  CCP4File file = file_of_distinct_words();
  file.axes = {2, 3, 1};
  file.words[56] = 2;
  ASSERT_TRUE(read(file.bytes(), map));
  map.MAPS = 7;
  const std::string digest =
      "\tNumber of columns, rows, sections ...............      6    7    5\n"
      "\tMap mode ........................................    2\n"
      "\tStart and stop points on columns, rows, sections      3    8   11   17   -2    2\n"
      "\tGrid sampling on x, y, z ........................     20   24   28\n"
      "\tCell dimensions .................................  20.00000 36.00000 33.00000 80.00000 "
      "95.00000 107.00000\n"
      "\tFast, medium, slow axes .........................    Y    Z    Bad Axes\n"
      "\tMinimum density .................................    -50.50000\n"
      "\tMaximum density .................................    700.25000\n"
      "\tMean density ....................................    12.12500\n"
      "\tRms deviation from mean density .................    55.50000\n"
      "\tSpace-group .....................................      2\n"
      "\tNumber of titles ................................    2\n"
      " Labels: \n\t*first label" +
      std::string(69, ' ') + "*\n\t*second label" + std::string(68, ' ') + "*\n";
  const std::string words =
      "NC      6\nNR      7\nNS      5\nMode    2\nNCSTART 3\nNRSTART 11\nNSSTART -2\nNX      "
      "20\nNY      24\nNZ      28\nA       20.000000\nB       36.000000\nC       33.000000\nAlpha  "
      " 80.000000\nBeta    95.000000\nGamma   107.000000\nMAPC    2\nMAPR    3\nMAPS    7\nAMIN    "
      "-50.500000\nAMAX    700.250000\nAMEAN   12.125000\nISPG    2\nNSYMBT  160\nLSKFLG  "
      "25\nSKWMAT: 26.500000 27.500000 28.500000\nSKWMAT: 29.500000 30.500000 31.500000\nSKWMAT: "
      "32.500000 33.500000 34.500000\nSKWTRN: 35.5000 36.5000 37.5000\nARMS    55.500000\nNLABL   "
      "2\n===========================\n";
  for (const bool all : {false, true}) {
    MessageCapture messages;
    map.Dump(all);
    std::string lines;
    for (const auto& [level, text] : messages.messages) {
      EXPECT_EQ(level, VXErrorLevel::Info);
      lines += text + "\n";
    }
    EXPECT_EQ(lines, all ? digest + words : digest);
  }
  // A count of labels that cannot be stops at the ten there are.
  map.NLABL = std::numeric_limits<int>::max();
  MessageCapture messages;
  map.Dump(false);
  EXPECT_EQ(messages.messages.size(), 13u + 10u);
}

// A field that trilinear interpolation gives back exactly, but for rounding.
double linear_field(double x, double y, double z) {
  return 1.5 * x - 0.25 * y + 0.75 * z + 3;
}

VXScalarGrid linear_grid(std::array<int, 3> dims, std::array<float, 3> mid, float spacing) {
  VXScalarGrid grid(dims[0], dims[1], dims[2], mid[0], mid[1], mid[2], spacing, "linear");
  for (unsigned e = 0; e < grid.GetSize(); ++e) {
    float x = 0, y = 0, z = 0;
    grid.ElementToSpatialCoord(e, x, y, z);
    grid[e] = static_cast<float>(linear_field(x, y, z));
  }
  return grid;
}

TEST(CCP4Map, invents_a_cell_twice_the_size_around_a_regular_grid) {
  // The centre lies at 2.5, -2.5 and 5.75 spacings: ties go toward zero.
  const VXScalarGrid grid = linear_grid({5, 6, 7}, {1.25f, -1.25f, 2.875f}, 0.5f);
  VXCCP4Map map;
  map.LSKFLG = 1;
  map.SKWTRN[0] = 4;
  ASSERT_TRUE(VXCore::VXGridToCCP4(map, grid));
  EXPECT_EQ((std::array{map.NC, map.NR, map.NS, map.NX, map.NY, map.NZ}),
            (std::array{5, 7, 7, 10, 14, 14}));
  EXPECT_EQ((std::array{map.A, map.B, map.C}), (std::array{5.0f, 7.0f, 7.0f}));
  EXPECT_EQ((std::array{map.Alpha, map.Beta, map.Gamma}), (std::array{90.0f, 90.0f, 90.0f}));
  EXPECT_EQ((std::array{map.MODE, map.MAPC, map.MAPR, map.MAPS, map.ISPG, map.NLABL, map.LSKFLG}),
            (std::array{2, 1, 2, 3, 146, 0, 0}));
  EXPECT_EQ(map.MACHST, 0x4144);
  EXPECT_EQ(std::string(map.MAP.data(), 4), "MAP ");
  EXPECT_EQ(map.SKWTRN[0], 0.0f);
  // Centres 2, -2 and 6 spacings, less the half widths of 2, 3 and 3.
  EXPECT_EQ((std::array{map.NCSTART, map.NRSTART, map.NSSTART}), (std::array{0, -5, 3}));
  ASSERT_EQ(map.GetGridSize(), 245u);
  int inside = 0;
  for (int e = 0; e < 245; ++e) {
    const std::array<int, 3> i{e % 5, e / 5 % 7, e / 35};
    const double x = 0.5 * (i[0] + map.NCSTART), y = 0.5 * (i[1] + map.NRSTART),
                 z = 0.5 * (i[2] + map.NSSTART);
    const bool is_inside =
        std::abs(x - 1.25) <= 1.0 && std::abs(y + 1.25) <= 1.25 && std::abs(z - 2.875) <= 1.5;
    EXPECT_NEAR(map.values[static_cast<std::size_t>(e)], is_inside ? linear_field(x, y, z) : 0.0,
                1e-4);
    inside += is_inside;
  }
  EXPECT_EQ(inside, 4 * 6 * 6);
  EXPECT_EQ(map.ARMS, 1.0f);
  EXPECT_EQ(map.AMEAN, 0.0f);
  EXPECT_EQ(map.AMIN, *std::min_element(map.values.begin(), map.values.end()));
  EXPECT_EQ(map.AMAX, *std::max_element(map.values.begin(), map.values.end()));
}

TEST(CCP4Map, holds_a_regular_grid_with_a_point_at_the_centre_as_it_is) {
  const VXScalarGrid grid = linear_grid({5, 3, 7}, {1.5f, -8, 0}, 0.5f);
  VXCCP4Map from_scalar, from_brio;
  ASSERT_TRUE(VXCore::VXGridToCCP4(from_scalar, grid));
  EXPECT_TRUE(std::equal(from_scalar.values.begin(), from_scalar.values.end(), grid.GetValues()));
  // A Brio grid without a space group goes the same way.
  ASSERT_TRUE(VXCore::VXGridToCCP4(from_brio, VXBrioGrid(grid)));
  EXPECT_EQ(from_brio.ISPG, 146);
}

VXBrioGrid crystal_grid() {
  VXBrioGrid grid;
  VXHost::vxisstream in(CCP4File().bytes());
  EXPECT_TRUE(VXCore::VXReadGrid(in, grid, VXCore::VXGridFileType::CCP4));
  return grid;
}

TEST(CCP4Map, keeps_a_crystal_grid_as_it_stands) {
  const VXBrioGrid grid = crystal_grid();
  TempDir folder;
  const std::string name = folder.file("crystal.ccp4");
  VXCore::VXSkewGrid skew;
  skew.GetImpl().GetImpl() = grid;
  ASSERT_TRUE(VXCore::VXWriteGrid(name, skew));

  gemmi::Ccp4<float> other;
  other.read_ccp4_file(name);
  EXPECT_EQ(other.header_3i32(1), (std::array{5, 6, 7}));
  EXPECT_EQ(other.header_3i32(5), (std::array{-2, 3, 11}));
  EXPECT_EQ((std::array{other.header_i32(10), other.header_i32(23), other.header_i32(54)}),
            (std::array{28, 2, 0x4144}));
  EXPECT_EQ((std::array{other.header_float(20), other.header_float(22), other.header_float(55)}),
            (std::array{-50.5f, 12.125f, 33.5f}));
  EXPECT_TRUE(other.grid.unit_cell.approx(gemmi::UnitCell(20, 36, 33, 80, 95, 107), 1e-5));
  EXPECT_TRUE(std::equal(other.grid.data.begin(), other.grid.data.end(), grid.GetValues()));

  VXBrioGrid regular;
  VXScalarGrid scalar;
  ASSERT_TRUE(VXCore::VXReadGrid(name, regular, true) && VXCore::VXReadGrid(name, scalar));
  EXPECT_TRUE(regular.IsRegular() && scalar.GetSpacing() == grid.GetSpacing() &&
              scalar.HasData("AMEAN"));

  VXCCP4Map map;
  VXBrioGrid back;
  ASSERT_TRUE(VXCore::VXGridToCCP4(map, grid));
  ASSERT_TRUE(VXCore::VXCCP4ToGrid(back, map));
  EXPECT_TRUE(std::equal(grid.GetValues(), grid.GetValues() + 210, back.GetValues()));
  EXPECT_EQ(back.GetTitle(), "ccp4 map");
  EXPECT_EQ(back.GetSpaceGroup(), 2u);
  EXPECT_FALSE(back.HasData("AMIN"));
}

TEST(CCP4Map, writes_a_normalised_grid_on_its_old_scale_when_it_knows_the_statistics) {
  VXBrioGrid grid = crystal_grid();
  const float first = grid.GetValues()[0];
  grid.SetBoolData("vx_no_norm", true);
  grid.SetFloatData("SIGMA", 0.1f);
  VXCCP4Map map;
  {
    MessageCapture messages(VXErrorLevel::Verbose);
    ASSERT_TRUE(VXCore::VXGridToCCP4(map, grid));
    EXPECT_TRUE(
        messages.has(VXErrorLevel::Verbose, "Unnormalizing by sigma 0.1000000014901161194"));
  }
  EXPECT_EQ(map.values[0], static_cast<float>(static_cast<double>(first) * 0.1f));
  EXPECT_EQ((std::array{map.AMIN, map.AMAX, map.AMEAN, map.ARMS}),
            (std::array{-50.5f, 700.25f, 12.125f, 33.5f}));

  // One statistic short, the values go out as they stand.
  grid.DeleteData("AMEAN");
  ASSERT_TRUE(VXCore::VXGridToCCP4(map, grid));
  EXPECT_EQ(map.values[0], first);
  EXPECT_EQ((std::array{map.AMIN, map.AMAX, map.AMEAN, map.ARMS}),
            (std::array{CCP4File::real(0, 5, 0), CCP4File::real(4, 0, 6), 0.0f, 1.0f}));

  grid.SetBoolData("vx_no_norm", false);
  grid.SetFloatData("SIGMA", 0.0f);
  MessageCapture messages;
  map.NX = 0;
  EXPECT_FALSE(VXCore::VXGridToCCP4(map, grid));
  EXPECT_TRUE(messages.warned(
      "VXWriteCCP4: cached SIGMA value is 0.0, grid values will be zero, failing..."));
  EXPECT_EQ(map.NX, 20);
}

TEST(CCP4Map, says_which_file_it_cannot_make) {
  const MessageCapture messages;
  const std::string name = "/nonexistent/folder/out.map";
  EXPECT_FALSE(VXCore::VXWriteCCP4Grid(name, crystal_grid()));
  EXPECT_FALSE(VXCore::VXWriteCCP4Grid(name, linear_grid({3, 3, 3}, {0, 0, 0}, 1)));
  EXPECT_EQ(messages.messages.size(), 2u);
  EXPECT_TRUE(messages.warned("Unable to open file for grid writing: " + name));
}

TEST(CCP4Map, refuses_to_make_a_grid_of_what_is_no_map) {
  VXCCP4Map map;
  ASSERT_TRUE(read(CCP4File().bytes(), map));
  VXBrioGrid grid;
  map.MAPS = 1;
  EXPECT_FALSE(VXCore::VXCCP4ToGrid(grid, map));
  map.MAPS = 3;
  map.SetGridSize(209);
  EXPECT_FALSE(VXCore::VXCCP4ToGrid(grid, map));
  // Odd geometry has no index; nothing else is wrong with it.
  VXScalarGrid flat(3, 3, 3, 1e30f, 0, 0, 0.0f, "");
  ASSERT_TRUE(VXCore::VXGridToCCP4(map, flat));
  EXPECT_EQ(map.NCSTART, 0);
}

TEST(CCP4Map, rewrites_real_maps_without_a_change_but_for_the_words_it_narrows) {
  for (const char* name : {"5i55_tiny.ccp4", "1jzv.ccp4", "EMD-3197.map", "iota_yzx.ccp4"}) {
    if (!has_shared_data(name)) GTEST_SKIP() << missing_data(name);
    const std::string bytes = read_file(shared_data(name));
    VXCCP4Map map;
    ASSERT_TRUE(read(bytes, map));
    std::string expected = bytes;
    for (std::size_t word = 38; word <= 52; ++word)
      expected.replace(4 * word - 3, 3, 3, '\0');
    EXPECT_EQ(written(map), expected) << name;
  }
}

}  // namespace
