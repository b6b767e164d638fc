/// \file
/// Carrying the values of one grid onto the lattice of another.
#ifndef VXGRID_GRIDMATH_INTERPOLATE_H
#define VXGRID_GRIDMATH_INTERPOLATE_H

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBrioGrid;
class VXScalarGrid;

/// Trilinear transfer of `from.floats` onto the points of `to.floats` that lie in the box of
/// `from`, its faces included, within 1e-4 of a cell of `from`. All other points stay. Orientations
/// are not looked at: a record has none.
///
/// With modes 0 and 2 every such point is written, with mode 1 only those with indices 1 to dim-2
/// on every axis; 3, 4, 5 mean 0, 1, 2, and any other mode writes nothing. Two grids of the same
/// box and the same dimensions hand the values over as they are.
VXGRID_API void vi_int_btw_grids(GridStruct to, GridStruct from, int mode);

/// vi_int_btw_grids with mode 2 on field 0 of both, then the tags of `from` are laid over those of
/// `to`. False when either has no values; geometry, title and type of `to` stay.
VXGRID_API bool VXInterpolateBetweenGrids(VXBrioGrid& to, const VXBrioGrid& from);
VXGRID_API bool VXInterpolateBetweenGrids(VXScalarGrid& to, const VXScalarGrid& from);

}  // namespace VXCore

#endif
