// Every fill and effect value in the shared corpus manifests, read and written again.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "foundation/support/MessageError.hpp"
#include "foundation/values/EffectValues.hpp"
#include "foundation/values/Fill.hpp"
#include "foundation/values/Position.hpp"
#include "tests/common/TestSupport.hpp"
#include "tests/values/ValueCodingSupport.hpp"

namespace iconwright {
namespace {

using Reencode = JSONValue (*)(const Decoder&);

template <class T>
JSONValue reencode(const Decoder& decoder) {
  return encodeJSON(decoder.decode<T>());
}

const std::map<std::string, Reencode, std::less<>> reencoders{
    {"fill", reencode<Fill>},
    {"position", reencode<Position>},
    {"shadow", reencode<Shadow>},
    {"translucency", reencode<Translucency>},
    {"blend-mode", reencode<BlendMode>},
    {"lighting", reencode<Lighting>},
    {"asset-mirroring", reencode<AssetMirroring>},
    {"blur-material", reencode<BlurMaterial>},
};

struct Occurrence {
  std::string where;
  Reencode reencode;
  const JSONValue* value;
};

// The values under the singular keys and in the "value" of each plural-key record, at every level.
void collect(const JSONValue& json, const std::string& where, std::vector<Occurrence>& found) {
  if (json.isArray()) {
    for (std::size_t i = 0; i < json.arrayValue().size(); ++i) {
      collect(json.arrayValue()[i], where + "[" + std::to_string(i) + "]", found);
    }
  }
  if (!json.isObject()) return;
  constexpr std::string_view plural = "-specializations";
  for (const auto& [key, member] : json.objectValue()) {
    const std::string path = where + "." + key;
    const auto base = reencoders.find(key.ends_with(plural) ? key.substr(0, key.size() - plural.size()) : key);
    if (base == reencoders.end()) {
      collect(member, path, found);
    } else if (!key.ends_with(plural)) {
      found.push_back({path, base->second, &member});
    } else if (member.isArray()) {
      for (std::size_t i = 0; i < member.arrayValue().size(); ++i) {
        if (const JSONValue* value = member.arrayValue()[i].find("value")) {
          found.push_back({path + "[" + std::to_string(i) + "]", base->second, value});
        }
      }
    }
  }
}

std::vector<Occurrence> valuesIn(const JSONValue& manifest, const std::filesystem::path& file) {
  std::vector<Occurrence> found;
  collect(manifest, file.filename().string(), found);
  return found;
}

std::vector<std::filesystem::path> manifestsIn(const std::filesystem::path& directory) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

TEST(ValuesCorpus, ToolWrittenValuesReadAndWriteBackUnchanged) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  std::size_t checked = 0;
  for (const auto& file : manifestsIn(shared / "corpus" / "manifests")) {
    const JSONValue manifest = parseJSON(testing::readFile(file));
    for (const auto& occurrence : valuesIn(manifest, file)) {
      SCOPED_TRACE(occurrence.where);
      try {
        EXPECT_EQ(writeJSON(occurrence.reencode(Decoder(*occurrence.value))), writeJSON(*occurrence.value));
        ++checked;
      } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
      }
    }
  }
  EXPECT_GT(checked, 800u);  // the walk really found the values
}

TEST(ValuesCorpus, HandWrittenValuesReadOrFailCleanly) {
  ICONWRIGHT_REQUIRE_SHARED_DIRECTORY(shared);
  std::size_t failed = 0;
  for (const auto& file : manifestsIn(shared / "corpus" / "manifests-other")) {
    const JSONValue manifest = parseJSON(testing::readFile(file));
    for (const auto& occurrence : valuesIn(manifest, file)) {
      SCOPED_TRACE(occurrence.where);
      try {
        // What is read is written in the tool's form, which reads back to the same text.
        const JSONValue written = occurrence.reencode(Decoder(*occurrence.value));
        EXPECT_EQ(writeJSON(occurrence.reencode(Decoder(written))), writeJSON(written));
      } catch (const DecodingError&) {
        ++failed;
      } catch (const MessageError&) {
        ++failed;
      }
    }
  }
  // A translucency written without its "value" is the one value these files get wrong.
  EXPECT_EQ(failed, 1u);
}

}  // namespace
}  // namespace iconwright
