// Surface points onto the surface of a union of spheres: along lattice edges, freely, and onto
// given points.
#include "vxgrid/fieldgrids/surface_vertices.h"

#include <algorithm>  // for any_of, clamp, max
#include <array>      // for array
#include <cmath>      // for fabs, isfinite, sqrt
#include <cstddef>    // for size_t
#include <limits>     // for numeric_limits
#include <numeric>    // for iota
#include <optional>   // for optional
#include <span>       // for span
#include <vector>     // for vector

#include "fieldgrids/lattice_edge.h"
#include "fieldgrids/nearby_spheres.h"
#include "gridmath/record_lattice.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::LatticeEdge;
using detail::NearbySpheres;
using detail::RecordLattice;

using Place = std::array<float, 3>;
using Vector = std::array<double, 3>;

double dot(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector difference(const Vector& a, const Vector& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

// A straight line: its places are origin + s*direction, with a direction of length 1.
struct Line {
  Vector at(double s) const {
    return {origin[0] + s * direction[0], origin[1] + s * direction[1],
            origin[2] + s * direction[2]};
  }

  Vector origin{};
  Vector direction{};
};

// The part of a line that is inside a sphere.
struct Passage {
  bool covers(double s) const { return s > entry && s < exit; }

  double entry;
  double exit;
};

template <class Coordinate>
bool is_finite(const std::array<Coordinate, 3>& p) {
  return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]);
}

Place rounded(const Vector& p) {
  constexpr double most = std::numeric_limits<float>::max();
  Place place{};
  for (std::size_t axis = 0; axis < 3; ++axis)
    place[axis] = static_cast<float>(std::clamp(p[axis], -most, most));
  return place;
}

// The union of spheres, and the ways onto its surface.
class SphereUnion {
 public:
  // Points of interest are within `reach` of the surface, or else cost a search through all.
  SphereUnion(const SphereStruct* spheres, int count, float probe, float reach) : reach_(reach) {
    for (int i = 0; spheres && i < count; ++i) {
      SphereStruct sphere = spheres[i];
      sphere.r += probe;
      const bool has_surface = is_finite(Place{sphere.x, sphere.y, sphere.z}) &&
                               std::isfinite(sphere.r) && sphere.r > 0.0f;
      if (has_surface) spheres_.push_back(sphere);
    }
    all_.resize(spheres_.size());
    std::iota(all_.begin(), all_.end(), 0);
    has_lookup_ = lookup_.make(spheres_, reach, 0.0f);
  }

  bool empty() const { return spheres_.empty(); }

  // Where a line passes through the surface, between 0 and `length` along it and nearest to `s`.
  // The line may be as long as twice the reach.
  std::optional<double> crossing(const Line& line, double length, double s) {
    std::vector<Passage> passages;
    for (const int i : near(rounded(line.at(length / 2)))) {
      if (const std::optional<Passage> passage = passage_through(i, line))
        passages.push_back(*passage);
    }
    std::optional<double> best;
    const auto consider = [&](double at) {
      if (at < 0.0 || at > length || (best && std::fabs(at - s) >= std::fabs(*best - s))) return;
      const bool is_hidden = std::any_of(passages.begin(), passages.end(),
                                         [at](const Passage& other) { return other.covers(at); });
      if (!is_hidden) best = at;
    };
    for (const Passage& passage : passages) {
      consider(passage.entry);
      consider(passage.exit);
    }
    return best;
  }

  // The place on the surface for any point, away from the centre of the sphere that it is nearest
  // to or deepest in.
  Place free_place(const Place& place) {
    const Vector point = {place[0], place[1], place[2]};
    Nearest nearest = nearest_of(near(place), point);
    if (!(nearest.distance <= double{reach_})) nearest = nearest_of(all_, point);
    const Vector centre = centre_of(nearest.sphere);
    const Vector outwards = difference(point, centre);
    const double length = std::sqrt(dot(outwards, outwards));
    Line line{centre, {1.0, 0.0, 0.0}};
    if (length > 0.0) {
      line.direction = {outwards[0] / length, outwards[1] / length, outwards[2] / length};
    } else {
      vx_printf("zero dist encountered\n");
    }
    return rounded(line.at(way_out(line, double{sphere(nearest.sphere).r})));
  }

 private:
  struct Nearest {
    int sphere = 0;
    double distance = std::numeric_limits<double>::infinity();
  };

  const SphereStruct& sphere(int i) const { return spheres_[static_cast<std::size_t>(i)]; }
  Vector centre_of(int i) const { return {sphere(i).x, sphere(i).y, sphere(i).z}; }

  std::span<const int> near(const Place& place) {
    return has_lookup_ ? lookup_.near(place) : std::span<const int>(all_);
  }

  // The sphere whose surface is nearest, where distances inside count below 0.
  Nearest nearest_of(std::span<const int> candidates, const Vector& point) const {
    Nearest nearest;
    for (const int i : candidates) {
      const Vector d = difference(point, centre_of(i));
      const double distance = std::sqrt(dot(d, d)) - double{sphere(i).r};
      if (distance < nearest.distance) nearest = {i, distance};
    }
    return nearest;
  }

  std::optional<Passage> passage_through(int i, const Line& line) const {
    const Vector to_centre = difference(centre_of(i), line.origin);
    const double middle = dot(to_centre, line.direction);
    const Vector foot = difference(centre_of(i), line.at(middle));
    const double radius = double{sphere(i).r};
    const double squared_half = radius * radius - dot(foot, foot);
    if (!(squared_half > 0.0)) return std::nullopt;
    const double half = std::sqrt(squared_half);
    return Passage{middle - half, middle + half};
  }

  // The first place from `s` on along a line that is inside no sphere. Every step leaves a sphere
  // for good, so that there is an end.
  double way_out(const Line& line, double s) {
    for (bool is_inside = true; is_inside;) {
      is_inside = false;
      const double here = s;
      for (const int i : near(rounded(line.at(here)))) {
        const std::optional<Passage> passage = passage_through(i, line);
        if (!passage || !passage->covers(here)) continue;
        s = std::max(s, passage->exit);
        is_inside = true;
      }
    }
    return s;
  }

  float reach_;
  std::vector<SphereStruct> spheres_;  // widened by the probe
  std::vector<int> all_;               // their numbers
  NearbySpheres lookup_;
  bool has_lookup_ = false;
};

template <class Record>
Place place_of(const Record& record) {
  return {record.x, record.y, record.z};
}

template <class Record>
void put(Record& record, const Place& place) {
  record.x = place[0];
  record.y = place[1];
  record.z = place[2];
}

// Where the new places of points go.
struct Destination {
  template <class Record>
  void store(Record* points, int i, const Place& place) const {
    if (out && i < out_count) put(out[i], place);
    if (in_place) put(points[i], place);
  }

  PntStruct* out;
  int out_count;
  bool in_place;
};

template <class Record, class Move>
void move_each(Record* points, int count, const Destination& destination, Move move) {
  for (int i = 0; points && i < count; ++i)
    destination.store(points, i, move(place_of(points[i])));
}

Place freely(SphereUnion& surface, const Place& place) {
  return surface.empty() || !is_finite(place) ? place : surface.free_place(place);
}

// Along the edge of a lattice; nothing where there is no edge or it does not meet the surface.
std::optional<Place> along_edge(SphereUnion& surface, const RecordLattice& lattice,
                                float inverse_spacing, const Place& place) {
  if (surface.empty() || !(lattice.spacing > 0.0f) || lattice.size() == 0) return std::nullopt;
  const std::optional<LatticeEdge> edge = detail::edge_at(lattice, inverse_spacing, place);
  if (!edge) return std::nullopt;
  Line line;
  for (std::size_t axis = 0; axis < 3; ++axis)
    line.origin[axis] = double{lattice.coordinate(axis, edge->base[axis])};
  line.direction[edge->axis] = 1.0;
  const double length = lattice.spacing;
  const std::optional<double> s = surface.crossing(line, length, double{edge->fraction} * length);
  if (!s) return std::nullopt;
  return rounded(line.at(*s));
}

}  // namespace

void vi_vert_repo_grid(int mode, GridStruct g, VrtStruct* vertices, int vertex_count,
                       PntStruct* cuts, int cut_count, SphereStruct* spheres, int sphere_count,
                       PntStruct* out, int out_count, float probe) {
  const RecordLattice lattice(g);
  const float inverse_spacing = detail::inverse_spacing_of(g);
  SphereUnion surface(spheres, sphere_count, probe, std::max(g.spacing, 0.0f));
  const Destination destination{out, out_count, mode == 0};
  if (vertex_count >= 1) {
    move_each(vertices, vertex_count, destination, [&](const Place& place) {
      const std::optional<Place> moved = along_edge(surface, lattice, inverse_spacing, place);
      return moved ? *moved : freely(surface, place);
    });
  } else {
    move_each(cuts, cut_count, destination, [&](const Place& place) {
      return along_edge(surface, lattice, inverse_spacing, place).value_or(place);
    });
  }
}

void vi_vert_repo_Free(int mode, GridStruct g, VrtStruct* vertices, int vertex_count,
                       PntStruct* cuts, int cut_count, SphereStruct* spheres, int sphere_count,
                       PntStruct* out, int out_count, float probe) {
  SphereUnion surface(spheres, sphere_count, probe, std::max(g.spacing, 0.0f));
  const Destination destination{out, out_count, mode == 0};
  const auto move = [&](const Place& place) { return freely(surface, place); };
  if (vertex_count >= 1) {
    move_each(vertices, vertex_count, destination, move);
  } else {
    move_each(cuts, cut_count, destination, move);
  }
}

void vi_vert_repo_exhaust(VrtStruct* vertices, int vertex_count, PntStruct* points, int point_count,
                          float a, float b, int* moved) {
  if (moved) *moved = 0;
  if (!vertices || vertex_count < 1) return;
  std::vector<SphereStruct> targets;
  for (int i = 0; points && i < point_count; ++i)
    targets.push_back({points[i].x, points[i].y, points[i].z, 0.0f});
  NearbySpheres lookup;
  if (!(a >= 0.0f) || !(b > 0.0f) || !lookup.make(targets, a, b)) {
    vx_printf("danger, kit marlow!\n");
    return;
  }
  int count = 0;
  for (int i = 0; i < vertex_count; ++i) {
    VrtStruct& vertex = vertices[i];
    const Vector from = {vertex.x, vertex.y, vertex.z};
    double best = double{a} * double{a};
    const SphereStruct* target = nullptr;
    for (const int n : lookup.near(place_of(vertex))) {
      const SphereStruct& point = targets[static_cast<std::size_t>(n)];
      const Vector d = difference({point.x, point.y, point.z}, from);
      const double squared = dot(d, d);
      if (squared > best || (target && squared == best)) continue;
      best = squared;
      target = &point;
    }
    if (!target) continue;
    put(vertex, place_of(*target));
    ++count;
  }
  if (moved) *moved = count;
}

}  // namespace VXCore
