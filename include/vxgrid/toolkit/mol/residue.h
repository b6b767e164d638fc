/// \file
/// Residues: what an atom's record in a macromolecular file says beyond the atom itself.
#ifndef VXGRID_TOOLKIT_MOL_RESIDUE_H
#define VXGRID_TOOLKIT_MOL_RESIDUE_H

#include <string>   // for string
#include <utility>  // for move
#include <vector>   // for vector

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/iterators.h"

namespace VXMol {

class VXAtomBase;
class VXMolBase;

/// The residue data of one atom, a plain value. Each atom holds its own: atoms are of one residue
/// when their model number, chain, residue number, insertion code and residue name agree, while
/// B-factor, occupancy and alternate location may differ from atom to atom.
class VXResidue {
 public:
  const std::string& GetName() const { return name_; }
  void SetName(std::string name) { name_ = std::move(name); }
  int GetResidueNumber() const { return residue_number_; }
  void SetResidueNumber(int number) { residue_number_ = number; }
  /// The insertion code, a blank where there is none.
  char GetInsertCode() const { return insert_code_; }
  void SetInsertCode(char code) { insert_code_ = code; }
  /// The chain's name as the file has it: one letter in most PDB files, any text in mmCIF.
  const std::string& GetChainID() const { return chain_id_; }
  void SetChainID(std::string chain) { chain_id_ = std::move(chain); }
  int GetModelNumber() const { return model_number_; }
  void SetModelNumber(int number) { model_number_ = number; }
  /// Isotropic displacement parameter B, Angstrom^2.
  float GetBFactor() const { return b_factor_; }
  void SetBFactor(float b_factor) { b_factor_ = b_factor; }
  float GetOccupancy() const { return occupancy_; }
  void SetOccupancy(float occupancy) { occupancy_ = occupancy; }
  /// True for what PDB files write as HETATM.
  bool GetHetAtom() const { return het_atom_; }
  void SetHetAtom(bool het_atom) { het_atom_ = het_atom; }
  /// The label of the alternate location, a blank where there is but one.
  char GetAlternateLocation() const { return alternate_location_; }
  void SetAlternateLocation(char label) { alternate_location_ = label; }

 private:
  std::string name_;
  std::string chain_id_;
  int residue_number_ = 0;
  int model_number_ = 1;
  float b_factor_ = 0;
  float occupancy_ = 0;
  char insert_code_ = ' ';
  char alternate_location_ = ' ';
  bool het_atom_ = false;
};

/// True if both describe the same residue (see VXResidue).
VXGRID_API bool VXSameResidue(const VXResidue& a, const VXResidue& b);

/// Gives the atom a copy of the residue data. False for a null atom.
VXGRID_API bool VXAtomSetResidue(VXAtomBase* atom, const VXResidue& residue);
/// The atom's residue data; a fresh VXResidue for a null atom or one without any. The reference
/// stays good until the atom's residue is set again or the atom goes away.
VXGRID_API const VXResidue& VXAtomGetResidue(const VXAtomBase* atom);
/// True if the atom was given residue data.
VXGRID_API bool VXHasResidue(const VXAtomBase* atom);
/// True if at least one atom of the molecule was given residue data.
VXGRID_API bool VXHasResidues(const VXMolBase& mol);

/// True for the atoms of one residue.
class VXGRID_API VXAtomIsInResidue : public VXCore::VXUnaryPredicate<VXAtomBase> {
 public:
  explicit VXAtomIsInResidue(const VXResidue& residue) : residue_(residue) {}
  bool operator()(const VXAtomBase& atom) const override;
  VXAtomIsInResidue* CreateCopy() const override { return new VXAtomIsInResidue(*this); }

 private:
  VXResidue residue_;
};

/// One entry for every residue, in the order in which the molecule's atoms first name them. Atoms
/// without residue data are left out. An entry's B-factor, occupancy and alternate location are
/// those of the residue's first atom.
VXGRID_API std::vector<VXResidue> VXGetResiduesImpl(const VXMolBase& mol);

/// Says by which of its parts VXGetResidueAtomsImpl knows a residue; 15 asks for all.
namespace residue_match {
inline constexpr unsigned int name = 1;
inline constexpr unsigned int number = 2;  ///< Residue number and insertion code.
inline constexpr unsigned int chain = 4;
inline constexpr unsigned int model = 8;
inline constexpr unsigned int all = name | number | chain | model;
}  // namespace residue_match

/// The atoms of one residue in order of index; `match` is a sum of residue_match values.
VXGRID_API std::vector<VXAtomBase*> VXGetResidueAtomsImpl(VXMolBase& mol, const VXResidue& residue,
                                                          unsigned int match = residue_match::all);
VXGRID_API std::vector<const VXAtomBase*> VXGetResidueAtomsImpl(
    const VXMolBase& mol, const VXResidue& residue, unsigned int match = residue_match::all);

}  // namespace VXMol

#endif
