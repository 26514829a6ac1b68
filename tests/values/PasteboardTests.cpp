#include "foundation/graphics/Pasteboard.hpp"
#include "foundation/values/PasteboardProperty.hpp"

#include <gtest/gtest.h>

#include "foundation/json/KeyedValues.hpp"
#include "foundation/support/MessageError.hpp"
#include "foundation/values/Color.hpp"
#include "tests/common/TestSupport.hpp"

namespace iconwright {
namespace {

PasteboardBytes bytes(std::string_view text) { return PasteboardBytes(text.begin(), text.end()); }

PasteboardItem item(std::initializer_list<std::pair<const char*, const char*>> entries) {
  PasteboardItem result;
  for (const auto& [type, text] : entries) result.setString(text, type);
  return result;
}

TEST(MemoryPasteboard, SetDataWritesTheFirstItemAndReadsFindTheFirstItemWithTheType) {
  MemoryPasteboard pasteboard;
  EXPECT_TRUE(pasteboard.types().empty());
  EXPECT_EQ(pasteboard.dataForType("public.png"), std::nullopt);

  pasteboard.setData(bytes("one"), "public.png");
  pasteboard.setString("text");
  pasteboard.setData(bytes("two"), "public.png");  // replaces, keeps the type order
  ASSERT_EQ(pasteboard.items().size(), 1u);
  EXPECT_EQ(pasteboard.types(), (std::vector<std::string>{"public.png", "public.utf8-plain-text"}));
  EXPECT_EQ(pasteboard.dataForType("public.png"), bytes("two"));

  pasteboard.writeItems({item({{"public.svg-image", "<svg/>"}, {"public.png", "three"}}), item({{"public.jpeg", "j"}})});
  EXPECT_EQ(pasteboard.types(),
            (std::vector<std::string>{"public.png", "public.utf8-plain-text", "public.svg-image", "public.jpeg"}));
  EXPECT_EQ(pasteboard.dataForType("public.png"), bytes("two"));
  EXPECT_EQ(pasteboard.stringForType("public.svg-image"), "<svg/>");
  const auto items = pasteboard.items();
  ASSERT_EQ(items.size(), 3u);
  EXPECT_EQ(items[1].types(), (std::vector<std::string>{"public.svg-image", "public.png"}));
  EXPECT_EQ(items[1].stringForType("public.png"), "three");
  EXPECT_EQ(items[2].dataForType("public.png"), std::nullopt);
}

TEST(MemoryPasteboard, ClearingEmptiesAndCountsChanges) {
  MemoryPasteboard pasteboard;
  pasteboard.setString("a");
  EXPECT_EQ(pasteboard.clearContents(), 1);
  EXPECT_TRUE(pasteboard.items().empty());
  EXPECT_EQ(pasteboard.stringForType(), std::nullopt);
  EXPECT_EQ(pasteboard.clearContents(), 2);
  EXPECT_EQ(pasteboard.changeCount(), 2);
}

TEST(GeneralPasteboard, CanBeReplacedByTheHost) {
  auto own = std::make_shared<MemoryPasteboard>();
  setGeneralPasteboard(own);
  generalPasteboard()->setString("copied");
  EXPECT_EQ(own->stringForType(), "copied");
  setGeneralPasteboard(nullptr);
  EXPECT_NE(generalPasteboard().get(), own.get());
  EXPECT_EQ(generalPasteboard()->stringForType(), std::nullopt);
}

TEST(PasteboardProperty, WritesPrettySortedJSONReplacingEverything) {
  MemoryPasteboard pasteboard;
  pasteboard.writeItems({item({{"public.png", "x"}}), item({{"public.jpeg", "y"}})});
  PasteboardProperty<KeyedPoint>{{0.5, 1}}.write(pasteboard);
  EXPECT_EQ(pasteboard.types(), (std::vector<std::string>{"com.vantorel.iconwright-pasteboardproperty"}));
  EXPECT_EQ(pasteboard.stringForType(pasteboardPropertyType),
            "{\n  \"value\" : {\n    \"x\" : 0.5,\n    \"y\" : 1\n  }\n}");
  EXPECT_EQ(PasteboardProperty<KeyedPoint>::readFrom(pasteboard), (PasteboardProperty<KeyedPoint>{{0.5, 1}}));

  PasteboardProperty<std::string>{"a/b"}.write(pasteboard);
  EXPECT_EQ(pasteboard.stringForType(pasteboardPropertyType), "{\n  \"value\" : \"a\\/b\"\n}");
  EXPECT_EQ(PasteboardProperty<std::string>::readFrom(pasteboard)->value, "a/b");
}

TEST(PasteboardProperty, AbsentWithoutItsTypeAndThrowsOnBadData) {
  MemoryPasteboard pasteboard;
  EXPECT_EQ(PasteboardProperty<Color>::readFrom(pasteboard), std::nullopt);
  pasteboard.setString("{\"value\" : \"srgb:1,0,0,1\"}");
  EXPECT_EQ(PasteboardProperty<Color>::readFrom(pasteboard), std::nullopt);

  pasteboard.setString(R"({"value" : "srgb:1,0,0,1"})", pasteboardPropertyType);
  EXPECT_EQ(PasteboardProperty<Color>::readFrom(pasteboard)->value, Color::sRGB(1, 0, 0, 1));
  pasteboard.setString(R"({"value" : "SRGB:1,0,0,1"})", pasteboardPropertyType);
  EXPECT_THROW_MESSAGE((void)PasteboardProperty<Color>::readFrom(pasteboard), MessageError, "Invalid color space: SRGB");
  pasteboard.setString(R"({"other" : 1})", pasteboardPropertyType);
  EXPECT_THROW_MESSAGE((void)PasteboardProperty<Color>::readFrom(pasteboard), DecodingError,
                       "No value associated with key “value”.");
  pasteboard.setString("{", pasteboardPropertyType);
  EXPECT_THROW((void)PasteboardProperty<Color>::readFrom(pasteboard), DecodingError);
}

}  // namespace
}  // namespace iconwright
