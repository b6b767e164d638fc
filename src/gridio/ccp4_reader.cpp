// Reading a CCP4 map straight into a grid.
#include "gridio/ccp4_reader.h"

#include <algorithm>  // for min
#include <array>      // for array
#include <utility>    // for move

#include "gridio/ccp4_layout.h"
#include "gridio/map_layout.h"
#include "vxgrid/toolkit/core/error_handler.h"

namespace VXCore::detail {

namespace {

// Empty when the three axes are not x, y and z in some order.
std::optional<MapRange> range_of(const VXCCP4Header& header) {
  const std::array<int, 3> axes{header.MAPC, header.MAPR, header.MAPS};
  const std::array<int, 3> first{header.NCSTART, header.NRSTART, header.NSSTART};
  const std::array<int, 3> points{header.NC, header.NR, header.NS};
  MapRange range;
  unsigned seen = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    if (axes[i] < 1 || axes[i] > 3) return std::nullopt;
    const auto axis = static_cast<std::size_t>(axes[i] - 1);
    seen |= 1u << axis;
    range.lo[axis] = first[i];
    range.hi[axis] = std::int64_t{first[i]} + points[i] - 1;
  }
  if (seen != 7) return std::nullopt;
  return range;
}

void skip_symmetry(VXHost::vxistream& in, const VXCCP4Header& header) {
  std::array<char, 4096> dropped;
  std::size_t left = ccp4_symmetry_count(header) * ccp4_symmetry_bytes;
  while (left > 0) {
    const std::size_t taken = in.read(dropped.data(), std::min(left, dropped.size()));
    if (taken == 0) return;
    left -= taken;
  }
}

}  // namespace

bool load_ccp4_values(VXBrioGrid& grid, const VXCCP4Header& header, ValueBuffer<float>&& values) {
  auto range = range_of(header);
  if (!range ||
      !vi_grid_range_from_axes(false, nullptr, header.NX, header.NY, header.NZ, *range, nullptr))
    return false;
  grid.Clear();
  const std::array<float, 6> cell{header.A,     header.B,    header.C,
                                  header.Alpha, header.Beta, header.Gamma};
  if (!vi_load_map_into_grid(grid, std::move(values), cell, header.NX, header.NY, header.NZ,
                             *range))
    return false;
  grid.SetTitle("ccp4 map");
  grid.SetSpaceGroup(static_cast<unsigned int>(header.ISPG));
  return true;
}

bool read_ccp4_grid(VXHost::vxistream& in, VXBrioGrid& grid) {
  VXCCP4Header header;
  const bool reversed = read_ccp4_header(in, header);
  if (!is_readable_ccp4_mode(header) || !has_ccp4_axes(header)) return false;
  skip_symmetry(in, header);
  if (header.NC < 1 || header.NR < 1 || header.NS < 1) {
    VXThrow.Warning("Invalid CCP4 grid dimensions: %i %i %i", header.NC, header.NR, header.NS);
    return false;
  }
  if (vi_checked_grid_size(header.NC, header.NR, header.NS) == 0) return false;
  // Axes that are no permutation are found before the values instead of behind them.
  const auto layout = ccp4_layout(header);
  if (!layout || !range_of(header)) return false;
  ValueBuffer<float> values;
  if (!read_ccp4_values(in, header, *layout, reversed, values)) return false;
  if (!load_ccp4_values(grid, header, std::move(values))) return false;
  grid.SetFloatData("AMEAN", header.AMEAN);
  grid.SetFloatData("AMIN", header.AMIN);
  grid.SetFloatData("AMAX", header.AMAX);
  grid.SetFloatData("ARMS", header.ARMS);
  return true;
}

}  // namespace VXCore::detail
