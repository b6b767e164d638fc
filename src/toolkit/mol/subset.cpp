// Molecules made from parts of others.
#include "vxgrid/toolkit/mol/subset.h"

#include <algorithm>  // for min
#include <cstddef>    // for size_t
#include <vector>     // for vector

#include "vxgrid/toolkit/mol/conformers.h"

namespace VXMol {

VXMolBase& operator+=(VXMolBase& target, const VXMolBase& addition) {
  if (&target == &addition) {
    const VXMCMol copy(addition);
    return target += copy;
  }
  if (target.conformers_.empty()) {
    const std::size_t wanted = std::min(addition.conformers_.size(), target.conformer_limit());
    while (target.conformers_.size() < wanted)
      target.add_conformer();
  }
  const auto atoms = addition.GetAtoms();
  target.append_part(addition, {atoms.begin(), atoms.end()});
  return target;
}

namespace detail {

bool subset_molecule(VXMolBase& to, const VXMolBase& from,
                     const std::function<bool(const VXAtomBase&)>& keep) {
  std::vector<const VXAtomBase*> kept;
  for (const VXAtomBase* atom : from.GetAtoms()) {
    if (keep(*atom)) kept.push_back(atom);
  }
  if (&to == &from) {
    const VXMCMol copy(from);
    for (const VXAtomBase*& atom : kept)
      atom = copy.GetAtom(atom->GetIdx());
    to.take_part(copy, kept);
  } else {
    to.take_part(from, kept);
  }
  return !kept.empty();
}

}  // namespace detail
}  // namespace VXMol
