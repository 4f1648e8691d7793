// What it costs to open a file, by the size of the machine in it: bare inflating is the measure for
// a snapshot, inflating and parsing all of it for a debug file.

#include <benchmark/benchmark.h>

#include "asset/assetInfo.h"
#include "collect/plistToTags.h"
#include "huxread/container.h"
#include "keva/HUXfile.h"
#include "machine/describe.h"
#include "postprocess/pipeline.h"
#include "profiles.h"
#include "support/fakeHost.h"

namespace {

std::string snapshotImage(int applications) {
  FakeHost host;
  kevaDoc raw(true, "Macintosh");
  convertProfile(host, *host.parsePropertyList(applicationsProfile(applications)), raw);
  auto snapshot = std::make_unique<kevaDoc>(true, "Snapshot");
  PostProcess(*snapshot, raw, host, false);
  auto asset = buildAssetInfo({}, *snapshot, true);
  HUXfile file(true);
  file.addDocument(std::move(snapshot), HUXfile::SectionType::Snapshot, false, true);
  file.addDocument(std::move(asset), HUXfile::SectionType::AssetInfo, false, true);
  return file.buildImage(true);
}

std::string debugImage(int applications) {
  HUXfile file(true);
  file.addDocument(buildDebugAssetInfo({}, true), HUXfile::SectionType::AssetInfo, false, true);
  file.addRawData(applicationsProfile(applications));
  return file.buildImage(true);
}

using MakeImage = std::string (*)(int applications);

// The section with the applications: 0 of a snapshot, 1 of a debug file.
void inflate(benchmark::State& state, MakeImage make, std::uint32_t section) {
  const auto file = huxread::Container::parse(make(static_cast<int>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(file->text(section));
}

void inflateAndParse(benchmark::State& state, MakeImage make, std::uint32_t section) {
  FakeHost host;
  const auto file = huxread::Container::parse(make(static_cast<int>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(host.parsePropertyList(*file->text(section)));
}

void describe(benchmark::State& state, MakeImage make) {
  FakeHost host;
  const auto file = huxread::Container::parse(make(static_cast<int>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(machine::describe(*file, host));
}

constexpr int kSmall = 10000;
constexpr int kLarge = 100000;

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(inflate, snapshot, snapshotImage, 0U)->Apply(sizes);
BENCHMARK_CAPTURE(describe, snapshot, snapshotImage)->Apply(sizes);
BENCHMARK_CAPTURE(inflate, debug, debugImage, 1U)->Apply(sizes);
BENCHMARK_CAPTURE(inflateAndParse, debug, debugImage, 1U)->Apply(sizes);
BENCHMARK_CAPTURE(describe, debug, debugImage)->Apply(sizes);

}  // namespace
