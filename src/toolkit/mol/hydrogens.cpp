// Removal of hydrogen atoms.
#include "vxgrid/toolkit/mol/hydrogens.h"

#include <algorithm>  // for count_if
#include <vector>     // for vector

#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol {
namespace {

bool needs_hydrogen_for_handedness(const VXAtomBase& center) {
  return std::count_if(
             center.GetBonds().begin(), center.GetBonds().end(),
             [&](const VXBondBase* bond) { return !bond->GetNbr(&center)->IsHydrogen(); }) == 3;
}

}  // namespace

bool VXSuppressHydrogens(VXMolBase& mol, bool keepPolar, bool keepStereo, bool removeUnattached) {
  std::vector<VXAtomBase*> doomed;
  for (VXAtomBase* atom : mol.GetAtoms()) {
    if (!atom->IsHydrogen()) continue;
    bool attached = false;
    bool kept = false;
    for (const VXBondBase* bond : atom->GetBonds()) {
      const VXAtomBase* heavy = bond->GetNbr(atom);
      if (heavy->IsHydrogen()) continue;
      attached = true;
      kept = kept || (keepPolar && heavy->IsPolar()) ||
             (keepStereo && needs_hydrogen_for_handedness(*heavy));
    }
    if (!kept && (attached || removeUnattached)) doomed.push_back(atom);
  }
  for (VXAtomBase* atom : doomed)
    mol.DeleteAtom(atom);
  return true;
}

}  // namespace VXMol
