#include "util/WhiteSpace.h"

#include <algorithm>
#include <array>

namespace morvelune {
namespace {

// The property White_Space in Unicode's file PropList.txt, which no version since 6.3 has changed.
constexpr std::array<std::string_view, 25> whiteSpace{
    "\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\u0085", "\u00A0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

}  // namespace

std::string_view withoutLeadingWhiteSpace(std::string_view text) {
  for (;;) {
    const auto* const leading =
        std::find_if(whiteSpace.begin(), whiteSpace.end(),
                     [text](std::string_view each) { return text.starts_with(each); });
    if (leading == whiteSpace.end()) return text;
    text.remove_prefix(leading->size());
  }
}

}  // namespace morvelune
