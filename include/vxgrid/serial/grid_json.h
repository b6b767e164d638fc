/// \file
/// Grids as JSON documents.
///
/// A document is one object of "type" (the text "grid"), "version" ("0.91"), "unitcell" (a, b, c,
/// alpha, beta, gamma in Angstrom and degrees; of skew grids only), "title" (if one is set),
/// "gridtype" (a word, if the type is not 0), "center" and "resolution" (mid and spacing in
/// Angstrom), "dimensions", "values" (x fastest, if there are any) and the tagged data. Numbers are
/// cut, not rounded: centre, resolution and cell at 1e-5, values at 1e-8; a value that is not a
/// finite number is written as 0 with a Warning.
///
/// A document tells neither space group nor sampling: a skew grid comes back with its dimensions as
/// unit spacings.
#ifndef VXGRID_SERIAL_GRID_JSON_H
#define VXGRID_SERIAL_GRID_JSON_H

#include <string>  // for string

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/json/handler.h"

namespace VXCore {

/// The flags with which grids are written inside of other data and in records; they take tagged
/// data along.
inline constexpr unsigned int grid_json_flavor = 17303;

/// The whole document. Of the flags, 0x200 adds the tagged data and 0x800 passes the title through
/// `VXEscapeJSON`.
VXGRID_API std::string VXGridToJSON(const VXScalarGrid& grid, unsigned int flags);
VXGRID_API std::string VXGridToJSON(const VXSkewGrid& grid, unsigned int flags);

/// The keys after "type", into an object that the caller has opened. A type without a word gives
/// the Warning "JSON: encodeGridType: %d is not a valid value, ignored" and counts as "Generic".
VXGRID_API void VXGenGridJSON(JSONWriter& writer, const VXScalarGrid& grid, unsigned int flags);
VXGRID_API void VXGenGridJSON(JSONWriter& writer, const VXSkewGrid& grid, unsigned int flags);

/// Clears the grid and reads a document with its tagged data. False, with a message, when the text
/// is no JSON, its "type" is not "grid", a key is missing or not what it has to be, or when
/// "unitcell" is there for a scalar grid or missing for a skew grid; the grid then has what was
/// read before.
VXGRID_API bool VXJSONToGrid(VXScalarGrid& grid, const std::string& text);
VXGRID_API bool VXJSONToGrid(VXSkewGrid& grid, const std::string& text);

/// Reads the keys of a parsed object but "type" and "unitcell". "values" may be missing where
/// a grid of these dimensions has none: no points, or of a skew grid a single one. Messages of
/// arrays are Errors: "grid.%s must be an array of size %d, got %d instead" and "grid.%s[%d] must
/// be a number", "grid.%s must be an array of size %d" and "grid.%s[%d] must be an unsigned
/// integer".
VXGRID_API bool VXParseGridJSON(VXScalarGrid& grid, const JSONValue& value, bool withGenericData);
VXGRID_API bool VXParseGridJSON(VXSkewGrid& grid, const JSONValue& value, bool withGenericData);

/// Writes scalar grids among tagged data. Documents of type "grid" are all read by the handler of
/// skew grids; `Read` and `VRead` here warn and fail.
class VXGRID_API VXScalarGridJSONHandler : public VXJSONHandlerBase {
 public:
  VXScalarGridJSONHandler();
  ~VXScalarGridJSONHandler() override;
  bool Read(VXBase& object, unsigned int tag, const JSONValue& value) const override;
  bool VRead(VXBase& object, unsigned int tag, const JSONValue& array, bool empty) const override;
  bool Write(const VXBaseData& datum, JSONWriter& writer, unsigned int flags) const override;
  bool VWrite(const VXBaseData& datum, JSONWriter& writer, unsigned int flags) const override;
  /// "unused_grid"
  const char* GetJsonType() const override;
  TypeId GetVDataType() const override;
  unsigned int GetFlavor() const override;
};

/// Writes skew grids among tagged data, and reads grids of both classes: a document with "unitcell"
/// is a skew grid, one without a scalar grid; an array with one such document is a vector of skew
/// grids.
class VXGRID_API VXSkewGridJSONHandler : public VXJSONHandlerBase {
 public:
  VXSkewGridJSONHandler();
  ~VXSkewGridJSONHandler() override;
  bool Read(VXBase& object, unsigned int tag, const JSONValue& value) const override;
  bool VRead(VXBase& object, unsigned int tag, const JSONValue& array, bool empty) const override;
  bool Write(const VXBaseData& datum, JSONWriter& writer, unsigned int flags) const override;
  bool VWrite(const VXBaseData& datum, JSONWriter& writer, unsigned int flags) const override;
  /// "grid"
  const char* GetJsonType() const override;
  TypeId GetVDataType() const override;
  unsigned int GetFlavor() const override;
};

/// A handler each, on the heap, the caller's to delete or to register. The library registers one of
/// each when it is loaded.
VXGRID_API VXJSONHandlerBase* VXInitScalarGridJSONHandler();
VXGRID_API VXJSONHandlerBase* VXInitSkewGridJSONHandler();

}  // namespace VXCore

#endif
