/// \file
/// The earlier atoms within reach of an atom, in the order of a k-d tree.
#ifndef VXGRID_SRC_GAUSSIAN_NEIGHBOUR_TREE_H
#define VXGRID_SRC_GAUSSIAN_NEIGHBOUR_TREE_H

#include <array>    // for array
#include <cstddef>  // for size_t
#include <cstdint>  // for int32_t
#include <span>     // for span
#include <vector>   // for vector

#include "vxgrid/gaussian/gsphere.h"

namespace VXCore::detail {

/// Lists of neighbours. Their order is that in which a breadth-first walk comes upon them in a k-d
/// tree that the atoms were put into one after the other: axes x, y, z in turn by depth, from x at
/// the root, and to the left of a node what is not above its coordinate.
///
/// Nothing balances such a tree: for each neighbour that it finds, a search through it looks at
/// dozens of nodes, the more the larger the molecule. So the tree gives the order alone, and the
/// search goes through cubic cells as wide as the largest reach: an atom is held against those in
/// the cells around it, whatever the size of the molecule. Where the atoms are strewn so widely
/// that there would be many more cells than atoms, cells are wider and hold more atoms.
class NeighbourTree {
 public:
  /// The `radius` of an atom is its squared reach. An atom with a coordinate that is not finite is
  /// nobody's neighbour. False, with no lists, when these would hold more than `limit` in all.
  bool find(std::span<const Gsphere> atoms, std::size_t limit);

  /// The atoms j < i that have atom i within their reach; valid until the next search.
  std::span<const std::int32_t> before(std::size_t i) const {
    return {found_.data() + found_begin_[i], found_.data() + found_begin_[i + 1]};
  }

 private:
  struct Point {
    std::array<float, 3> at;
    std::int32_t index;
  };

  struct Range {
    std::size_t begin;
    std::size_t end;
  };

  struct Near {
    float squared_distance;
    std::int32_t index;
  };

  struct Pair {
    std::int32_t earlier;
    std::int32_t later;
  };

  void rank(std::span<const Gsphere> atoms);
  Range part(Range branch, std::size_t axis);
  void choose_cells(std::span<const Gsphere> atoms);
  std::size_t cell_of(const Point& point) const;
  void put_in_cells(std::span<const Gsphere> atoms);
  void gather_around(std::size_t cell);
  void pair_with(const Point& atom, std::span<const Point> others, std::span<const Gsphere> atoms);
  bool find_pairs(std::span<const Gsphere> atoms, std::size_t limit);
  void list_pairs(std::size_t atoms);

  std::vector<std::int32_t> rank_;   // per atom, from 0 in the order of the walk
  std::vector<std::int32_t> order_;  // atoms by rank
  std::vector<Point> points_;        // branch by branch
  std::vector<Point> right_;         // of the branch that is being parted

  std::array<double, 3> low_{};
  std::array<std::size_t, 3> dim_{};
  double cells_per_angstrom_ = 1;
  float largest_squared_reach_ = 0;
  std::vector<std::size_t> cell_;        // per atom
  std::vector<std::size_t> cell_begin_;  // one more than cells
  std::vector<Point> in_cells_;          // cell by cell, x fastest

  std::vector<Point> around_;  // a cell, and the cells after it that touch it
  std::vector<Near> near_;     // those within the largest reach of one atom
  std::vector<Pair> pairs_;
  std::size_t pair_count_ = 0;
  std::vector<std::size_t> found_begin_;  // one more than atoms
  std::vector<std::int32_t> found_;
};

}  // namespace VXCore::detail

#endif
