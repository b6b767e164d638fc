// The handlers of this process, and tagged data as keys of a document.
#include "vxgrid/toolkit/json/handler.h"

#include <algorithm>      // for all_of, find
#include <array>          // for array
#include <memory>         // for unique_ptr
#include <mutex>          // for mutex, lock_guard
#include <string>         // for string
#include <unordered_map>  // for unordered_map
#include <utility>        // for pair

#include "vxgrid/toolkit/core/error_handler.h"

namespace VXCore {

namespace {

constexpr std::string_view hint_key = "vxhint";

class Registry {
 public:
  static Registry& instance() {
    // Made on first use, since libraries register while they load.
    static Registry registry;
    return registry;
  }

  bool add(std::unique_ptr<VXJSONHandlerBase> handler) {
    const std::lock_guard<std::mutex> guard(lock_);
    for (const auto& known : handlers_) {
      if (std::string_view(known->GetJsonType()) == handler->GetJsonType()) return false;
    }
    handlers_.push_back(std::move(handler));
    return true;
  }

  // The first handler of which a question is true, null when there is none. Handlers never go.
  template <class Question>
  const VXJSONHandlerBase* find(Question is_wanted) {
    const std::lock_guard<std::mutex> guard(lock_);
    for (const auto& handler : handlers_) {
      if (is_wanted(*handler)) return handler.get();
    }
    return nullptr;
  }

 private:
  std::mutex lock_;
  std::vector<std::unique_ptr<VXJSONHandlerBase>> handlers_;
};

bool is_reserved(std::string_view key, const JSONReservedNames& reserved) {
  return key == hint_key || std::find(reserved.begin(), reserved.end(), key) != reserved.end();
}

template <class T>
const T& value_of(const VXBaseData& datum) {
  return static_cast<const VXBaseDataT<T>&>(datum).GetData();
}

// Writes the data of one object, and remembers what JSON alone does not tell of their types.
class DataWriter {
 public:
  DataWriter(JSONWriter& writer, unsigned int flags) : writer_(writer), flags_(flags) {}

  void write(std::string_view tag, const VXBaseData& datum) {
    tag_ = tag;
    switch (datum.GetDataType()) {
      case data_ids::boolean:
        return write_plain(value_of<bool>(datum));
      case data_ids::integer:
        return write_plain(value_of<int>(datum));
      case data_ids::unsigned_integer:
        return write_plain(value_of<unsigned int>(datum), "unsigned");
      case data_ids::single_float:
        return write_plain(value_of<float>(datum));
      case data_ids::double_float:
        return write_plain(value_of<double>(datum), "double");
      case data_ids::text:
        return write_plain(value_of<std::string>(datum));
      case data_ids::vector_int:
        return write_array(value_of<std::vector<int>>(datum), nullptr, "int");
      case data_ids::vector_unsigned:
        return write_array(value_of<std::vector<unsigned int>>(datum), "unsigned", "unsigned");
      case data_ids::vector_float:
        return write_array(value_of<std::vector<float>>(datum), nullptr, "float");
      case data_ids::vector_double:
        return write_array(value_of<std::vector<double>>(datum), "double", "double");
      case data_ids::vector_text:
        return write_array(value_of<std::vector<std::string>>(datum), nullptr, "text");
      case data_ids::array_3_float:
        return write_array(value_of<std::array<float, 3>>(datum), "float3", nullptr);
      case data_ids::array_6_float:
        return write_array(value_of<std::array<float, 6>>(datum), "float6", nullptr);
      default:
        return write_by_handler(datum);
    }
  }

  void write_hints() {
    if (hints_.empty()) return;
    JSONWriteKey(writer_, hint_key);
    writer_.StartObject();
    for (const auto& [tag, type] : hints_) {
      JSONWriteKey(writer_, tag);
      JSONWriteText(writer_, type);
    }
    writer_.EndObject();
  }

 private:
  void key(const char* hint) {
    JSONWriteKey(writer_, tag_);
    if (hint) hints_.emplace_back(tag_, hint);
  }

  // What is not finite is counted.
  void put(bool value) { writer_.Bool(value); }
  void put(int value) { writer_.Int(value); }
  void put(unsigned int value) { writer_.Uint(value); }
  void put(float value) { not_finite_ += JSONWriteNumber(writer_, value) ? 0 : 1; }
  void put(double value) { not_finite_ += JSONWriteNumber(writer_, value) ? 0 : 1; }
  void put(const std::string& value) { JSONWriteText(writer_, value); }

  void warn_not_finite() {
    JSONWarnNotFinite(tag_, not_finite_);
    not_finite_ = 0;
  }

  template <class T>
  void write_plain(const T& value, const char* hint = nullptr) {
    key(hint);
    put(value);
    warn_not_finite();
  }

  template <class Array>
  void write_array(const Array& values, const char* hint, const char* hint_when_empty) {
    key(values.empty() ? hint_when_empty : hint);
    writer_.StartArray();
    for (const auto& value : values)
      put(value);
    writer_.EndArray();
    warn_not_finite();
  }

  void write_by_handler(const VXBaseData& datum) {
    const TypeId type = datum.GetDataType();
    const VXJSONHandlerBase* handler =
        Registry::instance().find([&](const VXJSONHandlerBase& candidate) {
          return candidate.GetDataType() == type || candidate.GetVDataType() == type;
        });
    if (!handler) {
      VXThrow.Debug("JSON: generic data \"%s\" has no handler, left out",
                    std::string(tag_).c_str());
      return;
    }
    const bool is_vector = handler->GetDataType() != type;
    key(is_vector ? handler->GetReadType() : nullptr);
    const bool is_written = is_vector ? handler->VWrite(datum, writer_, flags_)
                                      : handler->Write(datum, writer_, flags_);
    if (!is_written) writer_.Null();
  }

  JSONWriter& writer_;
  unsigned int flags_;
  std::string_view tag_;
  std::size_t not_finite_ = 0;
  std::vector<std::pair<std::string_view, std::string_view>> hints_;
};

std::string_view text_of(const JSONValue& value) {
  return {value.GetString(), value.GetStringLength()};
}

// The value as one of the stored types; false when it is not of that kind.
bool value_as(const JSONValue& value, int& number) {
  if (!value.IsInt()) return false;
  number = value.GetInt();
  return true;
}
bool value_as(const JSONValue& value, unsigned int& number) {
  if (!value.IsUint()) return false;
  number = value.GetUint();
  return true;
}
bool value_as(const JSONValue& value, double& number) {
  if (!value.IsNumber()) return false;
  number = value.GetDouble();
  return true;
}
bool value_as(const JSONValue& value, float& number) {
  if (!value.IsNumber()) return false;
  number = static_cast<float>(value.GetDouble());
  return true;
}
bool value_as(const JSONValue& value, std::string& text) {
  if (!value.IsString()) return false;
  text = text_of(value);
  return true;
}

// Attaches the data of one document to an object.
class DataReader {
 public:
  DataReader(VXBase& base, const JSONValue& object) : base_(base) {
    const JSONValue* hints = JSONFindKey(object, hint_key);
    if (!hints || !hints->IsObject()) return;
    for (const auto& hint : hints->GetObject()) {
      if (hint.value.IsString()) hints_.emplace(text_of(hint.name), text_of(hint.value));
    }
  }

  // False when a handler failed.
  bool read(std::string_view key, const JSONValue& value) {
    const auto found = hints_.find(key);
    hint_ = found == hints_.end() ? std::string_view() : found->second;
    tag_ = VXGetTag(std::string(key).c_str());
    if (value.IsObject()) return read_by_handler(value, value);
    if (value.IsArray() && !value.Empty() && value[0].IsObject())
      return read_by_handler(value, value[0]);
    if (value.IsArray() && value.Empty()) {
      if (const VXJSONHandlerBase* handler = VXFindJSONHandler(hint_))
        return handler->VRead(base_, tag_, value, true);
    }
    const bool is_kept = value.IsArray() ? read_array(value) : read_plain(value);
    if (!is_kept) ignore(key);
    return true;
  }

  static void ignore(std::string_view key) {
    VXThrow.Warning("JSON: generic data \"%s\" cannot be kept, ignored", std::string(key).c_str());
  }

 private:
  template <class T>
  bool keep(const JSONValue& value) {
    T number{};
    return value_as(value, number) && base_.SetData(tag_, number);
  }

  bool read_plain(const JSONValue& value) {
    if (value.IsBool()) return base_.SetData(tag_, value.GetBool());
    if (value.IsString()) return keep<std::string>(value);
    if (hint_ == "unsigned" && keep<unsigned int>(value)) return true;
    if (hint_ == "double") return keep<double>(value);
    if (hint_ == "float") return keep<float>(value);
    return keep<int>(value) || keep<float>(value);
  }

  template <class T>
  bool keep_array(const JSONValue& array) {
    std::vector<T> values(array.Size());
    for (rapidjson::SizeType i = 0; i < array.Size(); ++i) {
      if (!value_as(array[i], values[i])) return false;
    }
    return base_.SetData(tag_, values);
  }

  template <std::size_t N>
  bool keep_array(const JSONValue& array) {
    std::array<float, N> values{};
    if (array.Size() != N) return false;
    for (rapidjson::SizeType i = 0; i < N; ++i) {
      if (!value_as(array[i], values[i])) return false;
    }
    return base_.SetData(tag_, values);
  }

  bool read_array(const JSONValue& array) {
    if (hint_ == "float3" && keep_array<3>(array)) return true;
    if (hint_ == "float6" && keep_array<6>(array)) return true;
    if (hint_ == "unsigned" && keep_array<unsigned int>(array)) return true;
    if (hint_ == "double" && keep_array<double>(array)) return true;
    if (hint_ == "float" && keep_array<float>(array)) return true;
    if (array.Empty() && hint_ != "int") return hint_ == "text" && keep_array<std::string>(array);
    return keep_array<int>(array) || keep_array<float>(array) || keep_array<std::string>(array);
  }

  bool read_by_handler(const JSONValue& value, const JSONValue& document) {
    const JSONValue* type = JSONFindKey(document, "type");
    const VXJSONHandlerBase* handler =
        type && type->IsString() ? VXFindJSONHandler(text_of(*type)) : nullptr;
    if (!handler) {
      ignore(VXGetTag(tag_));
      return true;
    }
    return value.IsArray() ? handler->VRead(base_, tag_, value, false)
                           : handler->Read(base_, tag_, value);
  }

  VXBase& base_;
  std::unordered_map<std::string_view, std::string_view> hints_;
  std::string_view hint_;
  unsigned int tag_ = 0;
};

// Counts how many documents stand inside of each other while one is read.
class Nesting {
 public:
  Nesting() { ++depth_; }
  ~Nesting() { --depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;
  bool is_too_deep() const { return depth_ > 32; }

 private:
  static thread_local int depth_;
};
thread_local int Nesting::depth_ = 0;

}  // namespace

VXJSONHandlerBase::~VXJSONHandlerBase() = default;

bool VXRegisterJSONHandler(VXJSONHandlerBase* handler) {
  std::unique_ptr<VXJSONHandlerBase> owned(handler);
  return owned && Registry::instance().add(std::move(owned));
}

const VXJSONHandlerBase* VXFindJSONHandler(std::string_view json_type) {
  return Registry::instance().find(
      [&](const VXJSONHandlerBase& handler) { return json_type == handler.GetJsonType(); });
}

void VXGenBaseDataJSON(JSONWriter& writer, const VXBase& base, unsigned int flags,
                       const JSONReservedNames& reserved) {
  const VXBaseImpl* impl = base.GetBaseImpl();
  if (!impl) return;
  DataWriter data(writer, flags);
  for (const auto& datum : impl->GetAllData()) {
    const std::string_view tag = VXGetTag(datum->GetTag());
    if (!is_reserved(tag, reserved)) data.write(tag, *datum);
  }
  data.write_hints();
}

bool VXParseBaseDataJSON(VXBase& base, const JSONValue& object, const JSONReservedNames& reserved) {
  constexpr int most_data = 10000;
  if (!object.IsObject()) return true;
  const Nesting nesting;
  DataReader reader(base, object);
  int count = 0;
  for (const auto& member : object.GetObject()) {
    const std::string_view key = text_of(member.name);
    if (is_reserved(key, reserved)) continue;
    if (nesting.is_too_deep() || ++count > most_data) {
      DataReader::ignore(key);
      break;
    }
    if (!reader.read(key, member.value)) return false;
  }
  return true;
}

}  // namespace VXCore
