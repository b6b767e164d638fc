// Copies, fills, blocks and differences on records.
#include "vxgrid/gridmath/arithmetic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "gridmath/test_record.h"
#include "support/messages.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::TestRecord;

TEST(Arithmetic, copy_has_buffers_and_name_of_its_own) {
  TestRecord record({2, 3, 4}, {1, 2, 3}, 0.5f);
  record.fill_random(1);
  std::string name = "phi";
  record.grid.name = name.data();
  GridStruct copy;
  vi_copy_grid(0, &copy, record.grid, 1);
  ASSERT_NE(copy.floats, nullptr);
  EXPECT_NE(copy.floats, record.grid.floats);
  EXPECT_EQ(std::vector<float>(copy.floats, copy.floats + 24), record.floats);
  EXPECT_STREQ(copy.name, "phi");
  EXPECT_NE(copy.name, record.grid.name);
  EXPECT_TRUE(copy.ymid == 2 && copy.zdim == 4 && copy.inverse_spacing == 2 && !copy.integers);
  vx_deallocate_grid_struct(copy, false, true);
  vx_free(copy.name);

  GridStruct bare;
  float mine = 0;
  bare.floats = &mine;
  name.clear();
  vi_copy_grid(0, &bare, record.grid, 0);
  EXPECT_EQ(bare.floats, &mine);
  EXPECT_EQ(bare.name, nullptr);
}

TEST(Arithmetic, limits_are_the_outer_points_and_are_printed) {
  const TestRecord record({3, 4, 5}, {1, 0, -1}, 0.5f);
  float v[6] = {};
  EXPECT_EQ(vi_get_grid_limits(record.grid, v, v + 1, v + 2, v + 3, v + 4, v + 5), 1);
  EXPECT_EQ(std::vector<float>(v, v + 6), (std::vector<float>{0.5f, 1.5f, -0.75f, 0.75f, -2, 0}));
  vxgrid_test::MessageCapture capture;
  EXPECT_EQ(vi_print_grid_limits(record.grid), 1);
  EXPECT_TRUE(capture.has(VXErrorLevel::Info,
                          "grid extents are: 0.500000 to 1.500000, -0.750000 to 0.750000, "
                          "-2.000000 to 0.000000"));
}

TEST(Arithmetic, fills_reach_every_value_and_clear_makes_empty_records) {
  TestRecord record({2, 3, 4}, {0, 0, 0}, 1.0f);
  record.integers.assign(24, 9);
  vi_constant_grid(record.grid, 2.5f);
  EXPECT_EQ(record.floats, std::vector<float>(24, 2.5f));
  EXPECT_EQ(record.integers, std::vector<int>(24, 9));
  vi_zero_grid(record.grid);
  EXPECT_EQ(record.floats, std::vector<float>(24));
  EXPECT_EQ(record.integers, std::vector<int>(24));
  GridStruct records[2] = {record.grid, record.grid};
  vi_clear_grid(records, 2);
  EXPECT_EQ(records[1].floats, nullptr);
  EXPECT_EQ(records[1].xdim, 0);
}

// Offsets are (from - to)/2 cut towards zero, on wider and on narrower targets.
TEST(Arithmetic, remap_copies_the_centred_block) {
  const std::array<int, 3> targets[] = {{3, 4, 2}, {2, 2, 2}, {7, 7, 7}, {8, 3, 5}, {1, 1, 1}};
  for (const std::array<int, 3>& dims : targets) {
    TestRecord from({5, 4, 6}, {0, 0, 0}, 1.0f);
    from.fill_random(7);
    for (std::size_t e = 0; e < from.integers.size(); ++e)
      from.integers[e] = static_cast<int>(e);
    TestRecord to(dims, {0, 0, 0}, 1.0f);
    vi_simple_grid_remap(to.grid, from.grid);
    to.for_each_point([&](int x, int y, int z, std::size_t e) {
      const int fx = x + (5 - dims[0]) / 2, fy = y + (4 - dims[1]) / 2, fz = z + (6 - dims[2]) / 2;
      const bool inside = fx >= 0 && fy >= 0 && fz >= 0 && fx < 5 && fy < 4 && fz < 6;
      EXPECT_EQ(to.floats[e], inside ? from.floats[from.element(fx, fy, fz)] : 0.0f);
      EXPECT_EQ(to.integers[e], inside ? from.integers[from.element(fx, fy, fz)] : 0);
    });
    // In place where the block is no larger than the grid.
    std::vector<float> expected = from.floats;
    if (dims[0] <= 5 && dims[1] <= 4 && dims[2] <= 6) {
      std::copy(to.floats.begin(), to.floats.end(), expected.begin());
    }
    const std::size_t count = std::min(to.floats.size(), from.floats.size());
    vi_simple_one_grid_remap(from.grid, dims[0], dims[1], dims[2]);
    EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(count),
                           from.floats.begin()));
  }
}

TEST(Arithmetic, gradients_are_forward_differences_with_the_last_one_repeated) {
  TestRecord record({4, 3, 5}, {0, 0, 0}, 0.5f);
  record.fill([](double x, double y, double z) { return x * x + 3 * y - z * z; });
  std::vector<float> planes = record.floats;
  planes.resize(4 * record.floats.size(), -1.0f);
  GridStruct g = record.grid;
  g.floats = planes.data();
  ASSERT_EQ(vi_add_simple_gradients_to_grid(&g), 1);
  record.for_each_point([&](int x, int y, int z, std::size_t e) {
    const auto here = record.place(std::min(x, 2), y, std::min(z, 3));
    const double h = record.grid.spacing;
    EXPECT_NEAR(planes[60 + e], 2 * here[0] + h, 1e-5);
    EXPECT_NEAR(planes[120 + e], 3, 1e-5);
    EXPECT_NEAR(planes[180 + e], -2 * here[2] - h, 1e-5);
  });
  g.xdim = 60;
  g.ydim = g.zdim = 1;
  ASSERT_EQ(vi_add_simple_gradients_to_grid(&g), 1);
  EXPECT_EQ(planes[120], 0.0f);
  g.spacing = 0;
  EXPECT_EQ(vi_add_simple_gradients_to_grid(&g), 0);
  EXPECT_EQ(vi_add_simple_gradients_to_grid(nullptr), 0);
}

TEST(Arithmetic, records_that_are_no_grids_are_left_alone) {
  TestRecord record({2, 2, 2}, {0, 0, 0}, 1.0f);
  record.floats.assign(8, 3.0f);
  GridStruct huge = record.grid;
  huge.xdim = huge.ydim = huge.zdim = 2147483647;
  vi_zero_grid(huge);
  vi_constant_grid(huge, 1.0f);
  vi_simple_one_grid_remap(huge, 1, 1, 1);
  huge.xdim = -1;
  vi_zero_grid(huge);
  vi_simple_grid_remap(huge, record.grid);
  vi_simple_one_grid_remap(record.grid, 0, 1, 1);
  EXPECT_EQ(record.floats, std::vector<float>(8, 3.0f));
}

}  // namespace
