// Radii of atoms, own or by element.
#include "gaussian/atom_radii.h"

#include "vxgrid/toolkit/names.h"

namespace VXCore::detail {

// Odd neighbours are meant: silicon has oxygen's radius, sodium and magnesium have fluorine's.
float element_radius(unsigned int atomic_number) {
  switch (atomic_number) {
    case 0:
      return 0.0f;
    case 1:
      return 1.0f;
    case 3:
    case 4:
      return 1.1f;
    case 5:
    case 6:
      return 1.7f;
    case 7:
      return 1.65f;
    case 8:
    case 14:
      return 1.6f;
    case 9:
    case 11:
    case 12:
    case 25:
      return 1.2f;
    case 13:
      return 1.3f;
    case 29:
      return 1.25f;
    case 30:
      return 1.34f;
    default:
      return 1.9f;
  }
}

bool has_radii(const VXMolBase& mol) {
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    if (atom->GetRadius() > 0.0f) return true;
  }
  return false;
}

std::vector<float> radii_or_by_element(const VXMolBase& mol) {
  const bool own = has_radii(mol);
  std::vector<float> radii;
  radii.reserve(mol.NumAtoms());
  for (const VXAtomBase* atom : mol.GetAtoms())
    radii.push_back(own ? atom->GetRadius() : element_radius(atom->GetAtomicNum()));
  return radii;
}

}  // namespace VXCore::detail
