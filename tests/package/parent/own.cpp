// The parent's own code, in its own standard and with a warning that is none of the library's.
#include <iostream>
#include <string>

static_assert(__cplusplus == 201703L);

std::string digestOfNothing();

int main() {
  int unused;
  std::cout << digestOfNothing() << '\n';
}
