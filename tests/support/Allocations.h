// Counts what the program allocates with operator new. For tests that run one thread at a time.
#pragma once

#include <cstddef>

namespace morvelune::testing {

struct Allocations {
  std::size_t count = 0;      // made so far
  std::size_t bytes = 0;      // held now
  std::size_t peakBytes = 0;  // held at most
};

inline Allocations allocations;

}  // namespace morvelune::testing
