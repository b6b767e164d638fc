// Feeds arbitrary bytes to the reader of MTZ files, and small sets of reflections on to the map.
#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t
#include <cstdlib>  // for abort
#include <new>      // for bad_alloc
#include <string>   // for string
#include <vector>   // for vector

#include "small_set.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/toolkit/names.h"

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
