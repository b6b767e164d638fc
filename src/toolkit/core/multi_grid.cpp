// Grids with several arrays of values, for float and int.
#include "vxgrid/toolkit/core/multi_grid.h"

#include <type_traits>  // for is_same
#include <utility>      // for move

namespace VXCore {
namespace {

// Far above any number of fields that are worth having on one lattice, and low enough that a
// damaged count cannot ask for gigabytes.
constexpr unsigned int most_grids = 65536;

template <class T>
constexpr bool is_float = std::is_same_v<T, float>;

}  // namespace

// One field: values of its own, and the geometry of the whole.
template <class T>
class VXFixedMultiGrid<T>::Field final : public VXFixedGrid<T> {
 public:
  explicit Field(VXFixedMultiGrid& whole) : VXFixedGrid<T>(whole.geometry()), whole_(&whole) {
    ValueBuffer<T> values(this->GetSize());
    this->swap_values(values);
  }

  void Clear() override { whole_->Clear(); }
  bool Realloc() override { return whole_->Realloc(); }

  void exchange(ValueBuffer<T>& values) noexcept { this->swap_values(values); }
  void belong_to(VXFixedMultiGrid& whole) noexcept {
    whole_ = &whole;
    this->share_geometry(whole.geometry());
  }
  // Tagged data alone; geometry and values are the business of the whole.
  void copy_tags(const VXFixedGrid<T>& other) { VXBase::operator=(other); }
  void clear_tags() { VXBase::Clear(); }
  const ValueBuffer<T>& values() const noexcept { return this->buffer(); }

 private:
  VXFixedMultiGrid* whole_;
};

template <class T>
VXFixedMultiGrid<T>::VXFixedMultiGrid() {
  SetNumGrids(1);
}

template <class T>
VXFixedMultiGrid<T>::VXFixedMultiGrid(const VXFixedMultiGrid& other) : VXGridBase(other) {
  fields_.reserve(other.fields_.size());
  for (const auto& field : other.fields_) {
    fields_.push_back(std::make_unique<Field>(*this));
    auto values = field->values();
    fields_.back()->exchange(values);
    fields_.back()->copy_tags(*field);
  }
}

template <class T>
VXFixedMultiGrid<T>::VXFixedMultiGrid(VXFixedMultiGrid&& other) noexcept
    : VXGridBase(std::move(other)), fields_(std::move(other.fields_)) {
  other.fields_.clear();
  own_fields();
}

template <class T>
VXFixedMultiGrid<T>& VXFixedMultiGrid<T>::operator=(const VXFixedMultiGrid& other) {
  if (this == &other) return *this;
  std::vector<ValueBuffer<T>> values;
  values.reserve(other.fields_.size());
  for (const auto& field : other.fields_)
    values.push_back(field->values());
  SetNumGrids(other.GetNumGrids());
  VXGridBase::operator=(other);
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    fields_[i]->exchange(values[i]);
    fields_[i]->copy_tags(*other.fields_[i]);
  }
  return *this;
}

template <class T>
VXFixedMultiGrid<T>& VXFixedMultiGrid<T>::operator=(VXFixedMultiGrid&& other) noexcept {
  if (this == &other) return *this;
  VXGridBase::operator=(std::move(other));
  fields_ = std::move(other.fields_);
  other.fields_.clear();
  own_fields();
  return *this;
}

template <class T>
VXFixedMultiGrid<T>::~VXFixedMultiGrid() = default;

template <class T>
void VXFixedMultiGrid<T>::own_fields() noexcept {
  for (const auto& field : fields_)
    field->belong_to(*this);
}

template <class T>
TypeId VXFixedMultiGrid<T>::GetDataType() const {
  return is_float<T> ? type_ids::fixed_multi_grid_float : type_ids::fixed_multi_grid_int;
}

template <class T>
bool VXFixedMultiGrid<T>::IsDataType(TypeId type) const {
  return type == VXFixedMultiGrid<T>::GetDataType() || VXGridBase::IsDataType(type);
}

template <class T>
void VXFixedMultiGrid<T>::Clear() {
  VXGridBase::Clear();
  for (const auto& field : fields_)
    field->clear_tags();
}

template <class T>
VXBase* VXFixedMultiGrid<T>::CreateCopy() const {
  return new VXMultiGrid<T>(*this);
}

template <class T>
bool VXFixedMultiGrid<T>::Realloc() {
  std::vector<ValueBuffer<T>> values;
  values.reserve(fields_.size());
  for (std::size_t i = 0; i < fields_.size(); ++i)
    values.emplace_back(this->GetSize());
  for (std::size_t i = 0; i < fields_.size(); ++i)
    fields_[i]->exchange(values[i]);
  return true;
}

template <class T>
unsigned int VXFixedMultiGrid<T>::GetNumGrids() const noexcept {
  return static_cast<unsigned int>(fields_.size());
}

template <class T>
bool VXFixedMultiGrid<T>::SetNumGrids(unsigned int count) {
  if (count > most_grids) return false;
  if (count < fields_.size()) fields_.resize(count);
  fields_.reserve(count);
  std::vector<std::unique_ptr<Field>> added;
  while (fields_.size() + added.size() < count)
    added.push_back(std::make_unique<Field>(*this));
  for (auto& field : added)
    fields_.push_back(std::move(field));
  return true;
}

template <class T>
VXFixedGrid<T>& VXFixedMultiGrid<T>::operator[](unsigned int index) noexcept {
  return *fields_[index];
}

template <class T>
const VXFixedGrid<T>& VXFixedMultiGrid<T>::operator[](unsigned int index) const noexcept {
  return *fields_[index];
}

template <class T>
T* VXFixedMultiGrid<T>::GetValues(unsigned int index) noexcept {
  return index < fields_.size() ? fields_[index]->GetValues() : nullptr;
}

template <class T>
const T* VXFixedMultiGrid<T>::GetValues(unsigned int index) const noexcept {
  return index < fields_.size() ? std::as_const(*fields_[index]).GetValues() : nullptr;
}

template <class T>
bool VXFixedMultiGrid<T>::SetValues(unsigned int index, const T* values, unsigned int count) {
  return index < fields_.size() && fields_[index]->SetValues(values, count);
}

template <class T>
TypeId VXMultiGrid<T>::GetDataType() const {
  return is_float<T> ? type_ids::multi_grid_float : type_ids::multi_grid_int;
}

template <class T>
bool VXMultiGrid<T>::IsDataType(TypeId type) const {
  return type == VXMultiGrid<T>::GetDataType() || VXFixedMultiGrid<T>::IsDataType(type);
}

template <class T>
void VXMultiGrid<T>::Clear() {
  VXFixedMultiGrid<T>::Clear();
  this->SetNumGrids(1);
}

template class VXFixedMultiGrid<float>;
template class VXFixedMultiGrid<int>;
template class VXMultiGrid<float>;
template class VXMultiGrid<int>;

}  // namespace VXCore
