/// \file
/// The lattice edge that a surface point lies on.
#ifndef VXGRID_SRC_FIELDGRIDS_LATTICE_EDGE_H
#define VXGRID_SRC_FIELDGRIDS_LATTICE_EDGE_H

#include <algorithm>  // for min
#include <array>      // for array
#include <cstddef>    // for size_t
#include <optional>   // for optional

#include "gridmath/record_lattice.h"

namespace VXCore::detail {

/// The edge from a lattice point, its base, to the next one along an axis, and the fraction of it
/// at which a surface point lies.
struct LatticeEdge {
  std::array<int, 3> base{};
  std::size_t axis = 0;
  float fraction = 0;
};

/// The edge of a point that lies on one, or near: that of the axis along which the point is
/// farthest from its cell's corner, the first of equal ones. Nothing for a point beyond the lattice
/// and at its upper end of that axis. `inverse_spacing` is 1/spacing as the record has it.
inline std::optional<LatticeEdge> edge_at(const RecordLattice& lattice, float inverse_spacing,
                                          const std::array<float, 3>& point) {
  constexpr float slack = 0.0001f;  // of a cell, by which a place may miss a lattice point
  LatticeEdge edge;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const auto intervals = static_cast<float>(lattice.dim[axis] - 1);
    const float f =
        (point[axis] + intervals * lattice.spacing / 2.0f - lattice.mid[axis]) * inverse_spacing;
    if (!(f + slack >= 0.0f && f - slack <= intervals)) return std::nullopt;
    const double last = lattice.dim[axis] - 1;
    edge.base[axis] = static_cast<int>(std::min<double>(f + slack, last));
    const float fraction = f - static_cast<float>(edge.base[axis]);
    if (axis == 0 || fraction > edge.fraction) {
      edge.axis = axis;
      edge.fraction = fraction;
    }
  }
  if (edge.base[edge.axis] > lattice.dim[edge.axis] - 2) return std::nullopt;
  return edge;
}

/// The factor 1/spacing of a record, also where it was not filled in.
inline float inverse_spacing_of(const GridStruct& g) {
  return g.inverse_spacing != 0.0f ? g.inverse_spacing : 1.0f / g.spacing;
}

}  // namespace VXCore::detail

#endif
