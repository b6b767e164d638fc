// Bonds from interatomic distances.
#ifndef VXGRID_TOOLKIT_MOL_BONDS_H
#define VXGRID_TOOLKIT_MOL_BONDS_H

namespace VXMol {
class VXMolBase;
}

namespace VXMol::detail {

/// Adds a single bond between all atoms that are close enough for one (see VXReadMolecule). Time
/// and memory are linear in the number of atoms, whatever their positions.
void add_bonds_by_distance(VXMolBase& mol);

}  // namespace VXMol::detail

#endif
