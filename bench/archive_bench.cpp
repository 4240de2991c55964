// Number writing and reading through EArchive, side by side with a literal reference (see
// archive_workload.h): the writer formats with snprintf("%u ") and copies into a doubling
// buffer; the reader copies each token into a 30-character buffer before accumulating. Writes go
// into a fresh archive per run, as a user writes one, and into one that already has the capacity,
// so that the cost of growing the buffer shows on its own.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "archive_workload.h"

namespace {

using bench::Input;
using bench::Label;

void BM_Write_Literal(benchmark::State& state) {
  const auto& numbers = Input(state);
  for (auto _ : state) {
    bench::DoublingBuffer buffer;
    for (const unsigned int number : numbers)
      bench::WriteLiteral(buffer, number);
    benchmark::DoNotOptimize(buffer);
  }
  Label(state);
}

void BM_Write_EArchive(benchmark::State& state) {
  bench::WriteFreshArchive(state);
}

void BM_Write_EArchive_Reserved(benchmark::State& state) {
  const auto& numbers = Input(state);
  EArchive archive;
  archive.SetMode(eModeStoring);
  bench::WriteAll(archive, numbers);
  for (auto _ : state) {
    archive.Empty();
    archive.SetMode(eModeStoring);
    bench::WriteAll(archive, numbers);
    benchmark::DoNotOptimize(archive.GetAsEBlob().GetData());
  }
  bench::CheckText(state, bench::TextOf(archive), numbers);
  Label(state);
}

void BM_Read_Literal(benchmark::State& state) {
  const auto& numbers = Input(state);
  const EBlob bytes = bench::ArchiveText(numbers);
  std::vector<unsigned int> values(numbers.size());
  for (auto _ : state) {
    bench::LiteralReader reader(bytes.GetData(), bytes.GetSize());
    for (unsigned int& value : values)
      value = reader.ReadUnsignedInt();
    benchmark::DoNotOptimize(values.data());
  }
  bench::CheckValues(state, values, numbers);
  Label(state);
}

void BM_Read_EArchive(benchmark::State& state) {
  bench::ReadArchive(state);
}

BENCHMARK(BM_Write_Literal)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write_EArchive)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write_EArchive_Reserved)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_Literal)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_EArchive)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
