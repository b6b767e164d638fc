// Feeds arbitrary bytes to the reader of CCP4 maps that fills grids.
#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t
#include <cstdlib>  // for abort

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/host/streams.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  VXCore::VXThrow.SetSink([](VXCore::VXErrorLevel, const std::string&) {});
  VXHost::vxisstream in(reinterpret_cast<const char*>(data), size);
  VXCore::VXBrioGrid grid;
  if (!VXCore::VXReadGrid(in, grid, VXCore::VXGridFileType::CCP4)) return 0;
  // A short file may stand for many zeros; they would only take time.
  if (grid.GetSize() == 0) std::abort();
  if (grid.GetSize() > 100000) return 0;
  std::size_t zeros = 0;
  const float* const values = grid.GetValues();
  for (unsigned int i = 0; values && i < grid.GetSize(); ++i) {
    if (values[i] == 0.0f) ++zeros;
  }
  if (zeros > grid.GetSize()) std::abort();
  // Without a space group it would be resampled at its smallest step, however small that is.
  if (!grid.HasSpaceGroup()) return 0;
  VXHost::vxosstream out;
  VXCore::VXWriteCCP4Grid(out, grid);
  return 0;
}
