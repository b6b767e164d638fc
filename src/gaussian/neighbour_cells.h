/// \file
/// The earlier atoms within reach of an atom.
#ifndef VXGRID_SRC_GAUSSIAN_NEIGHBOUR_CELLS_H
#define VXGRID_SRC_GAUSSIAN_NEIGHBOUR_CELLS_H

#include <array>    // for array
#include <cstddef>  // for size_t
#include <cstdint>  // for int32_t
#include <span>     // for span
#include <vector>   // for vector

#include "vxgrid/gaussian/gsphere.h"

namespace VXCore::detail {

/// Lists of neighbours, found through cubic cells as wide as the largest reach: an atom is held
/// against those of 27 cells, whatever the size of the molecule. Where the atoms are strewn so
/// widely that there would be many more cells than atoms, cells are wider and hold more atoms.
class NeighbourCells {
 public:
  /// The `radius` of an atom is its squared reach. An atom with a coordinate that is not finite is
  /// nobody's neighbour.
  void find(std::span<const Gsphere> atoms);

  /// The atoms j < i that have atom i within their reach, ascending; valid until the next search.
  std::span<const std::int32_t> before(std::size_t i) const {
    return {found_.data() + found_of_[i].begin, found_.data() + found_of_[i].end};
  }

 private:
  struct Entry {
    float x;
    float y;
    float z;
    float squared_reach;
    std::int32_t index;
  };

  struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  void choose_cells(std::span<const Gsphere> atoms);
  void sort(std::span<const Gsphere> atoms);
  void gather_around(std::int32_t x, std::int32_t y, std::int32_t z);
  void find_for(const Entry& atom);
  std::array<std::int32_t, 3> cell_of(const Gsphere& atom) const;
  std::size_t cell_number(std::int32_t x, std::int32_t y, std::int32_t z) const;

  std::array<double, 3> low_{};
  std::array<std::int32_t, 3> dim_{1, 1, 1};
  double cells_per_angstrom_ = 1;
  std::vector<std::size_t> cell_begin_;  // one more than cells
  std::vector<std::size_t> cell_;        // per atom
  std::vector<Entry> entries_;           // cell by cell, x fastest
  std::vector<Entry> near_;              // those of a cell and of the 26 around it
  std::vector<std::int32_t> found_;
  std::vector<Range> found_of_;  // per atom
  std::size_t found_end_ = 0;
};

}  // namespace VXCore::detail

#endif
