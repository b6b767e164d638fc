// Items placed on a lattice, and their tables along the axes.
#include "gaussian/ball_kernel.h"

#include <cmath>  // for fabs, sqrt

#include "vxgrid/toolkit/legacy/numeric.h"

namespace VXCore::detail {

namespace {

// The table of roots goes up to this one; what lies beyond is computed.
constexpr float longest_tabled_reach = 1022.0f;

// Items whose nearest point lies further beyond the grid are left out: at such a distance a
// Gaussian that is not flat from end to end of the grid has long underflowed.
constexpr std::ptrdiff_t farthest_beyond = 65536;

// The largest float that an int takes.
constexpr float largest_reach_in_spacings = 2147483520.0f;

// Beyond this exponent exp(-decay) and its reciprocal leave the range of normal numbers, and the
// recurrence would come upon 0 times infinity.
constexpr float largest_decay = 87.0f;

}  // namespace

IntegerRoots::IntegerRoots(float reach) {
  const float limited = reach > 0.0f ? std::min(reach, longest_tabled_reach) : 0.0f;
  const std::size_t n = static_cast<std::size_t>(limited + 0.5f) + 2;
  table_.reserve(n * n + 1);
  for (std::size_t root = 0; root < n; ++root)
    table_.insert(table_.end(), 2 * root + 1, static_cast<std::uint16_t>(root));
  table_.push_back(static_cast<std::uint16_t>(n));
}

std::ptrdiff_t IntegerRoots::computed(std::int64_t square) {
  auto root = static_cast<std::int64_t>(std::sqrt(static_cast<double>(square)));
  while (root * root > square)
    --root;
  while ((root + 1) * (root + 1) <= square)
    ++root;
  return root;
}

bool has_wide_vectors() {
#if defined(__x86_64__)
  return __builtin_cpu_supports("avx2") != 0;
#else
  return false;
#endif
}

BallScheme::BallScheme(const RecordLattice& lattice, float largest_reach, Exponential exponential)
    : lattice_(lattice),
      inverse_spacing_(1.0f / lattice.spacing),
      exponential_(exponential),
      roots_(inverse_spacing_ * largest_reach) {}

bool BallScheme::meets_grid(const GaussItem& item) const {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float c = item.centre[axis];
    if (!(lattice_.lower[axis] <= c + item.reach && c - item.reach <= lattice_.upper[axis]))
      return false;
  }
  return true;
}

bool BallScheme::place(const GaussItem& item, Ball& ball) const {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float f = (item.centre[axis] - lattice_.lower[axis]) * inverse_spacing_;
    const int node = VXBrioMol::vi_nint(f);
    ball.node[axis] = node;
    ball.u[axis] = f - static_cast<float>(node);
    // What fits no int has got the node 0.
    if (!(std::fabs(ball.u[axis]) <= 0.5f)) return false;
    if (ball.node[axis] < -farthest_beyond ||
        ball.node[axis] >= lattice_.dim[axis] + farthest_beyond)
      return false;
  }
  const float u_squared = ball.u[0] * ball.u[0] + ball.u[1] * ball.u[1] + ball.u[2] * ball.u[2];
  const float f =
      std::min(std::sqrt(u_squared) + inverse_spacing_ * item.reach, largest_reach_in_spacings);
  if (!(f > -1.0f)) return false;
  ball.reach = static_cast<int>(f);
  ball.reach_squared = static_cast<std::int64_t>(f * f);
  ball.decay = item.width * lattice_.spacing * lattice_.spacing;
  ball.factor = exponential_(-ball.decay * u_squared);
  ball.value = ball.factor * item.prefactor;
  return true;
}

bool BallScheme::is_single_point(const Ball& ball) const {
  if (ball.reach != 0) return false;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (ball.node[axis] < 0 || ball.node[axis] >= lattice_.dim[axis]) return false;
  }
  return true;
}

bool BallScheme::clip(Ball& ball) const {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::ptrdiff_t last = lattice_.dim[axis] - 1;
    ball.range[axis] = {std::max(-ball.reach, -ball.node[axis]),
                        std::min(ball.reach, last - ball.node[axis])};
    if (ball.range[axis].empty()) return false;
  }
  return true;
}

void BallScheme::fill_gaussian(const Ball& ball) {
  const float decay = ball.decay;
  const float q = exponential_(-decay);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float u = ball.u[axis];
    if (decay > largest_decay) {
      const auto value_at = [this, decay, u](std::ptrdiff_t k) {
        const auto offset = static_cast<float>(k);
        return exponential_(decay * (offset * (2.0f * u - offset)));
      };
      gaussian_[axis].fill(ball.range[axis], 1.0f, value_at,
                           [&value_at](std::ptrdiff_t k) { return value_at(-k); });
    } else {
      const float g = exponential_(2.0f * decay * u);
      gaussian_[axis].fill(ball.range[axis], 1.0f, GaussianSteps(q, g), GaussianSteps(q, 1.0f / g));
    }
  }
}

void BallScheme::fill_slopes(const Ball& ball) {
  const float step = 2.0f * ball.decay * inverse_spacing_;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float start = step * ball.u[axis];
    slopes_[axis].fill(
        ball.range[axis], start,
        [value = start, step](std::ptrdiff_t) mutable { return value -= step; },
        [value = start, step](std::ptrdiff_t) mutable { return value += step; });
  }
}

}  // namespace VXCore::detail
