/// \file
/// Numbers and text. Numbers are read and written in the C locale, whatever the program has set.
#ifndef VXGRID_TOOLKIT_CORE_TEXT_H
#define VXGRID_TOOLKIT_CORE_TEXT_H

#include <cstdarg>      // for va_list
#include <cstddef>      // for size_t
#include <string>       // for string
#include <string_view>  // for string_view
#include <vector>       // for vector

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Splits a text at every character that is one of the separators. With `drop_empty` runs of
/// separators count as one and none stands for an empty token; without, n separators give n + 1
/// tokens. What the vector held goes. Returns the number of tokens.
VXGRID_API std::size_t VXStringTokenize(std::vector<std::string>& tokens, std::string_view text,
                                        std::string_view separators, bool drop_empty = true);

/// \name Text to number
/// The whole text has to be one number; white space around it and a leading '+' are allowed. False,
/// and the number left as it is, for anything else and for what the type cannot hold. A number that
/// is too small for its type becomes the nearest one, zero in the end; "inf" and "nan" are numbers.
/// Of a base from 2 to 36 the letters may have either case, and base 16 may start with "0x".
/// @{
VXGRID_API bool VXStringToNumber(std::string_view text, float& number);
VXGRID_API bool VXStringToNumber(std::string_view text, double& number);
VXGRID_API bool VXStringToNumber(std::string_view text, int& number, int base = 10);
VXGRID_API bool VXStringToNumber(std::string_view text, unsigned int& number, int base = 10);
/// @}

/// A number as printf writes it with the conversion 'e', 'f', 'g', 'E' or 'G' (anything else counts
/// as 'g') and so many digits of precision; a negative precision stands for 6.
VXGRID_API std::string VXNumberToString(double number, char format, int precision);
/// A number in a base from 2 to 36, with lower-case letters; empty for another base.
VXGRID_API std::string VXNumberToString(unsigned int number, int base = 10);

/// printf into a string, always with the decimal point.
VXGRID_API std::string format_text(const char* format, ...) __attribute__((format(printf, 1, 2)));
VXGRID_API std::string format_text_v(const char* format, std::va_list arguments)
    __attribute__((format(printf, 1, 0)));

/// True when two numbers are no further apart than the tolerance; a NaN equals nothing.
VXGRID_API bool VXFloatCompare(float a, float b, float tolerance);

/// Cuts a number to the digits of a factor: trunc(value * factor) / factor. A number that has no
/// such digits to lose (beyond 2^53, not finite) comes back as it is, and so it does for factor 0.
VXGRID_API double VXTruncate(double value, int factor);

VXGRID_API bool VXIsNaN(double value);

/// The text behind the last dot of a file's name, looking past one suffix; "map" for
/// "x/y.map.gz", empty when there is none.
VXGRID_API std::string VXFileExtension(const std::string& filename,
                                       const std::string& look_past = "gz");

}  // namespace VXCore

#endif
