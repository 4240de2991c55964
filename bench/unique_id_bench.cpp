// The identifier generator on a space cut into a million free ranges, side by side with a literal
// reference that keeps the ranges in a list and walks it from the front, as the operations are
// defined ("the first range whose last is at least n"). Both start from the same ranges: every odd
// identifier up to 2,000,000 is free on its own, and everything above. Each operation works in
// the middle of the fragmented part; the iteration counts are fixed, so that every iteration
// finds the ranges it needs (and the slow reference finishes).
#include <benchmark/benchmark.h>

#include <list>

#include "eUniqueIDGenerator.h"
#include "list_id_generator.h"

namespace {

constexpr unsigned int kFragments = 1000000;      // free ranges [1,1], [3,3], ...
constexpr unsigned int kMiddle = kFragments + 1;  // an odd identifier halfway up
constexpr int kFastIterations = 200000;           // at most a fifth of the free ranges
constexpr int kLiteralIterations = 40;

// The reference with the same ranges.
struct LiteralGenerator : ListGenerator {
  LiteralGenerator() : ListGenerator(FragmentedRanges(), 0) {}

  static std::list<Range> FragmentedRanges() {
    std::list<Range> ranges;
    for (unsigned int id = 1; id < 2 * kFragments; id += 2)
      ranges.emplace_back(id, id);
    ranges.emplace_back(2 * kFragments + 1, EUniqueIDGenerator::MaxIDValue);
    return ranges;
  }
};

// The library's generator with the same ranges.
struct FastGenerator : EUniqueIDGenerator {
  FastGenerator() {
    for (unsigned int id = 2; id <= 2 * kFragments; id += 2)
      ReserveID(id);
  }
};

void PerOperation(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations());
}

// Hands out the free identifiers above the middle one by one.
template <typename Generator>
void ReserveNewID(benchmark::State& state) {
  Generator generator;
  generator.ReserveID(kMiddle);
  for (auto _ : state)
    benchmark::DoNotOptimize(generator.ReserveNewID());
  PerOperation(state);
}

// Takes the free identifiers above the middle one by one.
template <typename Generator>
void ReserveID(benchmark::State& state) {
  Generator generator;
  unsigned int id = kMiddle;
  for (auto _ : state) {
    benchmark::DoNotOptimize(generator.ReserveID(id));
    id += 2;
  }
  PerOperation(state);
}

// Releases the identifiers in use above the middle one by one, each joining two ranges.
template <typename Generator>
void UnReserveID(benchmark::State& state) {
  Generator generator;
  unsigned int id = kMiddle + 1;
  for (auto _ : state) {
    generator.UnReserveID(id);
    id += 2;
  }
  benchmark::DoNotOptimize(generator.ReserveNewID());
  PerOperation(state);
}

BENCHMARK_TEMPLATE(ReserveNewID, FastGenerator)->Iterations(kFastIterations);
BENCHMARK_TEMPLATE(ReserveNewID, LiteralGenerator)->Iterations(kLiteralIterations);
BENCHMARK_TEMPLATE(ReserveID, FastGenerator)->Iterations(kFastIterations);
BENCHMARK_TEMPLATE(ReserveID, LiteralGenerator)->Iterations(kLiteralIterations);
BENCHMARK_TEMPLATE(UnReserveID, FastGenerator)->Iterations(kFastIterations);
BENCHMARK_TEMPLATE(UnReserveID, LiteralGenerator)->Iterations(kLiteralIterations);

}  // namespace
