// The streams over files, plain and gzip.
#include <fcntl.h>     // for open, posix_fadvise
#include <sys/stat.h>  // for fstat
#include <unistd.h>    // for read, write, lseek, close
#include <zlib.h>      // for gzdopen, gzread, gzwrite

#include <algorithm>  // for min
#include <array>      // for array
#include <cctype>     // for tolower
#include <cerrno>     // for errno
#include <memory>     // for unique_ptr, make_unique
#include <utility>    // for exchange

#include "vxgrid/toolkit/host/streams.h"

namespace VXHost {

namespace {

constexpr std::size_t file_buffer_size = 1 << 16;
constexpr unsigned int gzip_buffer_size = 1 << 18;
// zlib counts in int, and one system call moves less than 2 GiB.
constexpr std::size_t largest_step = std::size_t{1} << 30;

bool has_gzip_suffix(const std::string& name) {
  return name.size() >= 3 && name[name.size() - 3] == '.' &&
         std::tolower(static_cast<unsigned char>(name[name.size() - 2])) == 'g' &&
         std::tolower(static_cast<unsigned char>(name[name.size() - 1])) == 'z';
}

// The magic number and the one compression method that there is (RFC 1952, section 2.3.1).
bool starts_as_gzip(int file) {
  std::array<unsigned char, 3> head{};
  return ::pread(file, head.data(), head.size(), 0) == 3 && head[0] == 0x1f && head[1] == 0x8b &&
         head[2] == 8;
}

std::size_t write_all(int file, const char* bytes, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t step = ::write(file, bytes + done, std::min(count - done, largest_step));
    if (step < 0 && errno == EINTR) continue;
    if (step <= 0) break;
    done += static_cast<std::size_t>(step);
  }
  return done;
}

}  // namespace

struct vxifstream::Source {
  ~Source() {
    if (gzip) {
      gzclose(gzip);
    } else if (file >= 0) {
      ::close(file);
    }
  }
  int file = -1;
  gzFile gzip = nullptr;  // owns the file when set
  std::optional<std::uint64_t> size;
};

vxifstream::vxifstream() = default;
vxifstream::vxifstream(const char* name) {
  if (name) vxifstream::open(name);
}
vxifstream::vxifstream(const std::string& name) {
  vxifstream::open(name);
}
vxifstream::~vxifstream() = default;

bool vxifstream::open(const std::string& name) {
  vxifstream::close();
  auto source = std::make_unique<Source>();
  source->file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (source->file < 0 || ::fstat(source->file, &status) != 0 || S_ISDIR(status.st_mode)) {
    return false;
  }
  const bool regular = S_ISREG(status.st_mode);
  if (regular && !starts_as_gzip(source->file)) {
    // The kernel's own files say 0 and hold more.
    if (status.st_size > 0) source->size = static_cast<std::uint64_t>(status.st_size);
    ::posix_fadvise(source->file, 0, 0, POSIX_FADV_SEQUENTIAL);
  } else {
    // Of a pipe the first bytes cannot be looked at ahead; zlib passes plain data through.
    source->gzip = gzdopen(source->file, "rb");
    if (!source->gzip) return false;
    gzbuffer(source->gzip, gzip_buffer_size);
  }
  source_ = std::move(source);
  return true;
}

bool vxifstream::is_open() const {
  return source_ != nullptr;
}

bool vxifstream::close() {
  source_.reset();
  reset();
  return true;
}

std::size_t vxifstream::read_source(char* to, std::size_t count) {
  count = std::min(count, largest_step);
  if (source_->gzip) {
    const int got = gzread(source_->gzip, to, static_cast<unsigned int>(count));
    return got > 0 ? static_cast<std::size_t>(got) : 0;
  }
  ssize_t got = 0;
  do {
    got = ::read(source_->file, to, count);
  } while (got < 0 && errno == EINTR);
  return got > 0 ? static_cast<std::size_t>(got) : 0;
}

bool vxifstream::seek_source(std::uint64_t offset) {
  if (source_->gzip) {
    // Forward the caller reads on, which tells the end of the data; zlib would not.
    if (offset >= tell()) return false;
    return gzseek(source_->gzip, static_cast<z_off_t>(offset), SEEK_SET) >= 0;
  }
  return ::lseek(source_->file, static_cast<off_t>(offset), SEEK_SET) >= 0;
}

std::optional<std::uint64_t> vxifstream::source_size() const {
  return source_ ? source_->size : std::optional<std::uint64_t>(0);
}

struct vxofstream::Sink {
  ~Sink() { close(); }
  bool close() {
    if (gzip) {
      file = -1;
      return gzclose(std::exchange(gzip, nullptr)) == Z_OK;
    }
    return file < 0 || ::close(std::exchange(file, -1)) == 0;
  }
  int file = -1;
  gzFile gzip = nullptr;  // owns the file when set
};

// Without a buffer as long as no file is open, so that a write tells at once that it got nowhere.
vxofstream::vxofstream() : vxostream(0) {}
vxofstream::vxofstream(const char* name) : vxofstream() {
  if (name) open(name);
}
vxofstream::vxofstream(const std::string& name) : vxofstream() {
  open(name);
}
vxofstream::~vxofstream() {
  vxofstream::close();
}

bool vxofstream::open(const std::string& name) {
  vxofstream::close();
  reset();
  auto sink = std::make_unique<Sink>();
  sink->file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (sink->file < 0) return false;
  if (has_gzip_suffix(name)) {
    sink->gzip = gzdopen(sink->file, "wb");
    if (!sink->gzip) return false;
    gzbuffer(sink->gzip, gzip_buffer_size);
  }
  set_capacity(file_buffer_size);
  sink_ = std::move(sink);
  return true;
}

bool vxofstream::is_open() const {
  return sink_ != nullptr;
}

bool vxofstream::flush() {
  const bool drained = drain();
  const bool passed = !sink_ || !sink_->gzip || gzflush(sink_->gzip, Z_SYNC_FLUSH) == Z_OK;
  return drained && passed;
}

bool vxofstream::close() {
  const bool drained = drain();
  const bool closed = !sink_ || sink_->close();
  sink_.reset();
  set_capacity(0);
  return drained && closed;
}

std::size_t vxofstream::write_sink(const char* bytes, std::size_t count) {
  if (!sink_) return 0;
  if (!sink_->gzip) return write_all(sink_->file, bytes, count);
  std::size_t done = 0;
  while (done < count) {
    const std::size_t step = std::min(count - done, largest_step);
    const int taken = gzwrite(sink_->gzip, bytes + done, static_cast<unsigned int>(step));
    if (taken <= 0) break;
    done += static_cast<std::size_t>(taken);
  }
  return done;
}

vxistream* VXOpenIStream(const char* name) {
  if (!name) return nullptr;
  auto stream = std::make_unique<vxifstream>(name);
  return stream->is_open() ? stream.release() : nullptr;
}

void VXCloseIStream(vxistream* stream) {
  if (stream) stream->close();
  delete stream;
}

vxostream* VXOpenOStream(const char* name) {
  if (!name) return nullptr;
  auto stream = std::make_unique<vxofstream>(name);
  return stream->is_open() ? stream.release() : nullptr;
}

}  // namespace VXHost
