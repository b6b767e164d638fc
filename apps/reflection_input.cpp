// Gets reflections from whatever file the user has, and structure factors of a model for them.
#include "reflection_input.h"

#include <filesystem>  // for exists
#include <limits>      // for numeric_limits
#include <vector>      // for vector

#include "vxgrid/crystal/molecule_symmetry.h"
#include "vxgrid/density/sigma.h"
#include "vxgrid/reflection/formats.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mmcif_map.h"
#include "vxgrid/reflection/mtz.h"
#include "vxgrid/reflection/mtz_file.h"

namespace vxgrid_app {

using namespace VXCore;

namespace {

/// By how much the same crystal's cell may differ from file to file, Angstrom and degrees.
constexpr float cell_tolerance = 0.5f;

bool read_mtz(const std::string& path, VXReflection& reflections) {
  const VXMTZ mtz(path);
  if (!mtz.IsValid()) return false;
  VXMTZColumns columns;
  mtz.AutoGetColumns(columns);
  namespace index = VXMTZColumnIndex;
  VXMTZColumnNames names;
  names.SetColumnName(index::FP, columns.GetFobs());
  names.SetColumnName(index::FC, columns.GetFc());
  names.SetColumnName(index::PHI, columns.GetPhic());
  names.SetColumnName(index::PHIC, columns.GetPhic());
  names.SetColumnName(index::FWT, columns.GetFwt());
  names.SetColumnName(index::PHWT, columns.GetPhiwt());
  names.SetColumnName(index::DELFWT, columns.GetFdelwt());
  names.SetColumnName(index::PHDELWT, columns.GetPhidelwt());
  vxifstream in(path);
  return VXReadReflectionMTZ(in, reflections, names) && reflections.GetCount() > 0;
}

}  // namespace

bool is_reflection_file(const std::string& path) {
  return find_reflection_format(path) != nullptr;
}

bool read_reflections(const std::string& path, VXReflection& reflections, const Console& console) {
  if (!std::filesystem::exists(path)) return console.fail(path + ": no such file");
  const std::string extension = VXFileExtension(path);
  bool is_read = false;
  if (extension == "cif") {
    const std::string converted = VXFileTempDirectory("") + "/convert.mtz";
    is_read = vx_cif_to_mtz(path, converted, true) && read_mtz(converted, reflections);
  } else if (extension == "mtz") {
    is_read = read_mtz(path, reflections);
  } else {
    is_read = VXReadReflection(path, reflections);
  }
  if (!is_read) return console.fail(path + ": its reflections cannot be read");
  if (reflections.GetCount() == 0 || !reflections.GetImpl()->has_indices())
    return console.fail(path + ": holds no reflections");
  return true;
}

bool calculate_structure_factors(VXReflection& reflections, const VXMolBase& model,
                                 const Console& console) {
  VXGraphMol tagged(model);
  VXXtal::VXSymmetry of_model;
  const bool model_tells =
      VXXtal::VXSetXtalSymmetryFromPDBData(tagged) && VXXtal::VXGetXtalSymmetry(tagged, of_model);
  const VXXtal::VXSymmetry symmetry = reflections.GetSymmetry();
  if (!symmetry || !symmetry.cell().isValid()) {
    if (!model_tells)
      return console.fail("neither the reflections nor the model tell a cell and space group");
    reflections.SetSymmetry(of_model);
    console.note("cell and space group are those of the model");
  } else if (model_tells && !symmetry.cell().equalsCell(of_model.cell(), cell_tolerance)) {
    console.note("the model has another cell than the reflections, whose cell is used");
  }
  VXGraphMol heavy(model);
  VXSuppressHydrogens(heavy, false, false, true);
  if (heavy.NumAtoms() < model.NumAtoms())
    console.note(format_text("%u hydrogens left out", model.NumAtoms() - heavy.NumAtoms()));
  if (!reflections.SFCalc(heavy))
    return console.fail("the structure factors of the model cannot be calculated");
  return true;
}

bool make_normalized_map(VXReflection& reflections, unsigned int type, VXSkewGrid& map) {
  reflections.Expand();
  if (!reflections.MakeMap(map, type)) return false;
  VXSigmaNormalizeGrid(map);
  return true;
}

bool make_model_map(const std::string& path, const std::string& type, const VXMolBase& model,
                    VXSkewGrid& map, const Console& console) {
  VXReflection reflections;
  if (!read_reflections(path, reflections, console)) return false;
  const unsigned int n = reflections.GetCount();
  const auto map_type = static_cast<int>(VXMTZMapTypeFromString(type));
  std::vector<bool> is_in_map(n);
  for (unsigned int i = 0; i < n; ++i) {
    float a = 0, b = 0;
    is_in_map[i] = reflections.GetImpl()->GetAB(a, b, i, map_type);
  }
  if (!calculate_structure_factors(reflections, model, console)) return false;
  std::vector<float> amplitudes(n);
  reflections.GetFcalc(amplitudes.data());
  for (unsigned int i = 0; i < n; ++i) {
    if (!is_in_map[i]) amplitudes[i] = std::numeric_limits<float>::quiet_NaN();
  }
  reflections.SetFcalc(amplitudes.data(), n);
  return make_normalized_map(reflections, VXMTZMapType::Fc, map) ||
         console.fail(path + ": no map of the model's structure factors can be made");
}

}  // namespace vxgrid_app
