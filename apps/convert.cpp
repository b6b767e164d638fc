// vxgrid convert: one grid format to another, resampled on request.
#include <CLI/CLI.hpp>

#include "command.h"
#include "length_option.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/gridmath/regularize.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

class ConvertCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("IN", input_, "Grid or map file to read")->required();
    app.add_option("OUT", output_, "File to write; its extension chooses the format")->required();
    app.add_option("-s,--spacing", spacing_,
                   "Resample onto a regular grid of this spacing (Angstrom)")
        ->check(is_length());
  }

  bool run(const Console& console) override {
    if (!VXIsReadableGrid(input_))
      return console.fail(input_ + ": the extension names no grid format that can be read");
    if (!VXIsWriteableGrid(output_))
      return console.fail(output_ + ": the extension names no grid format that can be written");
    return spacing_ > 0 ? convert_resampled(console) : convert_as_it_is(console);
  }

 private:
  bool convert_as_it_is(const Console& console) const {
    VXBrioGrid grid;
    if (!VXReadGrid(input_, grid)) return console.fail(input_ + ": cannot be read");
    if (!VXWriteGrid(output_, grid)) return console.fail(output_ + ": cannot be written");
    return true;
  }

  bool convert_resampled(const Console& console) const {
    VXSkewGrid grid;
    if (!VXReadGrid(input_, grid)) return console.fail(input_ + ": cannot be read");
    VXScalarGrid regular;
    if (!VXMakeRegularGrid(regular, grid, spacing_))
      return console.fail(input_ + ": cannot be resampled at this spacing");
    if (!VXWriteGrid(output_, regular)) return console.fail(output_ + ": cannot be written");
    return true;
  }

  std::string input_;
  std::string output_;
  float spacing_ = 0;
};

}  // namespace

std::unique_ptr<Command> make_convert_command() {
  return std::make_unique<ConvertCommand>();
}

}  // namespace vxgrid_app
