// The bodies of the field types, over what is particular to a type of values: its codec.
//
// A codec of T is a specialisation of FieldCodec with
//   name, vector_name      what the two field types are called
//   noun                   of one element, in the text of a vector
//   to_bytes(value)        no bytes when the value cannot be written
//   from_bytes(value, blob)
//   memory(value)          bytes that the value takes beside its own size, in a vector
//   format(value)
//   to_json(value), from_json(value, text)            a document
//   write_json(writer, value), read_json(value, json) an element of an array
#ifndef VXGRID_SRC_TOOLKIT_PIPE_FIELD_TYPE_H
#define VXGRID_SRC_TOOLKIT_PIPE_FIELD_TYPE_H

#include <cstdint>  // for uint64_t
#include <utility>  // for move

#include "toolkit/host/bounded_read.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/json/helpers.h"
#include "vxgrid/toolkit/pipe/field_types.h"

namespace VXPipe {

namespace detail {

template <class T>
struct FieldCodec;

inline constexpr const char* vector_key = "value";

inline VXBlob blob_of(const VXBytes& bytes) {
  return {bytes.data(), bytes.size()};
}

template <class T>
bool read_blob(T& value, const VXBlob& blob) {
  return blob.size > 0 && FieldCodec<T>::from_bytes(value, blob);
}
template <class T>
bool read_blob(std::optional<T>& value, const VXBlob& blob) {
  return read_blob(value.emplace(), blob);
}

template <class T>
void write_blob(VXWriteBuffer& buffer, const T& value) {
  const VXBytes bytes = FieldCodec<T>::to_bytes(value);
  if (bytes.empty())
    buffer.WriteNoneBlob();
  else
    buffer.WriteBlob(bytes);
}
template <class T>
void write_blob(VXWriteBuffer& buffer, const std::optional<T>& value) {
  if (value)
    write_blob(buffer, *value);
  else
    buffer.WriteNoneBlob();
}

template <class Element>
VXBytes vector_to_bytes(const std::vector<Element>& values) {
  VXWriteBuffer buffer;
  buffer.WriteInt(static_cast<int>(values.size()));
  for (const Element& value : values)
    write_blob(buffer, value);
  return buffer.TakeBytes();
}

template <class T>
std::uint64_t memory_of(const T& value) {
  return FieldCodec<T>::memory(value);
}
template <class T>
std::uint64_t memory_of(const std::optional<T>& value) {
  return value ? memory_of(*value) : 0;
}

// The elements are made one by one, so that a count costs nothing before its blobs arrive. Some
// become larger than their bytes, and only all of them together tell whether that is in proportion.
template <class Element>
bool vector_from_bytes(std::vector<Element>& values, const VXBytes& bytes) {
  if (bytes.empty()) return false;
  values.clear();
  VXReadBuffer buffer(bytes);
  int count = 0;
  std::uint64_t memory = 0;
  if (!buffer.ReadInt(count)) return false;
  for (int i = 0; i < count; ++i) {
    std::optional<VXBlob> blob;
    if (!buffer.ReadBlob(blob)) return false;
    Element& value = values.emplace_back();
    const bool is_read = !blob || read_blob(value, *blob);
    memory += memory_of(value);
    if (!is_read || !VXHost::detail::is_proportionate(memory, bytes.size())) {
      values.pop_back();
      return false;
    }
  }
  return true;
}

template <class T>
std::string count_in_words(std::size_t count) {
  return VXCore::format_text("[%zu %s%s]", count, FieldCodec<T>::noun, count == 1 ? "" : "s");
}

template <class Optional>
std::optional<VXBytes> optional_to_bytes(
    const Optional& value, VXBytes (*to_bytes)(const typename Optional::value_type&)) {
  if (!value) return std::nullopt;
  return to_bytes(*value);
}

}  // namespace detail

template <class T>
VXBytes VXFieldType<T>::ToBytes(const T& value) {
  return detail::FieldCodec<T>::to_bytes(value);
}
template <class T>
std::optional<VXBytes> VXFieldType<T>::ToBytes(const std::optional<T>& value) {
  return detail::optional_to_bytes(value, &VXFieldType<T>::ToBytes);
}
template <class T>
bool VXFieldType<T>::FromBytes(T& value, const VXBytes& bytes) {
  return detail::read_blob(value, detail::blob_of(bytes));
}
template <class T>
std::string VXFieldType<T>::Format(const T& value) {
  return detail::FieldCodec<T>::format(value);
}

template <class T>
std::string VXFieldType<T>::BytesToJSON(const VXBytes& bytes) const {
  T value{};
  return FromBytes(value, bytes) ? detail::FieldCodec<T>::to_json(value) : std::string();
}
template <class T>
VXBytes VXFieldType<T>::JSONToBytes(const std::string& text) const {
  T value{};
  return detail::FieldCodec<T>::from_json(value, text) ? ToBytes(value) : VXBytes();
}
template <class T>
VXBytes VXFieldType<T>::PtrToBytes(const void* value) const {
  return ToBytes(*static_cast<const T*>(value));
}
template <class T>
std::string VXFieldType<T>::GetName() const {
  return detail::FieldCodec<T>::name;
}
template <class T>
bool VXFieldType<T>::IsCacheable() const {
  return false;
}

template <class T>
VXBytes VXVectorFieldType<T>::ToBytes(const std::vector<T>& values) {
  return detail::vector_to_bytes(values);
}
template <class T>
VXBytes VXVectorFieldType<T>::ToBytes(const std::vector<std::optional<T>>& values) {
  return detail::vector_to_bytes(values);
}
template <class T>
std::optional<VXBytes> VXVectorFieldType<T>::ToBytes(const std::optional<std::vector<T>>& values) {
  return detail::optional_to_bytes(values, &VXVectorFieldType<T>::ToBytes);
}
template <class T>
std::optional<VXBytes> VXVectorFieldType<T>::ToBytes(
    const std::optional<std::vector<std::optional<T>>>& values) {
  return detail::optional_to_bytes(values, &VXVectorFieldType<T>::ToBytes);
}
template <class T>
bool VXVectorFieldType<T>::FromBytes(std::vector<T>& values, const VXBytes& bytes) {
  return detail::vector_from_bytes(values, bytes);
}
template <class T>
bool VXVectorFieldType<T>::FromBytes(std::vector<std::optional<T>>& values, const VXBytes& bytes) {
  return detail::vector_from_bytes(values, bytes);
}
template <class T>
std::string VXVectorFieldType<T>::Format(const std::vector<T>& values) {
  return detail::count_in_words<T>(values.size());
}
template <class T>
std::string VXVectorFieldType<T>::Format(const std::vector<std::optional<T>>& values) {
  return detail::count_in_words<T>(values.size());
}
template <class T>
std::shared_ptr<std::vector<T>> VXVectorFieldType<T>::GetCopyForCache(
    const std::vector<T>& values) {
  return std::make_shared<std::vector<T>>(values);
}
template <class T>
std::shared_ptr<std::vector<std::optional<T>>> VXVectorFieldType<T>::GetCopyForCache(
    const std::vector<std::optional<T>>& values) {
  return std::make_shared<std::vector<std::optional<T>>>(values);
}

template <class T>
std::string VXVectorFieldType<T>::BytesToJSON(const VXBytes& bytes) const {
  std::vector<std::optional<T>> values;
  if (!FromBytes(values, bytes)) return {};
  VXCore::JSONBuffer buffer;
  VXCore::JSONWriter writer(buffer);
  writer.StartObject();
  VXCore::JSONWriteKey(writer, "type");
  VXCore::JSONWriteText(writer, detail::FieldCodec<T>::vector_name);
  VXCore::JSONWriteKey(writer, detail::vector_key);
  writer.StartArray();
  for (const std::optional<T>& value : values) {
    if (value)
      detail::FieldCodec<T>::write_json(writer, *value);
    else
      writer.Null();
  }
  writer.EndArray();
  writer.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}
template <class T>
VXBytes VXVectorFieldType<T>::JSONToBytes(const std::string& text) const {
  VXCore::JSONDocument document;
  if (!VXCore::JSONParseHelper(document, text)) return {};
  const VXCore::JSONValue* array = VXCore::JSONGetArray(document, detail::vector_key);
  if (!array) return {};
  std::vector<std::optional<T>> values;
  for (const VXCore::JSONValue& element : array->GetArray()) {
    std::optional<T>& value = values.emplace_back();
    if (!element.IsNull() && !detail::FieldCodec<T>::read_json(value.emplace(), element)) return {};
  }
  return ToBytes(values);
}
template <class T>
VXBytes VXVectorFieldType<T>::PtrToBytes(const void* value) const {
  return ToBytes(*static_cast<const std::vector<T>*>(value));
}
template <class T>
std::string VXVectorFieldType<T>::GetName() const {
  return detail::FieldCodec<T>::vector_name;
}
template <class T>
bool VXVectorFieldType<T>::IsCacheable() const {
  return true;
}

}  // namespace VXPipe

#endif
