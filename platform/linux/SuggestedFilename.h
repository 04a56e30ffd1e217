// The file name that an answer suggests for its body.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace morvelune {

// The name in the answer's Content-Disposition header (RFC 6266), else the last path component of
// the URL that answered, percent-decoded, else its host, else "unknown". Always valid UTF-8 (bytes
// that are not are read as ISO-8859-1), neither empty nor "." nor "..", with '_' in place of each
// '/' and control character: a NUL would end a file's name early, and a line break or an escape
// sequence would act on the terminal or log that shows it. Its length is the server's choice, so
// that it may be too long for a file.
[[nodiscard]] std::string suggestedFilename(std::optional<std::string_view> contentDisposition,
                                            const std::string& url);

}  // namespace morvelune
