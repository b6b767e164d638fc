/// \file
/// Molecules as lists of Gaussians: the overlap series, and the cheaper forms of atoms alone and of
/// atoms and bonds.
///
/// The volume of a molecule is less than the sum of its atoms' volumes, because those overlap. By
/// inclusion and exclusion it is the sum over atoms, minus that over pairs, plus that over triples,
/// and so on. The product of Gaussians is a Gaussian again, so that each of these terms is one
/// (Grant & Pickup, J. Phys. Chem. 1995, 99, 3503, doi 10.1021/j100011a016).
#ifndef VXGRID_GAUSSIAN_SERIES_H
#define VXGRID_GAUSSIAN_SERIES_H

#include <array>    // for array
#include <cstddef>  // for size_t
#include <cstdint>  // for int32_t, uint32_t
#include <limits>   // for numeric_limits
#include <memory>   // for unique_ptr
#include <vector>   // for vector

#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXMol {
class VXMolBase;
}

namespace VXCore {

namespace detail {
class NeighbourTree;
}

/// Builds the Gaussians that stand for a molecule, and keeps tables and working storage from one
/// molecule to the next. Not to be used from two threads at a time.
///
/// All builders hand out a pointer to `result` and its size, valid until the next call on the same
/// object, and give 1; for a molecule without atoms they give 0 and a count of 0 (null `out`).
/// Radii are the atoms' own if at least one of them is above 0.
class VXGRID_API Gaussian {
 public:
  /// \name Constants of the model
  ///@{
  static constexpr std::uint32_t lk1 = 1000;       ///< steps of the tables of width ratio
  static constexpr std::uint32_t lk2 = 1000;       ///< steps of the table of log volume
  static constexpr std::uint32_t MaxG = 20;        ///< records reserved per atom
  static constexpr std::int32_t TreeThresh = 200;  ///< with more atoms, neighbours come from `tree`
  static constexpr float pi = 3.1415927f;
  static constexpr float ipi = 0.3183099f;  ///< 1/pi
  static constexpr float pi32 = 5.568328f;  ///< pi^(3/2)
  ///@}

  Gaussian();
  /// `tree` belongs to one object, and is not copied.
  Gaussian(const Gaussian& other);
  Gaussian(Gaussian&& other) noexcept;
  Gaussian& operator=(const Gaussian& other);
  Gaussian& operator=(Gaussian&& other) noexcept;
  ~Gaussian();

  /// \name Builders
  ///@{
  /// The atoms with a radius other than 0 in order of iteration, level 0, each with its sphere's
  /// volume. `with_bonds` adds a term of level 1 for each bond between two of them: the product of
  /// the two Gaussians, with the prefactor negated, its volume positive, and the radius of the
  /// sphere of that volume. `no_hydrogens` leaves out hydrogens and the bonds to them. Where no
  /// atom has a radius, radii by element stand in as in vx_make_molecular_gaussian_grid.
  int make_atomic_gaussian_rep_base(VXMol::VXMolBase& mol, int with_bonds, int no_hydrogens,
                                    Gsphere** out, int* count);

  /// The overlap series of the atoms with a radius of at least 0.0001. Each atom comes in order of
  /// iteration, level 0, followed by its products with the terms of earlier atoms, level n for n +
  /// 1 atoms; a product is kept, and overlapped further, when its volume is above `cutoff`. Earlier
  /// atoms come in their order or, past TreeThresh atoms, in that of a breadth-first walk through a
  /// k-d tree into which the atoms were put one by one.
  ///
  /// Prefactors are positive; a term's sign lives in `volume`, which is negative for odd levels;
  /// `radius` holds the squared distance beyond which no atom has a product with the term: give
  /// vi_gauss_grid a copy with 0 there. Volumes are read from a table of 1000 steps over the range
  /// of their logarithm, which cuts them by less than one step (0.7 % from 0.1 to the 100 cubic
  /// Angstrom of a large atom). Where no atom has a radius, Bondi's stand in.
  ///
  /// Gives 0 also when there are no coordinates or no such atom, and, with a warning, when the
  /// series has more than 4,000,000 + 1,000 per atom terms, which takes dozens of atoms in one
  /// place.
  int make_full_gaussian_rep_base(const VXMol::VXMolBase& mol, int no_hydrogens, Gsphere** out,
                                  int* count);

  /// Atoms alone, as make_atomic_gaussian_rep_base does them.
  int vx_make_atomic_gaussian_representation(const VXMol::VXMolBase& mol, Gsphere** out,
                                             int* count);
  int vx_make_atomic_gaussian_representation_with_hydrogens(const VXMol::VXMolBase& mol,
                                                            Gsphere** out, int* count);
  int vx_make_atomic_gaussian_representation_no_hydrogens(const VXMol::VXMolBase& mol,
                                                          Gsphere** out, int* count);
  /// Atoms and bonds.
  int vx_make_bond_gaussian_representation(const VXMol::VXMolBase& mol, Gsphere** out, int* count);
  int vx_make_bond_gaussian_representation_with_hydrogens(const VXMol::VXMolBase& mol,
                                                          Gsphere** out, int* count);
  int vx_make_bond_gaussian_representation_no_hydrogens(const VXMol::VXMolBase& mol, Gsphere** out,
                                                        int* count);
  /// The overlap series. The plain name leaves hydrogens out, unlike those above.
  int vx_make_gaussian_representation(const VXMol::VXMolBase& mol, Gsphere** out, int* count);
  int vx_make_gaussian_representation_no_hydrogens(const VXMol::VXMolBase& mol, Gsphere** out,
                                                   int* count);
  int vx_make_gaussian_representation_with_hydrogens(const VXMol::VXMolBase& mol, Gsphere** out,
                                                     int* count);

  /// The volume of a molecule in cubic Angstrom: the sum over the overlap series, in order and in
  /// single precision; 0 when there is no series. The plain name counts hydrogens. Gives 1.
  int vx_calculate_volume(const VXMol::VXMolBase& mol, float* volume);
  int vx_calculate_volume_with_hydrogens(const VXMol::VXMolBase& mol, float* volume);
  int vx_calculate_volume_no_hydrogens(const VXMol::VXMolBase& mol, float* volume);
  int vx_calculate_volume_base(const VXMol::VXMolBase& mol, float* volume, int no_hydrogens);

  /// The multipoles of a molecule, as vx_CalcShapeMultipoles lays out its 14 floats, from the form
  /// that `type` names: "atoms", "bonds" or "full", the overlap series. Any other text, and null,
  /// names no form: the multipoles are then those of no terms, all 0. The plain name leaves
  /// hydrogens out. Gives 1.
  int vx_calculate_shape_multipoles(const VXMol::VXMolBase& mol, float* multipoles,
                                    const char* type);
  int vx_calculate_shape_multipoles_no_hydrogens(const VXMol::VXMolBase& mol, float* multipoles,
                                                 const char* type);
  int vx_calculate_shape_multipoles_with_hydrogens(const VXMol::VXMolBase& mol, float* multipoles,
                                                   const char* type);
  int vx_calculate_shape_multipoles_base(const VXMol::VXMolBase& mol, float* multipoles,
                                         const char* type, int with_hydrogens);

  /// The same with the centre and the axes of the frame, 3 and 9 floats. Gives 1, or 0 with nothing
  /// done when either is null.
  int vx_calculate_shape_multipoles_and_inertial_frame(const VXMol::VXMolBase& mol,
                                                       float* multipoles, const char* type,
                                                       float* centre, float* rotation);
  int vx_calculate_shape_multipoles_and_inertial_frame_no_hydrogens(const VXMol::VXMolBase& mol,
                                                                    float* multipoles,
                                                                    const char* type, float* centre,
                                                                    float* rotation);
  int vx_calculate_shape_multipoles_and_inertial_frame_with_hydrogens(const VXMol::VXMolBase& mol,
                                                                      float* multipoles,
                                                                      const char* type,
                                                                      float* centre,
                                                                      float* rotation);
  int vx_calculate_shape_multipoles_and_inertial_frame_base(const VXMol::VXMolBase& mol,
                                                            float* multipoles, const char* type,
                                                            float* centre, float* rotation,
                                                            int with_hydrogens);

  /// Turns a molecule about the origin by the rotation of its frame and then moves it by the centre
  /// that it had: p' = rotation*p + centre. Its axes then lie along x, y and z; its centroid lies
  /// at the origin only if it did before. Where no form is named, nothing moves. Gives 1.
  int vx_transform_to_inertial_frame_using_shape_multipoles(VXMol::VXMolBase& mol,
                                                            const char* type);
  int vx_transform_to_inertial_frame_using_shape_multipoles_no_hydrogens(VXMol::VXMolBase& mol,
                                                                         const char* type);
  int vx_transform_to_inertial_frame_using_shape_multipoles_with_hydrogens(VXMol::VXMolBase& mol,
                                                                           const char* type);
  int vx_transform_to_inertial_frame_using_shape_multipoles_base(VXMol::VXMolBase& mol,
                                                                 const char* type,
                                                                 int with_hydrogens);

  /// Prints through vx_printf the sums of the `volume` fields of all forms: "atm vol = %f\n",
  /// "bond vol = %f\n", "full vol = %f, num= %d\n" without hydrogens and "full vol (h) = %f, num=
  /// %d\n" with them, where num is the count of terms. Gives 1.
  int make_test(VXMol::VXMolBase& mol);
  ///@}

  /// \name Storage and tables
  ///@{
  /// Room for a molecule of so many atoms, and `log_cutoff` from `cutoff`. Gives 1, or 0 for no
  /// atoms.
  int vi_init_gauss_rep(int atoms);
  /// Gives `tree` back and forgets the largest atom count. Gives 1.
  int vi_delete_gauss_rep();
  /// Room for so many terms. Gives 1, or 0 when the count is not above 0.
  int vi_init_gs(int count);

  /// Tables for widths from `min_width` up, in steps of 1/scale of the ratio of two widths, and for
  /// volumes from `cutoff` to that of a sphere of `radius` Angstrom.
  void make_table(float min_width, float radius, float scale);
  ///@}

  /// \name Model
  ///@{
  float prefactor = 2.7f;  ///< of every atom
  ///@}

  /// \name Tables, entry k for a ratio x = (k + 1/2)/scale of a term's width to a new atom's
  ///@{
  std::array<float, lk1 + 1> ratio_table{};          ///< x/(x + 1): the way from atom to term
  std::array<float, lk1 + 1> log_prefactor_table{};  ///< ln(2.7 (x/(x + 1))^(3/2))
  std::array<float, lk1 + 1> reach_table{};          ///< (x + 1)/(x*min_width)
  std::array<float, lk2 + 1> volume_table{};         ///< cutoff*exp(k/volume_scale)
  float min_radius = 0;                              ///< the tables are for radii from here
  float max_radius = 0;                              ///< to here, Angstrom
  ///@}

  /// The smallest volume that a product may have, cubic Angstrom; above 0.
  float cutoff = 0.1f;
  float log_cutoff = std::numeric_limits<float>::lowest();
  float volume_scale = 0;  ///< entries of volume_table per unit of log volume

  /// \name Working storage
  ///@{
  std::int32_t capacity = -1;                   ///< largest atom count so far
  std::unique_ptr<detail::NeighbourTree> tree;  ///< null up to TreeThresh atoms
  std::vector<void*> scratch;                   ///< one per atom, and not read
  std::vector<float> coords;                    ///< 3 per atom
  std::vector<float> widths;
  std::vector<float> prefactors;
  std::vector<float> radii;
  std::vector<std::int32_t> first_term;  ///< per atom, where its terms begin in `terms`
  std::vector<Gsphere> terms;            ///< entry 0 is unused
  std::vector<Gsphere> result;           ///< what callers get
                                         ///@}

 private:
  /// Table entries per unit of a ratio of widths, and of a width.
  struct WidthScale {
    float per_ratio;
    float per_width;
  };

  int build_atomic(const VXMol::VXMolBase& mol, bool with_bonds, bool no_hydrogens, Gsphere** out,
                   int* count);
  int hand_out(Gsphere** out, int* count);
  void build_named(const VXMol::VXMolBase& mol, const char* type, bool with_hydrogens);
  bool gather_atoms(const VXMol::VXMolBase& mol, bool no_hydrogens);
  std::size_t expand(float smallest, float largest);
  Gsphere atom_term(std::size_t i, float narrowest) const;
  std::size_t append_products(const Gsphere& atom, std::size_t j, std::size_t end,
                              const WidthScale& scale);
  void convert_terms(std::size_t end);

  std::vector<Gsphere> atom_terms_;
  /// What the tables were made for beside the radii.
  float table_prefactor_ = 0;
  float table_cutoff_ = 0;
};

}  // namespace VXCore

#endif
