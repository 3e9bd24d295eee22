// The command line of zib-bench; script/bench and script/check-performance are the front doors.

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iomanip>
#include <iostream>

#include "Benchmarks/Comparison.h"
#include "Benchmarks/Device.h"
#include "Benchmarks/Growth.h"
#include "Benchmarks/Sink.h"
#include "Benchmarks/Table.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace {

using bench::Case;
using bench::Sample;

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// The samples of the sides, taken in turns: what disturbs the machine then disturbs both, and the
// median of the ratios of neighbours stays.
struct Series {
  std::vector<double> floor;
  std::vector<double> ours;
  std::vector<double> beside;
  std::vector<double> ratios;
  Sample lastFloor;
  Sample lastOurs;

  void add(const Sample& ofFloor, const Sample& ofOurs) {
    floor.push_back(ofFloor.nanoseconds);
    ours.push_back(ofOurs.nanoseconds);
    ratios.push_back(ofOurs.nanoseconds / ofFloor.nanoseconds);
    lastFloor = ofFloor;
    lastOurs = ofOurs;
  }
};

void report(benchmark::State& state, const Series& series, double target) {
  auto& counters = state.counters;
  counters["floor_ns"] = median(series.floor);
  counters["ours_ns"] = median(series.ours);
  counters["ratio"] = median(series.ratios);
  if (target > 0) counters["target"] = target;
  counters["floor_allocations"] = series.lastFloor.allocations;
  counters["ours_allocations"] = series.lastOurs.allocations;
  if (series.lastFloor.allocations > 0) {
    counters["allocations_ratio"] = series.lastOurs.allocations / series.lastFloor.allocations;
  }
  counters["floor_bytes"] = series.lastFloor.bytes;
  counters["ours_bytes"] = series.lastOurs.bytes;
  if (!series.beside.empty()) counters["beside_ns"] = median(series.beside);
}

template <class TakeFloor, class TakeOurs>
void addPair(Series& series, bool oursFirst, TakeFloor takeFloor, TakeOurs takeOurs) {
  if (oursFirst) {
    const Sample ours = takeOurs();
    series.add(takeFloor(), ours);
  } else {
    const Sample floor = takeFloor();
    series.add(floor, takeOurs());
  }
}

void compare(benchmark::State& state, const Case& measured) {
  bench::configureBoth();
  if (measured.setUp) measured.setUp();
  bench::measure(measured.floor, bench::warmUpCalls);
  bench::measure(measured.ours, bench::warmUpCalls);
  Series series;
  bool oursFirst = false;
  for (auto _ : state) {
    addPair(
        series, oursFirst, [&] { return bench::measure(measured.floor, bench::batchCalls); },
        [&] { return bench::measure(measured.ours, bench::batchCalls); });
    oursFirst = !oursFirst;
    if (measured.beside) {
      series.beside.push_back(bench::measure(measured.beside, bench::batchCalls).nanoseconds);
    }
  }
  if (measured.tearDown) measured.tearDown();
  report(state, series, measured.target);
  state.SetLabel(std::string(measured.besideName));
}

void compareConfigure(benchmark::State& state) {
  Series series;
  bool oursFirst = false;
  for (auto _ : state) {
    addPair(
        series, oursFirst,
        [] { return bench::measureConfigure(bench::hosts().floor, &bench::configureFloor); },
        [] { return bench::measureConfigure(bench::hosts().intercepted, &bench::configureOurs); });
    oursFirst = !oursFirst;
  }
  report(state, series, bench::configureTarget);
}

// The start comes first, while nothing in this process has been configured that a fork would
// inherit.
void registerBenchmarks() {
  constexpr int starts = 200;
  benchmark::RegisterBenchmark(std::string(bench::configureCase).c_str(), &compareConfigure)
      ->Iterations(starts);
  for (const Case& each : bench::cases()) {
    benchmark::RegisterBenchmark(each.name.c_str(),
                                 [&each](benchmark::State& state) { compare(state, each); });
  }
}

void compareAll(std::vector<std::string> arguments, bool asJSON) {
  std::vector<char*> raw;
  arguments.insert(arguments.begin(), "zib-bench");
  for (std::string& argument : arguments) raw.push_back(argument.data());
  int count = static_cast<int>(raw.size());
  benchmark::Initialize(&count, raw.data());
  registerBenchmarks();
  benchmark::JSONReporter json;
  bench::Table table;
  benchmark::RunSpecifiedBenchmarks(asJSON ? static_cast<benchmark::BenchmarkReporter*>(&json)
                                           : &table);
}

// One line for each case: what a call allocates. Under callgrind, each case's instructions go into
// a file of its own.
void count(const std::string& name, const std::function<void()>& call, int calls) {
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  const Sample sample = bench::measure(call, calls);
  CALLGRIND_DUMP_STATS_AT(name.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
  std::cout << std::fixed << std::setprecision(0) << name << '\t' << calls << '\t'
            << sample.allocations * calls << '\t' << sample.bytes * calls << '\n';
}

void countAll() {
  bench::configureBoth();
  constexpr int calls = 100;
  for (const Case& each : bench::cases()) {
    if (each.setUp) each.setUp();
    bench::measure(each.ours, bench::warmUpCalls);
    count(each.name, each.ours, calls);
    if (each.tearDown) each.tearDown();
  }
}

void countConfigure() {
  bench::setDelegate(bench::hosts().intercepted);
  count(std::string(bench::configureCase), &bench::configureOurs, 1);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("What the module's callbacks cost, beside the least that they could cost");
  app.allow_extras();
  bool asJSON = false;
  bool growth = false;
  bool counts = false;
  bool countsConfigure = false;
  bool plants = false;
  app.add_flag("--json", asJSON, "The comparison for machines");
  app.add_flag("--growth", growth, "How costs and memory grow instead");
  app.add_flag("--count", counts, "What a call of each case allocates instead");
  app.add_flag("--count-configure", countsConfigure, "The same of the first configure()");
  app.add_flag("--plant-allocation", plants, "One allocation more for each log line");
  CLI11_PARSE(app, argc, argv);

  bench::setUpDevice();
  bench::installSink();
  const zib::AutoreleasePool pool;
  if (plants) bench::plantAllocation();
  if (counts) {
    countAll();
  } else if (countsConfigure) {
    countConfigure();
  } else if (growth) {
    bench::printGrowth();
  } else {
    compareAll(app.remaining(), asJSON);
  }
  return 0;
}
