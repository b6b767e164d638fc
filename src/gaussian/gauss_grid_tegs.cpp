// The kernel for plain arrays, with the types that are quadratic in the distance.
#include <cstddef>  // for ptrdiff_t, size_t
#include <span>     // for span
#include <vector>   // for vector

#include "gaussian/ball_kernel.h"
#include "gaussian/field_kernels.h"
#include "gaussian/grid_lattice.h"
#include "vxgrid/gaussian/gauss_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::Ball;
using detail::BallRow;
using detail::BallScheme;
using detail::GaussItem;
using detail::OffsetTable;

// g += (P + Rz + Ry + Rx)*v, the bracket being a polynomial in d^2.
class RadialKernel : public detail::KernelDefaults {
 public:
  // Null offsets make it the type whose increments have the coefficient 1.
  RadialKernel(BallScheme& scheme, const float* coefficients, const float* offsets, float* values)
      : scheme_(scheme), coefficients_(coefficients), offsets_(offsets), values_(values) {}

  void single(std::size_t i, const Ball& ball) {
    values_[scheme_.node_element(ball)] +=
        offsets_ ? ball.value : ball.value * centre_polynomial(i, ball);
  }

  void general(std::size_t i, const Ball& ball) {
    scheme_.fill_gaussian(ball);
    fill_increments(ball, offsets_ ? coefficients_[i] : 1.0f);
    const auto t = scheme_.gaussian();
    const auto r = detail::views(increments_);
    const float p = centre_polynomial(i, ball);
    float* const values = values_;
    scheme_.walk(ball, [v = ball.value, t, r, p, values](const BallRow& row) VXGRID_ROW {
      const float tz = t[2][row.c];
      const float ty = t[1][row.b];
      const float* const tx = t[0].from(row.first);
      const float common = p + r[2][row.c] + r[1][row.b];
      const float* const rx = r[0].from(row.first);
      detail::update_row<1>(
          {values + row.element}, row.count,
          [=](std::size_t k, detail::PlaneValues<1> g) VXGRID_ROW {
            const float polynomial = common + rx[k];
            return detail::PlaneValues<1>{g[0] + polynomial * v * tz * ty * tx[k]};
          });
    });
  }

 private:
  float centre_polynomial(std::size_t i, const Ball& ball) const {
    const float h = scheme_.lattice().spacing;
    const auto& u = ball.u;
    const float p = h * h * (u[0] * u[0] + u[1] * u[1] + u[2] * u[2]) * coefficients_[i];
    return offsets_ ? p + offsets_[i] : p;
  }

  // R[k] = f*h^2*((u - k)^2 - u^2) per axis, by differences.
  void fill_increments(const Ball& ball, float f) {
    const float h = scheme_.lattice().spacing;
    const float first = f * h * h;
    const float step = 2.0f * f * h * h;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const float shift = step * ball.u[axis];
      increments_[axis].fill(
          ball.range[axis], 0.0f,
          [s = first, value = 0.0f, step, shift](std::ptrdiff_t) mutable {
            value = s + value - shift;
            s += step;
            return value;
          },
          [s = first, value = 0.0f, step, shift](std::ptrdiff_t) mutable {
            value = s + value + shift;
            s += step;
            return value;
          });
    }
  }

  BallScheme& scheme_;
  const float* coefficients_;
  const float* offsets_;
  float* values_;
  detail::AxisTables increments_;
};

const char* announcement(int type) {
  switch (type) {
    case GaussGridType::RadialGaussians:
      return "Calculating Sum of Radial Gaussians\n";
    case GaussGridType::Sum:
      return "Calculating Sum of Gaussians\n";
    case GaussGridType::Product:
      return "Calculating Product of Gaussians\n";
    case GaussGridType::SumAndDerivatives:
      return "Calculating Sum and Derivatives of Gaussians\n";
    case GaussGridType::ProductAndDerivatives:
      return "Calculating Product and Derivatives of Gaussians\n";
    default:
      return nullptr;
  }
}

}  // namespace

void vi_gauss_grid_tegs(int count, float* coords, float* widths, float* prefactors, float cutoff,
                        int type, GridStruct* grid, float* coefficients, float* offsets) {
  if (const char* const text = announcement(type)) VXThrow.Info(std::string(text));
  if (!grid || !grid->floats) return;
  const detail::RecordLattice lattice(*grid);
  if (!detail::is_usable(lattice)) return;

  const bool has_items = coords && widths && prefactors && count > 0;
  const std::size_t n = has_items ? static_cast<std::size_t>(count) : 0;
  std::vector<GaussItem> items;
  items.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    items.push_back({{coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]},
                     widths[i],
                     prefactors[i],
                     vi_gauss_rad(prefactors[i], widths[i], cutoff)});
  }
  BallScheme scheme(lattice, detail::largest_reach(items), vi_exp_f);

  if (detail::run_field_type(type, scheme, items, grid->floats) || !coefficients) return;
  if (type == GaussGridType::RadialGaussians) {
    detail::run_kernel(scheme, items, RadialKernel(scheme, coefficients, nullptr, grid->floats));
  } else if (type == GaussGridType::RadialGaussiansWithOffset && offsets) {
    detail::run_kernel(scheme, items, RadialKernel(scheme, coefficients, offsets, grid->floats));
  }
}

}  // namespace VXCore
