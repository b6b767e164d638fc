/// \file
/// Flat routines that take coordinates through a grid's orientation and back.
#include <algorithm>  // for copy_n

#include "grid/lattice.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"

namespace VXCore {

namespace {

using detail::Matrix3;
using detail::Vector3;

Matrix3 matrix_from(const float* m) {
  Matrix3 matrix;
  std::copy_n(m, 9, matrix.begin());
  return matrix;
}

Vector3 center_from(const float* center) {
  return center ? Vector3{center[0], center[1], center[2]} : Vector3{};
}

void move_points(float* xyz, int n, const Matrix3& matrix, const Vector3& center) {
  for (int i = 0; i < n; ++i, xyz += 3) {
    const Vector3 p = detail::oriented(matrix, {xyz[0], xyz[1], xyz[2]}, center);
    std::copy_n(p.begin(), 3, xyz);
  }
}

}  // namespace

int vx_transform_coordinates_by_orientation_matrix(float* xyz, int n, const float* matrix,
                                                   const float* center) {
  if (!matrix || (!xyz && n > 0)) return 0;
  move_points(xyz, n, matrix_from(matrix), center_from(center));
  return 1;
}

int vx_untransform_coordinates_by_orientation_matrix(float* xyz, int n, const float* matrix,
                                                     const float* center) {
  Matrix3 inverse;
  if (!matrix || (!xyz && n > 0) || !detail::invert(matrix_from(matrix), inverse)) return 0;
  move_points(xyz, n, inverse, center_from(center));
  return 1;
}

int vx_transform_coordinates_by_grid_orientation(float* xyz, int n, const VXBrioGrid& grid) {
  const detail::OrientedLattice lattice(grid);
  return lattice.is_oriented ? vx_transform_coordinates_by_orientation_matrix(
                                   xyz, n, lattice.orientation.data(), lattice.mid.data())
                             : 0;
}

int vx_untransform_coordinates_by_grid_orientation(float* xyz, int n, const VXBrioGrid& grid) {
  const detail::OrientedLattice lattice(grid);
  return lattice.is_oriented ? vx_untransform_coordinates_by_orientation_matrix(
                                   xyz, n, lattice.orientation.data(), lattice.mid.data())
                             : 0;
}

int vx_get_corners_of_grid(float* corners, const VXBrioGrid& grid) {
  if (!corners) return 0;
  const detail::OrientedLattice lattice(grid);
  for (unsigned int corner = 0; corner < 8; ++corner) {
    for (unsigned int axis = 0; axis < 3; ++axis) {
      const float half = (static_cast<float>(lattice.dim[axis]) - 1.0f) * lattice.spacing / 2.0f;
      const bool high = (corner >> axis & 1u) != 0;
      corners[3 * corner + axis] = high ? lattice.mid[axis] + half : lattice.mid[axis] - half;
    }
  }
  move_points(corners, 8, lattice.orientation, lattice.mid);
  return 1;
}

}  // namespace VXCore
