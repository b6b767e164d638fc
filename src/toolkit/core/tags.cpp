// The table of tags.
#include <deque>          // for deque
#include <mutex>          // for unique_lock
#include <shared_mutex>   // for shared_mutex, shared_lock
#include <string>         // for string
#include <string_view>    // for string_view
#include <unordered_map>  // for unordered_map

#include "vxgrid/toolkit/core/base.h"

namespace VXCore {
namespace {

class TagTable {
 public:
  TagTable() { number_of(""); }

  unsigned int number_of(std::string_view name) {
    {
      const std::shared_lock lock(mutex_);
      const auto found = numbers_.find(name);
      if (found != numbers_.end()) return found->second;
    }
    const std::unique_lock lock(mutex_);
    const auto found = numbers_.find(name);
    if (found != numbers_.end()) return found->second;
    const auto number = static_cast<unsigned int>(names_.size());
    // A deque leaves its elements in place, so views and texts that were given out stay valid.
    names_.emplace_back(name);
    numbers_.emplace(names_.back(), number);
    return number;
  }

  const char* name_of(unsigned int number) const {
    const std::shared_lock lock(mutex_);
    return number < names_.size() ? names_[number].c_str() : "";
  }

 private:
  mutable std::shared_mutex mutex_;
  std::deque<std::string> names_;
  std::unordered_map<std::string_view, unsigned int> numbers_;
};

// Made on first use and never destroyed: objects with static storage use tags too, from their
// constructors to their destructors, in whatever order those run.
TagTable& tag_table() {
  static TagTable& table = *new TagTable;
  return table;
}

}  // namespace

unsigned int VXGetTag(const char* name) {
  return tag_table().number_of(name ? name : "");
}
const char* VXGetTag(unsigned int tag) {
  return tag_table().name_of(tag);
}

}  // namespace VXCore
