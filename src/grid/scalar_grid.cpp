/// \file
/// VXScalarGrid over the host grid.
#include "vxgrid/grid/scalar_grid.h"

#include <utility>  // for exchange, move

namespace VXCore {

template class VXBaseDataT<VXScalarGrid>;
template class VXBaseDataT<std::vector<VXScalarGrid>>;

VXScalarGrid::VXScalarGrid() = default;
VXScalarGrid::VXScalarGrid(const VXScalarGrid& other) = default;
VXScalarGrid::VXScalarGrid(VXScalarGrid&& other) noexcept
    : VXGrid<float>(std::move(other)), type_(std::exchange(other.type_, VXGridType::Generic)) {}
VXScalarGrid::VXScalarGrid(const VXFixedGrid<float>& grid) : VXGrid<float>(grid) {}
VXScalarGrid::VXScalarGrid(int xdim, int ydim, int zdim, float xmid, float ymid, float zmid,
                           float spacing, std::string title, const float* values)
    : VXGrid<float>(xdim, ydim, zdim, xmid, ymid, zmid, spacing, std::move(title), values) {}
VXScalarGrid::VXScalarGrid(const float* minmax, float spacing, const char* title)
    : VXGrid<float>(minmax, spacing, title) {}
VXScalarGrid::VXScalarGrid(const double* minmax, double spacing, const char* title)
    : VXGrid<float>(minmax, spacing, title) {}
VXScalarGrid::~VXScalarGrid() = default;

VXScalarGrid& VXScalarGrid::operator=(const VXScalarGrid& other) {
  if (this == &other) return *this;
  VXGrid<float>::operator=(other);
  type_ = other.type_;
  return *this;
}

VXScalarGrid& VXScalarGrid::operator=(VXScalarGrid&& other) noexcept {
  if (this == &other) return *this;
  VXGrid<float>::operator=(std::move(other));
  type_ = std::exchange(other.type_, VXGridType::Generic);
  return *this;
}

VXScalarGrid& VXScalarGrid::operator=(const VXFixedGrid<float>& grid) {
  if (this == &grid) return *this;
  VXGrid<float>::operator=(grid);
  type_ = VXGridType::Generic;
  return *this;
}

void VXScalarGrid::Clear() {
  *this = VXScalarGrid();
}

TypeId VXScalarGrid::GetDataType() const {
  return type_ids::scalar_grid;
}

bool VXScalarGrid::IsDataType(TypeId type) const {
  return type == type_ids::scalar_grid || VXGrid<float>::IsDataType(type);
}

VXBase* VXScalarGrid::CreateCopy() const {
  return new VXScalarGrid(*this);
}

bool VXScalarGrid::SetType(unsigned int type) {
  type_ = type;
  return true;
}

}  // namespace VXCore
