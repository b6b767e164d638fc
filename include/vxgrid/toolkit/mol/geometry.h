/// \file
/// Where a molecule lies, and motions of it.
#ifndef VXGRID_TOOLKIT_MOL_GEOMETRY_H
#define VXGRID_TOOLKIT_MOL_GEOMETRY_H

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {

class VXMolBase;

/// Moves every conformer by a vector in Angstrom. False for a molecule without coordinates.
VXGRID_API bool VXTranslate(VXMolBase& mol, const float* vector);
VXGRID_API bool VXTranslate(VXMolBase& mol, const double* vector);

/// Turns every conformer about the origin: p' = M p with M a 3 by 3 matrix, row by row. False for a
/// molecule without coordinates.
VXGRID_API bool VXRotate(VXMolBase& mol, const float* matrix);
VXGRID_API bool VXRotate(VXMolBase& mol, const double* matrix);

/// The mean of the atom positions (of the first conformer), each counted with its weight;
/// `weights` runs by atom index and null counts all atoms alike. Sums are in double. False, with
/// `center` 0, for a molecule without atoms or weights that sum to 0.
VXGRID_API bool VXGetCenterOfMass(const VXMolBase& mol, float* center,
                                  const float* weights = nullptr);

/// The box of the atom centres (of the first conformer): its middle and its full edge lengths.
/// Radii play no part. All zero for a molecule without atoms.
VXGRID_API void VXGetCenterAndExtents(const VXMolBase& mol, float* center, float* extents);

}  // namespace VXMol

#endif
