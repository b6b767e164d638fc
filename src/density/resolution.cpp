// The resolution of a model or map, and the radius around atoms that goes with it.
#include "vxgrid/density/resolution.h"

#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/grid/skew_grid.h"

namespace VXCore {

double VXGetEDSRadius(double resolution) {
  if (resolution < 0.6) return 0.7;
  if (resolution <= 3.0) return (resolution - 0.6) * 0.3333333333333333 + 0.2333333333333333;
  return 0.5 * resolution;
}

bool VXGetResolution(double& resolution, const VXMolBase& mol) {
  if (VXHasMMCIFData(mol)) return VXGetResolutionCIF(resolution, mol);
  for (const auto& pair : VXGetPDBDataPairs(mol)) {
    if (pair.GetTag() != "REMARK") continue;
    std::vector<std::string> words;
    VXStringTokenize(words, pair.GetValue(), " \t\n", 1);
    double value = 0;
    if (words.size() >= 3 && words[1] == "RESOLUTION." && VXStringToNumber(words[2], value)) {
      resolution = value;
      return true;
    }
  }
  return false;
}

bool VXGetResolution(double& resolution, const VXSkewGrid& grid) {
  if (!grid.HasData("resolution")) return false;
  resolution = grid.GetDoubleData("resolution");
  return true;
}

}  // namespace VXCore
