// TemplateFiller: fills the tags of URL templates with one set of parameters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "morvelune/platform/Value.h"

namespace morvelune {

// May be shared by threads.
//
// Filling visits the parameters in an order that it finds as it goes: a tag is filled as soon as it
// is read to its end, the plain ones in a first pass and the encoded ones in a second. Parameters
// whose tag never stood there count as visited last. Within one name, that differs in case only,
// the given parameters come before the common ones.
//
// The time grows with the length of the template, of the parameters and of their values, times
// looksPerByte() at most. That is 1 unless parameters' own names hold a delimiter or their values
// a bar.
class TemplateFiller {
 public:
  // The given parameters, laid over the common ones. What is no text, number or boolean counts as
  // missing.
  explicit TemplateFiller(const Dictionary& parameters);

  // As MVLURLHelpers::filledURL. The device is asked for the common parameters that the template
  // names, each time.
  [[nodiscard]] std::optional<std::string> filled(std::string_view url,
                                                  bool allParamsRequired) const;

  // How many bytes are looked at, at most, for each byte that is read. A name that holds a
  // delimiter may be compared whole at each delimiter, once for all such names of one length. And
  // all is read again when a value with a bar is put in for an encoded tag; for any value, when a
  // name has one. The values of the common parameters are not counted.
  [[nodiscard]] std::size_t looksPerByte() const;

 private:
  class Filling;

  // A given parameter, by its name as the search reads it.
  struct Named {
    std::uint64_t beginning;  // of the name, for quick comparison
    std::string_view folded;
    const Dictionary::Entry* entry;
  };

  // Below 0 when the parameter stands before that name, 0 when it has it. By length, then by bytes;
  // the name may be folded or ASCII in any case.
  static int compare(const Named& left, std::uint64_t beginning, std::string_view name);

  [[nodiscard]] bool doNamesHoldBar() const;
  [[nodiscard]] bool isGiven(std::string_view key) const;

  const Dictionary parameters_;
  std::list<std::string> foldedKeys_;  // those that are no part of the parameters
  std::vector<Named> named_;           // in the order of compare()
  // For each delimiter, the lengths of the names that hold it, ascending.
  std::vector<std::vector<std::size_t>> lengthsAcross_;
};

}  // namespace morvelune
