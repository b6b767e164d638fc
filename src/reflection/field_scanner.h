// Takes words and numbers off a line of a reflection file.
#ifndef VXGRID_SRC_REFLECTION_FIELD_SCANNER_H
#define VXGRID_SRC_REFLECTION_FIELD_SCANNER_H

#include <string_view>  // for string_view

namespace VXCore::detail {

/// Takes words and numbers off a text as scanf does, in the C locale: white space goes before each,
/// and a number ends where it cannot go on. What cannot be taken leaves the value as it is.
class FieldScanner {
 public:
  explicit FieldScanner(std::string_view text) : rest_(text) {}

  /// False, too, for a number that does not fit.
  bool number(unsigned int& value);
  bool number(int& value);
  /// A number that does not fit is 0; "nan" and "inf" are numbers.
  bool number(float& value);
  bool word(std::string_view& value);
  bool character(char& value);

  /// True once a whole number did not fit.
  bool overflowed() const { return overflowed_; }

 private:
  template <class T>
  bool scan_number(T& value);
  void skip_blanks();

  std::string_view rest_;
  bool overflowed_ = false;
};

}  // namespace VXCore::detail

#endif
