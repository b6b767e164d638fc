// Numbers and blobs in bytes, lowest byte first.
#include "vxgrid/toolkit/pipe/buffers.h"

#include <cstdint>  // for uint32_t, uint64_t
#include <limits>   // for numeric_limits

namespace VXPipe {

namespace {

constexpr std::uint64_t no_blob = std::numeric_limits<std::uint64_t>::max();

template <class Unsigned>
void put(VXBytes& bytes, Unsigned number) {
  for (std::size_t i = 0; i < sizeof number; ++i)
    bytes.push_back(static_cast<unsigned char>(number >> (8 * i)));
}

template <class Unsigned>
Unsigned number_at(const unsigned char* bytes) {
  Unsigned number = 0;
  for (std::size_t i = 0; i < sizeof number; ++i)
    number |= static_cast<Unsigned>(Unsigned{bytes[i]} << (8 * i));
  return number;
}

}  // namespace

void VXWriteBuffer::WriteInt(int number) {
  put(bytes_, static_cast<std::uint32_t>(number));
}

void VXWriteBuffer::WriteBlob(const unsigned char* data, std::size_t size) {
  put(bytes_, std::uint64_t{size});
  bytes_.insert(bytes_.end(), data, data + size);
}

void VXWriteBuffer::WriteNoneBlob() {
  put(bytes_, no_blob);
}

bool VXReadBuffer::ReadInt(int& number) {
  using Word = std::uint32_t;
  if (rest_.size < sizeof(Word)) return false;
  number = static_cast<int>(number_at<Word>(rest_.data));
  rest_ = {rest_.data + sizeof(Word), rest_.size - sizeof(Word)};
  return true;
}

bool VXReadBuffer::ReadBlob(std::optional<VXBlob>& blob) {
  using Word = std::uint64_t;
  if (rest_.size < sizeof(Word)) return false;
  const Word length = number_at<Word>(rest_.data);
  const VXBlob behind{rest_.data + sizeof(Word), rest_.size - sizeof(Word)};
  if (length == no_blob) {
    blob.reset();
    rest_ = behind;
    return true;
  }
  if (length > behind.size) return false;
  const auto size = static_cast<std::size_t>(length);
  blob = VXBlob{behind.data, size};
  rest_ = {behind.data + size, behind.size - size};
  return true;
}

}  // namespace VXPipe
