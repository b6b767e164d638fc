// Feeds arbitrary bytes to the reader of MTZ files, and small sets of reflections on to the map.
#include <algorithm>  // for all_of
#include <cstddef>    // for size_t
#include <cstdint>    // for uint8_t
#include <cstdlib>    // for abort
#include <new>        // for bad_alloc
#include <string>     // for string
#include <vector>     // for vector

#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/toolkit/names.h"

namespace {

// Few reflections, and a map of no more than 100 points along an axis.
bool is_small(const VXCore::VXReflection& set) {
  const unsigned int n = set.GetCount();
  if (n == 0 || n > 1000) return false;
  std::vector<int> h(n), k(n), l(n);
  if (!set.GetHKL(h.data(), k.data(), l.data())) std::abort();
  const auto are_small = [](const std::vector<int>& indices) {
    return std::all_of(indices.begin(), indices.end(), [](int i) { return i > -39 && i < 39; });
  };
  return are_small(h) && are_small(k) && are_small(l);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace VXCore;
  VXThrow.SetSink([](VXErrorLevel, const std::string&) {});
  const char* const bytes = reinterpret_cast<const char*>(data);

  vxisstream inventory(bytes, size);
  std::vector<std::string> names;
  std::vector<char> types;
  const bool has_columns = VXGetMTZFileColumnNamesAndTypes(inventory, names, types);
  if (has_columns == names.empty() || names.size() != types.size()) std::abort();

  VXReflection set;
  try {
    vxisstream in(bytes, size);
    if (!VXReadReflectionMTZ(in, set, VXMTZColumnNames())) {
      if (set.GetCount() != 0) std::abort();
      return 0;
    }
  } catch (const std::bad_alloc&) {
    return 0;
  }
  if (!is_small(set)) return 0;
  set.CalcResolution();
  set.Sort();
  set.Expand();
  if (!is_small(set)) return 0;
  for (unsigned int maptype = VXMTZMapType::Fo; maptype <= VXMTZMapType::Fdelwt; ++maptype) {
    VXSkewGrid grid;
    if (set.MakeMap(grid, maptype) && grid.GetSize() < 27) std::abort();
  }
  return 0;
}
