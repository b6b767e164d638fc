/// \file
/// The outermost layer of points of a grid.
///
/// All work on the floats of the record, once for each point of the boundary: those with index 0 or
/// dim-1 on any axis. A null buffer or a dimension below 1 does nothing.
#ifndef VXGRID_GRIDMATH_BOUNDARY_H
#define VXGRID_GRIDMATH_BOUNDARY_H

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// The boundary to 0.
VXGRID_API void vi_Boundary0(GridStruct g);

/// The boundary to a value.
VXGRID_API void vi_Boundary_f0(GridStruct g, float value);

/// All points but the boundary to 0.
VXGRID_API void vi_Inner_f0(GridStruct g);

/// The boundary times a factor.
VXGRID_API void vi_scale_boundary(GridStruct g, float factor);

/// Prints element index and value of every boundary point with "%d %f\n" through vx_printf: the
/// first and the last z plane, then for each plane between them the rows at both ends of y and the
/// points at both ends of x.
VXGRID_API void vi_PrintBoundary(GridStruct g);

}  // namespace VXCore

#endif
