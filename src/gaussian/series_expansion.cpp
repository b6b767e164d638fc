// The inclusion-exclusion series: all transcendental work is in four tables.
//
// While the series grows, a term's `volume` is the log of its volume over the cut-off, and its
// `radius` the squared distance beyond which even the widest atom leaves the product under the
// cut-off.
#include <algorithm>  // for max, min, minmax_element
#include <array>      // for array
#include <cmath>      // for exp, isfinite, log, sqrt
#include <cstddef>    // for ptrdiff_t, size_t
#include <cstdint>    // for int32_t
#include <limits>     // for numeric_limits
#include <numeric>    // for iota
#include <span>       // for span

#include "gaussian/atom_radii.h"
#include "gaussian/neighbour_tree.h"
#include "vxgrid/gaussian/series.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

// Truncated, and kept to the entries 0 to 1000 that the tables have.
std::size_t table_index(float x) {
  constexpr auto last = static_cast<float>(Gaussian::lk1);
  const float not_below = x > 0.0f ? x : 0.0f;
  return static_cast<std::size_t>(static_cast<std::int32_t>(not_below < last ? not_below : last));
}
static_assert(Gaussian::lk1 == Gaussian::lk2);

// Dozens of atoms in one place have a term for almost each of their subsets.
std::size_t term_limit(std::size_t atoms) {
  constexpr std::size_t as_int = std::numeric_limits<int>::max();
  return std::min(as_int, 4'000'000 + 1'000 * atoms);
}

float squared_distance(const Gsphere& a, const Gsphere& b) {
  const float dx = a.x - b.x;
  const float dy = a.y - b.y;
  const float dz = a.z - b.z;
  return dx * dx + dy * dy + dz * dz;
}

float width_of(float prefactor, float radius) {
  float width = 0.0f;
  vi_assign_gwid_from_rad_pre(&prefactor, &radius, &width, 1);
  return width;
}

}  // namespace

void Gaussian::make_table(float min_width, float radius, float scale) {
  const float step = 1.0f / scale;
  float x = step / 2.0f;
  for (std::size_t k = 0; k <= lk1; ++k) {
    const float t = x + 1.0f;
    const float ratio = x / t;
    ratio_table[k] = ratio;
    log_prefactor_table[k] = static_cast<float>(std::log(double{std::sqrt(ratio) * ratio} * 2.7));
    reach_table[k] = t / (x * min_width);
    x += step;
  }
  const float four_r_cubed = radius * radius * (radius * 4.0f);
  const double log_volume = std::log(double{four_r_cubed} * 1.0471966666666666);
  const auto range = static_cast<float>(log_volume - double{log_cutoff});
  float y = 0.0f;
  for (std::size_t k = 0; k <= lk2; ++k) {
    volume_table[k] = std::exp(y) * cutoff;
    y += range * 0.001f;
  }
  volume_scale = 1000.0f / range;
}

// Moves what counts to the front of `coords` and `radii`; false when nothing does.
bool Gaussian::gather_atoms(const VXMolBase& mol, bool no_hydrogens) {
  const std::size_t atoms = mol.GetMaxAtomIdx();
  coords.assign(3 * atoms, 0.0f);
  if (!mol.GetCoords(coords.data())) return false;
  const bool own = detail::has_radii(mol);
  radii.assign(atoms, 0.0f);
  std::size_t kept = 0;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    constexpr float smallest = 0.0001f;
    const float r = own ? atom->GetRadius() : VXGetBondiVdWRadius(atom->GetAtomicNum());
    if (!(r >= smallest) || !std::isfinite(r) || (no_hydrogens && atom->IsHydrogen())) continue;
    const std::size_t from = 3 * std::size_t{atom->GetIdx()};
    for (std::size_t axis = 0; axis < 3; ++axis)
      coords[3 * kept + axis] = coords[from + axis];
    radii[kept] = r;
    ++kept;
  }
  coords.resize(3 * kept);
  radii.resize(kept);
  widths.assign(kept, 0.0f);
  prefactors.assign(kept, prefactor);
  scratch.assign(kept, nullptr);
  first_term.assign(kept + 1, 0);
  return kept != 0;
}

int Gaussian::make_full_gaussian_rep_base(const VXMolBase& mol, int no_hydrogens, Gsphere** out,
                                          int* count) {
  result.clear();
  *out = nullptr;
  *count = 0;
  if (!vi_init_gauss_rep(static_cast<int>(mol.NumAtoms()))) return 0;
  if (!gather_atoms(mol, no_hydrogens != 0)) return 0;
  const auto [smallest, largest] = std::minmax_element(radii.begin(), radii.end());
  vi_assign_gwid_from_rad_pre(prefactors.data(), radii.data(), widths.data(),
                              static_cast<int>(widths.size()));
  const std::size_t end = expand(*smallest, *largest);
  if (end == 0) {
    VXThrow.Warning("Too many terms in the Gaussian series of a molecule.");
    return 0;
  }
  convert_terms(end);
  return hand_out(out, count);
}

// The atom by itself; its volume is the log of the volume over the cut-off.
Gsphere Gaussian::atom_term(std::size_t i, float narrowest) const {
  const float w = widths[i];
  Gsphere term{w, coords[3 * i], coords[3 * i + 1], coords[3 * i + 2], 0.0f, 0, 0.0f, 0.0f};
  const float unit_volume = std::sqrt(1.0f / (w * w * w)) * (prefactor * pi32);
  term.volume = std::log(unit_volume) - log_cutoff;
  const float q = (w + narrowest) / w;
  term.radius = (term.volume - std::log(std::sqrt(q) * q / prefactor)) * (q * (1.0f / narrowest));
  return term;
}

// Appends the products of an atom with the terms of an earlier one, and gives the new end.
std::size_t Gaussian::append_products(const Gsphere& atom, std::size_t j, std::size_t end,
                                      const WidthScale& scale) {
  const auto first = static_cast<std::size_t>(first_term[j]);
  const auto count = static_cast<std::size_t>(first_term[j + 1]) - first;
  if (end + count >= terms.size()) terms.resize(std::max(2 * terms.size(), end + count + 1));
  const float w = atom.width;
  const float to_index = scale.per_ratio / w;
  const Gsphere* const begin = terms.data() + first;
  Gsphere* added = terms.data() + end;
  for (const Gsphere* g = begin; g != begin + count; ++g) {
    const float dx = g->x - atom.x;
    const float dy = g->y - atom.y;
    const float dz = g->z - atom.z;
    const float squared = dx * dx + dy * dy + dz * dz;
    if (squared > g->radius) continue;
    const std::size_t index = table_index(to_index * g->width);
    const float along = ratio_table[index];
    const float log_volume = log_prefactor_table[index] + g->volume - along * w * squared;
    const float width = w + g->width;
    const std::size_t by_width = table_index(width * scale.per_width);
    const float reach = (log_volume + log_prefactor_table[by_width]) * reach_table[by_width];
    // Written always and kept or not, which no branch could foretell.
    *added = {width, atom.x + along * dx, atom.y + along * dy, atom.z + along * dz,
              0.0f,  g->level + 1,        log_volume,          reach};
    added += log_volume > 0.0f;
  }
  return static_cast<std::size_t>(added - terms.data());
}

// Gives the end of the terms, 0 when there are too many.
std::size_t Gaussian::expand(float smallest, float largest) {
  const float widest = width_of(prefactor, smallest);
  const float narrowest = width_of(prefactor, largest);
  WidthScale scale{};
  scale.per_ratio = 1000.0f / (widest * 6.0f * (1.0f / narrowest));
  scale.per_width = scale.per_ratio * (1.0f / narrowest);
  if (smallest != min_radius || largest != max_radius || prefactor != table_prefactor_ ||
      cutoff != table_cutoff_) {
    min_radius = smallest;
    max_radius = largest;
    table_prefactor_ = prefactor;
    table_cutoff_ = cutoff;
    make_table(narrowest, largest, scale.per_ratio);
  }

  const std::size_t atoms = radii.size();
  atom_terms_.resize(atoms);
  for (std::size_t i = 0; i < atoms; ++i)
    atom_terms_[i] = atom_term(i, narrowest);
  const std::size_t limit = term_limit(atoms);
  const bool use_tree = atoms > static_cast<std::size_t>(TreeThresh);
  if (use_tree && !tree->find(atom_terms_, limit)) return 0;
  std::array<std::int32_t, TreeThresh> all{};
  std::iota(all.begin(), all.end(), 0);
  std::size_t end = 1;
  for (std::size_t i = 0; i < atoms; ++i) {
    const Gsphere& atom = atom_terms_[i];
    if (end >= terms.size()) terms.resize(2 * terms.size());
    terms[end] = atom;
    first_term[i] = static_cast<std::int32_t>(end);
    ++end;
    // Either way the reach of the earlier atom decides, so that both give the same terms.
    const std::span<const std::int32_t> earlier =
        use_tree ? tree->before(i) : std::span(all.data(), i);
    for (const std::int32_t j : earlier) {
      const Gsphere& other = atom_terms_[static_cast<std::size_t>(j)];
      if (squared_distance(other, atom) > other.radius) continue;
      end = append_products(atom, static_cast<std::size_t>(j), end, scale);
      if (end > limit) return 0;
    }
    first_term[i + 1] = static_cast<std::int32_t>(end);
  }
  return end;
}

// The squared reach stays in `radius`.
void Gaussian::convert_terms(std::size_t end) {
  for (std::size_t k = 1; k < end; ++k) {
    Gsphere& term = terms[k];
    const float volume = volume_table[table_index(volume_scale * term.volume)];
    const float q = term.width * ipi;
    term.volume = term.level % 2 != 0 ? -volume : volume;
    term.prefactor = volume * std::sqrt(q) * q;
  }
  result.assign(terms.begin() + 1, terms.begin() + static_cast<std::ptrdiff_t>(end));
}

}  // namespace VXCore
