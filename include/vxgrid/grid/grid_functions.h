/// \file
/// Small questions and changes that are the same for all grid classes.
#ifndef VXGRID_GRID_GRID_FUNCTIONS_H
#define VXGRID_GRID_GRID_FUNCTIONS_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBase;
class VXBrioGrid;
class VXScalarGrid;
class VXSkewGrid;

/// True for a VXScalarGrid, a VXSkewGrid or a VXBrioGrid.
VXGRID_API bool VXIsGrid(const VXBase& object);

/// True when some value is below or above 0; not-a-number is neither. False without values.
VXGRID_API bool VXGridHasNonZeroValue(const VXBrioGrid& grid);
VXGRID_API bool VXGridHasNonZeroValue(const VXScalarGrid& grid);
VXGRID_API bool VXGridHasNonZeroValue(const VXSkewGrid& grid);

/// Sets the six outer planes to 0: first and last along x, y and z. False when a scalar grid has no
/// values; the other form works on float field 0 and is always true.
VXGRID_API bool VXClearGridBoundary(VXScalarGrid& grid);
VXGRID_API bool VXClearGridBoundary(VXBrioGrid& grid);

/// Centre and full extents of the grid along x, y, z, Angstrom, three floats each.
///
/// Without an orientation: the mid, and dim*spacing on each axis, half a spacing beyond the outer
/// points; without a spacing the extents are left as they were. With one: the box of the eight
/// corner points, each moved by +spacing along x, y and z, a shift that the centre keeps; nothing
/// is written when a dimension is 0.
VXGRID_API void VXGetCenterAndExtents(const VXBrioGrid& grid, float* center, float* extents);
VXGRID_API void VXGetCenterAndExtents(const VXSkewGrid& grid, float* center, float* extents);

/// Gives a grid this spacing and mid and trunc((extent + 1e-5)/spacing + 1) points on each axis.
/// False when center or extents is null, the spacing is 0, a dimension is beyond 2^24 either way
/// (Warning "Unable to make dimension from extent because of ..."), or the grid cannot take the
/// size. A scalar grid also loses its type.
VXGRID_API bool VXMakeGridFromCenterAndExtents(VXBrioGrid& grid, const float* center,
                                               const float* extents, float spacing);
VXGRID_API bool VXMakeGridFromCenterAndExtents(VXScalarGrid& grid, const float* center,
                                               const float* extents, float spacing);

}  // namespace VXCore

#endif
