// Residue data of atoms, and the residues of a molecule.
#include "vxgrid/toolkit/mol/residue.h"

#include <functional>     // for hash
#include <unordered_set>  // for unordered_set

#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol {
namespace {

bool matches(const VXResidue& a, const VXResidue& b, unsigned int match) {
  if ((match & residue_match::number) != 0 &&
      (a.GetResidueNumber() != b.GetResidueNumber() || a.GetInsertCode() != b.GetInsertCode())) {
    return false;
  }
  if ((match & residue_match::model) != 0 && a.GetModelNumber() != b.GetModelNumber()) return false;
  if ((match & residue_match::chain) != 0 && a.GetChainID() != b.GetChainID()) return false;
  return (match & residue_match::name) == 0 || a.GetName() == b.GetName();
}

struct ResidueHash {
  std::size_t operator()(const VXResidue* residue) const {
    std::size_t hash = std::hash<std::string>()(residue->GetChainID());
    for (const std::size_t part : {std::hash<std::string>()(residue->GetName()),
                                   std::hash<int>()(residue->GetResidueNumber()),
                                   std::hash<int>()(residue->GetModelNumber()),
                                   std::hash<char>()(residue->GetInsertCode())}) {
      hash = hash * 1000003U ^ part;
    }
    return hash;
  }
};

struct ResidueEqual {
  bool operator()(const VXResidue* a, const VXResidue* b) const {
    return matches(*a, *b, residue_match::all);
  }
};

template <class Atom, class Mol>
std::vector<Atom*> residue_atoms(Mol& mol, const VXResidue& residue, unsigned int match) {
  std::vector<Atom*> atoms;
  for (Atom* atom : mol.GetAtoms()) {
    if (VXHasResidue(atom) && matches(VXAtomGetResidue(atom), residue, match)) {
      atoms.push_back(atom);
    }
  }
  return atoms;
}

}  // namespace

bool VXSameResidue(const VXResidue& a, const VXResidue& b) {
  return matches(a, b, residue_match::all);
}

bool VXAtomSetResidue(VXAtomBase* atom, const VXResidue& residue) {
  if (!atom) return false;
  atom->residue_ = residue;
  return true;
}

const VXResidue& VXAtomGetResidue(const VXAtomBase* atom) {
  static const VXResidue none;
  return VXHasResidue(atom) ? *atom->residue_ : none;
}

bool VXHasResidue(const VXAtomBase* atom) {
  return atom && atom->residue_.has_value();
}

bool VXHasResidues(const VXMolBase& mol) {
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    if (VXHasResidue(atom)) return true;
  }
  return false;
}

bool VXAtomIsInResidue::operator()(const VXAtomBase& atom) const {
  return VXHasResidue(&atom) && VXSameResidue(VXAtomGetResidue(&atom), residue_);
}

std::vector<VXResidue> VXGetResiduesImpl(const VXMolBase& mol) {
  std::vector<VXResidue> residues;
  std::unordered_set<const VXResidue*, ResidueHash, ResidueEqual> seen;
  const VXResidue* last = nullptr;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    if (!VXHasResidue(atom)) continue;
    const VXResidue& residue = VXAtomGetResidue(atom);
    if (last && VXSameResidue(*last, residue)) continue;
    last = &residue;
    if (seen.insert(&residue).second) residues.push_back(residue);
  }
  return residues;
}

std::vector<VXAtomBase*> VXGetResidueAtomsImpl(VXMolBase& mol, const VXResidue& residue,
                                               unsigned int match) {
  return residue_atoms<VXAtomBase>(mol, residue, match);
}

std::vector<const VXAtomBase*> VXGetResidueAtomsImpl(const VXMolBase& mol, const VXResidue& residue,
                                                     unsigned int match) {
  return residue_atoms<const VXAtomBase>(mol, residue, match);
}

}  // namespace VXMol
