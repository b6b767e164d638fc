/// \file
/// The loop over the items of a kernel, and the kernels that write sums and products to a grid.
///
/// A kernel is a class with `single(i, ball)` for an item that touches one point alone and
/// `general(i, ball)` for any other, whose range is known by then.
#ifndef VXGRID_SRC_GAUSSIAN_FIELD_KERNELS_H
#define VXGRID_SRC_GAUSSIAN_FIELD_KERNELS_H

#include <algorithm>  // for max
#include <array>      // for array
#include <cmath>      // for exp
#include <cstddef>    // for size_t
#include <span>       // for span

#include "gaussian/ball_kernel.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore::detail {

inline float largest_reach(std::span<const GaussItem> items) {
  float largest = 0.0f;
  for (const GaussItem& item : items)
    largest = std::max(largest, item.reach);
  return largest;
}

/// kappa of the prefactor 2.7 to seven digits, and kept at that.
inline constexpr float kappa_of_default = 2.344229f;

/// The exponential of the runtime in double, rounded to float.
inline float runtime_exponential(float value) {
  return static_cast<float>(std::exp(double{value}));
}

/// What kernels do unless they say otherwise.
struct KernelDefaults {
  /// Before item i, also when it misses the grid.
  void start(std::size_t) {}
  /// May move the node of a ball before its range is found.
  void recentre(Ball&) {}
  void single(std::size_t, const Ball&) {}
};

/// Runs a kernel on one item whose box meets the grid.
template <class Kernel>
void run_item(const BallScheme& scheme, std::size_t i, const GaussItem& item, Kernel& kernel) {
  Ball ball;
  if (!scheme.place(item, ball)) return;
  if (scheme.is_single_point(ball)) {
    kernel.single(i, ball);
    return;
  }
  kernel.recentre(ball);
  if (scheme.clip(ball)) kernel.general(i, ball);
}

/// Runs a kernel over the items in their order.
template <class Kernel>
void run_kernel(const BallScheme& scheme, std::span<const GaussItem> items, Kernel&& kernel) {
  for (std::size_t i = 0; i < items.size(); ++i) {
    kernel.start(i);
    if (scheme.meets_grid(items[i])) run_item(scheme, i, items[i], kernel);
  }
}

/// True when the tables hold every offset that the walk over a ball will ask for, which is so by
/// construction; warns otherwise.
bool tables_cover(const AxisViews& tables, const Ball& ball);

/// Sums of items: what becomes of g at a point where an item has the value v.
struct SumRule {
  VXGRID_ROW static float value(float g, float v) { return g + v; }
  /// With three gradients behind g, and the slopes of v.
  VXGRID_ROW static PlaneValues<4> with_gradient(const PlaneValues<4>& g, float v, float dx,
                                                 float dy, float dz) {
    return {g[0] + v, g[1] + v * dx, g[2] + v * dy, g[3] + v * dz};
  }
};

/// Products of 1 - v. The caller sets g to 1 before and takes 1 - g after, and hands the gradients
/// in as zeros; they are carried along with the product.
struct ProductRule {
  VXGRID_ROW static float value(float g, float v) { return g * (1.0f - v); }
  VXGRID_ROW static PlaneValues<4> with_gradient(const PlaneValues<4>& g, float v, float dx,
                                                 float dy, float dz) {
    const float c = 1.0f - v;
    const float m = v * g[0];
    return {c * g[0], c * g[1] + m * dx, c * g[2] + m * dy, c * g[3] + m * dz};
  }
};

/// Values by a rule.
template <class Rule>
class ValueKernel : public KernelDefaults {
 public:
  ValueKernel(BallScheme& scheme, float* values) : scheme_(scheme), values_(values) {}

  void single(std::size_t, const Ball& ball) {
    float& g = values_[scheme_.node_element(ball)];
    g = Rule::value(g, ball.value);
  }

  void general(std::size_t, const Ball& ball) {
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
                        VXGRID_ROW { return PlaneValues<1>{Rule::value(g[0], s * tx[i])}; });
    });
  }

 private:
  BallScheme& scheme_;
  float* values_;
};

/// Values and three gradients by a rule, plane after plane in one buffer. An item that touches one
/// point alone does nothing.
template <class Rule>
class GradientKernel : public KernelDefaults {
 public:
  GradientKernel(BallScheme& scheme, float* floats) : scheme_(scheme), floats_(floats) {}

  void general(std::size_t, const Ball& ball) {
    scheme_.fill_gaussian(ball);
    scheme_.fill_slopes(ball);
    const AxisViews t = scheme_.gaussian();
    const AxisViews d = scheme_.slopes();
    if (!tables_cover(d, ball)) return;
    const std::size_t plane = scheme_.lattice().plane_stride();
    const std::array<float*, 4> planes = plane_starts();
    scheme_.walk(ball, [v = ball.value, t, d, plane, planes](const BallRow& row) VXGRID_ROW {
      const float s = row_factor(v, t, row);
      const float* const tx = t[0].from(row.first);
      const float* const dx = d[0].from(row.first);
      const float dy = d[1][row.b];
      const float dz = d[2][row.c];
      std::array<float*, 4> rows = planes;
      for (float*& values : rows) {
        values += row.element;
        fetch_ahead(values, row.count, plane);
      }
      update_row(rows, row.count, [=](std::size_t i, PlaneValues<4> g) VXGRID_ROW {
        return Rule::with_gradient(g, s * tx[i], dx[i], dy, dz);
      });
    });
  }

 protected:
  std::array<float*, 4> plane_starts() const {
    const std::size_t n = scheme_.lattice().size();
    return {floats_, floats_ + n, floats_ + 2 * n, floats_ + 3 * n};
  }

  BallScheme& scheme_;

 private:
  float* floats_;
};

/// The gradient of a single point is taken as 2*p*e0*A*u, without the 1/h of the tables.
class SumGradientKernel : public GradientKernel<SumRule> {
 public:
  SumGradientKernel(BallScheme& scheme, std::span<const GaussItem> items, float* floats)
      : GradientKernel(scheme, floats), items_(items) {}

  void single(std::size_t i, const Ball& ball) {
    const std::size_t element = scheme_.node_element(ball);
    const auto [value, dx, dy, dz] = plane_starts();
    value[element] += ball.value;
    const float slope = 2.0f * items_[i].prefactor * ball.factor * ball.decay;
    dx[element] += slope * ball.u[0];
    dy[element] += slope * ball.u[1];
    dz[element] += slope * ball.u[2];
  }

 private:
  std::span<const GaussItem> items_;
};

/// Types 2, 4, 6 and 8 whole; false, with nothing done, for any other.
bool run_field_type(int type, BallScheme& scheme, std::span<const GaussItem> items, float* floats);

}  // namespace VXCore::detail

#endif
