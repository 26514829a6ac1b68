#include "foundation/support/Assertions.hpp"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace iconwright {

namespace {
void printAssertion(std::string_view source, int line, std::string_view message) {
  std::string text = "IconwrightFoundation/";
  text += source;
  text += ':';
  text += std::to_string(line);
  text += ": Assertion Failure: ";
  text += message;
  text += '\n';
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}
}  // namespace

void assertionFailure(std::string_view source, int line, std::string_view message) {
  printAssertion(source, line, message);
  std::abort();
}

void assertionReport(std::string_view source, int line, std::string_view message) {
  printAssertion(source, line, message);
}

}  // namespace iconwright
