// Sums and products of Gaussians on a grid, with and without gradients.
#include "gaussian/field_kernels.h"

#include <algorithm>  // for fill_n

#include "vxgrid/gaussian/gauss_grid.h"

namespace VXCore::detail {

namespace {

void complement(float* values, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    values[i] = 1.0f - values[i];
}

}  // namespace

bool tables_cover(const AxisViews& tables, const Ball& ball) {
  const auto covers = [&](std::size_t axis) {
    return tables[axis].range.covers(ball.range[axis].first) &&
           tables[axis].range.covers(ball.range[axis].last);
  };
  if (!covers(1) || !covers(2)) {
    VXThrow.Warning("yind out of range in vxbrio_grid_mol");
    return false;
  }
  if (!covers(0)) {
    VXThrow.Warning("xyind out of range in vxbrio_grid_mol");
    return false;
  }
  return true;
}

bool run_field_type(int type, BallScheme& scheme, std::span<const GaussItem> items, float* floats) {
  const std::size_t points = scheme.lattice().size();
  switch (type) {
    case GaussGridType::Sum:
      run_kernel(scheme, items, ValueKernel<SumRule>(scheme, floats));
      return true;
    case GaussGridType::Product:
      std::fill_n(floats, points, 1.0f);
      run_kernel(scheme, items, ValueKernel<ProductRule>(scheme, floats));
      complement(floats, points);
      return true;
    case GaussGridType::SumAndDerivatives:
      run_kernel(scheme, items, SumGradientKernel(scheme, items, floats));
      return true;
    case GaussGridType::ProductAndDerivatives:
      std::fill_n(floats, points, 1.0f);
      run_kernel(scheme, items, GradientKernel<ProductRule>(scheme, floats));
      complement(floats, points);
      return true;
    default:
      return false;
  }
}

}  // namespace VXCore::detail
