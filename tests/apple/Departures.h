// The rules that do not hold on the third platform. What needs one of them is skipped by its name.
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
      "an address is kept as it was written",
      "an empty text is not found",
      "an escaped zero byte is kept",
      "an observer lives while it is called",
      "currencies have names",
      "letters of several characters change case",
      "numbers of every size are read",
      "numbers of every size are written",
      "observers are called in the order in which they were added",
      // The platform's, on devices too: a centre knows objects by their address and lets no
      // exception of C++ pass, a predicate takes its time, and the locale is the user's.
      "an object is known by its owner",
      "an observer may throw",
      "matching gives up in time",
      "the locale is as the test says",
      // The platform's strings hold Unicode, so that bytes of another kind never come from them.
      "text that is no UTF-8 is read as U+FFFD",
  };
}

}  // namespace morvelune::testing
