// Number writing and reading through EArchive, side by side with a literal reference: the
// writer formats with snprintf("%u ") into a stack buffer and appends; the reader follows the
// tokeniser step by step and copies each token into a 30-character buffer before accumulating.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

#include "eArchive.h"

namespace {

constexpr std::size_t kCount = 1000000;

std::vector<unsigned int> Numbers(bool small) {
  std::mt19937 generator(12345);
  std::vector<unsigned int> numbers(kCount);
  for (unsigned int& number : numbers) {
    number = small ? generator() % 1000 : static_cast<unsigned int>(generator());
  }
  return numbers;
}

const std::vector<unsigned int>& Uniform() {
  static const std::vector<unsigned int> numbers = Numbers(false);
  return numbers;
}

const std::vector<unsigned int>& Small() {
  static const std::vector<unsigned int> numbers = Numbers(true);
  return numbers;
}

const std::vector<unsigned int>& Input(const benchmark::State& state) {
  return state.range(0) == 0 ? Uniform() : Small();
}

void Label(benchmark::State& state) {
  state.SetLabel(state.range(0) == 0 ? "uniform" : "small");
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kCount));
  state.counters["ns_per_number"] =
      benchmark::Counter(static_cast<double>(state.iterations() * kCount),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// The literal writer: snprintf "%u " into a stack buffer, then Append.
void WriteLiteral(EArchive& archive, unsigned int value) {
  char text[16];
  const int length = std::snprintf(text, sizeof text, "%u ", value);
  archive.Append(static_cast<unsigned int>(length), reinterpret_cast<const unsigned char*>(text));
}

// The literal reader, following the tokeniser step by step over the same bytes: skip to a digit
// or '-', copy the token into a 30-character buffer, skip the delimiter, then accumulate.
class LiteralReader {
 public:
  explicit LiteralReader(const EBlob& bytes) : m_Data(bytes.GetData()), m_Size(bytes.GetSize()) {}

  unsigned int ReadUnsignedInt() {
    char text[30];
    const unsigned int length = BufferNumberText(text, sizeof text);
    unsigned int value = 0;
    for (unsigned int i = 0; i < length; ++i)
      value = value * 10 + (text[i] - '0');
    return value;
  }

 private:
  static bool IsNumberChar(unsigned char c) { return (c >= '0' && c <= '9') || c == '-'; }

  unsigned int BufferNumberText(char* text, unsigned int capacity) {
    if (m_Position > m_Size) m_Position = 0;
    unsigned int count = 0;
    if (m_Position < m_Size) {
      while (!IsNumberChar(m_Data[m_Position])) {
        if (++m_Position == m_Size) break;
      }
      if (m_Position < m_Size && capacity > 1) {
        do {
          text[count++] = static_cast<char>(m_Data[m_Position++]);
        } while (m_Position < m_Size && count < capacity - 1 && IsNumberChar(m_Data[m_Position]));
      }
    }
    text[count] = '\0';
    ++m_Position;
    return count;
  }

  const unsigned char* m_Data;
  unsigned int m_Size;
  unsigned int m_Position = 0;
};

EArchive Written(const std::vector<unsigned int>& numbers) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  for (const unsigned int number : numbers)
    archive.WriteUnsignedInt(number);
  return archive;
}

void BM_Write_Literal(benchmark::State& state) {
  const auto& numbers = Input(state);
  EArchive archive;
  for (auto _ : state) {
    archive.Empty();
    for (const unsigned int number : numbers)
      WriteLiteral(archive, number);
    benchmark::DoNotOptimize(archive.GetAsEBlob().GetData());
  }
  Label(state);
}

void BM_Write_EArchive(benchmark::State& state) {
  const auto& numbers = Input(state);
  EArchive archive;
  for (auto _ : state) {
    archive.Empty();
    for (const unsigned int number : numbers)
      archive << number;
    benchmark::DoNotOptimize(archive.GetAsEBlob().GetData());
  }
  Label(state);
}

void BM_Read_Literal(benchmark::State& state) {
  const EBlob bytes = Written(Input(state)).GetAsEBlob();
  for (auto _ : state) {
    LiteralReader reader(bytes);
    unsigned int sum = 0;
    for (std::size_t i = 0; i < kCount; ++i)
      sum += reader.ReadUnsignedInt();
    benchmark::DoNotOptimize(sum);
  }
  Label(state);
}

void BM_Read_EArchive(benchmark::State& state) {
  const EBlob bytes = Written(Input(state)).GetAsEBlob();
  EArchive archive;
  for (auto _ : state) {
    state.PauseTiming();
    archive.SetFromEBlob(bytes, true);
    state.ResumeTiming();
    unsigned int sum = 0;
    for (std::size_t i = 0; i < kCount; ++i) {
      unsigned int value = 0;
      archive >> value;
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  Label(state);
}

BENCHMARK(BM_Write_Literal)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write_EArchive)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_Literal)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_EArchive)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
