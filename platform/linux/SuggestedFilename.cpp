#include "platform/linux/SuggestedFilename.h"

#include <curl/curl.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <memory>

#include "platform/PercentCoding.h"
#include "platform/linux/UTF8.h"

namespace morvelune {
namespace {

std::string fromISO88591(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += {static_cast<char>(0xC0 | byte >> 6), static_cast<char>(0x80 | (byte & 0x3F))};
    }
  }
  return text;
}

bool equalIgnoringCase(std::string_view left, const char* right) {
  return curl_strequal(std::string(left).c_str(), right) != 0;
}

void skipBlanks(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
}

bool skip(std::string_view& rest, char c) {
  if (!rest.starts_with(c)) return false;
  rest.remove_prefix(1);
  return true;
}

// RFC 9110, 5.6.2: takes a token off `rest`; empty when it begins with none.
std::string_view takeToken(std::string_view& rest) {
  constexpr std::string_view characters =
      "!#$%&'*+-.^_`|~0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const std::size_t length = std::min(rest.find_first_not_of(characters), rest.size());
  const std::string_view token = rest.substr(0, length);
  rest.remove_prefix(length);
  return token;
}

// RFC 9110, 5.6.4: takes the rest of a quoted string, after its opening quote; nothing when it is
// not closed.
std::optional<std::string> takeQuoted(std::string_view& rest) {
  std::string text;
  while (!rest.empty()) {
    if (skip(rest, '"')) return text;
    skip(rest, '\\');
    if (rest.empty()) break;
    text += rest.front();
    rest.remove_prefix(1);
  }
  return std::nullopt;
}

// RFC 8187, 3.2: charset'language'percent-encoded. Nothing when it is malformed or in another
// charset than the two that every recipient knows.
std::optional<std::string> extendedValue(std::string_view value) {
  const std::size_t language = value.find('\'');
  const std::size_t encoded = value.find('\'', std::min(language, value.size() - 1) + 1);
  if (encoded == std::string_view::npos) return std::nullopt;
  std::optional<std::string> bytes = percentDecoded(value.substr(encoded + 1));
  const std::string_view charset = value.substr(0, language);
  if (!bytes || bytes->empty()) return std::nullopt;
  if (equalIgnoringCase(charset, "UTF-8") && isUTF8(*bytes)) return bytes;
  if (equalIgnoringCase(charset, "ISO-8859-1")) return fromISO88591(*bytes);
  return std::nullopt;
}

// RFC 6266, 4.3: of a parameter that is given twice the first counts, and filename* before
// filename. A malformed parameter is passed over.
std::optional<std::string> dispositionFilename(std::string_view header) {
  std::optional<std::string> plain;
  std::optional<std::string> extended;
  skipBlanks(header);
  if (takeToken(header).empty()) return std::nullopt;  // no disposition type
  for (std::size_t next = 0; (next = header.find(';')) != std::string_view::npos;) {
    header.remove_prefix(next + 1);
    skipBlanks(header);
    const std::string_view name = takeToken(header);
    skipBlanks(header);
    if (!skip(header, '=')) continue;
    skipBlanks(header);
    const std::optional<std::string> value =
        skip(header, '"') ? takeQuoted(header) : std::string(takeToken(header));
    skipBlanks(header);
    if (!value || value->empty() || !(header.empty() || header.starts_with(';'))) continue;
    if (equalIgnoringCase(name, "filename") && !plain) plain = value;
    if (equalIgnoringCase(name, "filename*") && !extended) extended = extendedValue(*value);
  }
  return extended ? extended : plain;
}

// Empty when `raw` holds no name.
std::string safeName(std::string_view raw) {
  const std::string text = isUTF8(raw) ? std::string(raw) : fromISO88591(raw);
  std::string name;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t start = i;
    UChar32 codePoint = 0;
    U8_NEXT_UNSAFE(text.data(), i, codePoint);
    const bool unsafe = codePoint == '/' || u_charType(codePoint) == U_CONTROL_CHAR;
    name += unsafe ? "_" : text.substr(start, i - start);
  }
  return name == "." || name == ".." ? "" : name;
}

std::string partOf(const std::string& url, CURLUPart part) {
  const std::unique_ptr<CURLU, void (*)(CURLU*)> parsed(curl_url(), curl_url_cleanup);
  char* text = nullptr;
  if (curl_url_set(parsed.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK ||
      curl_url_get(parsed.get(), part, &text, 0) != CURLUE_OK) {
    return "";
  }
  const std::unique_ptr<char, void (*)(void*)> owned(text, curl_free);
  return text;
}

std::string lastPathComponent(const std::string& url) {
  std::string path = partOf(url, CURLUPART_PATH);
  path.erase(path.find_last_not_of('/') + 1);
  const std::string component = path.substr(path.find_last_of('/') + 1);
  return percentDecoded(component).value_or(component);
}

}  // namespace

std::string suggestedFilename(std::optional<std::string_view> contentDisposition,
                              const std::string& url) {
  std::string name;
  if (contentDisposition) name = safeName(dispositionFilename(*contentDisposition).value_or(""));
  if (name.empty()) name = safeName(lastPathComponent(url));
  if (name.empty()) name = safeName(partOf(url, CURLUPART_HOST));
  return name.empty() ? "unknown" : name;
}

}  // namespace morvelune
