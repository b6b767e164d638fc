// Ranks branch by branch, cells by counting sort, and pairs of atoms cell by cell.
#include "gaussian/neighbour_tree.h"

#include <algorithm>  // for copy_n, max, min, sort
#include <cmath>      // for floor, isfinite, sqrt
#include <cstddef>    // for ptrdiff_t
#include <limits>     // for numeric_limits
#include <numeric>    // for partial_sum

namespace VXCore::detail {

namespace {

bool is_finite(const Gsphere& atom) {
  return std::isfinite(atom.x) && std::isfinite(atom.y) && std::isfinite(atom.z);
}

}  // namespace

// The first point of a branch is its node. The others part into those to the left of it and those
// to the right, each in their order; gives the latter.
NeighbourTree::Range NeighbourTree::part(Range branch, std::size_t axis) {
  const float at_node = points_[branch.begin].at[axis];
  Point* left = points_.data() + branch.begin + 1;
  Point* right = right_.data();
  for (std::size_t i = branch.begin + 1; i < branch.end; ++i) {
    const Point point = points_[i];
    const bool is_left = at_node >= point.at[axis];
    // Written to both sides and kept on one: no branch could foretell on which.
    *left = point;
    *right = point;
    left += is_left;
    right += !is_left;
  }
  const auto middle = static_cast<std::size_t>(left - points_.data());
  std::copy_n(right_.data(), branch.end - middle, left);
  return {middle, branch.end};
}

// Depth by depth, from left to right.
void NeighbourTree::rank(std::span<const Gsphere> atoms) {
  // Deeper branches come from atoms strung up in order, and are ranked as they come.
  constexpr std::size_t deepest = 4096;
  points_.clear();
  for (const Gsphere& atom : atoms)
    points_.push_back({{atom.x, atom.y, atom.z}, static_cast<std::int32_t>(points_.size())});
  right_.resize(atoms.size());
  order_.clear();
  std::vector<Range> branches = {{0, atoms.size()}};
  std::vector<Range> below;
  for (std::size_t depth = 0; !branches.empty(); ++depth) {
    below.clear();
    for (const Range branch : branches) {
      order_.push_back(points_[branch.begin].index);
      if (branch.end == branch.begin + 1) continue;
      const Range right = depth < deepest ? part(branch, depth % 3) : Range{branch.end, branch.end};
      if (right.begin > branch.begin + 1) below.push_back({branch.begin + 1, right.begin});
      if (right.end > right.begin) below.push_back(right);
    }
    branches.swap(below);
  }
  rank_.resize(atoms.size());
  for (std::size_t at = 0; at < order_.size(); ++at)
    rank_[static_cast<std::size_t>(order_[at])] = static_cast<std::int32_t>(at);
}

void NeighbourTree::choose_cells(std::span<const Gsphere> atoms) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  std::array<double, 3> high{-infinity, -infinity, -infinity};
  low_ = {infinity, infinity, infinity};
  largest_squared_reach_ = 0.0f;
  for (const Gsphere& atom : atoms) {
    if (atom.radius > largest_squared_reach_) largest_squared_reach_ = atom.radius;
    if (!is_finite(atom)) continue;
    const std::array<double, 3> centre = {atom.x, atom.y, atom.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low_[axis] = std::min(low_[axis], centre[axis]);
      high[axis] = std::max(high[axis], centre[axis]);
    }
  }
  // A little wider than the reach, so that rounding puts no neighbour two cells away.
  constexpr double margin = 1.001;
  const double most_cells = 4000.0 + 8.0 * static_cast<double>(atoms.size());
  for (double edge = std::max(1.0, std::sqrt(double{largest_squared_reach_}) * margin);;
       edge *= 1.5) {
    // With one before the first and one behind the last, which stay empty.
    double cells = 1.0;
    std::array<double, 3> dim{3, 3, 3};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (high[axis] > low_[axis]) dim[axis] += std::floor((high[axis] - low_[axis]) / edge);
      cells *= dim[axis];
    }
    if (cells > most_cells) continue;
    cells_per_angstrom_ = 1.0 / edge;
    for (std::size_t axis = 0; axis < 3; ++axis)
      dim_[axis] = static_cast<std::size_t>(dim[axis]);
    return;
  }
}

std::size_t NeighbourTree::cell_of(const Point& point) const {
  std::array<std::size_t, 3> cell{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double at = (double{point.at[axis]} - low_[axis]) * cells_per_angstrom_;
    cell[axis] = std::min(static_cast<std::size_t>(at) + 1, dim_[axis] - 2);
  }
  return cell[0] + dim_[0] * (cell[1] + dim_[1] * cell[2]);
}

void NeighbourTree::put_in_cells(std::span<const Gsphere> atoms) {
  const std::size_t cells = dim_[0] * dim_[1] * dim_[2];
  const auto point_at = [&](std::size_t i) {
    return Point{{atoms[i].x, atoms[i].y, atoms[i].z}, static_cast<std::int32_t>(i)};
  };
  cell_.assign(atoms.size(), cells);
  // Counts go two places up, so that after the points have gone in, each place holds its own
  // beginning.
  cell_begin_.assign(cells + 2, 0);
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    if (!is_finite(atoms[i])) continue;
    cell_[i] = cell_of(point_at(i));
    ++cell_begin_[cell_[i] + 2];
  }
  std::partial_sum(cell_begin_.begin(), cell_begin_.end(), cell_begin_.begin());
  in_cells_.resize(cell_begin_[cells + 1]);
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    if (cell_[i] != cells) in_cells_[cell_begin_[cell_[i] + 1]++] = point_at(i);
  }
}

// The atoms of a cell, those of the next, and those of three cells of each of the four rows that
// come after the cell's own, so that each pair of cells is met once.
void NeighbourTree::gather_around(std::size_t cell) {
  const std::size_t plane = dim_[0] * dim_[1];
  const auto add = [&](std::size_t first, std::size_t last) {
    around_.insert(around_.end(), in_cells_.data() + cell_begin_[first],
                   in_cells_.data() + cell_begin_[last]);
  };
  around_.clear();
  add(cell, cell + 2);
  for (const std::size_t row : {dim_[0], plane - dim_[0], plane, plane + dim_[0]})
    add(cell + row - 1, cell + row + 2);
}

// Appends the pairs in which the earlier atom reaches the later one.
void NeighbourTree::pair_with(const Point& atom, std::span<const Point> others,
                              std::span<const Gsphere> atoms) {
  if (near_.size() < others.size() + 1) near_.resize(2 * others.size() + 1);
  const float reach = largest_squared_reach_;
  Near* near = near_.data();
  for (const Point& other : others) {
    const float dx = other.at[0] - atom.at[0];
    const float dy = other.at[1] - atom.at[1];
    const float dz = other.at[2] - atom.at[2];
    const float squared = dx * dx + dy * dy + dz * dz;
    // Written always and kept or not: which atoms are near is nothing to foretell.
    *near = {squared, other.index};
    near += squared <= reach;
  }
  const auto count = static_cast<std::size_t>(near - near_.data());
  if (pairs_.size() < pair_count_ + count + 1) pairs_.resize(2 * pairs_.size() + count + 1);
  for (std::size_t k = 0; k < count; ++k) {
    const auto [squared, index] = near_[k];
    const std::int32_t later = std::max(atom.index, index);
    const std::int32_t earlier = atom.index + index - later;
    pairs_[pair_count_] = {earlier, later};
    pair_count_ += squared <= atoms[static_cast<std::size_t>(earlier)].radius;
  }
}

bool NeighbourTree::find_pairs(std::span<const Gsphere> atoms, std::size_t limit) {
  pair_count_ = 0;
  for (std::size_t at = 0; at < in_cells_.size();) {
    const std::size_t cell = cell_[static_cast<std::size_t>(in_cells_[at].index)];
    gather_around(cell);
    const std::span<const Point> around(around_);
    const std::size_t count = cell_begin_[cell + 1] - at;
    for (std::size_t k = 0; k < count; ++k) {
      pair_with(around[k], around.subspan(k + 1), atoms);
      if (pair_count_ > limit) return false;
    }
    at += count;
  }
  return true;
}

void NeighbourTree::list_pairs(std::size_t atoms) {
  found_begin_.assign(atoms + 2, 0);
  for (const Pair& pair : std::span(pairs_).first(pair_count_))
    ++found_begin_[static_cast<std::size_t>(pair.later) + 2];
  std::partial_sum(found_begin_.begin(), found_begin_.end(), found_begin_.begin());
  found_.resize(pair_count_);
  for (const Pair& pair : std::span(pairs_).first(pair_count_)) {
    found_[found_begin_[static_cast<std::size_t>(pair.later) + 1]++] =
        rank_[static_cast<std::size_t>(pair.earlier)];
  }
  for (std::size_t i = 0; i < atoms; ++i) {
    const auto begin = found_.begin() + static_cast<std::ptrdiff_t>(found_begin_[i]);
    const auto end = found_.begin() + static_cast<std::ptrdiff_t>(found_begin_[i + 1]);
    std::sort(begin, end);
    for (auto rank = begin; rank != end; ++rank)
      *rank = order_[static_cast<std::size_t>(*rank)];
  }
}

bool NeighbourTree::find(std::span<const Gsphere> atoms, std::size_t limit) {
  choose_cells(atoms);
  put_in_cells(atoms);
  if (!find_pairs(atoms, limit)) return false;
  rank(atoms);
  list_pairs(atoms.size());
  return true;
}

}  // namespace VXCore::detail
