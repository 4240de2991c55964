#include "eArchive.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

std::atomic<EArchive::SerializeErrorHandler> gSerializeErrorHandler{nullptr};

constexpr char kDigitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

// Writes the decimal digits of `value` so that they end just before `end`; returns the first.
template <typename Unsigned>
char* FormatDigitsBackwards(Unsigned value, char* end) {
  while (value >= 100) {
    const unsigned int pair = static_cast<unsigned int>(value % 100) * 2;
    value /= 100;
    end -= 2;
    end[0] = kDigitPairs[pair];
    end[1] = kDigitPairs[pair + 1];
  }
  if (value >= 10) {
    const unsigned int pair = static_cast<unsigned int>(value) * 2;
    end -= 2;
    end[0] = kDigitPairs[pair];
    end[1] = kDigitPairs[pair + 1];
  } else {
    *--end = static_cast<char>('0' + value);
  }
  return end;
}

bool IsNumberChar(unsigned char c) {
  return (c >= '0' && c <= '9') || c == '-';
}

// value = value * 10 + (c - '0') for every character, in the arithmetic of `Unsigned`.
template <typename Unsigned>
Unsigned Accumulate(const unsigned char* token, unsigned int length) {
  Unsigned value = 0;
  for (unsigned int i = 0; i < length; ++i) {
    value = value * 10 + static_cast<Unsigned>(static_cast<int>(token[i]) - '0');
  }
  return value;
}

}  // namespace

EArchive::EArchive(const EArchive& other) {
  Copy(other);
}

EArchive& EArchive::operator=(const EArchive& other) {
  Copy(other);
  return *this;
}

EArchive::~EArchive() {
  Empty();
}

void EArchive::Copy(const EArchive& other) {
  if (this == &other) return;
  m_Mode = other.m_Mode;
  m_Buffer = other.m_Buffer;
  m_ReadPosition = other.m_ReadPosition;
  m_WritePosition = other.m_WritePosition;
}

void EArchive::Empty() {
  m_Mode = eModeNone;
  m_Buffer.m_Size = 0;
  m_WritePosition = 0;
  m_ReadPosition = 0;
}

void EArchive::SetFromEBlob(const EBlob& blob, bool terminate) {
  if (&blob == &m_Buffer) {
    const EBlob copy(blob);
    SetFromEBlob(copy, terminate);
    return;
  }
  const unsigned int n = blob.GetSize();
  m_Buffer.SetSize(terminate ? n + 1 : n, false);
  if (n > 0) std::memcpy(m_Buffer.m_Data, blob.GetData(), n);
  m_Buffer.m_Size = n;
  if (terminate) {
    m_Buffer.m_Data[n] = 0;
    m_Buffer.m_Size = n + 1;
  }
  m_ReadPosition = 0;
  m_WritePosition = n;
}

void EArchive::Append(unsigned int length, const unsigned char* bytes) {
  unsigned int position = m_WritePosition;
  if (position > m_Buffer.m_Size) position = 0;
  const std::uint64_t end = std::uint64_t{position} + length;
  if (end > m_Buffer.Room()) {
    if (end > UINT32_MAX) throw std::bad_alloc();
    // Double from the current capacity so that many small writes cost few reallocations.
    std::uint64_t capacity = m_Buffer.m_Capacity == 0 ? 1 : std::uint64_t{m_Buffer.m_Capacity} * 2;
    while (capacity < end)
      capacity *= 2;
    m_Buffer.SetSize(static_cast<unsigned int>(std::min<std::uint64_t>(capacity, UINT32_MAX)),
                     true);
  }
  if (length > 0) std::memcpy(m_Buffer.m_Data + position, bytes, length);
  if (m_Buffer.m_Size < end) m_Buffer.m_Size = static_cast<unsigned int>(end);
  m_WritePosition = static_cast<unsigned int>(end);
}

EArchive& EArchive::WriteUnsignedInt(unsigned int value) {
  char text[16];
  text[15] = ' ';
  const char* first = FormatDigitsBackwards(value, text + 15);
  Append(static_cast<unsigned int>(text + 16 - first),
         reinterpret_cast<const unsigned char*>(first));
  return *this;
}

EArchive& EArchive::WriteSignedInt(int value) {
  char text[16];
  text[15] = ' ';
  const unsigned int magnitude =
      value < 0 ? 0u - static_cast<unsigned int>(value) : static_cast<unsigned int>(value);
  char* first = FormatDigitsBackwards(magnitude, text + 15);
  if (value < 0) *--first = '-';
  Append(static_cast<unsigned int>(text + 16 - first),
         reinterpret_cast<const unsigned char*>(first));
  return *this;
}

EArchive& EArchive::WriteUnsigned64Int(unsigned long value) {
  char text[24];
  text[23] = ' ';
  const char* first = FormatDigitsBackwards(value, text + 23);
  Append(static_cast<unsigned int>(text + 24 - first),
         reinterpret_cast<const unsigned char*>(first));
  return *this;
}

EArchive& EArchive::operator<<(const std::string& value) {
  WriteUnsigned64Int(value.size());
  Append(static_cast<unsigned int>(value.size()),
         reinterpret_cast<const unsigned char*>(value.data()));
  return *this;
}

EArchive& EArchive::WriteBlob(const EBlob& blob) {
  WriteUnsignedInt(blob.GetSize());
  Append(blob.GetSize(), blob.GetData());
  return *this;
}

EArchive& EArchive::SerializeRawStringOut(const std::string& value) {
  Append(static_cast<unsigned int>(value.size()),
         reinterpret_cast<const unsigned char*>(value.data()));
  const unsigned char lineFeed = '\n';
  Append(1, &lineFeed);
  return *this;
}

unsigned int EArchive::NextToken(unsigned int capacity, const unsigned char*& token) {
  const unsigned char* const data = m_Buffer.m_Data;
  const unsigned int size = m_Buffer.m_Size;
  unsigned int position = m_ReadPosition;
  if (position > size) position = 0;
  while (position < size && !IsNumberChar(data[position]))
    ++position;
  token = nullptr;
  if (position >= size || capacity <= 1) {
    // Nothing to read: step one past the end (or the token) so the next read starts over.
    m_ReadPosition = position + 1;
    return 0;
  }
  const unsigned int start = position;
  const unsigned int limit = capacity - 1;
  unsigned int count = 1;
  ++position;
  while (position < size && count < limit && IsNumberChar(data[position])) {
    ++position;
    ++count;
  }
  // Skip the delimiter; a token cut at the limit loses its next character.
  m_ReadPosition = position + 1;
  token = data + start;
  return count;
}

unsigned int EArchive::BufferNumberText(char* text, unsigned int capacity) {
  const unsigned char* token = nullptr;
  const unsigned int count = NextToken(capacity, token);
  if (capacity == 0) return count;
  if (count > 0) std::memcpy(text, token, count);
  text[count] = '\0';
  return count;
}

unsigned int EArchive::ReadUnsignedInt() {
  const unsigned char* token = nullptr;
  const unsigned int count = NextToken(kNumberTextCapacity, token);
  return Accumulate<unsigned int>(token, count);
}

int EArchive::ReadSignedInt() {
  const unsigned char* token = nullptr;
  unsigned int count = NextToken(kNumberTextCapacity, token);
  const bool negative = count > 0 && token[0] == '-';
  if (negative) {
    ++token;
    --count;
  }
  const unsigned int magnitude = Accumulate<unsigned int>(token, count);
  return static_cast<int>(negative ? 0u - magnitude : magnitude);
}

unsigned long EArchive::ReadUnsigned64Int() {
  const unsigned char* token = nullptr;
  const unsigned int count = NextToken(kNumberTextCapacity, token);
  return Accumulate<unsigned long>(token, count);
}

EArchive& EArchive::operator>>(unsigned int& value) {
  value = ReadUnsignedInt();
  return *this;
}

EArchive& EArchive::operator>>(unsigned short& value) {
  value = static_cast<unsigned short>(ReadUnsignedInt());
  return *this;
}

EArchive& EArchive::operator>>(unsigned char& value) {
  value = static_cast<unsigned char>(ReadUnsignedInt());
  return *this;
}

EArchive& EArchive::operator>>(bool& value) {
  value = ReadUnsignedInt() != 0;
  return *this;
}

EArchive& EArchive::operator>>(int& value) {
  value = ReadSignedInt();
  return *this;
}

EArchive& EArchive::operator>>(short& value) {
  value = static_cast<short>(ReadSignedInt());
  return *this;
}

EArchive& EArchive::operator>>(signed char& value) {
  value = static_cast<signed char>(ReadSignedInt());
  return *this;
}

EArchive& EArchive::operator>>(unsigned long& value) {
  value = ReadUnsigned64Int();
  return *this;
}

EArchive& EArchive::operator>>(std::string& value) {
  unsigned int length = ReadUnsignedInt();
  const unsigned int size = m_Buffer.m_Size;
  if (m_ReadPosition > size) m_ReadPosition = 0;
  length = std::min(length, size - m_ReadPosition);
  if (length == 0) {
    value.clear();
    return *this;
  }
  value.assign(reinterpret_cast<const char*>(m_Buffer.m_Data + m_ReadPosition), length);
  m_ReadPosition += length;
  return *this;
}

EArchive& EArchive::ReadBlob(EBlob& blob) {
  unsigned int length = ReadUnsignedInt();
  const unsigned int size = m_Buffer.m_Size;
  // A position beyond the end restarts at 0, as for strings, so the clamp below cannot wrap.
  if (m_ReadPosition > size) m_ReadPosition = 0;
  length = std::min(length, size - m_ReadPosition);
  blob.SetSize(length, false);
  if (length > 0) std::memmove(blob.m_Data, m_Buffer.m_Data + m_ReadPosition, length);
  blob.m_Size = length;
  m_ReadPosition += length;
  return *this;
}

EArchive& EArchive::SerializeRawStringIn(std::string& value) {
  const unsigned int size = m_Buffer.m_Size;
  if (m_ReadPosition > size) m_ReadPosition = 0;
  value.clear();
  if (m_ReadPosition == size) return *this;
  const char* const begin = reinterpret_cast<const char*>(m_Buffer.m_Data + m_ReadPosition);
  const void* lineFeed = std::memchr(begin, '\n', size - m_ReadPosition);
  const unsigned int length =
      lineFeed != nullptr ? static_cast<unsigned int>(static_cast<const char*>(lineFeed) - begin)
                          : size - m_ReadPosition;
  value.assign(begin, length);
  m_ReadPosition += length;  // stays on the line feed
  return *this;
}

void EArchive::SerializeError(const char* file, int line, const char* function) {
  const SerializeErrorHandler handler = gSerializeErrorHandler.load();
  if (handler != nullptr) handler(file, line, function);
  std::printf("*** Exception in FILE %s, LINE %d:\n%s - %s\n", file, line, function,
              "EArchive::SerializeError()");
  std::fflush(stdout);
  std::exit(1);
}

EArchive::SerializeErrorHandler EArchive::SetSerializeErrorHandler(SerializeErrorHandler handler) {
  return gSerializeErrorHandler.exchange(handler);
}
