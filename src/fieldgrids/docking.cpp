// Docking grids: typing of atoms, the grid around them, and one plane of smoothed potential a
// probe.
#include "vxgrid/fieldgrids/docking.h"

#include <algorithm>  // for all_of, max, max_element, min
#include <array>      // for array
#include <cmath>      // for exp, isfinite, sqrt
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t
#include <limits>     // for numeric_limits
#include <span>       // for span

#include "gridmath/dimensions.h"
#include "gridmath/record_lattice.h"
#include "vxgrid/gaussian/gauss_grid.h"
#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

constexpr float cutoff = 0.001f;

struct AtomKind {
  int type;
  float radius;
};

AtomKind kind_of(const PdbStruct& atom) {
  // Where the atom name of a PDB line starts: byte 14 of the record.
  constexpr std::size_t name_in_label = 14 - 3 * sizeof(float);
  const char* letter = atom.label + name_in_label;
  for (const char skipped : {' ', '1', '2', '3', '4'}) {
    if (*letter == skipped) ++letter;
  }
  switch (*letter) {
    case 'C':
      return {0, 1.7f};
    case 'H':
      return {1, 1.0f};
    case 'O':
      return {2, 1.6f};
    case 'N':
      return {3, 1.65f};
    case 'F':
      return {5, 1.2f};
    default:
      return {4, 1.9f};
  }
}

// The width of the Gaussian of a prefactor that stands in for a sphere.
float width_of(float prefactor, float radius) {
  float width = 0;
  vi_assign_gwid_from_rad_pre(&prefactor, &radius, &width, 1);
  return width;
}

// The atoms as plain arrays.
struct Receptor {
  Receptor(PdbStruct* atoms, std::size_t count) {
    coords.reserve(3 * count);
    radii.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const AtomKind kind = kind_of(atoms[i]);
      atoms[i].type = kind.type;
      coords.insert(coords.end(), {atoms[i].x, atoms[i].y, atoms[i].z});
      radii.push_back(kind.radius);
    }
  }
  std::size_t size() const { return radii.size(); }

  std::vector<float> coords;
  std::vector<float> radii;
};

// Geometry of the grid around the atoms; false, with the record as it was, when it has no size.
bool size_around(const Receptor& receptor, float spacing, GridStruct& grid) {
  constexpr float padding = 15.0f;  // of both sides together
  constexpr float far = std::numeric_limits<float>::infinity();
  std::array<float, 3> mid{};
  std::array<int, 3> dims{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    float low = far;
    float high = -far;
    for (std::size_t i = 0; i < receptor.size(); ++i) {
      const float centre = receptor.coords[3 * i + axis];
      low = std::min(low, centre - receptor.radii[i]);
      high = std::max(high, centre + receptor.radii[i]);
    }
    mid[axis] = (high + low) * 0.5f;
    dims[axis] = detail::truncated((high - low + padding) / spacing).value_or(0);
    if (dims[axis] < 1) return false;
  }
  const detail::RecordLattice lattice(dims, mid, spacing);
  if (lattice.size() == 0) return false;
  detail::set_lattice(grid, lattice);
  return true;
}

// What a probe feels of each atom, as the arrays of the kernel for K*(w*d^2 + offset)*exp(-w*d^2).
struct PlaneTerms {
  PlaneTerms(const Receptor& receptor, float prefactor, float probe_radius, bool unit_depth) {
    const float b = width_of(prefactor, probe_radius);
    for (const float radius : receptor.radii) {
      const float a = width_of(prefactor, radius);
      const float sum = a + b;
      const float width = a * b / sum;
      const float contact = radius + probe_radius;
      const float exponent = width * (contact * contact);
      widths.push_back(width);
      heights.push_back(unit_depth ? std::exp(exponent) : prefactor / (std::sqrt(sum) * sum));
      offsets.push_back(1.0f - exponent);
    }
  }
  bool is_finite() const {
    const auto finite = [](float value) { return std::isfinite(value); };
    return std::all_of(widths.begin(), widths.end(), finite) &&
           std::all_of(heights.begin(), heights.end(), finite) &&
           std::all_of(offsets.begin(), offsets.end(), finite);
  }

  std::vector<float> widths;
  std::vector<float> heights;
  std::vector<float> offsets;
};

// The density of the atoms, scaled to a largest value of 1.
void fill_potential(Receptor& receptor, float prefactor, float extra, GridStruct plane) {
  std::vector<float> coords;
  std::vector<float> widths;
  for (std::size_t i = 0; i < receptor.size(); ++i) {
    const float radius = receptor.radii[i] + extra;
    if (!(radius > 0.0f)) continue;
    coords.insert(coords.end(), &receptor.coords[3 * i], &receptor.coords[3 * i] + 3);
    widths.push_back(width_of(prefactor, radius));
  }
  std::vector<float> prefactors(widths.size(), prefactor);
  vi_gauss_grid_tegs(static_cast<int>(widths.size()), coords.data(), widths.data(),
                     prefactors.data(), cutoff, GaussGridType::Sum, &plane, nullptr, nullptr);
  float* const end = plane.floats + static_cast<std::size_t>(plane.xdim) *
                                        static_cast<std::size_t>(plane.ydim) *
                                        static_cast<std::size_t>(plane.zdim);
  const float largest = *std::max_element(plane.floats, end);
  if (!(largest > 0.0f)) return;
  for (float* value = plane.floats; value != end; ++value)
    *value /= largest;
}

}  // namespace

int vx_make_docking_grid(GridStruct* grid, PdbStruct* atoms, int count, float* probe_radii,
                         int probes, float spacing, float prefactor_scale, float extra,
                         int add_potential, int flag) {
  constexpr double inverse_kappa = 0.4265795397863698;
  const auto prefactor = static_cast<float>(std::sqrt(inverse_kappa * double{prefactor_scale}));
  if (!grid || !atoms || count < 1 || probes < 0 || (probes > 0 && !probe_radii) ||
      !(spacing > 0.0f) || !(prefactor > 0.0f) || !std::isfinite(prefactor)) {
    return 0;
  }
  const std::int64_t planes = std::int64_t{probes} + (add_potential != 0 ? 1 : 0);
  Receptor receptor(atoms, static_cast<std::size_t>(count));
  GridStruct sized = *grid;
  if (!size_around(receptor, spacing, sized)) return 0;
  const std::int64_t points = std::int64_t{sized.xdim} * sized.ydim * sized.zdim;
  if (planes < 1 || planes > std::numeric_limits<int>::max() / points) return 0;

  // Made twice for each probe, here to be looked at and below to be used, rather than kept for all.
  const auto terms_of = [&](float probe_radius) {
    return PlaneTerms(receptor, prefactor, probe_radius, flag != 0);
  };
  const std::span<const float> radii(probe_radii, static_cast<std::size_t>(probes));
  if (!std::ranges::all_of(
          radii, [&](float radius) { return !(radius > 0.0f) || terms_of(radius).is_finite(); })) {
    return 0;
  }
  const int values = static_cast<int>(planes * points);
  if (!vx_allocate_grid_struct(sized, false, true, values)) return 0;
  vx_zero_grid_struct(sized, false, true, values);
  vx_deallocate_grid_struct(*grid, false, true);
  *grid = sized;

  GridStruct plane = *grid;
  for (const float radius : radii) {
    if (radius > 0.0f) {
      PlaneTerms terms = terms_of(radius);
      vi_gauss_grid_tegs(count, receptor.coords.data(), terms.widths.data(), terms.heights.data(),
                         cutoff, GaussGridType::RadialGaussiansWithOffset, &plane,
                         terms.widths.data(), terms.offsets.data());
    }
    plane.floats += points;
  }
  if (add_potential != 0) fill_potential(receptor, prefactor, extra, plane);
  return 1;
}

std::vector<float> docking_weight_table(int planes) {
  constexpr int values_per_plane = 100;
  constexpr float step = 0.9900498390197754f;  // exp(-0.01)
  constexpr int least_weight = 104;            // exp of minus that is 0 in single precision
  std::vector<float> table;
  for (int plane = 0; plane < std::min(planes, least_weight); ++plane) {
    float weight = std::exp(-static_cast<float>(plane));
    for (int i = 0; i < values_per_plane; ++i, weight *= step)
      table.push_back(weight);
  }
  table.push_back(0.0f);
  return table;
}

}  // namespace VXCore
