// Sums of ellipsoidal Gaussians, with a recurrence that knows the cross terms.
#include <algorithm>  // for copy_n, max
#include <array>      // for array
#include <cmath>      // for exp, fabs
#include <cstddef>    // for ptrdiff_t, size_t

#include "gaussian/field_kernels.h"
#include "gaussian/grid_lattice.h"
#include "vxgrid/gaussian/explicit_grid.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"

namespace VXCore {

namespace {

using detail::Ball;
using detail::BallRow;
using detail::BallScheme;
using detail::GaussItem;
using detail::OffsetTable;

// |M e|^2 = xx*ex^2 + yy*ey^2 + zz*ez^2 + xy*ex*ey + xz*ex*ez + yz*ey*ez
struct Metric {
  explicit Metric(const float* m)
      : xx(columns(m, 0, 0)),
        yy(columns(m, 1, 1)),
        zz(columns(m, 2, 2)),
        xy(2.0f * columns(m, 0, 1)),
        xz(2.0f * columns(m, 0, 2)),
        yz(2.0f * columns(m, 1, 2)) {}

  float operator()(float ex, float ey, float ez) const {
    return xx * ex * ex + yy * ey * ey + zz * ez * ez + xy * ex * ey + xz * ex * ez + yz * ey * ez;
  }

  float xx, yy, zz, xy, xz, yz;

 private:
  static float columns(const float* m, std::size_t i, std::size_t j) {
    return m[i] * m[j] + m[3 + i] * m[3 + j] + m[6 + i] * m[6 + j];
  }
};

// g += v, with v = p*exp(-w*|M(u - offset)|^2). Its exponent is split as
//
//     -w*|M u|^2 + w*(gx*a + gy*b + gz*c) - w*(xx*a^2 + yy*b^2 + zz*c^2)
//                - w*(xy*a*b + xz*a*c + yz*b*c)
//
// with gx = 2*xx*ux + xy*uy + xz*uz and so on: a centre value, three tables as for round Gaussians,
// and three cross factors raised to products of offsets.
class EllipsoidKernel : public detail::KernelDefaults {
 public:
  EllipsoidKernel(BallScheme& scheme, const Metric& metric, float* values)
      : scheme_(scheme), metric_(metric), values_(values) {}

  void start_item(const GaussItem& item) { prefactor_ = item.prefactor; }

  void single(std::size_t, const Ball& ball) {
    values_[scheme_.node_element(ball)] += centre_value(ball);
  }

  void general(std::size_t, const Ball& ball) {
    if (largest_exponent(ball) < safe_exponent)
      add_by_recurrence(ball);
    else
      add_point_by_point(ball);
  }

 private:
  // Products of factors that stay within exp(+-80) each neither overflow nor underflow.
  static constexpr float safe_exponent = 40.0f;

  float centre_value(const Ball& ball) const {
    const auto& u = ball.u;
    return prefactor_ * detail::runtime_exponential(-ball.decay * metric_(u[0], u[1], u[2]));
  }

  // A bound for the exponent of any factor or product of factors of one kind.
  float largest_exponent(const Ball& ball) const {
    const auto r = static_cast<float>(ball.reach);
    const Metric& m = metric_;
    const float squares = m.xx + m.yy + m.zz;
    const float cross = std::fabs(m.xy) + std::fabs(m.xz) + std::fabs(m.yz);
    return ball.decay * (squares + cross) * (r * r + r);
  }

  void add_by_recurrence(const Ball& ball);
  void add_point_by_point(const Ball& ball);

  BallScheme& scheme_;
  const Metric& metric_;
  float* values_;
  float prefactor_ = 0.0f;
  detail::AxisTables diagonal_;
  OffsetTable x_by_y_;
  OffsetTable x_by_z_;
  OffsetTable y_by_z_;
};

// X^k for the offsets k of a range.
void fill_powers(OffsetTable& table, detail::OffsetRange range, float base) {
  const auto steps = [](float factor) {
    return [factor, value = 1.0f](std::ptrdiff_t) mutable { return value *= factor; };
  };
  table.fill(range, 1.0f, steps(base), steps(1.0f / base));
}

void EllipsoidKernel::add_by_recurrence(const Ball& ball) {
  const float w = ball.decay;
  const Metric& m = metric_;
  const auto& [ux, uy, uz] = ball.u;
  const auto exponential = detail::runtime_exponential;
  const std::array<float, 3> diagonal = {m.xx, m.yy, m.zz};
  const std::array<float, 3> linear = {2.0f * m.xx * ux + m.xy * uy + m.xz * uz,
                                       2.0f * m.yy * uy + m.xy * ux + m.yz * uz,
                                       2.0f * m.zz * uz + m.xz * ux + m.yz * uy};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float q = exponential(-w * diagonal[axis]);
    const float g = exponential(w * linear[axis]);
    diagonal_[axis].fill(ball.range[axis], 1.0f, detail::GaussianSteps(q, g),
                         detail::GaussianSteps(q, 1.0f / g));
  }
  fill_powers(x_by_y_, ball.range[1], exponential(-w * m.xy));
  fill_powers(x_by_z_, ball.range[2], exponential(-w * m.xz));
  fill_powers(y_by_z_, ball.range[2], exponential(-w * m.yz));

  const float centre = centre_value(ball);
  scheme_.walk(ball, [this, centre, tx_view = diagonal_[0].view()](const BallRow& row) {
    // (X^b Y^c)^a along the row and (Z^c)^b across it, by repeated multiplication.
    const auto power = [](float base, std::ptrdiff_t n) {
      const float factor = n < 0 ? 1.0f / base : base;
      float value = 1.0f;
      for (std::ptrdiff_t k = n < 0 ? -n : n; k > 0; --k)
        value *= factor;
      return value;
    };
    const float ratio = x_by_y_[row.b] * x_by_z_[row.c];
    float cross = power(y_by_z_[row.c], row.b) * power(ratio, row.first);
    const float s = centre * diagonal_[2][row.c] * diagonal_[1][row.b];
    const float* const tx = tx_view.from(row.first);
    float* const out = values_ + row.element;
    for (std::size_t k = 0; k < row.count; ++k) {
      out[k] += s * tx[k] * cross;
      cross *= ratio;
    }
  });
}

// For metrics so strong that the factors alone leave the range of a float.
void EllipsoidKernel::add_point_by_point(const Ball& ball) {
  scheme_.walk(ball, [this, &ball](const BallRow& row) {
    const float ey = ball.u[1] - static_cast<float>(row.b);
    const float ez = ball.u[2] - static_cast<float>(row.c);
    float* const out = values_ + row.element;
    for (std::size_t k = 0; k < row.count; ++k) {
      const auto a = static_cast<float>(row.first + static_cast<std::ptrdiff_t>(k));
      const float exponent = -ball.decay * metric_(ball.u[0] - a, ey, ez);
      out[k] += prefactor_ * detail::runtime_exponential(exponent);
    }
  });
}

}  // namespace

void vx_ellipsoid_gauss_grid(const float* coords, const float* radii, const float* prefactors,
                             int count, float spacing, const float* matrix, VXBrioGrid& grid) {
  if (!matrix) return;
  const std::size_t n = coords && radii && count > 0 ? static_cast<std::size_t>(count) : 0;
  float reach = 0.0f;
  for (std::size_t i = 0; i < n; ++i)
    reach = std::max(reach, radii[i]);
  if (grid.GetSize() < 2 && !detail::size_around_points(grid, coords, n, reach, spacing)) return;
  float* const values = vi_grid_floats(grid);
  const detail::RecordLattice lattice = detail::lattice_of(grid);
  if (!values || !detail::is_usable(lattice)) return;

  BallScheme scheme(lattice, reach, detail::runtime_exponential);
  const Metric metric(matrix);
  EllipsoidKernel kernel(scheme, metric, values);
  float prefactor = 2.7f;
  for (std::size_t i = 0; i < n; ++i) {
    if (prefactors && prefactors[i] != 0.0f) prefactor = prefactors[i];
    if (!(radii[i] > 0.0f)) continue;
    const GaussItem item{{coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]},
                         detail::kappa_of_default / (radii[i] * radii[i]),
                         prefactor,
                         radii[i]};
    if (!scheme.meets_grid(item)) continue;
    kernel.start_item(item);
    detail::run_item(scheme, i, item, kernel);
  }
}

}  // namespace VXCore
