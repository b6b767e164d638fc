/// \file
/// A set of small whole numbers.
#ifndef VXGRID_TOOLKIT_CORE_BIT_VECTOR_H
#define VXGRID_TOOLKIT_CORE_BIT_VECTOR_H

#include <cstddef>  // for size_t
#include <vector>   // for vector

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Bits that are off until set, without a given end: the vector grows as bits are set.
class VXGRID_API VXBitVector {
 public:
  VXBitVector() = default;
  /// Makes room for so many bits, all off.
  explicit VXBitVector(unsigned int size) : bits_(size) {}

  void SetBitOn(unsigned int bit) {
    if (bit >= bits_.size()) bits_.resize(std::size_t{bit} + 1);
    bits_[bit] = true;
  }
  void SetBitOff(unsigned int bit) {
    if (bit < bits_.size()) bits_[bit] = false;
  }
  bool IsBitOn(unsigned int bit) const { return bit < bits_.size() && bits_[bit]; }
  void Clear() { bits_.clear(); }

 private:
  std::vector<bool> bits_;
};

}  // namespace VXCore

#endif
