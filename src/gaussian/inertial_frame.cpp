// Principal frames of lists of Gaussians and of grids.
#include "vxgrid/gaussian/inertial_frame.h"

#include <algorithm>  // for copy
#include <array>      // for array
#include <cmath>      // for fabs
#include <cstddef>    // for size_t

#include "gaussian/signed_volume.h"
#include "grid/lattice.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using Sums3 = std::array<double, 3>;
using Sums6 = std::array<double, 6>;  // xx, xy, xz, yy, yz, zz

// Calls visit(value, place) for every point with a value above 0.
template <class Visit>
void for_each_filled_point(const float* values, const detail::OrientedLattice& lattice,
                           Visit visit) {
  std::size_t element = 0;
  for (unsigned int k = 0; k < lattice.dim[2]; ++k) {
    for (unsigned int j = 0; j < lattice.dim[1]; ++j) {
      for (unsigned int i = 0; i < lattice.dim[0]; ++i) {
        const float value = values[element++];
        if (!(value > 0.0f)) continue;
        visit(double{value},
              lattice.place(static_cast<float>(i), static_cast<float>(j), static_cast<float>(k)));
      }
    }
  }
}

// Sums per volume over the terms of what `along(axis, width, centre)` gives; false when the
// volumes sum to 0.
template <class Along>
bool mean_in_frame(int count, const float* coords, const Gsphere* terms, float* out, Along along) {
  double volume = 0;
  Sums3 sums{};
  for (const Gsphere& term : detail::term_span(count, terms)) {
    const double v = detail::signed_volume(term);
    const Sums3 centre = {coords[0], coords[1], coords[2]};
    coords += 3;
    volume += v;
    for (std::size_t axis = 0; axis < 3; ++axis)
      sums[axis] += along(axis, double{term.width}, centre) * v;
  }
  if (volume == 0.0) return false;
  for (std::size_t axis = 0; axis < 3; ++axis)
    out[axis] = static_cast<float>(sums[axis] / volume);
  return true;
}

}  // namespace

int vx_CalcShapeInertialFrame(int count, const Gsphere* terms, float* matrix, float* centre) {
  float volume = 0;
  float mx = 0, my = 0, mz = 0;
  float xx = 0, xy = 0, xz = 0, yy = 0, yz = 0, zz = 0;
  for (const Gsphere& term : detail::term_span(count, terms)) {
    const float v = detail::signed_volume(term);
    const float h = 0.5f / term.width;
    const float xv = term.x * v;
    const float yv = term.y * v;
    volume += v;
    mx += xv;
    my += yv;
    mz += term.z * v;
    xx += (term.x * term.x + h) * v;
    xy += xv * term.y;
    xz += xv * term.z;
    yy += (term.y * term.y + h) * v;
    yz += yv * term.z;
    zz += (term.z * term.z + h) * v;
  }
  if (volume == 0.0f) return 0;

  const double inverse = 1.0 / double{volume};
  const Sums3 c = {mx * inverse, my * inverse, mz * inverse};
  const auto central = [&](float sum, std::size_t a, std::size_t b) {
    return static_cast<float>(sum * inverse - c[a] * c[b]);
  };
  xx = central(xx, 0, 0);
  xy = central(xy, 0, 1);
  xz = central(xz, 0, 2);
  yy = central(yy, 1, 1);
  yz = central(yz, 1, 2);
  zz = central(zz, 2, 2);
  detail::Matrix3 axes = detail::identity3;
  const float off_diagonal = std::fabs(xy) + std::fabs(xz) + std::fabs(yz);
  const float diagonal = std::fabs(xx) + std::fabs(yy) + std::fabs(zz);
  constexpr double aligned_ratio = 1000.0;
  if (double{off_diagonal} * aligned_ratio >= double{diagonal}) {
    detail::Matrix3 columns = {xx, xy, xz, xy, yy, yz, xz, yz, zz};
    get_roots_3(columns.data(), static_cast<float*>(nullptr));
    axes = {columns[0], columns[3], columns[6], columns[1], columns[4],
            columns[7], columns[2], columns[5], columns[8]};
  }
  std::copy(axes.begin(), axes.end(), matrix);
  for (std::size_t axis = 0; axis < 3; ++axis)
    centre[axis] = static_cast<float>(c[axis]);
  return 1;
}

int vx_CalcInFrameShapeQuadrapoles(int count, const float* coords, const Gsphere* terms,
                                   float* out) {
  const auto square = [](std::size_t axis, double width, const Sums3& c) {
    return c[axis] * c[axis] + 0.5 / width;
  };
  return mean_in_frame(count, coords, terms, out, square) ? 1 : 0;
}

int vx_CalcInFrameShapeOctopoles(int count, const float* coords, const Gsphere* terms, float* out) {
  const auto cube = [](std::size_t axis, double width, const Sums3& c) {
    return c[axis] * (2.5 / width + (c[0] * c[0] + c[1] * c[1] + c[2] * c[2]));
  };
  return mean_in_frame(count, coords, terms, out, cube) ? 1 : 0;
}

int vx_orient_grid_by_moments_of_inertia(VXBrioGrid& grid) {
  const float* const values = vi_grid_floats(grid);
  if (!values) return 0;
  const detail::OrientedLattice lattice(grid);
  double weight = 0;
  Sums3 centroid{};
  for_each_filled_point(values, lattice, [&](double value, const detail::Vector3& place) {
    weight += value;
    for (std::size_t axis = 0; axis < 3; ++axis)
      centroid[axis] += value * place[axis];
  });
  if (weight == 0.0) return 0;
  for (double& coordinate : centroid)
    coordinate /= weight;

  Sums6 second{};
  for_each_filled_point(values, lattice, [&](double value, const detail::Vector3& place) {
    const double x = place[0] - centroid[0], y = place[1] - centroid[1], z = place[2] - centroid[2];
    second[0] += value * x * x;
    second[1] += value * x * y;
    second[2] += value * x * z;
    second[3] += value * y * y;
    second[4] += value * y * z;
    second[5] += value * z * z;
  });
  detail::Matrix3 matrix{};
  constexpr std::size_t packed[9] = {0, 1, 2, 1, 3, 4, 2, 4, 5};
  for (std::size_t i = 0; i < 9; ++i)
    matrix[i] = static_cast<float>(second[packed[i]]);
  vx_make_rmat2(matrix.data(), matrix.data());
  // There and back through a quaternion of unit length, which leaves an exact rotation.
  std::array<float, 4> quaternion{};
  vx_rotation_matrix_to_quaternions(matrix.data(), quaternion.data());
  vx_quaternions_to_rotation_matrix(quaternion.data(), matrix.data());
  return vx_set_grid_orientation(matrix.data(), grid);
}

}  // namespace VXCore
