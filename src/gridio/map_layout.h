// From a block of map values and its place on the cell's grid to a crystal grid, for all map
// formats.
#ifndef VXGRID_SRC_GRIDIO_MAP_LAYOUT_H
#define VXGRID_SRC_GRIDIO_MAP_LAYOUT_H

#include <array>     // for array
#include <cstddef>   // for size_t
#include <cstdint>   // for int64_t
#include <optional>  // for optional

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/value_buffer.h"

namespace VXCore {

/// The lattice points of a cell that a map covers, per axis x, y, z. Wider than the 32 bits of the
/// files, so that no sum of what they claim overflows.
struct MapRange {
  std::array<std::int64_t, 3> lo{};  ///< First index.
  std::array<std::int64_t, 3> hi{};  ///< Last index; one past it once the range has been set up.
  unsigned full = 0;  ///< Bit 0, 1, 2: the map covers a period along x, y, z, closed or not.
  unsigned fill = 0;  ///< Bit 0, 1, 2: it does so without the closing plane.

  /// Points along an axis, once `hi` is exclusive.
  std::int64_t points(unsigned axis) const { return hi[axis] - lo[axis]; }
};

/// The axes (0 for x, 1 for y, 2 for z) in the order of a file, and what one step along each of
/// them is in an array that has x fastest.
struct MapAxes {
  unsigned slow = 0, middle = 0, fast = 0;
  std::size_t slow_stride = 0, middle_stride = 0, fast_stride = 0;
};

/// x * y * z. 0 with the Warning "Grid dimensions too large for memory size: %lu x %lu" about the
/// first product past 2^31 - 1; 0 without a word when one of them is 0 or negative.
VXGRID_API std::int64_t vi_checked_grid_size(std::int64_t x, std::int64_t y, std::int64_t z);

/// Sets the bits of a range, makes its `hi` exclusive and checks it. `nx`, `ny`, `nz` are the
/// intervals of the cell. With `axes_text`, one of "ZYX" and the like with the slowest axis first,
/// `axes` is filled too. `verbose` prints range and sampling through vx_printf.
///
/// False with the Warning "Invalid X dimensions for XPLOR file reading: %i < %i" (Y, Z) for an axis
/// that ends before it begins, and with the Error "XPLOR: Axes mode %s is not recognized.".
VXGRID_API bool vi_grid_range_from_axes(bool verbose, const char* axes_text, int nx, int ny, int nz,
                                        MapRange& range, MapAxes* axes);

/// Widens an array of old_dims points, x fastest, to new_dims, each at most one larger: what lies
/// past an end is what lies at the beginning. Empty with the Warning "Grid dimensions too large for
/// memory size: %lu x %lu" for more than 2^31 - 1 points, and without a word for none.
VXGRID_API std::optional<ValueBuffer<float>> vi_fill_periodic_planes(
    const std::array<std::size_t, 3>& old_dims, const std::array<std::size_t, 3>& new_dims,
    const ValueBuffer<float>& values);

/// Makes the grid a crystal grid that holds these values: dimensions, values, cell with orientation
/// and spacing, mid, reentrant; closing planes added where `range.fill` asks for them. `cell` is a,
/// b, c in Angstrom and alpha, beta, gamma in degrees. `hi` of the range is exclusive. The values
/// move into the grid. False when a dimension is negative, too large, or does not fit the values.
VXGRID_API bool vi_load_map_into_grid(VXBrioGrid& grid, ValueBuffer<float>&& values,
                                      const std::array<float, 6>& cell, int nx, int ny, int nz,
                                      MapRange range);

}  // namespace VXCore

#endif
