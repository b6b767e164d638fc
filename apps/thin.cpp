// vxgrid thin: the object in a grid, peeled down to its skeleton.
#include <algorithm>  // for count

#include <CLI/CLI.hpp>

#include "command.h"
#include "grid_file.h"
#include "length_option.h"
#include "vxgrid/fieldgrids/thinning.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/gridmath/masks.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

class ThinCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("GRID", input_, "Grid or map file to read")->required();
    app.add_option("-o,--output", output_, grid_output_help)->required();
    app.add_option("-l,--level", level_,
                   "The object is what has at least this value; without it, all that is not 0")
        ->check(is_length());
  }

  bool run(const Console& console) override {
    VXBrioGrid grid;
    if (!is_writeable(output_, console) || !read_grid(input_, grid, console)) return false;
    if (level_ > 0) vx_mask_grid(grid, level_, "value-");
    // Thinning goes by neighbours, not by places: any lattice will do, that of a crystal too.
    VXScalarGrid object(grid.GetFloats()[0]);
    const int passes = VXThinGrid(object);
    grid.SetValues(object.GetValues(), object.GetSize());
    const auto left = std::count(object.GetValues(), object.GetValues() + object.GetSize(), 1.0f);
    return write_grid(
        output_, grid,
        format_text("%lld of them on the skeleton after %d %s", static_cast<long long>(left),
                    passes, passes == 1 ? "pass" : "passes"),
        console);
  }

 private:
  std::string input_;
  std::string output_;
  float level_ = 0;
};

}  // namespace

std::unique_ptr<Command> make_thin_command() {
  return std::make_unique<ThinCommand>();
}

}  // namespace vxgrid_app
