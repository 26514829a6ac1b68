// SupportedPlatforms: which platforms a document makes icons for. The square icons (iOS,
// macOS) are either one shared icon or one per chosen platform; the round icon (watchOS) is
// chosen or not. Answers which platform stands in for another that is not supported, and
// reads and writes the document's JSON form:
//   {"circles" : ["watchOS"], "squares" : "shared"}     a group left out means none of it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "foundation/json/JSONCoding.hpp"
#include "foundation/platforms/Platform.hpp"
#include "foundation/specialization/Idiom.hpp"
#include "foundation/support/Hashing.hpp"

namespace iconwright {

class SupportedPlatforms {
 public:
  /// The square icons: unique(iOS, macOS) or shared, one icon for both.
  class Squares {
   public:
    struct Unique {
      bool iOS = false;
      bool macOS = false;
      friend constexpr bool operator==(const Unique&, const Unique&) = default;
    };

    /// unique with both flags false.
    constexpr Squares() : storage_(Unique{false, false}) {}
    [[nodiscard]] static constexpr Squares unique(bool iOS, bool macOS) { return Squares(Unique{iOS, macOS}); }
    [[nodiscard]] static constexpr Squares shared() { return Squares(Shared{}); }

    [[nodiscard]] constexpr bool isShared() const { return std::holds_alternative<Shared>(storage_); }
    /// The flags of unique; absent for shared.
    [[nodiscard]] constexpr std::optional<Unique> uniqueFlags() const {
      if (const Unique* flags = std::get_if<Unique>(&storage_)) return *flags;
      return std::nullopt;
    }

    /// unique: those of iOS, macOS that are set, in that order. shared: iOS alone, standing
    /// for the shared icon.
    [[nodiscard]] std::vector<Platform> selectablePlatforms() const;
    /// iOS if shared or set; else macOS if set; else none.
    [[nodiscard]] std::optional<Platform> fallbackPlatform() const;
    /// iOS and macOS when shared, else their flag; never watchOS.
    [[nodiscard]] bool isValid(Platform platform) const;

    /// The keyed form of the union, {"shared":{}} or {"unique":{"iOS":true,"macOS":false}}.
    /// The document does not use it.
    [[nodiscard]] JSONValue encodeKeyedJSON() const;
    /// Exactly one of "shared" and "unique" must be present (other keys are ignored), else a
    /// type mismatch "Invalid number of keys found, expected one."; both flags are required.
    [[nodiscard]] static Squares decodeKeyedJSON(const Decoder& decoder);

    friend constexpr bool operator==(const Squares&, const Squares&) = default;

   private:
    struct Shared {
      friend constexpr bool operator==(const Shared&, const Shared&) = default;
    };
    constexpr explicit Squares(Unique flags) : storage_(flags) {}
    constexpr explicit Squares(Shared shared) : storage_(shared) {}
    std::variant<Unique, Shared> storage_;
  };

  /// The round icon: unique(watchOS) or shared.
  class Circles {
   public:
    struct Unique {
      bool watchOS = false;
      friend constexpr bool operator==(const Unique&, const Unique&) = default;
    };

    /// unique with the flag false.
    constexpr Circles() : storage_(Unique{false}) {}
    [[nodiscard]] static constexpr Circles unique(bool watchOS) { return Circles(Unique{watchOS}); }
    [[nodiscard]] static constexpr Circles shared() { return Circles(Shared{}); }

    [[nodiscard]] constexpr bool isShared() const { return std::holds_alternative<Shared>(storage_); }
    [[nodiscard]] constexpr std::optional<Unique> uniqueFlags() const {
      if (const Unique* flags = std::get_if<Unique>(&storage_)) return *flags;
      return std::nullopt;
    }

    /// watchOS when shared or set; else nothing.
    [[nodiscard]] std::vector<Platform> selectablePlatforms() const;
    /// watchOS when shared or set; else none.
    [[nodiscard]] std::optional<Platform> fallbackPlatform() const;
    /// watchOS when shared or set; never iOS or macOS.
    [[nodiscard]] bool isValid(Platform platform) const;

    /// {"shared":{}} or {"unique":{"watchOS":true}}; read as Squares::decodeKeyedJSON does.
    [[nodiscard]] JSONValue encodeKeyedJSON() const;
    [[nodiscard]] static Circles decodeKeyedJSON(const Decoder& decoder);

    friend constexpr bool operator==(const Circles&, const Circles&) = default;

   private:
    struct Shared {
      friend constexpr bool operator==(const Shared&, const Shared&) = default;
    };
    constexpr explicit Circles(Unique flags) : storage_(flags) {}
    constexpr explicit Circles(Shared shared) : storage_(shared) {}
    std::variant<Unique, Shared> storage_;
  };

  Squares squares;
  Circles circles;

  /// Shared squares and watchOS: what a new document supports.
  [[nodiscard]] static constexpr SupportedPlatforms defaultValue() {
    return {Squares::shared(), Circles::unique(true)};
  }
  /// watchOS alone.
  [[nodiscard]] static constexpr SupportedPlatforms uniqueWatchOS() {
    return {Squares::unique(false, false), Circles::unique(true)};
  }
  /// The shared square icon alone.
  [[nodiscard]] static constexpr SupportedPlatforms unifiedSquares() {
    return {Squares::shared(), Circles::unique(false)};
  }
  /// Unique groups in which only `platform` is set.
  [[nodiscard]] static constexpr SupportedPlatforms only(Platform platform) {
    return {Squares::unique(platform == Platform::iOS, platform == Platform::macOS),
            Circles::unique(platform == Platform::watchOS)};
  }

  /// Those of squares followed by those of circles.
  [[nodiscard]] std::vector<Platform> selectablePlatforms() const;
  /// The isValid of the group that holds the platform.
  [[nodiscard]] bool isValidPlatform(Platform platform) const;
  /// The supported platform that stands in for `platform`: itself when valid, else the other
  /// square platform for a square one, else watchOS; for watchOS, the square platforms in
  /// the order iOS, macOS. Absent when nothing is supported.
  [[nodiscard]] std::optional<Platform> nearestValidPlatform(Platform platform) const;
  /// The first valid one of macOS, iOS, watchOS; absent when none is.
  [[nodiscard]] std::optional<Platform> platformForWorkspacePreviews() const;
  /// "iOS, macOS" for iOS or macOS when the squares are shared; else the platform's name.
  [[nodiscard]] std::string displayName(Platform platform) const;

  /// "shared" for a shared group, an array of the set platforms for a unique one, and no key
  /// for a unique group with nothing set.
  [[nodiscard]] JSONValue encodeJSON() const;
  /// A missing key is a unique group with nothing set; an array must name only platforms of
  /// its group ("Invalid encoding of supported platforms - unknown platform values." else);
  /// a string must be "shared" ("Invalid encoding of supported platforms: “text”" else).
  [[nodiscard]] static SupportedPlatforms decodeJSON(const Decoder& decoder);

  friend constexpr bool operator==(const SupportedPlatforms&, const SupportedPlatforms&) = default;
};

/// The idiom whose values `platform` shows under `supported`: square for iOS and macOS when
/// they share their icon, else the platform's own idiom.
[[nodiscard]] Idiom idiom(Platform platform, const SupportedPlatforms& supported);

}  // namespace iconwright

template <>
struct std::hash<iconwright::SupportedPlatforms> {
  std::size_t operator()(const iconwright::SupportedPlatforms& value) const noexcept;
};
