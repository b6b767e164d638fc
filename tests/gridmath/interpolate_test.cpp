// Transfer between lattices against fields that trilinear blending reproduces.
#include "vxgrid/gridmath/interpolate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "gridmath/test_record.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"

namespace {

using namespace VXCore;
using vxgrid_test::TestRecord;

constexpr float untouched = -77.0f;

double field(double x, double y, double z) {
  return 1 + x - 2 * y + 3 * z + 0.5 * x * y - x * z;
}

// True when a place lies in the box of a record, its faces included.
bool in_box(const TestRecord& box, const std::array<double, 3>& p) {
  const auto low = box.place(0, 0, 0);
  const auto high = box.place(box.grid.xdim - 1, box.grid.ydim - 1, box.grid.zdim - 1);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (p[axis] < low[axis] - 1e-6 || p[axis] > high[axis] + 1e-6) return false;
  }
  return true;
}

TEST(Interpolate, points_in_the_source_box_get_the_field_and_others_stay) {
  const struct {
    std::array<int, 3> dims;
    std::array<float, 3> mid;
    float spacing;
  } sources[] = {{{9, 8, 7}, {0, 0, 0}, 1.0f},      // wider: its faces lie on target points
                 {{5, 5, 5}, {1, -1, 0.5f}, 0.5f},  // inside
                 {{4, 6, 5}, {2, 2, -2}, 0.7f},     // over a corner
                 {{40, 40, 40}, {0, 0, 0}, 0.9f},   // all around
                 {{3, 3, 3}, {50, 0, 0}, 1.0f}};    // nowhere near
  for (const auto& s : sources) {
    TestRecord from(s.dims, s.mid, s.spacing);
    from.fill(field);
    for (int mode = 0; mode < 6; ++mode) {
      TestRecord to({9, 9, 9}, {0, 0, 0}, 0.75f);
      to.fill([](double, double, double) { return double{untouched}; });
      vi_int_btw_grids(to.grid, from.grid, mode);
      to.for_each_point([&](int x, int y, int z, std::size_t e) {
        const bool inner = x > 0 && y > 0 && z > 0 && x < 8 && y < 8 && z < 8;
        const auto p = to.place(x, y, z);
        const bool counts = in_box(from, p) && (mode % 3 != 1 || inner);
        const double expected = counts ? field(p[0], p[1], p[2]) : double{untouched};
        EXPECT_NEAR(to.floats[e], expected, 1e-4) << "mode " << mode << " at " << x << y << z;
      });
    }
  }
}

TEST(Interpolate, equal_boxes_hand_the_values_over_bit_for_bit) {
  TestRecord from({6, 5, 7}, {0.1f, 0.2f, 0.3f}, 0.3f);
  from.fill_random(1);
  for (const int mode : {0, 2, 3, 5}) {
    TestRecord to({6, 5, 7}, {0.1f, 0.2f, 0.3f}, 0.3f);
    vi_int_btw_grids(to.grid, from.grid, mode);
    EXPECT_EQ(to.floats, from.floats);
  }
  // The same box with half the spacing takes every second point over.
  TestRecord fine({11, 9, 13}, {0.1f, 0.2f, 0.3f}, 0.15f);
  vi_int_btw_grids(fine.grid, from.grid, 2);
  from.for_each_point([&](int x, int y, int z, std::size_t e) {
    EXPECT_NEAR(fine.floats[fine.element(2 * x, 2 * y, 2 * z)], from.floats[e], 2e-5);
  });
}

TEST(Interpolate, a_source_of_one_plane_serves_the_points_on_it) {
  TestRecord from({4, 4, 1}, {0, 0, 0}, 1.0f);
  from.fill(field);
  TestRecord to({4, 4, 3}, {0, 0, 0}, 1.0f);
  vi_int_btw_grids(to.grid, from.grid, 2);
  to.for_each_point([&](int x, int y, int z, std::size_t e) {
    EXPECT_EQ(to.floats[e], z == 1 ? from.floats[from.element(x, y, 0)] : 0.0f);
  });
}

TEST(Interpolate, unusable_records_change_nothing) {
  TestRecord from({4, 4, 4}, {0, 0, 0}, 1.0f);
  from.fill_random(1);
  TestRecord to({4, 4, 4}, {0.5f, 0, 0}, 1.0f);
  GridStruct no_spacing = from.grid, no_values = from.grid, no_plane = from.grid;
  no_spacing.spacing = 0;
  no_values.floats = nullptr;
  no_plane.zdim = 0;
  for (const GridStruct& broken : {no_spacing, no_values, no_plane})
    vi_int_btw_grids(to.grid, broken, 2);
  vi_int_btw_grids(to.grid, from.grid, 6);
  vi_int_btw_grids(to.grid, from.grid, -1);
  EXPECT_EQ(to.floats, std::vector<float>(64));
}

TEST(Interpolate, class_forms_lay_tags_over_and_keep_title_and_type) {
  TestRecord values({5, 5, 5}, {0, 0, 0}, 1.0f);
  values.fill(field);
  VXScalarGrid from(5, 5, 5, 0, 0, 0, 1.0f, "from", values.floats.data());
  from.SetType(VXGridType::DifferenceMap);
  from.SetFloatData("SIGMA", 2.0f);
  VXScalarGrid to(3, 3, 3, 0.25f, 0.25f, 0.25f, 1.0f, "to");
  to.SetType(VXGridType::Electrostatic);
  to.SetFloatData("kept", 1.0f);
  VXBrioGrid brio_to(to);
  const VXBrioGrid brio_from(from);
  ASSERT_TRUE(VXInterpolateBetweenGrids(to, from));
  ASSERT_TRUE(VXInterpolateBetweenGrids(brio_to, brio_from));
  EXPECT_NEAR(to(0, 1, 2), field(-0.75, 0.25, 1.25), 1e-5);
  EXPECT_EQ(to(0, 1, 2), brio_to.GetValues()[0 + 3 * (1 + 3 * 2)]);
  EXPECT_TRUE(to.GetTitle() == "to" && to.GetType() == VXGridType::Electrostatic);
  EXPECT_TRUE(to.GetFloatData("SIGMA") == 2.0f && to.HasData("kept"));
  EXPECT_TRUE(brio_to.HasData("SIGMA"));

  EXPECT_FALSE(VXInterpolateBetweenGrids(to, VXScalarGrid()));
  EXPECT_FALSE(VXInterpolateBetweenGrids(brio_to, VXBrioGrid()));
  VXScalarGrid empty;
  EXPECT_FALSE(VXInterpolateBetweenGrids(empty, from));
}

}  // namespace
