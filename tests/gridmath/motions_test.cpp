// Motions judged by where they take the lattice points.
#include "vxgrid/gridmath/motions.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace {

using namespace VXCore;
using Matrix = std::array<float, 9>;

// A turn about z, then one about x, in degrees.
Matrix rotation(double about_z, double about_x) {
  const double to_radians = std::acos(-1.0) / 180;
  const double cz = std::cos(about_z * to_radians);
  const double sz = std::sin(about_z * to_radians);
  const double cx = std::cos(about_x * to_radians);
  const double sx = std::sin(about_x * to_radians);
  const double m[9] = {cz, -sz, 0, cx * sz, cx * cz, -sx, sx * sz, sx * cz, cx};
  Matrix result{};
  for (std::size_t i = 0; i < 9; ++i)
    result[i] = static_cast<float>(m[i]);
  return result;
}

std::array<float, 3> times(const Matrix& m, const float* p) {
  return {m[0] * p[0] + m[1] * p[1] + m[2] * p[2], m[3] * p[0] + m[4] * p[1] + m[5] * p[2],
          m[6] * p[0] + m[7] * p[1] + m[8] * p[2]};
}

VXBrioGrid crystal_grid() {
  VXBrioGrid grid;
  grid.SetDim(4, 3, 5);
  grid.SetMid(1, -2, 3);
  grid.SetUnitCell(20, 15, 30, 80, 95, 110, 40, 32, 50);
  grid.SetSpaceGroup(2);
  return grid;
}

void expect_moved(const VXBrioGrid& before, const VXBrioGrid& after, const Matrix& m,
                  const std::array<float, 3>& shift) {
  std::vector<float> old_places;
  std::vector<float> new_places;
  ASSERT_TRUE(before.SpatialCoords(old_places));
  ASSERT_TRUE(after.SpatialCoords(new_places));
  ASSERT_EQ(old_places.size(), 180u);
  for (std::size_t i = 0; i < old_places.size(); i += 3) {
    const std::array<float, 3> p = times(m, &old_places[i]);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      EXPECT_NEAR(new_places[i + axis], p[axis] + shift[axis], 1e-5);
    }
  }
}

TEST(Motions, rotation_turns_every_lattice_point_about_the_origin) {
  const VXBrioGrid before = crystal_grid();
  const Matrix m = rotation(35, -70);
  VXBrioGrid after = before;
  VXRotate(after, m.data());
  expect_moved(before, after, m, {0, 0, 0});
  EXPECT_FALSE(after.HasSpaceGroup());
  EXPECT_TRUE(before.HasSpaceGroup());
  float mid[3];
  after.GetIntegers().GetMid(mid[0], mid[1], mid[2]);
  EXPECT_EQ(mid[1], after.GetYMid());

  // The same turn in double precision, and back by the transpose.
  VXBrioGrid twin = before;
  const std::vector<double> wide(m.begin(), m.end());
  VXRotate(twin, wide.data());
  float a[9];
  float b[9];
  ASSERT_TRUE(twin.GetOrientation(a));
  ASSERT_TRUE(after.GetOrientation(b));
  EXPECT_TRUE(std::equal(a, a + 9, b));
  const Matrix back = {m[0], m[3], m[6], m[1], m[4], m[7], m[2], m[5], m[8]};
  VXRotate(after, back.data());
  expect_moved(before, after, rotation(0, 0), {0, 0, 0});
}

TEST(Motions, a_grid_without_orientation_gets_the_matrix_itself) {
  VXBrioGrid grid;
  grid.SetDim(4, 3, 5);
  grid.SetSpacing(0.5f);
  grid.SetMid(1, 2, 3);
  const Matrix m = rotation(90, 0);
  VXRotate(grid, m.data());
  float orientation[9];
  ASSERT_TRUE(grid.GetOrientation(orientation));
  EXPECT_TRUE(std::equal(m.begin(), m.end(), orientation));
  // Two turns make one about the sum of their angles.
  VXRotate(grid, rotation(-60, 0).data());
  ASSERT_TRUE(grid.GetOrientation(orientation));
  const Matrix sum = rotation(30, 0);
  for (std::size_t i = 0; i < 9; ++i)
    EXPECT_NEAR(orientation[i], sum[i], 1e-6);
}

TEST(Motions, identity_and_zero_still_clear_the_space_group) {
  VXBrioGrid grid = crystal_grid();
  float before[9];
  float after[9];
  grid.GetOrientation(before);
  VXRotate(grid, rotation(0, 0).data());
  ASSERT_TRUE(grid.GetOrientation(after));
  for (std::size_t i = 0; i < 9; ++i)
    EXPECT_EQ(after[i], before[i]);
  EXPECT_EQ(grid.GetYMid(), -2.0f);
  EXPECT_FALSE(grid.HasSpaceGroup());

  grid = crystal_grid();
  const float nothing[3] = {0, 0, 0};
  VXTranslate(grid, nothing);
  EXPECT_FALSE(grid.HasSpaceGroup());
  expect_moved(crystal_grid(), grid, rotation(0, 0), {0, 0, 0});
}

TEST(Motions, skew_grids_move_as_the_grid_inside_them) {
  const VXSkewGrid before{VXSkewGridImpl(crystal_grid())};
  VXSkewGrid after = before;
  const Matrix m = rotation(10, 20);
  const double shift[3] = {0.5, -1.5, 2.5};
  VXRotate(after, m.data());
  VXTranslate(after, shift);
  expect_moved(before.GetImpl().GetImpl(), after.GetImpl().GetImpl(), m, {0.5f, -1.5f, 2.5f});
  EXPECT_FALSE(after.HasSpaceGroup());
}

// The untransform of a lattice point of the moved grid is its place in the unrotated lattice.
TEST(Motions, untransforming_takes_lattice_points_of_a_turned_grid_home) {
  VXBrioGrid grid;
  grid.SetDim(3, 4, 5);
  grid.SetSpacing(0.5f);
  grid.SetMid(1, 2, 3);
  VXRotate(grid, rotation(40, 50).data());
  std::vector<float> places;
  ASSERT_TRUE(grid.SpatialCoords(places));
  ASSERT_EQ(vx_untransform_coordinates_by_grid_orientation(places.data(), 60, grid), 1);
  EXPECT_NEAR(places[0], grid.GetXMid() - 0.5f, 1e-5);
  EXPECT_NEAR(places[3 * 59 + 2], grid.GetZMid() + 1.0f, 1e-5);
}

TEST(Motions, null_arguments_do_nothing) {
  VXBrioGrid grid = crystal_grid();
  VXRotate(grid, static_cast<const float*>(nullptr));
  VXRotate(grid, static_cast<const double*>(nullptr));
  VXTranslate(grid, static_cast<const float*>(nullptr));
  VXTranslate(grid, static_cast<const double*>(nullptr));
  EXPECT_TRUE(grid.HasSpaceGroup());
}

}  // namespace
