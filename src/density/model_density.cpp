// The electron density of an atomic model on a grid, straight in real space.
#include "vxgrid/density/model_density.h"

#include <algorithm>  // for fill_n
#include <array>      // for array
#include <cmath>      // for sqrt
#include <optional>   // for optional
#include <vector>     // for vector

#include "density/atom_density.h"
#include "grid/lattice.h"
#include "vxgrid/crystal/crystal_images.h"
#include "vxgrid/crystal/molecule_symmetry.h"
#include "vxgrid/density/scattering.h"
#include "vxgrid/grid/grid_functions.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {

namespace {

/// Lattice steps along the axes: cell edges over their intervals, or the length of a step in space
/// for a grid that has no cell.
std::array<double, 3> lattice_steps(const VXBrioGrid& grid,
                                    const detail::OrientedLattice& lattice) {
  std::array<float, 6> cell{};
  std::array<unsigned int, 3> intervals{};
  grid.GetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
  grid.GetUnitSpacing(intervals[0], intervals[1], intervals[2]);
  std::array<double, 3> steps{};
  for (std::size_t k = 0; k < 3; ++k) {
    if (intervals[k] != 0 && cell[k] > 0) {
      steps[k] = static_cast<double>(cell[k]) / intervals[k];
      continue;
    }
    double squares = 0;
    for (std::size_t row = 0; row < 3; ++row) {
      const double m = lattice.orientation[3 * row + k];
      squares += m * m;
    }
    steps[k] = std::sqrt(squares) * lattice.spacing;
  }
  return steps;
}

}  // namespace

int VXGetScatterType(const VXAtomBase* atom) {
  if (atom == nullptr) return -1;
  return find_scatter_row(static_cast<int>(atom->GetAtomicNum()), atom->GetFormalCharge());
}

void VXSetScatterDefaults(VXMolBase& mol, double bfactor, double occupancy, unsigned int flags) {
  for (VXAtomBase* atom : mol.GetAtoms()) {
    VXResidue residue = VXAtomGetResidue(atom);
    if ((flags & scatter_keep_bfactor) == 0 || residue.GetBFactor() == 0.0f)
      residue.SetBFactor(static_cast<float>(bfactor));
    if ((flags & scatter_keep_occupancy) == 0 || residue.GetOccupancy() == 0.0f)
      residue.SetOccupancy(static_cast<float>(occupancy));
    VXAtomSetResidue(atom, residue);
  }
}

bool VXScatterToGrid(VXSkewGrid& grid, const VXMolBase& mol) {
  // Where neither side has symmetry the expansion would change nothing, and needs no copy.
  std::optional<VXGraphMol> crystal;
  if (VXHasCrystalSymmetryImpl(mol) || grid.HasData(VXXtal::grid_symmetry_tag)) {
    crystal.emplace(mol);
    VXExpandCrystalSymmetry(grid, *crystal);
  }
  const VXMolBase& atoms = crystal ? *crystal : mol;

  float* values = grid.GetValues();
  if (values == nullptr || grid.GetSize() <= 1) return false;
  std::fill_n(values, grid.GetSize(), 0.0f);

  const VXBrioGrid& brio = grid.GetImpl().GetImpl();
  const detail::OrientedLattice lattice(brio);
  detail::DensityDepositor depositor(lattice, lattice_steps(brio, lattice), values);
  std::vector<float> coords(3 * static_cast<std::size_t>(atoms.GetMaxAtomIdx()));
  atoms.GetCoords(coords.data());
  for (const VXAtomBase* atom : atoms.GetAtoms()) {
    const int row = VXGetScatterType(atom);
    if (row < 0) continue;
    const VXResidue& residue = VXAtomGetResidue(atom);
    const detail::AtomDensity density(scatter_data[row], residue.GetBFactor(),
                                      residue.GetOccupancy());
    depositor.add(density, coords.data() + 3 * static_cast<std::size_t>(atom->GetIdx()));
  }
  return true;
}

bool VXScatterToGrid(VXScalarGrid& grid, const VXMolBase& mol) {
  VXSkewGrid skew(grid);
  const bool done = VXScatterToGrid(skew, mol);
  grid = skew.AsRegularGrid();
  return done;
}

bool VXMakeGaussianScatterGrid(VXSkewGrid& grid, const VXMolBase& mol, double spacing) {
  if (!VXHasResidues(mol)) {
    VXThrow.Warning(
        "Input molecule does not have residues, cannot retrieve BFactors or Occupancies");
    return false;
  }
  std::array<float, 3> center{}, extents{};
  VXGetCenterAndExtents(mol, center.data(), extents.data());
  for (float& extent : extents)
    extent += 4.0f;
  VXScalarGrid regular;
  VXMakeGridFromCenterAndExtents(regular, center.data(), extents.data(),
                                 static_cast<float>(spacing));
  grid = regular;
  VXScatterToGrid(grid, mol);
  return true;
}

bool VXMakeGaussianScatterGrid(VXScalarGrid& grid, const VXMolBase& mol, double spacing) {
  VXSkewGrid skew(grid);
  const bool done = VXMakeGaussianScatterGrid(skew, mol, spacing);
  grid = skew.AsRegularGrid();
  return done;
}

}  // namespace VXCore
