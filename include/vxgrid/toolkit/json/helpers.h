/// \file
/// JSON documents through RapidJSON: writing texts and numbers, parsing, and asking for keys.
///
/// This is the one header that shows RapidJSON, and is not among those of `toolkit/names.h`.
#ifndef VXGRID_TOOLKIT_JSON_HELPERS_H
#define VXGRID_TOOLKIT_JSON_HELPERS_H

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstddef>      // for size_t
#include <string>       // for string
#include <string_view>  // for string_view

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

using JSONBuffer = rapidjson::GenericStringBuffer<rapidjson::UTF8<>>;
using JSONWriter = rapidjson::Writer<JSONBuffer>;
using JSONDocument = rapidjson::Document;
using JSONValue = rapidjson::Value;

/// Parses one document of any depth without recursion. Numbers of up to 15 digits are exact, longer
/// ones right to three units in the last place of a double. False, with the Warning "JSON: parse
/// error at offset %lu: %s", for a text that is none.
VXGRID_API bool JSONParseHelper(JSONDocument& document, const std::string& text);

/// True for a version that this library reads: two whole numbers and a dot between, not above
/// "0.91". Otherwise false, with the Warning "JSON: version %s is not supported".
VXGRID_API bool compatibleJSONVersion(std::string_view version);

/// A text as it stands between the quotes of a JSON string (RFC 8259, section 7): quote, backslash
/// and control characters are escaped. For texts that whoever parses the document pastes into
/// another; the writer escapes on its own account, so that parsing gives the escaped text.
VXGRID_API std::string VXEscapeJSON(std::string_view text);

/// \name Writing
/// @{
/// A key or a text in an object that the caller has opened. Bytes that are not UTF-8 are replaced
/// by U+FFFD, so that the document is one for every parser.
VXGRID_API void JSONWriteKey(JSONWriter& writer, std::string_view key);
VXGRID_API void JSONWriteText(JSONWriter& writer, std::string_view text);
/// The number with the fewest digits that gives the same float back. What is not finite is written
/// as 0; false then, without a message.
VXGRID_API bool JSONWriteNumber(JSONWriter& writer, float number);
/// The same for a double.
VXGRID_API bool JSONWriteNumber(JSONWriter& writer, double number);
/// An array of numbers cut, not rounded, behind so many decimals, 0 to 9: those of `VXTruncate`
/// with the factor 10^decimals. What is not finite is written as 0; returns how many such there
/// were, without a message.
VXGRID_API std::size_t JSONWriteCutArray(JSONWriter& writer, const float* numbers,
                                         std::size_t count, int decimals);
/// The Warning "JSON: "%s": %lu not finite, written as 0", unless the count is 0.
VXGRID_API void JSONWarnNotFinite(std::string_view key, std::size_t count);
/// @}

/// \name Asking for a key of an object
/// @{
/// Null when the value is no object or has no such key.
VXGRID_API const JSONValue* JSONFindKey(const JSONValue& object, std::string_view key);

/// What asking for a key came to.
enum class JSONAnswer {
  absent,  ///< there is no such key
  wrong,   ///< it has another type; a Warning has been given
  present  ///< the output is set
};

/// A text, which may hold zero bytes. Of another type: Warning "JSON: key "%s" must be a text".
VXGRID_API JSONAnswer JSONGetText(const JSONValue& object, std::string_view key, std::string& text);
/// Any number, in single precision. Of another type: Warning "JSON: key "%s" must be a number".
VXGRID_API JSONAnswer JSONGetNumber(const JSONValue& object, std::string_view key, float& number);
/// True when the answer is `present`; an absent key gives the Warning "JSON: key "%s" is missing".
VXGRID_API bool JSONRequire(JSONAnswer answer, std::string_view key);
/// An array that has to be there; null, with the Warning "JSON: key "%s" is missing" or "JSON: key
/// "%s" must be an array", when it is not.
VXGRID_API const JSONValue* JSONGetArray(const JSONValue& object, std::string_view key);
/// @}

}  // namespace VXCore

#endif
