// Writes the seed corpus of the image target: one small picture in each format and variant
// the decoders handle, made by each codec's own encoder through the graphics test fixtures.
// Run once by hand (see README.md); its output is committed under corpus/image.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/graphics/CodecFixtures.hpp"

using namespace iconwright::testing;

namespace {

void save(const std::filesystem::path& directory, const std::string& name, const Bytes& bytes) {
  std::ofstream file(directory / name, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
  std::printf("%s: %zu bytes\n", name.c_str(), bytes.size());
}

Bytes everyOther(const Bytes& rgba, std::size_t keep, std::size_t stride) {
  Bytes samples;
  for (std::size_t i = 0; i < rgba.size(); i += stride)
    samples.insert(samples.end(), rgba.begin() + std::ptrdiff_t(i), rgba.begin() + std::ptrdiff_t(i + keep));
  return samples;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <directory>\n", argv[0]);
    return 2;
  }
  const std::filesystem::path directory = argv[1];
  std::filesystem::create_directories(directory);
  constexpr int side = 8;
  const Bytes rgba = quadrants(side, side, 128);
  const Bytes rgb = everyOther(rgba, 3, 4);
  const Bytes gray = everyOther(rgba, 1, 4);
  const Bytes p3 = displayP3Profile();

  save(directory, "rgba.png", makePNG(rgba.data(), side, side, {6, 8, {}}));
  save(directory, "rgba-p3.png", makePNG(rgba.data(), side, side, {6, 8, p3}));
  save(directory, "gray.png", makePNG(gray.data(), side, side, {0, 8, {}}));
  std::vector<std::uint16_t> wide(rgb.begin(), rgb.end());
  for (auto& sample : wide) sample = std::uint16_t(sample * 257);
  save(directory, "rgb16.png", makePNG(wide.data(), side, side, {2, 16, {}}));
  Bytes indices(side * side);
  for (std::size_t i = 0; i < indices.size(); ++i) indices[i] = std::uint8_t(i % 4);
  const Bytes palette{255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};
  save(directory, "palette.png", makePNG(indices.data(), side, side, {3, 8, {}}, palette, {255, 128, 0, 255}));

  save(directory, "rgb.jpg", makeJPEG(rgb, side, side, false, {}));
  save(directory, "gray.jpg", makeJPEG(gray, side, side, true, {}));
  save(directory, "rgb-p3.jpg", makeJPEG(rgb, side, side, false, p3));

  save(directory, "rgba.webp", makeWebP(rgba, side, side, {}));
  save(directory, "rgba-p3.webp", makeWebP(rgba, side, side, p3));

  save(directory, "rgba.tif", makeTIFF(rgba, side, side, true, {}));
  save(directory, "rgb-p3.tif", makeTIFF(rgba, side, side, false, p3));

  save(directory, "transparent.gif", makeGIF(indices, side, side, palette, 2, false));
  save(directory, "interlaced.gif", makeGIF(indices, side, side, palette, -1, true));

  constexpr int heifSide = 16;
  const Bytes large = quadrants(heifSide, heifSide, 128);
  save(directory, "rgba.heic", makeHEIF(large, heifSide, heifSide, false, {}));
  save(directory, "rgba.avif", makeHEIF(large, heifSide, heifSide, true, {}));
  return 0;
}
