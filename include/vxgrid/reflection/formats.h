/// \file
/// Reading and writing reflection sets in any format, by the extension of a file name.
///
/// Nothing looks at a file's content to tell its format, and nothing is said about a failure but
/// the false result. Distinct sets may be read and written by different threads at a time.
#ifndef VXGRID_REFLECTION_FORMATS_H
#define VXGRID_REFLECTION_FORMATS_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXReflection;

/// One row of the table of reflection file formats.
struct ReflectionFormat {
  const char* extension;  ///< Without its dot; case counts.
  const char* name;       ///< For display, such as "XPLOR reflections".
  bool writable;          ///< All of them can be read.
};

/// The format that a file's extension names: "mtz", "cif", "phs", "fob", "cv", "hkl" or "vxx", a
/// "gz" behind it being looked past; null for any other.
VXGRID_API const ReflectionFormat* find_reflection_format(const std::string& filename);

/// Reads a file, gzip-compressed or not, in the format of its extension: VXReadReflectionMTZ (with
/// the default labels), VXReadReflectionCIF, VXReadReflectionPHS, VXReadReflectionXPLOR ("fob" and
/// "cv"), VXReadReflectionHKL or VXReadReflectionVXX. A set that has no title afterwards takes the
/// file name, as given, for one.
///
/// False for an unknown extension and a file that cannot be opened, the set untouched, and when the
/// format's reader fails; its declaration says what the set holds then.
VXGRID_API bool VXReadReflection(const std::string& filename, VXReflection& refl);

/// Writes a file in the format of its extension, compressed when the name ends in ".gz". False,
/// with no file made, when VXIsWritableReflection says no; false when the file cannot be made or
/// not all of it arrives.
VXGRID_API bool VXWriteReflection(const std::string& filename, VXReflection& refl);

/// True if the set has reflections with indices and the format of the extension can take them:
/// "vxx", "cv" and "fob" any set, "phs" one that has fobs, phase and fom.
VXGRID_API bool VXIsWritableReflection(const std::string& filename, const VXReflection& refl);

}  // namespace VXCore

#endif
