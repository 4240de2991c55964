#include "eArchive.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "detail/eBlobSize.h"

namespace {

std::atomic<EArchive::SerializeErrorHandler> gSerializeErrorHandler{nullptr};

// The report for a read that would wrap to position 0 more often than the archive allows.
constexpr ERefusalReport kWrapLimitRefusal = {"common/ehal/eArchive", 150,
                                              "EArchive read beyond its wrap limit"};

bool IsNumberChar(unsigned char c) {
  return static_cast<unsigned char>(c - '0') < 10 || c == '-';
}

// Adds one character to a number: value * 10 + (c - '0'), wrapping in the arithmetic of
// `Unsigned`; '-' therefore counts as the digit value -3.
template <typename Unsigned>
Unsigned AddDigit(Unsigned value, unsigned char c) {
  return value * 10 + static_cast<Unsigned>(static_cast<int>(c) - '0');
}

// Copies `length` bytes between blocks that do not overlap. glibc copies large blocks with
// `rep movsb`, which some processors run more than ten times slower when the destination lies 1 to
// 15 bytes after the source modulo 4 KiB, a distance that an archive position can give; such
// copies go in pieces short enough for glibc's vector loop, which keeps its speed at any distance.
void CopyBytes(unsigned char* to, const unsigned char* from, std::size_t length) {
  constexpr std::size_t kPiece = 2048;
  const std::uintptr_t distance =
      (reinterpret_cast<std::uintptr_t>(to) - reinterpret_cast<std::uintptr_t>(from)) % 4096;
  if (distance == 0 || distance >= 16) {
    std::memcpy(to, from, length);
    return;
  }
  for (; length > kPiece; length -= kPiece, to += kPiece, from += kPiece)
    std::memcpy(to, from, kPiece);
  std::memcpy(to, from, length);
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
  m_WrapLimit = other.m_WrapLimit;
  m_WrapCount = other.m_WrapCount;
}

void EArchive::Empty() {
  m_Mode = eModeNone;
  m_Buffer.Resize(EBlob::ResizeKey(), 0);
  m_WritePosition = 0;
  m_ReadPosition = 0;
  m_WrapCount = 0;
}

void EArchive::SetFromEBlob(const EBlob& blob, bool terminate) {
  if (&blob == &m_Buffer) {
    const EBlob copy(blob);
    SetFromEBlob(copy, terminate);
    return;
  }
  const unsigned int n = blob.GetSize();
  const unsigned int size = eHal::detail::BlobSizeOfSum(n, terminate ? 1 : 0);
  // Size 0 first, so that a new allocation copies none of the old bytes.
  m_Buffer.Resize(EBlob::ResizeKey(), 0, size, GrowthAllocation(m_Buffer, size));
  unsigned char* const data = m_Buffer.Resize(EBlob::ResizeKey(), size);
  if (n > 0) std::memcpy(data, blob.GetData(), n);
  if (terminate) data[n] = 0;
  m_ReadPosition = 0;
  m_WritePosition = n;
  m_WrapCount = 0;
}

void EArchive::MoveFromEBlob(EBlob&& blob, bool terminate) {
  if (&blob == &m_Buffer || blob.GetData() == nullptr) {
    SetFromEBlob(static_cast<const EBlob&>(blob), terminate);
    return;
  }
  const unsigned int n = blob.GetSize();
  const unsigned int size = eHal::detail::BlobSizeOfSum(n, terminate ? 1 : 0);
  m_Buffer = std::move(blob);
  if (terminate) m_Buffer.Resize(EBlob::ResizeKey(), size, size)[n] = 0;
  m_ReadPosition = 0;
  m_WritePosition = n;
  m_WrapCount = 0;
}

EBlob EArchive::ReleaseAsEBlob() {
  EBlob bytes(std::move(m_Buffer));
  Empty();
  return bytes;
}

unsigned char* EArchive::ReserveSlow(unsigned int position, unsigned int length) {
  const unsigned int size = m_Buffer.GetSize();
  if (position > size) position = 0;
  const unsigned int end = eHal::detail::BlobSizeOfSum(position, length);
  // Double from the current capacity so that many small writes cost few reallocations.
  const unsigned int capacity =
      end > m_Buffer.Room() ? static_cast<unsigned int>(GrownCapacity(end)) : 0;
  m_WritePosition = end;
  return m_Buffer.Resize(EBlob::ResizeKey(), std::max(size, end), capacity, kSmallestAllocation) +
         position;
}

unsigned int EArchive::GrowthAllocation(const EBlob& blob, std::uint64_t needed) {
  return static_cast<unsigned int>(
      std::min(blob.GrowthAllocation(EBlob::ResizeKey(), needed), eHal::detail::kLargestBlob));
}

void EArchive::Append(unsigned int length, const unsigned char* bytes) {
  unsigned char* const out = Reserve(length);
  if (length > 0) CopyBytes(out, bytes, length);
}

template <typename Number>
EArchive& EArchive::AppendNumber(Number value) {
  unsigned char text[eHal::detail::kLongestNumberText];
  const unsigned char* const end = eHal::detail::WriteNumberText(text, value);
  Append(static_cast<unsigned int>(end - text), text);
  return *this;
}

template EArchive& EArchive::AppendNumber(std::uint32_t);
template EArchive& EArchive::AppendNumber(std::int32_t);
template EArchive& EArchive::AppendNumber(std::uint64_t);

EArchive& EArchive::operator<<(const std::string& value) {
  const unsigned int length = eHal::detail::BlobSize(value.size());
  WriteUnsigned64Int(length);
  Append(length, reinterpret_cast<const unsigned char*>(value.data()));
  return *this;
}

EArchive& EArchive::WriteBlob(const EBlob& blob) {
  WriteUnsignedInt(blob.GetSize());
  Append(blob.GetSize(), blob.GetData());
  return *this;
}

EArchive& EArchive::SerializeRawStringOut(const std::string& value) {
  Append(eHal::detail::BlobSize(value.size()),
         reinterpret_cast<const unsigned char*>(value.data()));
  const unsigned char lineFeed = '\n';
  Append(1, &lineFeed);
  return *this;
}

unsigned int EArchive::StartPosition() {
  if (m_ReadPosition <= m_Buffer.GetSize()) return m_ReadPosition;
  if (m_WrapLimit != 0 && m_WrapCount >= m_WrapLimit) kWrapLimitRefusal.Raise();
  ++m_WrapCount;
  m_ReadPosition = 0;
  return 0;
}

template <typename Sink>
unsigned int EArchive::ScanNumber(unsigned int capacity, Sink&& sink) {
  const unsigned char* const data = m_Buffer.GetData();
  const unsigned int size = m_Buffer.GetSize();
  unsigned int position = StartPosition();
  while (position < size && !IsNumberChar(data[position]))
    ++position;
  if (position >= size || capacity <= 1) {
    // Nothing to read: step one past the end (or the token) so the next read starts over.
    m_ReadPosition = position + 1;
    return 0;
  }
  const unsigned char* const first = data + position;
  const unsigned char* const last = first + std::min(capacity - 1, size - position);
  const unsigned char* next = first;
  do {
    sink(*next, static_cast<unsigned int>(next - first));
    ++next;
  } while (next < last && IsNumberChar(*next));
  const auto count = static_cast<unsigned int>(next - first);
  // Skip the delimiter; a token cut at the limit loses its next character.
  m_ReadPosition = position + count + 1;
  return count;
}

unsigned int EArchive::BufferNumberText(char* text, unsigned int capacity) {
  const unsigned int count = ScanNumber(
      capacity, [text](unsigned char c, unsigned int i) { text[i] = static_cast<char>(c); });
  if (capacity > 0) text[count] = '\0';
  return count;
}

unsigned int EArchive::ReadUnsignedIntSlow() {
  // Plain digits near the end of the bytes, ended within them by a character that cannot continue
  // a number, are taken here as the tokeniser would take them (the same wrapping accumulation).
  const unsigned int position = m_ReadPosition;
  const unsigned int size = m_Buffer.GetSize();
  const unsigned char* const data = m_Buffer.GetData();
  unsigned int end = position;
  unsigned int digits = 0;
  while (end < size && end - position < 16 && eHal::detail::DigitValue(data[end]) <= 9)
    digits = AddDigit(digits, data[end++]);
  if (end > position && end < size && !IsNumberChar(data[end])) {
    m_ReadPosition = end + 1;
    return digits;
  }
  unsigned int value = 0;
  ScanNumber(kNumberTextCapacity,
             [&value](unsigned char c, unsigned int) { value = AddDigit(value, c); });
  return value;
}

int EArchive::ReadSignedInt() {
  unsigned int magnitude = 0;
  bool negative = false;
  ScanNumber(kNumberTextCapacity, [&](unsigned char c, unsigned int i) {
    if (i == 0 && c == '-') {
      negative = true;
      return;
    }
    magnitude = AddDigit(magnitude, c);
  });
  return static_cast<int>(negative ? 0u - magnitude : magnitude);
}

unsigned long EArchive::ReadUnsigned64Int() {
  unsigned long value = 0;
  ScanNumber(kNumberTextCapacity,
             [&value](unsigned char c, unsigned int) { value = AddDigit(value, c); });
  return value;
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
  const unsigned int size = m_Buffer.GetSize();
  length = std::min(length, size - StartPosition());
  if (length == 0) {
    value.clear();
    return *this;
  }
  value.assign(reinterpret_cast<const char*>(m_Buffer.GetData() + m_ReadPosition), length);
  m_ReadPosition += length;
  return *this;
}

EArchive& EArchive::ReadBlob(EBlob& blob) {
  unsigned int length = ReadUnsignedInt();
  const unsigned int size = m_Buffer.GetSize();
  // A position beyond the end restarts at 0, as for strings, so the clamp below cannot wrap.
  length = std::min(length, size - StartPosition());
  // Size 0 first, so that a new allocation copies none of the blob's old bytes. One spare byte
  // is allocated, so that a payload handed on to an archive takes its terminating zero in place;
  // a blob read again with more bytes (a reused record) doubles its allocation, so that payloads
  // that grow a little from message to message are not reallocated every time.
  blob.Resize(EBlob::ResizeKey(), 0, length, GrowthAllocation(blob, std::uint64_t{length} + 1));
  unsigned char* const data = blob.Resize(EBlob::ResizeKey(), length);
  if (length > 0) CopyBytes(data, m_Buffer.GetData() + m_ReadPosition, length);
  m_ReadPosition += length;
  return *this;
}

EArchive& EArchive::SerializeRawStringIn(std::string& value) {
  const unsigned int size = m_Buffer.GetSize();
  StartPosition();
  value.clear();
  if (m_ReadPosition == size) return *this;
  const char* const begin = reinterpret_cast<const char*>(m_Buffer.GetData() + m_ReadPosition);
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
  std::fputs(SerializeErrorReport(file, line, function).c_str(), stdout);
  std::fflush(stdout);
  std::exit(1);
}

std::string EArchive::SerializeErrorReport(const char* file, int line, const char* function) {
  return std::string("*** Exception in FILE ") + file + ", LINE " + std::to_string(line) + ":\n" +
         function + " - EArchive::SerializeError()\n";
}

EArchive::SerializeErrorHandler EArchive::SetSerializeErrorHandler(SerializeErrorHandler handler) {
  return gSerializeErrorHandler.exchange(handler);
}
