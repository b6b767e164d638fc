// Which reflection sets a fuzz target makes maps of.
#ifndef VXGRID_FUZZ_SMALL_SET_H
#define VXGRID_FUZZ_SMALL_SET_H

#include <algorithm>  // for all_of
#include <cstdlib>    // for abort
#include <vector>     // for vector

#include "vxgrid/reflection/reflection.h"

/// Few reflections, and a map of no more than 100 points along an axis.
inline bool is_small(const VXCore::VXReflection& set) {
  const unsigned int n = set.GetCount();
  if (n == 0 || n > 1000) return false;
  std::vector<int> h(n), k(n), l(n);
  if (!set.GetHKL(h.data(), k.data(), l.data())) std::abort();
  const auto are_small = [](const std::vector<int>& indices) {
    return std::all_of(indices.begin(), indices.end(), [](int i) { return i > -39 && i < 39; });
  };
  return are_small(h) && are_small(k) && are_small(l);
}

#endif
