/// \file
/// Records: named fields of any registered type, stored as bytes.
#ifndef VXGRID_TOOLKIT_PIPE_RECORD_H
#define VXGRID_TOOLKIT_PIPE_RECORD_H

#include <cstddef>      // for size_t
#include <memory>       // for make_shared, shared_ptr
#include <optional>     // for optional
#include <string>       // for string
#include <type_traits>  // for is_same_v
#include <typeinfo>     // for type_info
#include <utility>      // for move
#include <vector>       // for vector

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/pipe/field_types.h"

namespace VXPipe {

/// The field type of values of type T.
template <class T>
struct VXFieldTypeOf {
  using type = VXFieldType<T>;
};
template <class T>
struct VXFieldTypeOf<std::vector<T>> {
  using type = VXVectorFieldType<T>;
};
template <class T>
struct VXFieldTypeOf<std::vector<std::optional<T>>> {
  using type = VXVectorFieldType<T>;
};

/// Name and type of a field.
class VXGRID_API VXFieldBase {
 public:
  const std::string& GetName() const { return name_; }
  const std::string& GetTypeName() const { return type_name_; }

 protected:
  VXFieldBase(std::string name, std::string type_name)
      : name_(std::move(name)), type_name_(std::move(type_name)) {}

 private:
  std::string name_;
  std::string type_name_;
};

/// A field of values of type T.
template <class T>
class VXField : public VXFieldBase {
 public:
  explicit VXField(std::string name)
      : VXFieldBase(std::move(name), typename VXFieldTypeOf<T>::type().GetName()) {}
};

/// What `VXRecord::CheckField` answers.
enum VXFieldState : unsigned int {
  VXFieldAbsent = 0,     ///< the record has no field of this name
  VXFieldBytes = 1,      ///< the field is there as bytes
  VXFieldCached = 2,     ///< the field is there as a value
  VXFieldOtherType = 4,  ///< the name is taken by a field of another type
};

/// Fields in the order in which they came, one of a name. Fields of types that are not registered
/// are kept and written out again.
class VXGRID_API VXRecord {
 public:
  /// A `VXFieldState`.
  unsigned int CheckField(const VXFieldBase& field) const;
  /// Removes the field of this name, whatever its type; false when there is none.
  bool DeleteField(const VXFieldBase& field);
  /// Adds the field or replaces what it holds; false, and nothing changed, when the name is taken
  /// by a field of another type.
  bool SetBytes(const VXFieldBase& field, VXBytes bytes);
  /// The bytes of a field, of a cached value made on the spot; empty when it is not there.
  VXBytes GetBytes(const VXFieldBase& field) const;
  /// The bytes in their place until the record changes; null unless the state is `VXFieldBytes`.
  const VXBytes* FindBytes(const VXFieldBase& field) const;

  /// Adds the field or replaces what it holds by a value, which nobody may change any more; false
  /// as for `SetBytes`.
  template <class T>
  bool SetCached(const VXField<T>& field, std::shared_ptr<const T> value) {
    return set_cached(field, std::move(value), typeid(T));
  }
  /// The value of a field that is cached as this type, otherwise null.
  template <class T>
  std::shared_ptr<const T> GetCached(const VXField<T>& field) const {
    return std::static_pointer_cast<const T>(find_cached(field, typeid(T)));
  }

  std::size_t NumFields() const { return entries_.size(); }
  /// The names in order.
  std::vector<std::string> GetFieldNames() const;

  /// The whole record, with a version.
  VXBytes ToBytes() const;
  /// Replaces all fields. False, and the record left empty, for bytes that are no record.
  bool FromBytes(const VXBytes& bytes);
  /// {"fields": [{"name": ..., "type": ..., "value": ...}, ...]}; the value is null when its type
  /// is not registered or its bytes hold none.
  std::string ToJSON() const;

 private:
  struct Entry {
    std::string name;
    std::string type_name;
    VXBytes bytes;
    std::shared_ptr<const void> cached;
    const std::type_info* cached_type = nullptr;
  };

  const Entry* find(const std::string& name) const;
  const Entry* find(const VXFieldBase& field) const;
  bool set(const VXFieldBase& field, Entry content);
  bool set_cached(const VXFieldBase& field, std::shared_ptr<const void> value,
                  const std::type_info& type);
  std::shared_ptr<const void> find_cached(const VXFieldBase& field,
                                          const std::type_info& type) const;
  static VXBytes bytes_of(const Entry& entry);

  std::vector<Entry> entries_;
};

/// Sets a field of any type, also where one of another type has the name; true. A type that is
/// cacheable keeps a copy of the value, any other its bytes.
template <class T>
bool VXSetValue(VXRecord& record, const VXField<T>& field, const T& value) {
  using Type = typename VXFieldTypeOf<T>::type;
  if (record.CheckField(field) == VXFieldOtherType) record.DeleteField(field);
  if (Type().IsCacheable()) {
    if constexpr (std::is_same_v<Type, VXFieldType<T>>)
      return record.SetCached(field, std::make_shared<const T>(value));
    else if constexpr (std::is_same_v<Type, VXVectorFieldType<typename T::value_type>>)
      return record.SetCached<T>(field, Type::GetCopyForCache(value));
  }
  return record.SetBytes(field, Type::ToBytes(value));
}

/// Reads a field into a value; false when it is not there, has another type or cannot be read.
template <class T>
bool VXGetValue(const VXRecord& record, const VXField<T>& field, T& value) {
  if (const std::shared_ptr<const T> cached = record.GetCached(field)) {
    value = *cached;
    return true;
  }
  using Type = typename VXFieldTypeOf<T>::type;
  if (const VXBytes* bytes = record.FindBytes(field)) return Type::FromBytes(value, *bytes);
  return Type::FromBytes(value, record.GetBytes(field));
}

}  // namespace VXPipe

#endif
