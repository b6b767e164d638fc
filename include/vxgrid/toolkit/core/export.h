/// \file
/// The one macro that puts a name on the shared library's border.
#ifndef VXGRID_TOOLKIT_CORE_EXPORT_H
#define VXGRID_TOOLKIT_CORE_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
/// Marks a class or function as visible to callers; everything else stays hidden in the library.
#define VXGRID_API __attribute__((visibility("default")))
#else
#define VXGRID_API
#endif

#endif
