// What the tool's exit status tells its caller.
#pragma once

namespace morvelune::tool {

inline constexpr int exitSuccess = 0;
// Input cannot be read, or the report cannot be written.
inline constexpr int exitFailed = 1;
// Wrong usage.
inline constexpr int exitUsage = 2;
// An inspected push has errors or, with --strict, warnings. A delivery only with --strict: a
// request failed or was still pending, or an attachment was refused.
inline constexpr int exitFaulty = 3;

}  // namespace morvelune::tool
