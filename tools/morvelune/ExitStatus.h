// What the tool's exit status tells its caller.
#pragma once

namespace morvelune::tool {

inline constexpr int exitSuccess = 0;
// Input cannot be read, or the report cannot be written.
inline constexpr int exitFailed = 1;
inline constexpr int exitUsage = 2;
// An inspected push has findings that count. For a delivery only when asked to be strict: not all
// of it went as the payload wished.
inline constexpr int exitFaulty = 3;

}  // namespace morvelune::tool
