/// \file
/// The one evaluation scheme of all Gaussian kernels: where an item lies on the lattice, its tables
/// along the axes, and the walk over the ball of points that it touches.
///
/// A kernel says what a touched point does, as a callable that takes one row of the ball:
///
///     scheme.walk(ball, [=](const BallRow& row) VXGRID_ROW { ... });
#ifndef VXGRID_SRC_GAUSSIAN_BALL_KERNEL_H
#define VXGRID_SRC_GAUSSIAN_BALL_KERNEL_H

#include <algorithm>  // for max, min
#include <array>      // for array
#include <cstddef>    // for ptrdiff_t, size_t
#include <cstdint>    // for int64_t, uint16_t, uintptr_t
#include <vector>     // for vector

#include "gridmath/record_lattice.h"

/// Marks what is done to a row: it is compiled into each form of the walk, for its vector unit.
#define VXGRID_ROW __attribute__((always_inline))

namespace VXCore::detail {

/// One Gaussian as the kernels see it: Angstrom, per Angstrom squared for the width.
struct GaussItem {
  std::array<float, 3> centre;
  float width;
  float prefactor;
  float reach;
};

/// Offsets along one axis from the nearest point of an item, both ends included.
struct OffsetRange {
  std::ptrdiff_t first = 0;
  std::ptrdiff_t last = -1;
  bool empty() const { return last < first; }
  bool covers(std::ptrdiff_t offset) const { return first <= offset && offset <= last; }
};

/// An item on the lattice. Lengths count in spacings here.
struct Ball {
  std::array<std::ptrdiff_t, 3> node;  ///< the nearest point, which may lie beyond the grid
  std::array<float, 3> u;              ///< the centre, from there
  float decay;                         ///< the exponent, width*h*h
  float factor;                        ///< exp(-decay*|u|^2)
  float value;                         ///< of the Gaussian at the nearest point
  std::ptrdiff_t reach;                ///< of the largest offset along an axis
  std::int64_t reach_squared;          ///< not the square of `reach`: cut off after squaring
  std::array<OffsetRange, 3> range;    ///< the offsets that lie in the grid
};

/// The touched points of one row along x.
struct BallRow {
  std::size_t element;   ///< of the first of them
  std::size_t count;     ///< at least 1
  std::ptrdiff_t first;  ///< the offset along x of the first
  std::ptrdiff_t b;      ///< the offset along y
  std::ptrdiff_t c;      ///< the offset along z
};

/// The values of an OffsetTable, as the work on a row takes them: small enough to be held in
/// registers.
struct OffsetView {
  const float* values;
  OffsetRange range;

  float operator[](std::ptrdiff_t offset) const { return values[offset - range.first]; }
  /// The values from an offset on.
  const float* from(std::ptrdiff_t offset) const { return values + (offset - range.first); }
};

/// Values at a run of offsets.
class OffsetTable {
 public:
  /// Values are undefined until they are set.
  void reset(OffsetRange range) {
    range_ = range;
    const auto size = static_cast<std::size_t>(range.last - range.first + 1);
    if (values_.size() < size) values_.resize(size);
  }
  /// Values for a range from `at_0` at offset 0 outwards: up(k) gives the one at k and down(k) the
  /// one at -k, called for k = 1, 2, ... in turn as far as the range goes, also where it has not
  /// yet begun.
  template <class Up, class Down>
  void fill(OffsetRange range, float at_0, Up up, Down down) {
    reset(range);
    if (range.covers(0)) (*this)[0] = at_0;
    for (std::ptrdiff_t k = 1; k <= range.last; ++k) {
      const float value = up(k);
      if (k >= range.first) (*this)[k] = value;
    }
    for (std::ptrdiff_t k = 1; k <= -range.first; ++k) {
      const float value = down(k);
      if (-k <= range.last) (*this)[-k] = value;
    }
  }
  float& operator[](std::ptrdiff_t offset) { return values_[index(offset)]; }
  float operator[](std::ptrdiff_t offset) const { return values_[index(offset)]; }

  OffsetView view() const { return {values_.data(), range_}; }

 private:
  std::size_t index(std::ptrdiff_t offset) const {
    return static_cast<std::size_t>(offset - range_.first);
  }

  OffsetRange range_;
  std::vector<float> values_;
};
using AxisTables = std::array<OffsetTable, 3>;
using AxisViews = std::array<OffsetView, 3>;

inline AxisViews views(const AxisTables& tables) {
  return {tables[0].view(), tables[1].view(), tables[2].view()};
}

/// The values q^(k^2) g^k for k = 1, 2, ... in turn: c*T*g with c = q, q^3, q^5, ...
class GaussianSteps {
 public:
  GaussianSteps(float q, float g) : q_squared_(q * q), c_(q), g_(g) {}
  float operator()(std::ptrdiff_t) {
    value_ = c_ * value_ * g_;
    c_ *= q_squared_;
    return value_;
  }

 private:
  float q_squared_;
  float c_;
  float g_;
  float value_ = 1.0f;
};

/// Square roots of integers, rounded down: a table as far as a call needs it, up to a limit.
class IntegerRoots {
 public:
  /// For squares up to that of a reach in spacings and what rounding to the nearest point adds.
  explicit IntegerRoots(float reach);

  struct View {
    const std::uint16_t* table;
    std::size_t size;

    std::ptrdiff_t operator()(std::int64_t square) const {
      const auto index = static_cast<std::size_t>(square);
      return index < size ? table[index] : computed(square);
    }
  };
  View view() const { return {table_.data(), table_.size()}; }

 private:
  static std::ptrdiff_t computed(std::int64_t square);
  std::vector<std::uint16_t> table_;
};

/// True when the machine has the wider vector unit that `BallScheme::walk` knows of.
bool has_wide_vectors();

/// Places items on one lattice and walks their balls. Reaches and exponents beyond all measure are
/// harmless: no table is longer than the grid is wide.
class BallScheme {
 public:
  /// Single-precision exponential for centre factors and tables.
  using Exponential = float (*)(float);

  /// `largest_reach` in Angstrom. The lattice has points, and a spacing above 0.
  BallScheme(const RecordLattice& lattice, float largest_reach, Exponential exponential);

  /// True when the box of the item, centre +- reach, and the grid meet; touching is enough.
  bool meets_grid(const GaussItem& item) const;

  /// All of a ball but its range; false for an item too far away to have one.
  bool place(const GaussItem& item, Ball& ball) const;

  /// The range of a ball; false when no point of the grid is in it.
  bool clip(Ball& ball) const;

  /// True when the item touches its nearest point alone, which lies in the grid.
  bool is_single_point(const Ball& ball) const;

  /// Element number of the node of such an item.
  std::size_t node_element(const Ball& ball) const {
    return static_cast<std::size_t>(ball.node[0]) +
           lattice_.row_stride() * static_cast<std::size_t>(ball.node[1]) +
           lattice_.plane_stride() * static_cast<std::size_t>(ball.node[2]);
  }

  /// T[k] = exp(-decay*k*(k - 2u)) per axis, so that a point at (a, b, c) from the node has the
  /// value `value`*Tz[c]*Ty[b]*Tx[a]: by the recurrence T[k] = c*T[k-1]*g with c = q, q^3, q^5,
  /// ..., q = exp(-decay), g = exp(2*decay*u), and 1/g for negative k.
  void fill_gaussian(const Ball& ball);

  /// D[k] = 2*decay/h*(u - k) per axis, the derivative 2*width*(centre - point), by differences.
  void fill_slopes(const Ball& ball);

  /// What was filled last.
  AxisViews gaussian() const { return views(gaussian_); }
  AxisViews slopes() const { return views(slopes_); }

  const RecordLattice& lattice() const { return lattice_; }

  /// Hands the rows of the ball to `touch(const BallRow&)`, z outermost. The work on a row is
  /// compiled for two vector widths; a row that treats its points one by one gets the same bits
  /// from either. The callable is copied: what it captures by value stays in registers.
  template <class Touch>
  void walk(const Ball& ball, Touch touch) const {
#if defined(__x86_64__)
    if (wide_) {
      walk_wide(ball, touch);
      return;
    }
#endif
    walk_rows(ball, touch);
  }

 private:
  template <class Touch>
  VXGRID_ROW inline void walk_rows(const Ball& ball, Touch touch) const {
    const auto [x_range, y_range, z_range] = ball.range;
    const std::int64_t reach_squared = ball.reach_squared;
    const IntegerRoots::View roots = roots_.view();
    const auto row_stride = static_cast<std::ptrdiff_t>(lattice_.row_stride());
    const auto plane_stride = static_cast<std::ptrdiff_t>(lattice_.plane_stride());
    const std::ptrdiff_t node =
        ball.node[0] + ball.node[1] * row_stride + ball.node[2] * plane_stride;
    for (std::ptrdiff_t c = z_range.first; c <= z_range.last; ++c) {
      const std::int64_t in_plane = reach_squared - std::int64_t{c} * c;
      if (in_plane < 0) continue;
      const std::ptrdiff_t ry = roots(in_plane);
      const std::ptrdiff_t b_last = std::min(ry, y_range.last);
      for (std::ptrdiff_t b = std::max(-ry, y_range.first); b <= b_last; ++b) {
        const std::ptrdiff_t rx = roots(in_plane - std::int64_t{b} * b);
        const std::ptrdiff_t first = std::max(-rx, x_range.first);
        const std::ptrdiff_t last = std::min(rx, x_range.last);
        if (last < first) continue;
        const std::ptrdiff_t element = node + c * plane_stride + b * row_stride + first;
        touch(BallRow{static_cast<std::size_t>(element), static_cast<std::size_t>(last - first + 1),
                      first, b, c});
      }
    }
  }

#if defined(__x86_64__)
  template <class Touch>
  __attribute__((target("avx2"))) void walk_wide(const Ball& ball, Touch touch) const {
    walk_rows(ball, touch);
  }
#endif

  RecordLattice lattice_;
  float inverse_spacing_;
  Exponential exponential_;
  IntegerRoots roots_;
  bool wide_ = has_wide_vectors();
  AxisTables gaussian_;
  AxisTables slopes_;
};

/// v*Tz[c]*Ty[b], what the values of a row have in common.
VXGRID_ROW inline float row_factor(float v, const AxisViews& t, const BallRow& row) {
  return v * t[2][row.c] * t[1][row.b];
}

/// Calls visit(k, value) for the points of a row in turn.
template <class Visit>
VXGRID_ROW inline void visit_row(float v, const AxisViews& t, const BallRow& row, Visit visit) {
  const float factor = row_factor(v, t, row);
  const float* const tx = t[0].from(row.first);
  for (std::size_t k = 0; k < row.count; ++k)
    visit(k, factor * tx[k]);
}

/// Asks for the memory of the row two planes ahead of this one. Rows are too short and too far
/// apart for the machine to see them coming; behind the end of the buffer the request is void.
VXGRID_ROW inline void fetch_ahead(const float* row, std::size_t count, std::size_t plane_stride) {
  const auto ahead = reinterpret_cast<std::uintptr_t>(row) + 2 * plane_stride * sizeof(float);
  __builtin_prefetch(reinterpret_cast<const void*>(ahead), 1);
  __builtin_prefetch(reinterpret_cast<const void*>(ahead + count * sizeof(float)), 1);
}

/// One value of each of several planes.
template <std::size_t planes>
using PlaneValues = std::array<float, planes>;

/// The new values of `size` points of a row, plane by plane.
template <std::size_t size, std::size_t planes, class Update>
VXGRID_ROW inline void work_out_block(const std::array<float*, planes>& rows, std::size_t at,
                                      float (&block)[planes][size], Update update) {
  for (std::size_t i = 0; i < size; ++i) {
    PlaneValues<planes> old;
    for (std::size_t p = 0; p < planes; ++p)
      old[p] = rows[p][at + i];
    const PlaneValues<planes> updated = update(at + i, old);
    for (std::size_t p = 0; p < planes; ++p)
      block[p][i] = updated[p];
  }
}

template <std::size_t size, std::size_t planes>
VXGRID_ROW inline void write_block(const std::array<float*, planes>& rows, std::size_t at,
                                   const float (&block)[planes][size]) {
  for (std::size_t p = 0; p < planes; ++p) {
    for (std::size_t i = 0; i < size; ++i)
      rows[p][at + i] = block[p][i];
  }
}

/// A row of at least `size` points, block by block.
///
/// Rows are short, so that their ends count: the last block overlaps the one before it, and is
/// worked out before that is written. Both then write the same bits to what they share.
template <std::size_t size, std::size_t planes, class Update>
VXGRID_ROW inline void update_blocks(const std::array<float*, planes>& rows, std::size_t count,
                                     Update update) {
  float last[planes][size];
  work_out_block(rows, count - size, last, update);
  for (std::size_t at = 0; at + size < count; at += size) {
    float block[planes][size];
    work_out_block(rows, at, block, update);
    write_block(rows, at, block);
  }
  write_block(rows, count - size, last);
}

/// Puts update(i, values) in the place of the values of point i of a row, in one or several planes
/// at a time. `update` reads no row by itself: it gets the old values and gives the new ones.
template <std::size_t planes, class Update>
VXGRID_ROW inline void update_row(const std::array<float*, planes>& rows, std::size_t count,
                                  Update update) {
  if (count >= 8) {
    update_blocks<8>(rows, count, update);
  } else if (count >= 4) {
    update_blocks<4>(rows, count, update);
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      float block[planes][1];
      work_out_block(rows, i, block, update);
      write_block(rows, i, block);
    }
  }
}

}  // namespace VXCore::detail

#endif
