// Sums of round Gaussians from plain arrays onto a Brio grid.
#include "vxgrid/gaussian/explicit_grid.h"

#include <algorithm>  // for max, min
#include <array>      // for array
#include <cmath>      // for exp, fabs, log, sqrt
#include <cstddef>    // for size_t

#include "gaussian/field_kernels.h"
#include "gaussian/grid_lattice.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"

namespace VXCore {

namespace {

using detail::BallScheme;
using detail::GaussItem;

constexpr float default_prefactor = 2.7f;

// Where a Gaussian has fallen to 0.001; 0 where it is not higher than that.
float reach_of(float prefactor, float width) {
  constexpr float cutoff = 0.001f;
  const float squared = std::log(cutoff / std::fabs(prefactor)) * (-1.0f / width);
  return squared > 0.0f ? std::sqrt(squared) : 0.0f;
}

// The largest reach of any item, from the smallest width and the largest height.
float largest_reach_of_widths(const float* widths, const float* prefactors, std::size_t n) {
  float width = 0.0f;
  float height = prefactors ? 0.0f : default_prefactor;
  for (std::size_t i = 0; i < n; ++i) {
    if (widths[i] > 0.0f && (width == 0.0f || widths[i] < width)) width = widths[i];
    if (prefactors) height = std::max(height, std::fabs(prefactors[i]));
  }
  return width > 0.0f ? reach_of(height, width) : 0.0f;
}

float largest_radius(const float* radii, std::size_t n) {
  float largest = 0.0f;
  for (std::size_t i = 0; i < n; ++i)
    largest = std::max(largest, radii[i]);
  return largest;
}

}  // namespace

void vx_make_gaussian_grid_explicit(const float* coords, const float* sizes,
                                    const float* prefactors, int count, float spacing,
                                    VXBrioGrid& grid, int sizes_are_widths) {
  const std::size_t n = coords && sizes && count > 0 ? static_cast<std::size_t>(count) : 0;
  const float reach =
      sizes_are_widths ? largest_reach_of_widths(sizes, prefactors, n) : largest_radius(sizes, n);
  if (grid.GetSize() < 2 && !detail::size_around_points(grid, coords, n, reach, spacing)) return;
  float* const values = vi_grid_floats(grid);
  const detail::RecordLattice lattice = detail::lattice_of(grid);
  if (!values || !detail::is_usable(lattice)) return;

  BallScheme scheme(lattice, reach, detail::runtime_exponential);
  detail::ValueKernel<detail::SumRule> kernel(scheme, values);
  float prefactor = default_prefactor;
  for (std::size_t i = 0; i < n; ++i) {
    const float size = sizes[i];
    if (!(size > 0.0f)) continue;
    GaussItem item{};
    item.centre = {coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]};
    item.width = sizes_are_widths ? size : detail::kappa_of_default / (size * size);
    // With widths the height here is still that of the item before.
    item.reach = sizes_are_widths ? reach_of(prefactor, size) : size;
    if (!scheme.meets_grid(item)) continue;
    if (prefactors) prefactor = prefactors[i];
    item.prefactor = prefactor;
    detail::run_item(scheme, i, item, kernel);
  }
}

}  // namespace VXCore
