// Feeds random and mutated bytes to a record reader: every read must either complete or end in
// the serialisation error, without touching memory it does not own (run under the address
// sanitizer) and without allocating ahead of the data.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "archive_text.h"
#include "child_process.h"

class InputGenerator {
 public:
  // `signatures`: leading numbers of the records under test and of the records nested in them,
  // so that generated input gets past the first checks often enough to reach the fields.
  InputGenerator(unsigned int seed, std::vector<unsigned int> signatures)
      : m_Random(seed), m_Signatures(std::move(signatures)) {}

  // Raw bytes of any value.
  std::string RandomBytes() {
    std::string bytes(Below(64), '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(Below(256));
    return bytes;
  }

  // A sequence of number tokens (known signatures, small and huge numbers, negative ones) and
  // short raw runs, starting with `first`.
  std::string Tokens(unsigned int first) {
    std::string text = std::to_string(first) + " ";
    const unsigned int count = Below(60);
    for (unsigned int i = 0; i < count; ++i) {
      switch (Below(6)) {
        case 0:
          text += std::to_string(m_Signatures[Below(m_Signatures.size())]) + " ";
          break;
        case 1:
          text += std::to_string(m_Random()) + " ";
          break;
        case 2:
          text += "-" + std::to_string(Below(100)) + " ";
          break;
        case 3:
          text += RandomBytes().substr(0, Below(8));
          break;
        default:
          text += std::to_string(Below(20)) + " ";
          break;
      }
    }
    return text;
  }

  // `bytes` with a few bytes replaced, inserted or cut off.
  std::string Mutate(std::string bytes) {
    const unsigned int changes = 1 + Below(4);
    for (unsigned int i = 0; i < changes && !bytes.empty(); ++i) {
      const std::size_t at = Below(bytes.size());
      switch (Below(4)) {
        case 0:
          bytes[at] = static_cast<char>(Below(256));
          break;
        case 1:
          bytes[at] = static_cast<char>('0' + Below(10));
          break;
        case 2:
          bytes.insert(at, 1, static_cast<char>(Below(256)));
          break;
        default:
          bytes.resize(at);
          break;
      }
    }
    return bytes;
  }

  unsigned int Below(std::size_t bound) { return static_cast<unsigned int>(m_Random() % bound); }

 private:
  std::mt19937 m_Random;
  std::vector<unsigned int> m_Signatures;
};

struct ReaderOutcome {
  unsigned int completed = 0;
  unsigned int reported = 0;
};

// Reads one record of the type that `makeRecord` builds from each of 600 generated inputs:
// random bytes, token sequences opening with the sample's first number, and mutations of the
// sample's bytes. Serialisation errors are caught as exceptions and counted.
template <typename Record>
ReaderOutcome FeedReader(const std::function<Record()>& makeRecord, const std::string& sample,
                         const std::vector<unsigned int>& signatures, unsigned int seed) {
  ScopedThrowingSerializeErrors throwing;
  InputGenerator generator(seed, signatures);
  const unsigned int leading = static_cast<unsigned int>(std::stoul(sample));
  ReaderOutcome outcome;
  for (unsigned int round = 0; round < 600; ++round) {
    std::string input;
    switch (round % 3) {
      case 0:
        input = generator.RandomBytes();
        break;
      case 1:
        input = generator.Tokens(leading);
        break;
      default:
        input = generator.Mutate(sample);
        break;
    }
    Record record = makeRecord();
    try {
      ReadFrom(input, record);
      ++outcome.completed;
    } catch (const SerializeErrorThrown&) {
      ++outcome.reported;
    }
  }
  return outcome;
}

// Feeds the reader and checks that some inputs were read and some reported.
template <typename Record>
void ExpectReaderSurvives(const std::function<Record()>& makeRecord, const Record& sample,
                          const std::vector<unsigned int>& signatures, unsigned int seed) {
  const ReaderOutcome outcome = FeedReader<Record>(makeRecord, BytesOf(sample), signatures, seed);
  EXPECT_GT(outcome.completed, 0u);
  EXPECT_GT(outcome.reported, 0u);
}

template <typename Record>
void ExpectReaderSurvives(const Record& sample, const std::vector<unsigned int>& signatures,
                          unsigned int seed) {
  ExpectReaderSurvives<Record>([] { return Record(); }, sample, signatures, seed);
}
