// Adding symmetry mates to the reflections of an asymmetric unit.
#include <algorithm>  // for find, min
#include <array>      // for array
#include <cmath>      // for cos, fmod, sin
#include <cstddef>    // for ptrdiff_t, size_t
#include <cstdint>    // for int64_t
#include <limits>     // for numeric_limits
#include <new>        // for bad_alloc
#include <vector>     // for vector

#include "reflection/columns.h"
#include "vxgrid/reflection/reflection_impl.h"

namespace VXCore {
namespace {

constexpr unsigned int max_operators = 192;
constexpr float radians_per_degree_f = 0.017453292F;

struct Index {
  int h, k, l;
  bool operator==(const Index&) const = default;
};

// A reflection to be added: how it comes from one that is there.
struct Mate {
  unsigned int source;
  Index index;
  float shift;  // degrees
  bool flipped;
};

bool fits_int(float value) {
  return value > -2147483648.0F && value < 2147483648.0F;
}

// The index h M of the mate by an operator, in the half of reciprocal space that stands for both.
// False when it does not fit.
bool apply_operator(const Index& from, const float* op, Mate& mate) {
  const auto h = static_cast<float>(from.h);
  const auto k = static_cast<float>(from.k);
  const auto l = static_cast<float>(from.l);
  const float to_h = h * op[0] + k * op[1] + l * op[2];
  const float to_k = h * op[4] + k * op[5] + l * op[6];
  const float to_l = h * op[8] + k * op[9] + l * op[10];
  if (!fits_int(to_h) || !fits_int(to_k) || !fits_int(to_l)) return false;
  Index to{static_cast<int>(to_h), static_cast<int>(to_k), static_cast<int>(to_l)};
  mate.flipped = to.l < 0 || (to.l == 0 && (to.h < 0 || (to.h == 0 && to.k < 0)));
  if (mate.flipped) to = {-to.h, -to.k, -to.l};
  mate.index = to;
  mate.shift = (h * op[12] + k * op[13] + l * op[14]) * 360.0F;
  return true;
}

class MateFinder {
 public:
  MateFinder(const float* operators, unsigned int op_count)
      : operators_(operators), op_count_(op_count) {}

  // Appends the mates of one reflection; false when an index does not fit an int.
  bool find(unsigned int source, const Index& index, std::vector<Mate>& mates) {
    accepted_[0] = index;
    for (unsigned int j = 1; j < op_count_; ++j) {
      // In its place from the start: a copy right behind the parts would wait for them.
      Mate& mate = mates.emplace_back();
      mate.source = source;
      if (!apply_operator(index, operators_ + std::size_t{16} * j, mate)) return false;
      const Index found = mate.index;
      const auto end = accepted_.begin() + j;
      if (std::find(accepted_.begin(), end, found) != end)
        mates.pop_back();
      else
        accepted_[j] = found;
    }
    return true;
  }

 private:
  const float* operators_;
  unsigned int op_count_;
  // By operator number. An operator that adds nothing leaves its entry as an earlier reflection
  // filled it, and later operators are compared with that entry all the same.
  std::array<Index, max_operators> accepted_{};
};

// fmod(value, 360) without its long division where the quotient is small: the difference has no
// rounding then, and one step mends a quotient that was rounded over a whole number.
double modulo_360(double value) {
  if (!(value >= 0 && value < 1e9)) return std::fmod(value, 360.0);
  const auto turns = static_cast<double>(static_cast<std::int64_t>(value * (1 / 360.0)));
  const double remainder = value - 360.0 * turns;
  if (remainder < 0) return remainder + 360.0;
  return remainder < 360.0 ? remainder : remainder - 360.0;
}

float turn_phase(float phase, const Mate& mate) {
  const float turned = mate.flipped ? mate.shift - phase : phase - mate.shift;
  return static_cast<float>(modulo_360(turned + 360000.0F));
}

// A shift of the phase by -shift turns (A, B) by that angle and (C, D) by twice the angle.
void turn_coefficients(float& a, float& b, float& c, float& d, const Mate& mate) {
  const float angle = -mate.shift * radians_per_degree_f;
  const float sign = mate.flipped ? -1.0F : 1.0F;
  const float cos_1 = std::cos(angle);
  const float sin_1 = std::sin(angle);
  const float cos_2 = std::cos(2 * angle);
  const float sin_2 = std::sin(2 * angle);
  const float old_a = a;
  const float old_c = c;
  a = old_a * cos_1 - b * sin_1;
  b = sign * (b * cos_1 + old_a * sin_1);
  c = old_c * cos_2 - d * sin_2;
  d = sign * (d * cos_2 + old_c * sin_2);
}

}  // namespace

// Puts the mates behind the `at` reflections that there are.
template <class Mates>
void VXReflectionImpl::append_mates(const Mates& mates, std::size_t at) {
  visit_columns([&](auto& column) {
    if (column.empty()) return;
    column.resize(at + mates.size() + 1);
    auto* to = column.data() + at;
    for (const Mate& mate : mates)
      *to++ = column[mate.source];
  });
  for (FloatColumn* phases : {&phase_, &phase_calc_, &phiwt_, &phidelwt_}) {
    if (phases->empty()) continue;
    float* phase = phases->data() + at;
    for (const Mate& mate : mates) {
      *phase = turn_phase(*phase, mate);
      ++phase;
    }
  }
  const bool turns_coefficients = has_abcd();
  for (const Mate& mate : mates) {
    h_[at] = mate.index.h;
    k_[at] = mate.index.k;
    l_[at] = mate.index.l;
    if (turns_coefficients) turn_coefficients(hla_[at], hlb_[at], hlc_[at], hld_[at], mate);
    ++at;
  }
}

bool VXReflectionImpl::Expand() {
  if (expanded_) return true;
  if (symmetry_.GetNumber() == 0 || count_ == 0) return false;
  const unsigned int op_count = symmetry_.GetOpCount();
  if (op_count == 1) return true;
  if (op_count > max_operators || !has_indices()) return false;

  const unsigned int first = count_;
  std::size_t written = count_;
  // Block by block, so that the mates at hand stay in the cache. A list that is mostly special
  // reflections should not be given room for mates that it has not.
  constexpr unsigned int block = 512;
  constexpr unsigned int likely_mates = 16;
  bool is_complete = true;
  try {
    visit_columns([&](auto& column) {
      if (!column.empty())
        column.reserve(std::size_t{first} * std::min(op_count, likely_mates) + 1);
    });
    MateFinder finder(symmetry_.GetMatrices(), op_count);
    std::vector<Mate> mates;
    for (unsigned int i = 0; i < first && is_complete; ++i) {
      is_complete = finder.find(i, {h_[i], k_[i], l_[i]}, mates);
      if ((i + 1) % block != 0 && i + 1 != first) continue;
      is_complete =
          is_complete && written + mates.size() <= std::numeric_limits<unsigned int>::max();
      if (is_complete) append_mates(mates, written);
      written += mates.size();
      mates.clear();
    }
  } catch (const std::bad_alloc&) {
    is_complete = false;
  }
  if (!is_complete) {
    SetCount(first);
    return false;
  }
  if (phase_.empty() && !phase_calc_.empty()) phase_ = phase_calc_;
  unexpanded_count_ = first;
  SetCount(static_cast<unsigned int>(written));
  return true;
}

}  // namespace VXCore
