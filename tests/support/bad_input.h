// Inputs that no honest program wrote.
#ifndef VXGRID_TESTS_SUPPORT_BAD_INPUT_H
#define VXGRID_TESTS_SUPPORT_BAD_INPUT_H

#include <cstring>  // for memcpy
#include <random>   // for mt19937
#include <string>   // for string

namespace vxgrid_test {

/// Calls `test(cut, length)` with every text that a valid one can be cut to, the whole one not
/// among them.
template <class Test>
void for_every_cut(const std::string& bytes, Test test) {
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    test(bytes.substr(0, length), length);
  }
}

/// Calls `test(bytes)` with `count` texts of up to 600 random bytes, and with as many that are a
/// valid one with up to four bytes changed.
template <class Test>
void for_random_bytes(const std::string& valid, int count, Test test) {
  std::mt19937 random(20260727);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  for (int i = 0; i < count; ++i) {
    std::string bytes(below(600), '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(random());
    test(bytes);
    std::string damaged = valid;
    for (int change = 0; change < 4; ++change) {
      damaged[below(damaged.size())] = static_cast<char>(random());
    }
    test(damaged);
  }
}

/// The bytes of a number as this host has it.
template <class Number>
std::string bytes_of(Number number) {
  std::string bytes(sizeof number, '\0');
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}

/// The number at a place of a text.
template <class Number>
Number number_at(const std::string& bytes, std::size_t offset) {
  Number number{};
  if (offset + sizeof number <= bytes.size()) {
    std::memcpy(&number, bytes.data() + offset, sizeof number);
  }
  return number;
}

}  // namespace vxgrid_test

#endif
