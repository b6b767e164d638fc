/// \file
/// Progress and warning lines, file handles and heap blocks in the style of the flat interface.
#ifndef VXGRID_TOOLKIT_LEGACY_MESSAGES_H
#define VXGRID_TOOLKIT_LEGACY_MESSAGES_H

#include <cstddef>  // for size_t
#include <cstdio>   // for FILE

#include "vxgrid/toolkit/core/export.h"

#if defined(__GNUC__) || defined(__clang__)
#define VXGRID_PRINTF_FORMAT(format_at, first_at) \
  __attribute__((format(printf, format_at, first_at)))
#else
#define VXGRID_PRINTF_FORMAT(format_at, first_at)
#endif

namespace VXBrioMol {

/// Prints a progress line in printf's manner. It goes out through VXThrow at level Info, less the
/// line end at its end, so that a program's own sink hears it. Returns the length of the text.
VXGRID_API int vx_printf(const char* format, ...) VXGRID_PRINTF_FORMAT(1, 2);

/// The same for a warning, at level Warning.
VXGRID_API int vi_warning(const char* format, ...) VXGRID_PRINTF_FORMAT(1, 2);

/// A warning whose text is finished: per cent signs in it mean nothing.
VXGRID_API void vi_warning_print(const char* text);

/// Opens a file in fopen's manner; null when that fails or an argument is null.
VXGRID_API std::FILE* vi_fopen(const char* name, const char* mode);

/// Closes it; 0 for success and for null, as fclose otherwise.
VXGRID_API int vi_fclose(std::FILE* file);

/// A plain heap block, to be given back by vx_free; null when there is no memory. A block of 0
/// bytes is valid.
VXGRID_API void* vx_malloc(std::size_t bytes);
VXGRID_API void vx_free(void* block);

}  // namespace VXBrioMol

#undef VXGRID_PRINTF_FORMAT

#endif
