// Bonds from interatomic distances, with a cell list.
#include "toolkit/mol/bonds.h"

#include <algorithm>  // for lower_bound, max, sort
#include <array>      // for array
#include <cmath>      // for floor
#include <cstdint>    // for int64_t
#include <vector>     // for vector

#include "vxgrid/toolkit/mol/elements.h"
#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol::detail {
namespace {

// Covalent radii scatter by less than this (Cordero et al. 2008), and no two nuclei of a structure
// that was refined come closer than min_distance unless one of them is a ghost of the other.
constexpr float tolerance = 0.45F;
constexpr float min_distance = 0.4F;

// Positions beyond this are those of broken files.
constexpr float max_coordinate = 1e6F;

// A cell of the list is a few Angstrom wide and holds a dozen atoms at the most. Files that pile up
// more than this are not of molecules; what is too much in a cell gets no bonds, so that the search
// stays linear.
constexpr std::size_t max_cell_atoms = 64;

struct Site {
  std::int64_t cell;
  VXAtomBase* atom;
  std::array<float, 3> xyz;
  float radius;
  char alternate;
  bool hydrogen;
  bool metal;
};

// Three cell indices in one number, x fastest, so that neighbours along x have neighbouring keys.
// With max_coordinate and edges of at least 1 Angstrom an index and its neighbours fit 21 bits.
constexpr std::int64_t y_stride = std::int64_t{1} << 21;
constexpr std::int64_t z_stride = y_stride << 21;

bool can_bond(const Site& a, const Site& b) {
  if (a.hydrogen && b.hydrogen) return false;
  if (a.metal && b.metal) return false;
  return a.alternate == ' ' || b.alternate == ' ' || a.alternate == b.alternate;
}

float squared_distance(const Site& a, const Site& b) {
  const float dx = a.xyz[0] - b.xyz[0];
  const float dy = a.xyz[1] - b.xyz[1];
  const float dz = a.xyz[2] - b.xyz[2];
  return dx * dx + dy * dy + dz * dz;
}

class BondSearch {
 public:
  explicit BondSearch(VXMolBase& mol) : mol_(mol) { gather(); }

  void run() {
    for (std::size_t i = 0; i < sites_.size(); i = cell_end(i))
      search_cell(i);
    join_hydrogens();
    std::sort(pairs_.begin(), pairs_.end(), [](const Pair& a, const Pair& b) {
      return a[0]->GetIdx() != b[0]->GetIdx() ? a[0]->GetIdx() < b[0]->GetIdx()
                                              : a[1]->GetIdx() < b[1]->GetIdx();
    });
    for (const Pair& pair : pairs_)
      mol_.NewBond(pair[0], pair[1], 1);
  }

 private:
  using Pair = std::array<VXAtomBase*, 2>;
  struct Partner {
    const Site* site = nullptr;
    float squared = 0;
  };

  void gather() {
    float largest = 0;
    for (VXAtomBase* atom : mol_.GetAtoms()) {
      Site site{};
      mol_.GetCoords(atom, site.xyz.data());
      bool usable = true;
      for (const float x : site.xyz)
        usable = usable && std::abs(x) < max_coordinate;
      if (!usable) continue;
      site.atom = atom;
      site.radius = VXGetCovalentRadius(atom->GetAtomicNum());
      site.alternate = VXAtomGetResidue(atom).GetAlternateLocation();
      site.hydrogen = atom->IsHydrogen();
      site.metal = atom->IsMetal();
      largest = std::max(largest, site.radius);
      sites_.push_back(site);
    }
    const float edge = std::max(2 * largest + tolerance, 1.0F);
    for (Site& site : sites_) {
      site.cell = static_cast<std::int64_t>(std::floor(site.xyz[0] / edge)) +
                  y_stride * static_cast<std::int64_t>(std::floor(site.xyz[1] / edge)) +
                  z_stride * static_cast<std::int64_t>(std::floor(site.xyz[2] / edge));
    }
    std::sort(sites_.begin(), sites_.end(), [](const Site& a, const Site& b) {
      return a.cell != b.cell ? a.cell < b.cell : a.atom->GetIdx() < b.atom->GetIdx();
    });
    thin_out();
    nearest_.resize(mol_.GetMaxAtomIdx());
  }

  // Drops what is too much in a cell.
  void thin_out() {
    std::size_t kept = 0;
    std::size_t in_cell = 0;
    for (std::size_t i = 0; i < sites_.size(); ++i) {
      in_cell = kept > 0 && sites_[kept - 1].cell == sites_[i].cell ? in_cell + 1 : 1;
      if (in_cell <= max_cell_atoms) sites_[kept++] = sites_[i];
    }
    sites_.resize(kept);
  }

  std::size_t cell_end(std::size_t i) const {
    const std::int64_t cell = sites_[i].cell;
    while (i < sites_.size() && sites_[i].cell == cell)
      ++i;
    return i;
  }

  // Compares the sites of the cell that starts at `first` with each other and with those of the
  // cells that come later in the order, so that every pair of cells is seen once.
  void search_cell(std::size_t first) {
    const std::size_t last = cell_end(first);
    for (std::size_t i = first; i < last; ++i) {
      for (std::size_t j = i + 1; j < last; ++j)
        compare(sites_[i], sites_[j]);
    }
    const std::int64_t cell = sites_[first].cell;
    compare_with_cells(first, last, cell + 1, cell + 1);
    for (const std::int64_t row : {y_stride, z_stride - y_stride, z_stride, z_stride + y_stride}) {
      compare_with_cells(first, last, cell + row - 1, cell + row + 1);
    }
  }

  void compare_with_cells(std::size_t first, std::size_t last, std::int64_t from, std::int64_t to) {
    auto other = std::lower_bound(sites_.begin(), sites_.end(), from,
                                  [](const Site& a, std::int64_t cell) { return a.cell < cell; });
    for (; other != sites_.end() && other->cell <= to; ++other) {
      for (std::size_t i = first; i < last; ++i)
        compare(sites_[i], *other);
    }
  }

  void compare(const Site& a, const Site& b) {
    const float reach = a.radius + b.radius + tolerance;
    const float squared = squared_distance(a, b);
    if (squared > reach * reach || squared <= min_distance * min_distance || !can_bond(a, b))
      return;
    if (a.hydrogen) {
      offer(a, b, squared);
    } else if (b.hydrogen) {
      offer(b, a, squared);
    } else {
      add_pair(a.atom, b.atom);
    }
  }

  void offer(const Site& hydrogen, const Site& heavy, float squared) {
    Partner& best = nearest_[hydrogen.atom->GetIdx()];
    const bool closer =
        !best.site || squared < best.squared ||
        (squared == best.squared && heavy.atom->GetIdx() < best.site->atom->GetIdx());
    if (closer) best = {&heavy, squared};
  }

  void join_hydrogens() {
    for (const Site& site : sites_) {
      const Partner& best = nearest_[site.atom->GetIdx()];
      if (best.site) add_pair(site.atom, best.site->atom);
    }
  }

  void add_pair(VXAtomBase* a, VXAtomBase* b) {
    pairs_.push_back(a->GetIdx() < b->GetIdx() ? Pair{a, b} : Pair{b, a});
  }

  VXMolBase& mol_;
  std::vector<Site> sites_;
  std::vector<Partner> nearest_;  // of hydrogens, by atom index
  std::vector<Pair> pairs_;
};

}  // namespace

void add_bonds_by_distance(VXMolBase& mol) {
  BondSearch(mol).run();
}

}  // namespace VXMol::detail
