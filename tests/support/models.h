// Small molecules and maps that tests make for themselves.
#ifndef VXGRID_TESTS_SUPPORT_MODELS_H
#define VXGRID_TESTS_SUPPORT_MODELS_H

#include <string>  // for string

#include "vxgrid/toolkit/names.h"

namespace vxgrid_test {

struct ModelAtom {
  unsigned int element;
  float x, y, z;
  float b_factor = 20;
  int residue = 1;
  float occupancy = 1;
  int charge = 0;
};

/// A molecule with residue data, chain "A", residues named "ALA".
template <class Atoms>
VXCore::VXGraphMol make_model(const Atoms& atoms) {
  VXCore::VXGraphMol mol;
  for (const ModelAtom& made : atoms) {
    VXCore::VXAtomBase* atom = mol.NewAtom(made.element);
    const float xyz[3] = {made.x, made.y, made.z};
    mol.SetCoords(atom, xyz);
    atom->SetFormalCharge(made.charge);
    VXCore::VXResidue residue;
    residue.SetName("ALA");
    residue.SetChainID("A");
    residue.SetResidueNumber(made.residue);
    residue.SetBFactor(made.b_factor);
    residue.SetOccupancy(made.occupancy);
    VXCore::VXAtomSetResidue(atom, residue);
  }
  return mol;
}

}  // namespace vxgrid_test

#endif
