// The process-wide list of libraries that told their version.
#include "vxgrid/toolkit/host/version.h"

#include <algorithm>  // for find
#include <mutex>      // for mutex, lock_guard

namespace VXHost {

namespace {

struct Registry {
  std::mutex lock;
  std::vector<VXVersionFunction> functions;
};

// Made on first use, since libraries register while they load.
Registry& registry() {
  static Registry instance;
  return instance;
}

}  // namespace

bool VXRegisterVersion(VXVersionFunction function) {
  if (!function) return false;
  Registry& list = registry();
  const std::lock_guard<std::mutex> guard(list.lock);
  if (std::find(list.functions.begin(), list.functions.end(), function) == list.functions.end()) {
    list.functions.push_back(function);
  }
  return true;
}

std::vector<VXVersion> VXGetRegisteredVersions() {
  Registry& list = registry();
  const std::lock_guard<std::mutex> guard(list.lock);
  std::vector<VXVersion> versions;
  for (const VXVersionFunction function : list.functions)
    versions.push_back(function());
  return versions;
}

}  // namespace VXHost
