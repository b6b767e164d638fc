/// \file
/// Feeds arbitrary bytes to the reader of legacy binary grid files.
#include <sys/mman.h>  // for memfd_create
#include <unistd.h>    // for close, ftruncate, pwrite

#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t
#include <cstdlib>  // for abort
#include <string>   // for string, to_string

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/legacy_file.h"
#include "vxgrid/toolkit/core/error_handler.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const int file = memfd_create("legacy_grid", 0);
  static const std::string name = "/proc/self/fd/" + std::to_string(file);
  VXCore::VXThrow.SetLevel(VXCore::VXErrorLevel::Error);
  if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) {
    std::abort();
  }

  VXCore::GridStruct grid;
  if (VXCore::vi_read_grid(0, &grid, name.c_str()) != 1) return 0;
  // Both ends of every buffer have to be there.
  const std::size_t count = static_cast<std::size_t>(grid.xdim) *
                            static_cast<std::size_t>(grid.ydim) *
                            static_cast<std::size_t>(grid.zdim);
  if (grid.floats) grid.floats[0] = grid.floats[count - 1] = 1.0f;
  if (grid.integers) grid.integers[0] = grid.integers[count - 1] = 1;
  VXCore::vx_deallocate_grid_struct(grid, true, true);
  return 0;
}
