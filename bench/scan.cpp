// What a scan costs by the size of the machine: each benchmark runs with 10,000 and 100,000 of one
// thing, and the larger may take about ten times as long. Build with -DORBEX_BENCH=ON.

#include <benchmark/benchmark.h>

#include "collect/plistToTags.h"
#include "keva/HUXfile.h"
#include "postprocess/pipeline.h"
#include "profiles.h"
#include "support/fakeHost.h"

namespace {

using MakeProfile = std::string (*)(int count);

void convert(FakeHost& host, const std::string& profile, kevaDoc& raw) {
  const auto list = host.parsePropertyList(profile);
  convertProfile(host, *list, raw);
}

void parseProfile(benchmark::State& state, MakeProfile make) {
  const std::string profile = make(static_cast<int>(state.range(0)));
  FakeHost host;
  for (auto _ : state) benchmark::DoNotOptimize(host.parsePropertyList(profile));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(profile.size()));
}

void convertToTags(benchmark::State& state, MakeProfile make) {
  const std::string profile = make(static_cast<int>(state.range(0)));
  FakeHost host;
  for (auto _ : state) {
    kevaDoc raw(true, "Macintosh");
    convert(host, profile, raw);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(profile.size()));
}

void postProcess(benchmark::State& state, MakeProfile make) {
  FakeHost host;
  kevaDoc raw(true, "Macintosh");
  convert(host, make(static_cast<int>(state.range(0))), raw);
  for (auto _ : state) {
    kevaDoc snapshot(true, "Snapshot");
    PostProcess(snapshot, raw, host, false);
  }
}

void wholeScan(benchmark::State& state, MakeProfile make) {
  const std::string profile = make(static_cast<int>(state.range(0)));
  FakeHost host;
  for (auto _ : state) {
    kevaDoc raw(true, "Macintosh");
    convert(host, profile, raw);
    auto snapshot = std::make_unique<kevaDoc>(true, "Snapshot");
    PostProcess(*snapshot, raw, host, false);
    HUXfile file(true);
    file.addDocument(std::move(snapshot), HUXfile::SectionType::Snapshot, false, true);
    benchmark::DoNotOptimize(file.buildImage(true));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(profile.size()));
}

void pack(benchmark::State& state, MakeProfile make) {
  FakeHost host;
  kevaDoc raw(true, "Macintosh");
  convert(host, make(static_cast<int>(state.range(0))), raw);
  for (auto _ : state) benchmark::DoNotOptimize(raw.pack(false, true));
}

constexpr int kSmall = 10000;
constexpr int kLarge = 100000;

#define ORBEX_BENCHMARK(function, profile)      \
  BENCHMARK_CAPTURE(function, profile, profile) \
      ->Arg(kSmall)                             \
      ->Arg(kLarge)                             \
      ->Unit(benchmark::kMillisecond)

ORBEX_BENCHMARK(parseProfile, applicationsProfile);
ORBEX_BENCHMARK(convertToTags, applicationsProfile);
ORBEX_BENCHMARK(postProcess, applicationsProfile);
ORBEX_BENCHMARK(pack, applicationsProfile);
ORBEX_BENCHMARK(wholeScan, applicationsProfile);
ORBEX_BENCHMARK(wholeScan, removableDisksProfile);
ORBEX_BENCHMARK(wholeScan, coreStorageProfile);
ORBEX_BENCHMARK(wholeScan, firewallProfile);

}  // namespace
