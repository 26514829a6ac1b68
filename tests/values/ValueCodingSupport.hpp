// Helpers for the value tests: the manifest text of a value, a value read from JSON text,
// and the kind and coding path of the DecodingError a read throws.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/json/JSONWriter.hpp"

namespace iconwright::testing {

template <class T>
std::string manifestText(const T& value) {
  return writeJSON(encodeJSON(value), JSONWritingOptions::manifest());
}

template <class T>
T decodeText(std::string_view text) {
  const JSONValue json = parseJSON(text);
  return Decoder(json).decode<T>();
}

/// Expects `read` to throw a DecodingError of `kind` at `path` ("" for the root).
inline void expectDecodingError(const std::function<void()>& read, DecodingError::Kind kind, std::string_view path) {
  try {
    read();
    ADD_FAILURE() << "expected a DecodingError";
  } catch (const DecodingError& error) {
    EXPECT_EQ(error.kind(), kind) << error.what();
    EXPECT_EQ(describeCodingPath(error.codingPath()), path) << error.what();
  }
}

}  // namespace iconwright::testing
