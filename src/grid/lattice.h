/// \file
/// The rules that tie element numbers, lattice indices and places in space together.
#ifndef VXGRID_SRC_GRID_LATTICE_H
#define VXGRID_SRC_GRID_LATTICE_H

#include <array>    // for array
#include <cstddef>  // for size_t

#include "vxgrid/grid/brio_grid.h"

namespace VXCore::detail {

using Vector3 = std::array<float, 3>;
using Index3 = std::array<unsigned int, 3>;
using Matrix3 = std::array<float, 9>;  ///< row by row

inline constexpr Matrix3 identity3 = {1, 0, 0, 0, 1, 0, 0, 0, 1};

/// Half the number of steps along an axis: how far the first point lies from the middle.
inline float half_steps(unsigned int dim) {
  return (static_cast<float>(dim) - 1.0f) * 0.5f;
}

/// The unoriented coordinate of a lattice index, which may lie outside the grid.
inline float regular_coordinate(float index, unsigned int dim, float mid, float spacing) {
  return mid + (index - half_steps(dim)) * spacing;
}

/// The oriented position rule, p' = M(p - centre) + centre.
inline Vector3 oriented(const Matrix3& m, const Vector3& p, const Vector3& centre) {
  const float dx = p[0] - centre[0];
  const float dy = p[1] - centre[1];
  const float dz = p[2] - centre[2];
  return {m[0] * dx + m[1] * dy + m[2] * dz + centre[0],
          m[3] * dx + m[4] * dy + m[5] * dz + centre[1],
          m[6] * dx + m[7] * dy + m[8] * dz + centre[2]};
}

/// Splits an element number, x fastest. False, the index untouched, when a dimension is 0; the
/// caller tests the element against the size.
inline bool split_element(unsigned int element, const Index3& dim, Index3& index) {
  if (dim[0] == 0 || dim[1] == 0 || dim[2] == 0) return false;
  const unsigned int row = element / dim[0];
  index = {element % dim[0], row % dim[1], row / dim[1]};
  return true;
}

/// Inverts by cofactors in single precision; false when the determinant is exactly 0.
inline bool invert(const Matrix3& m, Matrix3& inverse) {
  const float c0 = m[4] * m[8] - m[5] * m[7];
  const float c1 = m[5] * m[6] - m[3] * m[8];
  const float c2 = m[3] * m[7] - m[4] * m[6];
  const float det = m[0] * c0 + m[1] * c1 + m[2] * c2;
  if (det == 0.0f) return false;
  inverse = {c0 / det, (m[2] * m[7] - m[1] * m[8]) / det, (m[1] * m[5] - m[2] * m[4]) / det,
             c1 / det, (m[0] * m[8] - m[2] * m[6]) / det, (m[2] * m[3] - m[0] * m[5]) / det,
             c2 / det, (m[1] * m[6] - m[0] * m[7]) / det, (m[0] * m[4] - m[1] * m[3]) / det};
  return true;
}

/// The geometry of a Brio grid at one moment, for code that asks for many places.
struct OrientedLattice {
  explicit OrientedLattice(const VXBrioGrid& grid) : spacing(grid.GetSpacing()) {
    grid.GetDim(dim[0], dim[1], dim[2]);
    grid.GetMid(mid[0], mid[1], mid[2]);
    is_oriented = grid.GetOrientationSet() && grid.GetOrientation(orientation.data());
  }

  /// The place of an index in space; fractions and indices outside the grid are fine.
  Vector3 place(float i, float j, float k) const {
    const Vector3 p = {regular_coordinate(i, dim[0], mid[0], spacing),
                       regular_coordinate(j, dim[1], mid[1], spacing),
                       regular_coordinate(k, dim[2], mid[2], spacing)};
    return is_oriented ? oriented(orientation, p, mid) : p;
  }

  Index3 dim{};
  Vector3 mid{};
  float spacing = 0;
  Matrix3 orientation = identity3;
  bool is_oriented = false;
};

/// The way back from OrientedLattice::place: fractional lattice indices of places in space, in
/// double precision.
class LatticeLocator {
 public:
  explicit LatticeLocator(const OrientedLattice& lattice) : lattice_(lattice) {
    const auto m = [&](std::size_t i) { return static_cast<double>(lattice.orientation[i]); };
    const double c0 = m(4) * m(8) - m(5) * m(7);
    const double c1 = m(5) * m(6) - m(3) * m(8);
    const double c2 = m(3) * m(7) - m(4) * m(6);
    const double scale = 1.0 / ((m(0) * c0 + m(1) * c1 + m(2) * c2) * lattice.spacing);
    to_steps_ = {
        c0 * scale, (m(2) * m(7) - m(1) * m(8)) * scale, (m(1) * m(5) - m(2) * m(4)) * scale,
        c1 * scale, (m(0) * m(8) - m(2) * m(6)) * scale, (m(2) * m(3) - m(0) * m(5)) * scale,
        c2 * scale, (m(1) * m(6) - m(0) * m(7)) * scale, (m(0) * m(4) - m(1) * m(3)) * scale};
  }

  /// Not finite when the lattice has no spacing or a flat orientation.
  std::array<double, 3> index(const float* xyz) const {
    std::array<double, 3> d, at;
    for (std::size_t k = 0; k < 3; ++k)
      d[k] = static_cast<double>(xyz[k]) - lattice_.mid[k];
    for (std::size_t k = 0; k < 3; ++k)
      at[k] = to_steps_[3 * k] * d[0] + to_steps_[3 * k + 1] * d[1] + to_steps_[3 * k + 2] * d[2] +
              half_steps(lattice_.dim[k]);
    return at;
  }

 private:
  OrientedLattice lattice_;
  std::array<double, 9> to_steps_;
};

}  // namespace VXCore::detail

#endif
