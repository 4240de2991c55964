// The number workload shared by the archive benchmarks: 10^6 numbers of two distributions, the
// literal writer and reader that EArchive is measured against, and the EArchive runs themselves,
// each called the way a user calls the library (a fresh archive per run, the public operators).
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "eArchive.h"

namespace bench {

constexpr std::size_t kCount = 1000000;

inline std::vector<unsigned int> Numbers(bool small) {
  std::mt19937 generator(12345);
  std::vector<unsigned int> numbers(kCount);
  for (unsigned int& number : numbers) {
    number = small ? generator() % 1000 : static_cast<unsigned int>(generator());
  }
  return numbers;
}

// Argument 0: uniform 32-bit numbers; 1: small ones (below 1000).
inline const std::vector<unsigned int>& Input(const benchmark::State& state) {
  static const std::vector<unsigned int> uniform = Numbers(false);
  static const std::vector<unsigned int> small = Numbers(true);
  return state.range(0) == 0 ? uniform : small;
}

inline void Label(benchmark::State& state) {
  state.SetLabel(state.range(0) == 0 ? "uniform" : "small");
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kCount));
  state.counters["ns_per_number"] =
      benchmark::Counter(static_cast<double>(state.iterations() * kCount),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// The literal writer's buffer: bytes appended by copy, the capacity doubled when it runs out.
class DoublingBuffer {
 public:
  void Append(const char* bytes, std::size_t length) {
    if (m_Size + length > m_Capacity) Grow(m_Size + length);
    std::memcpy(m_Data.get() + m_Size, bytes, length);
    m_Size += length;
  }
  std::string Text() const { return std::string(m_Data.get(), m_Size); }

 private:
  void Grow(std::size_t needed) {
    std::size_t capacity = m_Capacity == 0 ? 1 : m_Capacity * 2;
    while (capacity < needed)
      capacity *= 2;
    std::unique_ptr<char[]> data(new char[capacity]);
    if (m_Size > 0) std::memcpy(data.get(), m_Data.get(), m_Size);
    m_Data = std::move(data);
    m_Capacity = capacity;
  }

  std::unique_ptr<char[]> m_Data;
  std::size_t m_Size = 0;
  std::size_t m_Capacity = 0;
};

// The literal writer: snprintf "%u " into a stack buffer, then a copy into a doubling buffer.
inline void WriteLiteral(DoublingBuffer& buffer, unsigned int value) {
  char text[16];
  const int length = std::snprintf(text, sizeof text, "%u ", value);
  buffer.Append(text, static_cast<std::size_t>(length));
}

inline std::string LiteralText(const std::vector<unsigned int>& numbers) {
  DoublingBuffer buffer;
  for (const unsigned int number : numbers)
    WriteLiteral(buffer, number);
  return buffer.Text();
}

// The literal reader: skip to a digit or '-', copy the token into a 30-character buffer, skip
// the delimiter, then accumulate the characters.
class LiteralReader {
 public:
  LiteralReader(const unsigned char* data, unsigned int size) : m_Data(data), m_Size(size) {}

  unsigned int ReadUnsignedInt() {
    char text[30];
    const unsigned int length = BufferNumberText(text, sizeof text);
    unsigned int value = 0;
    for (unsigned int i = 0; i < length; ++i)
      value = value * 10 + static_cast<unsigned int>(text[i] - '0');
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

// Writes every number into `archive` with operator<<.
inline void WriteAll(EArchive& archive, const std::vector<unsigned int>& numbers) {
  for (const unsigned int number : numbers)
    archive << number;
}

// Reads `values.size()` numbers from `archive` with operator>>.
inline void ReadAll(EArchive& archive, std::vector<unsigned int>& values) {
  for (unsigned int& value : values)
    archive >> value;
}

inline std::string TextOf(const EArchive& archive) {
  const EBlob& bytes = archive.GetAsEBlob();
  return std::string(reinterpret_cast<const char*>(bytes.GetData()), bytes.GetSize());
}

// The archive text of `numbers`.
inline EBlob ArchiveText(const std::vector<unsigned int>& numbers) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  WriteAll(archive, numbers);
  return archive.GetAsEBlob();
}

// A writer's result must equal the literal text byte for byte.
inline void CheckText(benchmark::State& state, const std::string& text,
                      const std::vector<unsigned int>& numbers) {
  if (text != LiteralText(numbers)) state.SkipWithError("the text differs from the literal one");
}

// A reader must give back every number.
inline void CheckValues(benchmark::State& state, const std::vector<unsigned int>& values,
                        const std::vector<unsigned int>& numbers) {
  if (values != numbers) state.SkipWithError("the numbers read differ from those written");
}

// 10^6 numbers written with operator<< into a fresh archive per run; the text is checked.
inline void WriteFreshArchive(benchmark::State& state) {
  const auto& numbers = Input(state);
  std::string text;
  for (auto _ : state) {
    EArchive archive;
    archive.SetMode(eModeStoring);
    WriteAll(archive, numbers);
    benchmark::DoNotOptimize(archive.GetAsEBlob().GetData());
    if (text.empty()) text = TextOf(archive);
  }
  CheckText(state, text, numbers);
  Label(state);
}

// 10^6 numbers read with operator>> from their archive text, loaded untimed before each run.
inline void ReadArchive(benchmark::State& state) {
  const auto& numbers = Input(state);
  const EBlob bytes = ArchiveText(numbers);
  std::vector<unsigned int> values(numbers.size());
  EArchive archive;
  archive.SetMode(eModeLoading);
  for (auto _ : state) {
    state.PauseTiming();
    archive.SetFromEBlob(bytes, true);
    state.ResumeTiming();
    ReadAll(archive, values);
    benchmark::DoNotOptimize(values.data());
  }
  CheckValues(state, values, numbers);
  Label(state);
}

}  // namespace bench
