#include "foundation/graphics/ColorManagement.hpp"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "foundation/graphics/ImageCodecs.hpp"

namespace iconwright {
namespace {

using Model = ColorSpace::Model;

struct ProfileCloser {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

Profile makeRGBProfile(const cmsCIExyYTRIPLE& primaries, const char* description) {
  // The sRGB transfer function as an IEC 61966-2.1 parametric curve (type 4).
  const cmsFloat64Number parameters[5] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
  cmsToneCurve* curve = cmsBuildParametricToneCurve(nullptr, 4, parameters);
  cmsToneCurve* curves[3] = {curve, curve, curve};
  const cmsCIExyY whiteD65 = {0.3127, 0.3290, 1.0};
  Profile profile(cmsCreateRGBProfileTHR(nullptr, &whiteD65, &primaries, curves));
  cmsFreeToneCurve(curve);
  if (profile) {
    cmsMLU* mlu = cmsMLUalloc(nullptr, 1);
    cmsMLUsetASCII(mlu, "en", "US", description);
    cmsWriteTag(profile.get(), cmsSigProfileDescriptionTag, mlu);
    cmsMLUfree(mlu);
  }
  return profile;
}

Profile makeNamedProfile(ColorSpace::Kind kind) {
  switch (kind) {
    case ColorSpace::Kind::displayP3:
      return makeRGBProfile({{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}},
                            "Display P3");
    case ColorSpace::Kind::sRGB:
    case ColorSpace::Kind::iccProfile:
      return makeRGBProfile({{0.640, 0.330, 1}, {0.300, 0.600, 1}, {0.150, 0.060, 1}},
                            "sRGB IEC61966-2.1");
    case ColorSpace::Kind::genericGrayGamma2_2: {
      cmsToneCurve* gamma = cmsBuildGamma(nullptr, 2.2);
      Profile profile(cmsCreateGrayProfileTHR(nullptr, cmsD50_xyY(), gamma));
      cmsFreeToneCurve(gamma);
      if (profile) {
        cmsMLU* mlu = cmsMLUalloc(nullptr, 1);
        cmsMLUsetASCII(mlu, "en", "US", "Generic Gray Gamma 2.2");
        cmsWriteTag(profile.get(), cmsSigProfileDescriptionTag, mlu);
        cmsMLUfree(mlu);
      }
      return profile;
    }
  }
  return nullptr;
}

Profile openProfile(std::span<const std::uint8_t> bytes, Model model) {
  if (bytes.empty() || bytes.size() > 0xFFFFFFFFu) return nullptr;
  Profile profile(cmsOpenProfileFromMemTHR(nullptr, bytes.data(), cmsUInt32Number(bytes.size())));
  if (!profile) return nullptr;
  const cmsColorSpaceSignature expected = model == Model::gray ? cmsSigGrayData : cmsSigRgbData;
  if (cmsGetColorSpace(profile.get()) != expected) return nullptr;
  // A profile that can't be the source of a transform would fail later; find out now.
  if (!cmsIsIntentSupported(profile.get(), INTENT_RELATIVE_COLORIMETRIC, LCMS_USED_AS_INPUT))
    return nullptr;
  return profile;
}

// The space as lcms will really use it: an unusable profile falls back to a named space.
ColorSpace effectiveSpace(const ColorSpace& space) {
  if (space.kind() != ColorSpace::Kind::iccProfile) return space;
  const Model model = space.model() == Model::gray ? Model::gray : Model::rgb;
  if (openProfile(space.iccProfileBytes(), model)) return space;
  return model == Model::gray ? ColorSpace::genericGrayGamma2_2() : ColorSpace::sRGB();
}

Profile profileFor(const ColorSpace& space) {
  if (space.kind() == ColorSpace::Kind::iccProfile) return openProfile(space.iccProfileBytes(), space.model());
  return makeNamedProfile(space.kind());
}

struct TransformDeleter {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using Transform = std::shared_ptr<void>;

// A few recently used transforms, keyed by both spaces and both pixel formats.
class TransformCache {
 public:
  Transform get(const ColorSpace& source, const ColorSpace& target, cmsUInt32Number inFormat,
                cmsUInt32Number outFormat, cmsUInt32Number flags) {
    {
      std::lock_guard lock(mutex_);
      for (auto it = entries_.begin(); it != entries_.end(); ++it) {
        if (it->inFormat == inFormat && it->outFormat == outFormat && it->source == source &&
            it->target == target) {
          std::rotate(entries_.begin(), it, it + 1);
          return entries_.front().transform;
        }
      }
    }
    Profile in = profileFor(source), out = profileFor(target);
    if (!in || !out) return nullptr;
    // A profile that lcms2 cannot build a transform for gives null, which must not reach the
    // deleter: lcms2 asserts on a null transform.
    cmsHTRANSFORM made = cmsCreateTransformTHR(nullptr, in.get(), inFormat, out.get(), outFormat,
                                               INTENT_RELATIVE_COLORIMETRIC, flags);
    if (made == nullptr) return nullptr;
    Transform transform(made, TransformDeleter());
    std::lock_guard lock(mutex_);
    entries_.insert(entries_.begin(), Entry{source, target, inFormat, outFormat, transform});
    if (entries_.size() > kCapacity) entries_.pop_back();
    return transform;
  }

 private:
  static constexpr std::size_t kCapacity = 16;
  struct Entry {
    ColorSpace source, target;
    cmsUInt32Number inFormat, outFormat;
    Transform transform;
  };
  std::mutex mutex_;
  std::vector<Entry> entries_;
};

TransformCache& transformCache() {
  static TransformCache cache;
  return cache;
}

void unpremultiplyBGRA(std::span<std::uint8_t> pixels) {
  for (std::size_t i = 0; i < pixels.size(); i += 4) {
    const unsigned a = pixels[i + 3];
    if (a == 255) continue;
    for (int c = 0; c < 3; ++c) pixels[i + c] = unpremultiplyComponent(pixels[i + c], a);
  }
}

// Gray sources: a 256-entry table of target values, applied to unpremultiplied gray.
Image convertFromGray(const Image& image, const ColorSpace& source, const ColorSpace& target) {
  const bool grayTarget = target.model() == Model::gray;
  const Transform transform = transformCache().get(
      source, target, TYPE_GRAY_8, grayTarget ? TYPE_GRAY_8 : TYPE_BGR_8, 0);
  std::array<std::uint8_t, 256> ramp;
  for (int i = 0; i < 256; ++i) ramp[i] = std::uint8_t(i);
  std::array<std::uint8_t, 256 * 3> table;
  if (transform) {
    cmsDoTransform(transform.get(), ramp.data(), table.data(), 256);
    if (grayTarget)
      for (int i = 255; i >= 0; --i) table[3 * i] = table[3 * i + 1] = table[3 * i + 2] = table[i];
  } else {
    for (int i = 0; i < 256; ++i) table[3 * i] = table[3 * i + 1] = table[3 * i + 2] = ramp[i];
  }
  const std::span<const std::uint8_t> in = image.pixels();
  std::vector<std::uint8_t> out(in.size());
  for (std::size_t i = 0; i < in.size(); i += 4) {
    const unsigned a = in[i + 3];
    if (a == 0) continue;  // already zero
    const std::uint8_t* entry = &table[3 * unpremultiplyComponent(in[i + 1], a)];
    out[i] = premultiplyComponent(entry[0], a);
    out[i + 1] = premultiplyComponent(entry[1], a);
    out[i + 2] = premultiplyComponent(entry[2], a);
    out[i + 3] = std::uint8_t(a);
  }
  return *Image::create(image.width(), image.height(), std::move(out), target);
}

// Converted pixels remembered by their premultiplied value. Drawn artwork repeats few colours
// (a layer of a million pixels holds some thousands), so most pixels are looked up rather than
// unpremultiplied, transformed and premultiplied again; the answers are the transform's own.
// The values a stretch misses are converted together, in one call of the transform.
class ConvertedPixels {
 public:
  // Room for about one answer in eight of `pixelCount`, within 64 to 65536.
  ConvertedPixels(void* transform, std::size_t pixelCount)
      : transform_(transform), bits_(std::clamp(int(std::bit_width(pixelCount / 8)), 6, 16)), slots_(std::size_t(1) << bits_) {
    // Every slot starts as the answer for transparent black.
    std::array<std::uint8_t, 4> black{};
    convert(black);
    std::uint32_t answer;
    std::memcpy(&answer, black.data(), 4);
    std::fill(slots_.begin(), slots_.end(), Slot{0, answer});
  }

  /// Converts the `count` pixels at `pixels` in place.
  void convertStretch(std::uint8_t* pixels, std::size_t count) {
    // First the answers at hand; a value missed is given its slot at once, marked as waiting
    // for the answer at its place in `waiting_`, so that it is converted once however often
    // the stretch repeats it. A slot taken over by another value keeps the first one's place.
    waiting_.clear();
    waitingSlots_.clear();
    places_.clear();
    for (std::size_t i = 0; i < count; ++i) {
      std::uint32_t value;
      std::memcpy(&value, pixels + 4 * i, 4);
      const std::size_t index = (value * 0x9E3779B1u) >> (32 - bits_);
      Slot& slot = slots_[index];
      if (slot.pixel != value) {
        slot = {value, waitingMark(waiting_.size())};
        waiting_.push_back(value);
        waitingSlots_.push_back(std::uint32_t(index));
        ++misses_;
      }
      if (isWaiting(slot.converted)) {
        places_.push_back({std::uint32_t(i), slot.converted - 1});
      } else {
        std::memcpy(pixels + 4 * i, &slot.converted, 4);
      }
    }
    if (waiting_.empty()) return;
    convert(std::span(reinterpret_cast<std::uint8_t*>(waiting_.data()), waiting_.size() * 4));
    for (const auto& [index, answer] : places_) std::memcpy(pixels + 4 * std::size_t(index), &waiting_[answer], 4);
    for (std::size_t k = 0; k < waiting_.size(); ++k) {
      Slot& slot = slots_[waitingSlots_[k]];
      if (slot.converted == waitingMark(k)) slot.converted = waiting_[k];
    }
  }

  /// Answers not found since the last call.
  std::size_t takeMisses() { return std::exchange(misses_, 0); }

 private:
  struct Slot {
    std::uint32_t pixel, converted;
  };
  struct Place {
    std::uint32_t index, answer;
  };

  // A slot waiting for the answer at place k holds k + 1 as its answer: a transparent pixel
  // with colour, which no answer is (answers are premultiplied, and transparent ones black).
  static std::uint32_t waitingMark(std::size_t k) { return std::uint32_t(k + 1); }
  static bool isWaiting(std::uint32_t converted) { return converted != 0 && converted >> 24 == 0; }

  void convert(std::span<std::uint8_t> bytes) const {
    unpremultiplyBGRA(bytes);
    cmsDoTransform(transform_, bytes.data(), bytes.data(), cmsUInt32Number(bytes.size() / 4));
    codecs::premultiplyBGRA(bytes);
  }

  void* transform_;
  int bits_;
  std::vector<Slot> slots_;
  std::vector<std::uint32_t> waiting_;       // values missed, then their answers
  std::vector<std::uint32_t> waitingSlots_;  // the slot each was given
  std::vector<Place> places_;                // pixels waiting, and whose answer they wait for
  std::size_t misses_ = 0;
};

// Converts each row's stretch from its first to its last pixel that is not transparent;
// transparent pixels outside it are made transparent black, as a conversion leaves them.
// Rows whose colours mostly miss the remembered ones (photographs, smooth gradients) are
// converted in one call each from then on, which costs less per pixel than one call per miss.
void convertRows(void* transform, std::uint8_t* pixels, int width, int height, std::size_t stride) {
  std::optional<ConvertedPixels> converted;
  bool convertsWholeRows = false;
  // Clears the colour of the transparent pixel at `p`, if it has any; false if it is not transparent.
  const auto clearedIfTransparent = [](std::uint8_t* p) {
    if (p[3] != 0) return false;
    if (p[0] | p[1] | p[2]) p[0] = p[1] = p[2] = 0;
    return true;
  };
  // Whether the two pixels at `p` are transparent black, as most of an empty stretch is.
  const auto bothClear = [](const std::uint8_t* p) {
    std::uint64_t pair;
    std::memcpy(&pair, p, 8);
    return pair == 0;
  };
  for (int y = 0; y < height; ++y) {
    std::uint8_t* row = pixels + std::size_t(y) * stride;
    int first = 0;
    while (first + 1 < width && bothClear(row + 4 * first)) first += 2;
    while (first < width && clearedIfTransparent(row + 4 * first)) ++first;
    if (first == width) continue;
    int last = width - 1;
    while (last - 1 > first && bothClear(row + 4 * (last - 1))) last -= 2;
    while (clearedIfTransparent(row + 4 * last)) --last;
    const auto count = std::size_t(last - first + 1);
    if (convertsWholeRows) {
      const std::span<std::uint8_t> stretch(row + 4 * first, count * 4);
      unpremultiplyBGRA(stretch);
      cmsDoTransform(transform, stretch.data(), stretch.data(), cmsUInt32Number(count));
      codecs::premultiplyBGRA(stretch);
      continue;
    }
    if (!converted) converted.emplace(transform, std::size_t(width) * std::size_t(height - y));
    converted->convertStretch(row + 4 * first, count);
    convertsWholeRows = count >= 64 && converted->takeMisses() * 2 > count;
  }
}

}  // namespace

std::vector<std::uint8_t> iccProfileData(const ColorSpace& space) {
  if (space.kind() == ColorSpace::Kind::iccProfile) {
    const auto bytes = space.iccProfileBytes();
    return {bytes.begin(), bytes.end()};
  }
  static const auto profiles = [] {
    std::array<std::vector<std::uint8_t>, 3> result;
    const ColorSpace::Kind kinds[3] = {ColorSpace::Kind::displayP3, ColorSpace::Kind::sRGB,
                                       ColorSpace::Kind::genericGrayGamma2_2};
    for (int i = 0; i < 3; ++i) {
      Profile profile = makeNamedProfile(kinds[i]);
      cmsUInt32Number size = 0;
      if (!profile || !cmsSaveProfileToMem(profile.get(), nullptr, &size)) continue;
      result[i].resize(size);
      if (!cmsSaveProfileToMem(profile.get(), result[i].data(), &size)) result[i].clear();
    }
    return result;
  }();
  return profiles[std::size_t(space.kind())];
}

bool isUsableICCProfile(std::span<const std::uint8_t> bytes, ColorSpace::Model model) {
  return model != Model::other && openProfile(bytes, model) != nullptr;
}

Image convertedImage(const Image& image, const ColorSpace& target) {
  if (image.colorSpace() == target) return image;
  const ColorSpace source = effectiveSpace(image.colorSpace());
  const ColorSpace destination = effectiveSpace(target);
  if (source == destination) return image.withColorSpace(target);
  if (source.model() == Model::gray)
    return convertFromGray(image, source, destination).withColorSpace(target);

  // lcms's optimised 8-bit transforms of premultiplied pixels go wrong for translucent
  // pixels, so colours are converted straight and premultiplied again afterwards.
  const std::span<const std::uint8_t> in = image.pixels();
  const cmsUInt32Number pixelCount = cmsUInt32Number(in.size() / 4);
  std::vector<std::uint8_t> out(in.begin(), in.end());
  if (destination.model() == Model::gray) {
    unpremultiplyBGRA(out);
    const Transform transform = transformCache().get(source, destination, TYPE_BGRA_8,
                                                     TYPE_GRAYA_8, cmsFLAGS_COPY_ALPHA);
    if (!transform) return image.withColorSpace(target);
    std::vector<std::uint8_t> gray(std::size_t(pixelCount) * 2);
    cmsDoTransform(transform.get(), out.data(), gray.data(), pixelCount);
    for (std::size_t i = 0; i < pixelCount; ++i) {
      const unsigned a = gray[2 * i + 1];
      out[4 * i] = out[4 * i + 1] = out[4 * i + 2] = premultiplyComponent(gray[2 * i], a);
      out[4 * i + 3] = std::uint8_t(a);
    }
  } else {
    const Transform transform = transformCache().get(source, destination, TYPE_BGRA_8,
                                                     TYPE_BGRA_8, cmsFLAGS_COPY_ALPHA);
    if (!transform) return image.withColorSpace(target);
    convertRows(transform.get(), out.data(), image.width(), image.height(), std::size_t(image.width()) * 4);
  }
  return *Image::create(image.width(), image.height(), std::move(out), target);
}

bool convertPixelsInPlace(std::uint8_t* pixels, int width, int height, std::size_t stride,
                          const ColorSpace& source, const ColorSpace& target) {
  if (source.model() != Model::rgb || target.model() != Model::rgb) return false;
  const ColorSpace from = effectiveSpace(source), to = effectiveSpace(target);
  if (from == to) return true;
  const Transform transform =
      transformCache().get(from, to, TYPE_BGRA_8, TYPE_BGRA_8, cmsFLAGS_COPY_ALPHA);
  if (!transform) return false;
  convertRows(transform.get(), pixels, width, height, stride);
  return true;
}

}  // namespace iconwright
