/// \file
/// Numbers and blobs one behind the other in bytes, which is how records and vectors are stored.
///
/// A number is four bytes and a blob eight bytes of length and its bytes, lowest byte first on
/// every machine. A length of all ones stands for a blob that is not there.
#ifndef VXGRID_TOOLKIT_PIPE_BUFFERS_H
#define VXGRID_TOOLKIT_PIPE_BUFFERS_H

#include <cstddef>   // for size_t
#include <optional>  // for optional
#include <utility>   // for move
#include <vector>    // for vector

#include "vxgrid/toolkit/core/export.h"

namespace VXPipe {

/// What fields and records are stored as.
using VXBytes = std::vector<unsigned char>;

/// Bytes that stand in the memory of another.
struct VXBlob {
  const unsigned char* data = nullptr;
  std::size_t size = 0;
};

class VXGRID_API VXWriteBuffer {
 public:
  void WriteInt(int number);
  void WriteBlob(const unsigned char* data, std::size_t size);
  void WriteBlob(const VXBytes& bytes) { WriteBlob(bytes.data(), bytes.size()); }
  void WriteNoneBlob();

  const VXBytes& GetBytes() const { return bytes_; }
  VXBytes TakeBytes() { return std::move(bytes_); }

 private:
  VXBytes bytes_;
};

/// Reads what a `VXWriteBuffer` wrote. The bytes have to outlive it. False, and nothing taken, when
/// they end before the item does.
class VXGRID_API VXReadBuffer {
 public:
  explicit VXReadBuffer(const VXBytes& bytes) : rest_{bytes.data(), bytes.size()} {}
  explicit VXReadBuffer(VXBlob bytes) : rest_(bytes) {}

  bool ReadInt(int& number);
  /// The blob in its place, empty when it is not there.
  bool ReadBlob(std::optional<VXBlob>& blob);
  bool AtEnd() const { return rest_.size == 0; }

 private:
  VXBlob rest_;
};

}  // namespace VXPipe

#endif
