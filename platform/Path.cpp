#include "morvelune/platform/Path.h"

#include <algorithm>

namespace morvelune {

std::string stringByAppendingPathComponent(std::string_view receiver, std::string_view component) {
  std::string path(receiver);
  if (!path.empty()) path += '/';
  path += component;
  const auto bothSlashes = [](char left, char right) { return left == '/' && right == '/'; };
  path.erase(std::unique(path.begin(), path.end(), bothSlashes), path.end());
  if (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string pathExtension(std::string_view path) {
  path = path.substr(0, path.find_last_not_of('/') + 1);
  const std::string_view component = path.substr(path.find_last_of('/') + 1);
  const std::size_t dot = component.find_last_of('.');
  if (dot == std::string_view::npos || dot == 0) return "";
  const std::string_view extension = component.substr(dot + 1);
  return extension.find(' ') == std::string_view::npos ? std::string(extension) : "";
}

}  // namespace morvelune
