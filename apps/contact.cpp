// vxgrid contact: where two models touch.
#include <CLI/CLI.hpp>

#include "command.h"
#include "grid_file.h"
#include "length_option.h"
#include "model_lattice.h"
#include "vxgrid/fieldgrids/contact.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

class ContactCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("A", target_file_, "PDB or mmCIF file; the grid is laid around this model")
        ->required();
    app.add_option("B", probe_file_, "PDB or mmCIF file")->required();
    app.add_option("-o,--output", output_, "Map file to write (.map, .ccp4, .mrc, .grd ...)")
        ->required();
    app.add_option("-s,--spacing", spacing_, "Spacing of the grid (Angstrom)")
        ->check(is_length())
        ->capture_default_str();
    app.add_flag("--no-hydrogens", suppress_hydrogens_, "Leave the hydrogens of both models out");
  }

  bool run(const Console& console) override {
    if (!is_writeable(output_, console)) return false;
    VXGraphMol target;
    if (!VXReadMolecule(target_file_, target))
      return console.fail(target_file_ + ": cannot be read as a model");
    VXGraphMol probe;
    if (!VXReadMolecule(probe_file_, probe))
      return console.fail(probe_file_ + ": cannot be read as a model");
    constexpr int of_densities = 0;  // the mode that gives both models radii
    VXScalarGrid grid;
    if (!lay_lattice(target, spacing_, grid) ||
        !VXMakeContactGrid(grid, target, probe, suppress_hydrogens_, spacing_, of_densities))
      return console.fail("no grid can be made of these models at this spacing");
    const float largest = measure(grid.GetValues(), grid.GetSize()).highest;
    const std::string remark = largest > 0 ? format_text("largest contact %.3g", double{largest})
                                           : std::string("no contact");
    return write_grid(output_, grid, remark, console);
  }

 private:
  std::string target_file_;
  std::string probe_file_;
  std::string output_;
  float spacing_ = 0.5f;
  bool suppress_hydrogens_ = false;
};

}  // namespace

std::unique_ptr<Command> make_contact_command() {
  return std::make_unique<ContactCommand>();
}

}  // namespace vxgrid_app
