// The images of a molecule in its crystal: as transformations, as atoms, as conformers.
#include "vxgrid/crystal/crystal_images.h"

#include <algorithm>      // for copy_n, max, min
#include <array>          // for array
#include <cmath>          // for abs, floor
#include <cstdint>        // for int64_t, uint64_t
#include <unordered_map>  // for unordered_multimap

#include "crystal/affine.h"
#include "crystal/symmetry_tags.h"
#include "vxgrid/crystal/molecule_symmetry.h"

namespace VXCore::VXXtal {
namespace {

using detail::chain;
using detail::Matrix4;
using detail::transform_point;
using Point = std::array<float, 3>;

// Bounds on what a tiny cell and a wide radius may ask for.
constexpr std::uint64_t max_candidates = std::uint64_t{1} << 24;
constexpr std::size_t max_images = std::size_t{1} << 18;
// Floats above this can't be counted up in steps of 1.
constexpr float max_cell_index = 8388608.0F;

constexpr float same_image = 0.01F;

struct Box {
  Point lower;
  Point upper;

  std::array<Point, 8> corners() const {
    std::array<Point, 8> points{};
    for (std::size_t i = 0; i < points.size(); ++i) {
      points[i] = {(i & 1) != 0 ? upper[0] : lower[0], (i & 2) != 0 ? upper[1] : lower[1],
                   (i & 4) != 0 ? upper[2] : lower[2]};
    }
    return points;
  }
};

// The eight corners of a cube about a point.
std::array<Point, 8> cube(const float* center, float half_edge) {
  return Box{{center[0] - half_edge, center[1] - half_edge, center[2] - half_edge},
             {center[0] + half_edge, center[1] + half_edge, center[2] + half_edge}}
      .corners();
}

// The box of the atoms; false for a molecule without any.
bool find_box(const VXMolBase& mol, Box& box) {
  bool first = true;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    Point xyz{};
    mol.GetCoords(atom, xyz.data());
    if (first) box = {xyz, xyz};
    first = false;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      box.lower[axis] = std::min(box.lower[axis], xyz[axis]);
      box.upper[axis] = std::max(box.upper[axis], xyz[axis]);
    }
  }
  return !first;
}

// The box along the axes around a transformed box (J. Arvo, "Transforming axis-aligned bounding
// boxes", Graphics Gems, 1990).
Box transform_box(const Matrix4& matrix, const Box& box) {
  Box out{{matrix[12], matrix[13], matrix[14]}, {matrix[12], matrix[13], matrix[14]}};
  for (std::size_t to = 0; to < 3; ++to) {
    for (std::size_t from = 0; from < 3; ++from) {
      const float a = matrix[4 * from + to] * box.lower[from];
      const float b = matrix[4 * from + to] * box.upper[from];
      out.lower[to] += std::min(a, b);
      out.upper[to] += std::max(a, b);
    }
  }
  return out;
}

float squared_distance(const float* point, const Box& box) {
  float sum = 0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    float d = 0;
    if (point[axis] < box.lower[axis]) d = point[axis] - box.lower[axis];
    if (point[axis] > box.upper[axis]) d = point[axis] - box.upper[axis];
    sum += d * d;
  }
  return sum;
}

// Whether the image of a box comes within a radius of a point.
bool comes_near(const Matrix4& matrix, const Box& box, const float* point, float radius) {
  if (!(squared_distance(point, transform_box(matrix, box)) > radius * radius)) return true;
  for (const Point& corner : box.corners()) {
    const Point image = transform_point(matrix.data(), corner.data());
    double sum = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double d = static_cast<double>(image[axis]) - static_cast<double>(point[axis]);
      sum += d * d;
    }
    if (sum < static_cast<double>(radius) * static_cast<double>(radius)) return true;
  }
  return false;
}

// The image of the point (1, 1, 1).
Point column_sums(const float* matrix) {
  Point sums{};
  for (std::size_t i = 0; i < 3; ++i) {
    sums[i] = matrix[i] + matrix[4 + i] + matrix[8 + i] + matrix[12 + i];
  }
  return sums;
}

bool within_tolerance(const Point& a, const Point& b) {
  for (std::size_t i = 0; i < 3; ++i) {
    if (!(std::abs(a[i] - b[i]) <= same_image)) return false;
  }
  return true;
}

bool map_alike(const float* a, const float* b) {
  constexpr Point origin = {0, 0, 0};
  for (const Point& point : cube(origin.data(), 1)) {
    const Point in_a = transform_point(a, point.data());
    const Point in_b = transform_point(b, point.data());
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (!(std::abs(in_a[axis] - in_b[axis]) < same_image)) return false;
    }
  }
  return true;
}

// Finds out whether a transformation is in a list already. The first of the list plays no part.
class DuplicateFinder {
 public:
  bool contains(const std::vector<float>& matrices, const Matrix4& matrix) const {
    const Point sums = column_sums(matrix.data());
    const std::int64_t bin = bin_of(sums[0]);
    for (std::int64_t near = bin - 1; near <= bin + 1; ++near) {
      const auto [begin, end] = by_sum_.equal_range(near);
      for (auto it = begin; it != end; ++it) {
        const float* other = matrices.data() + 16 * it->second;
        if (within_tolerance(column_sums(other), sums) && map_alike(other, matrix.data())) {
          return true;
        }
      }
    }
    return false;
  }

  void add(std::size_t index, const Matrix4& matrix) {
    if (index > 0) by_sum_.emplace(bin_of(column_sums(matrix.data())[0]), index);
  }

 private:
  // Bins somewhat wider than the tolerance, so that likes are in neighbouring bins.
  static std::int64_t bin_of(float sum) {
    constexpr double width = 0.02;
    constexpr double largest = 1e15;
    const double bin = std::floor(static_cast<double>(sum) / width);
    return std::abs(bin) < largest ? static_cast<std::int64_t>(bin) : 0;
  }

  std::unordered_multimap<std::int64_t, std::size_t> by_sum_;
};

// The cells, from `low` to `high` along each axis, in which images near a point can have their
// centre.
struct CellRange {
  Point low;
  Point high;

  std::uint64_t count() const {
    std::uint64_t cells = 1;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      cells *= static_cast<std::uint64_t>(high[axis] - low[axis]) + 1;
      if (cells > max_candidates) return max_candidates + 1;
    }
    return cells;
  }
};

// False if the cells are beyond counting.
bool find_cells(const VXSymmetry& symmetry, const float* point, float radius, CellRange& range) {
  std::vector<float> coords(point, point + 3);
  for (const Point& corner : cube(point, radius)) {
    coords.insert(coords.end(), corner.begin(), corner.end());
  }
  const auto count = static_cast<unsigned int>(coords.size() / 3);
  if (!symmetry.CartesianToFractional(coords.data(), count, 0, false)) return false;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    float smallest = coords[axis];
    float largest = coords[axis];
    for (std::size_t i = axis; i < coords.size(); i += 3) {
      if (!(std::abs(coords[i]) < max_cell_index)) return false;
      smallest = std::min(smallest, coords[i]);
      largest = std::max(largest, coords[i]);
    }
    range.low[axis] = std::floor(smallest - 1);
    range.high[axis] = std::floor(largest + 1);
  }
  return true;
}

// The Cartesian transformation of an operator that takes `center` into the given cell.
Matrix4 image_in_cell(const VXUnitCell& cell, const float* op, const Point& center,
                      const Point& cell_index) {
  Matrix4 moved{};
  std::copy_n(op, moved.size(), moved.begin());
  const Point image = transform_point(chain(cell.Cart2Frac(), op).data(), center.data());
  for (std::size_t axis = 0; axis < 3; ++axis) {
    moved[12 + axis] += cell_index[axis] - detail::cell_floor(image[axis]);
  }
  return chain(chain(cell.Cart2Frac(), moved.data()).data(), cell.Frac2Cart());
}

}  // namespace

VXXtalSymmetry::~VXXtalSymmetry() = default;

VXXtalSymmetry::VXXtalSymmetry(const VXMolBase& mol, int ix, int iy, int iz) {
  valid_ = init(mol, ix, iy, iz);
}

VXXtalSymmetry::VXXtalSymmetry(const VXMolBase& mol, const float* point, float radius) {
  valid_ = init(mol, point, radius);
}

VXXtalSymmetry::VXXtalSymmetry(const VXMolBase& mol, bool, bool) {
  valid_ = init(mol, 0, 0, 0);
}

void VXXtalSymmetry::append(const float* matrix, bool identity, unsigned int op) {
  matrices_.insert(matrices_.end(), matrix, matrix + 16);
  identities_.push_back(identity);
  op_numbers_.push_back(op);
}

bool VXXtalSymmetry::init(const VXMolBase& mol, int ix, int iy, int iz) {
  VXSymmetry symmetry;
  if (!GetSymmetry(mol, symmetry) || symmetry.GetOpCount() == 0) return false;
  Point center{};
  VXGetCenterOfMass(mol, center.data());
  std::vector<bool> enabled;
  symmetry.GetEnabled(enabled);
  for (unsigned int op = 0; op < symmetry.GetOpCount(); ++op) {
    if (!enabled[op]) continue;
    Matrix4 matrix{};
    symmetry.GetImpl()->GetCartesianOperator(matrix.data(), op, ix, iy, iz, center.data());
    append(matrix.data(), op == 0 && ix == 0 && iy == 0 && iz == 0, op);
  }
  return true;
}

bool VXXtalSymmetry::init(const VXMolBase& mol, const float* point, float radius) {
  VXSymmetry symmetry;
  Box box{};
  if (!GetSymmetry(mol, symmetry) || !find_box(mol, box)) return false;
  const unsigned int op_count = symmetry.GetOpCount();
  if (op_count == 0 || symmetry.GetNumber() == 0) return true;
  Point center{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    center[axis] = (box.lower[axis] + box.upper[axis]) * 0.5F;
  }
  CellRange cells{};
  if (!find_cells(symmetry, point, radius, cells)) return false;
  if (cells.count() * op_count > max_candidates) return false;

  std::vector<bool> enabled;
  symmetry.GetEnabled(enabled);
  constexpr Point ones = {1, 1, 1};
  DuplicateFinder duplicates;
  const auto try_image = [&](const Point& cell_index, unsigned int op) {
    const Matrix4 matrix =
        image_in_cell(symmetry.cell(), symmetry.GetMatrices() + 16 * op, center, cell_index);
    if (!comes_near(matrix, box, point, radius)) return;
    if (duplicates.contains(matrices_, matrix)) return;
    duplicates.add(op_numbers_.size(), matrix);
    append(matrix.data(), within_tolerance(column_sums(matrix.data()), ones), op);
  };
  for (float x = cells.low[0]; x <= cells.high[0]; x += 1) {
    for (float y = cells.low[1]; y <= cells.high[1]; y += 1) {
      for (float z = cells.low[2]; z <= cells.high[2]; z += 1) {
        for (unsigned int op = 0; op < op_count; ++op) {
          if (op >= enabled.size() || enabled[op]) try_image({x, y, z}, op);
        }
        if (op_numbers_.size() > max_images) {
          *this = VXXtalSymmetry();
          return false;
        }
      }
    }
  }
  return true;
}

const float* VXXtalSymmetry::Matrix(unsigned int i) const {
  return i < NumOps() ? matrices_.data() + 16 * static_cast<std::size_t>(i) : nullptr;
}

bool VXXtalSymmetry::IsIdentity(unsigned int i) const {
  return i < NumOps() && identities_[i];
}

unsigned int VXXtalSymmetry::GetOpNumber(unsigned int i) const {
  return i < NumOps() ? op_numbers_[i] : 0;
}

unsigned int VXXtalSymmetry::NumOps(const VXMolBase& mol) {
  VXSymmetry symmetry;
  return GetSymmetry(mol, symmetry) ? symmetry.GetOpCount() : 0;
}

bool VXXtalSymmetry::GetSymmetry(const VXMolBase& mol, VXSymmetry& out) {
  return VXGetXtalSymmetry(mol, out);
}

bool VXXtalSymmetry::SetSymmetry(VXMolBase& mol, const VXSymmetry& symmetry, bool storeCenter) {
  if (symmetry.GetNumber() == 0 || !detail::write_symmetry(mol, symmetry)) return false;
  Point center{};
  if (!storeCenter || !GetCenterOfMass(mol, center.data())) return true;
  return detail::store_datum(mol, CenterOfMassTag(), center);
}

bool VXXtalSymmetry::GetOpEnabled(const VXMolBase& mol, unsigned int op) {
  VXSymmetry symmetry;
  if (!GetSymmetry(mol, symmetry)) return false;
  std::vector<bool> enabled;
  symmetry.GetEnabled(enabled);
  return op < enabled.size() && enabled[op];
}

bool VXXtalSymmetry::SetOpEnabled(VXMolBase& mol, unsigned int op, bool enabled) {
  VXSymmetry symmetry;
  if (!GetSymmetry(mol, symmetry)) return false;
  std::vector<bool> flags;
  symmetry.GetEnabled(flags);
  if (op >= flags.size()) return false;
  flags[op] = enabled;
  return symmetry.SetEnabled(flags) && detail::write_symmetry(mol, symmetry);
}

bool VXXtalSymmetry::GetCenterOfMass(const VXMolBase& mol, float* xyz) {
  Point center{};
  if (mol.GetData(CenterOfMassTag(), center)) {
    std::copy_n(center.begin(), 3, xyz);
    return true;
  }
  return mol && VXMol::VXGetCenterOfMass(mol, xyz);
}

unsigned int VXXtalSymmetry::CenterOfMassTag() {
  return detail::symmetry_tags().symm_com;
}

}  // namespace VXCore::VXXtal
