/// \file
/// Grids as fields of records.
///
/// The bytes of a grid are those of a GRD file, which has no tagged data. A scalar grid passes
/// through the oriented grid that such a file holds, and comes back over a window moved by one
/// spacing along each axis: its values stay at their places in space, but the first plane of each
/// axis is left behind, and its last plane and the points beyond are zero.
#ifndef VXGRID_SERIAL_GRID_FIELDS_H
#define VXGRID_SERIAL_GRID_FIELDS_H

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/pipe/record.h"

namespace VXPipe {

// "Chem.Grid", "Chem.GridVec", "Chem.SkewGrid" and "Chem.SkewGridVec".
extern template class VXFieldType<VXCore::VXScalarGrid>;
extern template class VXVectorFieldType<VXCore::VXScalarGrid>;
extern template class VXFieldType<VXCore::VXSkewGrid>;
extern template class VXVectorFieldType<VXCore::VXSkewGrid>;

/// A handler each, on the heap, the caller's to delete or to register. The library registers one of
/// each when it is loaded.
VXGRID_API VXFieldTypeHandler* VXInitGridFieldHandler();
VXGRID_API VXFieldTypeHandler* VXInitGridVecFieldHandler();
VXGRID_API VXFieldTypeHandler* VXInitSkewGridFieldHandler();
VXGRID_API VXFieldTypeHandler* VXInitSkewGridVecFieldHandler();

/// Sets the field to the bytes of the grid, also where a field of another type has the name; true.
VXGRID_API bool VXSetGridValue(VXRecord& record, const VXField<VXCore::VXScalarGrid>& field,
                               const VXCore::VXScalarGrid& grid);
VXGRID_API bool VXSetGridValue(VXRecord& record, const VXField<VXCore::VXSkewGrid>& field,
                               const VXCore::VXSkewGrid& grid);

/// Reads the field into the grid; false when it is not there, has another type or holds no grid.
VXGRID_API bool VXGetGridValue(const VXRecord& record, const VXField<VXCore::VXScalarGrid>& field,
                               VXCore::VXScalarGrid& grid);
VXGRID_API bool VXGetGridValue(const VXRecord& record, const VXField<VXCore::VXSkewGrid>& field,
                               VXCore::VXSkewGrid& grid);

}  // namespace VXPipe

namespace VXCore {

using VXPipe::VXField;
using VXPipe::VXFieldTypeHandler;
using VXPipe::VXFieldTypeHandlerRegistry;
using VXPipe::VXGetGridValue;
using VXPipe::VXInitGridFieldHandler;
using VXPipe::VXInitGridVecFieldHandler;
using VXPipe::VXInitSkewGridFieldHandler;
using VXPipe::VXInitSkewGridVecFieldHandler;
using VXPipe::VXReadBuffer;
using VXPipe::VXRecord;
using VXPipe::VXSetGridValue;
using VXPipe::VXWriteBuffer;

}  // namespace VXCore

#endif
