// XPLOR maps in both forms, made here line by line and record by record.
#include <gtest/gtest.h>

#include <array>               // for array
#include <cstdio>              // for snprintf
#include <gemmi/unitcell.hpp>  // for UnitCell
#include <string>              // for string
#include <tuple>               // for tuple
#include <utility>             // for pair
#include <vector>              // for vector

#include "support/bad_input.h"
#include "support/grid_probes.h"
#include "support/messages.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/host/streams.h"

using namespace VXCore;
using vxgrid_test::bytes_of;
using vxgrid_test::cell_of;
using vxgrid_test::dims_of;
using vxgrid_test::MessageCapture;
using Level = VXErrorLevel;

namespace {

struct Map {
  std::array<int, 3> intervals{8, 10, 12};
  std::array<int, 3> first{1, 2, 3};
  std::array<int, 3> last{3, 5, 4};
  std::array<double, 6> cell{16.0, 20.5, 25.25, 80.0, 95.0, 107.0};
  std::string order = "ZYX";

  static float value(int x, int y, int z) {
    return static_cast<float>(x) + 0.5f * static_cast<float>(y) - 100.0f * static_cast<float>(z);
  }

  /// Calls `section(index)` at each step of the slowest axis, then `point(value)`.
  template <class Section, class Point, class End>
  void walk(Section section, Point point, End end) const {
    const auto axis = [&](std::size_t i) { return static_cast<std::size_t>(order[i] - 'X'); };
    std::array<int, 3> p{};
    for (p[axis(0)] = first[axis(0)]; p[axis(0)] <= last[axis(0)]; ++p[axis(0)]) {
      section(p[axis(0)]);
      for (p[axis(1)] = first[axis(1)]; p[axis(1)] <= last[axis(1)]; ++p[axis(1)]) {
        for (p[axis(2)] = first[axis(2)]; p[axis(2)] <= last[axis(2)]; ++p[axis(2)])
          point(value(p[0], p[1], p[2]));
      }
      end();
    }
  }

  std::string text() const {
    char line[128];
    std::string all = "\n       2 !NTITLE\n REMARKS one 1 2 3\n REMARKS two\n";
    for (std::size_t i = 0; i < 3; ++i) {
      std::snprintf(line, sizeof line, "%8d%8d%8d", intervals[i], first[i], last[i]);
      all += line;
    }
    all += "\n";
    for (const double edge : cell) {
      std::snprintf(line, sizeof line, "%12.5E", edge);
      all += line;
    }
    all += "\n" + order + "\n";
    int in_line = 0;
    const auto end_line = [&] {
      if (in_line > 0) all += "\n";
      in_line = 0;
    };
    walk(
        [&](int index) {
          std::snprintf(line, sizeof line, "%8d\n", index);
          all += line;
        },
        [&](float value) {
          std::snprintf(line, sizeof line, "%12.5E", static_cast<double>(value));
          all += line;
          if (++in_line == 6) end_line();
        },
        end_line);
    return all + "   -9999\n";
  }

  std::string binary() const {
    std::string all = bytes_of(84) + bytes_of(1) + std::string(80, 't') + std::string(8, 'r');
    for (std::size_t i = 0; i < 3; ++i)
      all += bytes_of(intervals[i]) + bytes_of(first[i]) + bytes_of(last[i]);
    all += std::string(8, 'r');
    for (const double edge : cell)
      all += bytes_of(edge);
    all += std::string(8, 'r') + order + std::string(4, 'r');
    walk([&](int) { all += std::string(16, 's'); },
         [&](float value) { all += bytes_of(static_cast<double>(value)); },
         [&] { all += std::string(4, 's'); });
    return all;
  }
};

Map map_from_zero() {
  Map map;
  map.first = {0, 0, 0};
  map.last = {2, 3, 4};
  return map;
}

bool read(const std::string& bytes, VXBrioGrid& grid) {
  VXHost::vxisstream in(bytes);
  return VXReadGrid(in, grid, VXGridFileType::XPLOR);
}

void expect_values(const VXBrioGrid& grid, const Map& map) {
  for (std::size_t i = 0; i < 3; ++i)
    ASSERT_EQ(dims_of(grid)[i], static_cast<unsigned int>(map.last[i] - map.first[i] + 1));
  const float* at = grid.GetValues();
  for (int z = map.first[2]; z <= map.last[2]; ++z) {
    for (int y = map.first[1]; y <= map.last[1]; ++y) {
      for (int x = map.first[0]; x <= map.last[0]; ++x)
        EXPECT_EQ(*at++, Map::value(x, y, z)) << x << ' ' << y << ' ' << z;
    }
  }
}

TEST(XplorMap, every_order_of_axes_gives_the_same_crystal_grid) {
  for (const std::string order : {"ZYX", "ZXY", "YXZ", "YZX", "XZY", "XYZ"}) {
    const MessageCapture heard;
    Map map, from_zero = map_from_zero();
    map.order = from_zero.order = order;
    VXBrioGrid grid;
    ASSERT_TRUE(read(from_zero.binary(), grid)) << order;
    expect_values(grid, from_zero);
    EXPECT_EQ(vxgrid_test::place_of(grid, 0), (std::array<float, 3>{}));
    ASSERT_TRUE(read(map.text(), grid)) << order;
    expect_values(grid, map);
    EXPECT_EQ(grid.GetTitle(), "xplor");
    EXPECT_EQ(grid.GetReentrant(), 7u);
    EXPECT_EQ(grid.GetSpacing(), 2.0f);
    EXPECT_EQ(cell_of(grid), (std::array{16.0f, 20.5f, 25.25f, 80.0f, 95.0f, 107.0f}));
    EXPECT_TRUE(heard.has(Level::Info, " runs from: x=1 to 3, available= 8"));
    // The first point lies at index (1, 2, 3) of the cell, a skewed place.
    const auto place = vxgrid_test::place_of(grid, 0);
    const auto at =
        gemmi::UnitCell(16, 20.5, 25.25, 80, 95, 107).orthogonalize({1 / 8.0, 2 / 10.0, 3 / 12.0});
    EXPECT_LT(at.dist({place[0], place[1], place[2]}), 1e-5);
  }
}

// Element (x, y, z) of a map that does not start at 0 goes by its absolute index.
TEST(XplorBinary, a_map_off_the_origin_lands_elsewhere_and_never_outside) {
  const MessageCapture heard;
  Map map;
  VXBrioGrid grid;
  ASSERT_TRUE(read(map.binary(), grid));
  ASSERT_EQ(grid.GetSize(), 24u);
  for (unsigned int i = 0; i < 24; ++i)
    EXPECT_EQ(grid.GetValues()[i], 0.0f);

  map.first = {-1, 0, 0};
  map.last = {1, 3, 1};
  ASSERT_TRUE(read(map.binary(), grid));
  EXPECT_EQ(grid.GetValues()[0], Map::value(0, 0, 0));
  EXPECT_EQ(grid.GetValues()[2], Map::value(-1, 1, 0));
  EXPECT_EQ(grid.GetValues()[23], 0.0f);
}

TEST(XplorMap, a_whole_period_gets_its_closing_plane) {
  const MessageCapture heard;
  Map map = map_from_zero();
  map.intervals = {3, 10, 12};
  for (const std::string& bytes : {map.text(), map.binary()}) {
    VXBrioGrid grid;
    ASSERT_TRUE(read(bytes, grid));
    ASSERT_EQ(dims_of(grid), (std::array{4u, 4u, 5u}));
    for (unsigned int row = 0; row < 20; ++row)
      EXPECT_EQ(grid.GetValues()[4 * row + 3], grid.GetValues()[4 * row]);
    EXPECT_TRUE(heard.has(Level::Info, "filling out x direction by one"));
  }
}

TEST(XplorText, cell_fields_that_touch_are_told_apart_by_their_columns) {
  const MessageCapture heard;
  Map map;
  std::string text = map.text();
  const std::size_t at = text.find(" 1.60000E+01");
  text.replace(at, 36, "16.000000000 20.5000000025.250000000");
  VXBrioGrid grid;
  ASSERT_TRUE(read(text, grid));
  EXPECT_EQ(cell_of(grid)[1], 20.5f);
  EXPECT_EQ(cell_of(grid)[2], 25.25f);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

TEST(XplorMap, what_is_wrong_is_told) {
  const std::string text = Map().text();
  const std::string extents =
      "       8       1       3      10       2       5      12       3       4";
  const auto with_extents = [&](const std::string& line) { return replaced(text, extents, line); };
  const std::tuple<std::string, Level, std::string> cases[] = {
      {"", Level::Warning, "Failed to retrieve number of title lines"},
      {"no numbers\nat all\n", Level::Warning, "Failed to retrieve number of title lines"},
      {replaced(text, "ZYX", "zyx"), Level::Warning, "Could not find the ordering specification"},
      {replaced(text, " 1.60000E+01", " 1.6000xE+01"), Level::Warning,
       "Problem reading XPLOR grid file"},
      {replaced(text, " 1.60000E+01", ""), Level::Warning, "Problem reading XPLOR grid file"},
      {replaced(text, "-2.98000E+02", "-2.98x00E+02"), Level::Warning,
       "Unable to convert string to number while reading XPLOR file: -2.98x00E+02"},
      {text.substr(0, text.size() - 40), Level::Warning,
       "Unable to convert string to number while reading XPLOR file: "},
      {with_extents("8 5 3 10 2 5 12 3 4"), Level::Warning,
       "Invalid X dimensions for XPLOR file reading: 4 < 5"},
      {with_extents("8 1 3 10 5 2 12 3 4"), Level::Warning,
       "Invalid Y dimensions for XPLOR file reading: 3 < 5"},
      {with_extents("8 1 3 10 2 5 12 3 1"), Level::Warning,
       "Invalid Z dimensions for XPLOR file reading: 2 < 3"},
      {with_extents("8 1 0 10 2 5 12 3 4"), Level::Warning, "Problem reading XPLOR grid file"},
      {with_extents("8 1 99999 10 1 99999 12 3 4"), Level::Warning,
       "Grid dimensions too large for memory size: 99999 x 99999"},
      {with_extents("8 -2147483648 2147483647 10 2 5 12 3 4"), Level::Warning,
       "Grid dimensions too large for memory size: 4294967296 x 4"},
      {with_extents("8 1 1000 10 1 1000 12 1 2000"), Level::Warning,
       "Problem reading XPLOR grid file"},
      {replaced(Map().binary(), "ZYX", "XYY"), Level::Error,
       "XPLOR: Axes mode XYY is not recognized."},
      // Not between 1 and 100 titles: a text, then, and none that is one.
      {bytes_of(84) + bytes_of(101) + std::string(200, 't'), Level::Warning,
       "Failed to retrieve number of title lines"}};
  for (const auto& [bytes, level, message] : cases) {
    const MessageCapture heard;
    VXBrioGrid grid;
    EXPECT_FALSE(read(bytes, grid)) << message;
    EXPECT_TRUE(heard.has(level, message)) << message;
    EXPECT_EQ(heard.messages.back().second, "Problem reading XPLOR grid file");
    EXPECT_EQ(grid.GetSize(), 0u);
  }
}

TEST(XplorMap, a_count_of_numbers_that_is_off_leaves_one_point) {
  const MessageCapture heard;
  const std::string head = "1\ntitle\n1 2 3\n";
  const std::string cell =
      " 1.00000E+01 1.00000E+01 1.00000E+01 9.00000E+01 9.00000E+01 9.00000E+01\n";
  VXBrioGrid grid;
  ASSERT_TRUE(read(head + cell + "XYZ\n0\n 5.00000E+00\n", grid));
  ASSERT_EQ(grid.GetSize(), 1u);
  EXPECT_EQ(grid.GetFloats()[0][0], 5.0f);
}

TEST(XplorMap, cut_anywhere_a_text_fails_and_a_binary_one_is_filled_with_zeros) {
  const Map map = map_from_zero();
  const std::string text = map.text();
  const std::size_t last_value = text.find_last_of('E') - 8;
  vxgrid_test::for_every_cut(text, [&](const std::string& cut, std::size_t length) {
    const MessageCapture heard;
    VXBrioGrid grid;
    // Inside the last value a cut leaves another number, which the reader cannot know.
    const bool ends_in_number =
        length > last_value + 1 && cut.find_first_not_of("-.0123456789", length - 1) == cut.npos;
    ASSERT_EQ(read(cut, grid), ends_in_number || length > last_value + 12) << length;
  });
  const std::string binary = map.binary();
  const std::size_t first_section = binary.find(std::string(16, 's'));
  vxgrid_test::for_every_cut(binary, [&](const std::string& cut, std::size_t length) {
    const MessageCapture heard;
    VXBrioGrid grid;
    // Behind the three letters of the order everything counts as zero.
    ASSERT_EQ(read(cut, grid), length >= first_section - 4) << length;
    if (length < first_section - 4) return;
    ASSERT_EQ(grid.GetSize(), 60u);
    if (length < binary.size() - 12) {
      EXPECT_EQ(grid.GetValues()[59], 0.0f);
    }
  });
}

TEST(XplorMap, random_bytes_do_no_harm) {
  const MessageCapture heard;
  for (const std::string& valid : {Map().text(), map_from_zero().binary()}) {
    vxgrid_test::for_random_bytes(valid, 1000, [](const std::string& bytes) {
      VXBrioGrid grid;
      if (read(bytes, grid)) {
        EXPECT_EQ(grid.GetTitle(), "xplor");
      }
    });
  }
}

}  // namespace
