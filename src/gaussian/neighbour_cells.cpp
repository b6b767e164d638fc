// Cells by counting sort, and the search through them cell by cell.
#include "gaussian/neighbour_cells.h"

#include <algorithm>  // for max, min, sort
#include <cmath>      // for isfinite, sqrt
#include <cstddef>    // for ptrdiff_t
#include <limits>     // for numeric_limits

namespace VXCore::detail {

namespace {

bool is_finite(const Gsphere& atom) {
  return std::isfinite(atom.x) && std::isfinite(atom.y) && std::isfinite(atom.z);
}

std::array<double, 3> centre_of(const Gsphere& atom) {
  return {atom.x, atom.y, atom.z};
}

}  // namespace

void NeighbourCells::choose_cells(std::span<const Gsphere> atoms) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  std::array<double, 3> high{-infinity, -infinity, -infinity};
  low_ = {infinity, infinity, infinity};
  float squared = 0.0f;
  for (const Gsphere& atom : atoms) {
    if (atom.radius > squared) squared = atom.radius;
    if (!is_finite(atom)) continue;
    const std::array<double, 3> centre = centre_of(atom);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low_[axis] = std::min(low_[axis], centre[axis]);
      high[axis] = std::max(high[axis], centre[axis]);
    }
  }
  // A little wider than the reach, so that rounding puts no neighbour two cells away.
  constexpr double margin = 1.001;
  const double most_cells = 1000.0 + 4.0 * static_cast<double>(atoms.size());
  for (double edge = std::max(1.0, std::sqrt(double{squared}) * margin);; edge *= 1.5) {
    double cells = 1.0;
    std::array<double, 3> dim{1, 1, 1};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (high[axis] > low_[axis]) dim[axis] += (high[axis] - low_[axis]) / edge;
      cells *= dim[axis];
    }
    if (cells > most_cells) continue;
    cells_per_angstrom_ = 1.0 / edge;
    for (std::size_t axis = 0; axis < 3; ++axis)
      dim_[axis] = static_cast<std::int32_t>(dim[axis]);
    return;
  }
}

std::array<std::int32_t, 3> NeighbourCells::cell_of(const Gsphere& atom) const {
  const std::array<double, 3> centre = centre_of(atom);
  std::array<std::int32_t, 3> cell{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double at = (centre[axis] - low_[axis]) * cells_per_angstrom_;
    cell[axis] = std::min(static_cast<std::int32_t>(at), dim_[axis] - 1);
  }
  return cell;
}

std::size_t NeighbourCells::cell_number(std::int32_t x, std::int32_t y, std::int32_t z) const {
  return static_cast<std::size_t>(x) +
         static_cast<std::size_t>(dim_[0]) *
             (static_cast<std::size_t>(y) +
              static_cast<std::size_t>(dim_[1]) * static_cast<std::size_t>(z));
}

void NeighbourCells::sort(std::span<const Gsphere> atoms) {
  choose_cells(atoms);
  const std::size_t cells = cell_number(0, 0, dim_[2]);
  cell_.assign(atoms.size(), cells);
  // Counts go two places up, so that after the entries have gone in, each place holds its own
  // beginning.
  cell_begin_.assign(cells + 2, 0);
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    if (!is_finite(atoms[i])) continue;
    const auto [x, y, z] = cell_of(atoms[i]);
    cell_[i] = cell_number(x, y, z);
    ++cell_begin_[cell_[i] + 2];
  }
  for (std::size_t c = 2; c < cells + 2; ++c)
    cell_begin_[c] += cell_begin_[c - 1];
  entries_.resize(cell_begin_[cells + 1]);
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    if (cell_[i] == cells) continue;
    const Gsphere& atom = atoms[i];
    entries_[cell_begin_[cell_[i] + 1]++] = {atom.x, atom.y, atom.z, atom.radius,
                                             static_cast<std::int32_t>(i)};
  }
}

void NeighbourCells::gather_around(std::int32_t x, std::int32_t y, std::int32_t z) {
  near_.clear();
  for (std::int32_t k = std::max(z - 1, 0); k <= std::min(z + 1, dim_[2] - 1); ++k) {
    for (std::int32_t j = std::max(y - 1, 0); j <= std::min(y + 1, dim_[1] - 1); ++j) {
      const std::size_t first = cell_begin_[cell_number(std::max(x - 1, 0), j, k)];
      const std::size_t last = cell_begin_[cell_number(std::min(x + 1, dim_[0] - 1), j, k) + 1];
      near_.insert(near_.end(), entries_.begin() + static_cast<std::ptrdiff_t>(first),
                   entries_.begin() + static_cast<std::ptrdiff_t>(last));
    }
  }
}

void NeighbourCells::find_for(const Entry& atom) {
  const std::size_t begin = found_end_;
  if (found_.size() < begin + near_.size() + 1) found_.resize(2 * found_.size() + near_.size() + 1);
  std::int32_t* found = found_.data() + begin;
  for (const Entry& other : near_) {
    const float dx = other.x - atom.x;
    const float dy = other.y - atom.y;
    const float dz = other.z - atom.z;
    // Written always and kept or not: which atoms are near is nothing to foretell.
    *found = other.index;
    found += (dx * dx + dy * dy + dz * dz <= other.squared_reach) & (other.index < atom.index);
  }
  std::sort(found_.data() + begin, found);
  found_end_ = static_cast<std::size_t>(found - found_.data());
  found_of_[static_cast<std::size_t>(atom.index)] = {begin, found_end_};
}

void NeighbourCells::find(std::span<const Gsphere> atoms) {
  sort(atoms);
  found_of_.assign(atoms.size(), {});
  found_end_ = 0;
  for (std::int32_t z = 0; z < dim_[2]; ++z) {
    for (std::int32_t y = 0; y < dim_[1]; ++y) {
      for (std::int32_t x = 0; x < dim_[0]; ++x) {
        const std::size_t cell = cell_number(x, y, z);
        if (cell_begin_[cell] == cell_begin_[cell + 1]) continue;
        gather_around(x, y, z);
        for (std::size_t at = cell_begin_[cell]; at < cell_begin_[cell + 1]; ++at)
          find_for(entries_[at]);
      }
    }
  }
}

}  // namespace VXCore::detail
