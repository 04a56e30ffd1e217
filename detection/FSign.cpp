#include "morvelune/FSign.h"

namespace morvelune {

Dictionary FSign(const void* bytes, std::size_t length, std::size_t offset) {
  const std::string_view view(static_cast<const char*>(bytes), length);
  return Dictionary{{MVLUTIMapObjectDataKey, Data::copyOf(view)},
                    {MVLUTIMapObjectLengthKey, length},
                    {MVLUTIMapObjectOffsetKey, offset}};
}

}  // namespace morvelune
