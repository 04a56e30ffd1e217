#include "detection/SignatureTable.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "morvelune/FSign.h"

namespace morvelune::detection {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view type;   // Uniform Type Identifier
  std::string_view bytes;  // compared as they stand
  std::size_t offset;      // in the file
};

// The order decides for a header that matches at two offsets: the first row wins. Several looser
// rows are deliberate. AIFF ends in the top byte of the chunk size, so that only containers below
// 16 MiB match, whatever form they hold. WAVE and AVI look at the form alone, not at the container.
// MP3 is known by its tag only, not by a frame header.
constexpr Signature table[] = {
    {"public.aiff-audio", "FORM\0"sv, 0},
    {"com.microsoft.waveform-audio", "WAVE"sv, 8},
    {"public.mp3", "ID3"sv, 0},
    {"public.mpeg-4-audio", "ftypM4A "sv, 4},
    {"public.jpeg", "\xFF\xD8\xFF"sv, 0},
    {"com.compuserve.gif", "GIF8"sv, 0},
    {"public.png", "\x89PNG\r\n\x1A\n"sv, 0},
    {"public.mpeg", "\x00\x00\x01\xBA"sv, 0},
    {"public.mpeg", "\x00\x00\x01\xB3"sv, 0},
    {"public.mpeg-4", "ftypisom"sv, 4},
    {"public.mpeg-4", "ftypMSNV"sv, 4},
    {"public.mpeg-4", "ftypmp42"sv, 4},
    {"public.mpeg-4", "ftypmp41"sv, 4},
    {"public.mpeg-4", "ftyp3gp5"sv, 4},
    {"public.avi", "AVI "sv, 8},
};

static_assert(std::all_of(std::begin(table), std::end(table),
                          [](const Signature& row) {
                            return row.offset + row.bytes.size() <= headerSize;
                          }),
              "every signature lies within the header, so matching needs no bounds check");

bool matches(const Signature& signature, Header header) {
  return std::memcmp(header.data() + signature.offset, signature.bytes.data(),
                     signature.bytes.size()) == 0;
}

Dictionary buildSignatureMap() {
  std::vector<Dictionary::Entry> entries;
  for (const Signature& row : table) {
    const Value record = FSign(row.bytes.data(), row.bytes.size(), row.offset);
    std::vector<Value> records;
    if (!entries.empty() && entries.back().key == row.type) {
      const Array earlier = *entries.back().value.array();
      records.assign(earlier.begin(), earlier.end());
      entries.pop_back();
    }
    records.push_back(record);
    entries.push_back({std::string(row.type), Array(std::move(records))});
  }
  return Dictionary(std::move(entries));
}

}  // namespace

std::optional<std::string_view> typeOfHeader(Header header) {
  const auto* row = std::find_if(std::begin(table), std::end(table),
                                 [header](const auto& each) { return matches(each, header); });
  if (row == std::end(table)) return std::nullopt;
  return row->type;
}

const Dictionary& signatureMap() {
  // Never destroyed, so that completions may still use it while the process ends.
  static const Dictionary& map = *new Dictionary(buildSignatureMap());
  return map;
}

}  // namespace morvelune::detection
