// Telling difference maps from ordinary ones.
#include "vxgrid/density/difference_map.h"

#include <cmath>    // for fabs
#include <cstddef>  // for size_t
#include <limits>   // for numeric_limits

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {

namespace {

bool is_difference_map(unsigned int type, const float* values, std::size_t size) {
  if (type == VXGridType::RegularMap) return false;
  if (type == VXGridType::DifferenceMap) return true;
  float smallest = std::numeric_limits<float>::max();
  float largest = -std::numeric_limits<float>::max();
  for (std::size_t i = 0; values != nullptr && i < size; ++i) {
    if (values[i] < smallest) smallest = values[i];
    if (values[i] > largest) largest = values[i];
  }
  return std::fabs(smallest) / std::fabs(largest) > 0.65;
}

}  // namespace

bool VXGridIsDifferenceMap(const VXSkewGrid& grid) {
  return is_difference_map(grid.GetType(), grid.GetValues(), grid.GetSize());
}

bool VXGridIsDifferenceMap(const VXScalarGrid& grid) {
  return is_difference_map(grid.GetType(), grid.GetValues(), grid.GetSize());
}

}  // namespace VXCore
