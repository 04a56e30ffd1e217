// Filling a template beside a plain loop: find each parameter's tag, replace it. The loop knows one
// spelling and no case, and its parameters stand in the order of their tags, so that it never looks
// far. It is measured with the given parameters alone, and with the common ones under them, which
// filledURL looks for too, but merged beforehand.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "morvelune/MVLURLHelpers.h"

namespace morvelune {
namespace {

struct Sample {
  std::string url;
  Dictionary parameters;
};

// A template of about so many bytes in which each of the parameters has its tag.
Sample sample(std::size_t bytes, std::size_t parameters, std::string_view bar) {
  Sample made{"https://t.example/seen?", {}};
  std::vector<Dictionary::Entry> entries;
  for (std::size_t i = 0; i < parameters; ++i) {
    const std::string key = std::string("k").append(std::to_string(10000 + i));
    made.url.append("&").append(key).append("=").append(bar).append(key).append(bar);
    const std::size_t share = bytes * (i + 1) / parameters;
    if (made.url.size() < share) made.url.append(share - made.url.size(), 'x');
    entries.push_back({key, std::string("value").append(std::to_string(i))});
  }
  made.parameters = Dictionary(std::move(entries));
  return made;
}

std::string loop(std::string filled, const Dictionary& parameters) {
  for (const auto& [key, value] : parameters) {
    const std::string tag = '|' + key + '|';
    const std::size_t at = filled.find(tag);
    if (at != std::string::npos) filled.replace(at, tag.size(), *value.stringView());
  }
  return filled;
}

void findAndReplace(benchmark::State& state, bool withCommon) {
  const Sample given = sample(state.range(0), state.range(1), "|");
  const Dictionary parameters =
      withCommon ? MVLURLHelpers::commonURLParameters().with(given.parameters) : given.parameters;
  for (auto _ : state) benchmark::DoNotOptimize(loop(given.url, parameters));
}

void filledURL(benchmark::State& state, std::string_view bar) {
  const Sample given = sample(state.range(0), state.range(1), bar);
  if (bar == "|" &&
      MVLURLHelpers::filledURL(given.url, given.parameters) != loop(given.url, given.parameters)) {
    state.SkipWithError("not what the loop gives");
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(MVLURLHelpers::filledURL(given.url, given.parameters));
  }
}

// Bytes of the template, number of parameters: as they come, then growing in one of the two.
void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Args({300, 15})->Args({4096, 150})->Args({30000, 1000});
}
void growing(benchmark::internal::Benchmark* benchmark) {
  for (const int bytes : {1000, 3000, 10000, 30000, 100000}) benchmark->Args({bytes, 15});
  for (const int parameters : {1, 10, 100, 300}) benchmark->Args({30000, parameters});
}
BENCHMARK_CAPTURE(findAndReplace, given, false)->Apply(sizes);
BENCHMARK_CAPTURE(findAndReplace, withCommon, true)->Apply(sizes)->Apply(growing);
BENCHMARK_CAPTURE(filledURL, bars, "|")->Apply(sizes)->Apply(growing);
BENCHMARK_CAPTURE(filledURL, encoded, "%7C")->Apply(sizes);

}  // namespace
}  // namespace morvelune
