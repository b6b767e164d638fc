// Overlap sums of grids given by handle.
#include "vxgrid/gridmath/grid_overlap.h"

#include <gtest/gtest.h>

#include <numeric>
#include <tuple>
#include <vector>

#include "gridmath/test_record.h"
#include "support/messages.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_handles.h"
#include "vxgrid/grid/scalar_grid.h"

namespace {

using namespace VXCore;
using vxgrid_test::TestRecord;

// A Brio grid with a handle.
struct Handled {
  explicit Handled(const TestRecord& r)
      : grid(VXScalarGrid(r.grid.xdim, r.grid.ydim, r.grid.zdim, r.grid.xmid, r.grid.ymid,
                          r.grid.zmid, r.grid.spacing, "", r.grid.floats)),
        handle(VXMakeGridHandle(&grid)) {}
  ~Handled() { VXFreeGridHandle(handle); }
  VXBrioGrid grid;
  int handle;
};

TEST(GridOverlap, a_grid_with_itself_gives_three_equal_sums) {
  TestRecord record({5, 6, 7}, {1, 2, 3}, 0.5f);
  record.fill_random(1);
  const Handled grid(record);
  for (const int mode : {0, 1, 2}) {
    const auto [a, b, both] = VXGridOverlap(grid.handle, grid.handle, mode, 0.3f);
    EXPECT_GT(a, 0);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a, both);
  }
  const auto [a, b, both] = VXGridOverlap(grid.handle, grid.handle, 0, 0);
  EXPECT_NEAR(
      a, std::inner_product(record.floats.begin(), record.floats.end(), record.floats.begin(), 0.0),
      1e-4);
  EXPECT_EQ(VXGridOverlap(grid.handle, grid.handle, 3, 0), std::make_tuple(0.0f, 0.0f, 0.0f));
}

TEST(GridOverlap, sums_run_over_the_common_points_of_shifted_grids) {
  TestRecord first({5, 5, 5}, {0, 0, 0}, 1.0f);
  first.fill([](double x, double y, double z) { return x + 10 * y + 100 * z; });
  TestRecord second({5, 7, 3}, {2, 1, 0}, 1.0f);
  second.fill([](double x, double, double) { return 2 * x; });
  double a = 0, b = 0, both = 0;
  for (int z = -1; z <= 1; ++z) {
    for (int y = -2; y <= 2; ++y) {
      for (int x = 0; x <= 2; ++x) {
        const double va = x + 10 * y + 100 * z;
        a += va * va;
        b += 4 * x * x;
        both += va * 2 * x;
      }
    }
  }
  const Handled one(first);
  const Handled two(second);
  const auto forth = VXGridOverlap(one.handle, two.handle, 0, 0);
  EXPECT_EQ(forth, std::make_tuple(float(a), float(b), float(both)));
  EXPECT_EQ(VXGridOverlap(two.handle, one.handle, 0, 0),
            std::make_tuple(float(b), float(a), float(both)));
  // Central differences are 2, 20, 200 and 4, 0, 0 at the one point per plane that is left inside.
  const auto [da, db, dboth] = VXGridOverlap(one.handle, two.handle, 2, 0);
  EXPECT_EQ(std::make_tuple(da, db, dboth), std::make_tuple(3 * 40404.0f, 3 * 16.0f, 3 * 8.0f));
}

TEST(GridOverlap, counts_take_both_signs_and_need_the_same_one) {
  TestRecord first({4, 2, 1}, {0, 0, 0}, 1.0f);
  TestRecord second({4, 2, 1}, {0, 0, 0}, 1.0f);
  first.floats = {1, 1, -1, -1, 0.5f, -0.5f, 2, 0};
  second.floats = {1, -1, -1, 0, 1, -2, 0.5f, 0.4f};
  first.grid.floats = first.floats.data();
  second.grid.floats = second.floats.data();
  const Handled one(first);
  const Handled two(second);
  EXPECT_EQ(VXGridOverlap(one.handle, two.handle, 1, 0.5f), std::make_tuple(5.0f, 5.0f, 2.0f));
}

TEST(GridOverlap, what_cannot_be_compared_gives_zeros) {
  const auto nothing = std::make_tuple(0.0f, 0.0f, 0.0f);
  TestRecord here({3, 3, 3}, {0, 0, 0}, 1.0f);
  here.fill_random(1);
  TestRecord there({3, 3, 3}, {100, 0, 0}, 1.0f);
  there.fill_random(1);
  const Handled a(here);
  const Handled b(there);
  Handled flat(here);
  flat.grid.SetSpacing(0.0f);
  EXPECT_EQ(VXGridOverlap(a.handle, b.handle, 0, 0), nothing);
  EXPECT_EQ(VXGridOverlap(a.handle, -5, 0, 0), nothing);
  vxgrid_test::MessageCapture capture;
  EXPECT_EQ(VXGridOverlap(flat.handle, a.handle, 0, 0), nothing);
  EXPECT_TRUE(capture.warned("grid as a zero spacing"));
}

TEST(GridOverlap, ranges_of_different_length_are_reported_and_compared_as_far_as_they_go) {
  TestRecord coarse({3, 3, 3}, {0, 0, 0}, 1.0f);
  coarse.fill([](double, double, double) { return 1.0; });
  TestRecord fine({5, 3, 3}, {0, 0, 0}, 0.5f);
  fine.fill([](double, double, double) { return 1.0; });
  const Handled one(coarse);
  const Handled two(fine);
  // Mode 2 reports the ranges before it leaves their ends out.
  for (const int mode : {0, 2}) {
    testing::internal::CaptureStderr();
    const auto [a, b, both] = VXGridOverlap(one.handle, two.handle, mode, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "mismatch in x 0 2 0 4\nmismatch in y 1 1 0 2\nmismatch in z 1 1 0 2\n");
    EXPECT_EQ(a, b);
  }
}

}  // namespace
