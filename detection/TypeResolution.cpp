#include "detection/TypeResolution.h"

#include "detection/SignatureTable.h"
#include "morvelune/platform/Path.h"
#include "morvelune/platform/Platform.h"

namespace morvelune::detection {

std::optional<std::string> typeOfContent(const std::optional<Data>& data) {
  if (!data || data->size() < headerSize) return std::nullopt;
  const auto type = typeOfHeader(data->bytes().first<headerSize>());
  return type ? std::optional<std::string>(*type) : std::nullopt;
}

std::optional<std::string> typeOfFilename(const std::optional<std::string>& filename) {
  const std::string extension = pathExtension(filename.value_or(""));
  if (extension.empty()) return std::nullopt;
  auto type = extensionMap().string(extension);
  Platform::current()->systemLog->log("Try to find UTI using file extension [%@]. Result: [%@]",
                                      {extension, type});
  return type;
}

const Dictionary& extensionMap() {
  // Never destroyed, so that completions may still use it while the process ends.
  static const Dictionary& map = *new Dictionary{
      {"aiff", "public.aiff-audio"},
      {"aif", "public.aiff-audio"},
      {"wave", "com.microsoft.waveform-audio"},
      {"wav", "com.microsoft.waveform-audio"},
      {"mp3", "public.mp3"},
      {"m4a", "public.mpeg-4-audio"},
      {"jpeg", "public.jpeg"},
      {"jpg", "public.jpeg"},
      {"gif", "com.compuserve.gif"},
      {"png", "public.png"},
      {"mpg", "public.mpeg"},
      {"mpeg", "public.mpeg"},
      {"m75", "public.mpeg"},
      {"m15", "public.mpeg"},
      {"mp4", "public.mpeg-4"},
      {"mpg4", "public.mpeg-4"},
      {"avi", "public.avi"},
      {"vfw", "public.avi"},
  };
  return map;
}

}  // namespace morvelune::detection
