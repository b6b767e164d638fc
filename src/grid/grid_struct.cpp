/// \file
/// Buffers of a grid record, and its exchange with a Brio grid.
#include "vxgrid/grid/grid_struct.h"

#include <cstddef>  // for size_t
#include <cstdint>  // for int64_t
#include <cstdlib>  // for free, malloc, realloc
#include <cstring>  // for memcpy, memset

#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"

namespace VXCore {

namespace {

constexpr std::int64_t largest_int = 2147483647;

/// Bytes of a buffer of `count` words, or of as many as the grid has points; 0 when the record's
/// dimensions are no size.
std::size_t buffer_bytes(const GridStruct& grid, int count) {
  if (count < 1) {
    if (grid.xdim < 1 || grid.ydim < 1 || grid.zdim < 1 || vx_grid_struct_overflow(grid)) return 0;
    count = grid.xdim * grid.ydim * grid.zdim;
  }
  return static_cast<std::size_t>(count) * sizeof(float);
}

template <class T>
bool allocate(T*& buffer, std::size_t bytes) {
  buffer = bytes > 0 ? static_cast<T*>(std::malloc(bytes)) : nullptr;
  return buffer != nullptr;
}

template <class T>
void release(T*& buffer) {
  std::free(buffer);
  buffer = nullptr;
}

template <class T>
bool reallocate(T*& buffer, std::size_t bytes) {
  void* moved = std::realloc(buffer, bytes);
  if (moved) buffer = static_cast<T*>(moved);
  return moved != nullptr;
}

/// Copies a field into a fresh buffer; without a field there is nothing to do.
template <class T>
bool copy_values(T*& buffer, const T* values, std::size_t bytes) {
  if (!values) return true;
  if (!allocate(buffer, bytes)) return false;
  std::memcpy(buffer, values, bytes);
  return true;
}

}  // namespace

int vx_allocate_grid_struct(GridStruct& grid, bool integers, bool floats, int count) {
  const std::size_t bytes = buffer_bytes(grid, count);
  bool allocated = true;
  if (integers) allocated = allocate(grid.integers, bytes);
  if (floats) allocated = allocate(grid.floats, bytes) && allocated;
  if (!allocated) vx_deallocate_grid_struct(grid, integers, floats);
  return allocated ? 1 : 0;
}

int vx_deallocate_grid_struct(GridStruct& grid, bool integers, bool floats) {
  if (integers) release(grid.integers);
  if (floats) release(grid.floats);
  return 1;
}

int vx_reallocate_grid_struct(GridStruct& grid, int count, bool integers, bool floats) {
  const std::size_t bytes = buffer_bytes(grid, count);
  if (bytes == 0) return 0;
  bool resized = true;
  if (integers) resized = reallocate(grid.integers, bytes);
  if (floats) resized = reallocate(grid.floats, bytes) && resized;
  return resized ? 1 : 0;
}

int vx_zero_grid_struct(GridStruct& grid, bool integers, bool floats, int count) {
  const std::size_t bytes = buffer_bytes(grid, count);
  if (integers && grid.integers) std::memset(grid.integers, 0, bytes);
  if (floats && grid.floats) std::memset(grid.floats, 0, bytes);
  return 1;
}

bool vx_grid_struct_overflow(int x, int y, int z) {
  if (x == 0 || y == 0 || z == 0) return false;
  const std::int64_t plane = std::int64_t{x} * y;
  if (plane > largest_int) return true;
  // Two negative factors, too large for 64 bits as a product, are compared by division.
  if (plane < 0) return z < 0 && -plane > largest_int / -std::int64_t{z};
  return plane * z > largest_int;
}

bool vx_grid_struct_overflow(const GridStruct& grid) {
  return vx_grid_struct_overflow(grid.xdim, grid.ydim, grid.zdim);
}

int vx_convert_grid_object_to_grid_structure(GridStruct& out, const VXBrioGrid& grid) {
  out.floats = nullptr;
  out.integers = nullptr;
  out.spacing = grid.GetSpacing();
  out.xdim = static_cast<int>(grid.GetXDim());
  out.ydim = static_cast<int>(grid.GetYDim());
  out.zdim = static_cast<int>(grid.GetZDim());
  grid.GetMid(out.xmid, out.ymid, out.zmid);
  if (out.spacing != 0.0f) out.inverse_spacing = 1.0f / out.spacing;

  const auto bytes_in = [](const auto& store) {
    return std::size_t{store.GetSize()} * sizeof(float);
  };
  bool copied = true;
  if (vx_is_grid_floats_set(grid))
    copied = copy_values(out.floats, vi_grid_floats(grid), bytes_in(grid.GetFloats()));
  if (vx_is_grid_integers_set(grid))
    copied =
        copy_values(out.integers, vi_grid_integers(grid), bytes_in(grid.GetIntegers())) && copied;
  if (!copied) vx_deallocate_grid_struct(out, true, true);
  return copied ? 1 : 0;
}

bool VXConvertGridStructureToGridObject(VXBrioGrid& out, const GridStruct& grid) {
  if (grid.name) out.SetTitle(grid.name);
  out.SetSpacing(grid.spacing);
  out.SetMid(grid.xmid, grid.ymid, grid.zmid);
  if (grid.xdim < 0 || grid.ydim < 0 || grid.zdim < 0) return false;
  const auto xdim = static_cast<unsigned int>(grid.xdim);
  const auto ydim = static_cast<unsigned int>(grid.ydim);
  const auto zdim = static_cast<unsigned int>(grid.zdim);
  if (!out.SetDim(xdim, ydim, zdim)) return false;
  const unsigned int n = xdim * ydim * zdim;
  if (grid.floats && !out.GetFloats().SetValues(0, grid.floats, n)) return false;
  return !grid.integers || out.GetIntegers().SetValues(0, grid.integers, n);
}

}  // namespace VXCore
