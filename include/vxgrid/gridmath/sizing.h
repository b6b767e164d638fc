/// \file
/// Grid records sized from points and atoms.
#ifndef VXGRID_GRIDMATH_SIZING_H
#define VXGRID_GRIDMATH_SIZING_H

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// How vi_make_grid is to size a grid from atoms. Lengths are in Angstrom; what ends in `_set` or
/// `_given`, and `sized`, is true when it is not 0.
struct center_size {
  float x_extent = 0;  ///< fixed extent of the grid
  float y_extent = 0;
  float z_extent = 0;
  char reserved[12] = {};  ///< not read
  int x_border = 0;        ///< buffer points on each side of the axis
  int y_border = 0;
  int z_border = 0;
  float x_buffer = 0;  ///< buffer width on each side
  float y_buffer = 0;
  float z_buffer = 0;
  int centre_set = 0;     ///< the mid of the grid is already fixed
  int sized = 0;          ///< sized before: only the rounding of the dimensions is applied
  int dims_given = 0;     ///< the dimensions of the grid were given by the caller
  int extent_given = 0;   ///< the extents above are valid
  int spacing_given = 0;  ///< the spacing of the grid is valid
};
static_assert(sizeof(center_size) == 68, "the record is laid out in 32-bit words");

/// Clears `centre_set` and `sized`; with `full` 1 also everything that stands before them.
VXGRID_API void vi_clear_cen_size(center_size* record, int full);

/// Sizes a grid around `points[3*count]` at a spacing, with a buffer in Angstrom on both sides of
/// each axis: mid at the middle of the points, dim = 3 + trunc((length + 2*buffer)/spacing). Both
/// buffers of the record become null, unfreed. Gives 1, or 0 with the record as it was for zero
/// spacing, no points, and a dimension that is no int above 0.
VXGRID_API int vx_set_grid_from_points(float* points, int count, float x_buffer, float y_buffer,
                                       float z_buffer, float spacing, GridStruct* grid);

/// Sizes a grid around atoms under the rules of a `center_size`, with dimensions of a multigrid:
/// 1 plus a multiple of 16 when any dimension is above 80, of 8 above 40, of 4 above 20, else of 2;
/// `levels` gets 5, 4, 3, 2 of these, and may be null.
///
/// `radii[count]` are Angstrom; a null array counts as all 0. Atoms of radius 0 are left out,
/// except that with `keep_all` they count for the centre. `probe` widens the box of the atoms,
/// twice when the name of the grid begins with "accessible". Mid (unless `centre_set` was set),
/// spacing, its inverse and the dimensions are stored, and `centre_set` and `sized` become 1.
/// Buffers are not touched. The first argument is not used.
///
/// What is given decides the rest:
/// - dimensions and extents: the spacing is the largest extent/(dim-1), with the warning "Grid
///   dimensions inconsistent with volume specifications!!\n" when they differ by more than 0.0001,
///   and "Grid spacing set to %f";
/// - dimensions alone: the spacing in which the box fits, with the warning "Grid constructed with
///   dimensions but no spacing or extents.";
/// - spacing: dimensions from the box; spacing and extents: dimensions from the extents.
///
/// The call ends with the record as it was when a box of atoms is asked for and no atom has a
/// radius, and when a dimension comes out below 1 or above what an int takes, or the spacing
/// not finite.
VXGRID_API void vi_make_grid(int unused, center_size* size, GridStruct* grid, PdbStruct* atoms,
                             float* radii, int count, float probe, int* levels, int keep_all);

/// The element in the middle of a grid, the lower one of two on an even axis.
VXGRID_API int vx_grid_struct_midpoint(GridStruct* g);

}  // namespace VXCore

#endif
