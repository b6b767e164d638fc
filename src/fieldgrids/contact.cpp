// Contact grids: potentials of atoms, the target density, and the largest contact value per point.
#include "vxgrid/fieldgrids/contact.h"

#include <algorithm>  // for clamp, min
#include <array>      // for array
#include <cmath>      // for ceil, exp, floor, isfinite, sqrt
#include <cstddef>    // for size_t

#include "gridmath/record_lattice.h"
#include "gridmath/trilinear.h"
#include "vxgrid/gaussian/molecule_grid.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::RecordLattice;

constexpr float kappa = 2.7f;
constexpr std::size_t potential_count = 255;
// Where the target is below, a point is not asked for contacts.
constexpr double least_target = 0.0001;

double contact_value(double t, double g) {
  const double u = 1.0 / (t + g);
  return std::min(t * u, g * u) * (t + t);
}

// Along an axis, the points that may lie within reach of a potential: their squared distances, and
// the factor exp(-k d^2) of each.
struct AxisReach {
  unsigned int first = 0;
  std::vector<double> squares;
  std::vector<double> factors;
};

// Coordinates of points are rounded, so the ends lie half a spacing further out than the reach; who
// lies within is decided by the distance.
AxisReach reach_along(const VXScalarGrid& grid, std::size_t axis, double position, double radius,
                      double exponent) {
  const std::array<unsigned int, 3> dims = {grid.GetXDim(), grid.GetYDim(), grid.GetZDim()};
  const auto coordinate = [&](unsigned int index) {
    std::array<unsigned int, 3> at{};
    at[axis] = index;
    std::array<float, 3> point{};
    grid.GridIdxToSpatialCoord(at[0], at[1], at[2], point[0], point[1], point[2]);
    return double{point[axis]};
  };
  const double h = grid.GetSpacing();
  const double f = (position - coordinate(0)) / h;
  const double reach = radius / h + 0.5;
  const double end = dims[axis] - 1.0;
  AxisReach result;
  if (!(f - reach <= end && f + reach >= 0.0)) return result;
  result.first = static_cast<unsigned int>(std::clamp(std::ceil(f - reach), 0.0, end));
  const auto last = static_cast<unsigned int>(std::clamp(std::floor(f + reach), 0.0, end));
  for (unsigned int i = result.first; i <= last; ++i) {
    const double d = coordinate(i) - position;
    result.squares.push_back(d * d);
    result.factors.push_back(std::exp(-exponent * (d * d)));
  }
  return result;
}

// Calls visit(element, A*exp(-k d^2)) for the points of a grid at most `radius` from the centre of
// a potential. The exponential is the product of one per axis, in double precision: a few hundred
// points share some thirty of them.
template <class Visit>
void visit_ball(const VXScalarGrid& grid, const GaussPot& potential, const float* centre,
                double radius, Visit visit) {
  if (!potential.has_extent() || !grid.GetValues() || !(grid.GetSpacing() > 0.0f)) return;
  const double exponent = potential.exponent();
  const AxisReach x = reach_along(grid, 0, double{centre[0]}, radius, exponent);
  const AxisReach y = reach_along(grid, 1, double{centre[1]}, radius, exponent);
  const AxisReach z = reach_along(grid, 2, double{centre[2]}, radius, exponent);
  const double limit = radius * radius;
  for (std::size_t k = 0; k < z.squares.size(); ++k) {
    for (std::size_t j = 0; j < y.squares.size(); ++j) {
      const double across = y.squares[j] + z.squares[k];
      if (across > limit) continue;
      const double height = double{potential.height()} * z.factors[k] * y.factors[j];
      const std::size_t row =
          grid.GetXDim() * (y.first + j + std::size_t{grid.GetYDim()} * (z.first + k)) + x.first;
      for (std::size_t i = 0; i < x.squares.size(); ++i) {
        if (x.squares[i] + across <= limit) visit(row + i, height * x.factors[i]);
      }
    }
  }
}

void add_potential(VXScalarGrid& grid, const GaussPot& potential, const float* centre) {
  float* const values = grid.GetValues();
  visit_ball(
      grid, potential, centre, double{potential.max_radius()},
      [values](std::size_t point, double value) { values[point] += static_cast<float>(value); });
}

void subtract_potential(VXScalarGrid& grid, const GaussPot& potential, const float* centre) {
  float* const values = grid.GetValues();
  visit_ball(
      grid, potential, centre, double{potential.max_radius()},
      [values](std::size_t point, double value) { values[point] -= static_cast<float>(value); });
}

VXGraphMol with_bondi_radii(const VXMolBase& mol, bool suppress_hydrogens) {
  VXGraphMol copy(mol);
  VXAssignBondiVdWRadii(copy);
  if (suppress_hydrogens) VXSuppressHydrogens(copy, false, false, true);
  return copy;
}

// The trilinear value of a grid at a point; 0 beyond it and from the last plane of an axis on.
float value_within(const RecordLattice& lattice, const float* values,
                   const std::array<float, 3>& point) {
  std::array<int, 3> index{};
  std::array<float, 3> t{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float f = (point[axis] - lattice.lower[axis]) / lattice.spacing;
    if (!(f >= 0.0f && f < static_cast<float>(lattice.dim[axis] - 1))) return 0.0f;
    index[axis] = static_cast<int>(f);
    t[axis] = f - static_cast<float>(index[axis]);
  }
  return detail::blend_cell(values + detail::element_at(lattice, index[0], index[1], index[2]),
                            lattice.row_stride(), lattice.plane_stride(), t[0], t[1], t[2]);
}

// Both molecules as densities, the target's on the lattice of the result and on top of its values.
bool contact_of_densities(VXScalarGrid& grid, const VXMolBase& a, const VXMolBase& b,
                          bool suppress_hydrogens, float spacing) {
  VXBrioGrid target(grid);
  VXBrioGrid probe;
  if (!VXMakeMolecularGaussianGrid(target, with_bondi_radii(a, suppress_hydrogens), spacing) ||
      !VXMakeMolecularGaussianGrid(probe, with_bondi_radii(b, suppress_hydrogens), spacing)) {
    return false;
  }
  const RecordLattice lattice = detail::lattice_of(probe);
  float* const values = target.GetValues();
  for (unsigned int i = 0; i < target.GetSize(); ++i) {
    std::array<float, 3> point{};
    if (!target.ElementToSpatialCoord(i, point[0], point[1], point[2])) {
      values[i] = 0.0f;
      continue;
    }
    const double t = values[i];
    const double g = value_within(lattice, probe.GetValues(), point);
    values[i] = t + g == 0.0 ? 0.0f : static_cast<float>(contact_value(t, g));
  }
  // Geometry and values alone, so that what else the grid carries stays.
  grid.SetSpacing(target.GetSpacing());
  grid.SetMid(target.GetXMid(), target.GetYMid(), target.GetZMid());
  grid.SetDim(target.GetXDim(), target.GetYDim(), target.GetZDim());
  return grid.SetValues(values, target.GetSize());
}

}  // namespace

GaussPot::GaussPot(float kappa_value, float rad) {
  Set(kappa_value, rad);
}

bool GaussPot::Set(float kappa_value, float rad) {
  if (kappa_value < 0.0f || rad < 0.0f) {
    VXThrow.Error("VolPot.Set : Illegal parameters, kappa %6.2f, rad %6.2f", double{kappa_value},
                  double{rad});
    return false;
  }
  constexpr double one_over_pi = 0.3183098861837907;
  constexpr double four_thirds = 1.3333333333333333;
  const double k = kappa_value;
  exponent_ = kappa_value / (rad * rad);
  max_radius_ = static_cast<float>(MaxRad());
  height_ = static_cast<float>(std::sqrt(k * one_over_pi) * (k * four_thirds));
  return true;
}

double GaussPot::MaxRad() const {
  return 2.0 / std::sqrt(double{exponent_});
}

double GaussPot::operator()(double r) const {
  return std::exp(-double{exponent_} * r * r) * double{height_};
}

bool GaussPot::has_extent() const {
  return height_ > 0.0f && exponent_ > 0.0f && std::isfinite(exponent_);
}

VXContactGridImpl::VXContactGridImpl(const VXMolBase& mol, bool suppressHydrogens, float spacing)
    : molecule_(with_bondi_radii(mol, suppressHydrogens)) {
  std::array<float, 3> center{};
  std::array<float, 3> extents{};
  VXGetCenterAndExtents(mol, center.data(), extents.data());
  make_grids(center.data(), extents.data(), spacing);
}

VXContactGridImpl::VXContactGridImpl(const float* center, const float* extents,
                                     const VXMolBase& mol, bool suppressHydrogens, float spacing)
    : molecule_(with_bondi_radii(mol, suppressHydrogens)) {
  make_grids(center, extents, spacing);
}

VXContactGridImpl::VXContactGridImpl(const VXContactGridImpl& other)
    : molecule_(other.molecule_),
      target_grid_(std::make_unique<VXScalarGrid>(*other.target_grid_)),
      contact_grid_(std::make_unique<VXScalarGrid>(*other.contact_grid_)),
      coordinates_(other.coordinates_) {
  potentials_.reserve(other.potentials_.size());
  for (const auto& potential : other.potentials_) {
    potentials_.push_back(potential ? std::make_unique<GaussPot>(*potential) : nullptr);
  }
}

VXContactGridImpl::~VXContactGridImpl() = default;

void VXContactGridImpl::make_grids(const float* center, const float* extents, float spacing) {
  if (center && extents) {
    std::array<float, 6> box{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      box[axis] = center[axis] - 0.5f * extents[axis];
      box[axis + 3] = center[axis] + 0.5f * extents[axis];
    }
    target_grid_ = std::make_unique<VXScalarGrid>(box.data(), spacing, "");
    contact_grid_ = std::make_unique<VXScalarGrid>(box.data(), spacing, "");
  } else {
    target_grid_ = std::make_unique<VXScalarGrid>();
    contact_grid_ = std::make_unique<VXScalarGrid>();
  }
  potentials_.resize(potential_count);
  MakeTargetGrid();
}

const GaussPot& VXContactGridImpl::GetPotential(const VXAtomBase* atom) const {
  // No element has a number beyond the table; such an atom counts as one of unknown element.
  const std::size_t number = atom->GetAtomicNum() < potential_count ? atom->GetAtomicNum() : 0;
  std::unique_ptr<GaussPot>& potential = potentials_[number];
  if (!potential) potential = std::make_unique<GaussPot>(kappa, atom->GetRadius());
  return *potential;
}

void VXContactGridImpl::MakeTargetGrid() {
  coordinates_.resize(3 * std::size_t{molecule_.GetMaxAtomIdx()});
  molecule_.GetCoords(coordinates_.data());
  for (const VXAtomBase* atom : molecule_.GetAtoms()) {
    add_potential(*target_grid_, GetPotential(atom),
                  &coordinates_[3 * std::size_t{atom->GetIdx()}]);
  }
}

// The atom and all that can be reached over at most `depth` bonds, nearest first.
std::vector<const VXAtomBase*> VXContactGridImpl::neighbourhood(const VXAtomBase& atom,
                                                                unsigned int depth) const {
  std::vector<const VXAtomBase*> found = {&atom};
  VXBitVector marked(molecule_.GetMaxAtomIdx());
  marked.SetBitOn(atom.GetIdx());
  std::size_t round_begin = 0;
  for (unsigned int round = 0; round < depth && round_begin < found.size(); ++round) {
    const std::size_t round_end = found.size();
    for (; round_begin < round_end; ++round_begin) {
      const VXAtomBase* const from = found[round_begin];
      for (const VXBondBase* bond : from->GetBonds()) {
        const VXAtomBase* const neighbour = bond->GetNbr(from);
        if (marked.IsBitOn(neighbour->GetIdx())) continue;
        marked.SetBitOn(neighbour->GetIdx());
        found.push_back(neighbour);
      }
    }
  }
  return found;
}

void VXContactGridImpl::MakeContactGrid(unsigned int exclusionDepth) {
  const auto position = [this](const VXAtomBase* atom) {
    return &coordinates_[3 * std::size_t{atom->GetIdx()}];
  };
  const VXGraphMol& molecule = molecule_;
  for (const VXAtomBase* atom : molecule.GetAtoms()) {
    const std::vector<const VXAtomBase*> near = neighbourhood(*atom, exclusionDepth);
    for (const VXAtomBase* other : near)
      subtract_potential(*target_grid_, GetPotential(other), position(other));
    probe_with(GetPotential(atom), position(atom));
    for (const VXAtomBase* other : near)
      add_potential(*target_grid_, GetPotential(other), position(other));
  }
}

bool VXContactGridImpl::MakeContactGrid(const VXMolBase& probe) {
  std::vector<float> coordinates(3 * std::size_t{probe.GetMaxAtomIdx()});
  probe.GetCoords(coordinates.data());
  if (!contact_grid_->GetValues()) return false;
  contact_grid_->Realloc();
  for (const VXAtomBase* atom : probe.GetAtoms())
    probe_with(GetPotential(atom), &coordinates[3 * std::size_t{atom->GetIdx()}]);
  return true;
}

void VXContactGridImpl::probe_with(const GaussPot& potential, const float* position) {
  const float* const target = target_grid_->GetValues();
  float* const contact = contact_grid_->GetValues();
  visit_ball(*contact_grid_, potential, position, potential.MaxRad(),
             [target, contact](std::size_t point, double g) {
               const double t = target[point];
               if (!(t > least_target)) return;
               const auto value = static_cast<float>(contact_value(t, g));
               if (value > contact[point]) contact[point] = value;
             });
}

bool VXMakeContactGrid(VXScalarGrid& grid, const VXMolBase& mol, bool suppressHydrogens,
                       float spacing) {
  constexpr unsigned int exclusion_depth = 4;
  VXContactGridImpl impl(mol, suppressHydrogens, spacing);
  if (!impl.GetContactGrid().GetValues()) return false;
  impl.MakeContactGrid(exclusion_depth);
  grid = impl.GetContactGrid();
  return true;
}

bool VXMakeContactGrid(VXScalarGrid& grid, const VXMolBase& a, const VXMolBase& b,
                       bool suppressHydrogens, float spacing, int mode) {
  if (mode == 0) return contact_of_densities(grid, a, b, suppressHydrogens, spacing);
  constexpr float margin = 1.0f;
  std::array<float, 3> center{};
  std::array<float, 3> extents{};
  VXGetCenterAndExtents(a, center.data(), extents.data());
  for (float& extent : extents)
    extent += margin;
  VXContactGridImpl impl(center.data(), extents.data(), a, suppressHydrogens, spacing);
  if (!impl.MakeContactGrid(b)) return false;
  grid = impl.GetContactGrid();
  return true;
}

}  // namespace VXCore
