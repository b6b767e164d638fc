/// \file
/// VXSkewGridImpl: every operation is that of the VXBrioGrid that it owns.
#include "vxgrid/grid/skew_grid.h"

#include <utility>  // for as_const, move

#include "vxgrid/grid/scalar_grid.h"

namespace VXCore {

VXSkewGridImpl::VXSkewGridImpl() : brio_(std::make_unique<VXBrioGrid>()) {}
VXSkewGridImpl::VXSkewGridImpl(const VXSkewGridImpl& other)
    : brio_(std::make_unique<VXBrioGrid>(*other.brio_)) {}
VXSkewGridImpl::VXSkewGridImpl(VXSkewGridImpl&& other) noexcept
    : brio_(std::make_unique<VXBrioGrid>(std::move(*other.brio_))) {}
VXSkewGridImpl::VXSkewGridImpl(const VXFixedGrid<float>& grid) : VXSkewGridImpl() {
  *brio_ = grid;
}
VXSkewGridImpl::VXSkewGridImpl(const VXScalarGrid& grid)
    : brio_(std::make_unique<VXBrioGrid>(grid)) {}
VXSkewGridImpl::VXSkewGridImpl(const VXBrioGrid& grid)
    : brio_(std::make_unique<VXBrioGrid>(grid)) {}
VXSkewGridImpl::~VXSkewGridImpl() = default;

VXSkewGridImpl& VXSkewGridImpl::operator=(const VXSkewGridImpl& other) {
  *brio_ = *other.brio_;
  return *this;
}
VXSkewGridImpl& VXSkewGridImpl::operator=(VXSkewGridImpl&& other) noexcept {
  *brio_ = std::move(*other.brio_);
  return *this;
}
VXSkewGridImpl& VXSkewGridImpl::operator=(const VXFixedGrid<float>& grid) {
  *brio_ = grid;
  return *this;
}
VXSkewGridImpl& VXSkewGridImpl::operator=(const VXScalarGrid& grid) {
  *brio_ = grid;
  return *this;
}
VXSkewGridImpl& VXSkewGridImpl::operator=(const VXBrioGrid& grid) {
  *brio_ = grid;
  return *this;
}

const VXFixedGrid<float>& VXSkewGridImpl::AsRegularGrid() const {
  return brio_->GetFloats()[0];
}
void VXSkewGridImpl::Clear() {
  brio_->Clear();
}

std::string VXSkewGridImpl::GetTitle() const {
  return brio_->GetTitle();
}
bool VXSkewGridImpl::SetTitle(const std::string& title) {
  return brio_->SetTitle(title);
}
bool VXSkewGridImpl::IsTitleSet() const {
  return brio_->IsTitleSet();
}
bool VXSkewGridImpl::ElementToGridIdx(unsigned int element, unsigned int& ix, unsigned int& iy,
                                      unsigned int& iz) const {
  return brio_->ElementToGridIdx(element, ix, iy, iz);
}
bool VXSkewGridImpl::ElementToSpatialCoord(unsigned int element, float& x, float& y,
                                           float& z) const {
  return brio_->ElementToSpatialCoord(element, x, y, z);
}
bool VXSkewGridImpl::GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const {
  return brio_->GetDim(xdim, ydim, zdim);
}
bool VXSkewGridImpl::SetDim(unsigned int xdim, unsigned int ydim, unsigned int zdim) {
  return brio_->SetDim(xdim, ydim, zdim);
}
unsigned int VXSkewGridImpl::GetSize() const {
  return brio_->GetSize();
}
unsigned int VXSkewGridImpl::GetXDim() const {
  return brio_->GetXDim();
}
unsigned int VXSkewGridImpl::GetYDim() const {
  return brio_->GetYDim();
}
unsigned int VXSkewGridImpl::GetZDim() const {
  return brio_->GetZDim();
}
bool VXSkewGridImpl::GetMid(float& xmid, float& ymid, float& zmid) const {
  return brio_->GetMid(xmid, ymid, zmid);
}
bool VXSkewGridImpl::SetMid(float xmid, float ymid, float zmid) {
  return brio_->SetMid(xmid, ymid, zmid);
}
float VXSkewGridImpl::GetXMid() const {
  return brio_->GetXMid();
}
float VXSkewGridImpl::GetYMid() const {
  return brio_->GetYMid();
}
float VXSkewGridImpl::GetZMid() const {
  return brio_->GetZMid();
}
float VXSkewGridImpl::GetSpacing() const {
  return brio_->GetSpacing();
}
bool VXSkewGridImpl::SetSpacing(float spacing) {
  return brio_->SetSpacing(spacing);
}
bool VXSkewGridImpl::IsSpacingSet() const {
  return brio_->IsSpacingSet();
}
unsigned int VXSkewGridImpl::GetReentrant() const {
  return brio_->GetReentrant();
}
void VXSkewGridImpl::SetReentrant(bool reentrant) {
  brio_->SetReentrant(reentrant);
}
unsigned int VXSkewGridImpl::GetSpaceGroup() const {
  return brio_->GetSpaceGroup();
}
bool VXSkewGridImpl::SetSpaceGroup(unsigned int number) {
  return brio_->SetSpaceGroup(number);
}
bool VXSkewGridImpl::HasSpaceGroup() const {
  return brio_->HasSpaceGroup();
}
bool VXSkewGridImpl::GetUnitCell(float& a, float& b, float& c, float& alpha, float& beta,
                                 float& gamma) const {
  return brio_->GetUnitCell(a, b, c, alpha, beta, gamma);
}
bool VXSkewGridImpl::HasUnitCell() const {
  return brio_->HasUnitCell();
}
bool VXSkewGridImpl::SetUnitCell(float a, float b, float c, float alpha, float beta, float gamma,
                                 unsigned int ua, unsigned int ub, unsigned int uc) {
  return brio_->SetUnitCell(a, b, c, alpha, beta, gamma, ua, ub, uc);
}
unsigned int VXSkewGridImpl::GetType() const {
  return brio_->GetType();
}
void VXSkewGridImpl::SetType(unsigned int type) {
  brio_->SetType(type);
}
float* VXSkewGridImpl::GetValues() {
  return brio_->GetValues();
}
const float* VXSkewGridImpl::GetValues() const {
  return std::as_const(*brio_).GetValues();
}
bool VXSkewGridImpl::SetValues(const float* values, unsigned int count) {
  return brio_->SetValues(values, count);
}
bool VXSkewGridImpl::IsRegular() const {
  return brio_->IsRegular();
}
bool VXSkewGridImpl::GetFloatsSet() const {
  return brio_->GetFloatsSet();
}
bool VXSkewGridImpl::GetOrientation(float* matrix) const {
  return brio_->GetOrientation(matrix);
}
bool VXSkewGridImpl::GetOrientationSet() const {
  return brio_->GetOrientationSet();
}
bool VXSkewGridImpl::SetOrientation(const float* matrix) {
  return brio_->SetOrientation(matrix);
}
bool VXSkewGridImpl::SetOrientationSet(bool set) {
  return brio_->SetOrientationSet(set);
}
bool VXSkewGridImpl::PackingTransform(int ia, int ib, int ic, float& dx, float& dy,
                                      float& dz) const {
  return brio_->PackingTransform(ia, ib, ic, dx, dy, dz);
}
bool VXSkewGridImpl::SpatialCoordToPacking(float x, float y, float z, int& ia, int& ib,
                                           int& ic) const {
  return brio_->SpatialCoordToPacking(x, y, z, ia, ib, ic);
}

}  // namespace VXCore
