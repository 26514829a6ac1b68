// JSON text into the JSON tree, and the tree into typed values. Whatever parses must write
// and read back to the same tree, and writing must reach a fixed point; every typed decoding
// of every node either gives a value that survives its own round trip or throws the errors
// the decoder promises (DecodingError, or a value's MessageError) and nothing else.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/json/DecodingError.hpp"
#include "foundation/json/JSONCoding.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"
#include "foundation/json/KeyedValues.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/support/VersionNumber.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;

namespace {

// Nodes visited per input; the walk is linear in the tree, this only bounds huge arrays.
constexpr int visitBudget = 2000;

void checkError(const DecodingError& error) {
  FUZZ_CHECK(std::string(error.what()).size() > 0, "a decoding error without a message");
  (void)describeCodingPath(error.codingPath());
}

/// Decodes the node as T; a value must encode and decode again to itself.
template <class T>
void attempt(const Decoder& decoder) {
  std::optional<T> value;
  try {
    value = decoder.decode<T>();
  } catch (const DecodingError& error) {
    checkError(error);
    return;
  } catch (const MessageError& error) {
    FUZZ_CHECK(!error.message().empty(), "a message error without a message");
    return;
  }
  const JSONValue encoded = encodeJSON(*value);
  const T again = Decoder(encoded).decode<T>();
  FUZZ_CHECK(again == *value, "decode(encode(value)) differs from value: " + writeJSON(encoded));
}

void walk(const Decoder& decoder, int& budget) {
  if (--budget < 0) return;
  attempt<bool>(decoder);
  attempt<double>(decoder);
  attempt<std::int64_t>(decoder);
  attempt<int>(decoder);
  attempt<std::string>(decoder);
  attempt<std::optional<double>>(decoder);
  attempt<std::vector<std::string>>(decoder);
  attempt<std::vector<std::optional<std::int64_t>>>(decoder);
  attempt<KeyedPoint>(decoder);
  attempt<KeyedSize>(decoder);
  attempt<VersionNumber>(decoder);

  const JSONValue& json = decoder.json();
  if (json.isObject()) {
    const std::vector<std::string> keys = decoder.keys();
    FUZZ_CHECK(keys.size() == json.objectValue().size(), "keys() misses members");
    for (const std::string& key : keys) {
      FUZZ_CHECK(decoder.contains(key), "a listed key is not contained: " + key);
      const Decoder member = decoder[key];
      FUZZ_CHECK(member.codingPath().size() == decoder.codingPath().size() + 1, "the coding path did not grow");
      FUZZ_CHECK(decoder.ifPresent(key).has_value() == !member.isNull(), "ifPresent disagrees with null");
      walk(member, budget);
    }
    try {
      (void)decoder["\x01 not a key"];
      FUZZ_CHECK(false, "a missing key was found");
    } catch (const DecodingError& error) {
      FUZZ_CHECK(error.kind() == DecodingError::Kind::keyNotFound, "a missing key is not keyNotFound");
    }
  } else if (json.isArray()) {
    const std::size_t count = decoder.count();
    for (std::size_t i = 0; i < count && budget > 0; ++i) walk(decoder.element(i), budget);
    try {
      (void)decoder.element(count);
      FUZZ_CHECK(false, "an element past the end was found");
    } catch (const DecodingError& error) {
      FUZZ_CHECK(error.kind() == DecodingError::Kind::valueNotFound, "the end of an array is not valueNotFound");
    }
  } else {
    try {
      (void)decoder.keys();
      FUZZ_CHECK(false, "keys() of a non-object");
    } catch (const DecodingError& error) {
      checkError(error);
    }
    try {
      (void)decoder.count();
      FUZZ_CHECK(false, "count() of a non-array");
    } catch (const DecodingError& error) {
      checkError(error);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A NUL byte is valid nowhere in JSON text: not between tokens, and not raw in a string.
  const bool holdsNUL = fuzz::textOf(data, size).find('\0') != std::string_view::npos;
  JSONValue value;
  try {
    value = parseJSON(fuzz::textOf(data, size));
    FUZZ_CHECK(!holdsNUL, "text with a NUL byte was read as JSON");
  } catch (const DecodingError& error) {
    FUZZ_CHECK(error.kind() == DecodingError::Kind::dataCorrupted, "a parse failure that is not dataCorrupted");
    checkError(error);
    return 0;
  }

  for (const JSONWritingOptions options : {JSONWritingOptions::manifest(), JSONWritingOptions::console(),
                                           JSONWritingOptions{false, true, false}}) {
    const std::string written = writeJSON(value, options);
    JSONValue reread;
    try {
      reread = parseJSON(written);
    } catch (const DecodingError& error) {
      FUZZ_CHECK(false, std::string("the writer's output does not parse: ") + error.what() + "\n" + written);
    }
    FUZZ_CHECK(reread == value, "the written tree reads back different:\n" + written);
    FUZZ_CHECK(writeJSON(reread, options) == written, "writing is not a fixed point:\n" + written);
  }

  int budget = visitBudget;
  walk(Decoder(value), budget);
  return 0;
}
