/// \file
/// Which spheres cover a grid point, looked up by one index per point.
///
/// A proximity grid has in `integers[point]` the position of the point's run in a list, or 0 where
/// no sphere covers the point. A run names the covering items, counted from 0 and in ascending
/// order. The next 0 behind its first entry ends it, or the end of the list:
///
///     for (std::size_t at = first; at == first || (at < list.size() && list[at] != 0); ++at)
///       use(list[at]);
///
/// The kinds of items, with their radii in Angstrom:
///
/// | kind | items          | radius                                  |
/// |------|----------------|-----------------------------------------|
/// | 1    | PdbStruct      | probe + radii[i], probe for null `radii` |
/// | 2, 3 | three floats   | the same                                |
/// | 4    | x, y, z, r     | probe + r                               |
/// | 5    | three doubles  | vx_get_proximity_list only              |
///
/// A sphere covers the points strictly inside it, save those of index 0 on any axis: that is the
/// ball of vi_map_spheres_to_grid.
#ifndef VXGRID_FIELDGRIDS_PROXIMITY_H
#define VXGRID_FIELDGRIDS_PROXIMITY_H

#include <vector>  // for vector

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Sizes a record around spheres and fills it and the list: the box of the spheres is widened by
/// probe + `buffer` on all sides, the mid is its centre, and dim = 3 + 2*trunc(half
/// length/spacing).
///
/// The integer buffer is a fresh malloc block, an earlier one is freed; `floats` is left alone,
/// whatever its size. Gives 1, also with zero spacing, which prints "Cant have a grid of zero
/// spacing!\n" and leaves all as it was. Gives 0 with a grid of zeros, and the list as it was, when
/// no sphere covers a point, or when the runs are too long for positions of an int. Gives 0 and
/// leaves all as it was for an unknown kind, no items, a negative spacing, and a box whose grid has
/// more than 2^31 - 1 points or finds no memory. The first argument is not used.
VXGRID_API int vx_make_proximity_grid(int unused, void* items, float* radii, int count, float probe,
                                      GridStruct* grid, float spacing, float buffer, int kind,
                                      std::vector<int>& list);

/// The same on a record whose mid, dimensions and spacing stand, for spheres of kind 2 that may
/// reach beyond it, and without the points strictly inside a second set of spheres of kind 2, those
/// of `mask_coords`. A null `radii` or `mask_radii` leaves the probe alone as the radius.
///
/// Stores the inverse spacing, replaces the integer buffer, and sets the float buffer, where there
/// is one, to 0. Results are those of vx_make_proximity_grid; 0 with all as it was for a record
/// without points, with more than 2^31 - 1 of them, or with a negative spacing. No spheres give a
/// grid of zeros and 0.
VXGRID_API int vx_make_masked_and_boxed_proximity_grid(float* coords, float* radii, int count,
                                                       float probe, float* mask_coords,
                                                       float* mask_radii, int mask_count,
                                                       float mask_probe, GridStruct* grid,
                                                       std::vector<int>& list);

/// Reads a proximity grid at `count` points of a kind into `values[count]`: the entry of the node
/// in whose cell of one spacing the point lies, lower faces included; 0 beyond the cells of the
/// grid. Fills in the inverse spacing where it is 0. Gives 1; 0 with `values` all 0 for an unknown
/// kind, null `points` and a record without points, integers or a spacing above 0.
VXGRID_API int vx_get_proximity_list(void* points, int count, GridStruct* grid, int kind,
                                     int* values);

}  // namespace VXCore

#endif
