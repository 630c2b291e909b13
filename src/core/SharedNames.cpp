#include "core/SharedNames.h"

#include <mutex>
#include <string>
#include <unordered_map>

namespace OvXmlLib6 {
namespace detail {

namespace {

struct NameTable {
  std::mutex lock;
  // Keys point into the permanent strings themselves.
  std::unordered_map<std::string_view, CSharedString> names;
};

NameTable& Table() {
  // Never destroyed: its strings are permanent, and objects may hold them until the very end.
  static NameTable* const table = new NameTable();
  return *table;
}

}  // namespace

CSharedString SharedName(std::string_view name) {
  if (name.empty() || name.size() > kMaxSharedNameLength) return CSharedString(name);
  NameTable& table = Table();
  std::lock_guard<std::mutex> hold(table.lock);
  const auto found = table.names.find(name);
  if (found != table.names.end()) return found->second;
  if (table.names.size() >= kMaxSharedNames) return CSharedString(name);
  CSharedString permanent = CSharedString::Permanent(name);
  table.names.emplace(std::string_view(permanent.str()), permanent);
  return permanent;
}

}  // namespace detail
}  // namespace OvXmlLib6
