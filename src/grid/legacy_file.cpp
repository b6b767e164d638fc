/// \file
/// The legacy binary grid file, and the text listing of a grid record.
#include "vxgrid/grid/legacy_file.h"

#include <algorithm>  // for max, min
#include <array>      // for array
#include <cstddef>    // for size_t
#include <cstdint>    // for int32_t, int64_t, uint64_t
#include <cstdlib>    // for calloc, free, realloc
#include <cstring>    // for memcpy
#include <memory>     // for unique_ptr
#include <string>     // for string

#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/legacy/messages.h"

namespace VXCore {

namespace {

constexpr std::size_t word = 4;

struct CloseFile {
  void operator()(std::FILE* file) const { VXBrioMol::vi_fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<void, FreeBlock>;

enum Selector { floats_only = 1, integers_only = 2, both_fields = 3 };

/// The file's words before the values, in their order.
struct Header {
  float xmid, ymid, zmid, spacing, inverse_spacing;
  std::int32_t xdim, ydim, zdim, selector;
};
static_assert(sizeof(Header) == 9 * word, "the header is read and written as it stands in memory");

bool sizes_allowed(int xdim, int ydim, int zdim) {
  return xdim >= 0 && ydim >= 0 && zdim >= 0 && !vx_grid_struct_overflow(xdim, ydim, zdim);
}

std::size_t points_of(int xdim, int ydim, int zdim) {
  return static_cast<std::size_t>(xdim) * static_cast<std::size_t>(ydim) *
         static_cast<std::size_t>(zdim);
}

/// Changes a block's size in place or by moving it; false, and the block as it was, without memory.
bool resize(Block& block, std::size_t bytes) {
  void* moved = std::realloc(block.get(), bytes);
  if (!moved) return false;
  static_cast<void>(block.release());
  block.reset(moved);
  return true;
}

/// Reads up to `bytes` bytes into a block that grows with what arrives, by doubling.
bool read_growing(std::FILE* file, Block& block, std::size_t bytes, std::size_t& arrived) {
  std::size_t capacity = 0;
  arrived = 0;
  while (arrived < bytes) {
    if (arrived == capacity) {
      constexpr std::size_t first_step = std::size_t{1} << 20;
      capacity = std::min(bytes, std::max(first_step, 2 * capacity));
      if (!resize(block, capacity)) return false;
    }
    const std::size_t got =
        std::fread(static_cast<char*>(block.get()) + arrived, 1, capacity - arrived, file);
    if (got == 0) break;
    arrived += got;
  }
  return true;
}

/// Brings a block to its full size; what did not arrive is zero, straight from the system.
bool fill_up(Block& block, std::size_t bytes, std::size_t arrived) {
  if (arrived == bytes) return true;
  Block whole(std::calloc(bytes, 1));
  if (!whole) return false;
  if (arrived > 0) std::memcpy(whole.get(), block.get(), arrived);
  block.swap(whole);
  return true;
}

/// Whether a claim of so many bytes is believed when no more than `arrived` of them are there.
bool claim_allowed(std::uint64_t claimed, std::uint64_t arrived) {
  constexpr std::uint64_t always_allowed = std::uint64_t{64} << 20;
  return claimed <= always_allowed || claimed <= 16 * arrived;
}

/// Fills the record, or leaves it as it was and gives false.
bool read_binary(std::FILE* file, GridStruct& grid) {
  std::array<char, sizeof(Header)> bytes{};
  const std::size_t header_bytes = std::fread(bytes.data(), 1, bytes.size(), file);
  Header header{};
  std::memcpy(&header, bytes.data(), sizeof header);
  if (!sizes_allowed(header.xdim, header.ydim, header.zdim)) return false;

  // The writer puts the integers first, the reader takes the first of two blocks as floats.
  const bool with_floats = header.selector == floats_only || header.selector == both_fields;
  const bool with_integers = header.selector == integers_only || header.selector == both_fields;
  const std::size_t block_bytes = word * points_of(header.xdim, header.ydim, header.zdim);
  const std::size_t float_bytes = with_floats ? block_bytes : 0;
  const std::size_t integer_bytes = with_integers ? block_bytes : 0;
  Block floats;
  Block integers;
  std::size_t floats_arrived = 0;
  std::size_t integers_arrived = 0;
  if (!read_growing(file, floats, float_bytes, floats_arrived) ||
      !read_growing(file, integers, integer_bytes, integers_arrived) || std::ferror(file) != 0 ||
      !claim_allowed(std::uint64_t{float_bytes} + integer_bytes,
                     std::uint64_t{header_bytes} + floats_arrived + integers_arrived) ||
      !fill_up(floats, float_bytes, floats_arrived) ||
      !fill_up(integers, integer_bytes, integers_arrived)) {
    return false;
  }

  grid.xmid = header.xmid;
  grid.ymid = header.ymid;
  grid.zmid = header.zmid;
  grid.spacing = header.spacing;
  grid.inverse_spacing = header.inverse_spacing;
  grid.xdim = header.xdim;
  grid.ydim = header.ydim;
  grid.zdim = header.zdim;
  grid.floats = static_cast<float*>(floats.release());
  grid.integers = static_cast<int*>(integers.release());
  return true;
}

bool write_words(std::FILE* file, const void* values, std::size_t count) {
  return std::fwrite(values, word, count, file) == count;
}

int write_binary(const GridStruct& grid, const char* name, int selector) {
  const bool with_integers = selector == integers_only || selector == both_fields;
  const bool with_floats = selector == floats_only || selector == both_fields;
  if ((with_integers && !grid.integers) || (with_floats && !grid.floats)) return 0;

  VXBrioMol::vx_printf("writing BINARY grid file\n");
  const File file(VXBrioMol::vi_fopen(name, "wb"));
  if (!file) {
    VXBrioMol::vx_printf("Cannot open file %s\n", name ? name : "");
    return 0;
  }
  const Header header = {grid.xmid, grid.ymid, grid.zmid, grid.spacing, grid.inverse_spacing,
                         grid.xdim, grid.ydim, grid.zdim, selector};
  const std::size_t count = points_of(grid.xdim, grid.ydim, grid.zdim);
  bool written = write_words(file.get(), &header, sizeof header / word);
  if (with_integers) written = written && write_words(file.get(), grid.integers, count);
  if (with_floats) written = written && write_words(file.get(), grid.floats, count);
  return written && std::fflush(file.get()) == 0 ? 1 : 0;
}

int write_listing(const GridStruct& grid, const char* name, int batch) {
  if (batch < 1 || !grid.floats) return 0;
  const File file(VXBrioMol::vi_fopen(name, "w"));
  if (!file) {
    VXThrow.Warning("Cannot open file %s\n", name ? name : "");
    return 0;
  }
  const auto put = [&file](const std::string& text) { std::fputs(text.c_str(), file.get()); };
  put("Ascii Grid file\n\n");
  put(format_text("Grid spacing = %10.5f\n", double{grid.spacing}));
  put(format_text("Grid center  = %10.5f %10.5f %10.5f\n", double{grid.xmid}, double{grid.ymid},
                  double{grid.zmid}));
  put(format_text("Grid size    = %d %d %d\n", grid.xdim, grid.ydim, grid.zdim));
  put("\n");
  put(format_text("Grid values in batches of %d\n", batch));

  // A line goes out whenever the next batch begins, so that the first one out is blank.
  const std::size_t columns = 13;
  const std::size_t per_line = static_cast<std::size_t>(batch);
  const std::size_t count = points_of(grid.xdim, grid.ydim, grid.zdim);
  std::string line(columns * per_line, ' ');
  for (std::size_t i = 0; i < count; ++i) {
    if (i % per_line == 0) {
      put(line + "\n");
      line.clear();
    }
    line += format_text("%12.5e ", double{grid.floats[i]});
  }
  put(line + "\n");
  return std::fflush(file.get()) == 0 && !std::ferror(file.get()) ? 1 : 0;
}

}  // namespace

int vi_read_grid(int, GridStruct* grid, const char* name) {
  if (!grid) return 0;
  const File file(VXBrioMol::vi_fopen(name, "rb"));
  if (!file || !read_binary(file.get(), *grid)) {
    VXThrow.Warning("Cannot open file %s", name ? name : "");
    return 0;
  }
  return 1;
}

int vi_write_grid(int, GridStruct grid, int mode, const char* name, int what) {
  if (mode != 1 && mode != 2) return 1;
  if (!sizes_allowed(grid.xdim, grid.ydim, grid.zdim)) return 0;
  return mode == 1 ? write_binary(grid, name, what) : write_listing(grid, name, what);
}

}  // namespace VXCore
