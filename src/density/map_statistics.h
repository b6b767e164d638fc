// Extremes and sums of map values in one pass, and the scale that follows from them.
#ifndef VXGRID_SRC_DENSITY_MAP_STATISTICS_H
#define VXGRID_SRC_DENSITY_MAP_STATISTICS_H

#include <cstddef>  // for size_t

namespace VXCore {

class VXSkewGrid;

namespace detail {

/// The sums run over the values in order, in double precision. NaN takes no part in the extremes;
/// without values they are 0.
struct MapStatistics {
  std::size_t count = 0;
  float minimum = 0;
  float maximum = 0;
  double sum = 0;
  double sum_of_squares = 0;

  double mean() const { return sum / static_cast<double>(count); }
  /// Sample standard deviation, not a number for less than two values.
  double deviation() const;
};

MapStatistics measure_map(const float* values, std::size_t count);

/// What VXSigmaNormalizeGrid does to a grid that has none of its tags, for a caller that has
/// measured the values.
float normalize_by_sigma(VXSkewGrid& grid, const MapStatistics& statistics);

}  // namespace detail
}  // namespace VXCore

#endif
