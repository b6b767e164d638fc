/// \file
/// Spreading atom values onto a buffered grid and gathering them back.
///
/// A buffered grid has extra points on both sides of a core: `x_buffer` of them along x and
/// `y_buffer` along y, which its dimensions count. The lattice index of an atom is its index in the
/// core plus the buffer count, so that atoms beyond the core, down to the outermost points of the
/// buffer, count as well; those beyond are passed over. An atom touches the eight points of its
/// cell with trilinear weights. Atoms are taken in array order, and `mode` is not used.
#ifndef VXGRID_GRIDMATH_BUFFERED_GRID_H
#define VXGRID_GRIDMATH_BUFFERED_GRID_H

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Adds weight times `values[i]` to each of the points of atom i.
VXGRID_API void vi_add_from_atoms_to_buffered_grid(int mode, PdbStruct* atoms, int count,
                                                   float* values, GridStruct g, int x_buffer,
                                                   int y_buffer);

/// Adds the weighted sum of the points of atom i to `values[i]`: the transpose of the spreading.
VXGRID_API void vi_add_to_atoms_from_buffered_grid(int mode, PdbStruct* atoms, int count,
                                                   float* values, GridStruct g, int x_buffer,
                                                   int y_buffer);

/// Writes `value` to the points of every atom.
VXGRID_API void vi_put_constant_from_atoms_to_buffered_grid(int mode, PdbStruct* atoms, int count,
                                                            float value, GridStruct g, int x_buffer,
                                                            int y_buffer);

}  // namespace VXCore

#endif
