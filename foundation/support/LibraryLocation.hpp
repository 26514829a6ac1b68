// Where the running IconwrightFoundation library lives on disk.
#pragma once

#include <optional>
#include <string>

namespace iconwright {

/// The absolute path of the loaded libIconwrightFoundation.so, found with dladdr.
/// Absent when the code runs from a static link (tests that link a subsystem directly);
/// a weak default stands in there.
std::optional<std::string> foundationLibraryPath();

}  // namespace iconwright
