// The documents of grids, and the handlers that carry grids among tagged data.
#include "vxgrid/serial/grid_json.h"

#include <algorithm>    // for any_of, find
#include <array>        // for array
#include <cmath>        // for isfinite
#include <cstdint>      // for uint64_t
#include <iterator>     // for distance
#include <limits>       // for numeric_limits
#include <memory>       // for make_unique
#include <type_traits>  // for decay_t
#include <utility>      // for move
#include <vector>       // for vector

#include "serial/grid_documents.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/core/value_buffer.h"

namespace VXCore {

namespace {

constexpr const char* document_type = "grid";
constexpr const char* document_version = "0.91";

// Decimals that are kept, of lengths and angles and of values.
constexpr int place_decimals = 5;
constexpr int place_factor = 100000;
constexpr int value_decimals = 8;

// The words of VXGridType, by its numbers.
constexpr std::array<std::string_view, 6> type_words{"Generic",    "Electrostatic", "Dorn",
                                                     "RegularMap", "DifferenceMap", "Ux"};

const JSONReservedNames& reserved_names() {
  static const JSONReservedNames names{"center", "dimensions", "gridtype", "vxhint", "resolution",
                                       "title",  "type",       "unitcell", "values", "version"};
  return names;
}

std::string_view encode_grid_type(unsigned int type) {
  if (type < type_words.size()) return type_words[type];
  VXThrow.Warning("JSON: encodeGridType: %d is not a valid value, ignored", static_cast<int>(type));
  return type_words[VXGridType::Generic];
}

unsigned int decode_grid_type(const std::string& word) {
  const auto found = std::find(type_words.begin(), type_words.end(), word);
  if (found != type_words.end())
    return static_cast<unsigned int>(std::distance(type_words.begin(), found));
  VXThrow.Warning("JSON: decodeGridType: %s is not a valid value, ignored", word.c_str());
  return VXGridType::Generic;
}

void write_cut_array(JSONWriter& writer, std::string_view key, const float* numbers,
                     std::size_t count, int decimals) {
  JSONWriteKey(writer, key);
  JSONWarnNotFinite(key, JSONWriteCutArray(writer, numbers, count, decimals));
}

void write_cut_number(JSONWriter& writer, std::string_view key, float number) {
  JSONWriteKey(writer, key);
  const bool is_finite = std::isfinite(number);
  JSONWriteNumber(writer, is_finite ? VXTruncate(number, place_factor) : 0.0);
  JSONWarnNotFinite(key, is_finite ? 0 : 1);
}

// All keys but "type". The cell is that of a skew grid.
template <class Grid>
void write_keys(JSONWriter& writer, const Grid& grid, unsigned int flags,
                const std::array<float, 6>* cell) {
  JSONWriteKey(writer, "version");
  JSONWriteText(writer, document_version);
  if (cell) write_cut_array(writer, "unitcell", cell->data(), cell->size(), place_decimals);
  if (grid.IsTitleSet()) {
    JSONWriteKey(writer, "title");
    const std::string title = grid.GetTitle();
    JSONWriteText(writer, flags & json_flags::escape_titles ? VXEscapeJSON(title) : title);
  }
  if (grid.GetType() != VXGridType::Generic) {
    JSONWriteKey(writer, "gridtype");
    JSONWriteText(writer, encode_grid_type(grid.GetType()));
  }
  std::array<float, 3> mid{};
  grid.GetMid(mid[0], mid[1], mid[2]);
  write_cut_array(writer, "center", mid.data(), mid.size(), place_decimals);
  JSONWriteKey(writer, "dimensions");
  writer.StartArray();
  for (const unsigned int dim : {grid.GetXDim(), grid.GetYDim(), grid.GetZDim()})
    writer.Uint(dim);
  writer.EndArray();
  write_cut_number(writer, "resolution", grid.GetSpacing());
  if (const float* values = grid.GetValues())
    write_cut_array(writer, "values", values, grid.GetSize(), value_decimals);
  if (flags & json_flags::generic_data) VXGenBaseDataJSON(writer, grid, flags, reserved_names());
}

template <class Grid>
void write_document(JSONWriter& writer, const Grid& grid, unsigned int flags) {
  writer.StartObject();
  JSONWriteKey(writer, "type");
  JSONWriteText(writer, document_type);
  VXGenGridJSON(writer, grid, flags);
  writer.EndObject();
}

template <class Grid>
std::string to_text(const Grid& grid, unsigned int flags) {
  JSONBuffer buffer;
  JSONWriter writer(buffer);
  write_document(writer, grid, flags);
  return {buffer.GetString(), buffer.GetSize()};
}

// The array of a key, null with its message unless it has the wanted size.
const JSONValue* find_array(const JSONValue& object, const char* key, std::uint64_t size) {
  const JSONValue* array = JSONFindKey(object, key);
  const unsigned long found = array && array->IsArray() ? array->Size() : 0;
  if (array && array->IsArray() && found == size) return array;
  VXThrow.Error("grid.%s must be an array of size %lu, got %lu instead", key,
                static_cast<unsigned long>(size), found);
  return nullptr;
}

bool read_floats(const JSONValue& object, const char* key, float* numbers, std::uint64_t count) {
  const JSONValue* array = find_array(object, key, count);
  if (!array) return false;
  const JSONValue* const begin = array->Begin();
  for (const JSONValue* element = begin; element != array->End(); ++element) {
    if (!element->IsNumber()) {
      VXThrow.Error("grid.%s[%ld] must be a number", key, static_cast<long>(element - begin));
      return false;
    }
    *numbers++ = static_cast<float>(element->GetDouble());
  }
  return true;
}

bool read_dimensions(const JSONValue& object, std::array<unsigned int, 3>& dims) {
  constexpr const char* key = "dimensions";
  const JSONValue* array = JSONFindKey(object, key);
  if (!array || !array->IsArray() || array->Size() != dims.size()) {
    VXThrow.Error("grid.%s must be an array of size %d", key, static_cast<int>(dims.size()));
    return false;
  }
  for (rapidjson::SizeType i = 0; i < dims.size(); ++i) {
    if (!(*array)[i].IsUint()) {
      VXThrow.Error("grid.%s[%d] must be an unsigned integer", key, static_cast<int>(i));
      return false;
    }
    dims[i] = (*array)[i].GetUint();
  }
  return true;
}

// The product of the dimensions, or the largest number when it is beyond that.
std::uint64_t count_of(const std::array<unsigned int, 3>& dims) {
  const std::uint64_t plane = std::uint64_t{dims[0]} * dims[1];
  if (dims[2] != 0 && plane > std::numeric_limits<std::uint64_t>::max() / dims[2])
    return std::numeric_limits<std::uint64_t>::max();
  return plane * dims[2];
}

// Grids of up to so many points have no values, and their documents no key for them.
template <class Grid>
constexpr std::uint64_t points_without_values = 0;
template <>
constexpr std::uint64_t points_without_values<VXSkewGrid> = 1;

// The values of so many points. Nothing is allocated before the document is known to have them.
template <class Grid>
bool read_values(const JSONValue& object, std::uint64_t count, ValueBuffer<float>& values) {
  if (count <= points_without_values<Grid> && !JSONFindKey(object, "values")) return true;
  if (!find_array(object, "values", count)) return false;
  values = ValueBuffer<float>::uninitialized(static_cast<std::size_t>(count));
  return read_floats(object, "values", values.data(), count);
}

// `SetValues` without the copy.
bool set_values(VXScalarGrid& grid, ValueBuffer<float>&& values) {
  return grid.AdoptValues(std::move(values));
}
bool set_values(VXSkewGrid& grid, ValueBuffer<float>&& values) {
  return grid.GetImpl().GetImpl().AdoptValues(std::move(values));
}

template <class Grid>
bool read_keys(Grid& grid, const JSONValue& object, bool with_generic_data) {
  std::string text;
  if (!JSONRequire(JSONGetText(object, "version", text), "version") ||
      !compatibleJSONVersion(text)) {
    return false;
  }
  JSONAnswer answer = JSONGetText(object, "title", text);
  if (answer == JSONAnswer::wrong) return false;
  if (answer == JSONAnswer::present) grid.SetTitle(text);
  answer = JSONGetText(object, "gridtype", text);
  if (answer == JSONAnswer::wrong) return false;
  if (answer == JSONAnswer::present) grid.SetType(decode_grid_type(text));

  float resolution = 0.0f;
  std::array<float, 3> center{};
  std::array<unsigned int, 3> dims{};
  ValueBuffer<float> values;
  if (!JSONRequire(JSONGetNumber(object, "resolution", resolution), "resolution") ||
      !read_floats(object, "center", center.data(), center.size()) ||
      !read_dimensions(object, dims) || !read_values<Grid>(object, count_of(dims), values)) {
    return false;
  }
  if (!grid.SetMid(center[0], center[1], center[2]) || !grid.SetDim(dims[0], dims[1], dims[2]) ||
      !grid.SetSpacing(resolution) || !(values.empty() || set_values(grid, std::move(values)))) {
    return false;
  }
  return !with_generic_data || VXParseBaseDataJSON(grid, object, reserved_names());
}

bool read_cell(VXSkewGrid& grid, const JSONValue& object) {
  std::array<float, 6> cell{};
  if (!read_floats(object, "unitcell", cell.data(), cell.size())) return false;
  const float spacing = grid.GetSpacing();
  grid.SetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5], grid.GetXDim(),
                   grid.GetYDim(), grid.GetZDim());
  if (grid.HasUnitCell()) return true;
  // Six zeros say that there is no cell; steps along one would be no steps.
  grid.GetImpl().SetOrientationSet(false);
  grid.SetSpacing(spacing);
  return true;
}

// A text as a document of the right type.
bool parse_document(JSONDocument& document, const std::string& text) {
  if (!JSONParseHelper(document, text)) return false;
  const JSONValue* type = JSONFindKey(document, "type");
  if (!JSONRequire(type ? JSONAnswer::present : JSONAnswer::absent, "type")) return false;
  if (type->IsString() &&
      std::string_view(type->GetString(), type->GetStringLength()) == document_type) {
    return true;
  }
  VXThrow.Warning("JSON: Top level document must be \"type\":\"%s\"", document_type);
  return false;
}

template <class T>
void attach(VXBase& object, unsigned int tag, T&& value) {
  object.AttachBaseData(
      std::make_unique<VXBaseDataT<std::decay_t<T>>>(tag, std::forward<T>(value)));
}

template <class Grid>
bool read_vector(VXBase& object, unsigned int tag, const JSONValue& array) {
  std::vector<Grid> grids;
  for (const JSONValue& document : array.GetArray()) {
    if (!detail::read_grid_document(grids.emplace_back(), document)) return false;
  }
  attach(object, tag, std::move(grids));
  return true;
}

// The value of a datum, null when it is of another type.
template <class T>
const T* value_of(const VXBaseData& datum) {
  if (datum.GetDataType() != DataTypeId<T>::get()) return nullptr;
  return &static_cast<const VXBaseDataT<T>&>(datum).GetData();
}

template <class Grid>
bool write_datum(const VXBaseData& datum, JSONWriter& writer, unsigned int flags) {
  const Grid* grid = value_of<Grid>(datum);
  if (!grid) return false;
  write_document(writer, *grid, flags);
  return true;
}

template <class Grid>
bool write_vector_datum(const VXBaseData& datum, JSONWriter& writer, unsigned int flags) {
  const auto* grids = value_of<std::vector<Grid>>(datum);
  if (!grids) return false;
  writer.StartArray();
  for (const Grid& grid : *grids)
    write_document(writer, grid, flags);
  writer.EndArray();
  return true;
}

}  // namespace

namespace detail {

void write_grid_document(JSONWriter& writer, const VXScalarGrid& grid, unsigned int flags) {
  write_document(writer, grid, flags);
}
void write_grid_document(JSONWriter& writer, const VXSkewGrid& grid, unsigned int flags) {
  write_document(writer, grid, flags);
}

bool read_grid_document(VXScalarGrid& grid, const JSONValue& document) {
  return read_keys(grid, document, true);
}
bool read_grid_document(VXSkewGrid& grid, const JSONValue& document) {
  return read_keys(grid, document, true) &&
         (!JSONFindKey(document, "unitcell") || read_cell(grid, document));
}

}  // namespace detail

std::string VXGridToJSON(const VXScalarGrid& grid, unsigned int flags) {
  return to_text(grid, flags);
}
std::string VXGridToJSON(const VXSkewGrid& grid, unsigned int flags) {
  return to_text(grid, flags);
}

void VXGenGridJSON(JSONWriter& writer, const VXScalarGrid& grid, unsigned int flags) {
  write_keys(writer, grid, flags, nullptr);
}
void VXGenGridJSON(JSONWriter& writer, const VXSkewGrid& grid, unsigned int flags) {
  std::array<float, 6> cell{};
  grid.GetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
  write_keys(writer, grid, flags, &cell);
}

bool VXJSONToGrid(VXScalarGrid& grid, const std::string& text) {
  JSONDocument document;
  if (!parse_document(document, text)) return false;
  if (JSONFindKey(document, "unitcell")) {
    VXThrow.Warning("JSON: Object not a scalargrid, has a unitcell key");
    return false;
  }
  grid.Clear();
  return read_keys(grid, document, true);
}

bool VXJSONToGrid(VXSkewGrid& grid, const std::string& text) {
  JSONDocument document;
  if (!parse_document(document, text)) return false;
  if (!JSONGetArray(document, "unitcell")) return false;
  grid.Clear();
  return read_keys(grid, document, true) && read_cell(grid, document);
}

bool VXParseGridJSON(VXScalarGrid& grid, const JSONValue& value, bool withGenericData) {
  return read_keys(grid, value, withGenericData);
}
bool VXParseGridJSON(VXSkewGrid& grid, const JSONValue& value, bool withGenericData) {
  return read_keys(grid, value, withGenericData);
}

VXScalarGridJSONHandler::VXScalarGridJSONHandler()
    : VXJSONHandlerBase(data_ids::scalar_grid, document_type) {}
VXScalarGridJSONHandler::~VXScalarGridJSONHandler() = default;

bool VXScalarGridJSONHandler::Read(VXBase& /*object*/, unsigned int /*tag*/,
                                   const JSONValue& /*value*/) const {
  VXThrow.Warning("JSON: Internal error, scalargrid Read handler called");
  return false;
}
bool VXScalarGridJSONHandler::VRead(VXBase& /*object*/, unsigned int /*tag*/,
                                    const JSONValue& /*array*/, bool /*empty*/) const {
  VXThrow.Warning("JSON: Internal error, scalargrid VRead handler called");
  return false;
}
bool VXScalarGridJSONHandler::Write(const VXBaseData& datum, JSONWriter& writer,
                                    unsigned int flags) const {
  return write_datum<VXScalarGrid>(datum, writer, flags);
}
bool VXScalarGridJSONHandler::VWrite(const VXBaseData& datum, JSONWriter& writer,
                                     unsigned int flags) const {
  return write_vector_datum<VXScalarGrid>(datum, writer, flags);
}
const char* VXScalarGridJSONHandler::GetJsonType() const {
  return "unused_grid";
}
TypeId VXScalarGridJSONHandler::GetVDataType() const {
  return data_ids::vector_scalar_grid;
}
unsigned int VXScalarGridJSONHandler::GetFlavor() const {
  return grid_json_flavor;
}

VXSkewGridJSONHandler::VXSkewGridJSONHandler() : VXJSONHandlerBase(data_ids::skew_grid) {}
VXSkewGridJSONHandler::~VXSkewGridJSONHandler() = default;

bool VXSkewGridJSONHandler::Read(VXBase& object, unsigned int tag, const JSONValue& value) const {
  if (JSONFindKey(value, "unitcell")) {
    VXSkewGrid grid;
    if (!detail::read_grid_document(grid, value)) return false;
    attach(object, tag, std::move(grid));
    return true;
  }
  VXScalarGrid grid;
  if (!detail::read_grid_document(grid, value)) return false;
  attach(object, tag, std::move(grid));
  return true;
}

bool VXSkewGridJSONHandler::VRead(VXBase& object, unsigned int tag, const JSONValue& array,
                                  bool empty) const {
  const bool any_cell = !empty && std::any_of(array.Begin(), array.End(), [](const auto& element) {
    return JSONFindKey(element, "unitcell") != nullptr;
  });
  return any_cell ? read_vector<VXSkewGrid>(object, tag, array)
                  : read_vector<VXScalarGrid>(object, tag, array);
}

bool VXSkewGridJSONHandler::Write(const VXBaseData& datum, JSONWriter& writer,
                                  unsigned int flags) const {
  return write_datum<VXSkewGrid>(datum, writer, flags);
}
bool VXSkewGridJSONHandler::VWrite(const VXBaseData& datum, JSONWriter& writer,
                                   unsigned int flags) const {
  return write_vector_datum<VXSkewGrid>(datum, writer, flags);
}
const char* VXSkewGridJSONHandler::GetJsonType() const {
  return document_type;
}
TypeId VXSkewGridJSONHandler::GetVDataType() const {
  return data_ids::vector_skew_grid;
}
unsigned int VXSkewGridJSONHandler::GetFlavor() const {
  return grid_json_flavor;
}

VXJSONHandlerBase* VXInitScalarGridJSONHandler() {
  return new VXScalarGridJSONHandler;
}
VXJSONHandlerBase* VXInitSkewGridJSONHandler() {
  return new VXSkewGridJSONHandler;
}

}  // namespace VXCore
