// The buffering that all streams share, and the streams over memory.
#include "vxgrid/toolkit/host/streams.h"

#include <algorithm>  // for min
#include <cstdio>     // for fwrite, stderr
#include <cstring>    // for memchr, memcpy
#include <limits>     // for numeric_limits

namespace VXHost {

namespace {

// Large enough that the cost of a system call vanishes beside that of copying.
constexpr std::size_t buffer_size = 1 << 16;

// Standard error has a lock and no buffer of its own, which makes this stream safe from any thread:
// nothing in it changes.
class ErrorStream final : public vxostream {
 public:
  ErrorStream() : vxostream(0) {}
  bool flush() override { return std::fflush(stderr) == 0; }
  bool close() override { return true; }

 protected:
  std::size_t write_sink(const char* bytes, std::size_t count) override {
    std::fwrite(bytes, 1, count, stderr);
    return count;
  }
};

vxostream& error_stream() {
  // Never destroyed, so that destructors of other statics can still report.
  static ErrorStream& stream = *new ErrorStream;
  return stream;
}

}  // namespace

vxostream& vxerr = error_stream();

vxstream::~vxstream() = default;

bool vxstream::seek(std::int64_t /*offset*/, seekdir /*direction*/) {
  return false;
}

bool vxstream::rewind() {
  return seek(0, beg);
}

vxistream::~vxistream() = default;

void vxistream::set_window(const char* data, std::size_t size) {
  begin_ = next_ = data;
  limit_ = size == 0 ? data : data + size;
  limit_offset_ = size;
}

void vxistream::reset() {
  set_window(nullptr, 0);
}

bool vxistream::refill() {
  if (!is_open()) return false;
  if (const auto size = source_size(); size && limit_offset_ >= *size) return false;
  if (!buffer_) buffer_ = std::make_unique_for_overwrite<char[]>(buffer_size);
  const std::size_t got = read_source(buffer_.get(), buffer_size);
  if (got == 0) return false;
  begin_ = next_ = buffer_.get();
  limit_ = begin_ + got;
  limit_offset_ += got;
  return true;
}

std::size_t vxistream::read(char* to, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const std::size_t left = count - done;
    if (next_ != limit_) {
      const std::size_t step = std::min(left, static_cast<std::size_t>(limit_ - next_));
      std::memcpy(to + done, next_, step);
      next_ += step;
      done += step;
    } else if (left >= buffer_size && is_open()) {
      const std::size_t got = read_source(to + done, left);
      if (got == 0) break;
      // The window no longer ends where the source stands.
      begin_ = next_ = limit_ = nullptr;
      limit_offset_ += got;
      done += got;
    } else if (!refill()) {
      break;
    }
  }
  return done;
}

std::size_t vxistream::read(unsigned char* to, std::size_t count) {
  return read(reinterpret_cast<char*>(to), count);
}

std::size_t vxistream::read(std::string& to, std::size_t count) {
  to.clear();
  while (to.size() < count && !eof()) {
    const std::size_t step = std::min(count - to.size(), static_cast<std::size_t>(limit_ - next_));
    to.append(next_, step);
    next_ += step;
  }
  return to.size();
}

bool vxistream::getline(std::string& line) {
  line.clear();
  if (eof()) return false;
  do {
    const auto available = static_cast<std::size_t>(limit_ - next_);
    const void* found = std::memchr(next_, '\n', available);
    const char* line_end = found ? static_cast<const char*>(found) : limit_;
    line.append(next_, line_end);
    next_ = line_end;
    if (found) {
      ++next_;
      break;
    }
  } while (!eof());
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

bool vxistream::getline(char* line, std::size_t size) {
  if (size == 0) return false;
  std::size_t length = 0;
  bool any = false;
  bool ended = false;
  while (!ended && length < size - 1 && !eof()) {
    any = true;
    const char c = *next_++;
    ended = c == '\n';
    if (!ended) line[length++] = c;
  }
  // A line that just fits ends here, not with an empty one in the next call.
  if (any && !ended && peekbyte() == '\n') {
    ++next_;
    ended = true;
  }
  if (ended && length > 0 && line[length - 1] == '\r') --length;
  line[length] = '\0';
  return any;
}

bool vxistream::skip(std::uint64_t count) {
  while (count > 0 && !eof()) {
    const std::uint64_t step = std::min(count, static_cast<std::uint64_t>(limit_ - next_));
    next_ += step;
    count -= step;
  }
  return count == 0;
}

std::optional<std::uint64_t> vxistream::bytes_left() const {
  const std::optional<std::uint64_t> size = source_size();
  if (!size) return std::nullopt;
  return *size > tell() ? *size - tell() : 0;
}

bool vxistream::seek(std::int64_t offset, seekdir direction) {
  if (!is_open()) return false;
  std::uint64_t base = 0;
  if (direction == cur) base = tell();
  if (direction == end) {
    const std::optional<std::uint64_t> size = source_size();
    if (size) {
      base = *size;
    } else {
      skip(std::numeric_limits<std::uint64_t>::max());
      base = tell();
    }
  }
  const std::uint64_t magnitude =
      offset < 0 ? 0 - static_cast<std::uint64_t>(offset) : static_cast<std::uint64_t>(offset);
  if (offset < 0 && magnitude > base) return false;
  const std::uint64_t target = offset < 0 ? base - magnitude : base + magnitude;
  if (const auto size = source_size(); size && target > *size) return false;

  const std::uint64_t window_offset = limit_offset_ - static_cast<std::uint64_t>(limit_ - begin_);
  if (target >= window_offset && target <= limit_offset_) {
    next_ = begin_ + (target - window_offset);
    return true;
  }
  if (seek_source(target)) {
    begin_ = next_ = limit_ = nullptr;
    limit_offset_ = target;
    return true;
  }
  return target > tell() && skip(target - tell());
}

vxostream::vxostream(std::size_t capacity) {
  set_capacity(capacity);
}

vxostream::~vxostream() = default;

void vxostream::set_capacity(std::size_t capacity) {
  buffer_ = capacity == 0 ? nullptr : std::make_unique_for_overwrite<char[]>(capacity);
  capacity_ = capacity;
}

bool vxostream::drain() {
  if (used_ > 0) {
    if (write_sink(buffer_.get(), used_) != used_) failed_ = true;
    used_ = 0;
  }
  return !failed_;
}

std::size_t vxostream::write(const char* bytes, std::size_t count) {
  if (count <= capacity_ - used_ && capacity_ > 0) {
    if (count > 0) std::memcpy(buffer_.get() + used_, bytes, count);
    used_ += count;
    return count;
  }
  drain();
  if (count < capacity_) return write(bytes, count);
  const std::size_t taken = write_sink(bytes, count);
  if (taken != count) failed_ = true;
  return taken;
}

std::size_t vxostream::write(const unsigned char* bytes, std::size_t count) {
  return write(reinterpret_cast<const char*>(bytes), count);
}

bool vxostream::put(char c) {
  if (used_ < capacity_) {
    buffer_[used_++] = c;
    return true;
  }
  return write(&c, 1) == 1;
}

bool vxostream::flush() {
  return drain();
}

vxostream& vxendl(vxostream& out) {
  out.put('\n');
  return out;
}

vxisstream::vxisstream() = default;
vxisstream::vxisstream(const std::string& text) {
  set(text);
}
vxisstream::vxisstream(const char* text) {
  set(text ? std::string(text) : std::string());
}
vxisstream::vxisstream(const char* buffer, std::size_t size, bool owned) {
  set(buffer, size, owned);
}
vxisstream::~vxisstream() = default;

void vxisstream::set(const std::string& text) {
  text_ = text;
  owned_.reset();
  size_ = text_.size();
  set_window(text_.data(), size_);
}

void vxisstream::set(const char* buffer, std::size_t size, bool owned) {
  if (!owned || owned_.get() != buffer) owned_.reset(owned ? buffer : nullptr);
  text_.clear();
  size_ = buffer ? size : 0;
  set_window(buffer, size_);
}

bool vxisstream::open(const std::string& text) {
  set(text);
  return true;
}

bool vxisstream::close() {
  set(nullptr, 0);
  return true;
}

std::size_t vxisstream::read_source(char* /*to*/, std::size_t /*count*/) {
  return 0;
}
bool vxisstream::seek_source(std::uint64_t /*offset*/) {
  return false;
}
std::optional<std::uint64_t> vxisstream::source_size() const {
  return size_;
}

vxosstream::vxosstream() : vxostream(0) {}
vxosstream::~vxosstream() = default;

std::size_t vxosstream::write_sink(const char* bytes, std::size_t count) {
  text_.append(bytes, count);
  return count;
}

bool vxosstream::close() {
  return true;
}

}  // namespace VXHost
