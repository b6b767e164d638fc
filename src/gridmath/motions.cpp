// Rigid motions: the mid moves as a point, the orientation as a frame.
#include "vxgrid/gridmath/motions.h"

#include <array>    // for array
#include <cstddef>  // for size_t

#include "grid/lattice.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {

namespace {

using detail::Matrix3;
using detail::Vector3;

Vector3 mid_of(const VXBrioGrid& g) {
  return {g.GetXMid(), g.GetYMid(), g.GetZMid()};
}

Matrix3 product(const float* a, const Matrix3& b) {
  Matrix3 result{};
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      result[3 * row + column] =
          a[3 * row] * b[column] + a[3 * row + 1] * b[3 + column] + a[3 * row + 2] * b[6 + column];
    }
  }
  return result;
}

template <std::size_t count>
std::array<float, count> narrowed(const double* numbers) {
  std::array<float, count> result{};
  for (std::size_t i = 0; i < count; ++i)
    result[i] = static_cast<float>(numbers[i]);
  return result;
}

}  // namespace

void VXRotate(VXBrioGrid& g, const float* matrix) {
  if (!matrix) return;
  Matrix3 orientation = detail::identity3;
  g.GetOrientation(orientation.data());
  const Vector3 mid = mid_of(g);
  Vector3 turned{};
  for (std::size_t row = 0; row < 3; ++row) {
    const float* const m = matrix + 3 * row;
    turned[row] = m[0] * mid[0] + m[1] * mid[1] + m[2] * mid[2];
  }
  g.SetMid(turned[0], turned[1], turned[2]);
  g.SetOrientation(product(matrix, orientation).data());
  g.SetSpaceGroup(0);
}

void VXRotate(VXBrioGrid& g, const double* matrix) {
  if (matrix) VXRotate(g, narrowed<9>(matrix).data());
}

void VXTranslate(VXBrioGrid& g, const float* vector) {
  if (!vector) return;
  const Vector3 mid = mid_of(g);
  g.SetMid(mid[0] + vector[0], mid[1] + vector[1], mid[2] + vector[2]);
  g.SetSpaceGroup(0);
}

void VXTranslate(VXBrioGrid& g, const double* vector) {
  if (vector) VXTranslate(g, narrowed<3>(vector).data());
}

void VXRotate(VXSkewGrid& g, const float* matrix) {
  VXRotate(g.GetImpl().GetImpl(), matrix);
}

void VXRotate(VXSkewGrid& g, const double* matrix) {
  VXRotate(g.GetImpl().GetImpl(), matrix);
}

void VXTranslate(VXSkewGrid& g, const float* vector) {
  VXTranslate(g.GetImpl().GetImpl(), vector);
}

void VXTranslate(VXSkewGrid& g, const double* vector) {
  VXTranslate(g.GetImpl().GetImpl(), vector);
}

}  // namespace VXCore
