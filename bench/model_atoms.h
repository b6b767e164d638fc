// One list of atoms as a model of ours and of gemmi's, so that both work on the same.
#ifndef VXGRID_BENCH_MODEL_ATOMS_H
#define VXGRID_BENCH_MODEL_ATOMS_H

#include <gemmi/model.hpp>
#include <vector>

#include "vxgrid/vxgrid.h"

namespace vxgrid_bench {

struct Atom {
  unsigned int element;
  float xyz[3];
  float b_factor;
};

/// The elements of a protein without its hydrogens, in about their shares.
inline constexpr unsigned int protein_elements[] = {6, 6, 6, 6, 6, 7, 7, 8, 8, 16};

inline VXCore::VXGraphMol our_model(const std::vector<Atom>& atoms) {
  VXCore::VXGraphMol mol;
  for (const Atom& made : atoms) {
    VXCore::VXAtomBase* atom = mol.NewAtom(made.element);
    mol.SetCoords(atom, made.xyz);
    VXCore::VXResidue residue;
    residue.SetBFactor(made.b_factor);
    residue.SetOccupancy(1);
    VXCore::VXAtomSetResidue(atom, residue);
  }
  return mol;
}

/// The same atoms, moved by `shift` Angstrom along each axis.
inline gemmi::Model gemmi_model(const std::vector<Atom>& atoms, double shift) {
  gemmi::Residue residue;
  for (const Atom& made : atoms) {
    gemmi::Atom atom;
    atom.element = gemmi::Element(static_cast<int>(made.element));
    atom.pos = {made.xyz[0] + shift, made.xyz[1] + shift, made.xyz[2] + shift};
    atom.b_iso = made.b_factor;
    residue.atoms.push_back(atom);
  }
  gemmi::Chain chain("A");
  chain.residues.push_back(residue);
  gemmi::Model model("1");
  model.chains.push_back(chain);
  return model;
}

}  // namespace vxgrid_bench

#endif
