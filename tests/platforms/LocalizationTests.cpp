#include "foundation/platforms/Localization.hpp"

#include <gtest/gtest.h>

#include "foundation/json/JSONReader.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

using LanguageID = Localization::LanguageID;

TEST(LanguageID, LprojDirectoryNames) {
  struct Row {
    const char* name;
    std::optional<std::string> id;
  };
  const Row rows[] = {
      {"en.lproj", "en"},
      {"zh-Hans.lproj", "zh-Hans"},
      {"pt_BR.lproj/", "pt_BR"},         // trailing slashes do not count
      {"Assets/he.lproj", "Assets/he"},  // the extension is removed, nothing else
      {"a.b.lproj", "a.b"},
      {"en.LPROJ", std::nullopt},  // the extension is case-sensitive
      {"en", std::nullopt},
      {"en.lproj.bak", std::nullopt},
      {".lproj", std::nullopt},  // a hidden name, not an extension
      {"dir.lproj/en", std::nullopt},
      {"en.", std::nullopt},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const auto id = LanguageID::fromLprojDirectoryName(row.name);
    ASSERT_EQ(id.has_value(), row.id.has_value());
    if (id) {
      EXPECT_EQ(id->localeID(), *row.id);
    }
  }
  EXPECT_EQ(LanguageID::fromLprojDirectoryName("en.lproj")->lprojName(), "en.lproj");
}

TEST(LanguageID, LanguageCodeAndDirection) {
  struct Row {
    const char* id;
    const char* code;
    LanguageDirection direction;
  };
  const Row rows[] = {
      {"en", "en", LanguageDirection::leftToRight},
      {"en_US", "en", LanguageDirection::leftToRight},
      {"zh-Hans", "zh", LanguageDirection::leftToRight},
      {"he", "he", LanguageDirection::rightToLeft},
      {"iw", "iw", LanguageDirection::rightToLeft},
      {"ar-SA", "ar", LanguageDirection::rightToLeft},
      {"fa_IR", "fa", LanguageDirection::rightToLeft},
      {"ur", "ur", LanguageDirection::rightToLeft},
      // The direction is that of the language code, so the script subtag plays no part.
      {"az_Arab", "az", LanguageDirection::leftToRight},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.id);
    const LanguageID id(row.id);
    EXPECT_EQ(id.languageCode(), row.code);
    EXPECT_EQ(id.characterDirection(), row.direction);
    EXPECT_EQ(id.isRightToLeft(), row.direction == LanguageDirection::rightToLeft);
  }
  EXPECT_EQ(LanguageID("").languageCode(), "");
}

TEST(LanguageID, DisplayNames) {
  EXPECT_EQ(LanguageID("he").displayName("en"), "Hebrew");
  EXPECT_EQ(LanguageID("en_US").displayName("en"), "English (United States)");
  EXPECT_EQ(LanguageID("zh-Hans").displayName("en"), "Chinese (Simplified)");
  EXPECT_EQ(LanguageID("de").displayName("de"), "Deutsch");
  EXPECT_EQ(LanguageID("").displayName("en"), "");
  // Identifiers the locale system cannot name stand for themselves, not lower-cased.
  for (const char* unnamed : {"Base", "Klingon", "xx", "Qaa_ZZ"}) {
    SCOPED_TRACE(unnamed);
    EXPECT_EQ(LanguageID(unnamed).displayName("en"), unnamed);
  }
  // The current locale's name is one the locale system gives, never a made-up text.
  EXPECT_EQ(LanguageID("fr").displayName(), LanguageID("fr").displayName(currentLocaleIdentifier()));
}

TEST(LanguageID, AllowedIdentifiersAreTheLocaleSystemsUnderscoreForm) {
  const auto& allowed = LanguageID::allowedLanguageIDs();
  EXPECT_GT(allowed.size(), 500U);
  for (const char* present : {"en", "en_US", "he", "zh_Hans", "pt_BR", "sr_Latn", "af"}) {
    SCOPED_TRACE(present);
    EXPECT_TRUE(allowed.contains(LanguageID(present)));
  }
  for (const char* absent : {"zh-Hans", "en-US", "iw", "Base", "xx"}) {
    SCOPED_TRACE(absent);
    EXPECT_FALSE(allowed.contains(LanguageID(absent)));
  }
  EXPECT_EQ(&allowed, &LanguageID::allowedLanguageIDs());
}

TEST(Localization, Texts) {
  struct Row {
    Localization localization;
    const char* codable;
    const char* fileName;
    const char* display;
    const char* description;
  };
  const Row rows[] = {
      {Localization::base(), "base", "Base", "Base", ".base"},
      {Localization::leftToRight(), "left-to-right", "Left-to-Right", "Left to Right", ".leftToRight"},
      {Localization::rightToLeft(), "right-to-left", "Right-to-Left", "Right to Left", ".rightToLeft"},
      {Localization::language(LanguageID("pt_BR")), "pt_BR", "pt_BR", nullptr, ".language(pt_BR)"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.codable);
    EXPECT_EQ(row.localization.codableString(), row.codable);
    EXPECT_EQ(row.localization.fileNameComponent(), row.fileName);
    if (row.display) {
      EXPECT_EQ(row.localization.displayName(), row.display);
    }
    EXPECT_EQ(row.localization.description(), row.description);
    const bool isBase = row.localization == Localization::base();
    EXPECT_EQ(row.localization.fileNameComponentIfNotBase(),
              isBase ? std::nullopt : std::optional<std::string>(row.fileName));
    EXPECT_EQ(row.localization.languageID().has_value(), !row.localization.isAbstract());
  }
  EXPECT_EQ(Localization::base().semiQualifiedDisplayName(), "Base Localization");
  EXPECT_EQ(Localization::rightToLeft().semiQualifiedDisplayName(), "Right to Left");
  EXPECT_EQ(Localization(), Localization::base());
}

TEST(Localization, CodableStringsAndJSONPreferTheAbstractCasesExactly) {
  const Localization abstract[] = {Localization::base(), Localization::leftToRight(), Localization::rightToLeft()};
  for (const Localization& value : abstract) {
    SCOPED_TRACE(value.codableString());
    EXPECT_EQ(Localization::fromCodableString(value.codableString()), value);
    EXPECT_EQ(encodeJSON(value), JSONValue(value.codableString()));
    EXPECT_EQ(Decoder(encodeJSON(value)).decode<Localization>(), value);
  }
  EXPECT_NE(Localization::language(LanguageID("base")), Localization::base());
  for (const char* text : {"Base", "Left-to-Right", "he", "base "}) {
    SCOPED_TRACE(text);
    const Localization read = Decoder(JSONValue(text)).decode<Localization>();
    ASSERT_EQ(read.kind(), Localization::Kind::language);
    EXPECT_EQ(read.languageID()->localeID(), text);
    EXPECT_EQ(encodeJSON(read), JSONValue(text));
  }
  EXPECT_EQ(encodeJSON(LanguageID("he")), JSONValue("he"));
  EXPECT_EQ(Decoder(JSONValue("base")).decode<LanguageID>(), LanguageID("base"));
  const JSONValue notAString = parseJSON("{\"localization\": 3}");
  EXPECT_THROW_MESSAGE(Decoder(notAString).decode<Localization>("localization"), DecodingError,
                       "Expected to decode String but found number instead at localization.");
}

}  // namespace
}  // namespace iconwright
