// Grids with one array of values, for float and int.
#include "vxgrid/toolkit/core/fixed_grid.h"

#include <algorithm>    // for max
#include <array>        // for array
#include <cstring>      // for memmove
#include <type_traits>  // for is_same
#include <utility>      // for move

#include "vxgrid/toolkit/core/dimension.h"

namespace VXCore {
namespace {

template <class T>
constexpr bool is_float = std::is_same_v<T, float>;

unsigned int not_negative(int dim) {
  return static_cast<unsigned int>(std::max(dim, 0));
}

// The box is measured in its own precision; the rule for dimensions is one of single precision.
template <class Number>
void cover_box(VXGridBase& grid, const Number* minmax, Number spacing, const char* title) {
  std::array<float, 3> mid{};
  std::array<float, 3> extents{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    mid[axis] = static_cast<float>((minmax[axis] + minmax[axis + 3]) / 2);
    extents[axis] = static_cast<float>(minmax[axis + 3] - minmax[axis]);
  }
  if (title) grid.SetTitle(title);
  grid.SetMid(mid[0], mid[1], mid[2]);
  grid.SetSpacing(static_cast<float>(spacing));
  std::array<unsigned int, 3> dim{};
  if (dimensions_from_extents(extents.data(), static_cast<float>(spacing), dim.data()))
    grid.SetDim(dim[0], dim[1], dim[2]);
}

}  // namespace

template <class T>
TypeId VXFixedGrid<T>::GetDataType() const {
  return is_float<T> ? type_ids::fixed_grid_float : type_ids::fixed_grid_int;
}

template <class T>
bool VXFixedGrid<T>::IsDataType(TypeId type) const {
  return type == VXFixedGrid<T>::GetDataType() || VXGridBase::IsDataType(type);
}

template <class T>
VXBase* VXFixedGrid<T>::CreateCopy() const {
  return new VXGrid<T>(*this);
}

template <class T>
VXFixedGrid<T>& VXFixedGrid<T>::operator=(const VXFixedGrid& other) {
  if (this == &other) return *this;
  auto values = other.values_;
  VXGridBase::operator=(other);
  values_.swap(values);
  return *this;
}

template <class T>
bool VXFixedGrid<T>::SetValues(const T* values, unsigned int count) {
  if (count > values_.size() || (count && !values)) return false;
  // The values may be the grid's own.
  if (count) std::memmove(values_.data(), values, std::size_t{count} * sizeof(T));
  return true;
}

template <class T>
bool VXFixedGrid<T>::AdoptValues(ValueBuffer<T>&& values) {
  if (values.size() != this->GetSize()) return false;
  values_ = std::move(values);
  return true;
}

template <class T>
ValueBuffer<T> VXFixedGrid<T>::TakeValues() {
  ValueBuffer<T> values(values_.size());
  values_.swap(values);
  return values;
}

template <class T>
VXGrid<T>::VXGrid(int xdim, int ydim, int zdim, float xmid, float ymid, float zmid, float spacing,
                  std::string title, const T* values) {
  this->SetTitle(title);
  this->SetMid(xmid, ymid, zmid);
  this->SetSpacing(spacing);
  if (this->SetDim(not_negative(xdim), not_negative(ydim), not_negative(zdim)) && values)
    this->SetValues(values, this->GetSize());
}

template <class T>
VXGrid<T>::VXGrid(const float* const minmax, float spacing, const char* title) {
  cover_box(*this, minmax, spacing, title);
}

template <class T>
VXGrid<T>::VXGrid(const double* const minmax, double spacing, const char* title) {
  cover_box(*this, minmax, spacing, title);
}

template <class T>
TypeId VXGrid<T>::GetDataType() const {
  return is_float<T> ? type_ids::grid_float : type_ids::grid_int;
}

template <class T>
bool VXGrid<T>::IsDataType(TypeId type) const {
  return type == VXGrid<T>::GetDataType() || VXFixedGrid<T>::IsDataType(type);
}

template <class T>
bool VXGrid<T>::Realloc() {
  ValueBuffer<T> values(this->GetSize());
  this->swap_values(values);
  return true;
}

template class VXFixedGrid<float>;
template class VXFixedGrid<int>;
template class VXGrid<float>;
template class VXGrid<int>;

}  // namespace VXCore
