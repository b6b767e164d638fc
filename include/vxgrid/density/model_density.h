/// \file
/// The electron density of an atomic model on a grid, straight in real space.
#ifndef VXGRID_DENSITY_MODEL_DENSITY_H
#define VXGRID_DENSITY_MODEL_DENSITY_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXScalarGrid;
class VXSkewGrid;

/// Row of scatter_data for an atom, by atomic number and formal charge (see find_scatter_row); -1
/// for a dummy atom.
VXGRID_API int VXGetScatterType(const VXAtomBase* atom);

/// \name Flags of VXSetScatterDefaults: keep what is there where it is not 0
///@{
inline constexpr unsigned int scatter_keep_bfactor = 4;
inline constexpr unsigned int scatter_keep_occupancy = 8;
///@}

/// Sets the B-factor (Angstrom^2) and the occupancy of every atom, apart from what `flags` keep.
/// Atoms without residue data get some.
VXGRID_API void VXSetScatterDefaults(VXMolBase& mol, double bfactor, double occupancy,
                                     unsigned int flags);

/// Replaces the values of a grid by the electron density of the model and its crystal neighbours,
/// in electrons per Angstrom^3.
///
/// An atom's density is the Fourier transform of its scattering factor (see scatterT) times the
/// Debye-Waller factor exp(-B s^2), with its B-factor and occupancy Q:
///
///     rho(r) = sum over i of Q ai (4 pi t)^(3/2) exp(-4 pi^2 t r^2),  t = 1/(B + bi),
///
/// with the constant term as a fifth Gaussian of t = 1/B. It reaches to where the widest of the
/// five has fallen to 1/e. Density and reach of an atom with a B-factor of 0 are not defined, and
/// the values near it become not a number: VXSetScatterDefaults gives atoms a B-factor. Atoms
/// without a row in scatter_data add nothing.
///
/// Crystal neighbours come from VXExpandCrystalSymmetry on a copy of the molecule; where the
/// molecule and the grid have no symmetry the atoms stand alone. Nothing wraps around: only points
/// near an atom are touched. The lattice steps that bound the box around an atom are the cell edges
/// over their intervals, so that on a strongly skewed cell the box can cut the sphere.
///
/// False when the grid has no dimensions or no values.
VXGRID_API bool VXScatterToGrid(VXSkewGrid& grid, const VXMolBase& mol);
/// The same on a regular grid, which loses its type.
VXGRID_API bool VXScatterToGrid(VXScalarGrid& grid, const VXMolBase& mol);

/// Sizes a regular grid over the box of the atom centres, 2 Angstrom wider on every side, at
/// `spacing` (Angstrom), assigns it to the grid and runs VXScatterToGrid, whose result is not
/// looked at. False, with the Warning "Input molecule does not have residues, cannot retrieve
/// BFactors or Occupancies", for a molecule without residue data.
VXGRID_API bool VXMakeGaussianScatterGrid(VXSkewGrid& grid, const VXMolBase& mol, double spacing);
VXGRID_API bool VXMakeGaussianScatterGrid(VXScalarGrid& grid, const VXMolBase& mol, double spacing);

}  // namespace VXCore

#endif
