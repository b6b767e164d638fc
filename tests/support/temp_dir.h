// A folder of a test's own that goes away with it.
#ifndef VXGRID_TESTS_SUPPORT_TEMP_DIR_H
#define VXGRID_TESTS_SUPPORT_TEMP_DIR_H

#include <stdlib.h>  // for mkdtemp

#include <filesystem>  // for path, remove_all
#include <fstream>     // for ifstream, ofstream
#include <iterator>    // for istreambuf_iterator
#include <string>      // for string

namespace vxgrid_test {

class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vxgrid-test-XXXXXX").string();
    if (const char* made = mkdtemp(pattern.data())) path_ = made;
  }
  ~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  /// Path of a file of this name in the folder.
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline void write_file(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace vxgrid_test

#endif
