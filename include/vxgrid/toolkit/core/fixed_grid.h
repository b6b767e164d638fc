/// \file
/// Regular grids with one array of values.
#ifndef VXGRID_TOOLKIT_CORE_FIXED_GRID_H
#define VXGRID_TOOLKIT_CORE_FIXED_GRID_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/grid_base.h"
#include "vxgrid/toolkit/core/value_buffer.h"

namespace VXCore {

/// A regular grid with one array of values, made for float and int. It is met as a `VXGrid` or as
/// one field of a `VXMultiGrid`; geometry calls on a field run on the whole.
template <class T>
class VXGRID_API VXFixedGrid : public VXGridBase {
 public:
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  /// A `VXGrid<T>`, also of a field.
  VXBase* CreateCopy() const override;

  /// The values, x fastest; null when the grid has none. They stay in place until the dimensions
  /// are set or other values are adopted.
  T* GetValues() noexcept { return values_.data(); }
  const T* GetValues() const noexcept { return values_.data(); }
  /// One value. The element has to be below `GetSize`, which is not checked.
  T& operator[](unsigned int element) noexcept { return values_[element]; }
  const T& operator[](unsigned int element) const noexcept { return values_[element]; }
  /// One value. The indices have to be below the dimensions, which is not checked.
  T& operator()(unsigned int x, unsigned int y, unsigned int z) noexcept {
    return values_[this->element_of(x, y, z)];
  }
  const T& operator()(unsigned int x, unsigned int y, unsigned int z) const noexcept {
    return values_[this->element_of(x, y, z)];
  }
  /// Copies the first `count` values in; false, and nothing changed, when there are more than
  /// `GetSize`, or when there are some and the pointer is null.
  virtual bool SetValues(const T* values, unsigned int count);

  /// Takes a buffer over without a copy; false, and nothing changed, when its size is not
  /// `GetSize`.
  bool AdoptValues(ValueBuffer<T>&& values);
  /// Gives the values away without a copy; the grid is left with zeros.
  ValueBuffer<T> TakeValues();

 protected:
  VXFixedGrid() = default;
  explicit VXFixedGrid(GridGeometry& shared) noexcept : VXGridBase(shared) {}
  VXFixedGrid(const VXFixedGrid&) = default;
  VXFixedGrid(VXFixedGrid&&) noexcept = default;
  VXFixedGrid& operator=(const VXFixedGrid& other);
  VXFixedGrid& operator=(VXFixedGrid&&) noexcept = default;

  const ValueBuffer<T>& buffer() const noexcept { return values_; }
  void swap_values(ValueBuffer<T>& other) noexcept { values_.swap(other); }

 private:
  ValueBuffer<T> values_;
};

/// A grid that stands on its own.
template <class T>
class VXGRID_API VXGrid : public VXFixedGrid<T> {
 public:
  /// No geometry, nothing set.
  VXGrid() = default;
  /// Everything set; null values give zeros. A negative dimension counts as 0. Dimensions whose
  /// product is too large leave the grid with none.
  VXGrid(int xdim, int ydim, int zdim, float xmid, float ymid, float zmid, float spacing,
         std::string title, const T* values);
  /// A grid over a box, xmin, ymin, zmin, xmax, ymax, zmax, in Angstrom: the mid is its centre,
  /// the dimensions come from `dimension_from_extent`. Where they cannot be made the grid is left
  /// with none. A null title is not set.
  VXGrid(const float* const minmax, float spacing, const char* title);
  VXGrid(const double* const minmax, double spacing, const char* title);
  VXGrid(const VXGrid&) = default;
  VXGrid(VXGrid&&) noexcept = default;
  VXGrid(const VXFixedGrid<T>& other) : VXFixedGrid<T>(other) {}
  VXGrid& operator=(const VXGrid&) = default;
  VXGrid& operator=(VXGrid&&) noexcept = default;
  VXGrid& operator=(const VXFixedGrid<T>& other) {
    VXFixedGrid<T>::operator=(other);
    return *this;
  }

  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  bool Realloc() override;
};

extern template class VXFixedGrid<float>;
extern template class VXFixedGrid<int>;
extern template class VXGrid<float>;
extern template class VXGrid<int>;

}  // namespace VXCore

#endif
