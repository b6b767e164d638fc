// Van der Waals radii of the elements.
#include "vxgrid/toolkit/mol/radii.h"

#include <algorithm>  // for lower_bound
#include <array>      // for array

#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol {
namespace {

constexpr float unlisted_radius = 1.7F;

struct ElementRadius {
  unsigned int atomic_number;
  float radius;
};

// Bondi 1964, tables I to III, by atomic number.
constexpr std::array<ElementRadius, 38> bondi{{
    {1, 1.20F},  {2, 1.40F},  {3, 1.82F},  {6, 1.70F},  {7, 1.55F},  {8, 1.52F},  {9, 1.47F},
    {10, 1.54F}, {11, 2.27F}, {12, 1.73F}, {14, 2.10F}, {15, 1.80F}, {16, 1.80F}, {17, 1.75F},
    {18, 1.88F}, {19, 2.75F}, {28, 1.63F}, {29, 1.40F}, {30, 1.39F}, {31, 1.87F}, {33, 1.85F},
    {34, 1.90F}, {35, 1.85F}, {36, 2.02F}, {46, 1.63F}, {47, 1.72F}, {48, 1.58F}, {49, 1.93F},
    {50, 2.17F}, {52, 2.06F}, {53, 1.98F}, {54, 2.16F}, {78, 1.75F}, {79, 1.66F}, {80, 1.55F},
    {81, 1.96F}, {82, 2.02F}, {92, 1.86F},
}};

const ElementRadius* find_radius(unsigned int atomic_number) {
  const auto* found = std::lower_bound(
      bondi.begin(), bondi.end(), atomic_number,
      [](const ElementRadius& entry, unsigned int number) { return entry.atomic_number < number; });
  return found != bondi.end() && found->atomic_number == atomic_number ? found : nullptr;
}

}  // namespace

float VXGetBondiVdWRadius(unsigned int atomicNumber) {
  const ElementRadius* entry = find_radius(atomicNumber);
  return entry ? entry->radius : unlisted_radius;
}

bool VXAssignBondiVdWRadii(VXMolBase& mol) {
  bool all_listed = true;
  for (VXAtomBase* atom : mol.GetAtoms()) {
    const ElementRadius* entry = find_radius(atom->GetAtomicNum());
    all_listed = all_listed && entry;
    atom->SetRadius(entry ? entry->radius : unlisted_radius);
  }
  return all_listed;
}

}  // namespace VXMol
