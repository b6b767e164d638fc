// Shape multipoles of molecules, and molecules turned into their inertial frame.
#include <array>        // for array
#include <string_view>  // for string_view

#include "vxgrid/gaussian/multipoles.h"
#include "vxgrid/gaussian/series.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

// Fills `result` with the form of a name; with none for a name that is none.
void Gaussian::build_named(const VXMolBase& mol, const char* type, bool with_hydrogens) {
  result.clear();
  const std::string_view name = type ? type : "";
  Gsphere* spheres = nullptr;
  int count = 0;
  if (name == "atoms")
    build_atomic(mol, false, !with_hydrogens, &spheres, &count);
  else if (name == "bonds")
    build_atomic(mol, true, !with_hydrogens, &spheres, &count);
  else if (name == "full")
    make_full_gaussian_rep_base(mol, with_hydrogens ? 0 : 1, &spheres, &count);
}

int Gaussian::vx_calculate_shape_multipoles_and_inertial_frame_base(const VXMolBase& mol,
                                                                    float* multipoles,
                                                                    const char* type, float* centre,
                                                                    float* rotation,
                                                                    int with_hydrogens) {
  if (!centre || !rotation) return 0;
  build_named(mol, type, with_hydrogens != 0);
  return vx_CalcShapeMultipoles(static_cast<int>(result.size()), result.data(), multipoles, centre,
                                rotation);
}

int Gaussian::vx_calculate_shape_multipoles_and_inertial_frame(const VXMolBase& mol,
                                                               float* multipoles, const char* type,
                                                               float* centre, float* rotation) {
  return vx_calculate_shape_multipoles_and_inertial_frame_base(mol, multipoles, type, centre,
                                                               rotation, 0);
}

int Gaussian::vx_calculate_shape_multipoles_and_inertial_frame_no_hydrogens(
    const VXMolBase& mol, float* multipoles, const char* type, float* centre, float* rotation) {
  return vx_calculate_shape_multipoles_and_inertial_frame_base(mol, multipoles, type, centre,
                                                               rotation, 0);
}

int Gaussian::vx_calculate_shape_multipoles_and_inertial_frame_with_hydrogens(
    const VXMolBase& mol, float* multipoles, const char* type, float* centre, float* rotation) {
  return vx_calculate_shape_multipoles_and_inertial_frame_base(mol, multipoles, type, centre,
                                                               rotation, 1);
}

int Gaussian::vx_calculate_shape_multipoles_base(const VXMolBase& mol, float* multipoles,
                                                 const char* type, int with_hydrogens) {
  std::array<float, 3> centre{};
  std::array<float, 9> rotation{};
  return vx_calculate_shape_multipoles_and_inertial_frame_base(mol, multipoles, type, centre.data(),
                                                               rotation.data(), with_hydrogens);
}

int Gaussian::vx_calculate_shape_multipoles(const VXMolBase& mol, float* multipoles,
                                            const char* type) {
  return vx_calculate_shape_multipoles_base(mol, multipoles, type, 0);
}

int Gaussian::vx_calculate_shape_multipoles_no_hydrogens(const VXMolBase& mol, float* multipoles,
                                                         const char* type) {
  return vx_calculate_shape_multipoles_base(mol, multipoles, type, 0);
}

int Gaussian::vx_calculate_shape_multipoles_with_hydrogens(const VXMolBase& mol, float* multipoles,
                                                           const char* type) {
  return vx_calculate_shape_multipoles_base(mol, multipoles, type, 1);
}

int Gaussian::vx_transform_to_inertial_frame_using_shape_multipoles_base(VXMolBase& mol,
                                                                         const char* type,
                                                                         int with_hydrogens) {
  std::array<float, 14> multipoles{};
  std::array<float, 3> centre{};
  std::array<float, 9> rotation{};
  vx_calculate_shape_multipoles_and_inertial_frame_base(mol, multipoles.data(), type, centre.data(),
                                                        rotation.data(), with_hydrogens);
  VXRotate(mol, rotation.data());
  VXTranslate(mol, centre.data());
  return 1;
}

int Gaussian::vx_transform_to_inertial_frame_using_shape_multipoles(VXMolBase& mol,
                                                                    const char* type) {
  return vx_transform_to_inertial_frame_using_shape_multipoles_base(mol, type, 0);
}

int Gaussian::vx_transform_to_inertial_frame_using_shape_multipoles_no_hydrogens(VXMolBase& mol,
                                                                                 const char* type) {
  return vx_transform_to_inertial_frame_using_shape_multipoles_base(mol, type, 0);
}

int Gaussian::vx_transform_to_inertial_frame_using_shape_multipoles_with_hydrogens(
    VXMolBase& mol, const char* type) {
  return vx_transform_to_inertial_frame_using_shape_multipoles_base(mol, type, 1);
}

}  // namespace VXCore
