/// \file
/// VXRefGridPtr: queries through the const pointers, changes through the mutable ones.
#include "vxgrid/grid/ref_grid_ptr.h"

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {

VXRefGridPtr::VXRefGridPtr(VXScalarGrid* grid)
    : base_(grid), const_base_(grid), scalar_(grid), const_scalar_(grid) {}

VXRefGridPtr::VXRefGridPtr(const VXScalarGrid* grid) : const_base_(grid), const_scalar_(grid) {}

VXRefGridPtr::VXRefGridPtr(VXSkewGrid* grid)
    : base_(grid), const_base_(grid), skew_(grid), const_skew_(grid) {}

VXRefGridPtr::VXRefGridPtr(const VXSkewGrid* grid) : const_base_(grid), const_skew_(grid) {}

VXRefGridPtr::VXRefGridPtr(VXBase* grid) {
  if (!grid) return;
  if (grid->IsDataType(type_ids::scalar_grid)) {
    base_ = scalar_ = static_cast<VXScalarGrid*>(grid);
  } else if (grid->IsDataType(type_ids::skew_grid)) {
    base_ = skew_ = static_cast<VXSkewGrid*>(grid);
  }
}

VXRefGridPtr::VXRefGridPtr(const VXBase* grid) {
  if (!grid) return;
  if (grid->IsDataType(type_ids::scalar_grid)) {
    const_base_ = const_scalar_ = static_cast<const VXScalarGrid*>(grid);
  } else if (grid->IsDataType(type_ids::skew_grid)) {
    const_base_ = const_skew_ = static_cast<const VXSkewGrid*>(grid);
  }
}

VXRefGridPtr::~VXRefGridPtr() = default;

void VXRefGridPtr::Clear() {
  if (base_) base_->Clear();
}

TypeId VXRefGridPtr::GetDataType() const {
  return type_ids::ref_grid_ptr;
}

bool VXRefGridPtr::GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const {
  return const_base_ && const_base_->GetDim(xdim, ydim, zdim);
}

bool VXRefGridPtr::GetMid(float& xmid, float& ymid, float& zmid) const {
  return const_base_ && const_base_->GetMid(xmid, ymid, zmid);
}

float VXRefGridPtr::GetXMid() const {
  return const_base_ ? const_base_->GetXMid() : 0.0f;
}
float VXRefGridPtr::GetYMid() const {
  return const_base_ ? const_base_->GetYMid() : 0.0f;
}
float VXRefGridPtr::GetZMid() const {
  return const_base_ ? const_base_->GetZMid() : 0.0f;
}
float VXRefGridPtr::GetSpacing() const {
  return const_base_ ? const_base_->GetSpacing() : 0.0f;
}

std::string VXRefGridPtr::GetTitle() const {
  return const_base_ ? const_base_->GetTitle() : std::string();
}

unsigned int VXRefGridPtr::GetType() const {
  if (const_scalar_) return const_scalar_->GetType();
  if (const_skew_) return const_skew_->GetType();
  return VXGridType::Generic;
}

const float* VXRefGridPtr::GetValues() const {
  if (const_scalar_) return const_scalar_->GetValues();
  return const_skew_ ? const_skew_->GetValues() : nullptr;
}

float* VXRefGridPtr::GetValues() {
  if (scalar_) return scalar_->GetValues();
  return skew_ ? skew_->GetValues() : nullptr;
}

unsigned int VXRefGridPtr::GetXDim() const {
  return const_base_ ? const_base_->GetXDim() : 0;
}
unsigned int VXRefGridPtr::GetYDim() const {
  return const_base_ ? const_base_->GetYDim() : 0;
}
unsigned int VXRefGridPtr::GetZDim() const {
  return const_base_ ? const_base_->GetZDim() : 0;
}
unsigned int VXRefGridPtr::GetSize() const {
  return const_base_ ? const_base_->GetSize() : 0;
}

bool VXRefGridPtr::IsDataType(TypeId type) const {
  return const_base_ && const_base_->IsDataType(type);
}

bool VXRefGridPtr::IsSkew() const {
  return const_skew_ != nullptr;
}
bool VXRefGridPtr::IsValid() const {
  return const_base_ != nullptr;
}

bool VXRefGridPtr::SetTitle(const std::string& title) {
  if (scalar_) return scalar_->SetTitle(title);
  return skew_ && skew_->SetTitle(title);
}

bool VXRefGridPtr::SetType(unsigned int type) {
  if (scalar_) return scalar_->SetType(type);
  if (!skew_) return false;
  skew_->SetType(type);
  return true;
}

bool VXRefGridPtr::IsSpacingSet() const {
  return const_base_ && const_base_->IsSpacingSet();
}

VXRefGridPtr::operator VXBase*() const {
  return base_;
}
VXRefGridPtr::operator const VXBase*() const {
  return const_base_;
}

}  // namespace VXCore
