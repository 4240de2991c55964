// The archive's bytes as tokens and the token-aware mutations (see archive_tokens.h).
#include "archive_tokens.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>

namespace fuzz {
namespace {

using Kind = ArchiveToken::Kind;

// The end of a number token at `at` (after its blank), or 0 when none starts there: an optional
// '-', one to twenty digits, a blank.
std::size_t NumberEnd(std::string_view bytes, std::size_t at) {
  std::size_t end = at;
  if (end < bytes.size() && bytes[end] == '-') ++end;
  const std::size_t digits = end;
  while (end < bytes.size() && end - digits < 21 &&
         std::isdigit(static_cast<unsigned char>(bytes[end])) != 0)
    ++end;
  if (end == digits || end - digits > 20 || end >= bytes.size() || bytes[end] != ' ') return 0;
  return end + 1;
}

bool OnlyDigitsAndBlanks(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char byte) {
    return byte == ' ' || byte == '-' || std::isdigit(static_cast<unsigned char>(byte)) != 0;
  });
}

bool IsOneOf(long long value, const std::vector<unsigned int>& signatures) {
  return value >= 0 && value <= UINT_MAX &&
         std::find(signatures.begin(), signatures.end(), static_cast<unsigned int>(value)) !=
             signatures.end();
}

// The indices of the number and length tokens; with `signatures`, of those whose value is one.
std::vector<std::size_t> Numbers(const std::vector<ArchiveToken>& tokens,
                                 const std::vector<unsigned int>* signatures = nullptr) {
  std::vector<std::size_t> numbers;
  for (std::size_t index = 0; index < tokens.size(); ++index) {
    long long value = 0;
    if (!TokenValue(tokens[index], value)) continue;
    if (signatures == nullptr || IsOneOf(value, *signatures)) numbers.push_back(index);
  }
  return numbers;
}

// The range of 1 to 4 tokens starting at the token `pick` picks, within the tokens.
std::pair<std::size_t, std::size_t> Range(const std::vector<ArchiveToken>& tokens, std::size_t pick,
                                          std::size_t length) {
  const std::size_t first = pick % tokens.size();
  return {first, std::min(tokens.size(), first + 1 + length % 4)};
}

}  // namespace

std::vector<ArchiveToken> SplitTokens(std::string_view bytes) {
  std::vector<ArchiveToken> tokens;
  std::string raw;
  const auto flushRaw = [&] {
    if (!raw.empty()) tokens.push_back({Kind::kRaw, std::move(raw)});
    raw.clear();
  };
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = NumberEnd(bytes, at);
    if (end == 0) {
      raw += bytes[at++];
      continue;
    }
    flushRaw();
    ArchiveToken number{Kind::kNumber, std::string(bytes.substr(at, end - at))};
    long long length = 0;
    const bool isLength = TokenValue(number, length) && length > 0 &&
                          static_cast<unsigned long long>(length) <= bytes.size() - end &&
                          !OnlyDigitsAndBlanks(bytes.substr(end, length));
    if (!isLength) {
      tokens.push_back(std::move(number));
      at = end;
      continue;
    }
    number.kind = Kind::kLength;
    tokens.push_back(std::move(number));
    tokens.push_back({Kind::kRaw, std::string(bytes.substr(end, length))});
    at = end + length;
  }
  flushRaw();
  return tokens;
}

std::string JoinTokens(const std::vector<ArchiveToken>& tokens) {
  std::string bytes;
  for (const ArchiveToken& token : tokens)
    bytes += token.bytes;
  return bytes;
}

bool TokenValue(const ArchiveToken& token, long long& value) {
  if (token.kind == Kind::kRaw) return false;
  errno = 0;
  char* end = nullptr;
  if (token.bytes[0] == '-') {
    value = std::strtoll(token.bytes.c_str(), &end, 10);
  } else {
    const unsigned long long number = std::strtoull(token.bytes.c_str(), &end, 10);
    value = static_cast<long long>(number);  // the unsigned 64-bit range wraps into the signed
  }
  return errno == 0 && end != token.bytes.c_str();
}

const std::vector<std::string>& TokenMutator::Boundaries() {
  static const std::vector<std::string> values = {"0",
                                                  "1",
                                                  "2147483647",
                                                  "2147483648",
                                                  "4294967295",
                                                  "4294967296",
                                                  "18446744073709551615",
                                                  "-1",
                                                  "-2147483648",
                                                  "-9223372036854775808"};
  return values;
}

void TokenMutator::SetBoundary(std::vector<ArchiveToken>& tokens, std::size_t pick,
                               std::size_t value) {
  const std::vector<std::size_t> numbers = Numbers(tokens);
  if (numbers.empty()) return;
  tokens[numbers[pick % numbers.size()]].bytes = Boundaries()[value % Boundaries().size()] + " ";
}

void TokenMutator::Step(std::vector<ArchiveToken>& tokens, std::size_t pick, bool up) {
  const std::vector<std::size_t> numbers = Numbers(tokens);
  if (numbers.empty()) return;
  ArchiveToken& token = tokens[numbers[pick % numbers.size()]];
  long long value = 0;
  TokenValue(token, value);
  // In 64-bit two's complement, so that the ends wrap instead of overflowing.
  const unsigned long long number = static_cast<unsigned long long>(value) + (up ? 1 : -1ULL);
  const bool isSigned = token.bytes[0] == '-' || (!up && value == 0);
  token.bytes =
      (isSigned ? std::to_string(static_cast<long long>(number)) : std::to_string(number)) + " ";
}

void TokenMutator::SwapSignature(std::vector<ArchiveToken>& tokens, std::size_t pick,
                                 std::size_t value) const {
  std::vector<std::size_t> numbers = Numbers(tokens, &m_Signatures);
  if (numbers.empty()) numbers = Numbers(tokens);
  if (numbers.empty() || m_Signatures.empty()) return;
  tokens[numbers[pick % numbers.size()]].bytes =
      std::to_string(m_Signatures[value % m_Signatures.size()]) + " ";
}

void TokenMutator::PutRecord(std::vector<ArchiveToken>& tokens, std::size_t pick,
                             std::size_t value) const {
  std::vector<std::size_t> numbers = Numbers(tokens, &m_Signatures);
  if (numbers.empty()) numbers = Numbers(tokens);
  if (numbers.empty() || m_Records.empty()) return;
  const std::size_t first = numbers[pick % numbers.size()];
  // The record replaces the signature and up to as many tokens after it as `value` says.
  const std::size_t last = std::min(tokens.size(), first + 1 + (value >> 8) % tokens.size());
  tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(first),
               tokens.begin() + static_cast<std::ptrdiff_t>(last));
  tokens.insert(tokens.begin() + static_cast<std::ptrdiff_t>(first),
                {Kind::kRaw, m_Records[value % m_Records.size()]});
}

void TokenMutator::Duplicate(std::vector<ArchiveToken>& tokens, std::size_t pick,
                             std::size_t length) {
  if (tokens.empty()) return;
  const auto [first, last] = Range(tokens, pick, length);
  const std::vector<ArchiveToken> copy(tokens.begin() + static_cast<std::ptrdiff_t>(first),
                                       tokens.begin() + static_cast<std::ptrdiff_t>(last));
  tokens.insert(tokens.begin() + static_cast<std::ptrdiff_t>(last), copy.begin(), copy.end());
}

void TokenMutator::Drop(std::vector<ArchiveToken>& tokens, std::size_t pick, std::size_t length) {
  if (tokens.empty()) return;
  const auto [first, last] = Range(tokens, pick, length);
  tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(first),
               tokens.begin() + static_cast<std::ptrdiff_t>(last));
}

std::string TokenMutator::Mutate(std::string_view bytes, unsigned int seed) {
  std::mt19937 random(seed);
  std::vector<ArchiveToken> tokens = SplitTokens(bytes);
  const unsigned int count = 1 + random() % 3;
  for (unsigned int mutation = 0; mutation < count; ++mutation) {
    const std::size_t pick = random();
    const std::size_t value = random();
    switch (random() % 7) {
      case 0:
        SetBoundary(tokens, pick, value);
        break;
      case 1:
      case 2:
        Step(tokens, pick, (value & 1) != 0);
        break;
      case 3:
        SwapSignature(tokens, pick, value);
        break;
      case 4:
        PutRecord(tokens, pick, value);
        break;
      case 5:
        Duplicate(tokens, pick, value);
        break;
      default:
        Drop(tokens, pick, value);
        break;
    }
  }
  return JoinTokens(tokens);
}

}  // namespace fuzz
