// Putting a density map on the scale of its own standard deviation.
#include "vxgrid/density/sigma.h"

#include <cmath>   // for sqrt
#include <limits>  // for numeric_limits

#include "density/map_statistics.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {
namespace {

constexpr const char* sigma_tag = "SIGMA";
constexpr const char* normalized_tag = "vx_no_norm";
constexpr const char* file_deviation_tag = "ARMS";

void tag_sigma(VXBase& grid, float sigma) {
  grid.SetBoolData(normalized_tag, true);
  grid.SetFloatData(sigma_tag, sigma);
}

void divide(float* values, std::size_t count, float sigma) {
  if (!values || sigma == 1.0F) return;
  const float factor = 1.0F / sigma;
  for (std::size_t i = 0; i < count; ++i)
    values[i] *= factor;
}

bool is_normalized(const VXBase& grid) {
  if (!grid.HasData(sigma_tag) || !grid.GetBoolData(normalized_tag)) return false;
  VXThrow.Warning("VXSigmaNormalizeGrid: grid has been previously normalized, skipping...");
  return true;
}

float find_sigma(const VXBase& grid, const float* values, std::size_t count) {
  if (grid.HasData(file_deviation_tag)) return grid.GetFloatData(file_deviation_tag);
  return static_cast<float>(detail::measure_map(values, count).deviation());
}

void apply_sigma(VXSkewGrid& grid, float sigma) {
  divide(grid.GetValues(), grid.GetSize(), sigma);
  tag_sigma(grid, sigma);
  tag_sigma(grid.GetImpl().GetImpl(), sigma);
}

}  // namespace

namespace detail {

double MapStatistics::deviation() const {
  const auto n = static_cast<double>(count);
  return std::sqrt((sum_of_squares - sum * sum / n) / (n - 1));
}

MapStatistics measure_map(const float* values, std::size_t count) {
  MapStatistics result;
  if (!values || count == 0) return result;
  result.count = count;
  float minimum = std::numeric_limits<float>::infinity();
  float maximum = -std::numeric_limits<float>::infinity();
  for (std::size_t i = 0; i < count; ++i) {
    const float value = values[i];
    minimum = value < minimum ? value : minimum;
    maximum = value > maximum ? value : maximum;
    result.sum += value;
    result.sum_of_squares += double{value} * value;
  }
  result.minimum = minimum;
  result.maximum = maximum;
  return result;
}

float normalize_by_sigma(VXSkewGrid& grid, const MapStatistics& statistics) {
  const auto sigma = static_cast<float>(statistics.deviation());
  apply_sigma(grid, sigma);
  return sigma;
}

}  // namespace detail

float VXSigmaNormalizeGrid(VXSkewGrid& grid) {
  if (is_normalized(grid)) return grid.GetFloatData(sigma_tag);
  const VXSkewGrid& values = grid;
  const float sigma = find_sigma(grid, values.GetValues(), grid.GetSize());
  apply_sigma(grid, sigma);
  return sigma;
}

float VXSigmaNormalizeGrid(VXScalarGrid& grid) {
  if (is_normalized(grid)) return grid.GetFloatData(sigma_tag);
  const float sigma = find_sigma(grid, grid.GetValues(), grid.GetSize());
  divide(grid.GetValues(), grid.GetSize(), sigma);
  tag_sigma(grid, sigma);
  return sigma;
}

}  // namespace VXCore
