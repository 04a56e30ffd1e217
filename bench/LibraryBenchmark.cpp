// What the library itself costs per push, without the network.
#include <benchmark/benchmark.h>

#include <string>

#include "detection/MediaTypes.h"
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

// The last row of the table, and none.
void typeOfContent(benchmark::State& state, const std::string& bytes) {
  const Data data = Data::copyOf(bytes);
  for (auto _ : state) benchmark::DoNotOptimize(detection::typeOfContent(data));
}
BENCHMARK_CAPTURE(typeOfContent, avi, "RIFF....AVI LIST");
BENCHMARK_CAPTURE(typeOfContent, unknown, "0123456789abcdef");

}  // namespace
}  // namespace morvelune
