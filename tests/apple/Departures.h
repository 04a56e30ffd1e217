// The rules that do not hold on GNUstep, where the tests run. What needs one of them is skipped.
#pragma once

#include <set>
#include <string>

namespace morvelune::testing {

inline std::set<std::string> departures() {
  return {
      // GNUstep's own operations do otherwise than Apple's.
      "a bad escape gives nothing",
      "a match is whole, line ends included",
      "a refused move has an error of the Cocoa domain",
      "a second \"#\" or a zero byte makes no address",
      "an address is kept as it was written",
      "an empty text is not found",
      "an escaped zero byte is kept",
      "currencies have names",
      "decoding drops no character",
      "letters of several characters change case",
      "numbers of every size are read",
      "numbers of every size are written",
      // The platform's, on devices too: a search and a predicate take their time, and the locale is
      // the user's.
      "a long search ends in time",
      "matching gives up in time",
      "the locale is as the test says",
      // The platform's strings hold Unicode, so that bytes of another kind never come from them.
      "text that is no UTF-8 is read as U+FFFD",
  };
}

}  // namespace morvelune::testing
