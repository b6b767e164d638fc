/// \file
/// Thinning of the object in a grid to a skeleton, on one bit a point.
///
/// The value array becomes a row of bits in element order, so that a neighbour
/// is found by one offset, as in the array, and 64 points are tested with the
/// logic of one.
#include "vxgrid/fieldgrids/thinning.h"

#include <algorithm>  // for min
#include <array>      // for array
#include <bit>        // for countl_zero
#include <cstddef>    // for ptrdiff_t, size_t
#include <span>       // for span
#include <vector>     // for vector

#include "fieldgrids/thinning_rules.h"

namespace VXCore {

namespace {

using namespace detail::thinning;

constexpr std::ptrdiff_t word_bits = 64;

/// Where the bits of the 64 neighbours of a word of points lie.
class Neighbour {
 public:
  Neighbour() = default;
  explicit Neighbour(std::ptrdiff_t offset)
      : word_(offset >> 6), shift_(static_cast<unsigned int>(offset & 63)) {}

  Word of(const Word* word) const {
    return (word[word_] >> shift_) | (word[word_ + 1] << 1 << (63 - shift_));
  }

 private:
  std::ptrdiff_t word_ = 0;
  unsigned int shift_ = 0;
};

/// What one direction looks at.
struct View {
  std::array<Neighbour, 2> border;
  std::array<Neighbour, 27> pattern;
};

class Thinning {
 public:
  Thinning(std::span<const float> values, std::ptrdiff_t nx, std::ptrdiff_t ny, std::ptrdiff_t nz);

  /// True when a point was taken off.
  bool run_pass();
  /// Writes 1 for the interior points that are left, 0 for all others.
  void write(std::span<float> values) const;

 private:
  struct Removal {
    std::size_t word;
    Word points;
  };

  Word border_points(std::size_t word, const View& view) const;
  Word find_removable(std::size_t word, Word candidates, const View& view) const;
  void find_removals(const View& view);
  void find_removals_of_last_direction();
  bool apply_removals();

  std::size_t words_;
  // Words of zeros before the first and behind the last, for the neighbours of
  // points of the outermost layer that share a word with an interior one.
  std::size_t margin_;
  std::vector<Word> object_;
  std::vector<Word> interior_;
  std::array<View, direction_count> views_;
  std::vector<Removal> removals_;
  // Whether the point tested last was taken off, which is all that the last
  // direction knows.
  bool last_was_removable_ = false;
};

Thinning::Thinning(std::span<const float> values, std::ptrdiff_t nx, std::ptrdiff_t ny,
                   std::ptrdiff_t nz)
    : words_((values.size() + word_bits - 1) / word_bits),
      margin_(static_cast<std::size_t>((nx * ny + nx + 1) / word_bits + 2)),
      object_(words_ + 2 * margin_),
      interior_(words_) {
  for (std::size_t i = 0; i < values.size(); ++i)
    object_[margin_ + i / word_bits] |= Word{values[i] != 0.0f} << (i % word_bits);
  for (std::ptrdiff_t z = 1; z < nz - 1; ++z) {
    for (std::ptrdiff_t y = 1; y < ny - 1; ++y) {
      const auto row = static_cast<std::size_t>(nx * (y + ny * z));
      for (std::size_t i = row + 1; i < row + static_cast<std::size_t>(nx) - 1; ++i)
        interior_[i / word_bits] |= Word{1} << (i % word_bits);
    }
  }
  const auto neighbour = [&](const Step& step) {
    return Neighbour(step.x + nx * (step.y + ny * step.z));
  };
  for (std::size_t d = 0; d < direction_count; ++d) {
    for (std::size_t k = 0; k < 2; ++k)
      views_[d].border[k] = neighbour(border_steps[d][k]);
    if (d == template_axes.size()) continue;
    for (std::size_t k = 0; k < 27; ++k)
      views_[d].pattern[k] = neighbour(neighbour_step(k, template_axes[d]));
  }
}

Word Thinning::border_points(std::size_t word, const View& view) const {
  const Word* here = &object_[margin_ + word];
  const Word tested = *here & interior_[word];
  return tested ? tested & ~(view.border[0].of(here) & view.border[1].of(here)) : 0;
}

Word Thinning::find_removable(std::size_t word, Word candidates, const View& view) const {
  const Word* here = &object_[margin_ + word];
  if ((candidates & ~view.pattern[always_background].of(here)) == 0) return 0;
  Pattern pattern;
  for (std::size_t k = 0; k < pattern.size(); ++k)
    pattern[k] = view.pattern[k].of(here);
  return candidates & removable(pattern);
}

void Thinning::find_removals(const View& view) {
  for (std::size_t word = 0; word < words_; ++word) {
    const Word candidates = border_points(word, view);
    if (!candidates) continue;
    const Word found = find_removable(word, candidates, view);
    if (found) removals_.push_back({word, found});
    last_was_removable_ = std::countl_zero(found) == std::countl_zero(candidates);
  }
}

void Thinning::find_removals_of_last_direction() {
  if (!last_was_removable_) return;
  for (std::size_t word = 0; word < words_; ++word)
    if (const Word candidates = border_points(word, views_.back()))
      removals_.push_back({word, candidates});
}

bool Thinning::apply_removals() {
  const bool any_removed = !removals_.empty();
  for (const Removal& removal : removals_)
    object_[margin_ + removal.word] &= ~removal.points;
  removals_.clear();
  return any_removed;
}

bool Thinning::run_pass() {
  bool any_removed = false;
  for (std::size_t d = 0; d < template_axes.size(); ++d) {
    find_removals(views_[d]);
    any_removed |= apply_removals();
  }
  find_removals_of_last_direction();
  return apply_removals() || any_removed;
}

void Thinning::write(std::span<float> values) const {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Word left = object_[margin_ + i / word_bits] & interior_[i / word_bits];
    values[i] = (left >> (i % word_bits) & 1) != 0 ? 1.0f : 0.0f;
  }
}

}  // namespace

int VXThinGrid(VXScalarGrid& grid) {
  const std::span<float> values(grid.GetValues(), grid.GetValues() ? grid.GetSize() : 0);
  if (std::min({grid.GetXDim(), grid.GetYDim(), grid.GetZDim()}) < 3) {
    std::ranges::fill(values, 0.0f);
    return 1;
  }
  Thinning thinning(values, grid.GetXDim(), grid.GetYDim(), grid.GetZDim());
  int passes = 1;
  while (thinning.run_pass())
    ++passes;
  thinning.write(values);
  return passes;
}

}  // namespace VXCore
