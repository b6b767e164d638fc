/// \file
/// What a finite-difference solver asks of a grid before it starts: whether the solute fits, which
/// points the solute covers, its charges, and the values that a half sweep works on.
#ifndef VXGRID_FIELDGRIDS_FINITE_DIFFERENCE_H
#define VXGRID_FIELDGRIDS_FINITE_DIFFERENCE_H

#include "vxgrid/fieldgrids/surface_records.h"
#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// How many spacings `n` atoms, each widened by `radii[i] + probe` (a null `radii`: by `probe`),
/// reach beyond the outermost points of a grid: for each axis the excess on the side where it is
/// the larger one, trunc(excess/spacing), to `x`, `y`, `z`, each of which may be null. An axis
/// beyond which nothing reaches has 0; what fits no int is 2147483647.
///
/// Gives 1; 0 with an excess of 0 for a spacing that is not above 0, a dimension below 1, and null
/// `atoms` of which there are to be some. `level`, of a multigrid, is not used: the excess counts
/// in spacings of the record, the finest level's.
VXGRID_API int vi_bound_check(PdbStruct* atoms, float* radii, GridStruct g, float probe, int n,
                              int level, int* x, int* y, int* z);

/// Adds charges to the floats of a record: charge i is `values[i]`, at the centre of `charges[i]`.
/// Each charge is conserved: what the points get sums up to it. A density of charge is the floats
/// divided by spacing^3.
///
/// With a `mode` of 0 a charge is smeared over the points strictly inside its sphere, those at a
/// distance d < r from the centre, by
///
///     q_point = q * w(d) / (sum of w over these points),  w(d) = 1 - d^2/r^2
///
/// which fades out towards the surface, so that a moving charge passes smoothly from point to
/// point. What lies beyond the grid gets nothing, and the points within share the whole charge.
///
/// With any other mode, and where no point lies inside the sphere, it is a point charge: the eight
/// points of its cell share it with trilinear weights, which also conserve the dipole moment. A
/// point charge beyond the outermost points, or on a grid with an axis of one point, is left out.
///
/// Nothing is done on a record without points, floats or a spacing above 0, and for null arrays.
VXGRID_API void vi_alias_charge_grid(GridStruct g, SphereStruct* charges, int count, float* values,
                                     int mode);

/// Copies every other value of the interior, the points with indices from 1 to dim-2 on all axes:
/// x = 1, 3, 5, ... when `odd` is not 0, otherwise x = 2, 4, 6, ..., in each row. They stand one
/// after the other in `out`, x fastest, z slowest. A `mode` of 0 copies the floats of the record
/// into `out`; any other copies `out` back into them.
VXGRID_API void vi_pack_half(GridStruct g, float* out, int mode, int odd);

/// Marks the points of a record that lie strictly inside `a` spheres, around `b` points and around
/// `c` atoms, in this order, each for itself where its array is not null and its number at least 1:
/// `integers[point]` becomes `d` and `floats[point]` becomes `e`, where the record has the buffer.
///
/// The radius is r + probe for spheres, `probe` for points, and radii[i] + probe (null `radii`:
/// `probe`) for atoms. As with vi_map_spheres_to_grid, the first plane of each axis is never
/// marked. Each array is announced by "mapping %d spheres to grid with probe radius of %f\n" (or
/// points, or atoms) through vx_printf.
VXGRID_API void vi_sph_to_grid2(SphereStruct* spheres, PntStruct* points, PdbStruct* atoms,
                                float* radii, GridStruct g, float probe, int a, int b, int c, int d,
                                float e);

}  // namespace VXCore

#endif
