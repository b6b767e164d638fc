/// \file
/// Real-space correlation and residual of a model against a map.
///
/// Observed and calculated density are compared over the points of a regular sub-grid around the
/// model that lie within `radius` (Angstrom) of an atom; hydrogens do not count. With o and c the
/// two densities at the n points,
///
///     RSCC = (n sum oc - sum o sum c) / sqrt((n sum c^2 - (sum c)^2)(n sum o^2 - (sum o)^2)),
///     RSR  = sum |c - o| / sum |o + c|
///
/// (Jones et al., Acta Cryst. A47, 110 (1991)), summed in double precision in element order.
/// VXGetEDSRadius gives the usual radius for a resolution.
///
/// A score is -1.0 after a failure: with the Warning "Masking the molecule failed (only one element
/// set)" when fewer than two points are near the model, and, for the correlation, with "RSCC: Empty
/// grid (perhaps missing symmetry information for molecule" when one of the densities does not
/// vary. A residual over empty densities is not a number.
///
/// The calculated density holds the model's symmetry mates (VXScatterToGrid). Their list starts
/// with the model's own place, so that the home copy counts twice where it lies on the grid.
#ifndef VXGRID_DENSITY_REAL_SPACE_SCORES_H
#define VXGRID_DENSITY_REAL_SPACE_SCORES_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXScalarGrid;
class VXSkewGrid;

/// \name Correlation
///@{
/// Against density calculated from the model itself at a spacing of 0.5. A molecule without residue
/// data cannot be calculated (see VXMakeGaussianScatterGrid); the map is compared with itself then.
VXGRID_API double VXRSCC(const VXSkewGrid& grid, const VXMolBase& mol, double radius);
VXGRID_API double VXRSCC(const VXScalarGrid& grid, const VXMolBase& mol, double radius);
/// Between two maps, over the points near the model.
VXGRID_API double VXRSCC(const VXSkewGrid& obs, const VXSkewGrid& calc, const VXMolBase& mol,
                         double radius);
VXGRID_API double VXRSCC(const VXScalarGrid& obs, const VXScalarGrid& calc, const VXMolBase& mol,
                         double radius);
/// Between the densities of two models, over the points near the first.
VXGRID_API double VXRSCC(const VXMolBase& mol1, const VXMolBase& mol2, double radius);
///@}

/// \name Residual, in the same forms
///@{
VXGRID_API double VXRSR(const VXSkewGrid& grid, const VXMolBase& mol, double radius);
VXGRID_API double VXRSR(const VXScalarGrid& grid, const VXMolBase& mol, double radius);
VXGRID_API double VXRSR(const VXSkewGrid& obs, const VXSkewGrid& calc, const VXMolBase& mol,
                        double radius);
VXGRID_API double VXRSR(const VXScalarGrid& obs, const VXScalarGrid& calc, const VXMolBase& mol,
                        double radius);
VXGRID_API double VXRSR(const VXMolBase& mol1, const VXMolBase& mol2, double radius);
///@}

/// \name Correlation that leaves its grids on the (first) molecule
/// As VXScalarGrid data: "scatter", the calculated density, 0 outside the mask; "mask", 2 inside
/// and 0 outside; "ed", the observed density.
///@{
VXGRID_API double VXAnnotateRSCC(const VXSkewGrid& grid, VXMolBase& mol, double radius);
VXGRID_API double VXAnnotateRSCC(const VXScalarGrid& grid, VXMolBase& mol, double radius);
VXGRID_API double VXAnnotateRSCC(const VXSkewGrid& obs, const VXSkewGrid& calc, VXMolBase& mol,
                                 double radius);
VXGRID_API double VXAnnotateRSCC(const VXScalarGrid& obs, const VXScalarGrid& calc, VXMolBase& mol,
                                 double radius);
VXGRID_API double VXAnnotateRSCC(VXMolBase& mol1, const VXMolBase& mol2, double radius);
///@}

/// \name Scores residue by residue
/// Each residue is scored by itself between the two maps; its atoms get the score as the float
/// datum "rscc" or "rsr", -1 after a failure, which does not stop the loop. The tracer hears of
/// every residue, counted from 0. Where no calculated map is given it is made of the whole molecule
/// on the lattice of the observed one, so that a residue's neighbours and the crystal's mates are
/// in it.
///@{
VXGRID_API void VXResidueRSCC(const VXSkewGrid& grid, VXMolBase& mol, double radius,
                              VXTracerBase& tracer);
VXGRID_API void VXResidueRSCC(const VXSkewGrid& obs, const VXSkewGrid& calc, VXMolBase& mol,
                              double radius, VXTracerBase& tracer);
VXGRID_API void VXResidueRSR(const VXSkewGrid& grid, VXMolBase& mol, double radius,
                             VXTracerBase& tracer);
VXGRID_API void VXResidueRSR(const VXSkewGrid& obs, const VXSkewGrid& calc, VXMolBase& mol,
                             double radius, VXTracerBase& tracer);
///@}

}  // namespace VXCore

#endif
