// Scratch memory.
#include "vxgrid/toolkit/core/scratch.h"

#include <cstdlib>  // for malloc, free

namespace VXCore {

std::size_t VXGetAllocaThreshold() {
  return std::size_t{16} * 1024;
}
void* VXMalloca(std::size_t bytes) {
  return std::malloc(bytes);
}
void VXFreea(void* memory) {
  std::free(memory);
}

}  // namespace VXCore
