/// \file
/// The plain record view of a grid that the flat routines work on.
#ifndef VXGRID_GRID_GRID_STRUCT_H
#define VXGRID_GRID_GRID_STRUCT_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBrioGrid;

/// One float and one integer buffer on a regular lattice.
///
/// Element (i, j, k) is number i + xdim*(j + ydim*k) and lies at mid + (index - (dim-1)/2)*spacing
/// on each axis, in Angstrom. The record is passed by value; a copy shares the buffers, and
/// whoever fills it says who frees it. Buffers are blocks of malloc, one 32-bit word a point.
struct GridStruct {
  float* floats = nullptr;  ///< values, or null
  int* integers = nullptr;  ///< values, or null
  float xmid = 0;           ///< centre, Angstrom
  float ymid = 0;
  float zmid = 0;
  int xdim = 0;  ///< points along the axis
  int ydim = 0;
  int zdim = 0;
  float spacing = 0;          ///< distance of neighbouring points, Angstrom
  float inverse_spacing = 0;  ///< 1/spacing; left alone where spacing is exactly 0
  char* name = nullptr;       ///< title, or null; never owned by the routines below
};

/// Allocates `count` words for each named buffer, without clearing them; a count below 1 means
/// xdim*ydim*zdim. Gives 1, or 0 with the named buffers null when there is nothing to allocate or
/// no memory for it. Earlier buffers are not freed.
VXGRID_API int vx_allocate_grid_struct(GridStruct& grid, bool integers, bool floats, int count);

/// Frees the named buffers and sets them to null. Gives 1.
VXGRID_API int vx_deallocate_grid_struct(GridStruct& grid, bool integers, bool floats);

/// Resizes the named buffers to `count` words, of which new ones are not cleared; a count below 1
/// means xdim*ydim*zdim. Gives 1, or 0 with the buffers as they were when there is no memory.
VXGRID_API int vx_reallocate_grid_struct(GridStruct& grid, int count, bool integers, bool floats);

/// Fills `count` words of each named buffer that is not null with zero; a count below 1 means
/// xdim*ydim*zdim. Gives 1.
VXGRID_API int vx_zero_grid_struct(GridStruct& grid, bool integers, bool floats, int count);

/// True when x*y or x*y*z is above 2147483647; false when any dimension is 0.
VXGRID_API bool vx_grid_struct_overflow(int x, int y, int z);
VXGRID_API bool vx_grid_struct_overflow(const GridStruct& grid);

/// Fills the record from a grid: geometry, and copies of the selected float and integer fields in
/// fresh buffers where the grid has values. `name` is not touched. The caller frees the buffers
/// with vx_deallocate_grid_struct. Gives 1, or 0 when there is no memory.
VXGRID_API int vx_convert_grid_object_to_grid_structure(GridStruct& out, const VXBrioGrid& grid);

/// Gives a grid the record's title (where `name` is not null), geometry, and the values of the
/// buffers that are not null, as field 0 of floats and integers. False when a dimension is
/// negative or the grid cannot take the size.
VXGRID_API bool VXConvertGridStructureToGridObject(VXBrioGrid& out, const GridStruct& grid);

}  // namespace VXCore

#endif
