// Gets reflections from whatever file the user has, and structure factors of a model for them.
#ifndef VXGRID_APPS_REFLECTION_INPUT_H
#define VXGRID_APPS_REFLECTION_INPUT_H

#include <string>  // for string

#include "console.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

/// What the help says of an argument that names a reflection file.
inline constexpr const char* reflection_file_help =
    "Reflection file: MTZ, mmCIF (.cif), .phs, .fob, .cv, .hkl or .vxx";

/// True for the extensions of reflection files. Models may have "cif" too.
bool is_reflection_file(const std::string& path);

/// Reads all columns that the program knows, from MTZ files by the labels that refinement programs
/// use; false with the reason told. mmCIF files go through the MTZ file that a map of them does.
bool read_reflections(const std::string& path, VXCore::VXReflection& reflections,
                      const Console& console);

/// Makes the map of a type from reflections and their symmetry mates, on the scale of its own
/// deviation; false when there is none.
bool make_normalized_map(VXCore::VXReflection& reflections, unsigned int type,
                         VXCore::VXSkewGrid& map);

/// Makes the map of a model's structure factors, on the scale of its own deviation, from the
/// reflections that a map of the named type is made of; false with the reason told.
bool make_model_map(const std::string& path, const std::string& type,
                    const VXCore::VXMolBase& model, VXCore::VXSkewGrid& map,
                    const Console& console);

/// Replaces the calculated columns by the structure factors of a model, without its hydrogens, for
/// which the library has no form factor. Where the reflections tell no cell and space group those
/// of the model are taken. False with the reason told.
bool calculate_structure_factors(VXCore::VXReflection& reflections, const VXCore::VXMolBase& model,
                                 const Console& console);

}  // namespace vxgrid_app

#endif
