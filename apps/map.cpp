// vxgrid map: reflections to a map file.
#include <CLI/CLI.hpp>

#include "command.h"
#include "density_input.h"
#include "grid_file.h"
#include "grid_json_file.h"
#include "reflection_input.h"
#include "vxgrid/gridio/dispatch.h"

namespace vxgrid_app {

namespace {

class MapCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("REFLECTIONS", reflections_, reflection_file_help)->required();
    app.add_option("-o,--output", output_, grid_output_help)->required();
    app.add_option("-t,--type", type_, "Map coefficients")
        ->check(CLI::IsMember(map_type_names()))
        ->capture_default_str();
  }

  bool run(const Console& console) override {
    if (!is_writeable(output_, console)) return false;
    VXCore::VXSkewGrid map;
    if (!make_density(reflections_, type_, map, console)) return false;
    if (is_json_file(output_)) {
      if (!write_json_grid(output_, map, console)) return false;
    } else if (!VXCore::VXWriteGrid(output_, map)) {
      return console.fail(output_ + ": cannot be written");
    }
    console.note("wrote " + output_ + ", " + std::to_string(map.GetXDim()) + " x " +
                 std::to_string(map.GetYDim()) + " x " + std::to_string(map.GetZDim()) + " points");
    return true;
  }

 private:
  std::string reflections_;
  std::string output_;
  std::string type_ = "Fwt";
};

}  // namespace

std::unique_ptr<Command> make_map_command() {
  return std::make_unique<MapCommand>();
}

}  // namespace vxgrid_app
