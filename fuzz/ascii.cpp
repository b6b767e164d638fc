// Any bytes as Ascii grids, through the reader that VXReadGrid takes for them.
#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/host/streams.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  VXCore::VXThrow.SetSink([](VXCore::VXErrorLevel, const std::string&) {});
  VXHost::vxisstream in(reinterpret_cast<const char*>(data), size);
  VXCore::VXBrioGrid grid;
  VXCore::VXReadGrid(in, grid, VXCore::VXGridFileType::Ascii);
  return 0;
}
