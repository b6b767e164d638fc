// Molecules as Gaussians on a grid.
#include "vxgrid/gaussian/molecule_grid.h"

#include <cmath>  // for isfinite

#include "gaussian/grid_lattice.h"
#include "gaussian/molecule_gaussians.h"
#include "vxgrid/gaussian/gauss_grid.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

// Gives a grid the geometry of a record, and with it values of 0.
bool take_geometry(VXBrioGrid& grid, const GridStruct& record) {
  grid.SetSpacing(record.spacing);
  grid.SetMid(record.xmid, record.ymid, record.zmid);
  return grid.SetDim(static_cast<unsigned int>(record.xdim), static_cast<unsigned int>(record.ydim),
                     static_cast<unsigned int>(record.zdim));
}

int make_molecular_grid(const VXMolBase& mol, float spacing, VXBrioGrid& grid, int type) {
  if (!mol) return 0;
  detail::MoleculeGaussians gaussians(mol);
  float* values = nullptr;
  if (grid.GetSize() < 2) {
    GridStruct sized;
    if (!std::isfinite(spacing) || !gaussians.size_grid(spacing, sized) ||
        !take_geometry(grid, sized))
      return 0;
    values = grid.GetFloats().GetValues(0);
  } else {
    values = vi_grid_floats(grid);
  }
  const detail::RecordLattice lattice = detail::lattice_of(grid);
  if (!values || !detail::is_usable(lattice)) return 0;
  gaussians.evaluate(type, detail::record_over(lattice, values));
  return 1;
}

}  // namespace

int vx_make_molecular_gaussian_grid(const VXMolBase& mol, float spacing, VXBrioGrid& grid) {
  return make_molecular_grid(mol, spacing, grid, GaussGridType::Sum);
}

int vx_make_molecular_product_gaussian_grid(const VXMolBase& mol, float spacing, VXBrioGrid& grid) {
  return make_molecular_grid(mol, spacing, grid, GaussGridType::Product);
}

bool VXMakeMolecularGaussianGrid(VXBrioGrid& grid, const VXMolBase& mol) {
  return VXMakeMolecularGaussianGrid(grid, mol, grid.GetSpacing());
}

bool VXMakeMolecularGaussianGrid(VXBrioGrid& grid, const VXMolBase& mol, float resolution) {
  return vx_make_molecular_gaussian_grid(mol, resolution, grid) != 0;
}

}  // namespace VXCore
