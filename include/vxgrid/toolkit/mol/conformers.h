/// \file
/// Molecules that hold several sets of coordinates for the same atoms.
#ifndef VXGRID_TOOLKIT_MOL_CONFORMERS_H
#define VXGRID_TOOLKIT_MOL_CONFORMERS_H

#include <cstddef>  // for size_t
#include <string>   // for string
#include <vector>   // for vector

#include "vxgrid/toolkit/core/base.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol {

/// One set of coordinates of a molecule, with the PDB records that belong to it. Made and owned by
/// the molecule.
class VXGRID_API VXConfBase : public VXCore::VXBase {
 public:
  VXConfBase(const VXConfBase&) = delete;
  VXConfBase& operator=(const VXConfBase&) = delete;
  ~VXConfBase() override;

  VXCore::TypeId GetDataType() const override;
  bool IsDataType(VXCore::TypeId type) const override;

  /// The position among the molecule's conformers, from 0.
  unsigned int GetIdx() const { return idx_; }
  /// 3 once coordinates are set, else 0.
  unsigned int GetDimension() const { return coords_set_ ? 3 : 0; }
  /// Writes 3 floats (Angstrom) for every atom index of the molecule. False, with 0 written, if no
  /// coordinates are set.
  bool GetCoords(float* all) const;
  bool GetCoords(const VXAtomBase* atom, float* xyz) const;
  bool SetCoords(const float* all);
  bool SetCoords(const VXAtomBase* atom, const float* xyz);
  /// 3 floats for every atom index of the molecule, without a copy.
  const std::vector<float>& coords() const { return coords_; }

  const std::vector<VXPDBDataPair>& GetPDBDataPairs() const { return pdb_data_; }
  bool SetPDBData(const std::string& tag, const std::string& text);
  bool AddPDBData(const std::string& tag, const std::string& text);

 private:
  friend class VXMolBase;
  friend class VXMCMolBase;

  VXConfBase(unsigned int idx, std::size_t max_atom_idx) : idx_(idx), coords_(3 * max_atom_idx) {}

  unsigned int idx_;
  bool coords_set_ = false;
  std::vector<float> coords_;
  std::vector<VXPDBDataPair> pdb_data_;
};

/// A molecule that may hold any number of conformers.
class VXGRID_API VXMCMolBase : public VXMolBase {
 public:
  ~VXMCMolBase() override;
  VXMCMolBase& operator=(const VXMolBase& other);
  VXMCMolBase& operator=(const VXMCMolBase& other);

  VXCore::TypeId GetDataType() const override;
  bool IsDataType(VXCore::TypeId type) const override;

  /// Null if there is none of this index.
  VXConfBase* GetConf(unsigned int idx);
  const VXConfBase* GetConf(unsigned int idx) const;
  /// Adds a conformer with these coordinates, 3 floats for every atom index. Never null.
  VXConfBase* NewConf(const float* coords);
  /// False for null or a conformer of another molecule. Those behind it move up.
  bool DeleteConf(VXConfBase* conformer);

 protected:
  VXMCMolBase();
  VXMCMolBase(const VXMCMolBase& other);
  explicit VXMCMolBase(const VXMolBase& other);

 private:
  std::size_t conformer_limit() const override;
};

/// The multi-conformer molecule to make.
class VXGRID_API VXMCMol : public VXMCMolBase {
 public:
  VXMCMol();
  VXMCMol(const VXMCMol& other);
  explicit VXMCMol(const VXMolBase& other);
  ~VXMCMol() override;
  VXMCMol& operator=(const VXMCMol& other);
  VXMCMol& operator=(const VXMolBase& other);

  VXCore::TypeId GetDataType() const override;
  bool IsDataType(VXCore::TypeId type) const override;
  VXMCMol* CreateCopy() const override;
};

}  // namespace VXMol

#endif
