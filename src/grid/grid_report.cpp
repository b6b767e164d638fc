/// \file
/// The report on which items of a Brio grid are set.
#include <string>  // for string

#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/core/error_handler.h"

namespace VXCore {

namespace {

void report_line(const std::string& text) {
  VXThrow.Info("%s", text.c_str());
}

void report_item(const char* name, const char* type, bool set) {
  VXThrow.Info(" \"%s\" is %s that %s", name, type, set ? "has been set" : "can set");
}

void report_float(const char* name, bool set, float value) {
  if (set) {
    VXThrow.Info(" \"%s\" is a variable of type float that has been set to %f", name,
                 static_cast<double>(value));
  } else {
    report_item(name, "a variable of type float", false);
  }
}

void report_dimension(const char* name, unsigned int value) {
  VXThrow.Info(" \"%s\" is a variable of type int that has been set to %d", name,
               static_cast<int>(value));
}

}  // namespace

int vx_check_grid(const VXBrioGrid& grid) {
  const std::string rule(40, '*');
  report_line("");
  report_line(rule);
  report_line("GRID REPORT");
  report_line("");
  report_line("ACCESSIBLE VARIABLES");
  report_line(std::string(20, '*'));

  const auto& floats = grid.GetFloats();
  report_item("name", "an array of 80 elements of type char", grid.IsTitleSet());
  report_float("x_midpoint", floats.IsXMidSet(), grid.GetXMid());
  report_float("y_midpoint", floats.IsYMidSet(), grid.GetYMid());
  report_float("z_midpoint", floats.IsZMidSet(), grid.GetZMid());
  report_float("spacing", grid.IsSpacingSet(), grid.GetSpacing());
  report_dimension("x_dimension", grid.GetXDim());
  report_dimension("y_dimension", grid.GetYDim());
  report_dimension("z_dimension", grid.GetZDim());
  report_item("floats", "an array of x_dimension*y_dimension*z_dimension elements of type float",
              grid.GetFloatsSet());
  report_item("integers", "an array of x_dimension*y_dimension*z_dimension elements of type int",
              grid.GetIntegersSet());
  report_item("orientation", "a variable of type float*", grid.GetOrientationSet());

  report_line(rule);
  report_line("");
  return 1;
}

int vx_print_grid_report(const VXBrioGrid& grid) {
  return vx_check_grid(grid);
}

}  // namespace VXCore
