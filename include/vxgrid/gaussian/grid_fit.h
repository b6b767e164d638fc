/// \file
/// Grids as small sets of Gaussians, by a greedy fit.
#ifndef VXGRID_GAUSSIAN_GRID_FIT_H
#define VXGRID_GAUSSIAN_GRID_FIT_H

#include <vector>  // for vector

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {
class VXMolBase;
}

namespace VXCore {

class VXBrioGrid;
class VXGaussianContainerBase;
class VXScalarGrid;

/// Matching pursuit (Mallat & Zhang, IEEE Trans. Signal Process. 1993, 41, 3397, doi
/// 10.1109/78.258082) over Gaussians of `levels` widths centred on grid points: those of spheres of
/// start_radius, start_radius - radius_step, ... (Angstrom) under the prefactor 2.7.
///
/// The response of a point at a level is the integral of the grid times the level's Gaussian there,
/// made to unit norm: what of the grid's norm it would take away. Again and again the point and
/// level with the largest response become a Gaussian, and its overlap with the others is taken off
/// their responses. Only responses that were above 0.85 of a threshold when this was set are looked
/// at; when none of them is above it any more, the threshold drops by that factor, as often as it
/// takes to find one.
///
/// Negative values of `grid` are set to 0, which changes the grid; centres lie where its values are
/// above `mask_threshold`. `cutoff` is the fall at which Gaussians end. The fit stops when nothing
/// is left or the largest response by magnitude is negative, when there are `max_gaussians` (at
/// least one is made), or, unless `run_to_limit`, when a Gaussian, the last to be kept, takes less
/// than `stop_gain` off the energy, h^3 times the sum of the squares of what is left; and on a
/// lattice so coarse that Gaussians end before the next point.
///
/// 0 stands for cutoff 0.004, mask_threshold 0.01, levels 3, start_radius 3.2, radius_step 1.0.
/// `fitted` becomes the sum of the Gaussians on the same lattice; `coords` (three per Gaussian),
/// `prefactors` and `widths` are filled in the order of the fit unless `fill_vectors` is false.
/// Levels whose radius is not above 0 are left out, as are those past the hundredth. Gives 1; a
/// grid without values or spacing has no Gaussians.
VXGRID_API int vx_make_grid_gaussian_representation(
    VXBrioGrid& grid, float cutoff, float mask_threshold, float stop_gain, int run_to_limit,
    int levels, float start_radius, float radius_step, int max_gaussians,
    std::vector<float>& coords, std::vector<float>& prefactors, std::vector<float>& widths,
    bool fill_vectors, VXBrioGrid& fitted);

/// The fit of a grid, which is not changed, or of the sum of a molecule's Gaussians at 0.5 Angstrom
/// (VXMakeMolecularGaussianGrid), with cutoff 0.01 and otherwise the standard settings. The
/// container is cleared and gets a VXGaussian of colour 0 for each. True when it is then not empty.
VXGRID_API bool VXMakeGaussianRepresentation(VXGaussianContainerBase& c,
                                             const VXMol::VXMolBase& mol, float stop_gain,
                                             unsigned int levels, unsigned int max_gaussians);
VXGRID_API bool VXMakeGaussianRepresentation(VXGaussianContainerBase& c, const VXScalarGrid& grid,
                                             float stop_gain, unsigned int levels,
                                             unsigned int max_gaussians);

}  // namespace VXCore

#endif
