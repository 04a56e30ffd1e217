#include "detection/MediaTypes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "morvelune/FSign.h"

namespace morvelune::detection {
namespace {

using namespace std::string_view_literals;

// The order of the rows decides only for a header that has signatures of two types, at different
// offsets: the first row wins. Several loose signatures are deliberate. AIFF ends in the top byte
// of the chunk size, so that only containers below 16 MiB match, whatever form they hold. WAVE and
// AVI look at the form alone, not at the container. MP3 is known by its tag only, not by a frame
// header.
constexpr MediaType table[] = {
    {"public.aiff-audio", {{{"FORM\0"sv, 0}}}, {"aiff", "aif"}},
    {"com.microsoft.waveform-audio", {{{"WAVE"sv, 8}}}, {"wav", "wave"}},
    {"public.mp3", {{{"ID3"sv, 0}}}, {"mp3"}},
    {"public.mpeg-4-audio", {{{"ftypM4A "sv, 4}}}, {"m4a"}},
    {"public.jpeg", {{{"\xFF\xD8\xFF"sv, 0}}}, {"jpg", "jpeg"}},
    {"com.compuserve.gif", {{{"GIF8"sv, 0}}}, {"gif"}},
    {"public.png", {{{"\x89PNG\r\n\x1A\n"sv, 0}}}, {"png"}},
    {"public.mpeg",
     {{{"\x00\x00\x01\xBA"sv, 0}, {"\x00\x00\x01\xB3"sv, 0}}},
     {"mpg", "mpeg", "m75", "m15"}},
    {"public.mpeg-4",
     {{{"ftypisom"sv, 4},
       {"ftypMSNV"sv, 4},
       {"ftypmp42"sv, 4},
       {"ftypmp41"sv, 4},
       {"ftyp3gp5"sv, 4}}},
     {"mp4", "mpg4"}},
    {"public.avi", {{{"AVI "sv, 8}}}, {"avi", "vfw"}},
};

constexpr bool liesInHeader(const Signature& signature) {
  return signature.offset + signature.bytes.size() <= headerSize;
}

static_assert(std::all_of(std::begin(table), std::end(table),
                          [](const MediaType& type) {
                            return std::all_of(type.signatures.begin(), type.signatures.end(),
                                               liesInHeader);
                          }),
              "every signature lies within the header, as patternOf() needs it");

// The header as two numbers, compared with each signature in two steps instead of byte by byte: a
// file of no type is told in a fifth of the time that a loop of memcmp() takes.
using Header = std::array<std::uint64_t, 2>;

struct Pattern {
  Header bytes{};
  Header mask{};  // ones where the signature has bytes
  std::string_view type;
};

constexpr Pattern patternOf(const Signature& signature, std::string_view type) {
  std::array<unsigned char, headerSize> bytes{};
  std::array<unsigned char, headerSize> mask{};
  for (std::size_t i = 0; i < signature.bytes.size(); ++i) {
    bytes[signature.offset + i] = static_cast<unsigned char>(signature.bytes[i]);
    mask[signature.offset + i] = 0xFF;
  }
  return {std::bit_cast<Header>(bytes), std::bit_cast<Header>(mask), type};
}

constexpr std::size_t signatureCount = [] {
  std::size_t count = 0;
  for (const MediaType& type : table) {
    for (const Signature& each : type.signatures) count += each.bytes.empty() ? 0 : 1;
  }
  return count;
}();

constexpr auto patterns = [] {
  std::array<Pattern, signatureCount> all;
  std::size_t count = 0;
  for (const MediaType& type : table) {
    for (const Signature& each : type.signatures) {
      if (!each.bytes.empty()) all[count++] = patternOf(each, type.identifier);
    }
  }
  return all;
}();

Dictionary buildSignatureMap() {
  std::vector<Dictionary::Entry> entries;
  for (const MediaType& type : table) {
    std::vector<Value> records;
    for (const Signature& each : type.signatures) {
      if (each.bytes.empty()) continue;
      records.emplace_back(FSign(each.bytes.data(), each.bytes.size(), each.offset));
    }
    entries.push_back({std::string(type.identifier), Array(std::move(records))});
  }
  return Dictionary(std::move(entries));
}

Dictionary buildExtensionMap() {
  std::vector<Dictionary::Entry> entries;
  for (const MediaType& type : table) {
    for (const std::string_view extension : type.extensions) {
      if (!extension.empty()) entries.push_back({std::string(extension), type.identifier});
    }
  }
  return Dictionary(std::move(entries));
}

}  // namespace

std::span<const MediaType> mediaTypes() {
  return table;
}

std::optional<std::string> typeOfContent(const std::optional<Data>& data) {
  if (!data || data->size() < headerSize) return std::nullopt;
  Header header{};
  std::memcpy(header.data(), data->bytes().data(), headerSize);
  for (const Pattern& each : patterns) {
    if ((header[0] & each.mask[0]) == each.bytes[0] && (header[1] & each.mask[1]) == each.bytes[1])
      return std::string(each.type);
  }
  return std::nullopt;
}

std::optional<std::string> typeOfExtension(std::string_view extension) {
  return extensionMap().string(extension);
}

// Both maps are never destroyed, so that completions may still use them while the process ends.

const Dictionary& signatureMap() {
  static const Dictionary& map = *new Dictionary(buildSignatureMap());
  return map;
}

const Dictionary& extensionMap() {
  static const Dictionary& map = *new Dictionary(buildExtensionMap());
  return map;
}

}  // namespace morvelune::detection
