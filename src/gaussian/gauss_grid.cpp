// The full kernel: atoms or Gsphere records onto a grid, or a grid folded back into them.
#include "vxgrid/gaussian/gauss_grid.h"

#include <algorithm>  // for clamp, copy_n
#include <array>      // for array
#include <cmath>      // for isfinite
#include <cstddef>    // for ptrdiff_t, size_t
#include <span>       // for span
#include <vector>     // for vector

#include "gaussian/ball_kernel.h"
#include "gaussian/field_kernels.h"
#include "gaussian/grid_lattice.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::Ball;
using detail::BallRow;
using detail::BallScheme;
using detail::GaussItem;
using detail::KernelDefaults;
using detail::OffsetTable;
using detail::RecordLattice;

// The gradient of sum over points of weight*v, by the centre of each item.
class WeightedGradientKernel : public KernelDefaults {
 public:
  WeightedGradientKernel(BallScheme& scheme, const float* weights, double* gradient)
      : scheme_(scheme), weights_(weights), gradient_(gradient) {}

  void single(std::size_t i, const Ball& ball) {
    const float s = ball.value * ball.decay * weights_[scheme_.node_element(ball)];
    for (std::size_t axis = 0; axis < 3; ++axis)
      gradient_[3 * i + axis] += double{s} * double{ball.u[axis]};
  }

  void general(std::size_t i, const Ball& ball) {
    scheme_.fill_gaussian(ball);
    scheme_.fill_slopes(ball);
    const auto t = scheme_.gaussian();
    const auto d = scheme_.slopes();
    if (!detail::tables_cover(d, ball)) return;
    const float* const weights = weights_;
    double* const out = gradient_ + 3 * i;
    double sum[3] = {out[0], out[1], out[2]};
    scheme_.walk(ball, [v = ball.value, t, d, weights, &sum](const BallRow& row) VXGRID_ROW {
      const float* const dx = d[0].from(row.first);
      const double dy = d[1][row.b];
      const double dz = d[2][row.c];
      detail::visit_row(v, t, row, [&](std::size_t k, float value) VXGRID_ROW {
        const double s = value * weights[row.element + k] * 0.5f;
        sum[0] += s * double{dx[k]};
        sum[1] += s * dy;
        sum[2] += s * dz;
      });
    });
    std::copy_n(sum, 3, out);
  }

 private:
  BallScheme& scheme_;
  const float* weights_;
  double* gradient_;
};

// A value per item, spread with unit total weight: over the points of the ball by the Gaussian, and
// from each of them over a cell by trilinear weights, which puts the whole deposit where the item
// is.
class SmearKernel : public KernelDefaults {
 public:
  SmearKernel(BallScheme& scheme, std::span<const GaussItem> items, const float* amounts,
              float* values)
      : scheme_(scheme), items_(items), amounts_(amounts), values_(values) {}

  void single(std::size_t i, const Ball& ball) {
    Ball base = ball;
    recentre(base);
    add_to_cell(base.node[0], base.node[1], base.node[2], amounts_[i]);
  }

  // The base is the low corner of the cell that the item lies in.
  void recentre(Ball& ball) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      fraction_[axis] = ball.u[axis];
      if (fraction_[axis] < 0.0f) {
        fraction_[axis] += 1.0f;
        --ball.node[axis];
      }
      ball.u[axis] = 0.0f;
    }
  }

  void general(std::size_t i, const Ball& placed) {
    Ball ball = placed;
    ball.factor = 1.0f;
    ball.value = items_[i].prefactor;
    scheme_.fill_gaussian(ball);
    const auto t = scheme_.gaussian();

    double total = 0.0;
    scheme_.walk(ball, [v = ball.value, t, &total](const BallRow& row) VXGRID_ROW {
      detail::visit_row(v, t, row,
                        [&](std::size_t, float value) VXGRID_ROW { total += double{value}; });
    });
    if (total == 0.0) return;

    const double share = double{amounts_[i]} / total;
    scheme_.walk(ball, [this, &ball, t, share](const BallRow& row) VXGRID_ROW {
      detail::visit_row(ball.value, t, row, [&](std::size_t k, float value) VXGRID_ROW {
        const std::ptrdiff_t x = ball.node[0] + row.first + static_cast<std::ptrdiff_t>(k);
        add_to_cell(x, ball.node[1] + row.b, ball.node[2] + row.c,
                    static_cast<float>(share * double{value}));
      });
    });
  }

 private:
  // The share of a corner beyond the grid goes to the nearest point within, so that nothing is
  // lost.
  void add_to_cell(std::ptrdiff_t x, std::ptrdiff_t y, std::ptrdiff_t z, float amount) {
    const RecordLattice& lattice = scheme_.lattice();
    const auto inside = [&lattice](std::size_t axis, std::ptrdiff_t index) {
      return static_cast<std::size_t>(
          std::clamp<std::ptrdiff_t>(index, 0, std::ptrdiff_t{lattice.dim[axis]} - 1));
    };
    const std::array<std::size_t, 2> at_x = {inside(0, x), inside(0, x + 1)};
    const std::array<std::size_t, 2> at_y = {inside(1, y), inside(1, y + 1)};
    const std::array<std::size_t, 2> at_z = {inside(2, z), inside(2, z + 1)};
    const auto weight = [this](std::size_t axis, std::size_t side) {
      return side == 1 ? fraction_[axis] : 1.0f - fraction_[axis];
    };
    for (std::size_t k = 0; k < 2; ++k) {
      for (std::size_t j = 0; j < 2; ++j) {
        float* const row =
            values_ + lattice.plane_stride() * at_z[k] + lattice.row_stride() * at_y[j];
        for (std::size_t i = 0; i < 2; ++i)
          row[at_x[i]] += amount * (weight(0, i) * weight(1, j) * weight(2, k));
      }
    }
  }

  BallScheme& scheme_;
  std::span<const GaussItem> items_;
  const float* amounts_;
  float* values_;
  std::array<float, 3> fraction_{};
};

// Per item the sum of g*v*D over its points.
class GatherGradientKernel : public KernelDefaults {
 public:
  GatherGradientKernel(BallScheme& scheme, const float* grid, float* out)
      : scheme_(scheme), grid_(grid), out_(out) {}

  void general(std::size_t i, const Ball& ball) {
    scheme_.fill_gaussian(ball);
    scheme_.fill_slopes(ball);
    const auto t = scheme_.gaussian();
    const auto d = scheme_.slopes();
    const float* const grid = grid_;
    float sum[3] = {0.0f, 0.0f, 0.0f};
    scheme_.walk(ball, [v = ball.value, t, d, grid, &sum](const BallRow& row) VXGRID_ROW {
      const float* const dx = d[0].from(row.first);
      const float dy = d[1][row.b];
      const float dz = d[2][row.c];
      detail::visit_row(v, t, row, [&](std::size_t k, float value) VXGRID_ROW {
        const float g = grid[row.element + k];
        if (g == 0.0f) return;
        const float p = g * value;
        sum[0] += p * dx[k];
        sum[1] += p * dy;
        sum[2] += p * dz;
      });
    });
    for (std::size_t axis = 0; axis < 3; ++axis)
      out_[3 * i + axis] += sum[axis];
  }

 private:
  BallScheme& scheme_;
  const float* grid_;
  float* out_;
};

// Per item the sum of 2*width*d^2*g*v over its points.
class GatherRadialKernel : public KernelDefaults {
 public:
  GatherRadialKernel(BallScheme& scheme, const float* grid, float* out)
      : scheme_(scheme), grid_(grid), out_(out) {}

  void start(std::size_t i) { out_[i] = 0.0f; }

  void general(std::size_t i, const Ball& ball) {
    scheme_.fill_gaussian(ball);
    fill_exponents(ball);
    const auto t = scheme_.gaussian();
    const auto e = detail::views(exponents_);
    const float* const grid = grid_;
    float sum = 0.0f;
    scheme_.walk(ball, [v = ball.value, t, e, grid, &sum](const BallRow& row) VXGRID_ROW {
      const float* const ex = e[0].from(row.first);
      const float ey = e[1][row.b];
      const float ez = e[2][row.c];
      detail::visit_row(v, t, row, [&](std::size_t k, float value) VXGRID_ROW {
        const float g = grid[row.element + k];
        if (g != 0.0f) sum += (ex[k] + ey + ez) * g * value;
      });
    });
    out_[i] = sum;
  }

 private:
  // E[k] = 2*A*(u - k)^2
  void fill_exponents(const Ball& ball) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      OffsetTable& table = exponents_[axis];
      table.reset(ball.range[axis]);
      for (std::ptrdiff_t k = ball.range[axis].first; k <= ball.range[axis].last; ++k) {
        const float e = ball.u[axis] - static_cast<float>(k);
        table[k] = 2.0f * ball.decay * (e * e);
      }
    }
  }

  BallScheme& scheme_;
  const float* grid_;
  float* out_;
  detail::AxisTables exponents_;
};

// The items of a call in one form. Records keep a reach that they did not have.
std::vector<GaussItem> items_of(std::span<Gsphere> spheres, float cutoff) {
  std::vector<GaussItem> items;
  items.reserve(spheres.size());
  for (Gsphere& sphere : spheres) {
    if (sphere.radius == 0.0f) sphere.radius = vi_gauss_rad(sphere.prefactor, sphere.width, cutoff);
    items.push_back(
        {{sphere.x, sphere.y, sphere.z}, sphere.width, sphere.prefactor, sphere.radius});
  }
  return items;
}

std::vector<GaussItem> items_of(std::span<const PdbStruct> atoms, const float* widths,
                                const float* prefactors, float cutoff) {
  std::vector<GaussItem> items;
  items.reserve(atoms.size());
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    items.push_back({{atoms[i].x, atoms[i].y, atoms[i].z},
                     widths[i],
                     prefactors[i],
                     vi_gauss_rad(prefactors[i], widths[i], cutoff)});
  }
  return items;
}

}  // namespace

void vi_gauss_grid(int /*unused*/, int count, void* items, float* widths, float* prefactors,
                   float cutoff, int type, GridStruct grid, float* values, const float* weights,
                   double* gradient) {
  if ((weights || gradient) && type != GaussGridType::SumAndDerivatives) {
    VXThrow.Warning(
        "When weights, grad are passed to vi_gauss_grid, please use grid type SumAndDerivatives. "
        "Stopping and exiting now.");
    return;
  }
  const bool are_spheres = !widths && !prefactors;
  if (!are_spheres && (!widths || !prefactors)) return;
  const std::size_t n = items && count > 0 ? static_cast<std::size_t>(count) : 0;
  std::vector<GaussItem> list =
      are_spheres ? items_of({static_cast<Gsphere*>(items), n}, cutoff)
                  : items_of({static_cast<const PdbStruct*>(items), n}, widths, prefactors, cutoff);

  const RecordLattice lattice(grid);
  if (!detail::is_usable(lattice)) return;
  BallScheme scheme(lattice, detail::largest_reach(list), vi_exp_f);

  if (weights && gradient) {
    detail::run_kernel(scheme, list, WeightedGradientKernel(scheme, weights, gradient));
    return;
  }
  if (!grid.floats) return;
  if (detail::run_field_type(type, scheme, list, grid.floats) || !values) return;
  switch (type) {
    case GaussGridType::NormalisedSmear: {
      const auto width_of = [&](std::size_t i) -> float& {
        return are_spheres ? static_cast<Gsphere*>(items)[i].width : widths[i];
      };
      for (GaussItem& item : list)
        item.width *= cutoff;
      detail::run_kernel(scheme, list, SmearKernel(scheme, list, values, grid.floats));
      // The widths come back with the rounding of the way there and back.
      const float inverse = 1.0f / cutoff;
      for (std::size_t i = 0; std::isfinite(inverse) && i < n; ++i)
        width_of(i) = list[i].width * inverse;
      break;
    }
    case GaussGridType::AtomGradient:
      detail::run_kernel(scheme, list, GatherGradientKernel(scheme, grid.floats, values));
      break;
    case GaussGridType::AtomRadialSum:
      detail::run_kernel(scheme, list, GatherRadialKernel(scheme, grid.floats, values));
      break;
    default:
      break;
  }
}

}  // namespace VXCore
