// Gets a density map from whatever file the user has: a map file or reflections.
#include "density_input.h"

#include <filesystem>  // for exists
#include <new>         // for bad_alloc

#include "grid_json_file.h"
#include "reflection_input.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mmcif_map.h"
#include "vxgrid/reflection/mtz.h"

namespace vxgrid_app {

using namespace VXCore;

namespace {

// The automatic search also fills in the columns of a file that lacks the weighted maps, which the
// automatic form of MakeMap would refuse.
bool make_mtz_density(const std::string& path, unsigned int type, VXSkewGrid& map) {
  VXMTZColumns columns;
  const VXMTZ mtz(path);
  mtz.AutoGetColumns(columns);
  return mtz.MakeMap(map, type, columns, /*automatic=*/false, /*check_only=*/false);
}

bool make_other_density(const std::string& path, unsigned int type, VXSkewGrid& map,
                        const Console& console) {
  VXReflection reflections;
  if (!read_reflections(path, reflections, console)) return false;
  if (!reflections.GetSymmetry())
    console.note(path + " tells no cell and space group, which a map needs");
  return make_normalized_map(reflections, type, map);
}

}  // namespace

std::vector<std::string> map_type_names() {
  return {"Fwt", "Fdelwt", "2Fo-Fc", "Fo-Fc", "Fc", "Fo", "3Fo-2Fc", "5Fo-3Fc"};
}

bool make_density(const std::string& path, const std::string& type, VXSkewGrid& map,
                  const Console& console) {
  if (!std::filesystem::exists(path)) return console.fail(path + ": no such file");
  if (!is_reflection_file(path))
    return console.fail(path + ": the extension is not that of a reflection file");
  const unsigned int map_type = VXMTZMapTypeFromString(type);
  const std::string extension = VXFileExtension(path);
  if (extension == "mtz" && !VXMTZ(path).IsValid())
    return console.fail(path + ": not an MTZ file with reflection columns");
  const bool is_made = extension == "mtz"   ? make_mtz_density(path, map_type, map)
                       : extension == "cif" ? VXReadCIFGridFile(path, map, map_type)
                                            : make_other_density(path, map_type, map, console);
  if (!is_made) return console.fail(path + ": no " + type + " map can be made from it");
  return true;
}

bool read_density(const std::string& path, const std::string& type, VXSkewGrid& map,
                  const Console& console) {
  if (is_reflection_file(path)) return make_density(path, type, map, console);
  if (is_json_file(path)) return read_json_grid(path, map, console);
  if (!VXIsReadableGrid(path))
    return console.fail(path + ": neither a grid file nor a reflection file by its extension");
  if (!VXReadGrid(path, map)) return console.fail(path + ": cannot be read as a map");
  return true;
}

}  // namespace vxgrid_app
