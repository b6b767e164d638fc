// The VXB records of Gaussians and their containers.
#include "vxgrid/serial/gaussian_vxb.h"

#include <array>    // for array
#include <bit>      // for bit_cast
#include <cstdint>  // for uint32_t

#include "toolkit/host/byte_order.h"
#include "vxgrid/toolkit/core/iterators.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXCore {
namespace {

// Each number stands behind a head of its own. Its bytes run from the lowest to the highest on
// every machine, or the other way round when the head says so.
constexpr unsigned int head_mask = 31;
constexpr unsigned int four_byte_number = 1;
constexpr unsigned int reversed_flag = 64;

// Stands between the Gaussians of a container and its own tagged data.
constexpr char end_of_gaussians = 0;

bool is_head(int byte) {
  return byte >= 0 && (static_cast<unsigned int>(byte) & head_mask) == four_byte_number;
}

constexpr std::size_t number_bytes = 5;
using NumberBytes = std::array<unsigned char, number_bytes>;

void store(unsigned char* to, std::uint32_t bits) {
  *to++ = four_byte_number;
  for (unsigned int shift = 0; shift < 32; shift += 8)
    *to++ = static_cast<unsigned char>(bits >> shift);
}

void store(unsigned char* to, float number) {
  store(to, std::bit_cast<std::uint32_t>(number));
}

bool read_bits(RecordReader& in, std::uint32_t& bits) {
  NumberBytes bytes;
  if (in.read(bytes.data(), bytes.size()) != bytes.size() || !is_head(bytes[0])) return false;
  bits = bytes[1] | unsigned{bytes[2]} << 8 | unsigned{bytes[3]} << 16 | unsigned{bytes[4]} << 24;
  if ((bytes[0] & reversed_flag) != 0) bits = VXHost::detail::reversed(bits);
  return true;
}

bool write_body(RecordPayload& out, const VXGaussianBase& gaussian,
                VXBinaryIOHandlerBase& handler) {
  std::array<unsigned char, 6 * number_bytes> numbers;
  store(&numbers[0 * number_bytes], gaussian.GetPrefactor());
  store(&numbers[1 * number_bytes], gaussian.GetWidth());
  store(&numbers[2 * number_bytes], std::uint32_t{gaussian.GetColor()});
  store(&numbers[3 * number_bytes], gaussian.GetX());
  store(&numbers[4 * number_bytes], gaussian.GetY());
  store(&numbers[5 * number_bytes], gaussian.GetZ());
  return out.write(numbers.data(), numbers.size()) == numbers.size() &&
         handler.WriteAs(out, gaussian, type_ids::base);
}

// Whatever is wrong with tagged data, the Gaussian is not as it should be.
unsigned int read_tagged_data(RecordReader& in, VXBase& object, VXBinaryIOHandlerBase& handler) {
  return handler.ReadAs(in, object, type_ids::base) == VXBStatus::Success ? VXBStatus::Success
                                                                          : VXBStatus::BadFormat;
}

unsigned int read_further_records(RecordReader& in, VXBase& object,
                                  VXBinaryIOHandlerBase& handler) {
  unsigned int status = VXBStatus::Success;
  while (status == VXBStatus::Success && !in.eof())
    status = read_tagged_data(in, object, handler);
  return status;
}

// What follows the numbers is the record of the tagged data, unless it is the head of the next
// Gaussian or the mark behind the last one.
unsigned int read_body(RecordReader& in, VXGaussianBase& gaussian, VXBinaryIOHandlerBase& handler) {
  std::array<std::uint32_t, 6> numbers{};
  for (std::uint32_t& bits : numbers)
    if (!read_bits(in, bits)) return VXBStatus::BadFormat;
  gaussian.SetPrefactor(std::bit_cast<float>(numbers[0]));
  gaussian.SetWidth(std::bit_cast<float>(numbers[1]));
  gaussian.SetColor(numbers[2]);
  gaussian.SetX(std::bit_cast<float>(numbers[3]));
  gaussian.SetY(std::bit_cast<float>(numbers[4]));
  gaussian.SetZ(std::bit_cast<float>(numbers[5]));
  const int next = in.peekbyte();
  if (next < 0 || next == end_of_gaussians || is_head(next)) return VXBStatus::Success;
  return read_tagged_data(in, gaussian, handler);
}

}  // namespace

std::string VXGaussianWriteFxn::GetTag() const {
  return "VXGaussian";
}
VXGaussianWriteFxn* VXGaussianWriteFxn::CreateCopy() const {
  return new VXGaussianWriteFxn(*this);
}
bool VXGaussianWriteFxn::operator()(VXHost::vxostream& out, const VXBase& object,
                                    VXBinaryIOHandlerBase& handler) const {
  RecordWriter record(out, GetTag());
  return record && write_body(record.payload(), cast(object), handler) && record.finish();
}

std::string VXGaussianReadFxn::GetTag() const {
  return "VXGaussian";
}
VXGaussianReadFxn* VXGaussianReadFxn::CreateCopy() const {
  return new VXGaussianReadFxn(*this);
}
unsigned int VXGaussianReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                           unsigned int length,
                                           VXBinaryIOHandlerBase& handler) const {
  VXGaussianBase& gaussian = cast(object);
  RecordReader body(in, length);
  unsigned int status = body.status();
  if (status == VXBStatus::Success) status = read_body(body, gaussian, handler);
  return status == VXBStatus::Success ? read_further_records(body, gaussian, handler) : status;
}

std::string VXGaussianContainerWriteFxn::GetTag() const {
  return "VXGaussianCont";
}
VXGaussianContainerWriteFxn* VXGaussianContainerWriteFxn::CreateCopy() const {
  return new VXGaussianContainerWriteFxn(*this);
}
bool VXGaussianContainerWriteFxn::operator()(VXHost::vxostream& out, const VXBase& object,
                                             VXBinaryIOHandlerBase& handler) const {
  const VXGaussianContainerBase& container = cast(object);
  RecordWriter record(out, GetTag());
  if (!record) return false;
  RecordPayload& payload = record.payload();
  NumberBytes count;
  store(count.data(), std::uint32_t{container.NumGaussians()});
  payload.write(count.data(), count.size());
  for (const VXGaussianBase& gaussian : VXIter<const VXGaussianBase>(container.GetGaussians()))
    if (!write_body(payload, gaussian, handler)) return false;
  const std::size_t end = payload.size();
  payload.put(end_of_gaussians);
  if (!handler.WriteAs(payload, container, type_ids::base)) return false;
  if (payload.size() == end + 1) payload.truncate(end);
  return record.finish();
}

std::string VXGaussianContainerReadFxn::GetTag() const {
  return "VXGaussianCont";
}
VXGaussianContainerReadFxn* VXGaussianContainerReadFxn::CreateCopy() const {
  return new VXGaussianContainerReadFxn(*this);
}
unsigned int VXGaussianContainerReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                                    unsigned int length,
                                                    VXBinaryIOHandlerBase& handler) const {
  VXGaussianContainerBase& container = cast(object);
  RecordReader body(in, length);
  if (body.status() != VXBStatus::Success) return body.status();
  std::uint32_t count = 0;
  if (!read_bits(body, count)) return VXBStatus::BadFormat;
  VXGaussian scratch;
  for (std::uint32_t i = 0; i < count; ++i) {
    const unsigned int status = read_body(body, scratch, handler);
    if (status != VXBStatus::Success) return status;
    container.AddGaussian(scratch);
    scratch.Clear();
  }
  if (body.eof()) return VXBStatus::Success;
  return body.getbyte() == end_of_gaussians ? read_further_records(body, container, handler)
                                            : VXBStatus::BadFormat;
}

}  // namespace VXCore
