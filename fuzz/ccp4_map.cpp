// Feeds arbitrary bytes to the image of CCP4 map files, and what it makes of them to its writer.
#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t
#include <cstdlib>  // for abort

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/host/streams.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  VXCore::VXThrow.SetSink([](VXCore::VXErrorLevel, const std::string&) {});
  VXHost::vxisstream in(reinterpret_cast<const char*>(data), size);
  VXCore::VXCCP4Map map;
  if (!map.Read(in)) return 0;
  // A short file may stand for many zeros; they would only take time.
  if (map.GetGridSize() > 100000 || map.symmetry.size() > 1000) return 0;
  map.Dump(true);
  VXCore::VXBrioGrid grid;
  // Without a space group it would be resampled at its smallest step, however small that is.
  if (VXCore::VXCCP4ToGrid(grid, map) && grid.HasSpaceGroup()) {
    VXCore::VXCCP4Map from_grid;
    VXCore::VXGridToCCP4(from_grid, grid);
  }
  VXHost::vxosstream out;
  if (!map.Write(out)) return 0;
  // What was written reads as the same map. Symmetry records that NSYMBT does not count in full
  // would shift the values.
  VXHost::vxisstream again(out.str());
  VXCore::VXCCP4Map copy;
  if (!copy.Read(again) || copy.GetGridSize() != map.GetGridSize()) std::abort();
  return 0;
}
