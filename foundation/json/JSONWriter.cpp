#include "foundation/json/JSONWriter.hpp"

#include <cmath>
#include <stdexcept>

#include "foundation/support/NumberDescription.hpp"

namespace iconwright {

namespace {

void writeString(std::string& out, const std::string& text, bool escapesSlashes) {
  static constexpr char hex[] = "0123456789abcdef";
  out += '"';
  for (unsigned char byte : text) {
    switch (byte) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '/': out += escapesSlashes ? "\\/" : "/"; break;
      case '\b': out += "\\b"; break;
      case '\f': out += "\\f"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (byte < 0x20) {
          out += "\\u00";
          out += hex[byte >> 4];
          out += hex[byte & 0xF];
        } else {
          out += static_cast<char>(byte);
        }
    }
  }
  out += '"';
}

class Writer {
 public:
  explicit Writer(JSONWritingOptions options) : options_(options) {}

  void write(const JSONValue& value, int depth) {
    switch (value.kind()) {
      case JSONValue::Kind::null: out_ += "null"; break;
      case JSONValue::Kind::boolean: out_ += value.booleanValue() ? "true" : "false"; break;
      case JSONValue::Kind::integer: out_ += std::to_string(value.integerValue()); break;
      case JSONValue::Kind::number: writeNumber(value.numberValue()); break;
      case JSONValue::Kind::string: writeString(out_, value.stringValue(), options_.escapesSlashes); break;
      case JSONValue::Kind::array: writeArray(value.arrayValue(), depth); break;
      case JSONValue::Kind::object: writeObject(value.objectValue(), depth); break;
    }
  }

  std::string take() { return std::move(out_); }

 private:
  void writeNumber(double number) {
    if (std::isnan(number)) throw std::invalid_argument("Unable to encode Double.nan directly in JSON.");
    if (std::isinf(number)) {
      throw std::invalid_argument(number > 0 ? "Unable to encode Double.inf directly in JSON."
                                             : "Unable to encode Double.-inf directly in JSON.");
    }
    out_ += formatJSONNumber(number);
  }

  void newlineAndIndent(int depth) {
    out_ += '\n';
    out_.append(static_cast<std::size_t>(depth) * 2, ' ');
  }

  template <class Container, class WriteElement>
  void writeContainer(const Container& container, char open, char close, int depth, WriteElement writeElement) {
    out_ += open;
    if (!options_.prettyPrinted) {
      bool first = true;
      for (const auto& element : container) {
        if (!first) out_ += ',';
        first = false;
        writeElement(element);
      }
      out_ += close;
      return;
    }
    if (container.empty()) {
      out_ += '\n';
      newlineAndIndent(depth);
      out_ += close;
      return;
    }
    bool first = true;
    for (const auto& element : container) {
      if (!first) out_ += ',';
      first = false;
      newlineAndIndent(depth + 1);
      writeElement(element);
    }
    newlineAndIndent(depth);
    out_ += close;
  }

  void writeArray(const JSONValue::Array& array, int depth) {
    writeContainer(array, '[', ']', depth, [&](const JSONValue& element) { write(element, depth + 1); });
  }

  void writeObject(const JSONValue::Object& object, int depth) {
    writeContainer(object, '{', '}', depth, [&](const auto& member) {
      writeString(out_, member.first, options_.escapesSlashes);
      out_ += options_.prettyPrinted ? " : " : ":";
      write(member.second, depth + 1);
    });
  }

  JSONWritingOptions options_;
  std::string out_;
};

}  // namespace

std::string formatJSONNumber(double value) {
  std::string text = doubleDescription(value);
  if (text.ends_with(".0")) text.resize(text.size() - 2);
  return text;
}

std::string writeJSON(const JSONValue& value, JSONWritingOptions options) {
  Writer writer(options);
  writer.write(value, 0);
  std::string text = writer.take();
  if (options.endsWithNewline) text += '\n';
  return text;
}

}  // namespace iconwright
