// The boundary is every point with an outermost index, each of them once.
#include "vxgrid/gridmath/boundary.h"

#include <gtest/gtest.h>

#include <vector>

#include "gridmath/test_record.h"
#include "support/messages.h"

namespace {

using namespace VXCore;
using vxgrid_test::TestRecord;

constexpr std::array<int, 3> shapes[] = {{4, 5, 6}, {3, 3, 3}, {1, 4, 5}, {5, 1, 4},
                                         {4, 5, 1}, {2, 2, 2}, {1, 1, 1}, {1, 1, 5}};

bool on_boundary(const GridStruct& g, int x, int y, int z) {
  return x == 0 || y == 0 || z == 0 || x == g.xdim - 1 || y == g.ydim - 1 || z == g.zdim - 1;
}

TEST(Boundary, every_routine_acts_once_on_just_its_points) {
  using Action = void (*)(GridStruct);
  const struct {
    Action action;
    float boundary, inner;
  } cases[] = {{[](GridStruct g) { vi_Boundary0(g); }, 0, 3},
               {[](GridStruct g) { vi_Boundary_f0(g, 7); }, 7, 3},
               {[](GridStruct g) { vi_scale_boundary(g, 2); }, 6, 3},
               {[](GridStruct g) { vi_Inner_f0(g); }, 3, 0}};
  for (const auto& shape : shapes) {
    for (const auto& c : cases) {
      TestRecord record(shape, {0, 0, 0}, 1.0f);
      record.floats.assign(record.floats.size(), 3.0f);
      c.action(record.grid);
      record.for_each_point([&](int x, int y, int z, std::size_t e) {
        EXPECT_EQ(record.floats[e], on_boundary(record.grid, x, y, z) ? c.boundary : c.inner)
            << shape[0] << shape[1] << shape[2] << " at " << x << y << z;
      });
    }
  }
}

TEST(Boundary, print_names_every_boundary_element_once) {
  TestRecord record({3, 3, 3}, {0, 0, 0}, 1.0f);
  record.floats[26] = 1.5f;
  vxgrid_test::MessageCapture capture;
  vi_PrintBoundary(record.grid);
  ASSERT_EQ(capture.messages.size(), 26u);
  EXPECT_EQ(capture.messages[0].second, "0 0.000000");
  EXPECT_EQ(capture.messages[17].second, "26 1.500000");
  EXPECT_FALSE(capture.has(VXErrorLevel::Info, "13 0.000000"));
}

TEST(Boundary, records_without_values_do_nothing) {
  float value = 1;
  for (const int ydim : {3, 0, -3}) {
    GridStruct g;
    g.xdim = g.zdim = 3;
    g.ydim = ydim;
    g.floats = ydim < 3 ? &value : nullptr;
    vi_Boundary0(g);
    vi_Inner_f0(g);
    vi_scale_boundary(g, 2);
    vi_PrintBoundary(g);
  }
  EXPECT_EQ(value, 1.0f);
}

}  // namespace
