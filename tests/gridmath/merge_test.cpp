// Point by point sums of records against sums by coordinate.
#include "vxgrid/gridmath/merge.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>  // for tuple
#include <vector>

#include "gridmath/test_record.h"
#include "support/messages.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;
using vxgrid_test::TestRecord;

// The value of `from` at a place that is one of its points, or nothing.
const float* value_at(const TestRecord& from, const std::array<double, 3>& p) {
  std::array<int, 3> index{};
  const std::array<int, 3> dims = {from.grid.xdim, from.grid.ydim, from.grid.zdim};
  const auto low = from.place(0, 0, 0);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    index[axis] = static_cast<int>(std::lround((p[axis] - low[axis]) / from.grid.spacing));
    if (index[axis] < 0 || index[axis] >= dims[axis]) return nullptr;
  }
  return &from.floats[from.element(index[0], index[1], index[2])];
}

TEST(Merge, modes_act_where_the_lattices_share_points) {
  const struct {
    std::array<int, 3> dims;
    std::array<float, 3> mid;
  } sources[] = {{{6, 5, 7}, {0, 0, 0}},            // itself
                 {{20, 21, 21}, {0, 0, 0}},         // wider all around
                 {{2, 3, 3}, {0, 0.5f, -0.5f}},     // inside
                 {{6, 5, 7}, {1.5f, -1.0f, 2.5f}},  // over a corner
                 {{4, 5, 3}, {-100, 0, 0}}};        // nowhere near
  using Merge = int (*)(GridStruct*, GridStruct);
  const Merge merges[] = {vi_add_grid, vi_sub_grid, vi_put_grid};
  for (const auto& lattice : sources) {
    TestRecord from(lattice.dims, lattice.mid, 0.5f);
    from.fill_random(2);
    for (int mode = 1; mode <= 3; ++mode) {
      TestRecord to({6, 5, 7}, {0, 0, 0}, 0.5f);
      to.fill_random(3);
      const std::vector<float> before = to.floats;
      ASSERT_EQ(merges[mode - 1](&to.grid, from.grid), 1);
      to.for_each_point([&](int x, int y, int z, std::size_t e) {
        const float* const other = value_at(from, to.place(x, y, z));
        const float sum = mode == 1   ? before[e] + (other ? *other : 0)
                          : mode == 2 ? before[e] - (other ? *other : 0)
                                      : (other ? *other : before[e]);
        EXPECT_EQ(to.floats[e], sum) << "mode " << mode << " at " << x << ' ' << y << ' ' << z;
      });
    }
  }
}

TEST(Merge, a_grid_added_onto_itself_doubles_and_unknown_modes_do_nothing) {
  TestRecord record({3, 4, 5}, {1, 2, 3}, 0.25f);
  record.fill_random(4);
  const std::vector<float> before = record.floats;
  EXPECT_EQ(vi_merge_grids(&record.grid, record.grid, 4), 1);
  EXPECT_EQ(record.floats, before);
  EXPECT_EQ(vi_add_grid(&record.grid, record.grid), 1);
  for (std::size_t e = 0; e < before.size(); ++e)
    EXPECT_EQ(record.floats[e], 2 * before[e]);
}

TEST(Merge, lattices_that_do_not_fit_are_refused_with_the_reason) {
  const std::tuple<float, float, float, const char*> cases[] = {
      {0.5f, 0.50002f, 0, "Can't add grid with different spacings."},
      {0.5f, 0.5f, 0.25f, "Grids are misaligned."},
      {0.5f, 0.5f, 0.499998f, ""},
      {0.5f, 0.5f, 1e9f, ""},
      {0.5f, NAN, 0, "Can't add grid with different spacings."},
      {0.5f, 0.5f, NAN, "Grids are misaligned."},
      {0.0f, 0.5f, 0, "Zero grid spacing!"},
      {0.5f, 0.0f, 0, "Zero grid spacing!"},
      {0.5f, 0.500005f, 0, ""}};
  for (const auto& [to_spacing, from_spacing, mid, message] : cases) {
    TestRecord to({3, 3, 3}, {0, 0, 0}, to_spacing);
    TestRecord from({3, 3, 3}, {0, 0, mid}, from_spacing);
    from.fill_random(5);
    MessageCapture capture;
    const bool refused = message[0] != '\0';
    EXPECT_EQ(vi_add_grid(&to.grid, from.grid), refused ? 0 : 1);
    EXPECT_EQ(capture.warned(message), refused);
    EXPECT_EQ(to.floats == std::vector<float>(27), refused || mid == 1e9f);
  }
  TestRecord record({2, 2, 2}, {0, 0, 0}, 1.0f);
  EXPECT_EQ(vi_add_grid(nullptr, record.grid), 0);
  GridStruct hollow = record.grid;
  hollow.floats = nullptr;
  EXPECT_EQ(vi_add_grid(&record.grid, hollow), 0);
}

TEST(Merge, zero_offset_is_the_index_of_the_second_grids_first_point) {
  const TestRecord a({8, 9, 10}, {0, 0, 0}, 0.5f);
  const TestRecord b({4, 9, 12}, {1.0f, -2.0f, 0}, 0.5f);
  int x = 0, y = 0, z = 0;
  ASSERT_EQ(vi_zero_offset(a.grid, b.grid, &x, &y, &z), 1);
  const auto first = b.place(0, 0, 0);
  EXPECT_EQ(a.place(x, y, z), first);
  EXPECT_EQ(vi_zero_offset(a.grid, b.grid, nullptr, nullptr, nullptr), 1);
}

}  // namespace
