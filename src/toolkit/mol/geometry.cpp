// Where a molecule lies, and motions of it.
#include "vxgrid/toolkit/mol/geometry.h"

#include <algorithm>  // for copy_n, fill_n, max, min
#include <array>      // for array
#include <vector>     // for vector

#include "vxgrid/toolkit/mol/conformers.h"
#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol {
namespace {

// Runs `move` over the x, y, z of every atom of every conformer.
template <class Move>
bool move_conformers(VXMolBase& mol, const Move& move) {
  bool moved = false;
  std::vector<float> coords;
  for (VXConfBase* conformer : mol.GetConfs()) {
    if (conformer->GetDimension() != 3) continue;
    coords = conformer->coords();
    for (std::size_t i = 0; i + 2 < coords.size(); i += 3)
      move(coords.data() + i);
    moved = conformer->SetCoords(coords.data());
  }
  return moved;
}

template <class Real>
bool translate(VXMolBase& mol, const Real* vector) {
  return move_conformers(mol, [vector](float* xyz) {
    for (int axis = 0; axis < 3; ++axis)
      xyz[axis] = static_cast<float>(xyz[axis] + vector[axis]);
  });
}

template <class Real>
bool rotate(VXMolBase& mol, const Real* m) {
  return move_conformers(mol, [m](float* xyz) {
    std::array<float, 3> p{};
    std::copy_n(xyz, 3, p.begin());
    for (int row = 0; row < 3; ++row) {
      xyz[row] =
          static_cast<float>(m[3 * row] * p[0] + m[3 * row + 1] * p[1] + m[3 * row + 2] * p[2]);
    }
  });
}

}  // namespace

bool VXTranslate(VXMolBase& mol, const float* vector) {
  return translate(mol, vector);
}
bool VXTranslate(VXMolBase& mol, const double* vector) {
  return translate(mol, vector);
}
bool VXRotate(VXMolBase& mol, const float* matrix) {
  return rotate(mol, matrix);
}
bool VXRotate(VXMolBase& mol, const double* matrix) {
  return rotate(mol, matrix);
}

bool VXGetCenterOfMass(const VXMolBase& mol, float* center, const float* weights) {
  std::array<double, 3> sum{};
  double total = 0;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    std::array<float, 3> xyz{};
    mol.GetCoords(atom, xyz.data());
    const double weight = weights ? weights[atom->GetIdx()] : 1.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
      sum[axis] += weight * xyz[axis];
    total += weight;
  }
  std::fill_n(center, 3, 0.0F);
  if (total == 0) return false;
  for (std::size_t axis = 0; axis < 3; ++axis)
    center[axis] = static_cast<float>(sum[axis] / total);
  return true;
}

void VXGetCenterAndExtents(const VXMolBase& mol, float* center, float* extents) {
  std::array<float, 3> lower{};
  std::array<float, 3> upper{};
  bool first = true;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    std::array<float, 3> xyz{};
    mol.GetCoords(atom, xyz.data());
    if (first) lower = upper = xyz;
    first = false;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      lower[axis] = std::min(lower[axis], xyz[axis]);
      upper[axis] = std::max(upper[axis], xyz[axis]);
    }
  }
  for (std::size_t axis = 0; axis < 3; ++axis) {
    center[axis] = (lower[axis] + upper[axis]) * 0.5F;
    extents[axis] = upper[axis] - lower[axis];
  }
}

}  // namespace VXMol
