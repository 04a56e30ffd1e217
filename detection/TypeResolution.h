// Which Uniform Type Identifier a file has, by its content or else by its name.
#pragma once

#include <optional>
#include <string>

#include "morvelune/platform/Value.h"

namespace morvelune::detection {

// By the first 16 bytes; empty when no signature matches, when there are fewer, and without data.
[[nodiscard]] std::optional<std::string> typeOfContent(const std::optional<Data>& data);

// By the name's extension, in lower case only; the search is logged when there is an extension.
[[nodiscard]] std::optional<std::string> typeOfFilename(const std::optional<std::string>& filename);

// File-name extensions, in lower case and without a dot, to types. Built once.
[[nodiscard]] const Dictionary& extensionMap();

}  // namespace morvelune::detection
