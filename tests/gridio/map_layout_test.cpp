// Where the values of a map go on the grid of its cell.
#include <gtest/gtest.h>

#include "gridio/map_layout.h"
#include "support/messages.h"

namespace {

using namespace vxgrid_test;
using VXCore::MapAxes;
using VXCore::MapRange;
using VXCore::ValueBuffer;
using VXCore::VXErrorLevel;

MapRange range(std::array<std::int64_t, 3> lo, std::array<std::int64_t, 3> hi) {
  MapRange made;
  made.lo = lo;
  made.hi = hi;
  return made;
}

TEST(MapLayout, knows_a_period_and_whether_its_closing_plane_is_there) {
  // Along x one period open, along y one closed, along z less.
  MapRange r = range({-3, 5, 0}, {6, 15, 8});
  MessageCapture messages;
  EXPECT_TRUE(VXCore::vi_grid_range_from_axes(false, nullptr, 10, 10, 10, r, nullptr));
  EXPECT_EQ(r.full, 0b011u);
  EXPECT_EQ(r.fill, 0b001u);
  EXPECT_EQ(r.hi, (std::array<std::int64_t, 3>{7, 16, 9}));
  EXPECT_TRUE(messages.messages.empty());

  r = range({-3, 5, 0}, {6, 15, 9});
  EXPECT_TRUE(VXCore::vi_grid_range_from_axes(true, nullptr, 10, 10, 10, r, nullptr));
  std::vector<std::string> lines;
  for (const auto& message : messages.messages)
    lines.push_back(message.second);
  EXPECT_EQ(lines,
            (std::vector<std::string>{
                "grid", " runs from: x=-3 to 6, available= 10",
                " runs from: y=5 to 15, available= 10", " runs from: z=0 to 9, available= 10",
                "filling out x direction by one", "filling out z direction by one"}));
}

TEST(MapLayout, refuses_an_axis_that_ends_before_it_begins) {
  const std::array<const char*, 3> names{"X", "Y", "Z"};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    MapRange r = range({0, 0, 0}, {4, 4, 4});
    r.lo[axis] = 9;
    MessageCapture messages;
    EXPECT_FALSE(VXCore::vi_grid_range_from_axes(false, nullptr, 8, 8, 8, r, nullptr));
    EXPECT_TRUE(messages.warned("Invalid " + std::string(names[axis]) +
                                " dimensions for XPLOR file reading: 5 < 9"));
  }
  // An axis that ends just before it begins holds nothing, which is no fault here.
  MapRange r = range({0, 0, 5}, {4, 4, 4});
  EXPECT_TRUE(VXCore::vi_grid_range_from_axes(false, nullptr, 8, 8, 8, r, nullptr));
}

TEST(MapLayout, takes_the_axes_from_a_text_with_the_slowest_first) {
  struct Case {
    const char* text;
    std::array<unsigned, 3> order;  // slow, middle, fast
  };
  const std::vector<Case> cases{{"ZYX", {2, 1, 0}},  {"ZXY", {2, 0, 1}}, {"YXZ", {1, 0, 2}},
                                {"YZX", {1, 2, 0}},  {"XZY", {0, 2, 1}}, {" XYZ\n", {0, 1, 2}},
                                {"ZYXYZ", {0, 1, 2}}};
  const std::array<std::size_t, 3> strides{1, 4, 20};
  for (const Case& c : cases) {
    MapRange r = range({0, 0, 0}, {3, 4, 5});
    MapAxes axes;
    ASSERT_TRUE(VXCore::vi_grid_range_from_axes(false, c.text, 8, 8, 8, r, &axes)) << c.text;
    EXPECT_EQ((std::array{axes.slow, axes.middle, axes.fast}), c.order) << c.text;
    EXPECT_EQ(axes.slow_stride, strides[c.order[0]]);
    EXPECT_EQ(axes.middle_stride, strides[c.order[1]]);
    EXPECT_EQ(axes.fast_stride, strides[c.order[2]]);
  }
  MapRange r = range({0, 0, 0}, {3, 4, 5});
  MapAxes axes;
  MessageCapture messages;
  EXPECT_FALSE(VXCore::vi_grid_range_from_axes(false, "XXY", 8, 8, 8, r, &axes));
  EXPECT_TRUE(messages.has(VXErrorLevel::Error, "XPLOR: Axes mode XXY is not recognized."));
  EXPECT_EQ(axes.slow_stride + axes.middle_stride + axes.fast_stride, 0u);
}

TEST(MapLayout, fills_planes_past_the_end_with_those_of_the_beginning) {
  const std::array<std::size_t, 3> old_dims{3, 2, 4};
  ValueBuffer<float> values(24);
  for (std::size_t i = 0; i < 24; ++i)
    values[i] = static_cast<float>(i);
  for (std::size_t grown = 0; grown < 8; ++grown) {
    const std::array<std::size_t, 3> dims{3 + (grown & 1), 2 + (grown >> 1 & 1),
                                          4 + (grown >> 2 & 1)};
    const auto filled = VXCore::vi_fill_periodic_planes(old_dims, dims, values);
    ASSERT_TRUE(filled);
    ASSERT_EQ(filled->size(), dims[0] * dims[1] * dims[2]);
    std::size_t e = 0;
    for (std::size_t z = 0; z < dims[2]; ++z) {
      for (std::size_t y = 0; y < dims[1]; ++y) {
        for (std::size_t x = 0; x < dims[0]; ++x, ++e) {
          ASSERT_EQ((*filled)[e], static_cast<float>(x % 3 + 3 * (y % 2 + 2 * (z % 4))));
        }
      }
    }
  }
  MessageCapture messages;
  EXPECT_FALSE(VXCore::vi_fill_periodic_planes({0, 2, 4}, {0, 2, 4}, values));
  EXPECT_TRUE(messages.messages.empty());
  EXPECT_FALSE(VXCore::vi_fill_periodic_planes({65536, 32767, 1}, {65536, 32768, 1}, values));
  EXPECT_TRUE(messages.warned("Grid dimensions too large for memory size: 65536 x 32768"));
}

TEST(MapLayout, refuses_values_that_do_not_fill_the_range) {
  VXCore::VXBrioGrid grid;
  const std::array<float, 6> cell{10, 10, 10, 90, 90, 90};
  const MapRange eight = range({0, 0, 0}, {2, 2, 2});
  EXPECT_FALSE(VXCore::vi_load_map_into_grid(grid, ValueBuffer<float>(7), cell, 5, 5, 5, eight));
  EXPECT_FALSE(VXCore::vi_load_map_into_grid(grid, ValueBuffer<float>(8), cell, 5, 5, 5,
                                             range({0, 3, 0}, {2, 2, 2})));
  ValueBuffer<float> values(9);
  const float* const place = values.data();
  ASSERT_TRUE(VXCore::vi_load_map_into_grid(grid, std::move(values), cell, 5, 5, 5, eight));
  EXPECT_EQ(grid.GetSize(), 8u);
  EXPECT_EQ(grid.GetSpacing(), 2.0f);
  EXPECT_EQ(grid.GetXMid(), 1.0f);
  ASSERT_TRUE(VXCore::vi_load_map_into_grid(grid, ValueBuffer<float>(1000000), cell, 5, 5, 5,
                                            range({0, 0, 0}, {100, 100, 100})));
  EXPECT_NE(grid.GetValues(), place);
}

}  // namespace
