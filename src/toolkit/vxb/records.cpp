// The bytes of a record in the making, and those of a record that is read.
#include "vxgrid/toolkit/vxb/records.h"

#include <algorithm>  // for max, min
#include <cstdint>    // for uint64_t
#include <cstring>    // for memcpy
#include <limits>     // for numeric_limits
#include <new>        // for bad_alloc

#include "toolkit/host/bounded_read.h"
#include "toolkit/vxb/nesting.h"
#include "vxgrid/toolkit/vxb/primitives.h"

namespace VXCore {
namespace {

constexpr std::size_t length_bytes = 4;
constexpr std::size_t longest_payload = std::numeric_limits<std::uint32_t>::max();

}  // namespace

namespace detail {

// Counted by thread, so that a handler can serve several of them, and functors of other makers
// need not pass it on.
static thread_local unsigned int depth = 0;

void NestingLevel::enter() noexcept {
  ++depth;
}
void NestingLevel::leave() noexcept {
  --depth;
}
bool NestingLevel::is_allowed() noexcept {
  return depth <= VXBDeepestRecord;
}

}  // namespace detail

RecordPayload::RecordPayload() : VXHost::vxostream(0) {}
RecordPayload::~RecordPayload() = default;

std::size_t RecordPayload::write_sink(const char* bytes, std::size_t count) {
  // A payload that is just too long is found out by its record; more than that and its head is
  // never stored.
  constexpr std::size_t head = std::size_t{64} << 10;
  if (count > longest_payload + head - std::min(size_, longest_payload + head)) return 0;
  const std::size_t needed = size_ + count;
  if (needed > buffer_.size()) buffer_.resize(std::max(needed, 2 * buffer_.size()));
  if (count > 0) std::memcpy(buffer_.data() + size_, bytes, count);
  size_ = needed;
  return count;
}

void RecordPayload::truncate(std::size_t size) {
  size_ = std::min(size, size_);
}

void RecordPayload::fill_in_length(std::size_t at, std::size_t length) {
  for (std::size_t i = 0; i < length_bytes; ++i)
    buffer_[at + i] = static_cast<char>(static_cast<unsigned char>(length >> (8 * i)));
}

// In a payload the record is built where it will stand; for any other stream in a payload of its
// own.
RecordWriter::RecordWriter(VXHost::vxostream& out, const std::string& tag, Unfinished unfinished)
    : out_(out), target_(dynamic_cast<RecordPayload*>(&out)) {
  detail::NestingLevel::enter();
  const bool keep_tag = unfinished == Unfinished::Tag;
  const bool is_inner = target_ != nullptr;
  if (!is_inner) target_ = &own_;
  kept_ = target_->size();
  const bool has_tag = VXBWriteTag(is_inner || !keep_tag ? *target_ : out_, tag);
  if (keep_tag) kept_ = target_->size();
  open_ = has_tag && detail::NestingLevel::is_allowed() && VXBWriteDataLength(*target_, 0);
  start_ = target_->size();
}

RecordWriter::~RecordWriter() {
  if (!finished_) target_->truncate(kept_);
  detail::NestingLevel::leave();
}

bool RecordWriter::finish() {
  if (!open_ || !target_->good()) return false;
  if (empty()) return true;
  const std::size_t length = target_->size() - start_;
  if (length > longest_payload) return false;
  open_ = false;
  finished_ = true;
  target_->fill_in_length(start_ - length_bytes, length);
  if (target_ != &own_) return true;
  return out_.write(own_.data(), own_.size()) == own_.size();
}

RecordReader::RecordReader(VXHost::vxistream& in, unsigned int length) {
  if (auto* around = dynamic_cast<RecordReader*>(&in)) {
    outermost_ = around->outermost_;
    size_ = std::min<std::size_t>(length, around->left());
    bytes_ = around->bytes_ + around->tell();
    in.seek(static_cast<std::int64_t>(size_), VXHost::vxstream::cur);
  } else {
    const std::uint64_t there = in.bytes_left().value_or(length);
    std::uint64_t arrived = 0;
    try {
      VXHost::detail::read_claimed(in, std::min<std::uint64_t>(length, there), buffer_, &arrived);
    } catch (const std::bad_alloc&) {
      status_ = VXBStatus::NoMemory;
      return;
    }
    size_ = std::min<std::size_t>(buffer_.size(), static_cast<std::size_t>(arrived));
    bytes_ = buffer_.data();
    // A few bytes more, for small records of other writers that promise more than they bring.
    constexpr unsigned int granted = 256;
    not_set_aside_ = std::uint64_t{size_} + granted;
  }
  if (size_ < length) status_ = VXBStatus::ShortRecord;
  set(bytes_, size_);
}

RecordReader::~RecordReader() = default;

bool RecordReader::set_aside(std::uint64_t bytes) {
  std::uint64_t& left = outermost_->not_set_aside_;
  if (bytes > left) return false;
  left -= bytes;
  return true;
}

}  // namespace VXCore
