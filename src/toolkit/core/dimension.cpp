// Dimensions from extents.
#include "vxgrid/toolkit/core/dimension.h"

#include <algorithm>  // for copy
#include <array>      // for array
#include <string>     // for string

#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/text.h"

namespace VXCore {
namespace {

constexpr std::int64_t limit = 16777216;

}  // namespace

bool dimension_from_extent(float extent, float spacing, std::int64_t& dimension) {
  const float points = (extent + 1e-5f) / spacing + 1.0f;
  // Beyond the limit a float has no fraction, so the test before the truncation is that after it.
  const bool too_small = points < static_cast<float>(-limit);
  if (too_small || !(points <= static_cast<float>(limit))) {
    const std::string reason =
        format_text("%f", static_cast<double>(points)) +
        (too_small ? " is less than the minimum allowed "
                   : " is greater than the maximum allowed ") +
        std::to_string(too_small ? -limit : limit) +
        " when performing conversions between integers and floating point types";
    VXThrow.Warning("Unable to make dimension from extent because of " + reason);
    return false;
  }
  dimension = static_cast<std::int64_t>(points);
  return true;
}

bool dimensions_from_extents(const float* extents, float spacing, unsigned int* dimensions) {
  std::array<unsigned int, 3> made{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    std::int64_t dimension = 0;
    if (!dimension_from_extent(extents[axis], spacing, dimension) || dimension < 0) return false;
    made[axis] = static_cast<unsigned int>(dimension);
  }
  std::copy(made.begin(), made.end(), dimensions);
  return true;
}

}  // namespace VXCore
