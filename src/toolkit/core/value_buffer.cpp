// Blocks of memory that are zero without being cleared.
#include "vxgrid/toolkit/core/value_buffer.h"

#include <sys/mman.h>  // for mmap, mremap, madvise
#include <unistd.h>    // for sysconf

#include <algorithm>  // for min
#include <cstdint>    // for uintptr_t
#include <cstdlib>    // for calloc, malloc, realloc
#include <cstring>    // for memcmp, memcpy, memset

namespace VXCore {
namespace {

// Below it the heap is quicker than a mapping, whose every page faults on first touch.
constexpr std::size_t mapping_threshold = std::size_t{1} << 20;
constexpr std::size_t huge_page_threshold = std::size_t{4} << 20;
constexpr std::size_t huge_page = std::size_t{2} << 20;

bool is_mapped(std::size_t bytes) {
  return bytes >= mapping_threshold;
}

std::size_t mapped_length(std::size_t bytes) {
  static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return (bytes + page - 1) / page * page;
}

// Addresses of that length that start at a huge page where one is worth while.
void* map_pages(std::size_t length, int protection) {
  const std::size_t slack = length >= huge_page_threshold ? huge_page : 0;
  void* start = mmap(nullptr, length + slack, protection, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (start == MAP_FAILED) throw std::bad_alloc();
  if (!slack) return start;
  auto* bytes = static_cast<char*>(start);
  const std::size_t past = reinterpret_cast<std::uintptr_t>(start) % huge_page;
  const std::size_t head = past ? huge_page - past : 0;
  if (head) munmap(bytes, head);
  if (slack > head) munmap(bytes + head + length, slack - head);
  return bytes + head;
}

// Only a wish: without huge pages everything works the same, only slower.
void ask_for_huge_pages(void* start, std::size_t length) {
  if (length >= huge_page_threshold) madvise(start, length, MADV_HUGEPAGE);
}

void* allocate(std::size_t bytes, MemoryBlock::Content content) {
  if (bytes == 0) return nullptr;
  if (is_mapped(bytes)) {
    const std::size_t length = mapped_length(bytes);
    void* start = map_pages(length, PROT_READ | PROT_WRITE);
    ask_for_huge_pages(start, length);
    return start;
  }
  void* start = content == MemoryBlock::Content::zero ? std::calloc(bytes, 1) : std::malloc(bytes);
  if (!start) throw std::bad_alloc();
  return start;
}

void release(void* start, std::size_t bytes) noexcept {
  if (is_mapped(bytes))
    munmap(start, mapped_length(bytes));
  else
    std::free(start);
}

// Moves the pages, not the bytes.
void* remap(void* start, std::size_t old_length, std::size_t new_length) {
  if (mremap(start, old_length, new_length, 0) != MAP_FAILED) return start;
  void* place = map_pages(new_length, PROT_NONE);
  void* moved = mremap(start, old_length, new_length, MREMAP_MAYMOVE | MREMAP_FIXED, place);
  if (moved == MAP_FAILED) {
    munmap(place, new_length);
    throw std::bad_alloc();
  }
  return moved;
}

bool is_zero(const char* bytes, std::size_t count) {
  return bytes[0] == 0 && std::memcmp(bytes, bytes + 1, count - 1) == 0;
}

}  // namespace

MemoryBlock::MemoryBlock(std::size_t bytes, Content content)
    : data_(allocate(bytes, content)), bytes_(bytes) {}

MemoryBlock::MemoryBlock(const MemoryBlock& other)
    : data_(allocate(other.bytes_, Content::undefined)), bytes_(other.bytes_) {
  if (!is_mapped(bytes_)) {
    if (bytes_) std::memcpy(data_, other.data_, bytes_);
    return;
  }
  constexpr std::size_t stretch = std::size_t{64} * 1024;
  const auto* from = static_cast<const char*>(other.data_);
  auto* to = static_cast<char*>(data_);
  for (std::size_t at = 0; at < bytes_; at += stretch) {
    const std::size_t count = std::min(stretch, bytes_ - at);
    if (!is_zero(from + at, count)) std::memcpy(to + at, from + at, count);
  }
}

MemoryBlock::~MemoryBlock() {
  if (data_) release(data_, bytes_);
}

void MemoryBlock::resize(std::size_t bytes) {
  if (bytes == bytes_) return;
  if (is_mapped(bytes_) && is_mapped(bytes)) {
    const std::size_t old_length = mapped_length(bytes_);
    const std::size_t new_length = mapped_length(bytes);
    if (new_length != old_length) {
      data_ = remap(data_, old_length, new_length);
      ask_for_huge_pages(data_, new_length);
    }
    // The last page may keep bytes from before; pages that are added are zero.
    auto* start = static_cast<char*>(data_);
    if (bytes > bytes_) std::memset(start + bytes_, 0, std::min(bytes, old_length) - bytes_);
    bytes_ = bytes;
    return;
  }
  MemoryBlock resized(bytes, Content::zero);
  const std::size_t kept = std::min(bytes, bytes_);
  if (kept) std::memcpy(resized.data_, data_, kept);
  swap(resized);
}

}  // namespace VXCore
