/// \file
/// Tagged data as JSON: handlers for the types that need one, their registry, and the walk.
///
/// A datum is a key of its object's document, its tag the key. JSON tells bool, int, float, text,
/// and arrays of int, of float and of text by itself. Every other stored type is named in one more
/// key, "vxhint", an object of tag and type: "unsigned", "double", "float3", "float6"; and "int",
/// "unsigned", "float", "double" or "text" where an array is empty; and the JSON type that reads an
/// array of documents. So documents of other origin are read without hints, and data come back with
/// their types.
#ifndef VXGRID_TOOLKIT_JSON_HANDLER_H
#define VXGRID_TOOLKIT_JSON_HANDLER_H

#include <string_view>  // for string_view
#include <vector>       // for vector

#include "vxgrid/toolkit/core/base.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/json/helpers.h"

namespace VXCore {

/// Flags of writing, in one word.
namespace json_flags {
inline constexpr unsigned int generic_data = 0x200;   ///< tagged data go along
inline constexpr unsigned int escape_titles = 0x800;  ///< titles pass through `VXEscapeJSON`
}  // namespace json_flags

/// Reads and writes the data of one type, and vectors of it, as JSON. A handler has no state that
/// changes and serves any thread.
class VXGRID_API VXJSONHandlerBase {
 public:
  /// The type of data that `Write` takes, and the JSON type of the handler that reads what this one
  /// writes, when that is another.
  explicit VXJSONHandlerBase(TypeId data_type, const char* read_type = nullptr)
      : data_type_(data_type), read_type_(read_type) {}
  VXJSONHandlerBase(const VXJSONHandlerBase&) = delete;
  VXJSONHandlerBase& operator=(const VXJSONHandlerBase&) = delete;
  virtual ~VXJSONHandlerBase();

  /// Reads one value and attaches it to the object under the tag; false when it cannot be read.
  virtual bool Read(VXBase& object, unsigned int tag, const JSONValue& value) const = 0;
  /// The same for an array, which becomes a vector. `empty` tells that the array has no element, so
  /// that only a hint chose this handler.
  virtual bool VRead(VXBase& object, unsigned int tag, const JSONValue& array,
                     bool empty) const = 0;
  /// Writes the value of a datum of this handler's type; false, and nothing written, when it has
  /// another type.
  virtual bool Write(const VXBaseData& datum, JSONWriter& writer, unsigned int flags) const = 0;
  /// Writes an array of the values of a datum that holds a vector.
  virtual bool VWrite(const VXBaseData& datum, JSONWriter& writer, unsigned int flags) const = 0;
  /// The text behind "type" by which a document finds its handler.
  virtual const char* GetJsonType() const = 0;
  /// The type of data that `VWrite` takes.
  virtual TypeId GetVDataType() const = 0;
  /// The flags with which whole documents of this type are written.
  virtual unsigned int GetFlavor() const = 0;

  TypeId GetDataType() const { return data_type_; }
  const char* GetReadType() const { return read_type_ ? read_type_ : GetJsonType(); }

 private:
  TypeId data_type_;
  const char* read_type_;
};

/// Takes over a handler made by `new` and adds it to those of this process, for good. False for
/// null, and for a second one of the same JSON type, which is deleted. Safe from any thread and
/// while libraries load.
VXGRID_API bool VXRegisterJSONHandler(VXJSONHandlerBase* handler);

/// The handler of a JSON type; null when there is none.
VXGRID_API const VXJSONHandlerBase* VXFindJSONHandler(std::string_view json_type);

/// Keys that belong to a document itself and are no tagged data.
using JSONReservedNames = std::vector<std::string_view>;

/// Writes the tagged data of an object as keys of an object that the caller has opened. A datum
/// whose tag is reserved, or whose type has no word here and no handler, is left out with a Debug
/// note. Numbers keep all their digits; what is not finite is written as 0 with a Warning.
VXGRID_API void VXGenBaseDataJSON(JSONWriter& writer, const VXBase& base, unsigned int flags,
                                  const JSONReservedNames& reserved);

/// Attaches what the keys of a document hold, but for the reserved ones. What cannot be kept is
/// left out with the Warning "JSON: generic data "%s" cannot be kept, ignored"; so are keys past
/// 10000, and objects in objects past 32. False when a handler could not read its value.
VXGRID_API bool VXParseBaseDataJSON(VXBase& base, const JSONValue& object,
                                    const JSONReservedNames& reserved);

}  // namespace VXCore

#endif
