// vxgrid info: what a grid, map, reflection or model file holds.
#include <array>       // for array
#include <filesystem>  // for exists
#include <memory>      // for unique_ptr

#include <CLI/CLI.hpp>

#include "command.h"
#include "grid_file.h"
#include "grid_json_file.h"
#include "model_file.h"
#include "reflection_input.h"
#include "vxgrid/crystal/molecule_symmetry.h"
#include "vxgrid/crystal/space_groups.h"
#include "vxgrid/density/resolution.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/reflection/formats.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

std::string cell_text(float a, float b, float c, float alpha, float beta, float gamma) {
  return format_text("%.3f %.3f %.3f A, %.2f %.2f %.2f degrees", a, b, c, alpha, beta, gamma);
}

std::string group_text(unsigned int number) {
  const int row = number == 0 ? -1 : find_space_group(number);
  std::string text = std::to_string(number);
  if (row >= 0) text += std::string(" (") + sglib[row].long_name + ")";
  return text;
}

void describe_values(std::ostream& out, const VXBrioGrid& grid) {
  if (!grid.GetValues()) return;
  const ValueStatistics statistics = measure(grid.GetValues(), grid.GetSize());
  line(out, "Values",
       format_text("min %.5g, max %.5g, mean %.5g, rms deviation %.5g", statistics.lowest,
                   statistics.highest, statistics.mean, statistics.deviation));
}

bool describe_grid(const std::string& path, const Console& console) {
  VXBrioGrid grid;
  if (!read_any_grid(path, grid, console)) return false;
  std::ostream& out = console.out;
  line(out, "Format",
       is_json_file(path)
           ? "JSON grid document"
           : VXGetGridFormatString(VXGetGridFileType(VXGetFileExtension(path.c_str()))));
  if (!grid.GetTitle().empty()) line(out, "Title", grid.GetTitle());
  line(out, "Points", format_text("%u x %u x %u", grid.GetXDim(), grid.GetYDim(), grid.GetZDim()));
  line(out, "Spacing",
       format_text("%.5f A%s", grid.GetSpacing(),
                   grid.IsRegular() ? "" : " (the smallest of the three axes)"));
  line(out, "Centre",
       format_text("%.4f %.4f %.4f A", grid.GetXMid(), grid.GetYMid(), grid.GetZMid()));
  if (grid.HasSpaceGroup() || grid.GetReentrant() != 0) {
    std::array<float, 6> cell{};
    grid.GetUnitCell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]);
    line(out, "Cell", cell_text(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]));
    std::array<unsigned int, 3> sampling{};
    grid.GetUnitSpacing(sampling[0], sampling[1], sampling[2]);
    line(out, "Sampling",
         format_text("%u %u %u intervals along the cell edges", sampling[0], sampling[1],
                     sampling[2]));
    line(out, "Space group", group_text(grid.GetSpaceGroup()));
  }
  describe_values(out, grid);
  if (grid.HasData("ARMS"))
    line(out, "File says",
         format_text("min %.5f, max %.5f, mean %.5f, rms deviation %.5f", grid.GetFloatData("AMIN"),
                     grid.GetFloatData("AMAX"), grid.GetFloatData("AMEAN"),
                     grid.GetFloatData("ARMS")));
  return true;
}

struct CloseStream {
  void operator()(vxistream* stream) const { VXCloseIStream(stream); }
};

void describe_crystal(std::ostream& out, const VXReflection& reflections) {
  const VXXtal::VXSymmetry symmetry = reflections.GetSymmetry();
  const VXXtal::VXUnitCell& cell = symmetry.cell();
  line(out, "Cell", cell_text(cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma));
  line(out, "Space group", group_text(symmetry.GetNumber()));
  if (reflections.GetResolution() > 0)
    line(out, "Resolution", format_text("%.2f A", reflections.GetResolution()));
}

bool describe_reflections(const std::string& path, const Console& console) {
  VXReflection reflections;
  if (!read_reflections(path, reflections, console)) return false;
  line(console.out, "Format", find_reflection_format(path)->name);
  line(console.out, "Reflections", std::to_string(reflections.GetCount()));
  if (reflections.GetSymmetry()) describe_crystal(console.out, reflections);
  return true;
}

/// Whether an mmCIF file holds reflections and no model, told by what comes first.
bool holds_reflections(const std::string& path) {
  vxifstream in(path);
  for (std::string text; in.getline(text);) {
    if (text.rfind("_refln.", 0) == 0) return true;
    if (text.rfind("_atom_site.", 0) == 0) return false;
  }
  return false;
}

bool describe_mtz(const std::string& path, const Console& console) {
  const std::unique_ptr<vxistream, CloseStream> stream(VXOpenIStream(path.c_str()));
  if (!stream) return console.fail(path + ": cannot be opened");
  std::vector<std::string> labels;
  std::vector<char> types;
  if (!VXGetMTZFileColumnNamesAndTypes(*stream, labels, types))
    return console.fail(path + ": not an MTZ file with reflection columns");
  VXReflection reflections;
  if (!stream->rewind() || !VXReadReflectionMTZ(*stream, reflections, VXMTZColumnNames()))
    return console.fail(path + ": its reflections cannot be read");

  std::ostream& out = console.out;
  line(out, "Format", "MTZ reflections");
  line(out, "Reflections", std::to_string(reflections.GetCount()));
  describe_crystal(out, reflections);
  std::string columns;
  for (std::size_t i = 0; i < labels.size(); ++i)
    columns += (i == 0 ? "" : ", ") + labels[i] + " (" + types[i] + ")";
  line(out, "Columns", columns);
  return true;
}

bool describe_model(const std::string& path, const Console& console) {
  VXGraphMol model;
  if (!read_model(path, model, console)) return false;
  std::ostream& out = console.out;
  line(out, "Format", "molecular model");
  line(out, "Title", model.GetTitle());
  line(out, "Atoms", std::to_string(model.NumAtoms()));
  line(out, "Residues", std::to_string(VXGetResiduesImpl(model).size()));
  std::array<float, 3> centre{}, extents{};
  VXGetCenterAndExtents(model, centre.data(), extents.data());
  line(out, "Centre", format_text("%.3f %.3f %.3f A", centre[0], centre[1], centre[2]));
  line(out, "Extents", format_text("%.3f %.3f %.3f A", extents[0], extents[1], extents[2]));
  std::array<float, 6> cell{};
  std::string group;
  unsigned int z = 0;
  if (VXXtal::VXExtractCRYST1(model, cell.data(), group, z)) {
    line(out, "Cell", cell_text(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5]));
    line(out, "Space group", group.substr(0, group.find_last_not_of(' ') + 1));
  }
  double resolution = 0;
  if (VXGetResolution(resolution, model))
    line(out, "Resolution", format_text("%.2f A", resolution));
  return true;
}

class InfoCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("FILE", files_, "Grid, map, reflection or model files")->required();
  }

  bool run(const Console& console) override {
    bool good = true;
    for (const std::string& path : files_) {
      if (&path != &files_.front()) console.out << '\n';
      good = describe(path, console) && good;
    }
    return good;
  }

 private:
  static bool describe(const std::string& path, const Console& console) {
    if (!std::filesystem::exists(path)) return console.fail(path + ": no such file");
    line(console.out, "File", path);
    const std::string extension = VXFileExtension(path);
    if (extension == "mtz") return describe_mtz(path, console);
    if (is_reflection_file(path) && (extension != "cif" || holds_reflections(path)))
      return describe_reflections(path, console);
    if (is_json_file(path) || VXIsReadableGrid(path)) return describe_grid(path, console);
    return describe_model(path, console);
  }

  std::vector<std::string> files_;
};

}  // namespace

std::unique_ptr<Command> make_info_command() {
  return std::make_unique<InfoCommand>();
}

}  // namespace vxgrid_app
