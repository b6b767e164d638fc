// One subcommand of the program, and the table of them.
#ifndef VXGRID_APPS_COMMAND_H
#define VXGRID_APPS_COMMAND_H

#include <memory>  // for unique_ptr

#include "console.h"

namespace CLI {
class App;
}

namespace vxgrid_app {

/// A subcommand: its options are bound to members, then it runs.
class Command {
 public:
  virtual ~Command() = default;
  virtual void add_options(CLI::App& app) = 0;
  /// False when any input failed; the reason is on the console then.
  virtual bool run(const Console& console) = 0;
};

std::unique_ptr<Command> make_info_command();
std::unique_ptr<Command> make_convert_command();
std::unique_ptr<Command> make_map_command();
std::unique_ptr<Command> make_score_command();
std::unique_ptr<Command> make_structure_factor_command();
std::unique_ptr<Command> make_gaussian_command();
std::unique_ptr<Command> make_shape_command();
std::unique_ptr<Command> make_contact_command();
std::unique_ptr<Command> make_mask_command();
std::unique_ptr<Command> make_thin_command();

}  // namespace vxgrid_app

#endif
