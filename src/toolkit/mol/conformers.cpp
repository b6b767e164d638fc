// Sets of coordinates and the molecules that hold several of them.
#include "vxgrid/toolkit/mol/conformers.h"

#include <algorithm>  // for copy, fill_n
#include <limits>     // for numeric_limits

namespace VXMol {

VXConfBase::~VXConfBase() = default;

VXCore::TypeId VXConfBase::GetDataType() const {
  return VXCore::type_ids::conf_base;
}

bool VXConfBase::IsDataType(VXCore::TypeId type) const {
  return type == VXCore::type_ids::conf_base || VXCore::VXBase::IsDataType(type);
}

bool VXConfBase::GetCoords(float* all) const {
  std::copy(coords_.begin(), coords_.end(), all);
  return coords_set_;
}

bool VXConfBase::GetCoords(const VXAtomBase* atom, float* xyz) const {
  if (!atom || 3 * static_cast<std::size_t>(atom->GetIdx()) >= coords_.size()) {
    std::fill_n(xyz, 3, 0.0F);
    return false;
  }
  std::copy_n(coords_.data() + 3 * static_cast<std::size_t>(atom->GetIdx()), 3, xyz);
  return coords_set_;
}

bool VXConfBase::SetCoords(const float* all) {
  std::copy_n(all, coords_.size(), coords_.begin());
  coords_set_ = true;
  return true;
}

bool VXConfBase::SetCoords(const VXAtomBase* atom, const float* xyz) {
  if (!atom || 3 * static_cast<std::size_t>(atom->GetIdx()) >= coords_.size()) return false;
  std::copy_n(xyz, 3, coords_.data() + 3 * static_cast<std::size_t>(atom->GetIdx()));
  coords_set_ = true;
  return true;
}

bool VXConfBase::SetPDBData(const std::string& tag, const std::string& text) {
  for (VXPDBDataPair& pair : pdb_data_) {
    if (pair.GetTag() == tag) {
      pair.SetValue(text);
      return true;
    }
  }
  return AddPDBData(tag, text);
}

bool VXConfBase::AddPDBData(const std::string& tag, const std::string& text) {
  if (tag.empty()) return false;
  pdb_data_.emplace_back(tag, text);
  return true;
}

VXMCMolBase::VXMCMolBase() = default;
VXMCMolBase::~VXMCMolBase() = default;

VXCore::TypeId VXMCMolBase::GetDataType() const {
  return VXCore::type_ids::mc_mol_base;
}

bool VXMCMolBase::IsDataType(VXCore::TypeId type) const {
  return type == VXCore::type_ids::mc_mol_base || VXMolBase::IsDataType(type);
}

std::size_t VXMCMolBase::conformer_limit() const {
  return std::numeric_limits<std::size_t>::max();
}

VXMCMolBase::VXMCMolBase(const VXMCMolBase& other) : VXMolBase(other) {
  copy_contents(other, VXMCMolBase::conformer_limit());
}

VXMCMolBase::VXMCMolBase(const VXMolBase& other) : VXMolBase(other) {
  copy_contents(other, VXMCMolBase::conformer_limit());
}

VXMCMolBase& VXMCMolBase::operator=(const VXMolBase& other) {
  VXMolBase::operator=(other);
  return *this;
}

VXMCMolBase& VXMCMolBase::operator=(const VXMCMolBase& other) {
  VXMolBase::operator=(other);
  return *this;
}

VXConfBase* VXMCMolBase::GetConf(unsigned int idx) {
  return idx < conformers_.size() ? conformers_[idx].get() : nullptr;
}

const VXConfBase* VXMCMolBase::GetConf(unsigned int idx) const {
  return idx < conformers_.size() ? conformers_[idx].get() : nullptr;
}

VXConfBase* VXMCMolBase::NewConf(const float* coords) {
  VXConfBase& conformer = add_conformer();
  conformer.SetCoords(coords);
  return &conformer;
}

bool VXMCMolBase::DeleteConf(VXConfBase* conformer) {
  if (!conformer || GetConf(conformer->idx_) != conformer) return false;
  conformers_.erase(conformers_.begin() + conformer->idx_);
  for (std::size_t i = 0; i < conformers_.size(); ++i) {
    conformers_[i]->idx_ = static_cast<unsigned int>(i);
  }
  return true;
}

VXMCMol::VXMCMol() = default;
VXMCMol::~VXMCMol() = default;
VXMCMol::VXMCMol(const VXMCMol& other) = default;
VXMCMol::VXMCMol(const VXMolBase& other) : VXMCMolBase(other) {}

VXMCMol& VXMCMol::operator=(const VXMCMol& other) {
  VXMolBase::operator=(other);
  return *this;
}

VXMCMol& VXMCMol::operator=(const VXMolBase& other) {
  VXMolBase::operator=(other);
  return *this;
}

VXCore::TypeId VXMCMol::GetDataType() const {
  return VXCore::type_ids::mc_mol;
}

bool VXMCMol::IsDataType(VXCore::TypeId type) const {
  return type == VXCore::type_ids::mc_mol || VXMCMolBase::IsDataType(type);
}

VXMCMol* VXMCMol::CreateCopy() const {
  return new VXMCMol(*this);
}

}  // namespace VXMol
