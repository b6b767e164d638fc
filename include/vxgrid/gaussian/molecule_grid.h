/// \file
/// Molecules as sums, or products of complements, of one Gaussian per atom on a grid.
///
/// Each atom has the prefactor 2.7, the width of its radius and a reach to where it has fallen to
/// 0.001. Where no atom of a molecule has a radius above 0, radii by element stand in for them
/// (H 1.0, C 1.7, N 1.65, O 1.6, ... , 1.9 for most others); the molecule itself is not changed.
/// An atom whose radius is 0 counts at its nearest point alone, with its full height.
#ifndef VXGRID_GAUSSIAN_MOLECULE_GRID_H
#define VXGRID_GAUSSIAN_MOLECULE_GRID_H

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {
class VXMolBase;
}

namespace VXCore {

class VXBrioGrid;

/// Adds the sum of the atoms' Gaussians to the selected float field of a grid. A grid of fewer than
/// two points is first sized around the molecule at `spacing` (Angstrom), 4 Angstrom beyond the
/// atom centres on each side (vx_set_grid_from_points); otherwise `spacing` is not read. Gives 1,
/// or 0 with the grid as it was for a molecule without atoms, a spacing that makes no grid, and a
/// grid without such a field.
VXGRID_API int vx_make_molecular_gaussian_grid(const VXMol::VXMolBase& mol, float spacing,
                                               VXBrioGrid& grid);

/// The same for 1 minus the product of (1 - Gaussian), which replaces what the grid held.
VXGRID_API int vx_make_molecular_product_gaussian_grid(const VXMol::VXMolBase& mol, float spacing,
                                                       VXBrioGrid& grid);

/// The sum, with `resolution` as the spacing of a grid that is to be sized, or the grid's own.
/// False where vx_make_molecular_gaussian_grid gives 0.
VXGRID_API bool VXMakeMolecularGaussianGrid(VXBrioGrid& grid, const VXMol::VXMolBase& mol);
VXGRID_API bool VXMakeMolecularGaussianGrid(VXBrioGrid& grid, const VXMol::VXMolBase& mol,
                                            float resolution);

}  // namespace VXCore

#endif
