// Finding a row of the space-group table by number or by name.
#include "vxgrid/crystal/space_groups.h"

#include <cstddef>      // for size_t
#include <string_view>  // for string_view

#include "vxgrid/toolkit/core/error_handler.h"

namespace VXCore {

namespace {

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool same_name(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (upper(a[i]) != upper(b[i])) return false;
  }
  return true;
}

bool same_name_but_blanks(std::string_view a, std::string_view b) {
  std::size_t i = 0, j = 0;
  for (;; ++i, ++j) {
    while (i < a.size() && a[i] == ' ')
      ++i;
    while (j < b.size() && b[j] == ' ')
      ++j;
    if (i == a.size() || j == b.size()) return i == a.size() && j == b.size();
    if (upper(a[i]) != upper(b[j])) return false;
  }
}

int find_row(unsigned int number) {
  for (int row = 0; row < space_group_count; ++row) {
    if (sglib[row].number == number) return row;
  }
  return -1;
}

template <class Same>
int find_row(const std::string& name, Same same) {
  for (int row = 0; row < space_group_count; ++row) {
    if (same(name, sglib[row].long_name) || same(name, sglib[row].short_name)) return row;
  }
  return -1;
}

}  // namespace

int find_space_group(unsigned int number) {
  const int row = find_row(number);
  return row >= 0 ? row : find_row(number % 1000);
}

int find_space_group(const std::string& name) {
  int row = find_row(name, same_name);
  if (row < 0) row = find_row(name, same_name_but_blanks);
  if (row < 0) VXThrow.Info("sgname |%s|", name.c_str());
  return row;
}

}  // namespace VXCore
