// Models that commands read.
#ifndef VXGRID_APPS_MODEL_FILE_H
#define VXGRID_APPS_MODEL_FILE_H

#include <string>  // for string

#include "console.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

/// What the help says of an argument that names a model file.
inline constexpr const char* model_file_help = "PDB or mmCIF file";

/// False with the reason told.
inline bool read_model(const std::string& path, VXCore::VXMolBase& model, const Console& console) {
  return VXCore::VXReadMolecule(path, model) || console.fail(path + ": cannot be read as a model");
}

}  // namespace vxgrid_app

#endif
