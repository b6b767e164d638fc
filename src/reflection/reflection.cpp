// The handle of a reflection set and its tagged data.
#include "vxgrid/reflection/reflection.h"

#include <cmath>  // for sqrt
#include <new>    // for bad_alloc

#include "vxgrid/grid/skew_grid.h"

namespace VXCore {

VXReflection::VXReflection() : impl_(std::make_unique<VXReflectionImpl>()) {}

VXReflection::VXReflection(const VXReflection& other)
    : VXBase(other), impl_(std::make_unique<VXReflectionImpl>(*other.impl_)) {}

VXReflection& VXReflection::operator=(const VXReflection& other) {
  if (this == &other) return *this;
  VXBase::operator=(other);
  *impl_ = *other.impl_;
  return *this;
}

VXReflection::~VXReflection() = default;

void VXReflection::Clear() {
  impl_->Clear();
}

TypeId VXReflection::GetDataType() const {
  return type_ids::reflection;
}

bool VXReflection::IsDataType(TypeId type) const {
  return type == type_ids::reflection || VXBase::IsDataType(type);
}

VXBase* VXReflection::CreateCopy() const {
  try {
    return new VXReflection(*this);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void VXReflection::SetRESO(double reslo, double reshi) {
  SetDoubleData("reshi", reshi);
  SetDoubleData("reso", 1 / std::sqrt(reshi));
  SetDoubleData("reslo", reslo);
}

double VXReflection::GetResolution() const {
  return GetDoubleData("reso");
}

bool VXReflection::MakeMap(VXSkewGrid& grid, unsigned int maptype) const {
  if (!impl_->MakeMap(grid, maptype)) return false;
  grid.SetDoubleData("resolution", GetResolution());
  return true;
}

}  // namespace VXCore
