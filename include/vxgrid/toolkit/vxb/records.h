/// \file
/// Writing and reading one VXB record: a tag, a length and that many bytes, which may be records
/// again.
#ifndef VXGRID_TOOLKIT_VXB_RECORDS_H
#define VXGRID_TOOLKIT_VXB_RECORDS_H

#include <cstddef>  // for size_t
#include <cstdint>  // for uint64_t
#include <string>   // for string

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/value_buffer.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore {

/// How deep records may lie in one another, in writing and in reading.
inline constexpr unsigned int VXBDeepestRecord = 128;

/// The bytes of a record in the making, and of all records inside it: they are built in one block,
/// where a length is filled in once it is known, so that no record moves into the one around it.
class VXGRID_API RecordPayload final : public VXHost::vxostream {
 public:
  RecordPayload();
  ~RecordPayload() override;

  const char* data() const { return buffer_.data(); }
  std::size_t size() const { return size_; }
  /// Drops what comes behind the first `size` bytes.
  void truncate(std::size_t size);
  /// Overwrites four bytes with a length of the form of VXBWriteDataLength.
  void fill_in_length(std::size_t at, std::size_t length);
  bool close() override { return true; }

 protected:
  /// Takes nothing beyond 4 GiB, which no record can have.
  std::size_t write_sink(const char* bytes, std::size_t count) override;

 private:
  ValueBuffer<char> buffer_;
  std::size_t size_ = 0;
};

/// Writes one record. What goes to `payload()` stands in `out` as a whole record once `finish()`
/// was called, and not at all otherwise:
///
///     RecordWriter record(out, "Point");
///     return record && write_xyz(record.payload()) && record.finish();
class VXGRID_API RecordWriter {
 public:
  /// What `out` keeps of a record that was not finished.
  enum class Unfinished { Nothing, Tag };

  RecordWriter(VXHost::vxostream& out, const std::string& tag,
               Unfinished unfinished = Unfinished::Nothing);
  ~RecordWriter();
  RecordWriter(const RecordWriter&) = delete;
  RecordWriter& operator=(const RecordWriter&) = delete;

  /// False when the record lies deeper than VXBDeepestRecord; it then cannot be finished.
  explicit operator bool() const { return open_; }
  RecordPayload& payload() { return *target_; }
  /// True while nothing was written to the payload.
  bool empty() const { return target_->size() == start_; }
  /// Completes the record. One without a payload is left out, which counts as success. False, and
  /// the record left out, for a payload of 2^32 bytes or more and when `out` did not take all.
  bool finish();

 private:
  VXHost::vxostream& out_;
  RecordPayload own_;
  RecordPayload* target_;
  std::size_t kept_ = 0;
  std::size_t start_ = 0;
  bool open_ = false;
  bool finished_ = false;
};

/// The payload of one record as a stream, which takes its bytes from another one. A record inside a
/// RecordReader is a view of it, which must not outlive it; otherwise the bytes are gathered in a
/// buffer that grows with what arrives.
class VXGRID_API RecordReader final : public VXHost::vxisstream {
 public:
  RecordReader(VXHost::vxistream& in, unsigned int length);
  ~RecordReader() override;

  /// VXBStatus::Success when all bytes are there, ShortRecord when the stream had fewer (those can
  /// be read), NoMemory when they found no room.
  unsigned int status() const { return status_; }
  /// How many bytes are still to come.
  std::size_t left() const { return size_ - static_cast<std::size_t>(tell()); }
  /// Sets bytes of the outermost record aside for what a count promises before it has come. False
  /// when fewer are left, so that records inside one another cannot count the same bytes again.
  bool set_aside(std::uint64_t bytes);

 private:
  ValueBuffer<char> buffer_;
  const char* bytes_ = nullptr;
  std::size_t size_ = 0;
  unsigned int status_ = 0;
  RecordReader* outermost_ = this;
  std::uint64_t not_set_aside_ = 0;
};

}  // namespace VXCore

#endif
