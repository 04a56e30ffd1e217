// Findings: what keeps a push from becoming what its sender meant, or may do so.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace morvelune::tool {

// With an error, devices or the older ones among them do not do what was meant; with a warning,
// that depends on more than the payload.
enum class Severity : std::uint8_t { error, warning };

// A kind of finding. Its name never changes; its message, one sentence, says what will happen and
// what to do, with "%@" in the place of each detail.
struct FindingCode {
  std::string_view name;
  Severity severity;
  std::string_view message;
};

struct Finding {
  const FindingCode* code;  // one of those below
  std::string path;         // in the payload, such as "mvl-atts[2].att-url"; "." is all of it
  std::string message;
};

// Of each code the first ones, and how many more there are.
class Findings {
 public:
  static constexpr std::size_t mostOfACode = 50;

  // Keeps the finding, or only counts it. Its code must be one of those below.
  void add(Finding finding) {
    std::size_t& count = countOf_[finding.code];
    ++(finding.code->severity == Severity::error ? errors_ : warnings_);
    if (++count <= mostOfACode) kept_.push_back(std::move(finding));
  }

  // Those that were kept, in the order in which they were found.
  [[nodiscard]] const std::vector<Finding>& kept() const { return kept_; }
  // How many of each code were only counted, by name.
  [[nodiscard]] std::map<std::string_view, std::size_t> more() const {
    std::map<std::string_view, std::size_t> more;
    for (const auto& [code, count] : countOf_) {
      if (count > mostOfACode) more.emplace(code->name, count - mostOfACode);
    }
    return more;
  }
  // How many there are in all.
  [[nodiscard]] std::size_t errors() const { return errors_; }
  [[nodiscard]] std::size_t warnings() const { return warnings_; }

 private:
  std::vector<Finding> kept_;
  std::map<const FindingCode*, std::size_t> countOf_;
  std::size_t errors_ = 0;
  std::size_t warnings_ = 0;
};

namespace codes {

inline constexpr FindingCode notRecognised{
    "not-recognised", Severity::error,
    "The extension hands a push without \"k2tid\" back as it came; add it, with any value."};
inline constexpr FindingCode payloadTooLarge{
    "payload-too-large", Severity::error,
    "The push service refuses these %@ bytes, white space included, because it carries at most "
    "%@; shorten the payload."};
inline constexpr FindingCode noMutableContent{
    "no-mutable-content", Severity::error,
    "The extension is never called unless this is the number 1; set it."};
inline constexpr FindingCode noAlert{
    "no-alert", Severity::error,
    "The extension is called only for a push that shows a text; give a title, subtitle or body."};
inline constexpr FindingCode wrongType{
    "wrong-type", Severity::error,
    "It counts as missing, because it is %@ in the place of %@; change its type."};

inline constexpr FindingCode trackingNoUrl{"tracking-no-url", Severity::error,
                                           "There is no valid display tracking address: %@."};
inline constexpr FindingCode actionNoUrl{"action-no-url", Severity::warning,
                                         "This action has no valid tracking address: %@."};
inline constexpr FindingCode tagUnfilled{"tag-unfilled", Severity::warning,
                                         "The tag \"%@\" is sent as it stands%@, because %@."};

inline constexpr FindingCode attachmentNoUrl{
    "attachment-no-url", Severity::error,
    "This attachment has no address and is never shown; give it that of its media file."};
inline constexpr FindingCode attachmentBadUrl{
    "attachment-bad-url", Severity::error,
    "The address is no valid URL, so older systems never show the attachment and newer ones encode "
    "the address; percent-encode blanks, quotes, bars, brackets and whatever is not ASCII."};
inline constexpr FindingCode attachmentScheme{
    "attachment-scheme", Severity::error,
    "Only http and https are fetched and the attachment is never shown; write an address that "
    "begins with https://."};
inline constexpr FindingCode attachmentPlainHttp{
    "attachment-plain-http", Severity::warning,
    "A device refuses plain http unless the app allows it; serve the file over https."};
inline constexpr FindingCode attachmentIdSlash{
    "attachment-id-slash", Severity::error,
    "The file cannot be staged under an identifier with a \"/\" and is never shown; leave it out."};
inline constexpr FindingCode attachmentIdZero{
    "attachment-id-zero", Severity::error,
    "The file cannot be staged under an identifier with U+0000 and is never shown; leave it out."};
inline constexpr FindingCode attachmentIdLong{
    "attachment-id-long", Severity::error,
    "The file may not be staged under an identifier of %@ bytes and is then never shown; use at "
    "most %@."};
inline constexpr FindingCode attachmentIdMissing{
    "attachment-id-missing", Severity::warning,
    "Attachments are shown in the order of their identifiers; give this one an identifier, too."};
inline constexpr FindingCode attachmentIdRepeated{
    "attachment-id-repeated", Severity::warning,
    "An earlier attachment is \"%@\", too, and which of them comes first is open; give each its "
    "own identifier."};
inline constexpr FindingCode extensionUnknown{
    "extension-unknown", Severity::warning,
    "The file name \"%@\" tells no type, so the file is shown only if its content or the server's "
    "answer does; end it in a known extension, such as .png."};
inline constexpr FindingCode extensionCase{
    "extension-case", Severity::warning,
    "The extension of \"%@\" is known in lower case only, so the file is shown only if its content "
    "or the server's answer tells its type; write it in lower case."};

inline constexpr FindingCode buttonNoBid{
    "button-no-bid", Severity::error,
    "A tap on this button is never known as such; give it an identifier."};
inline constexpr FindingCode buttonBidRepeated{
    "button-bid-repeated", Severity::warning,
    "An earlier button is \"%@\", too, and a tap on either counts as a tap on that one; give each "
    "its own identifier."};
inline constexpr FindingCode buttonBidReserved{
    "button-bid-reserved", Severity::warning,
    "A tap is never taken for this button, because \"%@\" is an action of the system; choose "
    "another identifier."};

}  // namespace codes
}  // namespace morvelune::tool
