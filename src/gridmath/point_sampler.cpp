// The sampling kernel: first where the points of a block lie, then their values one by one.
#include "gridmath/point_sampler.h"

#include <algorithm>  // for all_of, fill_n, min
#include <cmath>      // for trunc

#include "gridmath/trilinear.h"

namespace VXCore::detail {

namespace {

constexpr std::size_t block_size = 128;
constexpr float most_spacings = 2147483648.0f;

// Where the points of a block lie: the element of the low corner of the cell, or of the nearest
// point, and the fractions within the cell.
struct Block {
  std::array<int, block_size> inside, element;
  std::array<float, block_size> tx, ty, tz;
};

// One axis of the lattice; a point counts strictly between low and high.
struct Axis {
  float low, high, lower, spacing;
  int last_cell, stride;
};

// Adds one axis to the places of a block. There is no branch in it, so that it runs on several
// points at a time; a point that does not count is placed at the first cell.
template <bool nearest>
void locate(const Axis& axis, const float* p, std::size_t count, int* __restrict inside,
            int* __restrict element, float* __restrict t) {
  const Axis a = axis;
  for (std::size_t i = 0; i < count; ++i) {
    const int counts = (p[i] > a.low ? 1 : 0) & (p[i] < a.high ? 1 : 0);
    const float f = ((counts != 0 ? p[i] : a.lower) - a.lower) / a.spacing;
    const int index = static_cast<int>(f);
    const float fraction = f - static_cast<float>(index);
    // Rounding may put a point below the last plane onto it; its fraction then stays.
    int node = std::min(index, a.last_cell);
    if constexpr (nearest) node += fraction > 0.5f ? 1 : 0;
    inside[i] &= counts;
    element[i] += a.stride * node;
    t[i] = fraction;
  }
}

// Weights of the nodes at -1, 0, +1, and their derivatives by t.
std::array<float, 3> quadratic_weights(float t) {
  const float below = 0.5f * (t * t) - 0.5f * t + 0.125f;
  return {below, 0.75f - t * t, below + t};
}
std::array<float, 3> quadratic_slopes(float t) {
  return {t - 0.5f, -2.0f * t, t + 0.5f};
}

// The sum over 27 nodes of wz*wy*wx*value, z outermost.
float weighted_sum(const float* corner, const RecordLattice& lattice,
                   const std::array<float, 3>& wx, const std::array<float, 3>& wy,
                   const std::array<float, 3>& wz) {
  float sum = 0.0f;
  for (std::size_t k = 0; k < 3; ++k) {
    for (std::size_t j = 0; j < 3; ++j) {
      const float wzy = wz[k] * wy[j];
      const float* const nodes = corner + k * lattice.plane_stride() + j * lattice.row_stride();
      for (std::size_t i = 0; i < 3; ++i)
        sum += wzy * wx[i] * nodes[i];
    }
  }
  return sum;
}

}  // namespace

PointSampler::PointSampler(const RecordLattice& lattice, const float* values, SamplingOrder order)
    : lattice_(lattice), values_(values), order_(order) {
  const int least = order == SamplingOrder::quadratic ? 3 : 2;
  usable_ = values != nullptr && lattice.spacing > 0.0f && lattice.size() != 0 &&
            std::all_of(lattice.dim.begin(), lattice.dim.end(),
                        [least](int dim) { return dim >= least; });
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float e = (lattice.upper[axis] - lattice.lower[axis]) / lattice.spacing;
    // No position between the ends then counts more spacings than an int takes; a lattice whose
    // ends are not numbers, or infinitely far away, is none.
    usable_ = usable_ && e < most_spacings;
    low_[axis] = lattice.lower[axis];
    high_[axis] = lattice.upper[axis] - 0.5f * (e - std::trunc(e));
    if (order == SamplingOrder::quadratic) {
      low_[axis] += lattice.spacing / 2.0f;
      high_[axis] -= lattice.spacing / 2.0f;
    }
  }
}

bool PointSampler::counts(const std::array<float, 3>& point) const {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (!(low_[axis] < point[axis] && point[axis] < high_[axis])) return false;
  }
  return true;
}

template <SamplingOrder order>
void PointSampler::sample_blocks(const float* x, const float* y, const float* z, std::size_t count,
                                 float* out) const {
  constexpr bool nearest = order == SamplingOrder::nearest;
  const std::array<std::size_t, 3> strides = {1, lattice_.row_stride(), lattice_.plane_stride()};
  const auto axis = [&](std::size_t k) {
    return Axis{low_[k],
                high_[k],
                lattice_.lower[k],
                lattice_.spacing,
                lattice_.dim[k] - 2,
                static_cast<int>(strides[k])};
  };
  Block block;
  int* const inside = block.inside.data();
  int* const element = block.element.data();
  for (std::size_t begin = 0; begin < count; begin += block_size) {
    const std::size_t n = std::min(block_size, count - begin);
    std::fill_n(inside, n, 1);
    std::fill_n(element, n, 0);
    locate<nearest>(axis(0), x + begin, n, inside, element, block.tx.data());
    locate<nearest>(axis(1), y + begin, n, inside, element, block.ty.data());
    locate<nearest>(axis(2), z + begin, n, inside, element, block.tz.data());
    for (std::size_t i = 0; i < n; ++i) {
      if (inside[i] == 0) continue;
      const float* const node = values_ + element[i];
      out[begin + i] =
          nearest ? *node
                  : blend_cell(node, strides[1], strides[2], block.tx[i], block.ty[i], block.tz[i]);
    }
  }
}

void PointSampler::sample(const float* x, const float* y, const float* z, std::size_t count,
                          float* out) const {
  if (!usable_) return;
  switch (order_) {
    case SamplingOrder::trilinear:
      sample_blocks<SamplingOrder::trilinear>(x, y, z, count, out);
      break;
    case SamplingOrder::nearest:
      sample_blocks<SamplingOrder::nearest>(x, y, z, count, out);
      break;
    case SamplingOrder::quadratic:
      for (std::size_t i = 0; i < count; ++i) {
        const std::array<float, 3> point = {x[i], y[i], z[i]};
        if (!counts(point)) continue;
        const QuadraticCell cell = quadratic_cell(point);
        out[i] = weighted_sum(cell.corner, lattice_, quadratic_weights(cell.t[0]),
                              quadratic_weights(cell.t[1]), quadratic_weights(cell.t[2]));
      }
      break;
  }
}

// The middle node keeps a neighbour on either side also where rounding has brought a point at the
// very edge of the range past it.
PointSampler::QuadraticCell PointSampler::quadratic_cell(const std::array<float, 3>& point) const {
  QuadraticCell cell{};
  std::array<int, 3> first{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float f = (point[axis] - lattice_.lower[axis]) / lattice_.spacing;
    const int index = std::min(static_cast<int>(f), lattice_.dim[axis] - 2);
    float t = f - static_cast<float>(static_cast<int>(f));
    int middle = index;
    if (t > 0.5f || index < 1) {
      ++middle;
      t -= 1.0f;
    }
    first[axis] = std::min(middle, lattice_.dim[axis] - 2) - 1;
    cell.t[axis] = t;
  }
  cell.corner = values_ + element_at(lattice_, first[0], first[1], first[2]);
  return cell;
}

bool PointSampler::quadratic(const std::array<float, 3>& point, float& value,
                             std::array<float, 3>& gradient) const {
  if (!usable_ || !counts(point)) return false;
  const QuadraticCell cell = quadratic_cell(point);
  const std::array<float, 3> wx = quadratic_weights(cell.t[0]);
  const std::array<float, 3> wy = quadratic_weights(cell.t[1]);
  const std::array<float, 3> wz = quadratic_weights(cell.t[2]);
  const float inverse_spacing = 1.0f / lattice_.spacing;
  value = weighted_sum(cell.corner, lattice_, wx, wy, wz);
  gradient = {
      weighted_sum(cell.corner, lattice_, quadratic_slopes(cell.t[0]), wy, wz) * inverse_spacing,
      weighted_sum(cell.corner, lattice_, wx, quadratic_slopes(cell.t[1]), wz) * inverse_spacing,
      weighted_sum(cell.corner, lattice_, wx, wy, quadratic_slopes(cell.t[2])) * inverse_spacing};
  return true;
}

}  // namespace VXCore::detail
