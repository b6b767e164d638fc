// The field types of plain values, and the registry.
#include "vxgrid/toolkit/pipe/field_types.h"

#include <algorithm>  // for find_if
#include <bit>        // for bit_cast
#include <cstdint>    // for uint64_t
#include <mutex>      // for mutex, lock_guard

#include "toolkit/pipe/field_type.h"
#include "vxgrid/toolkit/core/text.h"

namespace VXPipe {

namespace detail {

// Documents of plain values, which are one value each.
template <class T>
struct PlainCodec {
  static std::string to_json(const T& value) {
    VXCore::JSONBuffer buffer;
    VXCore::JSONWriter writer(buffer);
    FieldCodec<T>::write_json(writer, value);
    return {buffer.GetString(), buffer.GetSize()};
  }
  static bool from_json(T& value, const std::string& text) {
    VXCore::JSONDocument document;
    return VXCore::JSONParseHelper(document, text) && FieldCodec<T>::read_json(value, document);
  }
};

template <>
struct FieldCodec<int> : PlainCodec<int> {
  static constexpr const char* name = "Types.Int";
  static VXBytes to_bytes(int value) {
    VXWriteBuffer buffer;
    buffer.WriteInt(value);
    return buffer.TakeBytes();
  }
  static bool from_bytes(int& value, const VXBlob& blob) {
    VXReadBuffer buffer(blob);
    return buffer.ReadInt(value) && buffer.AtEnd();
  }
  static std::string format(int value) { return std::to_string(value); }
  static void write_json(VXCore::JSONWriter& writer, int value) { writer.Int(value); }
  static bool read_json(int& value, const VXCore::JSONValue& json) {
    if (!json.IsInt()) return false;
    value = json.GetInt();
    return true;
  }
};

template <>
struct FieldCodec<double> : PlainCodec<double> {
  static constexpr const char* name = "Types.Double";
  static VXBytes to_bytes(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    VXWriteBuffer buffer;
    buffer.WriteInt(static_cast<int>(bits));
    buffer.WriteInt(static_cast<int>(bits >> 32));
    return buffer.TakeBytes();
  }
  static bool from_bytes(double& value, const VXBlob& blob) {
    VXReadBuffer buffer(blob);
    int low = 0;
    int high = 0;
    if (!buffer.ReadInt(low) || !buffer.ReadInt(high) || !buffer.AtEnd()) return false;
    value = std::bit_cast<double>(std::uint64_t{static_cast<std::uint32_t>(high)} << 32 |
                                  static_cast<std::uint32_t>(low));
    return true;
  }
  static std::string format(double value) { return VXCore::VXNumberToString(value, 'g', 6); }
  static void write_json(VXCore::JSONWriter& writer, double value) {
    VXCore::JSONWarnNotFinite(name, VXCore::JSONWriteNumber(writer, value) ? 0 : 1);
  }
  static bool read_json(double& value, const VXCore::JSONValue& json) {
    if (!json.IsNumber()) return false;
    value = json.GetDouble();
    return true;
  }
};

// The bytes are the characters and one more, so that the empty text has some.
template <>
struct FieldCodec<std::string> : PlainCodec<std::string> {
  static constexpr const char* name = "Types.String";
  static VXBytes to_bytes(const std::string& value) {
    VXBytes bytes(value.begin(), value.end());
    bytes.push_back('\0');
    return bytes;
  }
  static bool from_bytes(std::string& value, const VXBlob& blob) {
    if (blob.data[blob.size - 1] != '\0') return false;
    value.assign(reinterpret_cast<const char*>(blob.data), blob.size - 1);
    return true;
  }
  static std::string format(const std::string& value) { return value; }
  static void write_json(VXCore::JSONWriter& writer, const std::string& value) {
    VXCore::JSONWriteText(writer, value);
  }
  static bool read_json(std::string& value, const VXCore::JSONValue& json) {
    if (!json.IsString()) return false;
    value.assign(json.GetString(), json.GetStringLength());
    return true;
  }
};

}  // namespace detail

template class VXFieldType<int>;
template class VXFieldType<double>;
template class VXFieldType<std::string>;

VXFieldTypeHandler::~VXFieldTypeHandler() = default;

std::string VXFieldTypeHandler::Describe(const VXBytes& bytes) const {
  return GetName() + ", " + std::to_string(bytes.size()) + " bytes";
}

struct VXFieldTypeHandlerRegistry::Handlers {
  mutable std::mutex lock;
  std::vector<std::unique_ptr<const VXFieldTypeHandler>> all;
};

VXFieldTypeHandlerRegistry::VXFieldTypeHandlerRegistry() : handlers_(std::make_unique<Handlers>()) {
  RegisterHandler(new VXFieldType<int>, 0);
  RegisterHandler(new VXFieldType<double>, 0);
  RegisterHandler(new VXFieldType<std::string>, 0);
}
VXFieldTypeHandlerRegistry::~VXFieldTypeHandlerRegistry() = default;

VXFieldTypeHandlerRegistry& VXFieldTypeHandlerRegistry::GetInstance() {
  // Made on first use, since libraries register while they load.
  static VXFieldTypeHandlerRegistry registry;
  return registry;
}

bool VXFieldTypeHandlerRegistry::RegisterHandler(VXFieldTypeHandler* handler, unsigned int flag) {
  std::unique_ptr<const VXFieldTypeHandler> owned(handler);
  if (!owned || (flag == 0 && FindHandler(owned->GetName()))) return false;
  const std::lock_guard<std::mutex> guard(handlers_->lock);
  handlers_->all.push_back(std::move(owned));
  return true;
}

const VXFieldTypeHandler* VXFieldTypeHandlerRegistry::FindHandler(const std::string& name) const {
  const std::lock_guard<std::mutex> guard(handlers_->lock);
  // The last one of a name took the place of those before it.
  const auto found = std::find_if(handlers_->all.rbegin(), handlers_->all.rend(),
                                  [&](const auto& handler) { return handler->GetName() == name; });
  return found == handlers_->all.rend() ? nullptr : found->get();
}

}  // namespace VXPipe
