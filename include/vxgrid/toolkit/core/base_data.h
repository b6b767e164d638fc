/// \file
/// One tagged datum: a tag number and a value of any copyable type.
#ifndef VXGRID_TOOLKIT_CORE_BASE_DATA_H
#define VXGRID_TOOLKIT_CORE_BASE_DATA_H

#include <array>     // for array
#include <string>    // for string
#include <typeinfo>  // for typeid
#include <utility>   // for move
#include <vector>    // for vector

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/type_ids.h"

namespace VXCore {

/// A type identifier for a type without one in the table: FNV-1a over its mangled name, highest
/// bit set. The mangled name is the same in the library and in its callers.
VXGRID_API TypeId hashed_type_id(const char* mangled_name);

/// The identifier of a stored type. Specialise it by deriving from `FixedDataTypeId` to give a type
/// a written constant; every other type gets a hash of its name.
template <class T>
struct DataTypeId {
  static TypeId get() {
    static const TypeId id = hashed_type_id(typeid(T).name());
    return id;
  }
};

template <TypeId Id>
struct FixedDataTypeId {
  static constexpr TypeId get() { return Id; }
};

template <>
struct DataTypeId<bool> : FixedDataTypeId<data_ids::boolean> {};
template <>
struct DataTypeId<int> : FixedDataTypeId<data_ids::integer> {};
template <>
struct DataTypeId<unsigned int> : FixedDataTypeId<data_ids::unsigned_integer> {};
template <>
struct DataTypeId<float> : FixedDataTypeId<data_ids::single_float> {};
template <>
struct DataTypeId<double> : FixedDataTypeId<data_ids::double_float> {};
template <>
struct DataTypeId<std::string> : FixedDataTypeId<data_ids::text> {};
template <>
struct DataTypeId<std::vector<float>> : FixedDataTypeId<data_ids::vector_float> {};
template <>
struct DataTypeId<std::vector<unsigned int>> : FixedDataTypeId<data_ids::vector_unsigned> {};
template <>
struct DataTypeId<std::vector<int>> : FixedDataTypeId<data_ids::vector_int> {};
template <>
struct DataTypeId<std::vector<double>> : FixedDataTypeId<data_ids::vector_double> {};
template <>
struct DataTypeId<std::vector<std::string>> : FixedDataTypeId<data_ids::vector_text> {};
template <>
struct DataTypeId<std::array<float, 3>> : FixedDataTypeId<data_ids::array_3_float> {};
template <>
struct DataTypeId<std::array<float, 6>> : FixedDataTypeId<data_ids::array_6_float> {};

/// One tagged datum, without its value.
class VXGRID_API VXBaseData {
 public:
  explicit VXBaseData(unsigned int tag) : tag_(tag) {}
  virtual ~VXBaseData();
  /// The identifier of the type of the value.
  virtual TypeId GetDataType() const = 0;
  /// Whether the datum goes along when its object is copied; true for every type of this library.
  virtual bool IsCopyable() const = 0;
  /// A copy with the same tag, owned by the caller.
  virtual VXBaseData* CreateCopy() const = 0;

  unsigned int GetTag() const { return tag_; }

 protected:
  VXBaseData(const VXBaseData&) = default;
  VXBaseData& operator=(const VXBaseData&) = delete;

 private:
  unsigned int tag_;
};

/// One tagged datum with its value.
template <class T>
class VXGRID_API VXBaseDataT : public VXBaseData {
 public:
  explicit VXBaseDataT(unsigned int tag, const T& value = T()) : VXBaseData(tag), value_(value) {}
  VXBaseDataT(unsigned int tag, T&& value) : VXBaseData(tag), value_(std::move(value)) {}

  TypeId GetDataType() const override { return DataTypeId<T>::get(); }
  bool IsCopyable() const override { return true; }
  VXBaseDataT* CreateCopy() const override { return new VXBaseDataT(*this); }

  const T& GetData() const { return value_; }
  T& GetData() { return value_; }

 private:
  T value_;
};

extern template class VXBaseDataT<bool>;
extern template class VXBaseDataT<int>;
extern template class VXBaseDataT<unsigned int>;
extern template class VXBaseDataT<float>;
extern template class VXBaseDataT<double>;
extern template class VXBaseDataT<std::string>;
extern template class VXBaseDataT<std::vector<float>>;
extern template class VXBaseDataT<std::vector<unsigned int>>;
extern template class VXBaseDataT<std::vector<int>>;
extern template class VXBaseDataT<std::vector<double>>;
extern template class VXBaseDataT<std::vector<std::string>>;
extern template class VXBaseDataT<std::array<float, 3>>;
extern template class VXBaseDataT<std::array<float, 6>>;

}  // namespace VXCore

#endif
