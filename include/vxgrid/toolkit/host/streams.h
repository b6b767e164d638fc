/// \file
/// Byte streams over files and memory; reading undoes gzip, writing does it for names in ".gz".
#ifndef VXGRID_TOOLKIT_HOST_STREAMS_H
#define VXGRID_TOOLKIT_HOST_STREAMS_H

#include <cstddef>      // for size_t
#include <cstdint>      // for int64_t, uint64_t
#include <memory>       // for unique_ptr
#include <optional>     // for optional
#include <string>       // for string
#include <string_view>  // for string_view
#include <type_traits>  // for enable_if_t

#include "vxgrid/toolkit/core/export.h"

namespace VXHost {

/// What all streams share: a position and an end of life. One stream serves one thread at a time.
class VXGRID_API vxstream {
 public:
  /// What an offset counts from.
  enum seekdir { beg, cur, end };

  vxstream() = default;
  vxstream(const vxstream&) = delete;
  vxstream& operator=(const vxstream&) = delete;
  virtual ~vxstream();

  /// Moves to `offset` bytes from the start, the present position or the end. Offsets count
  /// decompressed bytes. Returns false, the position unchanged where it can be, when the place does
  /// not exist or cannot be reached; output streams cannot seek and return false.
  virtual bool seek(std::int64_t offset, seekdir direction);
  /// The same as seek(0, beg).
  bool rewind();
  /// Lets go of the source or sink; false when bytes written did not all arrive.
  virtual bool close() = 0;
};

/// Buffered input. At the end of the stream reads come back short, and a later seek works again.
class VXGRID_API vxistream : public vxstream {
 public:
  ~vxistream() override;

  /// Reads up to `count` bytes and returns how many were there; less only at the end of stream.
  /// Blocks larger than the buffer go straight from the source to `to`.
  std::size_t read(char* to, std::size_t count);
  std::size_t read(unsigned char* to, std::size_t count);
  /// Replaces the text by the next `count` bytes, or as many as there are. The text grows with the
  /// bytes that arrive, so that an absurd count costs nothing.
  std::size_t read(std::string& to, std::size_t count);

  /// Takes one byte; false, `c` untouched, at the end of stream.
  bool get(char& c) {
    if (eof()) return false;
    c = *next_++;
    return true;
  }
  /// Takes one byte as 0..255, -1 at the end of stream.
  int getbyte() { return eof() ? -1 : static_cast<unsigned char>(*next_++); }
  /// Shows the byte that comes next without taking it, -1 at the end of stream.
  int peekbyte() { return eof() ? -1 : static_cast<unsigned char>(*next_); }

  /// Takes the text up to the next line feed, which is dropped, as is a carriage return before it.
  /// False, with an empty text, when the stream was at its end already.
  bool getline(std::string& line);
  /// The same into `size` characters with a zero behind the text. Of a longer line the first
  /// size - 1 characters are given and the rest is left for the next call.
  bool getline(char* line, std::size_t size);

  /// True when the buffer is used up and the source has nothing more to give; right after opening
  /// this tells an empty file.
  bool eof() { return next_ == limit_ && !refill(); }
  /// True while something is open and there are bytes left.
  explicit operator bool() { return is_open() && !eof(); }

  /// Takes another source by name; false when there is no such thing.
  virtual bool open(const std::string& name) = 0;
  virtual bool is_open() const = 0;
  bool seek(std::int64_t offset, seekdir direction) override;
  /// Bytes taken so far, or where the last seek went.
  std::uint64_t tell() const { return limit_offset_ - static_cast<std::uint64_t>(limit_ - next_); }
  /// How many bytes are still to come, when that is known without reading them: for memory and
  /// plain files. Empty for compressed data and pipes.
  std::optional<std::uint64_t> bytes_left() const;

 protected:
  vxistream() = default;

  /// The next bytes of the source, at most `count`; 0 at its end.
  virtual std::size_t read_source(char* to, std::size_t count) = 0;
  /// Goes to an absolute place in the source; false, nothing moved, when it cannot.
  virtual bool seek_source(std::uint64_t offset) = 0;
  /// The length of the source, when known without reading.
  virtual std::optional<std::uint64_t> source_size() const = 0;

  /// Reads from this memory, which stays the caller's, with no copy.
  void set_window(const char* data, std::size_t size);
  /// Forgets what is buffered; the source stands at its start.
  void reset();

 private:
  bool refill();
  bool skip(std::uint64_t count);

  // The window [begin_, limit_) holds the stream's bytes up to limit_offset_; next_ is inside.
  const char* begin_ = nullptr;
  const char* next_ = nullptr;
  const char* limit_ = nullptr;
  std::uint64_t limit_offset_ = 0;
  std::unique_ptr<char[]> buffer_;
};

/// Buffered output. A failed write is remembered: flush() and close() tell.
class VXGRID_API vxostream : public vxstream {
 public:
  ~vxostream() override;

  /// Writes the bytes and returns how many were taken; none when nothing is open.
  std::size_t write(const char* bytes, std::size_t count);
  std::size_t write(const unsigned char* bytes, std::size_t count);
  /// Writes one byte.
  bool put(char c);
  /// Hands all bytes on to the sink; false when any since opening did not arrive.
  virtual bool flush();
  /// True as long as every byte arrived.
  bool good() const { return !failed_; }

  vxostream& operator<<(std::string_view text) {
    write(text.data(), text.size());
    return *this;
  }
  /// One character; a template so that a number is not taken for one.
  template <class T, class = std::enable_if_t<std::is_same_v<T, char>>>
  vxostream& operator<<(T c) {
    put(c);
    return *this;
  }
  vxostream& operator<<(vxostream& (*manipulator)(vxostream&)) { return manipulator(*this); }

 protected:
  /// With a capacity of 0 every write goes to the sink at once.
  explicit vxostream(std::size_t capacity);
  /// Gives the stream another buffer; what is in the present one has to be drained before.
  void set_capacity(std::size_t capacity);

  /// Passes bytes on and returns how many were taken.
  virtual std::size_t write_sink(const char* bytes, std::size_t count) = 0;
  /// Empties the buffer into the sink.
  bool drain();
  void reset() {
    used_ = 0;
    failed_ = false;
  }

 private:
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_ = 0;
  std::size_t used_ = 0;
  bool failed_ = false;
};

/// Ends the line: a line feed on every platform. Does not flush.
VXGRID_API vxostream& vxendl(vxostream& out);

/// Input from a file, plain or gzip; which one is told by the file's first bytes, not its name.
class VXGRID_API vxifstream : public vxistream {
 public:
  vxifstream();
  explicit vxifstream(const char* name);
  explicit vxifstream(const std::string& name);
  ~vxifstream() override;

  /// False for what is missing, may not be read or is a directory; the stream is then empty.
  bool open(const std::string& name) override;
  bool is_open() const override;
  bool close() override;

 protected:
  std::size_t read_source(char* to, std::size_t count) override;
  bool seek_source(std::uint64_t offset) override;
  std::optional<std::uint64_t> source_size() const override;

 private:
  struct Source;
  std::unique_ptr<Source> source_;
};

/// Output to a file, which is created or emptied; compressed when the name ends in ".gz".
class VXGRID_API vxofstream : public vxostream {
 public:
  vxofstream();
  explicit vxofstream(const char* name);
  explicit vxofstream(const std::string& name);
  ~vxofstream() override;

  bool open(const std::string& name);
  bool is_open() const;
  bool flush() override;
  bool close() override;

 protected:
  std::size_t write_sink(const char* bytes, std::size_t count) override;

 private:
  struct Sink;
  std::unique_ptr<Sink> sink_;
};

/// Input from memory; bytes are given as they are, compressed or not.
class VXGRID_API vxisstream : public vxistream {
 public:
  vxisstream();
  /// Reads from a copy of the text.
  explicit vxisstream(const std::string& text);
  explicit vxisstream(const char* text);
  /// Reads from the caller's buffer without a copy. With `owned` the buffer came from `new char[]`
  /// and the stream deletes it; otherwise it must outlive the stream.
  vxisstream(const char* buffer, std::size_t size, bool owned = false);
  ~vxisstream() override;

  /// Takes another text or buffer, as the constructors do, and starts at its beginning.
  void set(const std::string& text);
  void set(const char* buffer, std::size_t size, bool owned = false);
  /// Takes the text itself, like `set`; always true.
  bool open(const std::string& text) override;
  bool is_open() const override { return true; }
  bool close() override;

 protected:
  std::size_t read_source(char* to, std::size_t count) override;
  bool seek_source(std::uint64_t offset) override;
  std::optional<std::uint64_t> source_size() const override;

 private:
  std::string text_;
  std::unique_ptr<const char[]> owned_;
  std::size_t size_ = 0;
};

/// Output to a text in memory.
class VXGRID_API vxosstream : public vxostream {
 public:
  vxosstream();
  ~vxosstream() override;

  /// All that was written so far. The reference holds until the next write.
  const std::string& str() const { return text_; }
  void clear() { text_.clear(); }
  bool close() override;

 protected:
  std::size_t write_sink(const char* bytes, std::size_t count) override;

 private:
  std::string text_;
};

/// The shared error stream: standard error, unbuffered, safe from any thread.
VXGRID_API extern vxostream& vxerr;

/// Opens a file for reading, plain or gzip. The stream is the caller's to end by VXCloseIStream;
/// null when the name is null or the file cannot be read.
VXGRID_API vxistream* VXOpenIStream(const char* name);
/// Closes and deletes; null is allowed.
VXGRID_API void VXCloseIStream(vxistream* stream);
/// Creates or empties a file, compressed when the name ends in ".gz". The stream is the caller's to
/// delete; null when the name is null or the file cannot be made.
VXGRID_API vxostream* VXOpenOStream(const char* name);

}  // namespace VXHost

#endif
