// Where the values of a map go on the grid of its cell.
#include <gtest/gtest.h>

#include "gridio/map_layout.h"
#include "support/messages.h"

namespace {

using namespace vxgrid_test;
using VXCore::MapRange;
using VXCore::ValueBuffer;

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
  std::string lines;
  for (const auto& message : messages.messages)
    lines += message.second + "|";
  EXPECT_EQ(
      lines,
      "grid| runs from: x=-3 to 6, available= 10| runs from: y=5 to 15, available= 10| runs from: "
      "z=0 to 9, available= 10|filling out x direction by one|filling out z direction by one|");
}

TEST(MapLayout, refuses_values_that_do_not_fill_the_range) {
  VXCore::VXBrioGrid grid;
  const std::array<float, 6> cell{10, 10, 10, 90, 90, 90};
  const MapRange eight = range({0, 0, 0}, {2, 2, 2});
  MessageCapture messages;
  const ValueBuffer<float> none;
  EXPECT_FALSE(VXCore::vi_fill_periodic_planes({0, 2, 4}, {0, 2, 4}, none));
  EXPECT_TRUE(messages.messages.empty());
  EXPECT_FALSE(VXCore::vi_fill_periodic_planes({65536, 32767, 1}, {65536, 32768, 1}, none));
  EXPECT_TRUE(messages.warned("Grid dimensions too large for memory size: 65536 x 32768"));
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
