// Decoding files made to hurt: a PNG header that lies about its size, a HEIF grid that is its
// own tile, and JPEG details the decoder must honour (EXIF orientation, CMYK profiles).
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
// jpeglib.h needs the declarations of <cstdio> first.
#include <jpeglib.h>
#include <lcms2.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <new>
#include <string>
#include <string_view>

#include "foundation/graphics/ImageDecoding.hpp"
#include "tests/graphics/CodecFixtures.hpp"

namespace iconwright {
namespace {

using testing::Bytes;

void appendBig(Bytes& bytes, std::uint32_t value, int size = 4) {
  for (int i = size - 1; i >= 0; --i) bytes.push_back(std::uint8_t(value >> (8 * i)));
}

Bytes box(std::string_view type, const Bytes& body) {
  Bytes bytes;
  appendBig(bytes, std::uint32_t(8 + body.size()));
  bytes.insert(bytes.end(), type.begin(), type.end());
  bytes.insert(bytes.end(), body.begin(), body.end());
  return bytes;
}

Bytes fullBox(std::string_view type, std::uint8_t version, const Bytes& body) {
  Bytes withHeader{version, 0, 0, 0};
  withHeader.insert(withHeader.end(), body.begin(), body.end());
  return box(type, withHeader);
}

Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes bytes;
  for (const Bytes& part : parts) bytes.insert(bytes.end(), part.begin(), part.end());
  return bytes;
}

/// A HEIC whose primary item 1 is a 1×1 grid of 16×16 whose tiles are given as "dimg"
/// references (from, to).
Bytes gridHEIF(const std::vector<std::pair<std::uint16_t, std::uint16_t>>& references) {
  const Bytes ftyp = box("ftyp", joined({Bytes{'h', 'e', 'i', 'c'}, Bytes{0, 0, 0, 0}, Bytes{'m', 'i', 'f', '1', 'h', 'e', 'i', 'c'}}));
  const Bytes hdlr = fullBox("hdlr", 0, joined({Bytes(4, 0), Bytes{'p', 'i', 'c', 't'}, Bytes(13, 0)}));
  const Bytes pitm = fullBox("pitm", 0, Bytes{0, 1});
  Bytes infes;
  for (std::uint16_t id = 1; id <= 2; ++id) {
    infes = joined({infes, fullBox("infe", 2, joined({Bytes{0, std::uint8_t(id), 0, 0}, Bytes{'g', 'r', 'i', 'd'}, Bytes{0}}))});
  }
  const Bytes iinf = fullBox("iinf", 0, joined({Bytes{0, 2}, infes}));
  Bytes links;
  for (const auto& [from, to] : references) {
    Bytes body;
    appendBig(body, from, 2);
    appendBig(body, 1, 2);
    appendBig(body, to, 2);
    links = joined({links, box("dimg", body)});
  }
  const Bytes iref = fullBox("iref", 0, links);
  const Bytes gridData{0, 0, 0, 0, 0, 16, 0, 16};  // version, flags, rows-1, columns-1, width, height
  // iloc version 1: offset and length sizes 4, base offset size 0, construction method 1 (idat).
  Bytes ilocBody{0x44, 0x00, 0, 2};
  for (std::uint16_t id = 1; id <= 2; ++id) {
    appendBig(ilocBody, id, 2);
    ilocBody.insert(ilocBody.end(), {0, 1, 0, 0, 0, 1});  // method 1, data reference 0, one extent
    appendBig(ilocBody, 0);
    appendBig(ilocBody, std::uint32_t(gridData.size()));
  }
  const Bytes iloc = fullBox("iloc", 1, ilocBody);
  const Bytes idat = box("idat", gridData);
  const Bytes ispe = fullBox("ispe", 0, Bytes{0, 0, 0, 16, 0, 0, 0, 16});
  const Bytes ipco = box("ipco", ispe);
  const Bytes ipma = fullBox("ipma", 0, Bytes{0, 0, 0, 2, 0, 1, 1, 0x81, 0, 2, 1, 0x81});
  const Bytes iprp = box("iprp", joined({ipco, ipma}));
  return joined({ftyp, fullBox("meta", 0, joined({hdlr, pitm, iloc, iinf, iref, iprp, idat}))});
}

TEST(HostileImages, HEIFDerivationCyclesAreRefusedBeforeDecoding) {
  struct Row {
    std::string label;
    std::vector<std::pair<std::uint16_t, std::uint16_t>> references;
  };
  const std::vector<Row> rows{
      {"a grid that is its own tile", {{1, 1}}},
      {"two grids that are each other's tiles", {{1, 2}, {2, 1}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    // Without the check libheif recurses until the process dies.
    EXPECT_FALSE(decodeImage(gridHEIF(row.references)));
  }
}

std::uint32_t crc32(const std::uint8_t* data, std::size_t size) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (std::size_t i = 0; i < size; ++i) {
    crc ^= data[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (0xEDB88320 & (0 - (crc & 1)));
  }
  return ~crc;
}

TEST(HostileImages, PNGHeaderClaimingMoreThanTheFileHoldsAllocatesNothingLarge) {
  Bytes rgba(8 * 8 * 4, 200);
  Bytes png = testing::makePNG(rgba.data(), 8, 8, {});
  ASSERT_TRUE(decodeImage(png));
  // IHDR starts at byte 8: length, "IHDR", width, height, …, CRC over type and data.
  for (const std::size_t offset : {16u, 20u}) {
    png[offset] = 0, png[offset + 1] = 0, png[offset + 2] = 0x40, png[offset + 3] = 0;  // 16384
  }
  const std::uint32_t crc = crc32(png.data() + 12, 17);
  for (int i = 0; i < 4; ++i) png[29 + i] = std::uint8_t(crc >> (8 * (3 - i)));

#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "an address-space limit cannot be set under AddressSanitizer";
#else
  // In a child whose address space allows 256 MB more than it has: reserving the 1 GiB the
  // header claims would fail there.
  const pid_t child = ::fork();
  if (child == 0) {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t limit = rlim_t(pages) * rlim_t(::sysconf(_SC_PAGESIZE)) + (rlim_t{256} << 20);
    const rlimit bound{limit, limit};
    ::setrlimit(RLIMIT_AS, &bound);
    try {
      ::_exit(decodeImage(png) ? 1 : 0);
    } catch (const std::bad_alloc&) {
      ::_exit(2);
    }
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0) << "1: decoded, 2: pixels reserved for a header the file cannot fill";
#endif
}

/// `jpeg` with an APP1 EXIF marker holding only the orientation, right after SOI.
Bytes withOrientation(const Bytes& jpeg, std::uint16_t orientation) {
  Bytes exif{'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1, 0x01, 0x12, 0, 3, 0, 0, 0, 1};
  appendBig(exif, orientation, 2);
  exif.insert(exif.end(), {0, 0, 0, 0, 0, 0});
  Bytes marker{0xFF, 0xE1};
  appendBig(marker, std::uint32_t(exif.size() + 2), 2);
  Bytes result(jpeg.begin(), jpeg.begin() + 2);
  result.insert(result.end(), marker.begin(), marker.end());
  result.insert(result.end(), exif.begin(), exif.end());
  result.insert(result.end(), jpeg.begin() + 2, jpeg.end());
  return result;
}

TEST(HostileImages, JPEGOrientationIsApplied) {
  // 16 × 8: red left half, blue right half.
  Bytes rgb;
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 16; ++x) rgb.insert(rgb.end(), {std::uint8_t(x < 8 ? 255 : 0), 0, std::uint8_t(x < 8 ? 0 : 255)});
  }
  const Bytes plain = testing::makeJPEG(rgb, 16, 8, false, {});
  struct Row {
    std::uint16_t orientation;
    int width, height;
    bool redFirst;  // red at the top (turned) or at the left (not turned)
  };
  for (const Row& row : {Row{1, 16, 8, true}, Row{3, 16, 8, false}, Row{6, 8, 16, true}, Row{8, 8, 16, false},
                         Row{2, 16, 8, false}, Row{5, 8, 16, true}}) {
    SCOPED_TRACE(row.orientation);
    const auto image = decodeImage(withOrientation(plain, row.orientation));
    ASSERT_TRUE(image);
    ASSERT_EQ(image->width(), row.width);
    ASSERT_EQ(image->height(), row.height);
    const bool turned = row.width == 8;
    const std::uint8_t* first = image->row(turned ? 2 : 4) + 4 * (turned ? 4 : 2);
    const std::uint8_t* second = image->row(turned ? 13 : 4) + 4 * (turned ? 4 : 13);
    EXPECT_EQ(first[2] > 128, row.redFirst) << "red channel of the first half";
    EXPECT_EQ(second[2] > 128, !row.redFirst) << "red channel of the second half";
  }
}

/// A CMYK output profile whose table maps cyan ink alone to red, so that a conversion by
/// formula (which gives cyan) and one through the profile differ plainly.
Bytes oddCMYKProfile() {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 2.1);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  cmsUInt16Number table[16 * 3];
  for (int corner = 0; corner < 16; ++corner) {
    // Grid order: cyan is the slowest-varying input.
    const bool cyan = corner & 8, others = corner & 7;
    double L = 100, a = 0, b = 0;
    if (cyan && !others) L = 54, a = 80, b = 67;   // red
    else if (cyan || others) L = 30;                // dark grey
    table[corner * 3 + 0] = cmsUInt16Number(L / 100 * 65535);
    table[corner * 3 + 1] = cmsUInt16Number((a + 128) * 257);
    table[corner * 3 + 2] = cmsUInt16Number((b + 128) * 257);
  }
  cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
  cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocCLut16bit(nullptr, 2, 4, 3, table));
  cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
  cmsWriteTag(profile, cmsSigMediaWhitePointTag, cmsD50_XYZ());
  cmsPipelineFree(pipeline);
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  Bytes bytes(size);
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

/// A flat 16 × 16 CMYK JPEG of one ink mix, written as Adobe CMYK (inverted), with `profile`.
Bytes cmykJPEG(std::array<std::uint8_t, 4> ink, const Bytes& profile) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* buffer = nullptr;
  unsigned long length = 0;
  jpeg_mem_dest(&info, &buffer, &length);
  info.image_width = 16;
  info.image_height = 16;
  info.input_components = 4;
  info.in_color_space = JCS_CMYK;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 100, TRUE);
  jpeg_start_compress(&info, TRUE);
  if (!profile.empty()) jpeg_write_icc_profile(&info, profile.data(), unsigned(profile.size()));
  Bytes row;
  for (int x = 0; x < 16; ++x) {
    for (const std::uint8_t value : ink) row.push_back(std::uint8_t(255 - value));
  }
  while (info.next_scanline < info.image_height) {
    JSAMPROW pointer = row.data();
    jpeg_write_scanlines(&info, &pointer, 1);
  }
  jpeg_finish_compress(&info);
  Bytes result(buffer, buffer + length);
  jpeg_destroy_compress(&info);
  std::free(buffer);
  return result;
}

TEST(HostileImages, CMYKJPEGIsConvertedThroughItsProfile) {
  const auto byFormula = decodeImage(cmykJPEG({255, 0, 0, 0}, {}));
  ASSERT_TRUE(byFormula);
  const std::uint8_t* cyan = byFormula->row(8) + 4 * 8;  // BGRA
  EXPECT_LT(cyan[2], 40);
  EXPECT_GT(cyan[1], 200);

  const auto byProfile = decodeImage(cmykJPEG({255, 0, 0, 0}, oddCMYKProfile()));
  ASSERT_TRUE(byProfile);
  const std::uint8_t* red = byProfile->row(8) + 4 * 8;
  EXPECT_GT(red[2], 200) << "red";
  EXPECT_LT(red[1], 80) << "green";
  EXPECT_EQ(red[3], 255);
  EXPECT_EQ(byProfile->colorSpace(), byFormula->colorSpace());
}

}  // namespace
}  // namespace iconwright
