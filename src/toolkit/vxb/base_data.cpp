// The record of an object's tagged data: one record for each datum of a plain type, what writers of
// generic data add, and records that nobody knew.
#include <array>        // for array
#include <string>       // for string
#include <type_traits>  // for is_same_v
#include <utility>      // for move
#include <vector>       // for vector

#include "toolkit/vxb/defaults.h"
#include "toolkit/vxb/numbers.h"
#include "vxgrid/toolkit/vxb/handler.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXCore {
namespace {

constexpr const char* base_tag = "VXBasePOD";
constexpr const char* unknown_tag = "VXUnknownVXBData";

using Unknowns = std::vector<VXUnknownVXBData>;

// How the value of a plain datum is stored: as the rest of the record's payload. Readers are false
// when that rest has no right length.
struct Text {
  static bool write(VXHost::vxostream& out, const std::string& value) {
    return out.write(value.data(), value.size()) == value.size();
  }
  static bool read(RecordReader& in, std::string& value, bool /*reversed*/) {
    in.read(value, in.left());
    return true;
  }
};

struct Texts {
  static bool write(VXHost::vxostream& out, const std::vector<std::string>& values) {
    for (const std::string& value : values)
      if (!VXBWriteDataLength(out, value.size()) || !Text::write(out, value)) return false;
    return true;
  }
  static bool read(RecordReader& in, std::vector<std::string>& values, bool /*reversed*/) {
    constexpr std::size_t length_bytes = 4;
    while (in.left() >= length_bytes) {
      const unsigned int length = VXBReadDataLength(in);
      if (in.read(values.emplace_back(), length) != length) return false;
    }
    return in.left() == 0;
  }
};

struct Truth {
  static bool write(VXHost::vxostream& out, bool value) { return out.put(value ? 1 : 0); }
  static bool read(RecordReader& in, bool& value, bool /*reversed*/) {
    value = in.peekbyte() > 0;
    return in.left() == 1;
  }
};

template <class Number>
struct Single {
  static bool write(VXHost::vxostream& out, Number value) {
    return detail::write_number(out, value);
  }
  static bool read(RecordReader& in, Number& value, bool reversed) {
    return in.left() == sizeof(Number) && detail::read_numbers(in, &value, 1, reversed);
  }
};

template <class Number>
struct Row {
  static bool write(VXHost::vxostream& out, const std::vector<Number>& values) {
    return detail::write_numbers(out, values.data(), values.size());
  }
  static bool read(RecordReader& in, std::vector<Number>& values, bool reversed) {
    if (in.left() % sizeof(Number) != 0) return false;
    values.resize(in.left() / sizeof(Number));
    return detail::read_numbers(in, values.data(), values.size(), reversed);
  }
};

template <std::size_t N>
struct Point {
  static bool write(VXHost::vxostream& out, const std::array<float, N>& values) {
    return detail::write_numbers(out, values.data(), N);
  }
  static bool read(RecordReader& in, std::array<float, N>& values, bool reversed) {
    return in.left() == N * sizeof(float) && detail::read_numbers(in, values.data(), N, reversed);
  }
};

template <class T, class Form>
class PlainDataWriteFxn final : public VXWriteFxn<VXBase> {
 public:
  explicit PlainDataWriteFxn(const char* tag) : tag_(tag) {}

  std::string GetTag() const override { return tag_; }
  PlainDataWriteFxn* CreateCopy() const override { return new PlainDataWriteFxn(*this); }
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& /*handler*/) const override {
    if (!object.GetBaseImpl()) return true;
    for (const auto& datum : object.GetBaseImpl()->GetAllData()) {
      if (datum->GetDataType() != DataTypeId<T>::get()) continue;
      const T& value = static_cast<const VXBaseDataT<T>&>(*datum).GetData();
      RecordWriter record(out, tag_);
      if (!record || !record.payload().put(VXBIntEndian()) ||
          !VXBWriteTag(record.payload(), VXGetTag(datum->GetTag())) ||
          !Form::write(record.payload(), value) || !record.finish()) {
        return false;
      }
    }
    return true;
  }

 private:
  const char* tag_;
};

template <class T, class Form>
class PlainDataReadFxn final : public VXReadFxn<VXBase> {
 public:
  explicit PlainDataReadFxn(const char* tag) : tag_(tag) {}

  std::string GetTag() const override { return tag_; }
  PlainDataReadFxn* CreateCopy() const override { return new PlainDataReadFxn(*this); }
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& /*handler*/) const override {
    RecordReader payload(in, length);
    if (payload.status() != VXBStatus::Success) return payload.status();
    const int order = payload.getbyte();
    if (order < 0) return VXBStatus::StreamEnded;
    std::string name;
    if (!VXBReadTag(payload, name)) return VXBStatus::NoTag;
    T value{};
    if (!Form::read(payload, value, VXBIntEndian(order))) return VXBStatus::ShortRecord;
    object.SetData(name, value);
    return VXBStatus::Success;
  }

 private:
  const char* tag_;
};

template <class T, class Form>
void add_plain_type(VXBinaryIOHandlerBase& handler, const char* tag) {
  handler.AddDataWriteFxn(PlainDataWriteFxn<T, Form>(tag));
  handler.AddReadFxn(PlainDataReadFxn<T, Form>(tag), 0);
}

class BaseWriteFxn final : public VXWriteFxn<VXBase> {
 public:
  std::string GetTag() const override { return base_tag; }
  BaseWriteFxn* CreateCopy() const override { return new BaseWriteFxn(*this); }
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override {
    return VXBWritePOD(out, object, base_tag, handler);
  }
};

class BaseReadFxn final : public VXReadFxn<VXBase> {
 public:
  std::string GetTag() const override { return base_tag; }
  BaseReadFxn* CreateCopy() const override { return new BaseReadFxn(*this); }
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override {
    return VXBReadVXBase(in, object, length, handler);
  }
};

}  // namespace

VXUnknownVXBData::VXUnknownVXBData(VXHost::vxistream& in, const std::string& tag,
                                   unsigned int length)
    : tag_(tag) {
  valid_ = in.read(bytes_, length) == length;
}

bool VXUnknownVXBData::Write(VXHost::vxostream& out) const {
  RecordWriter record(out, tag_);
  return record && record.payload().write(bytes_.data(), bytes_.size()) == bytes_.size() &&
         record.finish();
}

template class VXBaseDataT<Unknowns>;

bool VXAttachData(VXBase& object, VXUnknownVXBData data) {
  static const unsigned int tag = VXGetTag(unknown_tag);
  if (!object.FindDataValue<Unknowns>(tag)) object.SetData(tag, Unknowns());
  auto* const kept = static_cast<VXBaseDataT<Unknowns>*>(object.GetBaseImpl()->FindData(tag));
  kept->GetData().push_back(std::move(data));
  return true;
}

bool VXBWritePOD(VXHost::vxostream& out, const VXBase& object, const std::string& tag,
                 VXBinaryIOHandlerBase& handler) {
  if (!object.GetBaseImpl()) return true;
  RecordWriter record(out, tag);
  if (!record || object.GetBaseImpl()->GetAllData().size() > VXBMostData) return false;
  // Everything goes behind the version, without which nothing would be written.
  RecordPayload& payload = record.payload();
  payload.put(static_cast<char>(VXBVersion));
  const std::size_t start = payload.size();
  for (const auto& write : handler.GetDataWriteFxns())
    if (!(*write)(payload, object, handler)) return false;
  if (const auto* unknowns = object.FindDataValue<Unknowns>(unknown_tag)) {
    for (const VXUnknownVXBData& unknown : *unknowns)
      if (!unknown.Write(payload)) return false;
  }
  return payload.size() == start || record.finish();
}

unsigned int VXBReadVXBase(VXHost::vxistream& in, VXBase& object, unsigned int length,
                           VXBinaryIOHandlerBase& handler) {
  if (length == 0) return VXBStatus::Success;
  RecordReader payload(in, length);
  unsigned int status = payload.status();
  if (status == VXBStatus::Success && payload.getbyte() != VXBVersion) status = VXBStatus::NotKept;
  while (status == VXBStatus::Success && !payload.eof())
    status = handler.ReadAs(payload, object, type_ids::base);
  return status;
}

namespace detail {

std::unique_ptr<VXWriteFxnBase> make_base_writer() {
  return std::make_unique<BaseWriteFxn>();
}

bool write_no_data(VXHost::vxostream& out) {
  RecordWriter record(out, base_tag);
  return record && record.payload().put(static_cast<char>(VXBVersion)) && record.finish();
}

void add_plain_data_functors(VXBinaryIOHandlerBase& handler) {
  handler.AddReadFxn(BaseReadFxn(), 0);
  add_plain_type<bool, Truth>(handler, "bool");
  add_plain_type<int, Single<int>>(handler, "int");
  add_plain_type<unsigned int, Single<unsigned int>>(handler, "uint");
  add_plain_type<float, Single<float>>(handler, "float");
  add_plain_type<double, Single<double>>(handler, "double");
  add_plain_type<std::string, Text>(handler, "text");
  add_plain_type<std::vector<int>, Row<int>>(handler, "ints");
  add_plain_type<std::vector<unsigned int>, Row<unsigned int>>(handler, "uints");
  add_plain_type<std::vector<float>, Row<float>>(handler, "floats");
  add_plain_type<std::vector<double>, Row<double>>(handler, "doubles");
  add_plain_type<std::vector<std::string>, Texts>(handler, "texts");
  add_plain_type<std::array<float, 3>, Point<3>>(handler, "float3");
  add_plain_type<std::array<float, 6>, Point<6>>(handler, "float6");
}

void add_default_functors(VXBinaryIOHandlerBase& handler) {
  add_plain_data_functors(handler);
  add_host_grid_functors(handler);
}

}  // namespace detail
}  // namespace VXCore
