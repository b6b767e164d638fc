// Records over the registry of field types.
#include "vxgrid/toolkit/pipe/record.h"

#include <algorithm>      // for find_if
#include <unordered_set>  // for unordered_set

#include "vxgrid/toolkit/json/helpers.h"

namespace VXPipe {

namespace {

constexpr int record_version = 1;

VXBytes bytes_of(const std::string& text) {
  return VXBytes(text.begin(), text.end());
}

bool read_text(VXReadBuffer& buffer, std::string& text) {
  std::optional<VXBlob> blob;
  if (!buffer.ReadBlob(blob) || !blob) return false;
  text.assign(blob->data, blob->data + blob->size);
  return true;
}

}  // namespace

const VXRecord::Entry* VXRecord::find(const std::string& name) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return entry.name == name; });
  return found == entries_.end() ? nullptr : &*found;
}

const VXRecord::Entry* VXRecord::find(const VXFieldBase& field) const {
  const Entry* entry = find(field.GetName());
  return entry && entry->type_name == field.GetTypeName() ? entry : nullptr;
}

unsigned int VXRecord::CheckField(const VXFieldBase& field) const {
  const Entry* entry = find(field.GetName());
  if (!entry) return VXFieldAbsent;
  if (entry->type_name != field.GetTypeName()) return VXFieldOtherType;
  return entry->cached ? VXFieldCached : VXFieldBytes;
}

bool VXRecord::DeleteField(const VXFieldBase& field) {
  return std::erase_if(entries_,
                       [&](const Entry& entry) { return entry.name == field.GetName(); }) > 0;
}

bool VXRecord::set(const VXFieldBase& field, Entry content) {
  const Entry* const there = find(field.GetName());
  if (there && there->type_name != field.GetTypeName()) return false;
  content.name = field.GetName();
  content.type_name = field.GetTypeName();
  if (there)
    entries_[static_cast<std::size_t>(there - entries_.data())] = std::move(content);
  else
    entries_.push_back(std::move(content));
  return true;
}

bool VXRecord::SetBytes(const VXFieldBase& field, VXBytes bytes) {
  Entry content;
  content.bytes = std::move(bytes);
  return set(field, std::move(content));
}

bool VXRecord::set_cached(const VXFieldBase& field, std::shared_ptr<const void> value,
                          const std::type_info& type) {
  if (!value) return false;
  Entry content;
  content.cached = std::move(value);
  content.cached_type = &type;
  return set(field, std::move(content));
}

std::shared_ptr<const void> VXRecord::find_cached(const VXFieldBase& field,
                                                  const std::type_info& type) const {
  const Entry* entry = find(field);
  return entry && entry->cached && *entry->cached_type == type ? entry->cached : nullptr;
}

VXBytes VXRecord::bytes_of(const Entry& entry) {
  if (!entry.cached) return entry.bytes;
  const VXFieldTypeHandler* handler =
      VXFieldTypeHandlerRegistry::GetInstance().FindHandler(entry.type_name);
  return handler ? handler->PtrToBytes(entry.cached.get()) : VXBytes();
}

VXBytes VXRecord::GetBytes(const VXFieldBase& field) const {
  const Entry* entry = find(field);
  return entry ? bytes_of(*entry) : VXBytes();
}

const VXBytes* VXRecord::FindBytes(const VXFieldBase& field) const {
  const Entry* entry = find(field);
  return entry && !entry->cached ? &entry->bytes : nullptr;
}

std::vector<std::string> VXRecord::GetFieldNames() const {
  std::vector<std::string> names;
  for (const Entry& entry : entries_)
    names.push_back(entry.name);
  return names;
}

VXBytes VXRecord::ToBytes() const {
  VXWriteBuffer buffer;
  buffer.WriteInt(record_version);
  buffer.WriteInt(static_cast<int>(entries_.size()));
  for (const Entry& entry : entries_) {
    buffer.WriteBlob(VXPipe::bytes_of(entry.name));
    buffer.WriteBlob(VXPipe::bytes_of(entry.type_name));
    if (entry.cached)
      buffer.WriteBlob(bytes_of(entry));
    else
      buffer.WriteBlob(entry.bytes);
  }
  return buffer.TakeBytes();
}

bool VXRecord::FromBytes(const VXBytes& bytes) {
  entries_.clear();
  VXReadBuffer buffer(bytes);
  int version = 0;
  int count = 0;
  std::vector<Entry> entries;
  std::unordered_set<std::string> names;
  if (!buffer.ReadInt(version) || version != record_version || !buffer.ReadInt(count)) return false;
  for (int i = 0; i < count; ++i) {
    Entry entry;
    std::optional<VXBlob> blob;
    if (!read_text(buffer, entry.name) || !read_text(buffer, entry.type_name) ||
        !buffer.ReadBlob(blob) || !blob || !names.insert(entry.name).second) {
      return false;
    }
    entry.bytes.assign(blob->data, blob->data + blob->size);
    entries.push_back(std::move(entry));
  }
  if (count < 0 || !buffer.AtEnd()) return false;
  entries_ = std::move(entries);
  return true;
}

std::string VXRecord::ToJSON() const {
  VXCore::JSONBuffer buffer;
  VXCore::JSONWriter writer(buffer);
  writer.StartObject();
  VXCore::JSONWriteKey(writer, "fields");
  writer.StartArray();
  for (const Entry& entry : entries_) {
    writer.StartObject();
    VXCore::JSONWriteKey(writer, "name");
    VXCore::JSONWriteText(writer, entry.name);
    VXCore::JSONWriteKey(writer, "type");
    VXCore::JSONWriteText(writer, entry.type_name);
    VXCore::JSONWriteKey(writer, "value");
    const VXFieldTypeHandler* handler =
        VXFieldTypeHandlerRegistry::GetInstance().FindHandler(entry.type_name);
    const std::string value = handler ? handler->BytesToJSON(bytes_of(entry)) : std::string();
    if (value.empty())
      writer.Null();
    else
      writer.RawValue(value.data(), value.size(), rapidjson::kObjectType);
    writer.EndObject();
  }
  writer.EndArray();
  writer.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace VXPipe
