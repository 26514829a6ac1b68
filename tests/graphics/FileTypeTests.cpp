#include <gtest/gtest.h>

#include "foundation/graphics/FileType.hpp"

namespace iconwright {
namespace {

TEST(FileType, LookupByExtensionAndIdentifier) {
  struct Case { const char* extension; std::optional<FileType> type; };
  const Case cases[] = {
      {"png", FileType::png()},   {"PNG", FileType::png()},    {"jpg", FileType::jpeg()},
      {"JPEG", FileType::jpeg()}, {"tif", FileType::tiff()},   {"HeIc", FileType::heic()},
      {"heif", FileType::heif()}, {"avif", FileType::avif()},  {"webp", FileType::webP()},
      {"gif", FileType::gif()},   {"svg", FileType::svg()},    {"", std::nullopt},
      {"txt", std::nullopt},      {"png ", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.extension);
    EXPECT_EQ(FileType::fromFilenameExtension(c.extension), c.type);
  }
  EXPECT_EQ(FileType::fromFilenameExtension("svg", FileType::image()), FileType::svg());
  EXPECT_FALSE(FileType::fromFilenameExtension("png", FileType::folder()));

  EXPECT_EQ(FileType::fromIdentifier("public.svg-image"), FileType::svg());
  EXPECT_EQ(FileType::fromIdentifier("org.webmproject.webp"), FileType::webP());
  EXPECT_EQ(FileType::fromIdentifier("public.package"), FileType::package());
  EXPECT_FALSE(FileType::fromIdentifier("public.PNG"));
  for (const FileType& type : FileType::decodableImageTypes())
    EXPECT_EQ(FileType::fromIdentifier(type.identifier()), type);

  EXPECT_EQ(FileType::jpeg().preferredFilenameExtension(), "jpeg");
  EXPECT_EQ(FileType::tiff().preferredFilenameExtension(), "tiff");
  EXPECT_EQ(FileType::png().identifier(), "public.png");
  EXPECT_FALSE(FileType::folder().preferredFilenameExtension());
  EXPECT_EQ(FileType::jpeg().filenameExtensions().size(), 3u);
}

TEST(FileType, Conformance) {
  struct Case { FileType type, other; bool conforms; };
  const Case cases[] = {
      {FileType::png(), FileType::png(), true},        {FileType::png(), FileType::image(), true},
      {FileType::png(), FileType::data(), true},       {FileType::png(), FileType::content(), true},
      {FileType::png(), FileType::item(), true},       {FileType::heic(), FileType::image(), true},
      {FileType::svg(), FileType::image(), true},      {FileType::image(), FileType::png(), false},
      {FileType::png(), FileType::jpeg(), false},      {FileType::folder(), FileType::directory(), true},
      {FileType::package(), FileType::folder(), false}, {FileType::folder(), FileType::data(), false},
      {FileType::fileURL(), FileType::data(), true},   {FileType::data(), FileType::content(), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type.identifier()) + " → " + std::string(c.other.identifier()));
    EXPECT_EQ(c.type.conformsTo(c.other), c.conforms);
  }
}

}  // namespace
}  // namespace iconwright
