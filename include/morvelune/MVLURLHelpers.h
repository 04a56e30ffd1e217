// MVLURLHelpers: fills the tags of URL templates.
//
//   MVLURLHelpers::filledURL("https://t.example/?d=|idfv|&u=|uid|", Dictionary{{"uid", "7"}});
//
// A tag is a parameter's name between two bars, |name|, or between two encoded bars, each of them
// %7c or %7C. It is found without regard to case. Stateless; callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/Text.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

class MORVELUNE_API MVLURLHelpers {
 public:
  MVLURLHelpers() = delete;

  // `url` with the first occurrence of each parameter's tag replaced by the parameter's value,
  // inserted as it stands. `parameters` are laid over the common ones and win. An integer is
  // inserted with all its digits. Another number is inserted with 15 significant digits, or with 16
  // or 17 when fewer do not read back as the same number, and without trailing zeros (7, 2.5,
  // 1e+300). A boolean is inserted as 1 or 0; a parameter of any other type counts as missing. The
  // value kMVLNullValue blanks its tag, or, with `allParamsRequired`, makes the whole result
  // nothing if the tag occurs. Tags of no parameter stay as they are. Nothing for an absent
  // template.
  //
  // Keys are visited in no promised order; a value that holds another key's tag may or may not be
  // filled in turn. The time grows with the length of all that is given. Two things cost more. Keys
  // that hold a delimiter themselves may be compared whole at each delimiter, once per length that
  // such keys have. A value that holds a bar and is put in for an encoded tag has all read again;
  // where keys hold bars, any value that is put in for an encoded tag has.
  [[nodiscard]] static std::optional<std::string> filledURL(
      std::optional<std::string_view> url, const std::optional<Dictionary>& parameters,
      bool allParamsRequired);
  // The same with `allParamsRequired` off.
  [[nodiscard]] static std::optional<std::string> filledURL(
      std::optional<std::string_view> url, const std::optional<Dictionary>& parameters);
  // The same with the common parameters only.
  [[nodiscard]] static std::optional<std::string> filledURL(std::optional<std::string_view> url);

  // Where the tag stands in the string, delimiters included, as a range of its bytes; the plain
  // form is looked for first, wherever an encoded one stands. NSNotFound when there is none.
  [[nodiscard]] static NSRange rangeOfTag(std::string_view tag, std::string_view inString);

  // What every template may use, read afresh on each call. Seven strings, always all there:
  //   "idfv"      the device's identifier for the vendor, or ""
  //   "uid", "idMember"  always ""
  //   "s"         the main screen's width and height in whole points, "375,812", or "0,0"
  //   "o"         "portrait" or "landscape", the latter also when unknown
  //   "country"   the country code of the user's locale, or ""
  //   "lang"      the user's first language, or ""
  [[nodiscard]] static Dictionary commonURLParameters();
};

}  // namespace morvelune
