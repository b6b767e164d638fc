// Where the deposited real files lie that some tests read; they are not part of this tree.
#ifndef VXGRID_TESTS_SUPPORT_SHARED_DATA_H
#define VXGRID_TESTS_SUPPORT_SHARED_DATA_H

#include <filesystem>  // for exists
#include <string>      // for string

namespace vxgrid_test {

/// Full path of a real data file; the folder is given to the build as VXGRID_TEST_DATA.
inline std::string shared_data(const std::string& file) {
  return std::string(VXGRID_TEST_DATA) + "/" + file;
}

/// True when the file is there; a test starts with
/// `if (!has_shared_data("x.map")) GTEST_SKIP() << missing_data("x.map");`
inline bool has_shared_data(const std::string& file) {
  return std::filesystem::exists(shared_data(file));
}

inline std::string missing_data(const std::string& file) {
  return "real data file not found: " + shared_data(file);
}

}  // namespace vxgrid_test

#endif
