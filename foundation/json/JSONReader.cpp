#include "foundation/json/JSONReader.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <nlohmann/json.hpp>

#include "foundation/json/DecodingError.hpp"

namespace iconwright {

namespace {

/// The parser's explanation in plain words, without its own codes and quotations.
std::string plainReason(std::string_view message) {
  struct Rule {
    std::string_view found;
    std::string_view reason;
  };
  // What the lexer found wrong in a token, then what the parser expected instead of a token.
  static constexpr Rule lexical[] = {
      {"unexpected end of input", "unexpected end of data"},
      {"ill-formed UTF-8", "invalid UTF-8 in a string"},
      {"control character", "unescaped control character in a string"},
      {"surrogate", "invalid Unicode escape in a string"},
      {"must be followed by 4 hex digits", "invalid Unicode escape in a string"},
      {"forbidden character after backslash", "invalid escape sequence in a string"},
      {"missing closing quote", "unterminated string"},
      {"number overflow", "number out of range"},
      {"invalid number", "invalid number"},
      {"invalid literal", "invalid literal"},
  };
  static constexpr Rule expectations[] = {
      {"end of input", "unexpected text after the JSON value"},
      {"':'", "expected “:” after an object key"},
      {"string literal", "expected an object key in quotes"},
      {"'}'", "expected “,” or “}” in an object"},
      {"']'", "expected “,” or “]” in an array"},
  };
  for (const auto& rule : lexical) {
    if (message.find(rule.found) != std::string_view::npos) return std::string(rule.reason);
  }
  if (const auto mark = message.find("; expected "); mark != std::string_view::npos) {
    const std::string_view expected = message.substr(mark + 11);
    for (const auto& rule : expectations) {
      if (expected.starts_with(rule.found)) return std::string(rule.reason);
    }
  }
  return "unexpected character";
}

/// "The given data was not valid JSON (<reason> at line L, column C)." for the byte count
/// `position` that the parser had read when it failed (1 for the first byte).
DecodingError invalidJSONAt(const std::string& reason, std::size_t position, std::string_view text) {
  const std::size_t offset = std::min(position == 0 ? 0 : position - 1, text.size());
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t i = 0; i < offset; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte == '\n') {
      ++line;
      column = 1;
    } else if ((byte & 0xC0) != 0x80) {
      ++column;  // characters, not bytes
    }
  }
  const std::string where = " at line " + std::to_string(line) + ", column " + std::to_string(column);
  return DecodingError(DecodingError::Kind::dataCorrupted, {}, "The given data was not valid JSON (" + reason + where + ")");
}

// Builds the tree directly from the parser's events, so no intermediate document is made.
class TreeBuilder : public nlohmann::json_sax<nlohmann::json> {
 public:
  bool null() override { return add(JSONValue(nullptr)); }
  bool boolean(bool value) override { return add(JSONValue(value)); }
  bool number_integer(number_integer_t value) override { return add(JSONValue(static_cast<std::int64_t>(value))); }
  bool number_unsigned(number_unsigned_t value) override {
    if (value <= static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max())) {
      return add(JSONValue(static_cast<std::int64_t>(value)));
    }
    return add(JSONValue(static_cast<double>(value)));
  }
  bool number_float(number_float_t value, const string_t&) override { return add(JSONValue(value)); }
  bool string(string_t& value) override { return add(JSONValue(std::move(value))); }
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return open(JSONValue::emptyObject()); }
  bool key(string_t& value) override {
    keys_.back() = std::move(value);
    return true;
  }
  bool end_object() override { return close(); }
  bool start_array(std::size_t) override { return open(JSONValue::emptyArray()); }
  bool end_array() override { return close(); }
  bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception& error) override {
    throw invalidJSON(plainReason(error.what()), position);
  }

  /// The text being parsed, for the line and column of an error.
  std::string_view text;

  JSONValue take() { return std::move(root_); }

 private:
  DecodingError invalidJSON(const std::string& reason, std::size_t position) const {
    return invalidJSONAt(reason, position, text);
  }

 public:

 private:
  bool add(JSONValue value) {
    if (stack_.empty()) {
      root_ = std::move(value);
    } else if (stack_.back().isArray()) {
      stack_.back().append(std::move(value));
    } else {
      // Duplicate keys: the last one wins, as in most readers.
      stack_.back().set(std::move(keys_.back()), std::move(value));
    }
    return true;
  }
  bool open(JSONValue container) {
    if (stack_.size() >= maximumJSONNestingDepth) {
      throw DecodingError(DecodingError::Kind::dataCorrupted, {},
                          "The given data was not valid JSON (nested deeper than " +
                              std::to_string(maximumJSONNestingDepth) + " levels)");
    }
    stack_.push_back(std::move(container));
    keys_.emplace_back();
    return true;
  }
  bool close() {
    JSONValue finished = std::move(stack_.back());
    stack_.pop_back();
    keys_.pop_back();
    return add(std::move(finished));
  }

  JSONValue root_;
  std::vector<JSONValue> stack_;
  std::vector<std::string> keys_;
};

// The parser hands the integer literal -0 over as integer 0; the document needs the double
// -0.0, which the writer prints as "-0" again. Returns the text with each such literal
// outside strings spelled "-0.0", or nothing when there is none (the usual case).
std::optional<std::string> spellingNegativeZeroAsDouble(std::string_view text) {
  std::optional<std::string> result;
  bool inString = false;
  std::size_t copied = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inString) {
      if (c == '\\') {
        ++i;
      } else if (c == '"') {
        inString = false;
      }
      continue;
    }
    if (c == '"') {
      inString = true;
      continue;
    }
    const bool negativeZero = c == '-' && i + 1 < text.size() && text[i + 1] == '0' &&
                              (i + 2 == text.size() || std::string_view("0123456789.eE").find(text[i + 2]) ==
                                                           std::string_view::npos);
    if (!negativeZero) continue;
    if (!result) result.emplace();
    result->append(text.substr(copied, i + 2 - copied));
    result->append(".0");
    copied = i + 2;
    ++i;
  }
  if (result) result->append(text.substr(copied));
  return result;
}

}  // namespace

JSONValue parseJSON(std::string_view text) {
  // A NUL byte can stand nowhere in JSON text, and the parser would take it for the end.
  if (const auto nul = text.find('\0'); nul != std::string_view::npos) {
    throw DecodingError(DecodingError::Kind::dataCorrupted, {},
                        "The given data was not valid JSON (a NUL byte at offset " + std::to_string(nul) + ")");
  }
  const auto respelled = spellingNegativeZeroAsDouble(text);
  if (respelled) text = *respelled;
  TreeBuilder builder;
  builder.text = text;
  try {
    nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
  } catch (const DecodingError&) {
    throw;
  } catch (const nlohmann::json::parse_error& error) {
    throw invalidJSONAt(plainReason(error.what()), error.byte, text);
  } catch (const nlohmann::json::exception& error) {
    throw DecodingError(DecodingError::Kind::dataCorrupted, {},
                        "The given data was not valid JSON (" + plainReason(error.what()) + ")");
  }
  return builder.take();
}

}  // namespace iconwright
