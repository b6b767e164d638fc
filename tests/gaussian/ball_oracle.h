// The points that a Gaussian touches, worked out in double precision without tables.
#ifndef VXGRID_TESTS_GAUSSIAN_BALL_ORACLE_H
#define VXGRID_TESTS_GAUSSIAN_BALL_ORACLE_H

#include <array>    // for array
#include <cmath>    // for lround, sqrt
#include <cstddef>  // for size_t
#include <vector>   // for vector

#include "vxgrid/grid/grid_struct.h"

namespace vxgrid_test {

/// A record with a buffer of its own.
struct OwnedGrid {
  OwnedGrid(std::array<int, 3> dim, std::array<float, 3> mid, float spacing, int planes = 1) {
    record.xdim = dim[0];
    record.ydim = dim[1];
    record.zdim = dim[2];
    record.xmid = mid[0];
    record.ymid = mid[1];
    record.zmid = mid[2];
    record.spacing = spacing;
    size = static_cast<std::size_t>(dim[0] * dim[1] * dim[2]);
    values.resize(size * static_cast<std::size_t>(planes));
    record.floats = values.data();
  }
  OwnedGrid(const OwnedGrid&) = delete;
  OwnedGrid& operator=(const OwnedGrid&) = delete;

  VXCore::GridStruct record;
  std::vector<float> values;
  std::size_t size;
};

struct BallPoint {
  std::size_t element;
  std::array<int, 3> index;
  std::array<double, 3> to_centre;  // centre - point, Angstrom
  double squared() const {
    return to_centre[0] * to_centre[0] + to_centre[1] * to_centre[1] + to_centre[2] * to_centre[2];
  }
};

struct OracleBall {
  int reach = 0;                  // in spacings
  std::array<double, 3> u{};      // centre from the nearest point, in spacings
  std::array<int, 3> node{};      // that point
  std::vector<BallPoint> points;  // those in the grid, in the order of the kernels
};

/// The ball around the point nearest to a centre, or around the low corner of the cell that the
/// centre lies in, from which the distances then count.
inline OracleBall ball_of(const VXCore::GridStruct& g, const std::array<float, 3>& centre,
                          double reach, bool around_cell_corner = false) {
  const std::array<int, 3> dim = {g.xdim, g.ydim, g.zdim};
  const std::array<double, 3> mid = {g.xmid, g.ymid, g.zmid};
  const double h = g.spacing;
  OracleBall ball;
  std::array<double, 3> low{};
  double u_squared = 0;
  for (std::size_t k = 0; k < 3; ++k) {
    low[k] = mid[k] - (dim[k] - 1) * h / 2;
    const double high = mid[k] + (dim[k] - 1) * h / 2;
    if (!(low[k] <= centre[k] + reach && centre[k] - reach <= high)) return ball;
    const double f = (centre[k] - low[k]) / h;
    ball.node[k] = static_cast<int>(std::lround(f));
    ball.u[k] = f - ball.node[k];
    u_squared += ball.u[k] * ball.u[k];
  }
  const double limit = std::sqrt(u_squared) + reach / h;
  ball.reach = static_cast<int>(limit);
  const int squared = static_cast<int>(limit * limit);
  std::array<double, 3> from = {centre[0], centre[1], centre[2]};
  for (std::size_t k = 0; around_cell_corner && k < 3; ++k) {
    if (ball.u[k] < 0) --ball.node[k];
    from[k] = low[k] + ball.node[k] * h;
  }
  for (int c = -ball.reach; c <= ball.reach; ++c)
    for (int b = -ball.reach; b <= ball.reach; ++b)
      for (int a = -ball.reach; a <= ball.reach; ++a) {
        if (a * a + b * b + c * c > squared) continue;
        BallPoint point{};
        point.index = {ball.node[0] + a, ball.node[1] + b, ball.node[2] + c};
        bool inside = true;
        for (std::size_t k = 0; k < 3; ++k) {
          inside = inside && point.index[k] >= 0 && point.index[k] < dim[k];
          point.to_centre[k] = from[k] - (low[k] + point.index[k] * h);
        }
        if (!inside) continue;
        point.element = static_cast<std::size_t>(
            point.index[0] + dim[0] * (point.index[1] + dim[1] * point.index[2]));
        ball.points.push_back(point);
      }
  return ball;
}

}  // namespace vxgrid_test

#endif
