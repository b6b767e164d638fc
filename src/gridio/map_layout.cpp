// From a block of map values to a crystal grid: index ranges, closing planes, cell and mid.
#include "gridio/map_layout.h"

#include <algorithm>  // for copy_n
#include <cstring>    // for strstr
#include <utility>    // for move

#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/legacy/messages.h"

namespace VXCore {

namespace {

constexpr std::int64_t most_points = 2147483647;

// Leaves axes and strides alone when the text names no order; of several the last one tested wins.
bool order_axes(const char* text, const std::array<std::size_t, 3>& strides, MapAxes& axes) {
  constexpr std::array<const char*, 6> orders{"ZYX", "ZXY", "YXZ", "YZX", "XZY", "XYZ"};
  bool found = false;
  for (const char* order : orders) {
    if (!std::strstr(text, order)) continue;
    found = true;
    axes.slow = static_cast<unsigned>(order[0] - 'X');
    axes.middle = static_cast<unsigned>(order[1] - 'X');
    axes.fast = static_cast<unsigned>(order[2] - 'X');
  }
  if (!found) return false;
  axes.slow_stride = strides[axes.slow];
  axes.middle_stride = strides[axes.middle];
  axes.fast_stride = strides[axes.fast];
  return true;
}

}  // namespace

std::int64_t vi_checked_grid_size(std::int64_t x, std::int64_t y, std::int64_t z) {
  const auto is_too_large = [](std::int64_t first, std::int64_t second) {
    if (first == 0 || second == 0 || first <= most_points / second) return false;
    VXThrow.Warning("Grid dimensions too large for memory size: %lu x %lu",
                    static_cast<unsigned long>(first), static_cast<unsigned long>(second));
    return true;
  };
  if (is_too_large(x, y)) return 0;
  const std::int64_t plane = x * y;
  if (is_too_large(plane, z)) return 0;
  return plane > 0 && z > 0 ? plane * z : 0;
}

bool vi_grid_range_from_axes(bool verbose, const char* axes_text, int nx, int ny, int nz,
                             MapRange& range, MapAxes* axes) {
  constexpr std::array<char, 3> lower{'x', 'y', 'z'};
  constexpr std::array<char, 3> upper{'X', 'Y', 'Z'};
  const std::array<int, 3> intervals{nx, ny, nz};
  range.full = range.fill = 0;
  for (unsigned i = 0; i < 3; ++i) {
    const std::int64_t span = range.hi[i] - range.lo[i];
    const unsigned bit = 1u << i;
    if (intervals[i] == span || intervals[i] == span + 1) range.full |= bit;
    if (intervals[i] == span + 1) range.fill |= bit;
  }
  if (verbose) {
    VXBrioMol::vx_printf("grid\n");
    for (unsigned i = 0; i < 3; ++i) {
      VXBrioMol::vx_printf(" runs from: %c=%lld to %lld, available= %d\n", lower[i],
                           static_cast<long long>(range.lo[i]), static_cast<long long>(range.hi[i]),
                           intervals[i]);
    }
    for (unsigned i = 0; i < 3; ++i) {
      if (range.fill & (1u << i))
        VXBrioMol::vx_printf("filling out %c direction by one\n", lower[i]);
    }
  }
  for (auto& hi : range.hi)
    ++hi;
  for (unsigned i = 0; i < 3; ++i) {
    if (range.points(i) >= 0) continue;
    // The words are those of one format and serve all of them.
    VXThrow.Warning("Invalid %c dimensions for XPLOR file reading: %lld < %lld", upper[i],
                    static_cast<long long>(range.hi[i]), static_cast<long long>(range.lo[i]));
    return false;
  }
  if (!axes_text || !axes) return true;
  const auto xdim = static_cast<std::size_t>(range.points(0));
  const auto ydim = static_cast<std::size_t>(range.points(1));
  if (!order_axes(axes_text, {1, xdim, xdim * ydim}, *axes)) {
    VXThrow.Error("XPLOR: Axes mode %s is not recognized.", axes_text);
    return false;
  }
  return true;
}

std::optional<ValueBuffer<float>> vi_fill_periodic_planes(
    const std::array<std::size_t, 3>& old_dims, const std::array<std::size_t, 3>& new_dims,
    const ValueBuffer<float>& values) {
  const auto size = static_cast<std::size_t>(vi_checked_grid_size(
      static_cast<std::int64_t>(new_dims[0]), static_cast<std::int64_t>(new_dims[1]),
      static_cast<std::int64_t>(new_dims[2])));
  const auto [old_x, old_y, old_z] = old_dims;
  const auto [new_x, new_y, new_z] = new_dims;
  if (size == 0) return std::nullopt;
  if (old_x * old_y * old_z == 0 || values.size() < old_x * old_y * old_z) return std::nullopt;
  auto filled = ValueBuffer<float>::uninitialized(size);
  float* to = filled.data();
  for (std::size_t z = 0; z < new_z; ++z) {
    for (std::size_t y = 0; y < new_y; ++y, to += new_x) {
      const float* const from = values.data() + old_x * (y % old_y + old_y * (z % old_z));
      std::copy_n(from, std::min(old_x, new_x), to);
      for (std::size_t x = old_x; x < new_x; ++x)
        to[x] = from[x % old_x];
    }
  }
  return filled;
}

bool vi_load_map_into_grid(VXBrioGrid& grid, ValueBuffer<float>&& values,
                           const std::array<float, 6>& cell, int nx, int ny, int nz,
                           MapRange range) {
  std::array<std::size_t, 3> dims{};
  for (unsigned i = 0; i < 3; ++i) {
    if (range.points(i) < 0) return false;
    dims[i] = static_cast<std::size_t>(range.points(i));
  }
  if (range.fill != 0) {
    const std::array<std::size_t, 3> old_dims = dims;
    for (unsigned i = 0; i < 3; ++i) {
      if (!(range.fill & (1u << i))) continue;
      ++dims[i];
      ++range.hi[i];
    }
    auto filled = vi_fill_periodic_planes(old_dims, dims, values);
    if (!filled) return false;
    values = std::move(*filled);
  }
  std::size_t size = 0;
  if (dims[0] != 0 && dims[1] != 0 && dims[2] != 0) {
    size = static_cast<std::size_t>(
        vi_checked_grid_size(range.points(0), range.points(1), range.points(2)));
    if (size == 0 || values.size() < size) return false;
  }
  if (!grid.SetDim(static_cast<unsigned>(dims[0]), static_cast<unsigned>(dims[1]),
                   static_cast<unsigned>(dims[2])))
    return false;
  if (values.size() > size) values.resize(size);
  if (grid.GetFloats().GetNumGrids() == 0 || !grid.GetFloats()[0].AdoptValues(std::move(values)))
    return false;

  grid.SetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5], static_cast<unsigned>(nx),
                   static_cast<unsigned>(ny), static_cast<unsigned>(nz));
  // The lattice point (i, j, k) lies at spacing * orientation * (i, j, k), and the mid between the
  // first point and the last.
  std::array<float, 9> orientation{};
  grid.GetOrientation(orientation.data());
  std::array<float, 3> ends{};
  for (unsigned i = 0; i < 3; ++i)
    ends[i] = static_cast<float>(range.lo[i] + (range.hi[i] - 1));
  const float half = grid.GetSpacing() / 2.0f;
  const auto mid = [&](unsigned row) {
    const float* const m = orientation.data() + 3 * row;
    return half * (m[0] * ends[0] + m[1] * ends[1] + m[2] * ends[2]);
  };
  grid.SetMid(mid(0), mid(1), mid(2));
  grid.SetReentrant(true);
  return true;
}

}  // namespace VXCore
