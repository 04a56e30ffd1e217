// What the tool's exit status tells its caller.
#pragma once

namespace morvelune::tool {

inline constexpr int exitDelivered = 0;
// The payload cannot be read, or what was delivered cannot be written.
inline constexpr int exitFailed = 1;
inline constexpr int exitUsage = 2;
// Only when asked to be strict: delivered, but not all of it as the payload wished.
inline constexpr int exitIncomplete = 3;

}  // namespace morvelune::tool
