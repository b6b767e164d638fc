// Formal charges that explicit valences demand.
#include "vxgrid/toolkit/mol/formal_charges.h"

#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol {
namespace {

unsigned int covalent_valence(const VXAtomBase& atom) {
  unsigned int valence = 0;
  for (const VXBondBase* bond : atom.GetBonds()) {
    if (!bond->GetNbr(&atom)->IsMetal()) valence += bond->GetOrder();
  }
  return valence;
}

int demanded_charge(unsigned int atomic_number, unsigned int valence) {
  switch (atomic_number) {
    case 5:
      return valence == 4 ? -1 : 0;
    case 7:
      return valence == 4 ? 1 : 0;
    case 8:
      return valence == 3 ? 1 : 0;
    default:
      return 0;
  }
}

}  // namespace

bool VXAssignFormalCharges(VXMolBase& mol) {
  bool changed = false;
  for (VXAtomBase* atom : mol.GetAtoms()) {
    if (atom->GetFormalCharge() != 0) continue;
    const int charge = demanded_charge(atom->GetAtomicNum(), covalent_valence(*atom));
    if (charge == 0) continue;
    atom->SetFormalCharge(charge);
    changed = true;
  }
  return changed;
}

}  // namespace VXMol
