/// \file
/// A molecule as arrays of Gaussians, one per atom.
#ifndef VXGRID_SRC_GAUSSIAN_MOLECULE_GAUSSIANS_H
#define VXGRID_SRC_GAUSSIAN_MOLECULE_GAUSSIANS_H

#include <vector>  // for vector

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/pdb_struct.h"

namespace VXMol {
class VXMolBase;
}

namespace VXCore::detail {

/// The atoms of a molecule in iteration order, with the prefactor 2.7 and the width of the radius.
class MoleculeGaussians {
 public:
  explicit MoleculeGaussians(const VXMol::VXMolBase& mol);

  /// A record around the atoms, 4 Angstrom beyond their centres, without buffers; false when that
  /// makes no grid.
  bool size_grid(float spacing, GridStruct& grid);

  /// Evaluates the atoms on the record's floats, as a vi_gauss_grid type, out to a height of 0.001.
  void evaluate(int type, const GridStruct& grid);

 private:
  int count() const { return static_cast<int>(atoms_.size()); }

  std::vector<PdbStruct> atoms_;
  std::vector<float> coords_;
  std::vector<float> widths_;
  std::vector<float> prefactors_;
};

}  // namespace VXCore::detail

#endif
