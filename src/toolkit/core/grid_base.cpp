// The geometry of host grids.
#include "vxgrid/toolkit/core/grid_base.h"

#include <cstdint>  // for uint64_t
#include <limits>   // for numeric_limits
#include <utility>  // for exchange, move

namespace VXCore {
namespace {

bool fits_size(std::uint64_t xdim, std::uint64_t ydim, std::uint64_t zdim) {
  constexpr std::uint64_t largest = std::numeric_limits<unsigned int>::max();
  if (xdim == 0 || ydim == 0 || zdim == 0) return true;
  // The product of two dimensions fits 64 bits, that of three may not.
  return xdim * ydim <= largest / zdim;
}

float coordinate(unsigned int index, unsigned int dim, float mid, float spacing) {
  return mid + (static_cast<float>(index) - (static_cast<float>(dim) - 1.0f) / 2.0f) * spacing;
}

}  // namespace

TypeId VXGridAbstractBase::GetDataType() const {
  return type_ids::grid_abstract_base;
}
bool VXGridAbstractBase::IsDataType(TypeId type) const {
  return type == type_ids::grid_abstract_base || VXBase::IsDataType(type);
}

VXGridBase::VXGridBase(VXGridBase&& other) noexcept
    : VXGridAbstractBase(std::move(other)), own_(std::exchange(*other.geometry_, {})) {}

VXGridBase& VXGridBase::operator=(const VXGridBase& other) {
  VXGridAbstractBase::operator=(other);
  *geometry_ = *other.geometry_;
  return *this;
}

VXGridBase& VXGridBase::operator=(VXGridBase&& other) noexcept {
  if (this != &other) {
    VXGridAbstractBase::operator=(std::move(other));
    *geometry_ = std::exchange(*other.geometry_, {});
  }
  return *this;
}

TypeId VXGridBase::GetDataType() const {
  return type_ids::grid_base;
}
bool VXGridBase::IsDataType(TypeId type) const {
  return type == type_ids::grid_base || VXGridAbstractBase::IsDataType(type);
}

void VXGridBase::Clear() {
  VXGridAbstractBase::Clear();
  *geometry_ = GridGeometry();
  Realloc();
}

bool VXGridBase::SetTitle(const std::string& title) {
  geometry_->title = title;
  geometry_->title_set = true;
  return true;
}

unsigned int VXGridBase::GetSize() const {
  const auto& dim = geometry_->dim;
  return dim[0] * dim[1] * dim[2];
}

bool VXGridBase::GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const {
  xdim = GetXDim();
  ydim = GetYDim();
  zdim = GetZDim();
  return true;
}

bool VXGridBase::GetMid(float& xmid, float& ymid, float& zmid) const {
  xmid = GetXMid();
  ymid = GetYMid();
  zmid = GetZMid();
  return true;
}

bool VXGridBase::SetSpacing(float spacing) {
  geometry_->spacing = spacing;
  geometry_->spacing_set = true;
  return true;
}

bool VXGridBase::SetMid(float xmid, float ymid, float zmid) {
  geometry_->mid = {xmid, ymid, zmid};
  geometry_->mid_set = {true, true, true};
  return true;
}

bool VXGridBase::SetXMid(float xmid) {
  geometry_->mid[0] = xmid;
  geometry_->mid_set[0] = true;
  return true;
}

bool VXGridBase::SetYMid(float ymid) {
  geometry_->mid[1] = ymid;
  geometry_->mid_set[1] = true;
  return true;
}

bool VXGridBase::SetZMid(float zmid) {
  geometry_->mid[2] = zmid;
  geometry_->mid_set[2] = true;
  return true;
}

bool VXGridBase::SetDim(unsigned int xdim, unsigned int ydim, unsigned int zdim) {
  if (!fits_size(xdim, ydim, zdim)) return false;
  const auto before = std::exchange(geometry_->dim, {xdim, ydim, zdim});
  try {
    return Realloc();
  } catch (...) {
    geometry_->dim = before;
    throw;
  }
}

bool VXGridBase::SetXDim(unsigned int xdim) {
  return SetDim(xdim, GetYDim(), GetZDim());
}
bool VXGridBase::SetYDim(unsigned int ydim) {
  return SetDim(GetXDim(), ydim, GetZDim());
}
bool VXGridBase::SetZDim(unsigned int zdim) {
  return SetDim(GetXDim(), GetYDim(), zdim);
}

bool VXGridBase::GridIdxToSpatialCoord(unsigned int x, unsigned int y, unsigned int z,
                                       float& xcoord, float& ycoord, float& zcoord) const {
  const auto& dim = geometry_->dim;
  const auto& mid = geometry_->mid;
  xcoord = coordinate(x, dim[0], mid[0], geometry_->spacing);
  ycoord = coordinate(y, dim[1], mid[1], geometry_->spacing);
  zcoord = coordinate(z, dim[2], mid[2], geometry_->spacing);
  return x < dim[0] && y < dim[1] && z < dim[2];
}

bool VXGridBase::ElementToSpatialCoord(unsigned int element, float& xcoord, float& ycoord,
                                       float& zcoord) const {
  unsigned int x = 0, y = 0, z = 0;
  return ElementToGridIdx(element, x, y, z) &&
         GridIdxToSpatialCoord(x, y, z, xcoord, ycoord, zcoord);
}

bool VXGridBase::ElementToGridIdx(unsigned int element, unsigned int& x, unsigned int& y,
                                  unsigned int& z) const {
  if (element >= GetSize()) return false;
  const auto& dim = geometry_->dim;
  x = element % dim[0];
  y = element / dim[0] % dim[1];
  z = element / (dim[0] * dim[1]);
  return true;
}

void VXGetCenterAndExtents(const VXGridBase& grid, float* center, float* extents) {
  const float spacing = grid.GetSpacing();
  grid.GetMid(center[0], center[1], center[2]);
  extents[0] = static_cast<float>(grid.GetXDim()) * spacing;
  extents[1] = static_cast<float>(grid.GetYDim()) * spacing;
  extents[2] = static_cast<float>(grid.GetZDim()) * spacing;
}

}  // namespace VXCore
