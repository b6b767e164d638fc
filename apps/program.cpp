// The program vxgrid as a function: the table of subcommands and the dispatch.
#include "program.h"

#include <algorithm>  // for reverse
#include <exception>  // for exception
#include <memory>     // for unique_ptr

#include <CLI/CLI.hpp>

#include "command.h"
#include "vxgrid/grid/version.h"

namespace vxgrid_app {

namespace {

struct Entry {
  const char* name;
  const char* summary;
  std::unique_ptr<Command> (*make)();
};

constexpr Entry commands[] = {
    {"info", "Say what a grid, map, reflection or model file holds", make_info_command},
    {"convert", "Write a grid, map or reflection file in another format", make_convert_command},
    {"map", "Make an electron-density map from a reflection file", make_map_command},
    {"score", "Score a model against a map by real-space correlation", make_score_command},
    {"sf", "Calculate a model's structure factors for a list of reflections",
     make_structure_factor_command},
    {"gaussian", "Write a model as Gaussians on a grid", make_gaussian_command},
    {"shape", "Tell volume, multipoles and inertial frame of a model", make_shape_command},
    {"contact", "Write where two models touch", make_contact_command},
    {"mask", "Clear a grid under a model, or around it", make_mask_command},
    {"thin", "Thin the object in a grid to its skeleton", make_thin_command},
};

std::string command_names() {
  std::string text = "The commands are";
  for (const Entry& entry : commands)
    text += std::string(" ") + entry.name;
  return text + ".\n";
}

}  // namespace

int run_program(std::vector<std::string> arguments, Console console) {
  CLI::App app("VXGrid: maps, grids and real-space scores", "vxgrid");
  bool verbose = false;
  app.set_version_flag("--version", VXCore::VXGridGetRelease());
  app.add_flag("-v,--verbose", verbose, "Show what the library notes on the way");
  app.add_flag("-q,--quiet", console.quiet, "Show nothing but results and errors")
      ->excludes("--verbose");
  app.fallthrough();
  app.require_subcommand(0, 1);  // none at all gets words of our own

  std::vector<std::unique_ptr<Command>> made;
  std::vector<const CLI::App*> apps;
  for (const Entry& entry : commands) {
    CLI::App* sub = app.add_subcommand(entry.name, entry.summary);
    made.push_back(entry.make());
    made.back()->add_options(*sub);
    apps.push_back(sub);
  }
  try {
    std::reverse(arguments.begin(), arguments.end());  // CLI11 takes them from the back
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& stop) {
    if (app.exit(stop, console.out, console.err) == 0) return 0;
    if (app.get_subcommands().empty()) console.err << command_names();
    return 2;
  }
  if (app.get_subcommands().empty()) {
    console.err << app.help() << '\n' << command_names();
    return 2;
  }

  using VXCore::VXErrorLevel;
  const MessageRoute route(console, verbose         ? VXErrorLevel::Verbose
                                    : console.quiet ? VXErrorLevel::Error
                                                    : VXErrorLevel::Warning);
  try {
    for (std::size_t i = 0; i < made.size(); ++i) {
      if (!apps[i]->parsed()) continue;
      const bool done = made[i]->run(console);
      if (console.out.flush()) return done ? 0 : 1;
      console.fail("the results cannot be written");
    }
  } catch (const std::exception& failure) {
    console.fail(failure.what());
  }
  return 1;
}

}  // namespace vxgrid_app
