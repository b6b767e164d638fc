// The root object and its tagged data.
#include "vxgrid/toolkit/core/base.h"

#include <algorithm>  // for find_if
#include <utility>    // for move

#include "vxgrid/toolkit/core/error_handler.h"

namespace VXCore {
namespace {

template <class Data>
auto find_tag(Data& data, unsigned int tag) {
  return std::find_if(data.begin(), data.end(),
                      [tag](const auto& datum) { return datum->GetTag() == tag; });
}

}  // namespace

VXBaseImpl::VXBaseImpl() = default;
VXBaseImpl::~VXBaseImpl() = default;

VXBaseImpl::VXBaseImpl(const VXBaseImpl& other) {
  data_.reserve(other.data_.size());
  for (const auto& datum : other.data_)
    if (datum->IsCopyable()) data_.emplace_back(datum->CreateCopy());
}

VXBaseData* VXBaseImpl::FindData(unsigned int tag) const {
  const auto found = find_tag(data_, tag);
  return found == data_.end() ? nullptr : found->get();
}

void VXBaseImpl::SetData(std::unique_ptr<VXBaseData> datum) {
  const auto found = find_tag(data_, datum->GetTag());
  if (found == data_.end())
    data_.push_back(std::move(datum));
  else
    *found = std::move(datum);
}

bool VXBaseImpl::DeleteData(unsigned int tag) {
  const auto found = find_tag(data_, tag);
  if (found == data_.end()) return false;
  data_.erase(found);
  return true;
}

bool VXBaseImpl::CheckTypeWarning() {
  VXThrow.Debug("A tagged datum has another type than the one asked for and counts as absent");
  return false;
}

VXBase::VXBase() noexcept = default;
VXBase::VXBase(VXBase&& other) noexcept = default;
VXBase& VXBase::operator=(VXBase&& other) noexcept = default;
VXBase::~VXBase() = default;

VXBase::VXBase(const VXBase& other)
    : impl_(other.impl_ ? std::make_unique<VXBaseImpl>(*other.impl_) : nullptr) {}

VXBase& VXBase::operator=(const VXBase& other) {
  if (this != &other) impl_ = other.impl_ ? std::make_unique<VXBaseImpl>(*other.impl_) : nullptr;
  return *this;
}

void VXBase::Clear() {
  impl_.reset();
}
TypeId VXBase::GetDataType() const {
  return type_ids::base;
}
bool VXBase::IsDataType(TypeId type) const {
  return type == type_ids::base;
}
VXBase* VXBase::CreateCopy() const {
  return new VXBase(*this);
}

bool VXBase::DeleteData(DataTag tag) {
  return impl_ && impl_->DeleteData(tag.number());
}

void VXBase::AttachBaseData(std::unique_ptr<VXBaseData> datum) {
  if (!datum) return;
  if (!impl_) impl_ = std::make_unique<VXBaseImpl>();
  impl_->SetData(std::move(datum));
}

void VXCopyBaseData(VXBase& to, const VXBase& from) {
  if (&to == &from || !from.GetBaseImpl()) return;
  for (const auto& datum : from.GetBaseImpl()->GetAllData())
    if (datum->IsCopyable()) to.AttachBaseData(std::unique_ptr<VXBaseData>(datum->CreateCopy()));
}

TypeId VXContainer::GetDataType() const {
  return type_ids::container;
}
bool VXContainer::IsDataType(TypeId type) const {
  return type == type_ids::container || VXBase::IsDataType(type);
}
VXBase* VXContainer::CreateCopy() const {
  return new VXContainer(*this);
}

}  // namespace VXCore
