// EBlob appends and SetData against a literal reference written here: a plain byte vector that
// grows with insert and copies with assign.
#include <benchmark/benchmark.h>

#include <vector>

#include "eBlob.h"

namespace {

const EBlob& Chunk(const benchmark::State& state) {
  static std::vector<unsigned char> bytes(4096, 0x5A);
  static EBlob chunks[] = {EBlob(bytes.data(), 16), EBlob(bytes.data(), 256),
                           EBlob(bytes.data(), 4096)};
  return chunks[state.range(0)];
}

void Label(benchmark::State& state, unsigned int bytesPerCall, int calls) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytesPerCall * calls);
}

void BM_Append_EBlob(benchmark::State& state) {
  const EBlob& chunk = Chunk(state);
  EBlob blob;
  for (auto _ : state) {
    blob.Empty(0);
    for (int i = 0; i < 64; ++i)
      blob.Append(chunk);
    benchmark::DoNotOptimize(blob.GetData());
  }
  Label(state, chunk.GetSize(), 64);
}

void BM_Append_Reference(benchmark::State& state) {
  const EBlob& chunk = Chunk(state);
  std::vector<unsigned char> blob;
  for (auto _ : state) {
    blob.clear();
    for (int i = 0; i < 64; ++i)
      blob.insert(blob.end(), chunk.GetData(), chunk.GetData() + chunk.GetSize());
    benchmark::DoNotOptimize(blob.data());
  }
  Label(state, chunk.GetSize(), 64);
}

void BM_SetData_EBlob(benchmark::State& state) {
  const EBlob& chunk = Chunk(state);
  EBlob blob;
  for (auto _ : state) {
    blob.SetData(chunk.GetData(), chunk.GetSize());
    benchmark::DoNotOptimize(blob.GetData());
  }
  Label(state, chunk.GetSize(), 1);
}

void BM_SetData_Reference(benchmark::State& state) {
  const EBlob& chunk = Chunk(state);
  std::vector<unsigned char> blob;
  for (auto _ : state) {
    blob.assign(chunk.GetData(), chunk.GetData() + chunk.GetSize());
    benchmark::DoNotOptimize(blob.data());
  }
  Label(state, chunk.GetSize(), 1);
}

BENCHMARK(BM_Append_EBlob)->Arg(0)->Arg(1)->Arg(2);
BENCHMARK(BM_Append_Reference)->Arg(0)->Arg(1)->Arg(2);
BENCHMARK(BM_SetData_EBlob)->Arg(0)->Arg(1)->Arg(2);
BENCHMARK(BM_SetData_Reference)->Arg(0)->Arg(1)->Arg(2);

}  // namespace
