/// \file
/// Adding, subtracting and pasting grids whose lattices coincide.
#ifndef VXGRID_GRIDMATH_MERGE_H
#define VXGRID_GRIDMATH_MERGE_H

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Where the first point of `b` lies in the lattice of `a`, as indices of `a`, which may be outside
/// it. Gives 1; or 0 with the Warning "Can't add grid with different spacings." (they differ by
/// more than 1e-5) or "Grids are misaligned." (the mids are not a whole number of spacings apart,
/// to within 1e-5 of a spacing). A null output is left out.
VXGRID_API int vi_zero_offset(GridStruct a, GridStruct b, int* x, int* y, int* z);

/// Changes the floats of `to` where the points of `from` coincide with its own: mode 1 adds, 2
/// subtracts, 3 replaces, any other does nothing. Points of `to` beyond `from` stay. Gives 1; or 0
/// as vi_zero_offset does, with the Warning "Zero grid spacing!", and for a null record or buffer.
VXGRID_API int vi_merge_grids(GridStruct* to, GridStruct from, int mode);

/// vi_merge_grids with mode 1, 2, 3.
VXGRID_API int vi_add_grid(GridStruct* to, GridStruct from);
VXGRID_API int vi_sub_grid(GridStruct* to, GridStruct from);
VXGRID_API int vi_put_grid(GridStruct* to, GridStruct from);

}  // namespace VXCore

#endif
