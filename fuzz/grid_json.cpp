// Any bytes as grid documents; what is read has to be written as a document that reads again.
#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t
#include <cstdlib>  // for abort
#include <string>   // for string

#include "vxgrid/serial/grid_json.h"
#include "vxgrid/toolkit/core/error_handler.h"

namespace {

template <class Grid>
void read_and_write(const std::string& text) {
  Grid grid;
  if (!VXCore::VXJSONToGrid(grid, text)) return;
  const std::string written = VXCore::VXGridToJSON(grid, VXCore::grid_json_flavor);
  Grid again;
  if (!VXCore::VXJSONToGrid(again, written)) std::abort();
  if (again.GetSize() != grid.GetSize()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  VXCore::VXThrow.SetSink([](VXCore::VXErrorLevel, const std::string&) {});
  const std::string text(reinterpret_cast<const char*>(data), size);
  read_and_write<VXCore::VXScalarGrid>(text);
  read_and_write<VXCore::VXSkewGrid>(text);
  return 0;
}
