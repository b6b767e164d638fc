/// \file
/// Integer handles to grids, for callers that cannot hold a pointer.
#ifndef VXGRID_GRID_GRID_HANDLES_H
#define VXGRID_GRID_GRID_HANDLES_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {
class VXBrioGrid;
}

namespace VXBrioMol {

/// Gives a grid a handle, a number above 0. The table does not own the grid, and the grid has to
/// outlive the handle. A null grid gives 0. Safe from any thread, like the two below.
VXGRID_API int VXMakeGridHandle(VXCore::VXBrioGrid* grid);

/// Takes the handle back; its number is not given out again. Unknown numbers do nothing.
VXGRID_API void VXFreeGridHandle(int handle);

/// The grid of a handle, null for a number that is no handle.
VXGRID_API VXCore::VXBrioGrid* VXDerefGridHandle(int handle);

}  // namespace VXBrioMol

namespace VXCore {
using VXBrioMol::VXDerefGridHandle;
using VXBrioMol::VXFreeGridHandle;
using VXBrioMol::VXMakeGridHandle;
}  // namespace VXCore

#endif
