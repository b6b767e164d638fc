// Masks from the Gaussians of a molecule or of spheres.
#include "vxgrid/gaussian/molecule_masks.h"

#include <cstddef>      // for size_t
#include <limits>       // for numeric_limits
#include <string_view>  // for string_view

#include "gaussian/grid_lattice.h"
#include "gaussian/molecule_gaussians.h"
#include "gridmath/mask_rules.h"
#include "vxgrid/gaussian/explicit_grid.h"
#include "vxgrid/gaussian/gauss_grid.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::RecordLattice;

constexpr float default_threshold = 0.5f;

// 0 for a text that is none of the types.
unsigned int type_of(const char* type) {
  const std::string_view text = type ? type : "";
  if (text == "gaussian") return mask_gaussian;
  if (text == "gaussian-") return mask_gaussian_inverse;
  if (text == "gaussian_smooth") return mask_gaussian_smooth;
  if (text == "gaussian_smooth-") return mask_gaussian_smooth_inverse;
  return 0;
}

// The sum of the atoms' Gaussians on a lattice.
ValueBuffer<float> mask_of(const VXMolBase& mol, const RecordLattice& lattice) {
  ValueBuffer<float> mask(lattice.size());
  detail::MoleculeGaussians(mol).evaluate(GaussGridType::Sum,
                                          detail::record_over(lattice, mask.data()));
  return mask;
}

bool mask_by_molecule(VXBrioGrid& g, const VXMolBase& mol, float threshold, unsigned int type) {
  const RecordLattice lattice = detail::lattice_of(g);
  if (!detail::is_usable(lattice) || !detail::is_mask_type(type)) return false;
  const ValueBuffer<float> mask = mask_of(mol, lattice);
  VXMultiGrid<float>& fields = g.GetFloats();
  for (unsigned int field = 0; field < fields.GetNumGrids(); ++field)
    detail::apply_mask(fields.GetValues(field), mask.data(), mask.size(), type, threshold);
  return true;
}

bool mask_by_molecule(VXScalarGrid& g, const VXMolBase& mol, float threshold, unsigned int type,
                      const char* no_coordinates) {
  constexpr const char* caller = "VXMaskGridByMolecule()";
  if (!mol) {
    VXThrow.Warning("%s : empty molecule!", caller);
    return false;
  }
  if (mol.GetDimension() != 3) {
    VXThrow.Warning(no_coordinates, caller);
    return false;
  }
  const RecordLattice lattice = detail::lattice_of(g);
  if (!detail::is_usable(lattice) || !detail::is_mask_type(type)) return false;
  const ValueBuffer<float> mask = mask_of(mol, lattice);
  return detail::apply_mask(g.GetValues(), mask.data(), mask.size(), type, threshold);
}

}  // namespace

int vx_mask_grid(VXBrioGrid& g, const VXMolBase& mol, float value, const char* type) {
  return mask_by_molecule(g, mol, value, type_of(type)) ? 1 : 0;
}

bool VXMaskGridByMolecule(VXBrioGrid& g, const VXMolBase& mol, unsigned int type) {
  return mask_by_molecule(g, mol, default_threshold, type);
}

bool VXMaskGridByMolecule(VXBrioGrid& g, const VXMolBase& mol, unsigned int type, float threshold) {
  return mask_by_molecule(g, mol, threshold, type);
}

bool VXMaskGridByMolecule(VXScalarGrid& g, const VXMolBase& mol, unsigned int type) {
  return mask_by_molecule(g, mol, default_threshold, type,
                          "%s : 3D molecule coordinates required!");
}

bool VXMaskGridByMolecule(VXScalarGrid& g, const VXMolBase& mol, unsigned int type,
                          float threshold) {
  return mask_by_molecule(g, mol, threshold, type, "%s : 3D coordinates required!");
}

bool VXMaskGridByCoordsAndRadii(VXScalarGrid& g, const float* coords, const float* radii,
                                unsigned int count, unsigned int type) {
  if (count > static_cast<unsigned int>(std::numeric_limits<int>::max())) return false;
  if (g.GetSize() < 2 || !detail::is_usable(detail::lattice_of(g)) || !detail::is_mask_type(type))
    return false;
  VXBrioGrid mask;
  mask.SetSpacing(g.GetSpacing());
  mask.SetMid(g.GetXMid(), g.GetYMid(), g.GetZMid());
  if (!mask.SetDim(g.GetXDim(), g.GetYDim(), g.GetZDim())) return false;
  vx_make_gaussian_grid_explicit(coords, radii, nullptr, static_cast<int>(count), 0.0f, mask, 0);
  return VXMaskGridValues(g.GetValues(), mask.GetValues(), g.GetSize(), type);
}

}  // namespace VXCore
