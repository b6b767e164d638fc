// The program vxgrid as a function, for main and for tests.
#ifndef VXGRID_APPS_PROGRAM_H
#define VXGRID_APPS_PROGRAM_H

#include <string>  // for string
#include <vector>  // for vector

#include "console.h"

namespace vxgrid_app {

/// Runs the arguments that stand behind the program's name and returns the exit status: 0 done,
/// 1 failed on data, 2 wrong use. The library's messages go to the console while it runs.
int run_program(std::vector<std::string> arguments, Console console);

}  // namespace vxgrid_app

#endif
