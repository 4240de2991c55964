// The token view of archive bytes and the token-aware mutations of records_tokens_fuzz.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_tokens.h"

namespace {

using fuzz::ArchiveToken;
using fuzz::TokenMutator;
using Kind = ArchiveToken::Kind;
using namespace std::string_literals;

// The tokens as "n:..." for numbers, "l:..." for lengths and "r:..." for raw runs, bar-separated.
std::string Shape(const std::vector<ArchiveToken>& tokens) {
  std::string shape;
  for (const ArchiveToken& token : tokens) {
    const char* kind = token.kind == Kind::kNumber   ? "n:"
                       : token.kind == Kind::kLength ? "l:"
                                                     : "r:";
    shape += kind + token.bytes + "|";
  }
  return shape;
}

std::string Mutated(const std::string& bytes, void (*mutate)(std::vector<ArchiveToken>&)) {
  std::vector<ArchiveToken> tokens = fuzz::SplitTokens(bytes);
  mutate(tokens);
  return fuzz::JoinTokens(tokens);
}

TEST(ArchiveTokens, SplitsNumbersLengthsAndRawRuns) {
  EXPECT_EQ(Shape(fuzz::SplitTokens("403837713 -2 5 hello7 ")),
            "n:403837713 |n:-2 |l:5 |r:hello|n:7 |");
  // A number followed by as many digits and blanks is no length; one beyond the end neither.
  EXPECT_EQ(Shape(fuzz::SplitTokens("2 1 9 ab")), "n:2 |n:1 |n:9 |r:ab|");
  EXPECT_EQ(Shape(fuzz::SplitTokens("\x01x12")), "r:\x01x12|");
  // Twenty-one digits are no number: the token starts one digit later, beyond 64 bits.
  EXPECT_EQ(Shape(fuzz::SplitTokens("123456789012345678901 ")), "r:1|n:23456789012345678901 |");
}

TEST(ArchiveTokens, JoinGivesTheBytesBack) {
  for (const std::string& bytes :
       std::vector<std::string>{"", "1 ", "3 abc4 \xff"s + '\0' + "z", "-- 7 x 5 12345"}) {
    EXPECT_EQ(fuzz::JoinTokens(fuzz::SplitTokens(bytes)), bytes);
  }
}

TEST(ArchiveTokens, TokenValue) {
  long long value = 0;
  EXPECT_TRUE(fuzz::TokenValue({Kind::kNumber, "18446744073709551615 "}, value));
  EXPECT_EQ(value, -1);
  EXPECT_TRUE(fuzz::TokenValue({Kind::kLength, "-7 "}, value));
  EXPECT_EQ(value, -7);
  EXPECT_FALSE(fuzz::TokenValue({Kind::kNumber, "18446744073709551616 "}, value));
  EXPECT_FALSE(fuzz::TokenValue({Kind::kRaw, "12 "}, value));
}

TEST(ArchiveTokens, BoundaryReplacesANumber) {
  EXPECT_EQ(Mutated("5 abcde9 ", [](auto& tokens) { TokenMutator::SetBoundary(tokens, 1, 4); }),
            "5 abcde4294967295 ");
  EXPECT_EQ(Mutated("5 abcde9 ", [](auto& tokens) { TokenMutator::SetBoundary(tokens, 0, 7); }),
            "-1 abcde9 ");
}

TEST(ArchiveTokens, StepChangesANumberOrLengthByOne) {
  EXPECT_EQ(Mutated("5 abcde9 ", [](auto& tokens) { TokenMutator::Step(tokens, 0, true); }),
            "6 abcde9 ");
  EXPECT_EQ(Mutated("0 ", [](auto& tokens) { TokenMutator::Step(tokens, 0, false); }), "-1 ");
  EXPECT_EQ(
      Mutated("18446744073709551615 ", [](auto& tokens) { TokenMutator::Step(tokens, 0, true); }),
      "0 ");
  EXPECT_EQ(
      Mutated("-9223372036854775808 ", [](auto& tokens) { TokenMutator::Step(tokens, 0, false); }),
      "9223372036854775807 ");
}

TEST(ArchiveTokens, SignatureAndRecordGoWhereASignatureWas) {
  const TokenMutator mutator({100, 200}, {"200 1 2 "});
  std::vector<ArchiveToken> tokens = fuzz::SplitTokens("7 100 8 9 ");
  mutator.SwapSignature(tokens, 0, 1);
  EXPECT_EQ(fuzz::JoinTokens(tokens), "7 200 8 9 ");
  tokens = fuzz::SplitTokens("7 100 8 9 ");
  mutator.PutRecord(tokens, 0, 1 << 8);  // the signature and the token after it
  EXPECT_EQ(fuzz::JoinTokens(tokens), "7 200 1 2 9 ");
}

TEST(ArchiveTokens, DuplicateAndDropRunsOfTokens) {
  EXPECT_EQ(Mutated("1 2 3 ", [](auto& tokens) { TokenMutator::Duplicate(tokens, 1, 1); }),
            "1 2 3 2 3 ");
  EXPECT_EQ(Mutated("1 2 3 ", [](auto& tokens) { TokenMutator::Drop(tokens, 0, 0); }), "2 3 ");
  EXPECT_EQ(Mutated("", [](auto& tokens) { TokenMutator::Drop(tokens, 0, 0); }), "");
}

TEST(ArchiveTokens, MutateChangesTokensAndIsRepeatable) {
  TokenMutator mutator({100}, {"100 0 "});
  const std::string bytes = "100 3 abc4 5 ";
  int changed = 0;
  for (unsigned int seed = 0; seed < 50; ++seed) {
    const std::string once = mutator.Mutate(bytes, seed);
    EXPECT_EQ(mutator.Mutate(bytes, seed), once);
    changed += once != bytes ? 1 : 0;
  }
  EXPECT_GE(changed, 40);
}

}  // namespace
