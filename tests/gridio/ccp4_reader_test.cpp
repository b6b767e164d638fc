// CCP4 maps read into grids: every layout of the file, real maps, short and hostile files.
#include <gtest/gtest.h>

#include <algorithm>           // for min
#include <cmath>               // for floor
#include <gemmi/ccp4.hpp>      // for Ccp4
#include <gemmi/unitcell.hpp>  // for UnitCell
#include <limits>              // for numeric_limits
#include <memory>              // for unique_ptr
#include <random>              // for mt19937

#include "gridio/ccp4_bytes.h"
#include "support/grid_probes.h"
#include "support/messages.h"
#include "support/shared_data.h"
#include "support/temp_dir.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/gridmath/regularize.h"
#include "vxgrid/toolkit/host/streams.h"

namespace {

using namespace vxgrid_test;
using VXCore::VXBrioGrid;
using VXCore::VXErrorLevel;

constexpr const char* refusal = "Problem reading CCP4 grid file";

bool read(const std::string& bytes, VXBrioGrid& grid) {
  VXHost::vxisstream in(bytes.data(), bytes.size());
  return VXCore::VXReadGrid(in, grid, VXCore::VXGridFileType::CCP4);
}

TEST(CCP4Reader, gives_the_same_grid_for_every_axis_order_byte_order_and_mode) {
  int checked = 0;
  for (const auto& axes : axis_orders) {
    for (const bool big_endian : {false, true}) {
      for (const int mode : {0, 2}) {
        CCP4File file;
        file.axes = axes;
        file.big_endian = big_endian;
        file.mode = mode;
        file.symmetry = {"X,Y,Z", "-X,Y,-Z"};
        VXBrioGrid grid;
        grid.SetFloatData("stale", 1.0f);
        ASSERT_TRUE(read(file.bytes(), grid));
        SCOPED_TRACE(testing::Message() << axes[0] << axes[1] << axes[2] << " mode " << mode);

        ASSERT_EQ(dims_of(grid), (std::array{5u, 6u, 7u}));
        const auto values = values_of(grid);
        const gemmi::UnitCell cell(20, 36, 33, 80, 95, 107);
        for (unsigned e = 0; e < grid.GetSize(); ++e) {
          const int x = static_cast<int>(e % 5), y = static_cast<int>(e / 5 % 6),
                    z = static_cast<int>(e / 30);
          if (mode == 2) {
            ASSERT_EQ(values[e], CCP4File::real(x, y, z));
          } else {
            const double scaled = 750.75 * 0.00392 * (CCP4File::byte(x, y, z) + 128.0) - 50.5;
            ASSERT_NEAR(values[e], scaled, 1e-3);
          }
          const auto [px, py, pz] = place_of(grid, e);
          const auto at = cell.orthogonalize({(x - 2) / 20.0, (y + 3) / 24.0, (z + 11) / 28.0});
          ASSERT_LT(at.dist({px, py, pz}), 1e-4);
        }
        EXPECT_EQ(grid.GetTitle(), "ccp4 map");
        EXPECT_EQ(grid.GetSpaceGroup(), 2u);
        EXPECT_EQ(grid.GetReentrant(), 7u);
        EXPECT_EQ((std::array{grid.GetFloatData("AMIN"), grid.GetFloatData("AMAX"),
                              grid.GetFloatData("AMEAN"), grid.GetFloatData("ARMS")}),
                  (std::array{-50.5f, 700.25f, 12.125f, 33.5f}));
        EXPECT_FALSE(grid.HasData("stale"));
        ++checked;
      }
    }
  }
  EXPECT_EQ(checked, 24);
}

TEST(CCP4Reader, closes_each_axis_that_covers_one_period_with_its_first_plane) {
  for (unsigned closed = 0; closed < 8; ++closed) {
    CCP4File file;
    file.axes = {2, 3, 1};
    for (unsigned i = 0; i < 3; ++i) {
      if (closed & (1u << i)) file.sampling[i] = file.points[i];
    }
    VXBrioGrid grid;
    ASSERT_TRUE(read(file.bytes(), grid));
    const auto [nx, ny, nz] = dims_of(grid);
    EXPECT_EQ((std::array{nx, ny, nz}),
              (std::array{5 + (closed & 1u), 6 + (closed >> 1 & 1u), 7 + (closed >> 2 & 1u)}));
    const auto values = values_of(grid);
    for (unsigned e = 0; e < grid.GetSize(); ++e) {
      const unsigned x = e % nx % 5, y = e / nx % ny % 6, z = e / (nx * ny) % 7;
      ASSERT_EQ(values[e],
                CCP4File::real(static_cast<int>(x), static_cast<int>(y), static_cast<int>(z)));
    }
    // The first point stays at its place in the cell when planes are added behind it.
    const auto [x, y, z] = place_of(grid, 0);
    const auto first = gemmi::UnitCell(20, 36, 33, 80, 95, 107)
                           .orthogonalize({-2.0 / file.sampling[0], 3.0 / file.sampling[1],
                                           11.0 / file.sampling[2]});
    EXPECT_LT(first.dist({x, y, z}), 1e-4);
  }
  // A map that has its closing plane already, and one that is short of a period, stay as they are.
  for (const int sampling : {4, 6}) {
    CCP4File file;
    file.sampling[0] = sampling;
    VXBrioGrid grid;
    ASSERT_TRUE(read(file.bytes(), grid));
    EXPECT_EQ(grid.GetXDim(), 5u);
  }
}

struct RealMap {
  const char* file;
  std::array<unsigned, 3> dims;  // along x, y, z, closing planes included
  std::array<int, 3> points;     // of the file along x, y, z
  unsigned group;
};

class RealMaps : public testing::TestWithParam<RealMap> {};

TEST_P(RealMaps, read_as_gemmi_reads_them) {
  const RealMap& map = GetParam();
  if (!has_shared_data(map.file)) GTEST_SKIP() << missing_data(map.file);
  VXBrioGrid grid;
  ASSERT_TRUE(VXCore::VXReadGrid(shared_data(map.file), grid));
  gemmi::Ccp4<float> other;
  other.read_ccp4_file(shared_data(map.file));

  const auto dims = dims_of(grid);
  EXPECT_EQ(dims, map.dims);
  EXPECT_EQ(grid.GetSpaceGroup(), map.group);
  const auto cell = cell_of(grid);
  std::array<unsigned, 3> sampling{};
  grid.GetUnitSpacing(sampling[0], sampling[1], sampling[2]);
  for (int i = 0; i < 6; ++i)
    EXPECT_EQ(cell[static_cast<std::size_t>(i)], other.header_float(11 + i));
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(sampling[static_cast<std::size_t>(i)],
              static_cast<unsigned>(other.header_i32(8 + i)));
  for (const auto& [tag, word] : {std::pair{"AMIN", 20}, {"AMAX", 21}, {"AMEAN", 22}, {"ARMS", 55}})
    EXPECT_EQ(grid.GetFloatData(tag), other.header_float(word));

  const auto position = other.axis_positions();
  const auto start = other.header_3i32(5);
  const float* values = grid.GetValues();
  ASSERT_NE(values, nullptr);
  for (unsigned e = 0; e < grid.GetSize(); ++e) {
    const std::array<unsigned, 3> at{e % dims[0], e / dims[0] % dims[1], e / dims[0] / dims[1]};
    std::array<int, 3> file{};
    gemmi::Fractional fractional;
    for (std::size_t i = 0; i < 3; ++i) {
      const auto of_file = static_cast<std::size_t>(position[i]);
      file[of_file] = static_cast<int>(at[i]) % map.points[i];
      fractional.at(static_cast<int>(i)) =
          (static_cast<int>(at[i]) + start[of_file]) / static_cast<double>(sampling[i]);
    }
    ASSERT_EQ(values[e], other.grid.get_value_q(file[0], file[1], file[2]));
    if (e % 1013 != 0) continue;
    const auto [x, y, z] = place_of(grid, e);
    EXPECT_LT(other.grid.unit_cell.orthogonalize(fractional).dist({x, y, z}), 2e-3);
  }

  VXCore::VXSkewGrid skew;
  ASSERT_TRUE(VXCore::VXReadGrid(shared_data(map.file), skew));
  EXPECT_EQ(skew.GetFloatData("AMAX"), other.header_float(21));
  EXPECT_TRUE(std::equal(values, values + grid.GetSize(), skew.GetValues()));

  // A grid without orientation takes the values of the periodic crystal.
  VXCore::VXScalarGrid regular;
  VXBrioGrid expected;
  ASSERT_TRUE(VXCore::VXReadGrid(shared_data(map.file), regular));
  ASSERT_TRUE(VXCore::VXMakeRegularGrid(expected, grid, 0.0f));
  EXPECT_EQ(regular.GetSpacing(), grid.GetSpacing());
  EXPECT_EQ(regular.GetFloatData("AMAX"), other.header_float(21));
  EXPECT_EQ(values_of(regular), values_of(expected));
  ASSERT_TRUE(VXCore::VXReadGrid(shared_data(map.file), grid, true));
  EXPECT_TRUE(grid.IsRegular() && values_of(grid) == values_of(expected));
}

INSTANTIATE_TEST_SUITE_P(Deposited, RealMaps,
                         testing::Values(RealMap{"5i55_tiny.ccp4", {6, 8, 10}, {6, 8, 10}, 4},
                                         RealMap{"1jzv.ccp4", {76, 96, 70}, {76, 96, 70}, 92},
                                         RealMap{"EMD-3197.map", {21, 21, 21}, {20, 20, 20}, 1},
                                         RealMap{"iota_yzx.ccp4", {4, 1, 2}, {4, 1, 2}, 1}));

TEST(CCP4Reader, takes_what_a_short_file_lacks_for_zero) {
  for (const bool big_endian : {false, true}) {
    CCP4File file;
    file.points = {2, 3, 2};
    file.axes = {3, 1, 2};
    file.big_endian = big_endian;
    file.symmetry = {"X,Y,Z"};
    const std::string whole = file.bytes();
    const std::size_t data = 1024 + 80;
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
      std::string padded = whole;
      const std::size_t kept = cut < data ? cut : cut - (cut - data) % 4;
      std::fill(padded.begin() + static_cast<std::ptrdiff_t>(kept), padded.end(), '\0');
      MessageCapture quiet;
      VXBrioGrid from_short, from_padded;
      const bool is_read = read(whole.substr(0, cut), from_short);
      ASSERT_EQ(is_read, read(padded, from_padded)) << cut;
      ASSERT_EQ(values_of(from_short), values_of(from_padded)) << cut;
      ASSERT_TRUE(cut >= 73 || !is_read) << cut;
      ASSERT_TRUE(cut < 76 || is_read) << cut;
    }
  }
}

TEST(CCP4Reader, refuses_headers_that_cannot_be_true) {
  struct Case {
    const char* what;
    std::map<int, std::uint32_t> words;
    const char* warning;  // beside the one of VXReadGrid, null for none
  };
  const auto negative = [](int value) { return static_cast<std::uint32_t>(value); };
  const std::vector<Case> cases{
      {"mode 1", {{4, 1}}, nullptr},
      {"mode 2 and more", {{4, 6}}, nullptr},
      {"no axis", {{17, 0}}, nullptr},
      {"a fourth axis", {{19, 4}}, nullptr},
      {"an axis twice", {{18, 1}}, nullptr},
      {"no columns", {{1, 0}}, "Invalid CCP4 grid dimensions: 0 6 7"},
      {"negative rows", {{2, negative(-6)}}, "Invalid CCP4 grid dimensions: 5 -6 7"},
      {"too many in a section",
       {{1, 100000}, {2, 100000}},
       "Grid dimensions too large for memory size: 100000 x 100000"},
      {"too many sections",
       {{1, 50000}, {2, 40000}, {3, 3}},
       "Grid dimensions too large for memory size: 2000000000 x 3"},
      {"far more than arrives", {{1, 1000}, {2, 1000}, {3, 1000}}, nullptr},
      {"far more than arrives, turned",
       {{1, 1000}, {2, 1000}, {3, 1000}, {17, 3}, {19, 1}},
       nullptr},
      {"far more bytes than arrive", {{1, 1000}, {2, 1000}, {3, 1000}, {4, 0}}, nullptr},
  };
  for (const Case& c : cases) {
    CCP4File file;
    file.words = c.words;
    MessageCapture messages;
    VXBrioGrid grid;
    EXPECT_FALSE(read(file.bytes(), grid)) << c.what;
    ASSERT_EQ(messages.messages.size(), c.warning ? 2u : 1u) << c.what;
    EXPECT_EQ(messages.messages[0].second, c.warning ? c.warning : refusal);
    EXPECT_TRUE(messages.warned(refusal)) << c.what;
  }
}

TEST(CCP4Reader, bears_odd_words_that_do_not_stop_it) {
  const auto nan = std::bit_cast<std::uint32_t>(std::numeric_limits<float>::quiet_NaN());
  const std::vector<std::map<int, std::uint32_t>> oddities{{{5, 0x7fffffff}, {6, 0x80000000}},
                                                           {{8, 0}, {9, 0}, {10, 0}},
                                                           {{8, 0xffffffff}},
                                                           {{11, nan}, {14, nan}},
                                                           {{16, 0}},
                                                           {{24, 0x80000000}},
                                                           {{24, 79}},
                                                           {{53, 0}, {54, 0}},
                                                           {{56, 0x7fffffff}}};
  for (const auto& words : oddities) {
    CCP4File file;
    file.words = words;
    VXBrioGrid grid;
    EXPECT_TRUE(read(file.bytes(), grid)) << words.begin()->first;
    EXPECT_EQ(values_of(grid).at(209), CCP4File::real(4, 5, 6));
  }
  // A claim of symmetry records that swallows the rest of the file leaves no values.
  CCP4File file;
  file.words = {{24, 0x7fffffff}};
  VXBrioGrid grid;
  EXPECT_TRUE(read(file.bytes(), grid));
  EXPECT_EQ(values_of(grid), std::vector<float>(210, 0.0f));
}

TEST(CCP4Reader, tells_the_byte_order_by_the_number_of_columns_alone) {
  // 128 columns of the other byte order look like the most negative number of all.
  CCP4File file;
  file.points = {128, 1, 2};
  file.big_endian = true;
  VXBrioGrid grid;
  ASSERT_TRUE(read(file.bytes(), grid));
  EXPECT_EQ(grid.GetXDim(), 128u);
  EXPECT_EQ(grid.GetValues()[255], CCP4File::real(127, 0, 1));
}

TEST(CCP4Reader, takes_memory_for_a_compressed_map_only_once_enough_of_it_has_come) {
  TempDir folder;
  const std::string name = folder.file("large.map.gz");
  // 70 MB of values, beyond what is granted unseen, turned so that each section spreads over all.
  CCP4File file;
  file.points = {260, 260, 260};
  file.sampling = {300, 300, 300};
  file.axes = {3, 2, 1};
  file.mode = 0;
  file.words = {{20, 0}, {21, std::bit_cast<std::uint32_t>(255.0f)}};
  std::string bytes = file.header();
  std::string section;
  for (int y = 0; y < 260; ++y)
    section += std::string(260, static_cast<char>(y % 7));
  const auto write = [&](int sections) {
    const std::unique_ptr<VXHost::vxostream> out(VXHost::VXOpenOStream(name.c_str()));
    out->write(bytes.data(), bytes.size());
    for (int x = 0; x < sections; ++x) {
      section[0] = static_cast<char>(x);
      out->write(section.data(), section.size());
    }
  };
  write(260);
  VXBrioGrid grid;
  ASSERT_TRUE(VXCore::VXReadGrid(name, grid));
  const float* values = grid.GetValues();
  const auto expected = [](int byte) {
    return 255.0f * 0.00392f * (static_cast<float>(byte) + 128.0f);
  };
  for (unsigned x : {0u, 1u, 127u, 259u}) {
    EXPECT_EQ(values[x], expected(static_cast<int>(x & 255)));
    EXPECT_EQ(values[x + 260 * (5 + 260 * 200)], expected(5));
  }
  write(10);
  MessageCapture messages;
  EXPECT_FALSE(VXCore::VXReadGrid(name, grid));
  EXPECT_TRUE(messages.warned(refusal));
}

TEST(CCP4Reader, survives_random_bytes) {
  MessageCapture quiet;
  std::mt19937 random(20240501);
  int accepted = 0, nonzero = 0;
  for (int round = 0; round < 2000; ++round) {
    CCP4File file;
    file.axes = axis_orders[random() % 6];
    file.mode = random() % 2 ? 2 : 0;
    std::string bytes = file.bytes();
    bytes.resize(random() % (bytes.size() + 1));
    const std::size_t changes = random() % 12;
    for (std::size_t i = 0; i < changes && !bytes.empty(); ++i)
      bytes[random() % std::min<std::size_t>(bytes.size(), 100)] = static_cast<char>(random());
    VXBrioGrid grid;
    if (!read(bytes, grid)) continue;
    ++accepted;
    if (grid.GetSize() > 100000) continue;
    for (const float value : values_of(grid)) {  // every one, for the sanitizers
      if (value != 0) ++nonzero;
    }
  }
  EXPECT_GT(accepted, 100);
  EXPECT_GT(nonzero, 1000);
}

}  // namespace
