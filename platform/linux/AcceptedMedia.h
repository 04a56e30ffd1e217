// The media of which the simulated device makes attachments. A table of its own: what a device
// accepts and what the library recognises are two things, and one may change without the other.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace morvelune {

struct AcceptedMedia {
  std::string_view identifier;                 // Uniform Type Identifier
  std::int64_t sizeLimit;                      // in bytes
  std::array<std::string_view, 5> extensions;  // in lower case, "" where there are fewer
};

// The platform's documented limits, in bytes.
inline constexpr std::int64_t megabyte = 1 << 20;
inline constexpr std::int64_t audioLimit = 5 * megabyte;
inline constexpr std::int64_t imageLimit = 10 * megabyte;
inline constexpr std::int64_t movieLimit = 50 * megabyte;

inline constexpr AcceptedMedia acceptedMedia[] = {
    {"public.aiff-audio", audioLimit, {"aif", "aiff"}},
    {"com.microsoft.waveform-audio", audioLimit, {"wav", "wave"}},
    {"public.mp3", audioLimit, {"mp3"}},
    {"public.mpeg-4-audio", audioLimit, {"m4a"}},
    {"public.jpeg", imageLimit, {"jpg", "jpeg", "jpe"}},
    {"com.compuserve.gif", imageLimit, {"gif"}},
    {"public.png", imageLimit, {"png"}},
    {"public.mpeg", movieLimit, {"mpg", "mpeg", "mpe", "m75", "m15"}},
    {"public.mpeg-2-video", movieLimit, {"m2v"}},
    {"public.mpeg-4", movieLimit, {"mp4", "mpg4"}},
    {"public.avi", movieLimit, {"avi", "vfw"}},
};

}  // namespace morvelune
