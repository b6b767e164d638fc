// Atoms, bonds and molecules: ownership, indices and copies.
#include "vxgrid/toolkit/mol/molecule.h"

#include <algorithm>  // for any_of, copy_n, fill_n, find_if, remove
#include <utility>    // for as_const, exchange, move

#include "vxgrid/toolkit/mol/conformers.h"
#include "vxgrid/toolkit/mol/elements.h"

namespace VXMol {

VXAtomBase::~VXAtomBase() = default;

VXCore::TypeId VXAtomBase::GetDataType() const {
  return VXCore::type_ids::atom_base;
}

bool VXAtomBase::IsDataType(VXCore::TypeId type) const {
  return type == VXCore::type_ids::atom_base || VXCore::VXBase::IsDataType(type);
}

bool VXAtomBase::IsHalogen() const {
  return atomic_num_ == 9 || atomic_num_ == 17 || atomic_num_ == 35 || atomic_num_ == 53 ||
         atomic_num_ == 85;
}

bool VXAtomBase::IsMetal() const {
  return VXIsMetal(atomic_num_);
}

bool VXAtomBase::IsPolar() const {
  return IsNitrogen() || IsOxygen() || IsPhosphorus() || IsSulfur();
}

bool VXAtomBase::IsPolarHydrogen() const {
  return IsHydrogen() && std::any_of(bonds_.begin(), bonds_.end(), [this](const VXBondBase* bond) {
           return bond->GetNbr(this)->IsPolar();
         });
}

void VXAtomBase::copy_properties(const VXAtomBase& other) {
  VXCore::VXBase::operator=(other);
  formal_charge_ = other.formal_charge_;
  int_type_ = other.int_type_;
  partial_charge_ = other.partial_charge_;
  radius_ = other.radius_;
  name_ = other.name_;
  type_ = other.type_;
  residue_ = other.residue_;
}

VXBondBase::~VXBondBase() = default;

VXCore::TypeId VXBondBase::GetDataType() const {
  return VXCore::type_ids::bond_base;
}

bool VXBondBase::IsDataType(VXCore::TypeId type) const {
  return type == VXCore::type_ids::bond_base || VXCore::VXBase::IsDataType(type);
}

VXAtomBase* VXBondBase::GetNbr(const VXAtomBase* atom) const {
  if (atom == bgn_) return end_;
  return atom == end_ ? bgn_ : nullptr;
}

VXMolBase::VXMolBase() = default;
VXMolBase::~VXMolBase() = default;

VXCore::TypeId VXMolBase::GetDataType() const {
  return VXCore::type_ids::mol_base;
}

bool VXMolBase::IsDataType(VXCore::TypeId type) const {
  return type == VXCore::type_ids::mol_base || VXCore::VXBase::IsDataType(type);
}

// The derived constructors copy the contents, since only they know how many conformers they hold.
VXMolBase::VXMolBase(const VXMolBase& other) : VXCore::VXBase(other) {}

VXMolBase::VXMolBase(VXMolBase&& other) noexcept : VXCore::VXBase(std::move(other)) {
  take_contents(other);
}

VXMolBase& VXMolBase::operator=(const VXMolBase& other) {
  if (this != &other) {
    VXCore::VXBase::operator=(other);
    copy_contents(other, conformer_limit());
  }
  return *this;
}

VXMolBase& VXMolBase::operator=(VXMolBase&& other) noexcept {
  if (this != &other) {
    VXCore::VXBase::operator=(std::move(other));
    take_contents(other);
  }
  return *this;
}

void VXMolBase::clear_contents() {
  bonds_.clear();
  atoms_.clear();
  conformers_.clear();
  mmcif_data_.clear();
  title_.clear();
  num_atoms_ = 0;
  num_bonds_ = 0;
}

void VXMolBase::Clear() {
  VXCore::VXBase::Clear();
  clear_contents();
}

void VXMolBase::take_contents(VXMolBase& other) {
  bonds_ = std::move(other.bonds_);
  atoms_ = std::move(other.atoms_);
  conformers_ = std::move(other.conformers_);
  mmcif_data_ = std::move(other.mmcif_data_);
  title_ = std::move(other.title_);
  num_atoms_ = std::exchange(other.num_atoms_, 0);
  num_bonds_ = std::exchange(other.num_bonds_, 0);
  other.clear_contents();
}

// Holes of `other` stay holes, so that its atom indices hold in the copy.
void VXMolBase::copy_contents(const VXMolBase& other, std::size_t conformer_limit) {
  clear_contents();
  mmcif_data_ = other.mmcif_data_;
  title_ = other.title_;
  atoms_.reserve(other.atoms_.size());
  for (const auto& atom : other.atoms_) {
    if (atom) {
      append_atom(*atom);
    } else {
      atoms_.emplace_back();
    }
  }
  bonds_.reserve(other.num_bonds_);
  for (const VXBondBase* source : other.GetBonds()) {
    VXBondBase* bond =
        NewBond(atoms_[source->bgn_->idx_].get(), atoms_[source->end_->idx_].get(), source->order_);
    bond->VXCore::VXBase::operator=(*source);
  }
  add_conformers_like(other, conformer_limit);
  for (std::size_t i = 0; i < conformers_.size(); ++i) {
    conformers_[i]->coords_ = other.conformers_[i]->coords_;
  }
}

VXAtomBase* VXMolBase::append_atom(const VXAtomBase& other) {
  atoms_.emplace_back(new VXAtomBase(GetMaxAtomIdx(), other.atomic_num_));
  ++num_atoms_;
  VXAtomBase* atom = atoms_.back().get();
  atom->copy_properties(other);
  atom->bonds_.reserve(other.bonds_.size());
  return atom;
}

// Appends some of the atoms of another molecule, the bonds among them, and their coordinates in
// every conformer that this molecule has.
void VXMolBase::append_part(const VXMolBase& other, const std::vector<const VXAtomBase*>& atoms) {
  const std::size_t first = atoms_.size();
  std::vector<VXAtomBase*> copies(other.atoms_.size());
  atoms_.reserve(first + atoms.size());
  for (const VXAtomBase* atom : atoms)
    copies[atom->idx_] = append_atom(*atom);
  for (const VXBondBase* source : other.GetBonds()) {
    VXAtomBase* bgn = copies[source->bgn_->idx_];
    VXAtomBase* end = copies[source->end_->idx_];
    if (!bgn || !end) continue;
    NewBond(bgn, end, source->order_)->VXCore::VXBase::operator=(*source);
  }
  for (const auto& conformer : conformers_) {
    conformer->coords_.resize(3 * atoms_.size());
    if (other.conformers_.empty()) continue;
    const bool has_twin = conformer->idx_ < other.conformers_.size();
    const VXConfBase& source = *other.conformers_[has_twin ? conformer->idx_ : 0];
    float* to = conformer->coords_.data() + 3 * first;
    for (const VXAtomBase* atom : atoms) {
      to = std::copy_n(source.coords_.data() + 3 * static_cast<std::size_t>(atom->idx_), 3, to);
    }
    conformer->coords_set_ = conformer->coords_set_ || source.coords_set_;
  }
}

// Becomes a copy of another molecule with some of its atoms.
void VXMolBase::take_part(const VXMolBase& other, const std::vector<const VXAtomBase*>& atoms) {
  clear_contents();
  VXCore::VXBase::operator=(other);
  mmcif_data_ = other.mmcif_data_;
  title_ = other.title_;
  add_conformers_like(other, conformer_limit());
  append_part(other, atoms);
}

bool VXMolBase::SetTitle(const std::string& title) {
  title_ = title;
  return true;
}

VXAtomBase* VXMolBase::NewAtom(unsigned int atomicNumber) {
  atoms_.emplace_back(new VXAtomBase(GetMaxAtomIdx(), atomicNumber));
  ++num_atoms_;
  for (const auto& conformer : conformers_)
    conformer->coords_.resize(3 * atoms_.size());
  return atoms_.back().get();
}

bool VXMolBase::owns(const VXAtomBase* atom) const {
  return atom && atom->idx_ < atoms_.size() && atoms_[atom->idx_].get() == atom;
}

VXBondBase* VXMolBase::NewBond(VXAtomBase* bgn, VXAtomBase* end, unsigned int order) {
  if (!owns(bgn) || !owns(end) || bgn == end) return nullptr;
  bonds_.emplace_back(new VXBondBase(GetMaxBondIdx(), bgn, end, order));
  VXBondBase* bond = bonds_.back().get();
  bgn->bonds_.push_back(bond);
  end->bonds_.push_back(bond);
  ++num_bonds_;
  return bond;
}

bool VXMolBase::DeleteBond(VXBondBase* bond) {
  if (!bond || bond->idx_ >= bonds_.size() || bonds_[bond->idx_].get() != bond) return false;
  for (VXAtomBase* atom : {bond->bgn_, bond->end_}) {
    auto& bonds = atom->bonds_;
    bonds.erase(std::remove(bonds.begin(), bonds.end(), bond), bonds.end());
  }
  bonds_[bond->idx_].reset();
  --num_bonds_;
  return true;
}

bool VXMolBase::DeleteAtom(VXAtomBase* atom) {
  if (!owns(atom)) return false;
  while (!atom->bonds_.empty())
    DeleteBond(atom->bonds_.back());
  atoms_[atom->idx_].reset();
  --num_atoms_;
  return true;
}

void VXMolBase::Sweep() {
  unsigned int used = 0;
  for (std::size_t i = 0; i < atoms_.size(); ++i) {
    if (!atoms_[i]) continue;
    for (const auto& conformer : conformers_) {
      float* coords = conformer->coords_.data();
      std::copy_n(coords + 3 * i, 3, coords + 3 * static_cast<std::size_t>(used));
    }
    atoms_[i]->idx_ = used;
    if (used != i) atoms_[used] = std::move(atoms_[i]);
    ++used;
  }
  atoms_.resize(used);
  for (const auto& conformer : conformers_)
    conformer->coords_.resize(3 * atoms_.size());

  bonds_.erase(std::remove(bonds_.begin(), bonds_.end(), nullptr), bonds_.end());
  for (std::size_t i = 0; i < bonds_.size(); ++i)
    bonds_[i]->idx_ = static_cast<unsigned int>(i);
}

const VXAtomBase* VXMolBase::GetAtom(unsigned int idx) const {
  return idx < atoms_.size() ? atoms_[idx].get() : nullptr;
}

VXAtomBase* VXMolBase::GetAtom(unsigned int idx) {
  return idx < atoms_.size() ? atoms_[idx].get() : nullptr;
}

const VXBondBase* VXMolBase::GetBond(const VXAtomBase* a, const VXAtomBase* b) const {
  if (!owns(a) || !owns(b)) return nullptr;
  for (const VXBondBase* bond : a->bonds_) {
    if (bond->GetNbr(a) == b) return bond;
  }
  return nullptr;
}

VXBondBase* VXMolBase::GetBond(const VXAtomBase* a, const VXAtomBase* b) {
  return const_cast<VXBondBase*>(std::as_const(*this).GetBond(a, b));
}

unsigned int VXMolBase::GetDimension() const {
  return conformers_.empty() ? 0 : conformers_.front()->GetDimension();
}

bool VXMolBase::GetCoords(float* all) const {
  if (!conformers_.empty()) return conformers_.front()->GetCoords(all);
  std::fill_n(all, 3 * atoms_.size(), 0.0F);
  return false;
}

bool VXMolBase::GetCoords(const VXAtomBase* atom, float* xyz) const {
  if (owns(atom) && !conformers_.empty()) return conformers_.front()->GetCoords(atom, xyz);
  std::fill_n(xyz, 3, 0.0F);
  return false;
}

bool VXMolBase::SetCoords(const float* all) {
  return num_atoms_ != 0 && active_or_new().SetCoords(all);
}

bool VXMolBase::SetCoords(const VXAtomBase* atom, const float* xyz) {
  return owns(atom) && active_or_new().SetCoords(atom, xyz);
}

VXConfBase* VXMolBase::GetActive() {
  return conformers_.empty() ? nullptr : conformers_.front().get();
}

const VXConfBase* VXMolBase::GetActive() const {
  return conformers_.empty() ? nullptr : conformers_.front().get();
}

VXConfBase& VXMolBase::active_or_new() {
  return conformers_.empty() ? add_conformer() : *conformers_.front();
}

VXConfBase& VXMolBase::add_conformer() {
  const auto idx = static_cast<unsigned int>(conformers_.size());
  conformers_.emplace_back(new VXConfBase(idx, atoms_.size()));
  return *conformers_.back();
}

// Conformers with the records and tagged data of another molecule's, their coordinates still 0.
void VXMolBase::add_conformers_like(const VXMolBase& other, std::size_t conformer_limit) {
  for (const auto& source : other.conformers_) {
    if (conformers_.size() >= conformer_limit) break;
    VXConfBase& conformer = add_conformer();
    conformer.VXCore::VXBase::operator=(*source);
    conformer.coords_set_ = source->coords_set_;
    conformer.pdb_data_ = source->pdb_data_;
  }
}

bool VXMolBase::SetMMCIFData(const std::string& item, const std::string& value) {
  if (item.empty()) return false;
  const auto found = std::find_if(mmcif_data_.begin(), mmcif_data_.end(),
                                  [&](const VXPDBDataPair& pair) { return pair.GetTag() == item; });
  if (found != mmcif_data_.end()) {
    found->SetValue(value);
  } else {
    mmcif_data_.emplace_back(item, value);
  }
  return true;
}

VXGraphMol::VXGraphMol() = default;
VXGraphMol::~VXGraphMol() = default;
VXGraphMol::VXGraphMol(VXGraphMol&& other) noexcept = default;
VXGraphMol& VXGraphMol::operator=(VXGraphMol&& other) noexcept = default;

VXGraphMol::VXGraphMol(const VXGraphMol& other) : VXMolBase(other) {
  copy_contents(other, 1);
}

VXGraphMol::VXGraphMol(const VXMolBase& other) : VXMolBase(other) {
  copy_contents(other, 1);
}

VXGraphMol& VXGraphMol::operator=(const VXGraphMol& other) {
  VXMolBase::operator=(other);
  return *this;
}

VXGraphMol& VXGraphMol::operator=(const VXMolBase& other) {
  VXMolBase::operator=(other);
  return *this;
}

VXCore::TypeId VXGraphMol::GetDataType() const {
  return VXCore::type_ids::graph_mol;
}

bool VXGraphMol::IsDataType(VXCore::TypeId type) const {
  return type == VXCore::type_ids::graph_mol || VXMolBase::IsDataType(type);
}

VXGraphMol* VXGraphMol::CreateCopy() const {
  return new VXGraphMol(*this);
}

}  // namespace VXMol
