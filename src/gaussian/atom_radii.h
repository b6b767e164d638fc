/// \file
/// The atoms of a molecule as the Gaussian routines take them: radii, own or by element.
#ifndef VXGRID_SRC_GAUSSIAN_ATOM_RADII_H
#define VXGRID_SRC_GAUSSIAN_ATOM_RADII_H

#include <vector>  // for vector

namespace VXMol {
class VXMolBase;
}

namespace VXCore::detail {

/// The radius in Angstrom that an element has where a molecule gives none.
float element_radius(unsigned int atomic_number);

/// True when at least one atom has a radius above 0.
bool has_radii(const VXMol::VXMolBase& mol);

/// One radius per atom in iteration order: the atoms' own, or by element where no atom has one.
std::vector<float> radii_or_by_element(const VXMol::VXMolBase& mol);

}  // namespace VXCore::detail

#endif
