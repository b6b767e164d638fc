/// \file
/// Gaussians evaluated on the points of a grid record, and grids folded back into Gaussians.
///
/// All kernels share one scheme. An item (one Gaussian) touches the lattice points in a ball around
/// its nearest point: the ball of integer offsets (a, b, c) with a^2 + b^2 + c^2 <= trunc(F^2),
/// F = |u| + reach/h, where h is the spacing and u the offset of the centre from that point in
/// spacings. The value at an offset is v*Tz[c]*Ty[b]*Tx[a], from tables built by recurrence in
/// single precision; no exponential is taken per point. Items go in the order of the array, and
/// each adds to what the grid holds.
///
/// Items whose box (centre +- reach) misses the grid touch nothing, nor do those whose centre or
/// reach is not a number, and those whose nearest point lies more than 65536 spacings beyond the
/// grid. Nothing is computed on a record without points, with more than 2^31 - 1 of them, or with a
/// spacing that is not above 0; the spacing counts, `inverse_spacing` is not read.
#ifndef VXGRID_GAUSSIAN_GAUSS_GRID_H
#define VXGRID_GAUSSIAN_GAUSS_GRID_H

#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// What a kernel computes, the `type` of the calls below.
namespace GaussGridType {
/// Sum of Gaussians times coefficient*d^2.
inline constexpr int RadialGaussians = 0;
/// Sum of Gaussians times coefficient*d^2 + offset, one of each per item.
inline constexpr int RadialGaussiansWithOffset = 1;
/// Sum of Gaussians.
inline constexpr int Sum = 2;
/// 1 minus the product of (1 - Gaussian).
inline constexpr int Product = 4;
/// Sum with its gradient, or the gradient of a weighted sum by the items' centres.
inline constexpr int SumAndDerivatives = 6;
/// Product with its gradient.
inline constexpr int ProductAndDerivatives = 8;
/// A value per item spread over the grid.
inline constexpr int NormalisedSmear = 10;
/// A 3-vector per item gathered from the grid.
inline constexpr int AtomGradient = 12;
/// A number per item gathered from the grid.
inline constexpr int AtomRadialSum = 14;
}  // namespace GaussGridType

/// Evaluates `count` items on a grid, or gathers from it.
///
/// With null `widths` and `prefactors` the items are Gsphere records, each reaching to its
/// `radius`; a radius of exactly 0 is first set, in the record, to vi_gauss_rad of it. Otherwise
/// they are PdbStruct records with a width and a prefactor each, reaching to vi_gauss_rad at
/// `cutoff`; when just one of the two arrays is null nothing is done.
///
/// With G the value of an item at a point, D = 2*width*(centre - point) its logarithmic derivative
/// there, and N the number of points:
///
/// - type 2: g += G.
/// - type 4: g = 1 - product of (1 - G), whatever the grid held.
/// - type 6: as 2, and d/dx, d/dy, d/dz are added to the planes at N, 2N, 3N; the buffer holds 4N.
///   With `weights` and `gradient`: gradient[3i + axis] += sum of G*weight/2*D, and the grid is not
///   written.
/// - type 8: as 4, with the gradient in the three further planes, which come in as zeros.
/// - type 10: values[i] is spread, trilinear over the cell around the item times G of width*cutoff
///   around the cell's low corner, in all a sum of values[i].
/// - type 12: values[3i + axis] += sum of g*G*D.
/// - type 14: values[i] = sum of 2*width*d^2*g*G.
///
/// Any other type computes nothing. An item that reaches no further than its nearest point (F below
/// 1) touches that point alone, if it lies in the grid: types 8, 12, 14 then leave it out; the
/// gradient of type 6 comes without a factor 1/h and that of the weighted form without the half
/// and a factor 2/h. In type 10 the share of a corner beyond the grid goes to the nearest point
/// within, widths (of records too) are multiplied by `cutoff` for the time of the call and then by
/// 1/cutoff, and the reach is that of the width as given.
///
/// `weights` (one per grid point) or `gradient` (three doubles per item) with a type other than 6
/// is refused with the warning "When weights, grad are passed to vi_gauss_grid, please use grid
/// type SumAndDerivatives. Stopping and exiting now.", and nothing is touched. The first argument
/// is not used.
VXGRID_API void vi_gauss_grid(int unused, int count, void* items, float* widths, float* prefactors,
                              float cutoff, int type, GridStruct grid, float* values,
                              const float* weights, double* gradient);

/// Types 0 to 8 for plain arrays: coords[3*count], a width and a prefactor per item, reaching to
/// vi_gauss_rad at `cutoff`. Types 2, 4, 6 and 8 are those of vi_gauss_grid.
///
/// Types 0 and 1 add (P + f*(d^2 - d0^2))*G at the distance d, d0 being that of the nearest point:
/// in type 0 P = coefficients[i]*d0^2 and f = 1, so that coefficients of 1 give d^2*G; in type 1
/// P = coefficients[i]*d0^2 + offsets[i] and f = coefficients[i]. An item that touches one point
/// alone adds P*G in type 0 and G in type 1.
///
/// Announces the type at level Info, before any work; type 1 and types without a name are silent.
VXGRID_API void vi_gauss_grid_tegs(int count, float* coords, float* widths, float* prefactors,
                                   float cutoff, int type, GridStruct* grid, float* coefficients,
                                   float* offsets);

}  // namespace VXCore

#endif
