/// \file
/// Contour levels and colours as tagged data.
#include "vxgrid/grid/contours.h"

#include <vector>  // for vector

#include "vxgrid/toolkit/core/grid_base.h"

namespace VXCore {

namespace {

using Levels = std::vector<float>;
using Colors = std::vector<unsigned int>;

unsigned int levels_tag() {
  static const unsigned int tag = VXGetTag("VX_grid_contour_levels");
  return tag;
}

unsigned int colors_tag() {
  static const unsigned int tag = VXGetTag("VX_grid_contour_colors");
  return tag;
}

/// The list under a tag, or an empty one that all grids share.
template <class List>
const List& list_of(const VXGridAbstractBase& grid, unsigned int tag) {
  static const List empty;
  const List* list = grid.FindDataValue<List>(tag);
  return list ? *list : empty;
}

}  // namespace

void VXAddContour(VXGridAbstractBase& grid, float level, const VXColor& color) {
  Levels levels = list_of<Levels>(grid, levels_tag());
  levels.push_back(level);
  Colors colors = list_of<Colors>(grid, colors_tag());
  colors.push_back(color.GetPackedColor());
  grid.SetData(levels_tag(), levels);
  grid.SetData(colors_tag(), colors);
}

unsigned int VXNumContours(const VXGridAbstractBase& grid) {
  return static_cast<unsigned int>(list_of<Levels>(grid, levels_tag()).size());
}

float VXGetContourLevel(const VXGridAbstractBase& grid, unsigned int index) {
  const Levels& levels = list_of<Levels>(grid, levels_tag());
  return index < levels.size() ? levels[index] : 0.0f;
}

VXColor VXGetContourColor(const VXGridAbstractBase& grid, unsigned int index) {
  const Colors& colors = list_of<Colors>(grid, colors_tag());
  return index < colors.size() ? VXColor(colors[index]) : VXColor();
}

}  // namespace VXCore
