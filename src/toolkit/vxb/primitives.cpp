// Tags, lengths and marks of byte order.
#include "vxgrid/toolkit/vxb/primitives.h"

#include <array>   // for array
#include <bit>     // for endian
#include <limits>  // for numeric_limits

#include "toolkit/host/byte_order.h"

namespace VXCore {
namespace {

// A length byte of this value says that the length follows.
constexpr unsigned char long_tag = 255;

static_assert(std::endian::native == std::endian::little ||
              std::endian::native == std::endian::big);
constexpr char native_order = std::endian::native == std::endian::little ? 0 : 1;

bool read_length(VXHost::vxistream& in, unsigned int& length) {
  std::array<unsigned char, 4> bytes{};
  if (in.read(bytes.data(), bytes.size()) != bytes.size()) return false;
  length = bytes[0] | unsigned{bytes[1]} << 8 | unsigned{bytes[2]} << 16 | unsigned{bytes[3]} << 24;
  return true;
}

}  // namespace

bool VXBWriteTag(VXHost::vxostream& out, const std::string& tag) {
  const std::size_t length = tag.size();
  if (length > std::numeric_limits<std::uint32_t>::max()) return false;
  if (length < long_tag) {
    if (!out.put(static_cast<char>(length))) return false;
  } else if (!out.put(static_cast<char>(long_tag)) || !VXBWriteDataLength(out, length)) {
    return false;
  }
  return out.write(tag.data(), length) == length;
}

bool VXBReadTag(VXHost::vxistream& in, std::string& tag, unsigned char& tag_byte) {
  tag.clear();
  tag_byte = 0;
  const int first = in.getbyte();
  if (first < 0) return false;
  tag_byte = static_cast<unsigned char>(first);
  unsigned int length = tag_byte;
  if (tag_byte == long_tag && !read_length(in, length)) return false;
  if (in.read(tag, length) == length) return true;
  tag.clear();
  return false;
}

bool VXBReadTag(VXHost::vxistream& in, std::string& tag) {
  unsigned char tag_byte = 0;
  return VXBReadTag(in, tag, tag_byte);
}

bool VXBWriteDataLength(VXHost::vxostream& out, std::uint64_t length) {
  if (length > std::numeric_limits<std::uint32_t>::max()) return false;
  std::array<unsigned char, 4> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<unsigned char>(length >> (8 * i));
  return out.write(bytes.data(), bytes.size()) == bytes.size();
}

unsigned int VXBReadDataLength(VXHost::vxistream& in) {
  unsigned int length = 0;
  return read_length(in, length) ? length : 0;
}

// One order for all kinds of numbers, as on every machine of today.
char VXBIntEndian() {
  return native_order;
}
bool VXBIntEndian(int mark) {
  return mark != native_order;
}
char VXBFloatEndian() {
  return native_order;
}
bool VXBFloatEndian(int mark) {
  return mark != native_order;
}
char VXBShortEndian() {
  return native_order;
}
bool VXBShortEndian(int mark) {
  return mark != native_order;
}

void ArraySwapBytes(float* values, std::size_t count) {
  VXHost::detail::reverse_words(values, count);
}
void ArraySwapBytes(int* values, std::size_t count) {
  VXHost::detail::reverse_words(values, count);
}
void ArraySwapBytes(unsigned int* values, std::size_t count) {
  VXHost::detail::reverse_words(values, count);
}

}  // namespace VXCore
