// Grid documents in files, for commands that work on grids of any kind.
#include "grid_json_file.h"

#include <algorithm>  // for any_of
#include <array>      // for array
#include <limits>     // for numeric_limits
#include <memory>     // for unique_ptr
#include <utility>    // for move
#include <vector>     // for vector

#include "vxgrid/serial/grid_json.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

using namespace VXCore;

namespace {

constexpr const char* extension = "json";

// What a document has no key for goes along as tagged data of these names.
constexpr const char* sampling_tag = "sampling";  // intervals along the cell edges
constexpr const char* group_tag = "spacegroup";
constexpr const char* reentrant_tag = "reentrant";

void tag_crystal(VXSkewGrid& grid) {
  std::array<unsigned int, 3> sampling{};
  grid.GetImpl().GetImpl().GetUnitSpacing(sampling[0], sampling[1], sampling[2]);
  grid.SetData(sampling_tag, std::vector<int>(sampling.begin(), sampling.end()));
  grid.SetIntData(group_tag, static_cast<int>(grid.GetSpaceGroup()));
  grid.SetIntData(reentrant_tag, static_cast<int>(grid.GetReentrant()));
}

// Leaves a document of another program, which has no such data, as it was read.
void restore_crystal(VXSkewGrid& grid) {
  std::vector<int> sampling;
  int group = 0;
  int reentrant = 0;  // bit 0 x, bit 1 y, bit 2 z
  if (!grid.GetData(sampling_tag, sampling) || sampling.size() != 3 ||
      std::any_of(sampling.begin(), sampling.end(), [](int count) { return count < 1; }))
    return;
  std::array<float, 6> cell{};
  grid.GetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
  grid.SetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5],
                   static_cast<unsigned int>(sampling[0]), static_cast<unsigned int>(sampling[1]),
                   static_cast<unsigned int>(sampling[2]));
  if (grid.GetData(group_tag, group) && group > 0)
    grid.SetSpaceGroup(static_cast<unsigned int>(group));
  grid.GetData(reentrant_tag, reentrant);
  VXBrioGrid& brio = grid.GetImpl().GetImpl();
  if (reentrant & 1) brio.SetXReentrant();
  if (reentrant & 2) brio.SetYReentrant();
  if (reentrant & 4) brio.SetZReentrant();
  for (const char* tag : {sampling_tag, group_tag, reentrant_tag})
    grid.DeleteData(tag);
}

bool write_text(const std::string& path, const std::string& text, const Console& console) {
  const std::unique_ptr<vxostream> out(VXOpenOStream(path.c_str()));
  return (out && out->write(text.data(), text.size()) == text.size() && out->close()) ||
         console.fail(path + ": cannot be written");
}

}  // namespace

bool is_json_file(const std::string& path) {
  return VXFileExtension(path) == extension;
}

bool read_json_grid(const std::string& path, VXSkewGrid& grid, const Console& console) {
  vxifstream in(path);
  std::string text;
  JSONDocument document;
  std::string type;
  in.read(text, std::numeric_limits<std::size_t>::max());
  if (!in.is_open() || !JSONParseHelper(document, text) ||
      !JSONRequire(JSONGetText(document, "type", type), "type")) {
    return console.fail(path + ": cannot be read");
  }
  // The handler tells the two classes apart.
  const VXJSONHandlerBase* handler = VXFindJSONHandler(type);
  VXBase holder;
  const unsigned int tag = VXGetTag(extension);
  if (!handler || !handler->Read(holder, tag, document))
    return console.fail(path + ": holds no grid that can be read");
  if (const auto* scalar = holder.FindDataValue<VXScalarGrid>(tag)) {
    grid = *scalar;
  } else if (const auto* skew = holder.FindDataValue<VXSkewGrid>(tag)) {
    grid = *skew;
    if (grid.HasUnitCell()) restore_crystal(grid);
  } else {
    return console.fail(path + ": holds no grid");
  }
  return true;
}

bool read_json_grid(const std::string& path, VXBrioGrid& grid, const Console& console) {
  VXSkewGrid skew;
  if (!read_json_grid(path, skew, console)) return false;
  grid = std::move(skew.GetImpl().GetImpl());
  VXCopyBaseData(grid, skew);
  return true;
}

bool write_json_grid(const std::string& path, const VXBrioGrid& grid, const Console& console) {
  if (!grid.HasUnitCell()) {
    VXScalarGrid scalar(grid.GetFloats()[0]);
    scalar.SetType(grid.GetType());
    VXCopyBaseData(scalar, grid);
    return write_json_grid(path, scalar, console);
  }
  VXSkewGrid skew{VXSkewGridImpl(grid)};
  VXCopyBaseData(skew, grid);
  return write_json_grid(path, skew, console);
}

bool write_json_grid(const std::string& path, const VXSkewGrid& grid, const Console& console) {
  VXSkewGrid tagged(grid);
  // Statistics of a map that is made stand on the grid behind it.
  VXCopyBaseData(tagged, grid.GetImpl().GetImpl());
  tag_crystal(tagged);
  return write_text(path, VXGridToJSON(tagged, grid_json_flavor), console);
}

bool write_json_grid(const std::string& path, const VXScalarGrid& grid, const Console& console) {
  return write_text(path, VXGridToJSON(grid, grid_json_flavor), console);
}

}  // namespace vxgrid_app
