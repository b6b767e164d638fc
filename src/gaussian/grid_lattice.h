/// \file
/// Lattices that Gaussians can be evaluated on: given, viewed as a record, or made around points.
#ifndef VXGRID_SRC_GAUSSIAN_GRID_LATTICE_H
#define VXGRID_SRC_GAUSSIAN_GRID_LATTICE_H

#include <cstddef>  // for size_t

#include "gridmath/record_lattice.h"
#include "vxgrid/grid/grid_struct.h"

namespace VXCore {
class VXBrioGrid;
}  // namespace VXCore

namespace VXCore::detail {

/// True when there are points, no more than 2^31 - 1, and a spacing above 0.
inline bool is_usable(const RecordLattice& lattice) {
  return lattice.spacing > 0.0f && lattice.size() != 0;
}

/// A record of this geometry over values that stay their owner's.
GridStruct record_over(const RecordLattice& lattice, float* values);

/// Sizes a grid around `n` points of three floats: mid at the middle of their box, and points to
/// `reach` (Angstrom) beyond it. False, with the grid as it was, when that makes no grid.
bool size_around_points(VXBrioGrid& grid, const float* points, std::size_t n, float reach,
                        float spacing);

}  // namespace VXCore::detail

#endif
