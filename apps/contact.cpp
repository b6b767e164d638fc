// vxgrid contact: where two models touch.
#include <CLI/CLI.hpp>

#include "command.h"
#include "grid_file.h"
#include "length_option.h"
#include "model_file.h"
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
    app.add_option("B", probe_file_, model_file_help)->required();
    app.add_option("-o,--output", output_, grid_output_help)->required();
    app.add_option("-s,--spacing", spacing_, "Spacing of the grid (Angstrom)")
        ->check(is_length())
        ->capture_default_str();
    app.add_flag("--no-hydrogens", suppress_hydrogens_, "Leave the hydrogens of both models out");
  }

  bool run(const Console& console) override {
    if (!is_writeable(output_, console)) return false;
    VXGraphMol target;
    if (!read_model(target_file_, target, console)) return false;
    VXGraphMol probe;
    if (!read_model(probe_file_, probe, console)) return false;
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
