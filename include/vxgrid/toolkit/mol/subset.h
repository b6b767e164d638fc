/// \file
/// Molecules made from parts of others.
#ifndef VXGRID_TOOLKIT_MOL_SUBSET_H
#define VXGRID_TOOLKIT_MOL_SUBSET_H

#include <type_traits>  // for is_invocable_r_v

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol {

/// Appends the atoms of `addition`, with their properties, residue and tagged data, bonds and
/// coordinates, behind those of `target`. The appended atoms get dense indices. Conformer i of
/// `target` takes the coordinates of conformer i of `addition`, or of its first where it has fewer;
/// a target without any conformer gets as many as `addition` has and `target` may hold. Title,
/// tagged data and file records of `target` stay. Appending a molecule to itself doubles it.
VXGRID_API VXMolBase& operator+=(VXMolBase& target, const VXMolBase& addition);

/// Makes `to` a copy of `from` with those atoms alone for which `predicate(atom)` is true, and the
/// bonds between them; everything else, title, tagged data and file records, is copied whole. Atom
/// indices of the result are dense. The predicate takes an atom by reference or by pointer. False
/// if no atom is left.
template <class Predicate>
bool VXSubsetMol(VXMolBase& to, const VXMolBase& from, const Predicate& predicate) {
  return detail::subset_molecule(to, from, [&predicate](const VXAtomBase& atom) -> bool {
    if constexpr (std::is_invocable_r_v<bool, const Predicate&, const VXAtomBase&>) {
      return predicate(atom);
    } else {
      return predicate(&atom);
    }
  });
}

}  // namespace VXMol

#endif
