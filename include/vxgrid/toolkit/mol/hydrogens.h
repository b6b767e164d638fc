/// \file
/// Removal of hydrogen atoms.
#ifndef VXGRID_TOOLKIT_MOL_HYDROGENS_H
#define VXGRID_TOOLKIT_MOL_HYDROGENS_H

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {

class VXMolBase;

/// Deletes hydrogen atoms (atomic number 1, isotopes included), leaving holes in the atom indices
/// until the molecule is swept. `keepPolar` spares those bonded to nitrogen, oxygen, phosphorus or
/// sulfur, `keepStereo` those on an atom with exactly three heavier neighbours, whose handedness
/// would be lost without them. Hydrogens without a bond to a heavier atom (a proton, H2, a bridge
/// between nothing) go only if `removeUnattached` is set, so that (mol, false, false, true) removes
/// every hydrogen. Always true.
VXGRID_API bool VXSuppressHydrogens(VXMolBase& mol, bool keepPolar = false, bool keepStereo = false,
                                    bool removeUnattached = false);

}  // namespace VXMol

#endif
