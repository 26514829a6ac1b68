#include "foundation/json/JSONReader.hpp"

#include <limits>
#include <optional>
#include <string>
#include <nlohmann/json.hpp>

#include "foundation/json/DecodingError.hpp"

namespace iconwright {

namespace {

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
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
    throw DecodingError(DecodingError::Kind::dataCorrupted, {},
                        std::string("The given data was not valid JSON (") + error.what() + ")");
  }

  JSONValue take() { return std::move(root_); }

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
  try {
    nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
  } catch (const DecodingError&) {
    throw;
  } catch (const nlohmann::json::exception& error) {
    throw DecodingError(DecodingError::Kind::dataCorrupted, {},
                        std::string("The given data was not valid JSON (") + error.what() + ")");
  }
  return builder.take();
}

}  // namespace iconwright
