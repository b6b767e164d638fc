// vxgrid gaussian: a model as Gaussians on a grid, written as a map.
#include <CLI/CLI.hpp>

#include "command.h"
#include "grid_file.h"
#include "length_option.h"
#include "model_file.h"
#include "model_lattice.h"
#include "vxgrid/gaussian/molecule_grid.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

class GaussianCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("MODEL", model_file_, model_file_help)->required();
    app.add_option("-o,--output", output_, grid_output_help)->required();
    app.add_option("-s,--spacing", spacing_, "Spacing of the grid (Angstrom)")
        ->check(is_length())
        ->capture_default_str();
    app.add_flag("-p,--product", product_,
                 "1 less the product of (1 - Gaussian), which counts overlaps once");
  }

  bool run(const Console& console) override {
    if (!is_writeable(output_, console)) return false;
    VXGraphMol model;
    if (!read_model(model_file_, model, console)) return false;
    VXBrioGrid grid;
    const auto make =
        product_ ? vx_make_molecular_product_gaussian_grid : vx_make_molecular_gaussian_grid;
    if (!lay_lattice(model, spacing_, grid) || !make(model, spacing_, grid))
      return console.fail(model_file_ + ": no grid can be made around it at this spacing");
    // The header of a map file takes the statistics of scalar grids alone.
    VXScalarGrid values(grid.GetFloats()[0]);
    values.SetTitle(model.GetTitle());
    return write_grid(output_, values, "", console);
  }

 private:
  std::string model_file_;
  std::string output_;
  float spacing_ = 0.5f;
  bool product_ = false;
};

}  // namespace

std::unique_ptr<Command> make_gaussian_command() {
  return std::make_unique<GaussianCommand>();
}

}  // namespace vxgrid_app
