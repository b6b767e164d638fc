// Turns the readable data files of this folder into C++ sources of constant tables; the build runs
// it. Usage: make_tables space_groups|scattering_factors DATA_FILE OUTPUT_FILE
#include <array>        // for array
#include <charconv>     // for to_chars, from_chars
#include <cstdlib>      // for EXIT_FAILURE
#include <exception>    // for exception
#include <fstream>      // for ifstream, ofstream
#include <iostream>     // for cerr
#include <iterator>     // for size
#include <limits>       // for numeric_limits
#include <map>          // for map
#include <ostream>      // for ostream
#include <sstream>      // for istringstream, ostringstream
#include <stdexcept>    // for runtime_error
#include <string>       // for string
#include <string_view>  // for string_view
#include <vector>       // for vector

namespace {

/// A translation in twelfths of a cell edge, 0 to 11.
using Twelfths = int;

struct Operator {
  std::array<std::array<int, 3>, 3> rotation{};
  std::array<Twelfths, 3> translation{};
};

struct SpaceGroup {
  std::string number, short_name, long_name;
  int system = 0;
  std::vector<Operator> block;
  std::vector<std::array<Twelfths, 3>> centring;
};

[[noreturn]] void fail(const std::string& what) {
  throw std::runtime_error(what);
}

/// Three texts between commas.
std::array<std::string, 3> split_triplet(const std::string& text) {
  std::istringstream in(text);
  std::array<std::string, 3> parts;
  for (std::string& part : parts) {
    if (!std::getline(in, part, ',') || part.empty()) fail("three parts expected: " + text);
  }
  if (in.peek() != std::istringstream::traits_type::eof()) fail("three parts expected: " + text);
  return parts;
}

/// 0 or a fraction such as 1/3 of the translations that space groups have.
Twelfths parse_fraction(const std::string& text) {
  static const std::map<std::string, Twelfths> known = {{"0", 0},   {"1/6", 2}, {"1/4", 3},
                                                        {"1/3", 4}, {"1/2", 6}, {"2/3", 8},
                                                        {"3/4", 9}, {"5/6", 10}};
  const auto found = known.find(text);
  if (found == known.end()) fail("no translation of a space group: " + text);
  return found->second;
}

/// A general position such as -x+y,z+1/2,x.
Operator parse_operator(const std::string& text) {
  Operator op;
  const auto parts = split_triplet(text);
  for (std::size_t row = 0; row < 3; ++row) {
    const std::string& part = parts[row];
    int sign = 1;
    for (std::size_t i = 0; i < part.size(); ++i) {
      const char c = part[i];
      if (c == '+' || c == '-') {
        sign = c == '-' ? -1 : 1;
      } else if (c >= 'x' && c <= 'z') {
        op.rotation[row][static_cast<std::size_t>(c - 'x')] += sign;
      } else {
        if (sign < 0) fail("translations are not negative: " + text);
        op.translation[row] = parse_fraction(part.substr(i));
        break;
      }
    }
  }
  return op;
}

int parse_system(const std::string& name) {
  static constexpr std::string_view systems[] = {
      "triclinic", "monoclinic", "orthorhombic", "tetragonal", "trigonal", "hexagonal", "cubic"};
  for (std::size_t i = 0; i < std::size(systems); ++i) {
    if (systems[i] == name) return static_cast<int>(i) + 1;
  }
  fail("unknown crystal system: " + name);
}

/// A group's first line: number, short name, long name in quotes, crystal system.
SpaceGroup parse_group(const std::string& line) {
  SpaceGroup group;
  std::istringstream in(line);
  std::string system;
  in >> group.number >> group.short_name;
  in.ignore(std::numeric_limits<std::streamsize>::max(), '"');
  std::getline(in, group.long_name, '"');
  if (!(in >> system)) fail("not a group: " + line);
  group.system = parse_system(system);
  return group;
}

std::vector<SpaceGroup> read_space_groups(std::istream& in) {
  std::vector<SpaceGroup> groups;
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] != ' ') {
      groups.push_back(parse_group(line));
    } else if (groups.empty()) {
      fail("operator before the first group: " + line);
    } else if (line.compare(0, 4, "  + ") == 0) {
      auto& vector = groups.back().centring.emplace_back();
      const auto parts = split_triplet(line.substr(4));
      for (std::size_t i = 0; i < 3; ++i)
        vector[i] = parse_fraction(parts[i]);
    } else {
      groups.back().block.push_back(parse_operator(line.substr(2)));
    }
  }
  return groups;
}

/// The shortest text that is read back as the float nearest to n / 12.
std::string float_text(Twelfths n) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, static_cast<float>(n) / 12.0f);
  std::string text(buffer, end.ptr);
  return text.find('.') == std::string::npos ? text : text + "f";
}

/// The operator as a matrix for row vectors: column i makes coordinate i, the translation is in the
/// last row.
void write_matrix(std::ostream& out, const Operator& op, const std::array<Twelfths, 3>& centring) {
  out << "{";
  for (std::size_t from = 0; from < 3; ++from) {
    for (std::size_t to = 0; to < 3; ++to)
      out << op.rotation[to][from] << ",";
    out << "0,";
  }
  for (std::size_t to = 0; to < 3; ++to) {
    out << float_text((op.translation[to] + centring[to]) % 12) << ",";
  }
  out << "1},\n";
}

void write_space_groups(std::istream& in, std::ostream& out) {
  const std::vector<SpaceGroup> groups = read_space_groups(in);
  out << "#include \"vxgrid/crystal/space_groups.h\"\n\nnamespace VXCore {\n\n"
      << "static_assert(space_group_count == " << groups.size() << ");\n\n"
      << "constinit const sglibT sglib[space_group_count] = {\n";
  for (const SpaceGroup& group : groups) {
    out << "{" << group.number << ", \"" << group.short_name << "\", \"" << group.long_name
        << "\", " << group.system << ", " << group.block.size() * (group.centring.size() + 1)
        << ", {\n";
    for (const Operator& op : group.block)
      write_matrix(out, op, {});
    for (const auto& vector : group.centring) {
      for (const Operator& op : group.block)
        write_matrix(out, op, vector);
    }
    out << "}},\n";
  }
  out << "};\n\n}  // namespace VXCore\n";
}

/// A row is copied as it stands, after a look at each of its numbers.
std::string scattering_row(const std::string& line) {
  std::istringstream in(line);
  std::string row, word;
  std::size_t count = 0;
  for (; in >> word; ++count) {
    double value = 0;
    const auto end = std::from_chars(word.data(), word.data() + word.size(), value);
    if (end.ec != std::errc() || end.ptr != word.data() + word.size()) fail("no number: " + word);
    row += (count == 0 ? "" : ", ") + word;
  }
  if (count != 12) fail("twelve numbers expected: " + line);
  return row;
}

void write_scattering_factors(std::istream& in, std::ostream& out) {
  std::vector<std::string> rows;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line[0] != '#') rows.push_back(scattering_row(line));
  }
  out << "#include \"vxgrid/density/scattering.h\"\n\nnamespace VXCore {\n\n"
      << "static_assert(scatter_count == " << rows.size() << ");\n\n"
      << "constinit const scatterT scatter_data[scatter_count] = {\n";
  for (const std::string& row : rows)
    out << "{" << row << "},\n";
  out << "};\n\n}  // namespace VXCore\n";
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc != 4) fail("usage: make_tables space_groups|scattering_factors DATA_FILE OUTPUT_FILE");
    const std::string table = argv[1];
    std::ifstream in(argv[2]);
    if (!in) fail(std::string("cannot read ") + argv[2]);
    std::ostringstream text;
    text << "// Generated from data/" << table << ".txt.\n";
    if (table == "space_groups") {
      write_space_groups(in, text);
    } else if (table == "scattering_factors") {
      write_scattering_factors(in, text);
    } else {
      fail("unknown table: " + table);
    }
    std::ofstream out(argv[3], std::ios::binary);
    out << text.str() << std::flush;
    if (!out) fail(std::string("cannot write ") + argv[3]);
  } catch (const std::exception& error) {
    std::cerr << "make_tables: " << error.what() << "\n";
    return EXIT_FAILURE;
  }
}
