/// \file
/// Grids that are high where two bodies touch: two molecules, or parts of one that are not near
/// each other along its bonds.
///
/// With the target's density t and the probe's density g at a point, the contact value is
///
///     min(t, g)/(t + g) * 2t
///
/// in double precision: t where both are alike, towards 2t where g is much the larger, 0 where
/// either is missing.
#ifndef VXGRID_FIELDGRIDS_CONTACT_H
#define VXGRID_FIELDGRIDS_CONTACT_H

#include <memory>  // for unique_ptr
#include <vector>  // for vector

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/mol/molecule.h"

namespace VXCore {

/// The Gaussian potential of one atom, A*exp(-k*r^2) at the distance r in Angstrom, with
/// k = kappa/rad^2 and A = sqrt(kappa/pi) * 4/3 * kappa. It is evaluated out to 2/sqrt(k), where
/// it has fallen to exp(-4) of its height.
class VXGRID_API GaussPot {
 public:
  /// Set with these; a potential that is 0 everywhere where Set refuses them.
  GaussPot(float kappa, float rad);
  GaussPot(const GaussPot&) = default;
  GaussPot(GaussPot&&) noexcept = default;
  GaussPot& operator=(const GaussPot&) = default;
  GaussPot& operator=(GaussPot&&) noexcept = default;

  /// Takes kappa and a radius in Angstrom. False, with the potential as it was and the error
  /// "VolPot.Set : Illegal parameters, kappa %6.2f, rad %6.2f", when either is negative. A radius
  /// of 0 gives an infinite exponent.
  bool Set(float kappa, float rad);
  /// The value at a distance in Angstrom, however far.
  double operator()(double r) const;
  /// The range in Angstrom, 2/sqrt(k) in double precision.
  double MaxRad() const;

  /// A, k (per Angstrom squared) and the range, as they are kept: in single precision.
  float height() const { return height_; }
  float exponent() const { return exponent_; }
  float max_radius() const { return max_radius_; }
  /// True if the potential covers more than a single point: height and exponent are above 0 and
  /// finite.
  bool has_extent() const;

 private:
  float max_radius_ = 0;
  float exponent_ = 0;
  float height_ = 0;
};

/// Builds contact grids around one molecule, the target.
///
/// The target is a private copy with the van der Waals radii of A. Bondi, less its hydrogens where
/// asked for. Two grids of the same geometry belong to it: the sum of the potentials of its atoms,
/// with kappa = 2.7, and the contact values. Neither has values when the box and the spacing make
/// no grid; a spacing that is not above 0 never does more than leave both at 0.
///
/// Potentials are kept by element, each with the radius of the first atom of that element that was
/// met. An object is for one thread at a time, its const members included.
class VXGRID_API VXContactGridImpl {
 public:
  /// Grids over the box of the atom centres, without a margin (VXGetCenterAndExtents of `mol`,
  /// hydrogens included), at a spacing in Angstrom.
  VXContactGridImpl(const VXMol::VXMolBase& mol, bool suppressHydrogens, float spacing);
  /// Grids over a box, its centre and its full edge lengths in Angstrom; no grids for a null.
  VXContactGridImpl(const float* center, const float* extents, const VXMol::VXMolBase& mol,
                    bool suppressHydrogens, float spacing);
  VXContactGridImpl(const VXContactGridImpl& other);
  VXContactGridImpl& operator=(const VXContactGridImpl&) = delete;
  virtual ~VXContactGridImpl();

  /// Contacts within the molecule: each atom is the probe in its turn, and the target is all that
  /// lies more than `exclusionDepth` bonds away from it (0: all but the atom itself). A point keeps
  /// the largest value, of those that the contact grid held included.
  ///
  /// What is near is taken out of the target grid and put back after, in single precision, so that
  /// the target grid is left with the rounding of that.
  void MakeContactGrid(unsigned int exclusionDepth);

  /// Contacts with another molecule: each of its atoms is a probe, and a point has the largest of
  /// their contact values. What the contact grid held is gone. False when it has no values.
  ///
  /// An element that the target has too counts with the radius that it has there, any other with
  /// the radius that the probe's atom has: one without a radius touches nothing.
  bool MakeContactGrid(const VXMol::VXMolBase& probe);

  /// The sum of the target's potentials.
  const VXScalarGrid& GetTargetGrid() const { return *target_grid_; }
  /// The contact values, 0 before one of the calls above.
  const VXScalarGrid& GetContactGrid() const { return *contact_grid_; }

 protected:
  /// The potential of an atom's element, made with the atom's radius when there is none yet.
  const GaussPot& GetPotential(const VXMol::VXAtomBase* atom) const;
  /// Adds the potentials of all atoms to the target grid, and takes their coordinates down.
  void MakeTargetGrid();

 private:
  void make_grids(const float* center, const float* extents, float spacing);
  std::vector<const VXMol::VXAtomBase*> neighbourhood(const VXMol::VXAtomBase& atom,
                                                      unsigned int depth) const;
  void probe_with(const GaussPot& potential, const float* position);

  VXMol::VXGraphMol molecule_;
  std::unique_ptr<VXScalarGrid> target_grid_;
  std::unique_ptr<VXScalarGrid> contact_grid_;
  mutable std::vector<std::unique_ptr<GaussPot>> potentials_;  // by atomic number
  std::vector<float> coordinates_;                             // by atom index
};

/// The contacts within a molecule at a spacing in Angstrom, between atoms that are more than four
/// bonds apart, over the box of its atom centres. False, with the grid as it was, when box and
/// spacing make no grid.
VXGRID_API bool VXMakeContactGrid(VXScalarGrid& grid, const VXMol::VXMolBase& mol,
                                  bool suppressHydrogens, float spacing);

/// The contacts of molecule `a`, the target, with molecule `b`.
///
/// With `mode` 0 both densities are those of vx_make_molecular_gaussian_grid, for copies with
/// Bondi radii and, where asked for, without hydrogens. That of `a` is made on the points of
/// `grid`, or, when it has fewer than two, around `a` at `spacing`, and is added to the values that
/// it holds: hand in an empty grid, or one of zeros. That of `b` is made on a grid of its own and
/// interpolated between its points; it is 0 beyond them and in the last plane of each axis. Type,
/// title and tags of `grid` stay. False, with the grid as it was, when either has no atoms or makes
/// no grid.
///
/// With any other mode, VXContactGridImpl over the box of the atom centres of `a`, half an Angstrom
/// wider on all sides, with `b` as the probe: of `b`, elements that `a` lacks need radii, and
/// hydrogens stay. False, with the grid as it was, when box and spacing make no grid.
VXGRID_API bool VXMakeContactGrid(VXScalarGrid& grid, const VXMol::VXMolBase& a,
                                  const VXMol::VXMolBase& b, bool suppressHydrogens, float spacing,
                                  int mode);

}  // namespace VXCore

#endif
