/// \file
/// Elapsed time.
#ifndef VXGRID_TOOLKIT_CORE_STOPWATCH_H
#define VXGRID_TOOLKIT_CORE_STOPWATCH_H

#include <chrono>  // for steady_clock

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Runs from its construction on.
class VXGRID_API VXStopwatch {
 public:
  /// Seconds since the last lap, or since the start for the first one.
  float Lap() {
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<float> elapsed = now - last_;
    last_ = now;
    return elapsed.count();
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

}  // namespace VXCore

#endif
