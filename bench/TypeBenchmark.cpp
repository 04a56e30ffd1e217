// The type of a file that has none of the signatures, beside a bare loop over them, and beside
// libmagic where that is installed.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string_view>
#include <vector>

#include "detection/MediaTypes.h"

#ifdef HAS_LIBMAGIC
#include <magic.h>
#endif

namespace morvelune {
namespace {

constexpr std::string_view header = "0123456789abcdef";

void typeOfContent(benchmark::State& state) {
  const Data data = Data::copyOf(header);
  for (auto _ : state) benchmark::DoNotOptimize(detection::typeOfContent(data));
}
BENCHMARK(typeOfContent);

void typeByLoop(benchmark::State& state) {
  std::vector<detection::Signature> signatures;
  for (const auto& type : detection::mediaTypes()) {
    for (const auto& each : type.signatures) {
      if (!each.bytes.empty()) signatures.push_back(each);
    }
  }
  for (auto _ : state) {
    const char* text = header.data();
    benchmark::DoNotOptimize(text);
    bool found = false;
    for (const auto& [bytes, offset] : signatures) {
      found |= std::memcmp(text + offset, bytes.data(), bytes.size()) == 0;
    }
    benchmark::DoNotOptimize(found);
  }
}
BENCHMARK(typeByLoop);

#ifdef HAS_LIBMAGIC
void typeByLibmagic(benchmark::State& state) {
  const magic_t magic = magic_open(MAGIC_MIME_TYPE);
  if (magic_load(magic, nullptr) != 0) state.SkipWithError(magic_error(magic));
  for (auto _ : state) {
    benchmark::DoNotOptimize(magic_buffer(magic, header.data(), header.size()));
  }
  magic_close(magic);
}
BENCHMARK(typeByLibmagic);
#endif

}  // namespace
}  // namespace morvelune
