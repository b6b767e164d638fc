/// \file
/// VXSkewGrid: tagged data over its implementation.
#include "vxgrid/grid/skew_grid.h"

#include <utility>  // for as_const, move

#include "vxgrid/grid/scalar_grid.h"

namespace VXCore {

template class VXBaseDataT<VXSkewGrid>;
template class VXBaseDataT<std::vector<VXSkewGrid>>;

VXSkewGrid::VXSkewGrid() : impl_(std::make_unique<VXSkewGridImpl>()) {}
VXSkewGrid::VXSkewGrid(const VXSkewGrid& other)
    : VXGridAbstractBase(other), impl_(std::make_unique<VXSkewGridImpl>(*other.impl_)) {}
VXSkewGrid::VXSkewGrid(VXSkewGrid&& other) noexcept
    : VXGridAbstractBase(std::move(other)),
      impl_(std::make_unique<VXSkewGridImpl>(std::move(*other.impl_))) {}
VXSkewGrid::VXSkewGrid(const VXFixedGrid<float>& grid)
    : impl_(std::make_unique<VXSkewGridImpl>(grid)) {
  VXCopyBaseData(*this, grid);
}
VXSkewGrid::VXSkewGrid(const VXScalarGrid& grid) : impl_(std::make_unique<VXSkewGridImpl>(grid)) {
  VXCopyBaseData(*this, grid);
}
VXSkewGrid::VXSkewGrid(const VXSkewGridImpl& impl)
    : impl_(std::make_unique<VXSkewGridImpl>(impl)) {}
VXSkewGrid::~VXSkewGrid() = default;

VXSkewGrid& VXSkewGrid::operator=(const VXSkewGrid& other) {
  if (this == &other) return *this;
  VXGridAbstractBase::operator=(other);
  *impl_ = *other.impl_;
  return *this;
}
VXSkewGrid& VXSkewGrid::operator=(VXSkewGrid&& other) noexcept {
  if (this == &other) return *this;
  VXGridAbstractBase::operator=(std::move(other));
  *impl_ = std::move(*other.impl_);
  return *this;
}
VXSkewGrid& VXSkewGrid::operator=(const VXFixedGrid<float>& grid) {
  VXCopyBaseData(*this, grid);
  *impl_ = grid;
  return *this;
}
VXSkewGrid& VXSkewGrid::operator=(const VXScalarGrid& grid) {
  VXCopyBaseData(*this, grid);
  *impl_ = grid;
  return *this;
}
VXSkewGrid& VXSkewGrid::operator=(const VXSkewGridImpl& impl) {
  *impl_ = impl;
  return *this;
}

void VXSkewGrid::Clear() {
  VXGridAbstractBase::Clear();
  impl_->Clear();
}

TypeId VXSkewGrid::GetDataType() const {
  return type_ids::skew_grid;
}

bool VXSkewGrid::IsDataType(TypeId type) const {
  return type == type_ids::skew_grid || VXGridAbstractBase::IsDataType(type);
}

VXBase* VXSkewGrid::CreateCopy() const {
  return new VXSkewGrid(*this);
}

std::string VXSkewGrid::GetTitle() const {
  return impl_->GetTitle();
}
bool VXSkewGrid::SetTitle(const std::string& title) {
  return impl_->SetTitle(title);
}
bool VXSkewGrid::IsTitleSet() const {
  return impl_->IsTitleSet();
}
bool VXSkewGrid::ElementToGridIdx(unsigned int element, unsigned int& ix, unsigned int& iy,
                                  unsigned int& iz) const {
  return impl_->ElementToGridIdx(element, ix, iy, iz);
}
bool VXSkewGrid::ElementToSpatialCoord(unsigned int element, float& x, float& y, float& z) const {
  return impl_->ElementToSpatialCoord(element, x, y, z);
}
bool VXSkewGrid::GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const {
  return impl_->GetDim(xdim, ydim, zdim);
}
bool VXSkewGrid::SetDim(unsigned int xdim, unsigned int ydim, unsigned int zdim) {
  return impl_->SetDim(xdim, ydim, zdim);
}
unsigned int VXSkewGrid::GetSize() const {
  return impl_->GetSize();
}
unsigned int VXSkewGrid::GetXDim() const {
  return impl_->GetXDim();
}
unsigned int VXSkewGrid::GetYDim() const {
  return impl_->GetYDim();
}
unsigned int VXSkewGrid::GetZDim() const {
  return impl_->GetZDim();
}
bool VXSkewGrid::GetMid(float& xmid, float& ymid, float& zmid) const {
  return impl_->GetMid(xmid, ymid, zmid);
}
bool VXSkewGrid::SetMid(float xmid, float ymid, float zmid) {
  return impl_->SetMid(xmid, ymid, zmid);
}
float VXSkewGrid::GetXMid() const {
  return impl_->GetXMid();
}
float VXSkewGrid::GetYMid() const {
  return impl_->GetYMid();
}
float VXSkewGrid::GetZMid() const {
  return impl_->GetZMid();
}
float VXSkewGrid::GetSpacing() const {
  return impl_->GetSpacing();
}
bool VXSkewGrid::SetSpacing(float spacing) {
  return impl_->SetSpacing(spacing);
}
bool VXSkewGrid::IsSpacingSet() const {
  return impl_->IsSpacingSet();
}
unsigned int VXSkewGrid::GetReentrant() const {
  return impl_->GetReentrant();
}
void VXSkewGrid::SetReentrant(bool reentrant) {
  impl_->SetReentrant(reentrant);
}
unsigned int VXSkewGrid::GetSpaceGroup() const {
  return impl_->GetSpaceGroup();
}
bool VXSkewGrid::SetSpaceGroup(unsigned int number) {
  return impl_->SetSpaceGroup(number);
}
bool VXSkewGrid::HasSpaceGroup() const {
  return impl_->HasSpaceGroup();
}
bool VXSkewGrid::GetUnitCell(float& a, float& b, float& c, float& alpha, float& beta,
                             float& gamma) const {
  return impl_->GetUnitCell(a, b, c, alpha, beta, gamma);
}
bool VXSkewGrid::HasUnitCell() const {
  return impl_->HasUnitCell();
}
bool VXSkewGrid::SetUnitCell(float a, float b, float c, float alpha, float beta, float gamma,
                             unsigned int ua, unsigned int ub, unsigned int uc) {
  return impl_->SetUnitCell(a, b, c, alpha, beta, gamma, ua, ub, uc);
}
unsigned int VXSkewGrid::GetType() const {
  return impl_->GetType();
}
void VXSkewGrid::SetType(unsigned int type) {
  impl_->SetType(type);
}
float* VXSkewGrid::GetValues() {
  return impl_->GetValues();
}
const float* VXSkewGrid::GetValues() const {
  return std::as_const(*impl_).GetValues();
}
bool VXSkewGrid::SetValues(const float* values, unsigned int count) {
  return impl_->SetValues(values, count);
}
bool VXSkewGrid::IsRegular() const {
  return impl_->IsRegular();
}

}  // namespace VXCore
