// Motions judged by where they take the lattice points.
#include "vxgrid/gridmath/motions.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace {

using namespace VXCore;
using Matrix = std::array<float, 9>;

// A turn about z, then one about x, in degrees.
Matrix rotation(double about_z, double about_x) {
  const double to_radians = std::acos(-1.0) / 180;
  const double cz = std::cos(about_z * to_radians), sz = std::sin(about_z * to_radians);
  const double cx = std::cos(about_x * to_radians), sx = std::sin(about_x * to_radians);
  const auto f = [](double x) { return static_cast<float>(x); };
  return {f(cz), f(-sz), 0, f(cx * sz), f(cx * cz), f(-sx), f(sx * sz), f(sx * cz), f(cx)};
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
  std::vector<float> old_places, new_places;
  ASSERT_TRUE(before.SpatialCoords(old_places) && after.SpatialCoords(new_places));
  ASSERT_EQ(old_places.size(), 180u);
  for (std::size_t i = 0; i < old_places.size(); i += 3) {
    const std::array<float, 3> p = times(m, &old_places[i]);
    for (std::size_t axis = 0; axis < 3; ++axis)
      EXPECT_NEAR(new_places[i + axis], p[axis] + shift[axis], 1e-5);
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
  float a[9], b[9];
  ASSERT_TRUE(twin.GetOrientation(a) && after.GetOrientation(b));
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
}

TEST(Motions, identity_and_zero_still_clear_the_space_group) {
  VXBrioGrid grid = crystal_grid();
  VXRotate(grid, static_cast<const float*>(nullptr));
  VXTranslate(grid, static_cast<const double*>(nullptr));
  EXPECT_TRUE(grid.HasSpaceGroup());
  VXRotate(grid, rotation(0, 0).data());
  expect_moved(crystal_grid(), grid, rotation(0, 0), {0, 0, 0});
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

}  // namespace
