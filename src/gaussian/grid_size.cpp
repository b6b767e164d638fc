// The box of a set of Gaussians as mid and dimensions.
#include "vxgrid/gaussian/grid_size.h"

#include <algorithm>  // for max, min
#include <array>      // for array
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t
#include <limits>     // for numeric_limits
#include <optional>   // for optional

#include "gridmath/dimensions.h"
#include "vxgrid/gaussian/gsphere.h"

namespace VXCore {

void vi_grid_size(int count, float* coords, float* widths, float* prefactors, float cutoff,
                  float spacing, float* xmid, float* ymid, float* zmid, int* xdim, int* ydim,
                  int* zdim) {
  if (count < 1 || !(spacing > 0.0f)) return;
  constexpr float infinity = std::numeric_limits<float>::infinity();
  std::array<float, 3> low = {infinity, infinity, infinity};
  std::array<float, 3> high = {-infinity, -infinity, -infinity};
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    const float r = vi_gauss_rad(prefactors[i], widths[i], cutoff);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], coords[3 * i + axis] - r);
      high[axis] = std::max(high[axis], coords[3 * i + axis] + r);
    }
  }
  std::array<float, 3> mid{};
  std::array<int, 3> dim{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    mid[axis] = (low[axis] + high[axis]) * 0.5f;
    const std::optional<int> half = detail::truncated((high[axis] - mid[axis]) / spacing);
    const std::int64_t points = 2 * std::int64_t{half.value_or(-2)} + 3;
    if (points < 1 || points > std::numeric_limits<int>::max()) return;
    dim[axis] = static_cast<int>(points);
  }
  *xmid = mid[0];
  *ymid = mid[1];
  *zmid = mid[2];
  *xdim = dim[0];
  *ydim = dim[1];
  *zdim = dim[2];
}

}  // namespace VXCore
