// Dielectrics on lattice edges: from a mask, the edges that the surface crosses, and the harmonic
// mean on them.
#include "vxgrid/fieldgrids/dielectric.h"

#include <algorithm>  // for min
#include <array>      // for array
#include <cstddef>    // for size_t
#include <limits>     // for numeric_limits
#include <optional>   // for optional

#include "fieldgrids/lattice_edge.h"
#include "gridmath/record_lattice.h"

namespace VXCore {

namespace {

using detail::LatticeEdge;
using detail::RecordLattice;

constexpr float surface_level = 0.5f;

template <class Value>
bool is_below_surface_level(Value value) {
  return static_cast<float>(value) < surface_level;
}

std::array<std::size_t, 3> strides_of(const RecordLattice& lattice) {
  return {1, lattice.row_stride(), lattice.plane_stride()};
}

template <class Value>
void find_cuts(const GridStruct& g, const Value* values, std::vector<PntStruct>& cuts, int* count) {
  cuts.clear();
  if (count) *count = 0;
  const RecordLattice lattice(g);
  if (!values || lattice.size() == 0) return;

  // A surface has some six crossings for each row; no more than there are edges.
  const auto points_along = [&](std::size_t axis) {
    return static_cast<std::size_t>(lattice.dim[axis] - 1);
  };
  cuts.reserve(std::min(6 * lattice.size() / lattice.row_stride(),
                        3 * points_along(0) * points_along(1) * points_along(2)));
  const std::array<std::size_t, 3> strides = strides_of(lattice);
  for (int z = 0; z < g.zdim - 1; ++z) {
    for (int y = 0; y < g.ydim - 1; ++y) {
      for (int x = 0; x < g.xdim - 1; ++x) {
        const std::array<int, 3> base = {x, y, z};
        const Value* const value = values + detail::element_at(lattice, x, y, z);
        for (std::size_t axis = 0; axis < 3; ++axis) {
          if (is_below_surface_level(value[0]) == is_below_surface_level(value[strides[axis]]))
            continue;
          std::array<float, 3> middle{};
          for (std::size_t i = 0; i < 3; ++i) {
            const float steps = static_cast<float>(base[i]) + (i == axis ? 0.5f : 0.0f);
            middle[i] = lattice.lower[i] + steps * lattice.spacing;
          }
          cuts.push_back({middle[0], middle[1], middle[2]});
        }
      }
    }
  }
  constexpr std::size_t most = std::numeric_limits<int>::max();
  if (count) *count = static_cast<int>(std::min(cuts.size(), most));
}

// Corrects single edges by the surface points on them.
class EdgeCorrector {
 public:
  EdgeCorrector(const Dstruct& eps, const GridStruct& g, float inner, float outer, bool sharp)
      : arrays_{eps.x_edges, eps.y_edges, eps.z_edges},
        g_(g),
        lattice_(g),
        strides_(strides_of(lattice_)),
        inverse_spacing_(detail::inverse_spacing_of(g)),
        inner_(inner),
        outer_(outer),
        sharp_(sharp) {}

  bool has_mask() const {
    return lattice_.spacing > 0.0f && lattice_.size() != 0 && (g_.floats || g_.integers);
  }

  void correct_at(const std::array<float, 3>& point) const {
    const std::optional<LatticeEdge> edge = detail::edge_at(lattice_, inverse_spacing_, point);
    if (!edge || !arrays_[edge->axis]) return;
    const std::size_t base =
        detail::element_at(lattice_, edge->base[0], edge->base[1], edge->base[2]);
    const bool base_inside = is_inside(base);
    if (is_inside(base + strides_[edge->axis]) == base_inside) return;
    arrays_[edge->axis][base] = base_inside ? dielectric(inner_, outer_, edge->fraction)
                                            : dielectric(outer_, inner_, edge->fraction);
  }

 private:
  bool is_inside(std::size_t point) const {
    return g_.floats ? !is_below_surface_level(g_.floats[point])
                     : !is_below_surface_level(g_.integers[point]);
  }

  // Of an edge that runs through one medium for the fraction t and then through another.
  float dielectric(float near, float far, float t) const {
    constexpr float middle = 0.5f - 0.0001f;
    if (sharp_) return t >= middle ? near : far;
    return near * far / ((1.0f - t) * near + t * far);
  }

  std::array<float*, 3> arrays_;
  GridStruct g_;
  RecordLattice lattice_;
  std::array<std::size_t, 3> strides_;
  float inverse_spacing_;
  float inner_;
  float outer_;
  bool sharp_;
};

template <class Record>
void correct_at_each(const EdgeCorrector& corrector, const Record* points, int count) {
  if (!points) return;
  for (int i = 0; i < count; ++i)
    corrector.correct_at({points[i].x, points[i].y, points[i].z});
}

}  // namespace

void vi_grid_to_eps(GridStruct g, Dstruct eps, float inner, float outer) {
  if (!g.floats) return;
  const std::size_t size = RecordLattice(g).size();
  for (std::size_t i = 0; i < size; ++i) {
    const float value = (inner - outer) * g.floats[i] + outer;
    for (float* const edges : {eps.x_edges, eps.y_edges, eps.z_edges}) {
      if (edges) edges[i] = value;
    }
  }
}

void vi_find_cuts_f(int, GridStruct g, std::vector<PntStruct>& cuts, int* count) {
  find_cuts(g, g.floats, cuts, count);
}

void vi_find_cuts_i(int, GridStruct g, std::vector<PntStruct>& cuts, int* count) {
  find_cuts(g, g.integers, cuts, count);
}

void vi_correct_eps_with_cuts(Dstruct eps, GridStruct g, float inner, float outer,
                              VrtStruct* vertices, int vertex_count, PntStruct* cuts, int cut_count,
                              int flag) {
  const EdgeCorrector corrector(eps, g, inner, outer, flag != 0);
  if (!corrector.has_mask()) return;
  if (vertex_count >= 1) {
    correct_at_each(corrector, vertices, vertex_count);
  } else {
    correct_at_each(corrector, cuts, cut_count);
  }
}

}  // namespace VXCore
