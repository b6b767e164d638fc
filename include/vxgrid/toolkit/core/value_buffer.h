/// \file
/// The buffer that holds the values of host grids and maps.
///
/// Memory is zero because the system hands it out so, not by a pass over it: what nobody touches
/// costs nothing but addresses, and a reader that overwrites everything pays for no clearing.
#ifndef VXGRID_TOOLKIT_CORE_VALUE_BUFFER_H
#define VXGRID_TOOLKIT_CORE_VALUE_BUFFER_H

#include <cstddef>      // for size_t
#include <limits>       // for numeric_limits
#include <new>          // for bad_array_new_length
#include <type_traits>  // for is_trivially_copyable
#include <utility>      // for exchange, swap

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// An owned block of bytes. From 1 MiB on it is a mapping of its own, given back to the system when
/// it goes; from 4 MiB on it starts at a huge page and asks for huge pages. Throws std::bad_alloc
/// when there is no memory.
class VXGRID_API MemoryBlock {
 public:
  enum class Content { zero, undefined };

  MemoryBlock() noexcept = default;
  MemoryBlock(std::size_t bytes, Content content);
  /// Stretches of zeros in a large source stay untouched in the copy.
  MemoryBlock(const MemoryBlock& other);
  MemoryBlock(MemoryBlock&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)), bytes_(std::exchange(other.bytes_, 0)) {}
  MemoryBlock& operator=(MemoryBlock other) noexcept {
    swap(other);
    return *this;
  }
  ~MemoryBlock();

  void* data() const noexcept { return data_; }
  std::size_t size() const noexcept { return bytes_; }
  /// Keeps what is there; added bytes are zero. The block may move.
  void resize(std::size_t bytes);
  void swap(MemoryBlock& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(bytes_, other.bytes_);
  }

 private:
  void* data_ = nullptr;
  std::size_t bytes_ = 0;
};

/// A row of plain values on a `MemoryBlock`. `begin` and `end` work; `data` is null when empty.
template <class T>
class ValueBuffer {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>,
                "values are moved as bytes");

 public:
  using value_type = T;

  ValueBuffer() noexcept = default;
  /// Zeros.
  explicit ValueBuffer(std::size_t count) : block_(bytes_of(count), MemoryBlock::Content::zero) {}

  /// For one who writes every value before any is read.
  static ValueBuffer uninitialized(std::size_t count) {
    ValueBuffer buffer;
    buffer.block_ = MemoryBlock(bytes_of(count), MemoryBlock::Content::undefined);
    return buffer;
  }

  T* data() noexcept { return static_cast<T*>(block_.data()); }
  const T* data() const noexcept { return static_cast<const T*>(block_.data()); }
  std::size_t size() const noexcept { return block_.size() / sizeof(T); }
  bool empty() const noexcept { return block_.size() == 0; }

  T& operator[](std::size_t i) noexcept { return data()[i]; }
  const T& operator[](std::size_t i) const noexcept { return data()[i]; }
  T* begin() noexcept { return data(); }
  T* end() noexcept { return data() + size(); }
  const T* begin() const noexcept { return data(); }
  const T* end() const noexcept { return data() + size(); }

  /// Keeps the values that are there; added ones are zero. Pointers into the buffer become invalid.
  void resize(std::size_t count) { block_.resize(bytes_of(count)); }
  /// Gives the memory back.
  void clear() noexcept { block_ = MemoryBlock(); }
  void swap(ValueBuffer& other) noexcept { block_.swap(other.block_); }

 private:
  static std::size_t bytes_of(std::size_t count) {
    if (count > std::numeric_limits<std::size_t>::max() / 2 / sizeof(T))
      throw std::bad_array_new_length();
    return count * sizeof(T);
  }

  MemoryBlock block_;
};

}  // namespace VXCore

#endif
