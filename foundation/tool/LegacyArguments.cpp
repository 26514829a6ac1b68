// The older positional command lines, rewritten into the named form. The table is the
// program's behaviour and stays as it is, quirks included: from 13 entries on the tint
// strength and the entries before the output file are dropped. One departure: an
// intermediary line that stops right after "fully-specialize-for" is refused as a missing
// platform value instead of stopping the process.
#include <string>
#include <vector>

#include "foundation/support/MessageError.hpp"
#include "foundation/tool/ToolCommand.hpp"

namespace iconwright {

std::vector<std::string> ToolCommand::translateLegacyArguments(std::vector<std::string> a) {
  const std::size_t n = a.size();
  if (n < 3 || a[1].starts_with("--")) return a;

  if (a[2] == "--export-build-intermediary") {
    if (n < 4 || a[3] != "fully-specialize-for") return a;
    if (n == 4) throw MessageError("Missing required value for “platform” argument");
    std::vector<std::string> result{a[0], a[1], "--export-intermediate-representation", "--platform", a[4],
                                    "--output-directory"};
    result.insert(result.end(), a.begin() + 5, a.end());
    return result;
  }

  if (a[2] == "--upgrade") {
    if (n != 4 || a[3].starts_with("--")) return a;
    return {a[0], a[1], "--upgrade", "--output-file", a[3]};
  }

  if (a[2] == "--export-preview") {
    if (n < 9) return a;
    std::vector<std::string> result{a[0],       a[1], "--export-image", "--platform", a[3], "--rendition", a[4],
                                    "--width",  a[5], "--height",       a[6],         "--scale", a[7]};
    if (n >= 10) result.insert(result.end(), {"--light-angle", a[8]});
    if (n >= 11) result.insert(result.end(), {"--tint-color", a[9]});
    if (n == 12) result.insert(result.end(), {"--tint-strength", a[10]});
    result.insert(result.end(), {"--output-file", a[n - 1]});
    return result;
  }
  return a;
}

}  // namespace iconwright
