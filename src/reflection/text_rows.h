// What the readers of reflection text files share: lines, words, and the rows gathered of them.
#ifndef VXGRID_SRC_REFLECTION_TEXT_ROWS_H
#define VXGRID_SRC_REFLECTION_TEXT_ROWS_H

#include <array>        // for array
#include <cstddef>      // for size_t
#include <string>       // for string
#include <string_view>  // for string_view
#include <vector>       // for vector

#include "vxgrid/toolkit/names.h"

namespace VXCore {
class VXReflection;
}

namespace VXCore::detail {

inline bool begins_with(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}
inline bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// The next line in `buffer`, its first `longest` characters as `line`; false at the end of the
/// stream.
bool read_line(vxistream& is, std::string& buffer, std::size_t longest, std::string_view& line);

/// The first words of a text, parted by white space.
class Words {
 public:
  static constexpr std::size_t most = 25;

  /// The text has to outlive the words.
  void split(std::string_view text);
  /// Empty behind the last word.
  std::string_view operator[](std::size_t i) const {
    return i < count_ ? words_[i] : std::string_view();
  }

 private:
  std::array<std::string_view, most> words_{};
  std::size_t count_ = 0;
};

/// One reflection as text tells it. What it does not tell is 0.
struct ReflectionRow {
  std::array<int, 3> hkl{};
  std::array<float, 10> values{};  ///< By VXReflectionColumn, from Phase to FOM.
  std::array<float, 4> abcd{};     ///< Hendrickson-Lattman coefficients.
};

enum class RowOutcome { counts, does_not_count, index_overflow };

/// The reflections of a file. They go to the set at the end only, so that a file that turns out to
/// hold none leaves it alone.
class ReflectionRows {
 public:
  ReflectionRows() { rows_.reserve(5000); }

  bool empty() const { return rows_.empty(); }
  std::size_t size() const { return rows_.size(); }
  void add(const ReflectionRow& row) { rows_.push_back(row); }

  /// Clears the set and fills it with the indices, these columns (VXReflectionColumn) and, if told
  /// so, the coefficients. False, with the set cleared, when that fails.
  bool fill(VXReflection& refl, const std::vector<unsigned int>& columns,
            bool with_abcd = false) const;

 private:
  bool set_indices(VXReflection& refl) const;
  bool set_column(VXReflection& refl, unsigned int column) const;
  bool set_abcd(VXReflection& refl) const;
  template <class Get>
  auto gathered(Get&& get) const;

  std::vector<ReflectionRow> rows_;
};

/// How a file is refused that has an index which does not fit an int: the set is cleared.
bool refuse(VXReflection& refl);

}  // namespace VXCore::detail

#endif
