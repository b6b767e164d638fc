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

void SumKernel::general(std::size_t, const Ball& ball) {
  scheme_.fill_gaussian(ball);
  const AxisViews t = scheme_.gaussian();
  float* const values = values_;
  const std::size_t plane = scheme_.lattice().plane_stride();
  scheme_.walk(ball, [v = ball.value, t, values, plane](const BallRow& row) VXGRID_ROW {
    fetch_ahead(values + row.element, row.count, plane);
    const float s = row_factor(v, t, row);
    const float* const tx = t[0].from(row.first);
    update_row<1>({values + row.element}, row.count,
                  [s, tx](std::size_t i, PlaneValues<1> g)
                      VXGRID_ROW { return PlaneValues<1>{g[0] + s * tx[i]}; });
  });
}

void ProductKernel::general(std::size_t, const Ball& ball) {
  scheme_.fill_gaussian(ball);
  const AxisViews t = scheme_.gaussian();
  float* const values = values_;
  const std::size_t plane = scheme_.lattice().plane_stride();
  scheme_.walk(ball, [v = ball.value, t, values, plane](const BallRow& row) VXGRID_ROW {
    fetch_ahead(values + row.element, row.count, plane);
    const float s = row_factor(v, t, row);
    const float* const tx = t[0].from(row.first);
    update_row<1>({values + row.element}, row.count,
                  [s, tx](std::size_t i, PlaneValues<1> g)
                      VXGRID_ROW { return PlaneValues<1>{g[0] * (1.0f - s * tx[i])}; });
  });
}

// The gradient of a single point is taken as 2*p*e0*A*u, without the 1/h of the tables.
void SumGradientKernel::single(std::size_t i, const Ball& ball) {
  const std::size_t element = scheme_.node_element(ball);
  const auto [value, dx, dy, dz] = planes_.at(element);
  *value += ball.value;
  const float slope = 2.0f * items_[i].prefactor * ball.factor * ball.decay;
  *dx += slope * ball.u[0];
  *dy += slope * ball.u[1];
  *dz += slope * ball.u[2];
}

void SumGradientKernel::general(std::size_t, const Ball& ball) {
  scheme_.fill_gaussian(ball);
  scheme_.fill_slopes(ball);
  const AxisViews t = scheme_.gaussian();
  const AxisViews d = scheme_.slopes();
  if (!tables_cover(d, ball)) return;
  scheme_.walk(ball, [v = ball.value, t, d, planes = planes_](const BallRow& row) VXGRID_ROW {
    const float s = row_factor(v, t, row);
    const float* const tx = t[0].from(row.first);
    const float* const dx = d[0].from(row.first);
    const float dy = d[1][row.b];
    const float dz = d[2][row.c];
    update_row(planes.at(row.element), row.count, [=](std::size_t i, PlaneValues<4> g) VXGRID_ROW {
      const float value = s * tx[i];
      return PlaneValues<4>{g[0] + value, g[1] + value * dx[i], g[2] + value * dy,
                            g[3] + value * dz};
    });
  });
}

// With c = 1 - v and m = v*g the gradients become c*gradient + m*D, and g becomes c*g.
void ProductGradientKernel::general(std::size_t, const Ball& ball) {
  scheme_.fill_gaussian(ball);
  scheme_.fill_slopes(ball);
  const AxisViews t = scheme_.gaussian();
  const AxisViews d = scheme_.slopes();
  scheme_.walk(ball, [v = ball.value, t, d, planes = planes_](const BallRow& row) VXGRID_ROW {
    const float s = row_factor(v, t, row);
    const float* const tx = t[0].from(row.first);
    const float* const dx = d[0].from(row.first);
    const float dy = d[1][row.b];
    const float dz = d[2][row.c];
    update_row(planes.at(row.element), row.count, [=](std::size_t i, PlaneValues<4> g) VXGRID_ROW {
      const float value = s * tx[i];
      const float c = 1.0f - value;
      const float m = value * g[0];
      return PlaneValues<4>{c * g[0], c * g[1] + m * dx[i], c * g[2] + m * dy, c * g[3] + m * dz};
    });
  });
}

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
      run_kernel(scheme, items, SumKernel(scheme, floats));
      return true;
    case GaussGridType::Product:
      std::fill_n(floats, points, 1.0f);
      run_kernel(scheme, items, ProductKernel(scheme, floats));
      complement(floats, points);
      return true;
    case GaussGridType::SumAndDerivatives:
      run_kernel(scheme, items, SumGradientKernel(scheme, items, floats));
      return true;
    case GaussGridType::ProductAndDerivatives:
      std::fill_n(floats, points, 1.0f);
      run_kernel(scheme, items, ProductGradientKernel(scheme, floats));
      complement(floats, points);
      return true;
    default:
      return false;
  }
}

}  // namespace VXCore::detail
