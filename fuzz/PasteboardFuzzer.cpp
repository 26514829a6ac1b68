// Asset data from the pasteboard, which any program can fill: one language's variants pasted
// into a store, and the JSON of a whole store. A paste either succeeds or throws
// DecodingError (or MessageError) and leaves the store as it was; a pasted language copies
// out and pastes into another store to the same variants; and a whole-store representation
// decodes from its own encoding to itself and, when every variant has a base, makes a store
// that gives the same representation back. (A variant without a base stops the process by
// design when a store is made from it, so those are not made.)
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "foundation/assets/AssetStore.hpp"
#include "foundation/json/DecodingError.hpp"
#include "foundation/json/JSONReader.hpp"
#include "foundation/graphics/Pasteboard.hpp"
#include "foundation/support/MessageError.hpp"
#include "fuzz/FuzzSupport.hpp"

using namespace iconwright;

namespace {

const AssetStore::LanguageID hebrew("he");

/// Two assets with base variants, one of them with a Hebrew variant already.
AssetStore sampleStore() {
  AssetStore::DataByName base{{AssetName("Mark.png"), AssetData(AssetData::Bytes{1, 2, 3})},
                              {AssetName("Back.svg"), AssetData(AssetData::Bytes{4, 5})}};
  AssetStore::DataByLanguage variants{{hebrew, {{AssetName("Mark.png"), AssetData(AssetData::Bytes{6})}}}};
  return AssetStore::create(AssetStore::Snapshot(std::move(base), std::move(variants)));
}

void checkLanguagePaste(const PasteboardBytes& bytes) {
  MemoryPasteboard pasteboard;
  pasteboard.setData(bytes, AssetStore::localizedAssetsPasteboardType);
  AssetStore store = sampleStore();
  const AssetStore::Snapshot before = store.snapshot();
  try {
    FUZZ_CHECK(store.pasteLocalizedAssets(pasteboard, hebrew), "a paste with data reports none");
  } catch (const DecodingError&) {
    FUZZ_CHECK(store.snapshot() == before, "a failed paste changed the store");
    return;
  } catch (const MessageError&) {
    FUZZ_CHECK(store.snapshot() == before, "a failed paste changed the store");
    return;
  }
  MemoryPasteboard copied;
  store.copyLocalizedAssets(hebrew, copied);
  AssetStore other = sampleStore();
  FUZZ_CHECK(other.pasteLocalizedAssets(copied, hebrew), "a copied language does not paste");
  const AssetStore::Snapshot first = store.snapshot();
  const AssetStore::Snapshot second = other.snapshot();
  const auto& pasted = first.variantData();
  const auto& again = second.variantData();
  FUZZ_CHECK(pasted.contains(hebrew) == again.contains(hebrew) &&
                 (!pasted.contains(hebrew) || pasted.at(hebrew) == again.at(hebrew)),
             "copying a pasted language out and in changes it");
}

bool everyVariantHasABase(const AssetStore::PasteboardRepresentation& representation) {
  for (const auto& [language, data] : representation.variantData) {
    for (const auto& [name, bytes] : data) {
      if (!representation.baseData.contains(name)) return false;
    }
  }
  return true;
}

void checkRepresentation(std::string_view text) {
  std::optional<AssetStore::PasteboardRepresentation> representation;
  try {
    const JSONValue json = parseJSON(text);
    representation = AssetStore::PasteboardRepresentation::decodeJSON(Decoder(json));
  } catch (const DecodingError&) {
    return;
  } catch (const MessageError&) {
    return;
  }
  const JSONValue encoded = representation->encodeJSON();
  FUZZ_CHECK(AssetStore::PasteboardRepresentation::decodeJSON(Decoder(encoded)) == *representation,
             "a store's pasteboard JSON does not decode to itself");
  if (!everyVariantHasABase(*representation)) return;
  // A language without variants has nothing to hold it in a store.
  std::erase_if(representation->variantData, [](const auto& entry) { return entry.second.empty(); });
  FUZZ_CHECK(AssetStore::create(*representation).pasteboardRepresentation() == *representation,
             "a store made from a representation gives another one back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkLanguagePaste(PasteboardBytes(data, data + size));
  checkRepresentation(fuzz::textOf(data, size));
  return 0;
}
