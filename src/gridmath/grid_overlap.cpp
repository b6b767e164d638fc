// Sums over the overlap of two lattices.
#include "vxgrid/gridmath/grid_overlap.h"

#include <algorithm>  // for min
#include <array>      // for array
#include <cmath>      // for fabs
#include <cstddef>    // for size_t
#include <cstdio>     // for snprintf
#include <optional>   // for optional

#include "gridmath/dimensions.h"
#include "gridmath/record_lattice.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_handles.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::lattice_of;
using detail::RecordLattice;

// The common range on one axis: its first index in either grid, and its length.
struct Span {
  int first = 0, second = 0, length = 0;
};

// Whole spacings between two ends; nothing where they are too far apart to overlap at all.
std::optional<int> whole_spacings(float difference, float spacing) {
  return detail::truncated(std::fabs(difference) / spacing + 0.5f);
}

// Empty when the ranges do not meet; a mismatch of their lengths is reported.
Span common_range(const RecordLattice& a, const RecordLattice& b, std::size_t axis, bool inner) {
  const std::optional<int> low = whole_spacings(a.lower[axis] - b.lower[axis], a.spacing);
  const std::optional<int> high = whole_spacings(a.upper[axis] - b.upper[axis], a.spacing);
  if (!low || !high || *low < 0 || *high < 0) return {};
  int a_begin = a.lower[axis] < b.lower[axis] ? *low : 0;
  int b_begin = b.lower[axis] < a.lower[axis] ? *low : 0;
  int a_end = a.dim[axis] - 1 - (a.upper[axis] > b.upper[axis] ? *high : 0);
  int b_end = b.dim[axis] - 1 - (b.upper[axis] > a.upper[axis] ? *high : 0);
  if (a_begin > a_end || b_begin > b_end) return {};
  if (a_end - a_begin != b_end - b_begin) {
    std::array<char, 80> line{};
    std::snprintf(line.data(), line.size(), "mismatch in %c %d %d %d %d\n", "xyz"[axis], a_begin,
                  a_end, b_begin, b_end);
    vxerr << line.data();
  }
  if (inner) {
    ++a_begin;
    ++b_begin;
    --a_end;
    --b_end;
    if (a_begin > a_end || b_begin > b_end) return {};
  }
  return {a_begin, b_begin, std::min(a_end - a_begin, b_end - b_begin) + 1};
}

struct Sums {
  double first = 0.0, second = 0.0, both = 0.0;

  void add_product(double a, double b) {
    first += a * a;
    second += b * b;
    both += a * b;
  }
  void add_counts(float a, float b, float threshold) {
    const bool a_above = a > threshold;
    const bool b_above = b > threshold;
    const bool a_below = a < -threshold;
    const bool b_below = b < -threshold;
    first += (a_above ? 1 : 0) + (a_below ? 1 : 0);
    second += (b_above ? 1 : 0) + (b_below ? 1 : 0);
    both += (a_above && b_above ? 1 : 0) + (a_below && b_below ? 1 : 0);
  }
};

}  // namespace

std::tuple<float, float, float> VXGridOverlap(int first, int second, int mode, float threshold) {
  constexpr std::tuple<float, float, float> nothing{0.0f, 0.0f, 0.0f};
  const VXBrioGrid* const a = VXDerefGridHandle(first);
  const VXBrioGrid* const b = VXDerefGridHandle(second);
  if (!a || !b) return nothing;
  if (a->GetSpacing() == 0.0f) {
    vi_warning("grid as a zero spacing\n");
    return nothing;
  }
  const float* const a_values = a->GetValues();
  const float* const b_values = b->GetValues();
  if (!a_values || !b_values || mode < 0 || mode > 2) return nothing;
  const RecordLattice la = lattice_of(*a);
  const RecordLattice lb = lattice_of(*b);
  std::array<Span, 3> spans{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    spans[axis] = common_range(la, lb, axis, mode == 2);
  }
  const auto& [x, y, z] = spans;
  if (x.length == 0 || y.length == 0 || z.length == 0) return nothing;

  const std::array<std::size_t, 3> a_steps = {1, la.row_stride(), la.plane_stride()};
  const std::array<std::size_t, 3> b_steps = {1, lb.row_stride(), lb.plane_stride()};
  Sums sums;
  for (int k = 0; k < z.length; ++k) {
    for (int j = 0; j < y.length; ++j) {
      const float* va = a_values + element_at(la, x.first, y.first + j, z.first + k);
      const float* vb = b_values + element_at(lb, x.second, y.second + j, z.second + k);
      for (int i = 0; i < x.length; ++i, ++va, ++vb) {
        if (mode == 0) {
          sums.add_product(*va, *vb);
        } else if (mode == 1) {
          sums.add_counts(*va, *vb, threshold);
        } else {
          for (std::size_t axis = 0; axis < 3; ++axis) {
            sums.add_product(va[a_steps[axis]] - *(va - a_steps[axis]),
                             vb[b_steps[axis]] - *(vb - b_steps[axis]));
          }
        }
      }
    }
  }
  return {static_cast<float>(sums.first), static_cast<float>(sums.second),
          static_cast<float>(sums.both)};
}

}  // namespace VXCore
