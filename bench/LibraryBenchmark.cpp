// What the library itself costs per push, without the network.
#include <benchmark/benchmark.h>

#include <string>

#include "morvelune/MVLPushHelpers.h"
#include "morvelune/MVLURLHelpers.h"

namespace morvelune {
namespace {

void fillTemplate(benchmark::State& state, const std::string& url) {
  const Dictionary parameters{{"uid", "u-42"}, {"push", 4711}};
  for (auto _ : state) benchmark::DoNotOptimize(MVLURLHelpers::filledURL(url, parameters));
}
BENCHMARK_CAPTURE(fillTemplate, ascii, "https://t.example/seen?u=|uid|&d=|idfv|&s=|s|&p=|push|");
BENCHMARK_CAPTURE(fillTemplate, unicode, "https://t.example/été?u=|uid|&d=|idfv|&s=|s|&p=|push|");

void trackingURL(benchmark::State& state) {
  const Dictionary payload{{"mvl-tk", Dictionary{{"url", "https://t.example/seen"},
                                                 {"display", "d?u=|uid|&d=|idfv|"},
                                                 {"params", Dictionary{{"uid", "u-42"}}}}}};
  for (auto _ : state) {
    benchmark::DoNotOptimize(MVLPushHelpers::trackingURLForAction("display", payload));
  }
}
BENCHMARK(trackingURL);

}  // namespace
}  // namespace morvelune
