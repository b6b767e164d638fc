// The choice of cells, and reading of the runs.
#include "fieldgrids/nearby_spheres.h"

#include <algorithm>  // for find, max, min
#include <cmath>      // for isfinite
#include <cstddef>    // for ptrdiff_t, size_t
#include <limits>     // for numeric_limits

#include "vxgrid/fieldgrids/proximity.h"

namespace VXCore::detail {

namespace {

constexpr int sphere_kind = 4;
constexpr int point_kind = 2;

// The width of cells, `least` or more, of which a grid around the spheres has at most a few for
// each sphere.
double choose_spacing(std::span<const SphereStruct> spheres, double least) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  std::array<double, 3> low = {infinity, infinity, infinity};
  std::array<double, 3> high = {-infinity, -infinity, -infinity};
  for (const SphereStruct& sphere : spheres) {
    const std::array<double, 3> centre = {sphere.x, sphere.y, sphere.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], centre[axis]);
      high[axis] = std::max(high[axis], centre[axis]);
    }
  }
  // Beyond the centres the grid goes on for some cells on both sides.
  constexpr double margin = 13.0;
  const double most_cells = 4000.0 + 8.0 * static_cast<double>(spheres.size());
  double spacing = least;
  const auto cells = [&] {
    double product = 1.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
      product *= margin + (high[axis] - low[axis]) / spacing;
    return product;
  };
  while (cells() > most_cells)
    spacing *= 1.5;
  return spacing;
}

}  // namespace

NearbySpheres::~NearbySpheres() {
  vx_deallocate_grid_struct(grid_, true, false);
}

bool NearbySpheres::make(std::span<SphereStruct> spheres, float reach, float spacing) {
  float widest = 0;
  for (const SphereStruct& sphere : spheres) {
    if (!std::isfinite(sphere.x) || !std::isfinite(sphere.y) || !std::isfinite(sphere.z))
      return false;
    widest = std::max(widest, sphere.r);
  }
  const float least = std::max(spacing, widest + reach);
  if (spheres.empty() || !(least > 0.0f) || !std::isfinite(least)) return false;
  const auto width = static_cast<float>(choose_spacing(spheres, double{least}));
  // A cell's corner is 0.87 of its width from its node, for which the run is.
  const float probe = reach + 0.9f * width;
  return vx_make_proximity_grid(0, spheres.data(), nullptr, static_cast<int>(spheres.size()), probe,
                                &grid_, width, 0.0f, sphere_kind, list_) == 1;
}

std::span<const int> NearbySpheres::near(std::array<float, 3> point) {
  int first = 0;
  vx_get_proximity_list(point.data(), 1, &grid_, point_kind, &first);
  if (first < 1 || static_cast<std::size_t>(first) >= list_.size()) return {};
  const auto begin = list_.begin() + first;
  return {begin, std::find(begin + 1, list_.end(), 0)};
}

}  // namespace VXCore::detail
