#include "foundation/support/LibraryLocation.hpp"

namespace iconwright {

// Overridden by the definition in the shared library; a statically linked program has no
// framework directory of its own.
__attribute__((weak)) std::optional<std::string> foundationLibraryPath() { return std::nullopt; }

}  // namespace iconwright
