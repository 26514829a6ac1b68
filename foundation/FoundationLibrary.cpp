// The shared library's own translation unit: a symbol that marks where the library was
// loaded from, which the command registry uses to find the sibling Kit framework.
#include "foundation/support/LibraryLocation.hpp"

#include <dlfcn.h>

#include <filesystem>

namespace iconwright {

extern "C" __attribute__((visibility("default"))) void iconwrightFoundationAnchor() {}

std::optional<std::string> foundationLibraryPath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&iconwrightFoundationAnchor), &info) == 0 || info.dli_fname == nullptr) {
    return std::nullopt;
  }
  std::error_code error;
  auto path = std::filesystem::canonical(info.dli_fname, error);
  if (error) return std::string(info.dli_fname);
  return path.string();
}

}  // namespace iconwright
