/// \file
/// Types that a field of a record can have: values as bytes and as JSON, and their registry.
#ifndef VXGRID_TOOLKIT_PIPE_FIELD_TYPES_H
#define VXGRID_TOOLKIT_PIPE_FIELD_TYPES_H

#include <memory>    // for shared_ptr
#include <optional>  // for optional
#include <string>    // for string
#include <vector>    // for vector

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/pipe/buffers.h"

namespace VXPipe {

/// What a record asks of a type without knowing its values. A handler has no state and serves any
/// thread.
class VXGRID_API VXFieldTypeHandler {
 public:
  VXFieldTypeHandler() = default;
  VXFieldTypeHandler(const VXFieldTypeHandler&) = delete;
  VXFieldTypeHandler& operator=(const VXFieldTypeHandler&) = delete;
  virtual ~VXFieldTypeHandler();

  /// The value as a JSON document, empty when the bytes hold none.
  virtual std::string BytesToJSON(const VXBytes& bytes) const = 0;
  /// The bytes of a JSON document, empty when it is none of this type.
  virtual VXBytes JSONToBytes(const std::string& text) const = 0;
  /// The bytes of the value that is pointed at.
  virtual VXBytes PtrToBytes(const void* value) const = 0;
  /// The name of the type in records, unique among all.
  virtual std::string GetName() const = 0;
  /// Whether a record keeps a copy of the value itself and makes the bytes when they are asked for.
  virtual bool IsCacheable() const = 0;
  /// A line for people; here the name and the number of bytes.
  virtual std::string Describe(const VXBytes& bytes) const;
};

/// The type of single values, made for int ("Types.Int"), double ("Types.Double"), std::string
/// ("Types.String") and, with `serial/grid_fields.h`, for grids.
template <class T>
class VXGRID_API VXFieldType : public VXFieldTypeHandler {
 public:
  static VXBytes ToBytes(const T& value);
  /// Empty for an empty value.
  static std::optional<VXBytes> ToBytes(const std::optional<T>& value);
  /// False for bytes that hold no value of this type, among them no bytes at all.
  static bool FromBytes(T& value, const VXBytes& bytes);
  /// A short text for people.
  static std::string Format(const T& value);

  std::string BytesToJSON(const VXBytes& bytes) const override;
  VXBytes JSONToBytes(const std::string& text) const override;
  VXBytes PtrToBytes(const void* value) const override;
  std::string GetName() const override;
  /// False.
  bool IsCacheable() const override;
};

/// The type of vectors of such values. The bytes are the count and a blob for each element, none
/// for one that is not there; the JSON document is {"type": name, "value": [...]} with null for it.
template <class T>
class VXGRID_API VXVectorFieldType : public VXFieldTypeHandler {
 public:
  static VXBytes ToBytes(const std::vector<T>& values);
  static VXBytes ToBytes(const std::vector<std::optional<T>>& values);
  static std::optional<VXBytes> ToBytes(const std::optional<std::vector<T>>& values);
  static std::optional<VXBytes> ToBytes(const std::optional<std::vector<std::optional<T>>>& values);
  /// Replaces the elements; one that is not there becomes a default value. False for no bytes, for
  /// bytes that end early, and when an element cannot be read; elements before it are kept.
  static bool FromBytes(std::vector<T>& values, const VXBytes& bytes);
  /// The same, but an element that is not there becomes an empty one.
  static bool FromBytes(std::vector<std::optional<T>>& values, const VXBytes& bytes);
  /// The count in words, such as "[1 grid]" and "[2 grids]".
  static std::string Format(const std::vector<T>& values);
  static std::string Format(const std::vector<std::optional<T>>& values);
  /// A deep copy for a record to keep.
  static std::shared_ptr<std::vector<T>> GetCopyForCache(const std::vector<T>& values);
  static std::shared_ptr<std::vector<std::optional<T>>> GetCopyForCache(
      const std::vector<std::optional<T>>& values);

  std::string BytesToJSON(const VXBytes& bytes) const override;
  VXBytes JSONToBytes(const std::string& text) const override;
  /// The pointer is to a std::vector<T>.
  VXBytes PtrToBytes(const void* value) const override;
  std::string GetName() const override;
  /// True.
  bool IsCacheable() const override;
};

extern template class VXFieldType<int>;
extern template class VXFieldType<double>;
extern template class VXFieldType<std::string>;

/// The types of this process. Safe from any thread and while libraries load.
class VXGRID_API VXFieldTypeHandlerRegistry {
 public:
  static VXFieldTypeHandlerRegistry& GetInstance();

  /// Takes over a handler made by `new`. When there is one of the name already, flag 0 keeps that
  /// one, deletes the other and gives false; flag 1 puts the new one first. Handlers never go, so
  /// that one that was found stays valid. False for null.
  bool RegisterHandler(VXFieldTypeHandler* handler, unsigned int flag);
  /// Null when there is none of this name.
  const VXFieldTypeHandler* FindHandler(const std::string& name) const;

 private:
  VXFieldTypeHandlerRegistry();
  ~VXFieldTypeHandlerRegistry();
  struct Handlers;
  std::unique_ptr<Handlers> handlers_;
};

}  // namespace VXPipe

#endif
