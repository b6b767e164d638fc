/// \file
/// Atoms, bonds and molecules with one set of coordinates.
#ifndef VXGRID_TOOLKIT_MOL_MOLECULE_H
#define VXGRID_TOOLKIT_MOL_MOLECULE_H

#include <cstddef>      // for ptrdiff_t, size_t
#include <functional>   // for function
#include <iterator>     // for forward_iterator_tag
#include <memory>       // for unique_ptr
#include <optional>     // for optional
#include <string>       // for string
#include <type_traits>  // for remove_const_t
#include <utility>      // for move
#include <vector>       // for vector

#include "vxgrid/toolkit/core/base.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/mol/pdb_data.h"
#include "vxgrid/toolkit/mol/residue.h"

namespace VXMol {

class VXBondBase;
class VXConfBase;
class VXMolBase;

namespace detail {
VXGRID_API bool subset_molecule(VXMolBase& to, const VXMolBase& from,
                                const std::function<bool(const VXAtomBase&)>& keep);
}

/// One atom of a molecule, made by VXMolBase::NewAtom and owned by the molecule. Its coordinates
/// are the molecule's (VXMolBase::GetCoords), its residue data go through VXAtomGetResidue.
class VXGRID_API VXAtomBase : public VXCore::VXBase {
 public:
  VXAtomBase(const VXAtomBase&) = delete;
  VXAtomBase& operator=(const VXAtomBase&) = delete;
  ~VXAtomBase() override;

  VXCore::TypeId GetDataType() const override;
  bool IsDataType(VXCore::TypeId type) const override;

  /// Stays the same until the molecule is swept.
  unsigned int GetIdx() const { return idx_; }
  /// 0 for a dummy or an unknown element.
  unsigned int GetAtomicNum() const { return atomic_num_; }
  void SetAtomicNum(unsigned int atomicNumber) { atomic_num_ = atomicNumber; }
  int GetFormalCharge() const { return formal_charge_; }
  void SetFormalCharge(int charge) { formal_charge_ = charge; }
  /// In units of the elementary charge.
  float GetPartialCharge() const { return partial_charge_; }
  void SetPartialCharge(float charge) { partial_charge_ = charge; }
  /// Angstrom; 0 until it is set.
  float GetRadius() const { return radius_; }
  void SetRadius(float radius) { radius_ = radius; }
  /// The name within its residue, without padding blanks ("CA").
  const std::string& GetName() const { return name_; }
  void SetName(std::string name) { name_ = std::move(name); }
  /// Free text and number for callers that type atoms; empty and 0 until set.
  const std::string& GetType() const { return type_; }
  void SetType(std::string type) { type_ = std::move(type); }
  int GetIntType() const { return int_type_; }
  void SetIntType(int type) { int_type_ = type; }

  bool IsHydrogen() const { return atomic_num_ == 1; }
  bool IsCarbon() const { return atomic_num_ == 6; }
  bool IsNitrogen() const { return atomic_num_ == 7; }
  bool IsOxygen() const { return atomic_num_ == 8; }
  bool IsSulfur() const { return atomic_num_ == 16; }
  bool IsPhosphorus() const { return atomic_num_ == 15; }
  /// F, Cl, Br, I or At.
  bool IsHalogen() const;
  bool IsMetal() const;
  /// N, O, P or S.
  bool IsPolar() const;
  /// A hydrogen bonded to a polar atom.
  bool IsPolarHydrogen() const;

  /// The bonds of the atom in the order in which they were made.
  const std::vector<VXBondBase*>& GetBonds() const { return bonds_; }
  unsigned int GetDegree() const { return static_cast<unsigned int>(bonds_.size()); }

 private:
  friend class VXMolBase;
  friend VXGRID_API bool VXAtomSetResidue(VXAtomBase* atom, const VXResidue& residue);
  friend VXGRID_API const VXResidue& VXAtomGetResidue(const VXAtomBase* atom);
  friend VXGRID_API bool VXHasResidue(const VXAtomBase* atom);

  VXAtomBase(unsigned int idx, unsigned int atomic_num) : idx_(idx), atomic_num_(atomic_num) {}
  void copy_properties(const VXAtomBase& other);

  unsigned int idx_;
  unsigned int atomic_num_;
  int formal_charge_ = 0;
  int int_type_ = 0;
  float partial_charge_ = 0;
  float radius_ = 0;
  std::string name_;
  std::string type_;
  std::optional<VXResidue> residue_;
  std::vector<VXBondBase*> bonds_;
};

/// One bond of a molecule, made by VXMolBase::NewBond and owned by the molecule.
class VXGRID_API VXBondBase : public VXCore::VXBase {
 public:
  VXBondBase(const VXBondBase&) = delete;
  VXBondBase& operator=(const VXBondBase&) = delete;
  ~VXBondBase() override;

  VXCore::TypeId GetDataType() const override;
  bool IsDataType(VXCore::TypeId type) const override;

  unsigned int GetIdx() const { return idx_; }
  VXAtomBase* GetBgn() { return bgn_; }
  const VXAtomBase* GetBgn() const { return bgn_; }
  VXAtomBase* GetEnd() { return end_; }
  const VXAtomBase* GetEnd() const { return end_; }
  /// 1, 2, 3; bonds found from distances are all 1.
  unsigned int GetOrder() const { return order_; }
  void SetOrder(unsigned int order) { order_ = order; }
  /// The atom at the other end; null if `atom` is at neither.
  VXAtomBase* GetNbr(const VXAtomBase* atom) const;

 private:
  friend class VXMolBase;

  VXBondBase(unsigned int idx, VXAtomBase* bgn, VXAtomBase* end, unsigned int order)
      : idx_(idx), order_(order), bgn_(bgn), end_(end) {}

  unsigned int idx_;
  unsigned int order_;
  VXAtomBase* bgn_;
  VXAtomBase* end_;
};

/// The things that a molecule owns of one kind, in order of index, without those that were deleted:
/// `for (VXAtomBase* atom : mol.GetAtoms())`. A view that allocates nothing; making or sweeping
/// things of that kind ends its life, deleting does not.
template <class Item, class Owned = std::remove_const_t<Item>>
class VXItemRange {
 public:
  class iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Item*;
    using difference_type = std::ptrdiff_t;
    using pointer = Item* const*;
    using reference = Item*;

    iterator() = default;
    iterator(const std::unique_ptr<Owned>* at, const std::unique_ptr<Owned>* last)
        : at_(at), last_(last) {
      skip_deleted();
    }
    Item* operator*() const { return at_->get(); }
    iterator& operator++() {
      ++at_;
      skip_deleted();
      return *this;
    }
    iterator operator++(int) {
      iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const iterator& a, const iterator& b) { return a.at_ == b.at_; }
    friend bool operator!=(const iterator& a, const iterator& b) { return a.at_ != b.at_; }

   private:
    void skip_deleted() {
      while (at_ != last_ && !*at_)
        ++at_;
    }
    const std::unique_ptr<Owned>* at_ = nullptr;
    const std::unique_ptr<Owned>* last_ = nullptr;
  };

  explicit VXItemRange(const std::vector<std::unique_ptr<Owned>>& items)
      : first_(items.data()), last_(items.data() + items.size()) {}

  iterator begin() const { return {first_, last_}; }
  iterator end() const { return {last_, last_}; }
  bool empty() const { return begin() == end(); }

 private:
  const std::unique_ptr<Owned>* first_;
  const std::unique_ptr<Owned>* last_;
};

/// What all molecules have: atoms, bonds, title, coordinates, records of the file they came from.
///
/// Atoms are numbered from 0 in the order in which they are made. Deleting one leaves a hole in the
/// numbers until Sweep; arrays of coordinates run by atom index, holes included, and hold
/// 3 * GetMaxAtomIdx() floats in Angstrom. Coordinates and PDB records of "the molecule" are those
/// of its first conformer.
///
/// A copy owns copies of all that, with the same atom indices, and of the tagged data of molecule,
/// atoms, bonds and conformers. A single-conformer molecule takes the first conformer of a source
/// that has several.
class VXGRID_API VXMolBase : public VXCore::VXBase {
 public:
  ~VXMolBase() override;
  VXMolBase& operator=(const VXMolBase& other);

  /// True if there is an atom.
  operator bool() const { return num_atoms_ != 0; }
  /// Removes everything, tagged data included.
  void Clear() override;
  VXCore::TypeId GetDataType() const override;
  bool IsDataType(VXCore::TypeId type) const override;

  const std::string& GetTitle() const { return title_; }
  bool SetTitle(const std::string& title);

  /// Never null. Its coordinates are 0 until they are set.
  VXAtomBase* NewAtom(unsigned int atomicNumber);
  /// Null if an atom is not of this molecule or both are the same.
  VXBondBase* NewBond(VXAtomBase* bgn, VXAtomBase* end, unsigned int order);
  /// Deletes the atom and its bonds; the pointers to them are then dead. False for null or an atom
  /// of another molecule.
  bool DeleteAtom(VXAtomBase* atom);
  bool DeleteBond(VXBondBase* bond);
  /// Closes the holes that deleted atoms and bonds have left: indices and coordinate arrays become
  /// dense, in the old order. Pointers stay good.
  void Sweep();

  unsigned int NumAtoms() const { return num_atoms_; }
  unsigned int NumBonds() const { return num_bonds_; }
  /// One more than the largest atom index in use since the last sweep.
  unsigned int GetMaxAtomIdx() const { return static_cast<unsigned int>(atoms_.size()); }
  unsigned int GetMaxBondIdx() const { return static_cast<unsigned int>(bonds_.size()); }
  /// The atom of this index; null if it was deleted or never was.
  VXAtomBase* GetAtom(unsigned int idx);
  const VXAtomBase* GetAtom(unsigned int idx) const;
  /// Null if the two are not bonded.
  VXBondBase* GetBond(const VXAtomBase* a, const VXAtomBase* b);
  const VXBondBase* GetBond(const VXAtomBase* a, const VXAtomBase* b) const;
  VXItemRange<VXAtomBase> GetAtoms() { return VXItemRange<VXAtomBase>(atoms_); }
  VXItemRange<const VXAtomBase> GetAtoms() const { return VXItemRange<const VXAtomBase>(atoms_); }
  VXItemRange<VXBondBase> GetBonds() { return VXItemRange<VXBondBase>(bonds_); }
  VXItemRange<const VXBondBase> GetBonds() const { return VXItemRange<const VXBondBase>(bonds_); }

  /// 3 once coordinates are set, else 0.
  unsigned int GetDimension() const;
  /// Writes 3 floats for every atom index. False, with all of them 0, if no coordinates are set.
  bool GetCoords(float* all) const;
  /// Writes 3 floats. False, with 0 written, if the atom is not of this molecule or no coordinates
  /// are set.
  bool GetCoords(const VXAtomBase* atom, float* xyz) const;
  /// Takes 3 floats for every atom index. False for a molecule without atoms.
  bool SetCoords(const float* all);
  /// Takes 3 floats. False if the atom is not of this molecule.
  bool SetCoords(const VXAtomBase* atom, const float* xyz);

  /// The sets of coordinates: any number for a VXMCMolBase, at most one for others.
  unsigned int NumConfs() const { return static_cast<unsigned int>(conformers_.size()); }
  VXItemRange<VXConfBase> GetConfs() { return VXItemRange<VXConfBase>(conformers_); }
  VXItemRange<const VXConfBase> GetConfs() const {
    return VXItemRange<const VXConfBase>(conformers_);
  }
  /// The conformer that stands for the molecule, the first one. Null until coordinates or PDB
  /// records are set.
  VXConfBase* GetActive();
  const VXConfBase* GetActive() const;

  /// Items of an mmCIF file; VXGetMMCIFData and its kin read and write them.
  const std::vector<VXPDBDataPair>& GetMMCIFDataPairs() const { return mmcif_data_; }
  bool SetMMCIFData(const std::string& item, const std::string& value);

 protected:
  VXMolBase();
  VXMolBase(const VXMolBase& other);
  VXMolBase(VXMolBase&& other) noexcept;
  VXMolBase& operator=(VXMolBase&& other) noexcept;

  /// For the copy constructors of derived classes: takes everything but the tagged data, which the
  /// base has copied, with at most so many conformers.
  void copy_contents(const VXMolBase& other, std::size_t conformer_limit);

 private:
  friend class VXMCMolBase;
  friend VXGRID_API VXMolBase& operator+=(VXMolBase& target, const VXMolBase& addition);
  friend VXGRID_API bool detail::subset_molecule(
      VXMolBase& to, const VXMolBase& from, const std::function<bool(const VXAtomBase&)>& keep);
  friend VXGRID_API bool VXSetPDBData(VXMolBase& mol, const std::string& tag,
                                      const std::string& text);
  friend VXGRID_API bool VXAddPDBData(VXMolBase& mol, const std::string& tag,
                                      const std::string& text);

  /// Conformers that this kind of molecule may hold.
  virtual std::size_t conformer_limit() const = 0;
  bool owns(const VXAtomBase* atom) const;
  VXConfBase& active_or_new();
  VXConfBase& add_conformer();
  void add_conformers_like(const VXMolBase& other, std::size_t conformer_limit);
  VXAtomBase* append_atom(const VXAtomBase& other);
  void append_part(const VXMolBase& other, const std::vector<const VXAtomBase*>& atoms);
  void take_part(const VXMolBase& other, const std::vector<const VXAtomBase*>& atoms);
  void take_contents(VXMolBase& other);
  void clear_contents();

  std::vector<std::unique_ptr<VXAtomBase>> atoms_;  // null where one was deleted
  std::vector<std::unique_ptr<VXBondBase>> bonds_;  // likewise
  std::vector<std::unique_ptr<VXConfBase>> conformers_;
  std::vector<VXPDBDataPair> mmcif_data_;
  std::string title_;
  unsigned int num_atoms_ = 0;
  unsigned int num_bonds_ = 0;
};

/// A molecule with one set of coordinates: the one to make.
class VXGRID_API VXGraphMol : public VXMolBase {
 public:
  VXGraphMol();
  VXGraphMol(const VXGraphMol& other);
  VXGraphMol(VXGraphMol&& other) noexcept;
  /// Of a molecule with several conformers the first one is taken.
  explicit VXGraphMol(const VXMolBase& other);
  ~VXGraphMol() override;
  VXGraphMol& operator=(const VXGraphMol& other);
  VXGraphMol& operator=(VXGraphMol&& other) noexcept;
  VXGraphMol& operator=(const VXMolBase& other);

  VXCore::TypeId GetDataType() const override;
  bool IsDataType(VXCore::TypeId type) const override;
  VXGraphMol* CreateCopy() const override;

 private:
  std::size_t conformer_limit() const override { return 1; }
};

}  // namespace VXMol

#endif
