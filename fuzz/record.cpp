// Any bytes as a record, as the bytes of each field type, and as their JSON.
#include <cstddef>   // for size_t
#include <cstdint>   // for uint8_t
#include <cstdlib>   // for abort
#include <optional>  // for optional
#include <string>    // for string
#include <vector>    // for vector

#include "vxgrid/serial/grid_fields.h"
#include "vxgrid/toolkit/core/error_handler.h"

namespace {

constexpr std::uint64_t most_points = 4096;

std::uint64_t points_of(const VXCore::VXGridAbstractBase& grid) {
  return grid.GetSize();
}
template <class Grid>
std::uint64_t points_of(const std::optional<Grid>& grid) {
  return grid ? points_of(*grid) : 0;
}
template <class Element>
std::uint64_t points_of(const std::vector<Element>& grids) {
  std::uint64_t sum = 0;
  for (const Element& grid : grids)
    sum += points_of(grid);
  return sum;
}

// A small file may claim a fine lattice, of which the JSON alone would take all the time.
template <class Type, class Value>
void through_json(const VXPipe::VXBytes& bytes) {
  Value value;
  const bool is_read = Type::FromBytes(value, bytes);
  if (!is_read || points_of(value) > most_points) return;
  const std::string json = Type().BytesToJSON(bytes);
  if (json.empty() || Type().JSONToBytes(json).empty()) std::abort();
}

template <class Grid>
void as_grids(const VXPipe::VXBytes& bytes, const std::string& text) {
  through_json<VXPipe::VXFieldType<Grid>, Grid>(bytes);
  using Vector = VXPipe::VXVectorFieldType<Grid>;
  through_json<Vector, std::vector<std::optional<Grid>>>(bytes);
  VXPipe::VXFieldType<Grid>().JSONToBytes(text);
  Vector().JSONToBytes(text);
}

template <class T>
void as_plain(const VXPipe::VXBytes& bytes, const std::string& text) {
  const VXPipe::VXFieldType<T> type;
  const std::string json = type.BytesToJSON(bytes);
  if (!json.empty() && type.JSONToBytes(json).empty()) std::abort();
  type.JSONToBytes(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  VXCore::VXThrow.SetSink([](VXCore::VXErrorLevel, const std::string&) {});
  const VXPipe::VXBytes bytes(data, data + size);
  const std::string text(bytes.begin(), bytes.end());
  VXPipe::VXRecord record;
  if (record.FromBytes(bytes) && record.ToBytes() != bytes) std::abort();
  as_grids<VXCore::VXScalarGrid>(bytes, text);
  as_grids<VXCore::VXSkewGrid>(bytes, text);
  as_plain<int>(bytes, text);
  as_plain<double>(bytes, text);
  as_plain<std::string>(bytes, text);
  return 0;
}
