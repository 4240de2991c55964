// The identifier generator on a space cut into a million free ranges, side by side with a literal
// reference that keeps the ranges in a list and walks it from the front, as the operations are
// defined ("the first range whose last is at least n"). Both start from the same ranges: every odd
// identifier up to 2,000,000 is free on its own, and everything above. Each operation works in
// the middle of the fragmented part; the iteration counts are fixed, so that every iteration
// finds the ranges it needs (and the slow reference finishes).
#include <benchmark/benchmark.h>

#include <iterator>
#include <list>

#include "eUniqueIDGenerator.h"

namespace {

constexpr unsigned int kFragments = 1000000;      // free ranges [1,1], [3,3], ...
constexpr unsigned int kMiddle = kFragments + 1;  // an odd identifier halfway up
constexpr int kFastIterations = 200000;           // at most a fifth of the free ranges
constexpr int kLiteralIterations = 40;

// The reference: the operations as a walk over a list of ranges.
class ListGenerator {
 public:
  using Range = EUniqueIDGenerator::IDRange;

  ListGenerator() {
    for (unsigned int id = 1; id < 2 * kFragments; id += 2)
      m_Ranges.emplace_back(id, id);
    m_Ranges.emplace_back(2 * kFragments + 1, EUniqueIDGenerator::MaxIDValue);
  }

  unsigned int ReserveNewID() {
    const unsigned int candidate = m_Last == EUniqueIDGenerator::MaxIDValue ? 1 : m_Last + 1;
    m_Last = 0;
    if (m_Ranges.empty()) return 0;
    auto range = FirstEndingAtOrAbove(candidate);
    const bool wrapped = range == m_Ranges.end();
    if (wrapped) range = m_Ranges.begin();
    const unsigned int id = !wrapped && candidate > range->first ? candidate : range->first;
    Take(range, id);
    m_Last = id;
    return id;
  }

  bool ReserveID(unsigned int id) {
    if (m_Ranges.empty()) return false;
    const auto range = FirstEndingAtOrAbove(id);
    if (range == m_Ranges.end() || range->first > id) return false;
    Take(range, id);
    m_Last = id;
    return true;
  }

  void UnReserveID(unsigned int id) {
    if (id == 0 || m_Ranges.empty()) return;
    const auto range = FirstEndingAtOrAbove(id - 1);
    if (range == m_Ranges.end()) return;
    if (range->last == id - 1) {
      range->last = id;
      const auto next = std::next(range);
      if (next != m_Ranges.end() && next->first == id + 1) {
        range->last = next->last;
        m_Ranges.erase(next);
      }
    } else if (range->first == id + 1) {
      range->first = id;
    } else if (range->first > id) {
      m_Ranges.insert(range, Range(id, id));
    }
  }

 private:
  std::list<Range>::iterator FirstEndingAtOrAbove(unsigned int id) {
    auto range = m_Ranges.begin();
    while (range != m_Ranges.end() && range->last < id)
      ++range;
    return range;
  }

  void Take(std::list<Range>::iterator range, unsigned int id) {
    if (range->first == range->last) {
      m_Ranges.erase(range);
    } else if (id == range->first) {
      range->first += 1;
    } else if (id == range->last) {
      range->last -= 1;
    } else {
      m_Ranges.insert(range, Range(range->first, id - 1));
      range->first = id + 1;
    }
  }

  std::list<Range> m_Ranges;
  unsigned int m_Last = 0;
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
BENCHMARK_TEMPLATE(ReserveNewID, ListGenerator)->Iterations(kLiteralIterations);
BENCHMARK_TEMPLATE(ReserveID, FastGenerator)->Iterations(kFastIterations);
BENCHMARK_TEMPLATE(ReserveID, ListGenerator)->Iterations(kLiteralIterations);
BENCHMARK_TEMPLATE(UnReserveID, FastGenerator)->Iterations(kFastIterations);
BENCHMARK_TEMPLATE(UnReserveID, ListGenerator)->Iterations(kLiteralIterations);

}  // namespace
