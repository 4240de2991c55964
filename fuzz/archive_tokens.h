// The archive's bytes as tokens, and the token-aware mutations of records_tokens_fuzz: numbers
// are decimal text ended by a blank, a length is a number followed by that many raw bytes, and
// anything else is a raw run. Mutating tokens rather than bytes reaches a reader's deeper states
// sooner: a count one past the items present, a boundary value in a field written signed and read
// unsigned, another class's record where a nested one was expected.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

struct ArchiveToken {
  enum class Kind : unsigned char { kNumber, kLength, kRaw };
  Kind kind;
  std::string bytes;  // a number or length with its blank; a raw run as it is
};

// Splits bytes into tokens whose concatenation is the bytes. A number is a length when the bytes
// after its blank hold at least that many bytes and they are not all digits and blanks (so a
// text is told from a run of numbers).
std::vector<ArchiveToken> SplitTokens(std::string_view bytes);
std::string JoinTokens(const std::vector<ArchiveToken>& tokens);

// The value of a number or length token, without its blank; false for a raw run or a number
// beyond 64 bits.
bool TokenValue(const ArchiveToken& token, long long& value);

// The mutations, each applied to the tokens of one input (without its class picker byte).
class TokenMutator {
 public:
  // `signatures`: of every layout of every class; `records`: archive bytes of whole records (the
  // golden vectors) to put where a nested record starts.
  TokenMutator(std::vector<unsigned int> signatures, std::vector<std::string> records)
      : m_Signatures(std::move(signatures)), m_Records(std::move(records)) {}

  // One to three token mutations of `bytes`, with randomness from `seed`; the bytes unchanged
  // when they hold no token a mutation applies to.
  std::string Mutate(std::string_view bytes, unsigned int seed);

  // The single mutations, each on a token chosen by `pick` (taken modulo what applies).
  static void SetBoundary(std::vector<ArchiveToken>& tokens, std::size_t pick, std::size_t value);
  static void Step(std::vector<ArchiveToken>& tokens, std::size_t pick, bool up);
  void SwapSignature(std::vector<ArchiveToken>& tokens, std::size_t pick, std::size_t value) const;
  void PutRecord(std::vector<ArchiveToken>& tokens, std::size_t pick, std::size_t value) const;
  static void Duplicate(std::vector<ArchiveToken>& tokens, std::size_t pick, std::size_t length);
  static void Drop(std::vector<ArchiveToken>& tokens, std::size_t pick, std::size_t length);

  // The boundary values, as decimal text.
  static const std::vector<std::string>& Boundaries();

 private:
  std::vector<unsigned int> m_Signatures;
  std::vector<std::string> m_Records;
};

}  // namespace fuzz
