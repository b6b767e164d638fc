/// \file
/// Clearing grid points by a rule, and marking the points inside spheres.
#ifndef VXGRID_GRIDMATH_MASKS_H
#define VXGRID_GRIDMATH_MASKS_H

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBrioGrid;

/// \name Mask types
/// What a mask value m does to a grid value g at a threshold t. A value equal to the threshold
/// leaves g alone.
///@{
inline constexpr unsigned int mask_gaussian = 4;                 ///< g = 0 where m > t
inline constexpr unsigned int mask_gaussian_inverse = 5;         ///< g = 0 where m < t
inline constexpr unsigned int mask_gaussian_smooth = 6;          ///< g * exp(-m*t)
inline constexpr unsigned int mask_gaussian_smooth_inverse = 7;  ///< g * (1 - exp(-m*t))
///@}

/// Applies `mask[count]` to `values[count]` by one of the mask types at the threshold 0.5. The two
/// arrays may be the same, but not overlap in part. False, with nothing changed, for any other type
/// and for a null array.
VXGRID_API bool VXMaskGridValues(float* values, const float* mask, unsigned int count,
                                 unsigned int type);

/// Clears the values of all float fields in use that are above ("value+") or below ("value-")
/// `value`. Gives 1, or 0 with nothing changed for any other type.
VXGRID_API int vx_mask_grid(VXBrioGrid& g, float value, const char* type);

/// Clears the values of all float fields in use where the same element of `other` is above
/// ("grid+") or below ("grid-") `value`. Gives 1, or 0 with nothing changed for any other type and
/// when `other` has fewer fields or values than the grid.
VXGRID_API int vx_mask_grid(VXBrioGrid& g, const VXBrioGrid& other, float value, const char* type);

/// Marks the points of a grid that lie inside spheres, strictly: `integers[point]` becomes the
/// item's number counted from 1 and `floats[point]` becomes `value`, each where the record has the
/// buffer. Later items overwrite earlier ones.
///
/// | kind                    | items of `spheres`     | radius                                |
/// |-------------------------|------------------------|---------------------------------------|
/// | "atoms"                 | PdbStruct              | probe + radii[i]; null `radii`: probe |
/// | "spheres"               | four floats x, y, z, r | probe + r                             |
/// | "points", "coordinates" | three floats           | as for "atoms"                        |
/// | "doubles"               | none are read          | marks nothing                         |
///
/// The first plane of each axis, index 0, is never marked. Gives 1; 0 with the warning "no such
/// sphere type as %s\n" for another kind.
VXGRID_API int vi_map_spheres_to_grid(void* spheres, const char* kind, float* radii,
                                      GridStruct grid, float probe, int count, float value);

/// Sizes a record around spheres and marks the points strictly inside them with 1 in a fresh
/// integer buffer (a malloc block; one that the record had is freed first).
///
/// | kind | items          | radius for the size                      | radius for the marks |
/// |------|----------------|------------------------------------------|----------------------|
/// | 1    | PdbStruct      | probe + radii[i], probe for null `radii` | the same             |
/// | 2, 3 | three floats   | the same                                 | probe                |
/// | 4    | x, y, z, r     | probe + r                                | probe + r            |
/// | 5    | three doubles  | as for 1                                 | probe                |
///
/// The box of the items is widened by another probe + `buffer` on all sides; the mid is its centre,
/// and dim = 3 + 2*trunc(half length/spacing). Gives 1, also with zero spacing, which prints the
/// warning "cant have a grid of zero spacing!\n" and leaves the record alone. Gives 0 and leaves
/// the record alone for an unknown kind, no items, and a box whose grid has more than 2^31 - 1
/// points or finds no memory. The first argument is not used.
VXGRID_API int vi_sph_to_grid(int unused, void* spheres, float* radii, int count, float probe,
                              GridStruct* grid, float spacing, float buffer, int kind);

}  // namespace VXCore

#endif
