/// \file
/// Small operations on one record: copies, fills, limits, central blocks, forward differences.
#ifndef VXGRID_GRIDMATH_ARITHMETIC_H
#define VXGRID_GRIDMATH_ARITHMETIC_H

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Copies geometry, and the name (as a malloc block of `to`) when it is not empty. With
/// `with_floats` 1 `to` also gets a float buffer of its own with the values, null when `from` has
/// none or there is no memory; other numbers leave the buffers of `to` as they are. What `to` held
/// before is not freed. The first argument is not used.
VXGRID_API void vi_copy_grid(int unused, GridStruct* to, GridStruct from, int with_floats);

/// Makes `count` records empty: no buffers, no name, all numbers 0. Nothing is freed.
VXGRID_API void vi_clear_grid(GridStruct* g, int count);

/// All floats to `value`.
VXGRID_API void vi_constant_grid(GridStruct g, float value);

/// All values of both buffers to 0, where they are not null.
VXGRID_API void vi_zero_grid(GridStruct g);

/// The coordinates of the first and the last point on each axis, Angstrom. Gives 1. A null output
/// is left out.
VXGRID_API int vi_get_grid_limits(GridStruct g, float* xlo, float* xhi, float* ylo, float* yhi,
                                  float* zlo, float* zhi);

/// Prints "grid extents are: %f to %f, %f to %f, %f to %f\n" through vx_printf. Gives 1.
VXGRID_API int vi_print_grid_limits(GridStruct g);

/// Fills `to` with the centred block of `from`: on each axis the block begins at
/// (from.dim - to.dim)/2 in whole numbers. Floats are copied, and integers too when both have
/// them. Points of `to` beyond `from` stay.
VXGRID_API void vi_simple_grid_remap(GridStruct to, GridStruct from);

/// Moves the centred x * y * z block of a grid to the front of its own buffers, by the same rule;
/// the caller then sets the dimensions. New dimensions above the old ones, or below 1, do nothing.
VXGRID_API void vi_simple_one_grid_remap(GridStruct g, int x, int y, int z);

/// Fills planes 1, 2, 3 of a buffer of four (each of xdim*ydim*zdim floats) with the forward
/// differences (next - this)/spacing of plane 0 along x, y, z. The last point of an axis repeats
/// the one before; an axis of one point has 0. Gives 1, or 0 for a null record or buffer and for
/// zero spacing.
VXGRID_API int vi_add_simple_gradients_to_grid(GridStruct* g);

}  // namespace VXCore

#endif
