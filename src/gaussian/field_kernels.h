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

/// g += v
class SumKernel : public KernelDefaults {
 public:
  SumKernel(BallScheme& scheme, float* values) : scheme_(scheme), values_(values) {}
  void single(std::size_t, const Ball& ball) { values_[scheme_.node_element(ball)] += ball.value; }
  void general(std::size_t, const Ball& ball);

 private:
  BallScheme& scheme_;
  float* values_;
};

/// g *= 1 - v. The caller sets g to 1 before and takes 1 - g after.
class ProductKernel : public KernelDefaults {
 public:
  ProductKernel(BallScheme& scheme, float* values) : scheme_(scheme), values_(values) {}
  void single(std::size_t, const Ball& ball) {
    values_[scheme_.node_element(ball)] *= 1.0f - ball.value;
  }
  void general(std::size_t, const Ball& ball);

 private:
  BallScheme& scheme_;
  float* values_;
};

/// Values and three gradients, plane after plane in one buffer.
struct GradientPlanes {
  float* floats;
  std::size_t points;

  std::array<float*, 4> at(std::size_t element) const {
    float* const value = floats + element;
    return {value, value + points, value + 2 * points, value + 3 * points};
  }
};

/// g += v, and v*D to the gradients.
class SumGradientKernel : public KernelDefaults {
 public:
  SumGradientKernel(BallScheme& scheme, std::span<const GaussItem> items, float* floats)
      : scheme_(scheme), items_(items), planes_{floats, scheme.lattice().size()} {}
  void single(std::size_t i, const Ball& ball);
  void general(std::size_t i, const Ball& ball);

 private:
  BallScheme& scheme_;
  std::span<const GaussItem> items_;
  GradientPlanes planes_;
};

/// The product form with its gradient, which is carried along with it. The caller does as for
/// ProductKernel, and hands the gradients in as zeros.
class ProductGradientKernel : public KernelDefaults {
 public:
  ProductGradientKernel(BallScheme& scheme, float* floats)
      : scheme_(scheme), planes_{floats, scheme.lattice().size()} {}
  void general(std::size_t i, const Ball& ball);

 private:
  BallScheme& scheme_;
  GradientPlanes planes_;
};

/// Types 2, 4, 6 and 8 whole; false, with nothing done, for any other.
bool run_field_type(int type, BallScheme& scheme, std::span<const GaussItem> items, float* floats);

/// True when the tables hold every offset that the walk over a ball will ask for, which is so by
/// construction; warns otherwise.
bool tables_cover(const AxisViews& tables, const Ball& ball);

}  // namespace VXCore::detail

#endif
