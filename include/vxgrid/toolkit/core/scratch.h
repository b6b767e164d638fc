/// \file
/// Scratch memory.
#ifndef VXGRID_TOOLKIT_CORE_SCRATCH_H
#define VXGRID_TOOLKIT_CORE_SCRATCH_H

#include <cstddef>  // for size_t

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Up to how many bytes a caller may take its scratch memory from the stack.
VXGRID_API std::size_t VXGetAllocaThreshold();
/// Scratch memory from the heap, null when there is none; `VXFreea` gives it back.
VXGRID_API void* VXMalloca(std::size_t bytes);
VXGRID_API void VXFreea(void* memory);

}  // namespace VXCore

#endif
