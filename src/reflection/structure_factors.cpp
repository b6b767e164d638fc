// Structure factors of a model by direct summation, with a table in place of every transcendental
// function.
#include <algorithm>  // for find, max, min
#include <array>      // for array
#include <cmath>      // for atan2, cos, exp, fmod, isfinite, sin, sqrt
#include <cstddef>    // for size_t
#include <new>        // for bad_alloc
#include <utility>    // for move
#include <vector>     // for vector

#include "vxgrid/density/scattering.h"
#include "vxgrid/reflection/reflection_impl.h"

namespace VXCore {
namespace {

// Form factors are tabulated over s^2 from 0 in steps of 0.005 / Angstrom^2, to 0.5 Angstrom.
constexpr std::size_t form_factor_points = 200;
// Temperature factors exp(-x) are tabulated in steps of 1 / 2000 at the middle of each step.
constexpr std::size_t points_per_exponent = 2000;
constexpr float largest_exponent = 1000;
constexpr std::size_t neutral_carbon_row = 8;

// Reflections that are summed at a time, side by side: the terms of one sum are added in order, so
// that there is nothing else to vectorise over.
constexpr std::size_t lanes = 16;
using Lanes = std::array<float, lanes>;

// Rows of scatter_data by rows of form_factor_points; empty if memory did not suffice when they
// were first asked for.
const std::vector<float>& form_factor_table() {
  static const std::vector<float> table = [] {
    std::vector<float> values;
    try {
      values.reserve(scatter_count * form_factor_points);
    } catch (const std::bad_alloc&) {
      VXThrow.Error("sfinit: internal - could not allocate enough memory for reflection");
      return values;
    }
    for (const scatterT& row : scatter_data) {
      for (std::size_t i = 0; i < form_factor_points; ++i) {
        const double s2 = static_cast<float>(i) * 0.005F;
        values.push_back(static_cast<float>(
            row.a4 * std::exp(-row.b4 * s2) + row.c + row.a3 * std::exp(-row.b3 * s2) +
            row.a2 * std::exp(-row.b2 * s2) + row.a1 * std::exp(-row.b1 * s2)));
      }
    }
    return values;
  }();
  return table;
}

// The row of an ion, or of the neutral atom where there is no such ion. The search starts at the
// row of the atomic number, which no row of an element comes before but that of neutral hydrogen,
// so that a hydrogen scatters as a carbon does.
std::size_t find_form_factor_row(unsigned int z, int charge) {
  std::size_t kept = neutral_carbon_row;
  bool has_kept = false;
  for (std::size_t row = z; row < scatter_count; ++row) {
    const scatterT& candidate = scatter_data[row];
    if (static_cast<unsigned int>(candidate.z) != z) {
      if (has_kept) break;
      continue;
    }
    if (candidate.charge == charge) return row;
    if (candidate.charge == 0) {
      kept = row;
      has_kept = true;
    }
  }
  return kept;
}

// exp(-x) for x from 0 up to a largest one, beyond which it is 0.
class TemperatureTable {
 public:
  explicit TemperatureTable(float largest) {
    const std::size_t units = static_cast<std::size_t>(largest) + 1;
    values_.reserve(units * points_per_exponent + 1);
    const float decay = std::exp(-1.0F / points_per_exponent);
    for (std::size_t unit = 0; unit < units; ++unit) {
      double value = std::exp(-0.5F / points_per_exponent - static_cast<float>(unit));
      for (std::size_t i = 0; i < points_per_exponent; ++i) {
        values_.push_back(value);
        value *= decay;
      }
    }
    values_.push_back(0);
  }

  // exp(-position / points_per_exponent).
  double operator[](float position) const {
    const std::size_t last = values_.size() - 1;
    return values_[position < static_cast<float>(last) ? static_cast<std::size_t>(position) : last];
  }

 private:
  std::vector<double> values_;
};

// Sine and cosine of whole degrees, over three turns on either side of 0.
class DegreeTable {
 public:
  DegreeTable() {
    for (std::size_t degree = 0; degree <= reach; ++degree) {
      const float angle = static_cast<float>(degree % 360) * 0.017453294F;
      cosine_[reach + degree] = cosine_[reach - degree] = std::cos(angle);
      sine_[reach + degree] = std::sin(angle);
      sine_[reach - degree] = -std::sin(angle);
    }
  }
  const float* cosine() const { return cosine_.data() + reach; }
  const float* sine() const { return sine_.data() + reach; }

 private:
  // Turns are taken off an angle in single precision, which leaves 360 degrees on either side and
  // what 2^31 / 360 turns err by: three roundings of 2^-24, that is 384 degrees.
  static constexpr std::size_t reach = 3 * 360;
  std::array<float, 2 * reach + 1> cosine_;
  std::array<float, 2 * reach + 1> sine_;
};

// What a hostile model or column may hold instead of a number at or above 0.
float finite_or_zero(float value) {
  return std::isfinite(value) && value > 0 ? value : 0;
}

// The atoms that scatter, in parallel arrays; what does not change from one image to the other.
struct Model {
  explicit Model(const VXMolBase& mol);

  std::vector<float> places;  // x, y, z in Angstrom
  std::vector<float> occupancies;
  std::vector<float> b_factors;
  std::vector<std::size_t> forms;      // index into form_rows
  std::vector<std::size_t> form_rows;  // the rows of the form factor table that are in use
  float largest_b = 0;
};

Model::Model(const VXMolBase& mol) {
  std::vector<float> coords(std::size_t{3} * mol.GetMaxAtomIdx());
  mol.GetCoords(coords.data());
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    if (!VXHasResidue(atom)) continue;
    const VXResidue& residue = VXAtomGetResidue(atom);
    const float b_factor = finite_or_zero(residue.GetBFactor());
    largest_b = std::max(largest_b, b_factor);
    // Adding zeros changes no sum: none is ever -0.
    if (residue.GetOccupancy() == 0) continue;

    const float* place = coords.data() + std::size_t{3} * atom->GetIdx();
    places.insert(places.end(), place, place + 3);
    occupancies.push_back(residue.GetOccupancy());
    b_factors.push_back(b_factor);
    const std::size_t row = find_form_factor_row(atom->GetAtomicNum(), atom->GetFormalCharge());
    const auto known = std::find(form_rows.begin(), form_rows.end(), row);
    forms.push_back(static_cast<std::size_t>(known - form_rows.begin()));
    if (known == form_rows.end()) form_rows.push_back(row);
  }
}

// Fractional coordinates of all atoms, image by image, each atom in the home cell.
std::vector<float> make_images(const Model& model, const VXXtal::VXSymmetry& symmetry) {
  const std::size_t image_size = model.places.size();
  const auto atom_count = static_cast<unsigned int>(model.occupancies.size());
  std::vector<float> images;
  images.reserve(image_size * symmetry.GetOpCount());
  for (unsigned int op = 0; op < symmetry.GetOpCount(); ++op) {
    images.insert(images.end(), model.places.begin(), model.places.end());
    symmetry.CartesianToFractional(images.data() + image_size * op, atom_count, op, /*wrap=*/true);
  }
  return images;
}

// True if 360 h.x fits a 32-bit integer, with room for its rounding, wherever x is an atom and h a
// reflection of these largest squared lengths; a place that is not finite fits none.
bool angles_fit(const std::vector<float>& images, float largest_h2) {
  float largest_x2 = 0;
  for (std::size_t i = 0; i < images.size(); i += 3) {
    const float x2 =
        images[i] * images[i] + images[i + 1] * images[i + 1] + images[i + 2] * images[i + 2];
    if (!std::isfinite(x2)) return false;
    largest_x2 = std::max(largest_x2, x2);
  }
  constexpr float largest_angle = 2147480000.0F;
  return 360 * std::sqrt(largest_h2 * largest_x2) < largest_angle;
}

// The table point nearest to s^2.
std::size_t form_point_of(float stolsq) {
  constexpr std::size_t last = form_factor_points - 1;
  const float point = stolsq * form_factor_points + 0.5F;
  return point < static_cast<float>(last) ? static_cast<std::size_t>(point) : last;
}

// A few reflections and their sums.
struct Block {
  Lanes h360, k360, l360;  // 360 times the indices
  Lanes exponent_scale;    // times a B-factor: the place in the temperature table
  std::array<std::size_t, lanes> form_point;
  Lanes a, b;  // real and imaginary part
};

// Occupancy, temperature factor and form factor of every atom for every reflection of the block.
class Weights {
 public:
  explicit Weights(const Model& model)
      : form_factors_(model.form_rows.size()), weights_(model.occupancies.size()) {}

  void compute(const Model& model, const TemperatureTable& temperature, const Block& block) {
    const std::vector<float>& table = form_factor_table();
    for (std::size_t form = 0; form < form_factors_.size(); ++form) {
      const float* row = table.data() + model.form_rows[form] * form_factor_points;
      for (std::size_t lane = 0; lane < lanes; ++lane)
        form_factors_[form][lane] = row[block.form_point[lane]];
    }
    for (std::size_t atom = 0; atom < weights_.size(); ++atom) {
      const double occupancy = model.occupancies[atom];
      const float b_factor = model.b_factors[atom];
      const Lanes& form_factor = form_factors_[model.forms[atom]];
      for (std::size_t lane = 0; lane < lanes; ++lane) {
        weights_[atom][lane] =
            static_cast<float>(occupancy * temperature[block.exponent_scale[lane] * b_factor] *
                               double{form_factor[lane]});
      }
    }
  }
  const std::vector<Lanes>& get() const { return weights_; }

 private:
  std::vector<Lanes> form_factors_;
  std::vector<Lanes> weights_;
};

// Adds the terms of one image of all atoms, in their order.
void add_image(Block& block, const float* image, const std::vector<Lanes>& weights,
               const DegreeTable& degrees) {
  const float* const cosine = degrees.cosine();
  const float* const sine = degrees.sine();
  const Block given = block;
  Lanes a = given.a;
  Lanes b = given.b;
  for (const Lanes& weight : weights) {
    const float x = image[0];
    const float y = image[1];
    const float z = image[2];
    image += 3;
    for (std::size_t lane = 0; lane < lanes; ++lane) {
      const auto angle = static_cast<int>(given.k360[lane] * y + given.h360[lane] * x +
                                          given.l360[lane] * z + 0.5F);
      const auto turns = static_cast<int>(static_cast<float>(angle) * (1 / 360.0F));
      const int degree = angle - 360 * turns;
      b[lane] += weight[lane] * sine[degree];
      a[lane] += weight[lane] * cosine[degree];
    }
  }
  block.a = a;
  block.b = b;
}

float phase_of(float a, float b) {
  constexpr double degrees_per_radian = 57.29577951308232;
  return static_cast<float>(
      std::fmod(double{std::atan2(b, a)} * degrees_per_radian + 3600.0, 360.0));
}

}  // namespace

// Amplitudes and phases of all reflections as they stand. What the columns held is replaced at the
// end, all at once.
bool VXReflectionImpl::sum_structure_factors(const VXMolBase& mol) {
  const Model model(mol);
  const std::vector<float> images = make_images(model, symmetry_);
  float largest_h2 = 0;
  float largest_stolsq = 0;
  for (unsigned int i = 0; i < count_; ++i) {
    const auto h = static_cast<float>(h_[i]);
    const auto k = static_cast<float>(k_[i]);
    const auto l = static_cast<float>(l_[i]);
    largest_h2 = std::max(largest_h2, h * h + k * k + l * l);
    largest_stolsq = std::max(largest_stolsq, finite_or_zero(stolsq_[i]));
  }
  if (!angles_fit(images, largest_h2)) return false;

  const TemperatureTable temperature(std::min(model.largest_b * largest_stolsq, largest_exponent));
  const DegreeTable degrees;
  Weights weights(model);
  FloatColumn amplitudes(std::size_t{count_} + 1);
  FloatColumn phases(std::size_t{count_} + 1);
  for (std::size_t first = 0; first < count_; first += lanes) {
    const std::size_t filled = std::min(lanes, count_ - first);
    Block block{};
    for (std::size_t lane = 0; lane < filled; ++lane) {
      const float stolsq = finite_or_zero(stolsq_[first + lane]);
      block.h360[lane] = 360 * static_cast<float>(h_[first + lane]);
      block.k360[lane] = 360 * static_cast<float>(k_[first + lane]);
      block.l360[lane] = 360 * static_cast<float>(l_[first + lane]);
      block.exponent_scale[lane] = stolsq * points_per_exponent;
      block.form_point[lane] = form_point_of(stolsq);
    }
    weights.compute(model, temperature, block);
    for (std::size_t image = 0; image < images.size(); image += model.places.size())
      add_image(block, images.data() + image, weights.get(), degrees);
    for (std::size_t lane = 0; lane < filled; ++lane) {
      const float a = block.a[lane];
      const float b = block.b[lane];
      amplitudes[first + lane] = std::sqrt(b * b + a * a);
      phases[first + lane] = phase_of(a, b);
    }
  }
  FloatColumn phases_again = phases;
  fcalc_ = std::move(amplitudes);
  phase_ = std::move(phases);
  phase_calc_ = std::move(phases_again);
  return true;
}

bool VXReflectionImpl::SFCalc(const VXMolBase& mol) {
  try {
    VXGraphMol charged(mol);
    VXAssignFormalCharges(charged);
    if (!VXHasResidues(charged) || form_factor_table().empty()) return false;
    if (!has_indices() || !symmetry_.cell().isValid() || symmetry_.GetNumber() == 0) return false;
    if (stolsq_.empty() && !CalcResolution()) return false;
    if (symmetry_.GetOpCount() == 0) return false;
    if (expanded_) {
      std::vector<unsigned int>().swap(sort_index_);
      SetCount(std::min(unexpanded_count_, count_));
      expanded_ = false;
    }
    return sum_structure_factors(charged);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace VXCore
