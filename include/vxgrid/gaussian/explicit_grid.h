/// \file
/// Sums of Gaussians, round and ellipsoidal, from plain arrays onto a Brio grid.
///
/// A grid of fewer than two points is first sized around the items: the given spacing, the mid at
/// the middle of the centres, and per axis dim = 1 + trunc((length + 2*reach)/spacing), with the
/// largest reach of any item, from 0 values. It is left alone, and nothing is computed, when that
/// spacing is not above 0 or a dimension fits no int. A grid of two points or more keeps its
/// geometry, the sum is added to its selected float field, and `spacing` is not read. Orientation
/// plays no part.
#ifndef VXGRID_GAUSSIAN_EXPLICIT_GRID_H
#define VXGRID_GAUSSIAN_EXPLICIT_GRID_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBrioGrid;

/// Adds `count` Gaussians at coords[3*count] to a grid, over the balls of points of vi_gauss_grid.
///
/// `sizes_are_widths` 0: sizes are radii (Angstrom); an item reaches to its radius, its width is
/// 2.344229/radius^2. Otherwise sizes are widths, and an item reaches to where it would have fallen
/// to 0.001 if its prefactor were that of the item before it that was not left out as lying beyond
/// the grid (2.7 for the first): sqrt(ln(|q|/0.001)/width), 0 for |q| below 0.001.
///
/// Null `prefactors` are 2.7. Sizes that are not above 0 are left out.
VXGRID_API void vx_make_gaussian_grid_explicit(const float* coords, const float* sizes,
                                               const float* prefactors, int count, float spacing,
                                               VXBrioGrid& grid, int sizes_are_widths);

/// Adds Gaussians under a deformation: prefactor*exp(-width*|M d|^2) with M the nine floats of
/// `matrix`, row by row, d the distance vector and width = 2.344229/radius^2. The points are those
/// of the ball of the radius, so that a Gaussian that M stretches is cut off there.
///
/// Null `prefactors` are 2.7; otherwise a prefactor of 0 repeats the last one that was not 0 (2.7
/// before there is one). Radii that are not above 0 are left out.
VXGRID_API void vx_ellipsoid_gauss_grid(const float* coords, const float* radii,
                                        const float* prefactors, int count, float spacing,
                                        const float* matrix, VXBrioGrid& grid);

}  // namespace VXCore

#endif
