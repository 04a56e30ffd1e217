// parse_lines: reads a JSON text a line from standard input, parses each and says how many it
// could. What "morvelune inspect --jsonl" is measured beside.
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

int main() {
  std::ios::sync_with_stdio(false);
  std::size_t parsed = 0;
  for (std::string line; std::getline(std::cin, line);) {
    parsed += nlohmann::json::parse(line, nullptr, false).is_discarded() ? 0 : 1;
  }
  std::cout << parsed << '\n';
}
