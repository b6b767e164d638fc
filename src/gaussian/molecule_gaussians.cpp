// The atoms of a molecule as Gaussians: on a grid sized around them, or on a given one.
#include "gaussian/molecule_gaussians.h"

#include <cstddef>  // for size_t

#include "gaussian/atom_radii.h"
#include "vxgrid/gaussian/gauss_grid.h"
#include "vxgrid/gridmath/sizing.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore::detail {

MoleculeGaussians::MoleculeGaussians(const VXMolBase& mol)
    : widths_(mol.NumAtoms()), prefactors_(mol.NumAtoms(), 2.7f) {
  std::vector<float> radii = radii_or_by_element(mol);
  vi_assign_gwid_from_rad_pre(prefactors_.data(), radii.data(), widths_.data(),
                              static_cast<int>(radii.size()));
  atoms_.reserve(mol.NumAtoms());
  coords_.reserve(3 * std::size_t{mol.NumAtoms()});
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    float xyz[3] = {};
    mol.GetCoords(atom, xyz);
    PdbStruct record;
    record.x = xyz[0];
    record.y = xyz[1];
    record.z = xyz[2];
    atoms_.push_back(record);
    coords_.insert(coords_.end(), xyz, xyz + 3);
  }
}

bool MoleculeGaussians::size_grid(float spacing, GridStruct& grid) {
  constexpr float padding = 4.0f;
  return spacing > 0.0f &&
         vx_set_grid_from_points(coords_.data(), count(), padding, padding, padding, spacing,
                                 &grid) != 0 &&
         !vx_grid_struct_overflow(grid);
}

void MoleculeGaussians::evaluate(int type, const GridStruct& grid) {
  constexpr float cutoff = 0.001f;
  vi_gauss_grid(0, count(), atoms_.data(), widths_.data(), prefactors_.data(), cutoff, type, grid,
                nullptr, nullptr, nullptr);
}

}  // namespace VXCore::detail
