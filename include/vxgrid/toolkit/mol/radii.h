/// \file
/// Van der Waals radii of the elements.
#ifndef VXGRID_TOOLKIT_MOL_RADII_H
#define VXGRID_TOOLKIT_MOL_RADII_H

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {

class VXMolBase;

/// The van der Waals radius in Angstrom of an element as A. Bondi gives it (J. Phys. Chem. 1964,
/// 68, 441, doi 10.1021/j100785a001), 1.7 for elements that are not in his tables. His value for
/// hydrogen is the 1.20 of his table I.
VXGRID_API float VXGetBondiVdWRadius(unsigned int atomicNumber);

/// Gives each atom the radius of its element. False if an element was not in the table.
VXGRID_API bool VXAssignBondiVdWRadii(VXMolBase& mol);

}  // namespace VXMol

#endif
