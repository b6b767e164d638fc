/// \file
/// VXBrioGrid: where its elements lie, and in which image of the grid a point lies.
#include <array>    // for array
#include <cmath>    // for sqrt
#include <cstddef>  // for size_t
#include <cstdint>  // for int32_t
#include <vector>   // for vector

#include "grid/lattice.h"
#include "vxgrid/grid/brio_grid.h"

namespace VXCore {

namespace {

using detail::Index3;
using detail::OrientedLattice;
using detail::Vector3;

/// The points before which a whole number of grids lies on one axis, in 32 bits as everywhere.
float packed_index(int images, unsigned int dim) {
  return static_cast<float>(static_cast<std::int32_t>(static_cast<std::uint32_t>(images) * dim));
}

int packing_number(double t) {
  // Of what is no number of images, and of what fits no int, nothing is left but 0.
  const bool fits = t > -2147483648.0 && t < 2147483648.0;
  const int whole = fits ? static_cast<int>(t) : 0;
  return t > 0.0 ? whole : whole - 1;
}

}  // namespace

bool VXBrioGrid::ElementToGridIdx(unsigned int element, unsigned int& x, unsigned int& y,
                                  unsigned int& z) const {
  Index3 index;
  if (!detail::split_element(element, {GetXDim(), GetYDim(), GetZDim()}, index)) return false;
  x = index[0];
  y = index[1];
  z = index[2];
  return element < GetSize();
}

bool VXBrioGrid::ElementToSpatialCoord(unsigned int element, float& x, float& y, float& z) const {
  Index3 index;
  if (!ElementToGridIdx(element, index[0], index[1], index[2])) return false;
  Vector3 p{};
  floats_.GridIdxToSpatialCoord(index[0], index[1], index[2], p[0], p[1], p[2]);
  if (settings_.orientation_set)
    p = detail::oriented(settings_.orientation, p, {GetXMid(), GetYMid(), GetZMid()});
  x = p[0];
  y = p[1];
  z = p[2];
  return true;
}

// The products of the matrix with the offsets along one axis are the same for a whole plane of
// points. Adding them in the order of the position rule keeps every bit of ElementToSpatialCoord.
bool VXBrioGrid::SpatialCoords(std::vector<float>& coords) const {
  const OrientedLattice lattice(*this);
  const auto& m = lattice.orientation;
  const Vector3& mid = lattice.mid;
  std::array<std::vector<Vector3>, 3> steps;  // per axis and index: the part of it in x, y, z
  for (unsigned int axis = 0; axis < 3; ++axis) {
    steps[axis].reserve(lattice.dim[axis]);
    for (unsigned int i = 0; i < lattice.dim[axis]; ++i) {
      const float regular = detail::regular_coordinate(static_cast<float>(i), lattice.dim[axis],
                                                       mid[axis], lattice.spacing);
      const float offset = regular - mid[axis];
      if (lattice.is_oriented) {
        steps[axis].push_back({m[axis] * offset, m[3 + axis] * offset, m[6 + axis] * offset});
      } else {
        steps[axis].push_back({regular, regular, regular});
      }
    }
  }
  coords.resize(std::size_t{3} * GetSize());
  float* out = coords.data();
  for (const Vector3& z : steps[2]) {
    for (const Vector3& y : steps[1]) {
      if (lattice.is_oriented) {
        for (const Vector3& x : steps[0]) {
          *out++ = x[0] + y[0] + z[0] + mid[0];
          *out++ = x[1] + y[1] + z[1] + mid[1];
          *out++ = x[2] + y[2] + z[2] + mid[2];
        }
      } else {
        for (const Vector3& x : steps[0]) {
          *out++ = x[0];
          *out++ = y[1];
          *out++ = z[2];
        }
      }
    }
  }
  return true;
}

bool VXBrioGrid::PackingTransform(int i, int j, int k, float& dx, float& dy, float& dz) const {
  if (!IsSpacingSet()) return false;
  const OrientedLattice lattice(*this);
  const Vector3 target =
      lattice.place(packed_index(i, lattice.dim[0]), packed_index(j, lattice.dim[1]),
                    packed_index(k, lattice.dim[2]));
  const Vector3 origin = lattice.place(0.0f, 0.0f, 0.0f);
  dx = target[0] - origin[0];
  dy = target[1] - origin[1];
  dz = target[2] - origin[2];
  return true;
}

bool VXBrioGrid::SpatialCoordToPacking(float x, float y, float z, int& i, int& j, int& k) const {
  if (!IsSpacingSet()) return false;
  const OrientedLattice lattice(*this);
  const Vector3 first = {
      detail::regular_coordinate(0.0f, lattice.dim[0], lattice.mid[0], lattice.spacing),
      detail::regular_coordinate(0.0f, lattice.dim[1], lattice.mid[1], lattice.spacing),
      detail::regular_coordinate(0.0f, lattice.dim[2], lattice.mid[2], lattice.spacing)};
  const Vector3 origin = detail::oriented(lattice.orientation, first, lattice.mid);
  const Vector3 d = {x - origin[0], y - origin[1], z - origin[2]};
  std::array<int, 3> packing{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float* v = lattice.orientation.data() + 3 * axis;
    const float dot = v[0] * d[0] + v[1] * d[1] + v[2] * d[2];
    const float length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    const double points = double{length} * lattice.dim[axis];
    packing[axis] = packing_number(double{dot} / points);
  }
  i = packing[0];
  j = packing[1];
  k = packing[2];
  return true;
}

}  // namespace VXCore
