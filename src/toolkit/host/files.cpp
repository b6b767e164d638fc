// File name extensions and the folder for temporary files.
#include "vxgrid/toolkit/host/files.h"

#include <strings.h>  // for strcasecmp

#include <cstdlib>       // for getenv
#include <cstring>       // for strrchr
#include <filesystem>    // for is_directory
#include <string_view>   // for string_view
#include <system_error>  // for error_code

namespace VXHost {

namespace {

bool is_folder(const std::string& path) {
  std::error_code ignored;
  return !path.empty() && std::filesystem::is_directory(path, ignored);
}

std::string without_last_slash(std::string path) {
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  return path;
}

}  // namespace

std::string VXFileTempDirectory(const std::string& preferred) {
  if (is_folder(preferred)) return without_last_slash(preferred);
  if (const char* folder = std::getenv("TMPDIR"); folder && is_folder(folder)) {
    return without_last_slash(folder);
  }
  return "/tmp";
}

}  // namespace VXHost

namespace VXMol {

const char* VXGetFileExtension(const char* name) {
  if (!name) return "";
  const char* slash = std::strrchr(name, '/');
  const std::string_view base(slash ? slash + 1 : name);
  const std::size_t dot = base.rfind('.');
  if (dot == std::string_view::npos) return base.data() + base.size();
  if (strcasecmp(base.data() + dot, ".gz") == 0 && dot > 0) {
    const std::size_t inner = base.rfind('.', dot - 1);
    if (inner != std::string_view::npos) return base.data() + inner + 1;
  }
  return base.data() + dot + 1;
}

}  // namespace VXMol
