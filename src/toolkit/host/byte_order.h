// Words in the other byte order.
#ifndef VXGRID_SRC_TOOLKIT_HOST_BYTE_ORDER_H
#define VXGRID_SRC_TOOLKIT_HOST_BYTE_ORDER_H

#include <cstddef>      // for size_t
#include <cstdint>      // for uint32_t
#include <cstring>      // for memcpy
#include <type_traits>  // for is_trivially_copyable_v

namespace VXHost::detail {

inline std::uint32_t reversed(std::uint32_t word) {
  return __builtin_bswap32(word);
}

/// A 32-bit value whose bytes are turned around. Bytes are moved, never a float: turning a
/// signalling NaN into a quiet one on the way would change the word.
template <class Word>
void reverse_word(Word& word) {
  static_assert(sizeof(Word) == 4 && std::is_trivially_copyable_v<Word>);
  std::uint32_t bits = 0;
  std::memcpy(&bits, &word, sizeof bits);
  bits = reversed(bits);
  std::memcpy(&word, &bits, sizeof bits);
}

template <class Word>
void reverse_words(Word* words, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    reverse_word(words[i]);
}

}  // namespace VXHost::detail

#endif
