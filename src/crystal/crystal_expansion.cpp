// Crystal images made real: as atoms, as conformers, as the packing around a map.
#include <algorithm>   // for copy, max
#include <array>       // for array
#include <cmath>       // for nearbyint
#include <cstdint>     // for uint64_t
#include <functional>  // for function
#include <memory>      // for unique_ptr
#include <vector>      // for vector

#include "crystal/affine.h"
#include "grid/lattice.h"
#include "vxgrid/crystal/crystal_images.h"
#include "vxgrid/crystal/molecule_symmetry.h"
#include "vxgrid/grid/grid_functions.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {
namespace {

using VXXtal::VXSymmetry;
using VXXtal::VXXtalSymmetry;

constexpr unsigned int all_ops = 0xFFFFFFFFU;
// A bound on what a tiny cell and a wide radius may ask for.
constexpr std::uint64_t max_added_atoms = std::uint64_t{1} << 26;

/// Tells by its place whether an atom is of use; an empty one takes all.
using PlaceFilter = std::function<bool(const float* xyz)>;

std::vector<float> transformed(const std::vector<float>& coords, const float* matrix) {
  std::vector<float> moved(coords.size());
  for (std::size_t i = 0; i + 2 < coords.size(); i += 3) {
    const std::array<float, 3> image = detail::transform_point(matrix, coords.data() + i);
    std::copy(image.begin(), image.end(), moved.begin() + static_cast<std::ptrdiff_t>(i));
  }
  return moved;
}

void set_model_number(VXMolBase& mol, int number) {
  for (VXAtomBase* atom : mol.GetAtoms()) {
    if (!VXHasResidue(atom)) continue;
    VXResidue residue = VXAtomGetResidue(atom);
    residue.SetModelNumber(number);
    VXAtomSetResidue(atom, residue);
  }
}

// Appends `working`, which serves as scratch, once for every entry of the list. The entry's
// transformation is applied first, unless `op` asks for another one.
void append_images(const VXXtalSymmetry& images, unsigned int op, VXMCMol& working,
                   VXMolBase& target, const PlaceFilter& filter) {
  std::vector<std::vector<float>> saved;
  for (const VXConfBase* conformer : working.GetConfs())
    saved.push_back(conformer->coords());
  const auto is_wanted = [&](const VXAtomBase& atom) {
    std::array<float, 3> xyz{};
    working.GetCoords(&atom, xyz.data());
    return filter(xyz.data());
  };
  VXMCMol part;
  for (unsigned int i = 0; i < images.NumOps(); ++i) {
    if (op == all_ops || op == i) {
      for (VXConfBase* conformer : working.GetConfs()) {
        conformer->SetCoords(transformed(saved[conformer->GetIdx()], images.Matrix(i)).data());
      }
    }
    const auto model_number = static_cast<int>(i + 1);
    if (!filter) {
      set_model_number(working, model_number);
      target += working;
    } else if (VXSubsetMol(part, working, is_wanted)) {
      set_model_number(part, model_number);
      target += part;
    }
  }
}

bool are_realizable(const VXXtalSymmetry& images, const VXMolBase& mol) {
  return images.IsValid() && images.NumOps() > 0 && mol;
}

// VXExpandCrystalSymmetryImpl, but of the images only the atoms that the filter takes.
bool expand(VXMolBase& mol, float radius, const float* point, const PlaceFilter& filter) {
  if (!VXHasCrystalSymmetryImpl(mol) || !VXXtal::VXSetXtalSymmetryFromPDBData(mol)) return false;
  std::array<float, 3> center{};
  std::array<float, 3> extents{};
  if (!point) {
    VXMol::VXGetCenterAndExtents(mol, center.data(), extents.data());
    point = center.data();
  }
  const VXXtalSymmetry images(mol, point, radius);
  if (images.NumOps() == 0) return false;
  if (!filter) return images.Realize(mol, false, all_ops) != nullptr;
  if (!are_realizable(images, mol)) return false;
  VXMCMol working(mol);
  append_images(images, all_ops, working, mol, filter);
  return true;
}

// Takes the symmetry that map making left on the grid. False only if there is none: a symmetry that
// can't be written to the molecule leaves its atoms as they are.
bool expand_by_grid_symmetry(const VXSkewGrid& grid, VXMolBase& mol, float radius,
                             const float* point, const PlaceFilter& filter) {
  VXSymmetry symmetry;
  if (!grid.GetData(VXXtal::grid_symmetry_tag, symmetry)) return false;
  if (!VXXtalSymmetry::SetSymmetry(mol, symmetry, false) ||
      !VXXtal::VXSetPDBDataFromXtalSymmetry(mol)) {
    return true;
  }
  return expand(mol, radius, point, filter);
}

}  // namespace

namespace VXXtal {

VXMolBase* VXXtalSymmetry::Realize(VXMolBase& mol, bool copy, unsigned int op) const {
  if (!are_realizable(*this, mol)) return nullptr;
  if (std::uint64_t{NumOps()} * mol.NumAtoms() > max_added_atoms) return nullptr;
  VXMCMol working(mol);
  std::string title = mol.GetTitle();
  std::unique_ptr<VXMCMol> made;
  if (copy) {
    made = std::make_unique<VXMCMol>(working);
    title = "Symmetry:" + title;
  }
  VXMolBase& target = copy ? *made : mol;
  append_images(*this, op, working, target, {});
  target.SetTitle(title);
  return copy ? made.release() : &mol;
}

bool VXXtalSymmetry::Realize(const VXMolBase& mol, VXMCMolBase& out) const {
  if (!are_realizable(*this, mol)) return false;
  out = mol;
  VXConfBase* first = out.GetConf(0);
  if (!first) return false;
  const std::vector<float> coords = first->coords();
  for (unsigned int i = 0; i < NumOps(); ++i) {
    const std::vector<float> moved = transformed(coords, Matrix(i));
    if (i == 0) {
      first->SetCoords(moved.data());
    } else {
      out.NewConf(moved.data());
    }
  }
  return true;
}

}  // namespace VXXtal

bool VXExpandCrystalSymmetryImpl(VXMolBase& mol, float radius, const float* point) {
  return expand(mol, radius, point, {});
}

bool VXExpandCrystalSymmetry(const VXSkewGrid& grid, VXMolBase& mol) {
  unsigned int xdim = 0;
  unsigned int ydim = 0;
  unsigned int zdim = 0;
  if (!grid.GetDim(xdim, ydim, zdim)) return false;
  const detail::OrientedLattice lattice(grid.GetImpl().GetImpl());
  const detail::LatticeLocator locator(lattice);
  const auto is_on_grid = [&](const float* xyz) {
    const std::array<double, 3> index = locator.index(xyz);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double nearest = std::nearbyint(index[axis]);
      if (!(nearest >= 0 && nearest < lattice.dim[axis])) return false;
    }
    return true;
  };

  // Atoms off the grid are left out right away, as most images of a large molecule have none on it.
  std::array<float, 3> center{};
  std::array<float, 3> extents{};
  VXGetCenterAndExtents(grid, center.data(), extents.data());
  const float radius = std::max({extents[0], extents[1], extents[2]});
  if (!expand(mol, radius, center.data(), is_on_grid) &&
      !expand_by_grid_symmetry(grid, mol, radius, center.data(), is_on_grid)) {
    return false;
  }
  std::vector<VXAtomBase*> outside;
  for (VXAtomBase* atom : mol.GetAtoms()) {
    std::array<float, 3> xyz{};
    mol.GetCoords(atom, xyz.data());
    if (!is_on_grid(xyz.data())) outside.push_back(atom);
  }
  for (VXAtomBase* atom : outside)
    mol.DeleteAtom(atom);
  return true;
}

}  // namespace VXCore
