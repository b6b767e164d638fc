// Grid files that the program reads, changes and writes.
#include "grid_file.h"

#include <algorithm>  // for max, minmax_element
#include <cmath>      // for sqrt

#include "grid_json_file.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

using namespace VXCore;

namespace {

template <class Grid>
bool write(const std::string& path, Grid& grid, const std::string& remark, const Console& console) {
  const ValueStatistics statistics = measure(grid.GetValues(), grid.GetSize());
  grid.SetFloatData("AMIN", statistics.lowest);
  grid.SetFloatData("AMAX", statistics.highest);
  grid.SetFloatData("AMEAN", static_cast<float>(statistics.mean));
  grid.SetFloatData("ARMS", static_cast<float>(statistics.deviation));
  if (is_json_file(path)) {
    if (!write_json_grid(path, grid, console)) return false;
  } else if (!VXWriteGrid(path, grid)) {
    return console.fail(path + ": cannot be written");
  }
  console.note(format_text("wrote %s, %u x %u x %u points", path.c_str(), grid.GetXDim(),
                           grid.GetYDim(), grid.GetZDim()) +
               (remark.empty() ? remark : ", " + remark));
  return true;
}

}  // namespace

ValueStatistics measure(const float* values, std::size_t count) {
  if (!values || count == 0) return {};
  const auto [low, high] = std::minmax_element(values, values + count);
  double sum = 0;
  double squares = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const double value = double{values[i]};
    sum += value;
    squares += value * value;
  }
  const double n = static_cast<double>(count);
  const double mean = sum / n;
  return {*low, *high, mean, std::sqrt(std::max(0.0, squares / n - mean * mean))};
}

bool read_any_grid(const std::string& path, VXBrioGrid& grid, const Console& console) {
  if (is_json_file(path)) return read_json_grid(path, grid, console);
  if (!VXIsReadableGrid(path))
    return console.fail(path + ": the extension names no grid format that can be read");
  return VXReadGrid(path, grid) || console.fail(path + ": cannot be read");
}

bool read_grid(const std::string& path, VXBrioGrid& grid, const Console& console) {
  if (!read_any_grid(path, grid, console)) return false;
  return grid.GetValues() ? true : console.fail(path + ": has no values");
}

bool is_writeable(const std::string& path, const Console& console) {
  if (is_json_file(path) || VXIsWriteableGrid(path)) return true;
  return console.fail(path + ": the extension names no format that can be written");
}

bool write_grid(const std::string& path, VXBrioGrid& grid, const std::string& remark,
                const Console& console) {
  return write(path, grid, remark, console);
}

bool write_grid(const std::string& path, VXScalarGrid& grid, const std::string& remark,
                const Console& console) {
  return write(path, grid, remark, console);
}

}  // namespace vxgrid_app
