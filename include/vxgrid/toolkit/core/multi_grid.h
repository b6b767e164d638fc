/// \file
/// Regular grids with several arrays of values on one geometry.
#ifndef VXGRID_TOOLKIT_CORE_MULTI_GRID_H
#define VXGRID_TOOLKIT_CORE_MULTI_GRID_H

#include <memory>  // for unique_ptr
#include <vector>  // for vector

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/fixed_grid.h"
#include "vxgrid/toolkit/core/grid_base.h"

namespace VXCore {

/// Several fields of values that share title, spacing, mid and dimensions, made for float and int.
/// Geometry calls, on the whole or on a field, run on the whole.
template <class T>
class VXGRID_API VXFixedMultiGrid : public VXGridBase {
 public:
  ~VXFixedMultiGrid() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  /// Back to no geometry, no values and no tagged data; the fields stay.
  void Clear() override;
  /// A `VXMultiGrid<T>`.
  VXBase* CreateCopy() const override;
  /// Replaces the values of all fields by zeros.
  bool Realloc() override;

  unsigned int GetNumGrids() const noexcept;
  /// Adds fields of zeros, or drops the last ones. False, and nothing changed, above 65536.
  bool SetNumGrids(unsigned int count);
  /// One field; the index has to be below `GetNumGrids`, which is not checked.
  VXFixedGrid<T>& operator[](unsigned int index) noexcept;
  const VXFixedGrid<T>& operator[](unsigned int index) const noexcept;
  /// The values of one field; null beyond the last one, or when there are none.
  T* GetValues(unsigned int index) noexcept;
  const T* GetValues(unsigned int index) const noexcept;
  /// As the call of `VXFixedGrid`, on one field; false beyond the last one.
  virtual bool SetValues(unsigned int index, const T* values, unsigned int count);

 protected:
  VXFixedMultiGrid();
  VXFixedMultiGrid(const VXFixedMultiGrid& other);
  VXFixedMultiGrid(VXFixedMultiGrid&& other) noexcept;
  VXFixedMultiGrid& operator=(const VXFixedMultiGrid& other);
  VXFixedMultiGrid& operator=(VXFixedMultiGrid&& other) noexcept;

 private:
  class Field;
  void own_fields() noexcept;

  std::vector<std::unique_ptr<Field>> fields_;
};

/// Several fields that stand on their own. A new one has one field and no geometry; `Clear` goes
/// back to that. One that was moved from has no field.
template <class T>
class VXGRID_API VXMultiGrid : public VXFixedMultiGrid<T> {
 public:
  VXMultiGrid() = default;
  VXMultiGrid(const VXMultiGrid&) = default;
  VXMultiGrid(VXMultiGrid&&) noexcept = default;
  VXMultiGrid(const VXFixedMultiGrid<T>& other) : VXFixedMultiGrid<T>(other) {}
  /// Fields that stay keep their place in memory.
  VXMultiGrid& operator=(const VXMultiGrid&) = default;
  VXMultiGrid& operator=(VXMultiGrid&&) noexcept = default;
  VXMultiGrid& operator=(const VXFixedMultiGrid<T>& other) {
    VXFixedMultiGrid<T>::operator=(other);
    return *this;
  }

  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  void Clear() override;
};

extern template class VXFixedMultiGrid<float>;
extern template class VXFixedMultiGrid<int>;
extern template class VXMultiGrid<float>;
extern template class VXMultiGrid<int>;

}  // namespace VXCore

#endif
