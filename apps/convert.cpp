// vxgrid convert: one grid format to another, resampled on request, or one reflection format to
// another.
#include <CLI/CLI.hpp>

#include "command.h"
#include "grid_json_file.h"
#include "length_option.h"
#include "reflection_input.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/gridmath/regularize.h"
#include "vxgrid/reflection/formats.h"
#include "vxgrid/reflection/reflection.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

class ConvertCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("IN", input_, "Grid, map or reflection file to read")->required();
    app.add_option("OUT", output_, "File to write; its extension chooses the format")->required();
    app.add_option("-s,--spacing", spacing_,
                   "Resample onto a regular grid of this spacing (Angstrom)")
        ->check(is_length());
  }

  bool run(const Console& console) override {
    if (is_reflection_file(input_)) return convert_reflections(console);
    if (!is_json_file(input_) && !VXIsReadableGrid(input_))
      return console.fail(input_ + ": the extension names no grid format that can be read");
    if (!is_json_file(output_) && !VXIsWriteableGrid(output_))
      return console.fail(output_ + ": the extension names no grid format that can be written");
    return spacing_ > 0 ? convert_resampled(console) : convert_as_it_is(console);
  }

 private:
  bool convert_as_it_is(const Console& console) const {
    VXBrioGrid grid;
    return read(grid, console) && write(grid, console);
  }

  bool convert_resampled(const Console& console) const {
    VXSkewGrid grid;
    VXScalarGrid regular;
    if (!read(grid, console)) return false;
    if (!VXMakeRegularGrid(regular, grid, spacing_))
      return console.fail(input_ + ": cannot be resampled at this spacing");
    return write(regular, console);
  }

  template <class Grid>
  bool read(Grid& grid, const Console& console) const {
    if (is_json_file(input_)) return read_json_grid(input_, grid, console);
    return VXReadGrid(input_, grid) || console.fail(input_ + ": cannot be read");
  }
  template <class Grid>
  bool write(const Grid& grid, const Console& console) const {
    if (is_json_file(output_)) return write_json_grid(output_, grid, console);
    return VXWriteGrid(output_, grid) || console.fail(output_ + ": cannot be written");
  }

  bool convert_reflections(const Console& console) const {
    if (spacing_ > 0) return console.fail(input_ + ": reflections cannot be resampled");
    const ReflectionFormat* format = find_reflection_format(output_);
    if (!format || !format->writable)
      return console.fail(output_ +
                          ": the extension names no reflection format that can be written");
    VXReflection reflections;
    if (!read_reflections(input_, reflections, console)) return false;
    if (!VXIsWritableReflection(output_, reflections))
      return console.fail(
          input_ + ": lacks the amplitudes, phases or figures of merit that go into " + output_);
    if (!VXWriteReflection(output_, reflections))
      return console.fail(output_ + ": cannot be written");
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
