// Grid documents in files, for commands that work on grids of any kind.
#include "grid_json_file.h"

#include <array>    // for array
#include <limits>   // for numeric_limits
#include <memory>   // for unique_ptr
#include <utility>  // for move

#include "vxgrid/serial/grid_json.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

using namespace VXCore;

namespace {

constexpr const char* extension = "json";

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
  if (!write_text(path, VXGridToJSON(skew, grid_json_flavor), console)) return false;
  std::array<unsigned int, 3> sampling{};
  grid.GetUnitSpacing(sampling[0], sampling[1], sampling[2]);
  if (sampling != std::array{grid.GetXDim(), grid.GetYDim(), grid.GetZDim()} ||
      grid.HasSpaceGroup()) {
    console.note(path +
                 ": a JSON document tells neither space group nor sampling; read back, the points "
                 "divide the whole cell (--spacing keeps them in their places)");
  }
  return true;
}

bool write_json_grid(const std::string& path, const VXScalarGrid& grid, const Console& console) {
  return write_text(path, VXGridToJSON(grid, grid_json_flavor), console);
}

}  // namespace vxgrid_app
