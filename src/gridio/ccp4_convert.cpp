// The way between grids and CCP4 maps.
#include <algorithm>  // for copy_n
#include <array>      // for array
#include <cmath>      // for isfinite, trunc
#include <cstdint>    // for int64_t
#include <limits>     // for numeric_limits
#include <memory>     // for unique_ptr
#include <utility>    // for move

#include "grid/lattice.h"
#include "gridio/ccp4_layout.h"
#include "gridio/ccp4_reader.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/gridmath/interpolate.h"
#include "vxgrid/gridmath/regularize.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore {

namespace {

// The group that regular grids, which have none, are written with.
constexpr int group_of_regular_grids = 146;
// The bytes 44 41 00 00: little-endian reals and integers.
constexpr int little_endian_stamp = 0x4144;

// The nearest whole number, ties toward zero; 0 for what is no finite number.
double round_ties_to_zero(float value) {
  if (!std::isfinite(value)) return 0.0;
  const double whole = std::trunc(static_cast<double>(value));
  const double excess = whole - static_cast<double>(value);
  if (excess > 0.5) return whole - 1.0;
  if (excess < -0.5) return whole + 1.0;
  return whole;
}

// The same as an index; 0 for what fits none.
int index_of(float value) {
  const double rounded = round_ties_to_zero(value);
  constexpr double most = std::numeric_limits<int>::max();
  return rounded >= -most && rounded <= most ? static_cast<int>(rounded) : 0;
}

void set_common_words(VXCCP4Map& map) {
  map.Clear();
  map.MODE = 2;
  map.MAPC = 1;
  map.MAPR = 2;
  map.MAPS = 3;
  map.MAP = {'M', 'A', 'P', ' '};
  map.MACHST = little_endian_stamp;
}

// Fills values and statistics of a map whose dimensions are set, as the tags of `source` want it.
bool vi_map_statistics_fill(const VXBase& source, VXCCP4Map& map, const float* values) {
  const auto count = detail::ccp4_value_count(map);
  if (!count || !values) return false;
  const bool is_normalized = source.HasData("vx_no_norm") && source.HasData("SIGMA");
  const bool has_statistics = source.HasData("ARMS") && source.HasData("AMEAN") &&
                              source.HasData("AMIN") && source.HasData("AMAX");
  double sigma = 1.0;
  if (is_normalized) {
    sigma = static_cast<double>(source.GetFloatData("SIGMA"));
    if (sigma == 0.0) {
      VXThrow.Warning(
          "VXWriteCCP4: cached SIGMA value is 0.0, grid values will be zero, failing...");
      return false;
    }
    VXThrow.Verbose("Unnormalizing by sigma %1.19f", sigma);
  }
  map.values = ValueBuffer<float>::uninitialized(*count);
  float* const to = map.values.data();
  if (has_statistics) {
    if (is_normalized) {
      for (std::size_t i = 0; i < *count; ++i) {
        to[i] = static_cast<float>(static_cast<double>(values[i]) * sigma);
      }
    } else {
      std::copy_n(values, *count, to);
    }
    map.ARMS = source.GetFloatData("ARMS");
    map.AMIN = source.GetFloatData("AMIN");
    map.AMAX = source.GetFloatData("AMAX");
    map.AMEAN = source.GetFloatData("AMEAN");
    return true;
  }
  // Without all four tags the values go out as they stand, also where sigma is known.
  map.AMIN = std::numeric_limits<float>::max();
  map.AMAX = -map.AMIN;
  for (std::size_t i = 0; i < *count; ++i) {
    to[i] = values[i];
    if (values[i] < map.AMIN) map.AMIN = values[i];
    if (values[i] > map.AMAX) map.AMAX = values[i];
  }
  map.ARMS = 1.0f;
  map.AMEAN = 0.0f;
  return true;
}

// A grid with orientation and space group, whose lattice is that of its cell.
bool crystal_grid_to_map(VXCCP4Map& map, const VXBrioGrid& grid) {
  set_common_words(map);
  unsigned int nc = 0, nr = 0, ns = 0;
  grid.GetDim(nc, nr, ns);
  map.NC = static_cast<int>(nc);
  map.NR = static_cast<int>(nr);
  map.NS = static_cast<int>(ns);
  grid.GetUnitCell(map.A, map.B, map.C, map.Alpha, map.Beta, map.Gamma);
  unsigned int nx = 0, ny = 0, nz = 0;
  grid.GetUnitSpacing(nx, ny, nz);
  map.NX = static_cast<int>(nx);
  map.NY = static_cast<int>(ny);
  map.NZ = static_cast<int>(nz);
  map.ISPG = static_cast<int>(grid.GetSpaceGroup());

  std::array<float, 3> first{};
  grid.ElementToSpatialCoord(0, first[0], first[1], first[2]);
  const float per_step = 1.0f / grid.GetSpacing();
  for (float& coordinate : first)
    coordinate *= per_step;
  // Indices count from the origin of the cell, which the inverse orientation alone leads to.
  detail::OrientedLattice lattice(grid);
  lattice.dim = {1, 1, 1};
  lattice.mid = {};
  lattice.spacing = 1.0f;
  const auto index = detail::LatticeLocator(lattice).index(first.data());
  map.NCSTART = index_of(static_cast<float>(index[0]));
  map.NRSTART = index_of(static_cast<float>(index[1]));
  map.NSSTART = index_of(static_cast<float>(index[2]));
  return vi_map_statistics_fill(grid, map, grid.GetValues());
}

}  // namespace

bool VXGridToCCP4(VXCCP4Map& map, const VXScalarGrid& grid) {
  set_common_words(map);
  map.ARMS = 0.0f;
  map.Alpha = map.Beta = map.Gamma = 90.0f;
  map.ISPG = group_of_regular_grids;

  std::array<float, 3> center{};
  std::array<float, 3> extents{};
  VXGetCenterAndExtents(grid, center.data(), extents.data());
  std::array<unsigned int, 3> dims{};
  grid.GetDim(dims[0], dims[1], dims[2]);
  std::array<int, 3> points{};
  std::array<int, 3> intervals{};
  const float spacing = grid.GetSpacing();
  const float per_step = 1.0f / spacing;
  for (std::size_t i = 0; i < 3; ++i) {
    // An odd number of points, so that one of them lies at the centre, and a cell twice as long.
    const std::int64_t odd = (std::int64_t{dims[i]} >> 1) * 2 + 1;
    if (2 * odd > std::numeric_limits<int>::max()) return false;
    points[i] = static_cast<int>(odd);
    intervals[i] = static_cast<int>(2 * odd);
    center[i] = static_cast<float>(round_ties_to_zero(center[i] * per_step)) * spacing;
  }
  map.NC = points[0];
  map.NR = points[1];
  map.NS = points[2];
  map.NX = intervals[0];
  map.NY = intervals[1];
  map.NZ = intervals[2];
  if (!detail::ccp4_value_count(map)) return false;

  VXScalarGrid regular(map.NC, map.NR, map.NS, center[0], center[1], center[2], spacing, "");
  VXInterpolateBetweenGrids(regular, grid);
  std::array<float, 3> first{};
  regular.ElementToSpatialCoord(0, first[0], first[1], first[2]);
  map.NCSTART = index_of(first[0] / spacing);
  map.NRSTART = index_of(first[1] / spacing);
  map.NSSTART = index_of(first[2] / spacing);
  map.A = static_cast<float>(map.NX) * spacing;
  map.B = static_cast<float>(map.NY) * spacing;
  map.C = static_cast<float>(map.NZ) * spacing;
  return vi_map_statistics_fill(grid, map, regular.GetValues());
}

bool VXGridToCCP4(VXCCP4Map& map, const VXBrioGrid& grid) {
  if (grid.GetOrientationSet() && grid.HasSpaceGroup()) return crystal_grid_to_map(map, grid);
  VXBrioGrid regular;
  if (!VXMakeRegularGrid(regular, grid, 0.0f) || regular.GetFloats().GetNumGrids() == 0)
    return false;
  return VXGridToCCP4(map, VXScalarGrid(regular.GetFloats()[0]));
}

bool VXCCP4ToGrid(VXBrioGrid& grid, const VXCCP4Map& map) {
  return detail::load_ccp4_values(grid, map, ValueBuffer<float>(map.values));
}

namespace {

template <class Grid>
bool write_grid(VXHost::vxostream& out, const Grid& grid) {
  VXCCP4Map map;
  return VXGridToCCP4(map, grid) && map.Write(out);
}

template <class Grid>
bool write_grid(const std::string& filename, const Grid& grid) {
  const std::unique_ptr<VXHost::vxostream> out(VXHost::VXOpenOStream(filename.c_str()));
  if (!out) {
    VXThrow.Warning("Unable to open file for grid writing: %s", filename.c_str());
    return false;
  }
  return write_grid(*out, grid);
}

}  // namespace

bool VXWriteCCP4Grid(VXHost::vxostream& out, const VXBrioGrid& grid) {
  return write_grid(out, grid);
}

bool VXWriteCCP4Grid(VXHost::vxostream& out, const VXScalarGrid& grid) {
  return write_grid(out, grid);
}

bool VXWriteCCP4Grid(const std::string& filename, const VXBrioGrid& grid) {
  return write_grid(filename, grid);
}

bool VXWriteCCP4Grid(const std::string& filename, const VXScalarGrid& grid) {
  return write_grid(filename, grid);
}

}  // namespace VXCore
