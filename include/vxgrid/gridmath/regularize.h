/// \file
/// Resampling a grid onto a plain axis-aligned lattice, over all or part of its extent.
///
/// Source and target must differ; where they are one grid, the result is false or 0 and nothing
/// changes. Wrapping identifies the last plane of the source with its first on every axis: the
/// period is dim-1 spacings.
#ifndef VXGRID_GRIDMATH_REGULARIZE_H
#define VXGRID_GRIDMATH_REGULARIZE_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBrioGrid;
class VXScalarGrid;
class VXSkewGrid;

/// A copy, tags included, of a grid without orientation when `spacing` is 0 or its own. Otherwise a
/// regular grid over its centre and extents (VXGetCenterAndExtents), wrapping when the grid is
/// reentrant. False as for VXMakeRegularSubGrid; and for a `spacing` of 0, with nothing changed,
/// when the box would have more than 2^24 points and more than 16 times those of the grid, as it
/// does where one cell edge is claimed to be sampled far more finely than the others.
VXGRID_API bool VXMakeRegularGrid(VXBrioGrid& out, const VXBrioGrid& in, float spacing);

/// The same of the grid below the skew grid; type and tags go along.
VXGRID_API bool VXMakeRegularGrid(VXScalarGrid& out, const VXSkewGrid& in, float spacing);

/// Resamples the box around `centre[3]` of full lengths `extents[3]`, in Angstrom, at `spacing` (0:
/// the source's). Values come from the selected float field of the source; points outside the
/// source are 0 unless it wraps, and all are where it has a single plane. The title goes along, and
/// of scalar and skew grids type and tags do too. False as for VXMakeGridFromCenterAndExtents, and
/// when the resampling fails.
VXGRID_API bool VXMakeRegularSubGrid(VXBrioGrid& out, const VXBrioGrid& in, const float* centre,
                                     const float* extents, float spacing, bool wrap);
VXGRID_API bool VXMakeRegularSubGrid(VXScalarGrid& out, const VXScalarGrid& in, const float* centre,
                                     const float* extents, float spacing, bool wrap);
VXGRID_API bool VXMakeRegularSubGrid(VXScalarGrid& out, const VXSkewGrid& in, const float* centre,
                                     const float* extents, float spacing, bool wrap);

/// Resamples a grid onto the lattice of `out`; an `out` of fewer than two points is sized first,
/// over the box of the source's corners at its spacing. Gives 1, or 0 as the function below. The
/// second form wraps.
VXGRID_API int vx_regularize_grid(const VXBrioGrid& in, VXBrioGrid& out);
VXGRID_API int vx_regularize_grid_reenterent(const VXBrioGrid& in, VXBrioGrid& out);

/// The resampling itself. The source is `values[dims[0]*dims[1]*dims[2]]`, x fastest, on a lattice
/// with its centre at `mid[3]`, bent by the nine floats of `orientation` (null: the identity) about
/// that centre. An `out` of fewer than two points is sized over the box of the eight points of
/// `corners[24]` at `spacing` around the source's mid.
///
/// Without `wrap` every point of `out` inside the source takes its trilinear value by the rules of
/// vi_map_to_atoms_from_grid, and the others are 0. With `wrap` the position is first brought into
/// the source by whole periods. There the position runs along a row of `out` by adding one step per
/// point, in single precision.
///
/// Gives 1. Gives 0, besides null arguments, with the Warnings "Grid dimensions too large for
/// memory size: %lu x %lu" and "Unable to regularize grid due to input grid signed integer
/// overflow: %i x %i x %i" (or "output grid") for a source or target of more than 2^31 - 1 points,
/// with the second alone for a source of none; silently when `out` cannot be sized, and, with `out`
/// cleared to 0, for a source that spans nothing on an axis or an orientation without inverse.
VXGRID_API int vx_regularize_grid_from_grid_params(VXBrioGrid& out, int wrap, const float* values,
                                                   const float* mid, const int* dims, float spacing,
                                                   const float* orientation, const float* corners);

/// Sizes `out` around `centre[3]` with half lengths `half_extents[3]` at `spacing` (0: the
/// source's) and resamples the grid onto it; the second form wraps. A null centre or null extents
/// leave the size of `out` as it is. Gives 1, or 0 when both spacings are 0 or the size does not
/// fit.
VXGRID_API int vx_make_regularized_subgrid(const VXBrioGrid& in, float* centre, float* half_extents,
                                           float spacing, VXBrioGrid& out);
VXGRID_API int vx_make_regularized_subgrid_reenterent(const VXBrioGrid& in, float* centre,
                                                      float* half_extents, float spacing,
                                                      VXBrioGrid& out);

/// Cuts the block of whole source points (of the selected float field, orientation aside) that the
/// box of `points[3*count]`, widened by `buffer` on all sides, covers; the low end takes the point
/// before the box. Gives 1. Gives 0 with the warning "minimum x of points is greater than original
/// grid\n" (y, z; then "maximum x of points is less than original grid\n", y, z) when the box
/// misses the source, and silently for no points, a source without values or spacing, and a buffer
/// that turns the box inside out.
VXGRID_API int vx_make_subgrid_that_encloses_points(const VXBrioGrid& in, const float* points,
                                                    int count, float buffer, VXBrioGrid& out);

}  // namespace VXCore

#endif
