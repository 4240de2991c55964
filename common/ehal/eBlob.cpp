#include "eBlob.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "detail/eBlobSize.h"
#include "detail/eDigits.h"
#include "eArchive.h"
#include "eRecordDescription.h"
#include "eRecordSchema.h"

using eHal::detail::Layout;
using eHal::detail::Property;

namespace {

constexpr unsigned int kSignature = 0x11223345;
constexpr unsigned int kOldSignature = 0x11223344;

bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

// Allocations come from the C allocator so that the archive's growth can extend them in place
// (see EBlob::Grow). Those made here are zeroed, so that reserved bytes, which GetAt and Memset
// may reach, never hold stale memory.
unsigned char* Allocate(unsigned int n) {
  void* const data = std::calloc(n, 1);
  if (data == nullptr) throw std::bad_alloc();
  return static_cast<unsigned char*>(data);
}

void AppendHexByte(std::string& text, unsigned char byte) {
  text.push_back(eHal::detail::HexDigit(byte >> 4));
  text.push_back(eHal::detail::HexDigit(byte));
}

}  // namespace

EBlob::EBlob(const void* data, unsigned int length) {
  SetData(data, length);
}

EBlob::EBlob(const void* first, unsigned int firstLength, const void* second,
             unsigned int secondLength) {
  SetData(first, firstLength, second, secondLength);
}

EBlob::EBlob(const EBlob& other) {
  Copy(other);
}

EBlob& EBlob::operator=(const EBlob& other) {
  Copy(other);
  return *this;
}

EBlob::~EBlob() {
  FreeBuf();
}

void EBlob::Init() {
  m_Data = nullptr;
  m_Size = 0;
  m_Capacity = 0;
  m_Allocated = 0;
}

void EBlob::Copy(const EBlob& other) {
  if (this == &other) return;
  SetData(other.m_Data, other.m_Size);
}

void EBlob::FreeBuf() {
  if (m_Data == nullptr) return;
  std::free(m_Data);
  m_Data = nullptr;
}

void EBlob::NewBuf(unsigned int n) {
  FreeBuf();
  if (n == 0) return;
  m_Data = Allocate(n);
  m_Capacity = n;
  m_Allocated = n;
}

void EBlob::Empty(unsigned int n) {
  m_Size = 0;
  if (Room() < n) NewBuf(n);
}

void EBlob::SetSize(unsigned int n, bool keep) {
  m_Size = keep ? std::min(m_Size, n) : 0;
  if (n <= Room()) return;
  unsigned char* const data = Allocate(n);
  if (m_Size > 0) std::memcpy(data, m_Data, m_Size);
  std::free(m_Data);
  m_Data = data;
  m_Capacity = n;
  m_Allocated = n;
}

void EBlob::Reallocate(unsigned int capacity, unsigned int keep, unsigned int allocation) {
  if (m_Data != nullptr && capacity <= m_Allocated) {
    m_Capacity = capacity;
    return;
  }
  // With nothing to keep the old bytes are dropped first, so that realloc does not copy them.
  if (keep == 0) {
    m_Size = 0;
    FreeBuf();
  }
  // Growing keeps the old bytes; realloc may extend the allocation where it lies, which spares
  // the copy and, more importantly, touching (and faulting in) fresh memory on every doubling.
  allocation = std::max(capacity, allocation);
  void* const data = std::realloc(m_Data, allocation);
  if (data == nullptr) throw std::bad_alloc();
  m_Data = static_cast<unsigned char*>(data);
  m_Capacity = capacity;
  m_Allocated = allocation;
}

void EBlob::ReserveForCopy(unsigned int length) {
  if (m_Data == nullptr || length > m_Allocated) {
    const std::uint64_t allocation = GrowthAllocation(ResizeKey(), length);
    FreeBuf();
    m_Data = static_cast<unsigned char*>(std::malloc(allocation));
    if (m_Data == nullptr) throw std::bad_alloc();
    m_Allocated = static_cast<unsigned int>(std::min(allocation, eHal::detail::kLargestBlob));
  }
  m_Capacity = length;
}

void EBlob::Swap(EBlob& other) {
  std::swap(m_Data, other.m_Data);
  std::swap(m_Size, other.m_Size);
  std::swap(m_Capacity, other.m_Capacity);
  std::swap(m_Allocated, other.m_Allocated);
}

bool EBlob::TruncateToSize(unsigned int n) {
  if (m_Size < n) return false;
  m_Size = n;
  return true;
}

void EBlob::SetData(const void* data, unsigned int length) {
  if (Room() < length) {
    m_Size = 0;
    if (data != nullptr) {
      ReserveForCopy(length);
    } else {
      NewBuf(length);
    }
  }
  if (m_Data != nullptr && data != nullptr && length > 0) std::memmove(m_Data, data, length);
  m_Size = length;
}

void EBlob::SetData(const void* first, unsigned int firstLength, const void* second,
                    unsigned int secondLength) {
  if (first == nullptr && second == nullptr) return;
  const unsigned int total = eHal::detail::BlobSizeOfSum(firstLength, secondLength);
  if (total == 0) return;
  if (total > Room()) {
    Empty(0);
    NewBuf(total);
  }
  if (first != nullptr && firstLength > 0) std::memmove(m_Data, first, firstLength);
  if (second != nullptr && secondLength > 0) {
    std::memmove(m_Data + (first != nullptr ? firstLength : 0), second, secondLength);
  }
  m_Size = total;
}

bool EBlob::AppendGrowing(const EBlob& other) {
  const unsigned int otherSize = other.m_Size;
  if (!eHal::detail::FitsInBlob(m_Size, otherSize)) return false;
  const unsigned int total = m_Size + otherSize;
  if (Room() < total) SetSize(total, true);
  if (Room() < total) return false;
  if (otherSize > 0) std::memmove(m_Data + m_Size, other.m_Data, otherSize);
  m_Size = total;
  return true;
}

unsigned int EBlob::Memset(unsigned char value, unsigned int offset, unsigned int count) {
  const unsigned int room = Room();
  offset = std::min(offset, room);
  const std::uint64_t end = std::uint64_t{offset} + count;
  if (end <= room && count != 0) {
    std::memset(m_Data + offset, value, count);
    m_Size = std::max(m_Size, static_cast<unsigned int>(end));
    return static_cast<unsigned int>(end);
  }
  if (room > offset) std::memset(m_Data + offset, value, room - offset);
  m_Size = std::max(m_Size, room);
  return room;
}

bool EBlob::RemoveLeadingBytes(unsigned int n) {
  if (m_Size <= n) {
    m_Size = 0;
    return true;
  }
  if (n == 0) return false;
  std::memmove(m_Data, m_Data + n, m_Size - n);
  m_Size -= n;
  return true;
}

void EBlob::ForceSize(unsigned int n) {
  if (n == m_Size) return;
  if (n < m_Size) {
    std::memmove(m_Data, m_Data + (m_Size - n), n);
    m_Size = n;
    return;
  }
  unsigned char* const data = Allocate(n);
  if (m_Size > 0) std::memcpy(data + (n - m_Size), m_Data, m_Size);
  std::free(m_Data);
  m_Data = data;
  m_Size = n;
  m_Capacity = n;
  m_Allocated = n;
}

bool EBlob::GetAt(unsigned char* destination, unsigned int offset, unsigned int length) const {
  if (std::uint64_t{offset} + length > Room()) return false;
  if (length > 0) std::memcpy(destination, m_Data + offset, length);
  return true;
}

bool EBlob::GetAt(EBlob& destination, unsigned int offset, unsigned int length) const {
  if (std::uint64_t{offset} + length > m_Size) return false;
  destination.Empty(length);
  if (length > 0) std::memmove(destination.m_Data, m_Data + offset, length);
  destination.m_Size = length;
  return true;
}

bool EBlob::IsEqual(const EBlob& other) const {
  if (m_Size != other.m_Size) return false;
  return m_Size == 0 || std::memcmp(m_Data, other.m_Data, m_Size) == 0;
}

bool EBlob::Compare(const unsigned char* bytes, unsigned int length) const {
  if (bytes == nullptr || length == 0 || length > m_Size) return false;
  return std::memcmp(m_Data, bytes, length) == 0;
}

bool EBlob::Compare(const EBlob& other, unsigned int length) const {
  if (length > other.m_Size) return false;
  return Compare(other.m_Data, length);
}

bool EBlob::operator<(const EBlob& other) const {
  if (other.m_Data == nullptr) return false;
  if (m_Data == nullptr) return true;
  const unsigned int common = std::min(m_Size, other.m_Size);
  const int order = common == 0 ? 0 : std::memcmp(m_Data, other.m_Data, common);
  if (order != 0) return order < 0;
  return m_Size < other.m_Size;
}

EBlob& EBlob::operator~() {
  for (unsigned int i = 0; i < m_Size; ++i)
    m_Data[i] = static_cast<unsigned char>(~m_Data[i]);
  return *this;
}

unsigned int EBlob::IncrementBy(unsigned int n) {
  if (m_Size == 0 || n == 0) return 0;
  unsigned int carry = 0;
  for (unsigned int k = 0; k < m_Size; ++k) {
    unsigned char& byte = m_Data[m_Size - 1 - k];
    const unsigned int addend = k < 4 ? (n >> (8 * k)) & 0xFF : 0;
    const unsigned int sum = byte + addend + carry;
    byte = static_cast<unsigned char>(sum);
    carry = sum >> 8;
  }
  return carry;
}

std::string EBlob::GetHexString() const {
  std::string text;
  text.reserve(std::size_t{m_Size} * 3);
  for (unsigned int i = 0; i < m_Size; ++i) {
    AppendHexByte(text, m_Data[i]);
    text.push_back(' ');
  }
  return text;
}

void EBlob::SetHexString(const std::string& text) {
  // Every byte takes at least one character, so the text's length bounds the bytes.
  const unsigned int most = eHal::detail::BlobSize(text.size());
  m_Size = 0;
  if (most > Room()) NewBuf(most);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsHexDigit(text[i])) continue;
    unsigned char byte = static_cast<unsigned char>(AsciiToHex(text[i]) << 4);
    if (i + 1 < text.size()) byte |= AsciiToHex(text[++i]);
    m_Data[m_Size++] = byte;
  }
}

std::string EBlob::GetHexDumpOfPacket() const {
  std::string text;
  text.reserve(std::size_t{m_Size} * 4 + 16);
  for (unsigned int i = 0; i < m_Size; ++i) {
    if (i % 16 == 0) {
      if (i != 0) text.push_back('\n');
      text.push_back('\t');
      for (int shift = 28; shift >= 0; shift -= 4)
        text.push_back(eHal::detail::HexDigit(i >> shift, true));
      text += " :";
    }
    text.push_back(' ');
    AppendHexByte(text, m_Data[i]);
    if ((i + 1) % 8 == 0) text.push_back(' ');
  }
  return text;
}

unsigned char EBlob::AsciiToHex(char c) const {
  return static_cast<unsigned char>(std::max(eHal::detail::HexValue(c), 0));
}

char EBlob::HexToAscii(char value) const {
  return eHal::detail::HexDigit(static_cast<unsigned char>(value));
}

void EBlob::HexToText(char value, char* text) const {
  const unsigned char byte = static_cast<unsigned char>(value);
  text[0] = eHal::detail::HexDigit(byte >> 4);
  text[1] = eHal::detail::HexDigit(byte);
  text[2] = ' ';
  text[3] = '\0';
}

// The blob's archive form: a signature, then its size as an unsigned int and its raw bytes. The
// old form carried hex text up to the end of the line.
struct EBlob::Schema {
  struct RawBytes {
    static void Write(EArchive& archive, const EBlob& blob) { archive.WriteBlob(blob); }
    static void Read(EArchive& archive, EBlob& blob) { archive.ReadBlob(blob); }
    static void Describe(ERecordVisitor& visitor, const char* name, const EBlob& blob) {
      visitor.Bytes(name, blob);
    }
    static EValueType Type() { return EValueType::RawBytes(); }
  };
  struct HexLine {
    static void Read(EArchive& archive, EBlob& blob) {
      std::string text;
      archive.SerializeRawStringIn(text);
      blob.SetHexString(text);
    }
    static EValueType Type() { return EValueType::HexLine(); }
  };

  static constexpr auto kFields = std::make_tuple(Property<EBlob>("Bytes", RawBytes{}));
  static constexpr auto kReadOnlyFields = std::make_tuple(Property<EBlob>("HexText", HexLine{}));
  static constexpr const char* kHexTextOnly[] = {"HexText"};
  static constexpr Layout kLayouts[] = {{kSignature}, {kOldSignature, kHexTextOnly}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eBlob", 536,
                                              "EBlob::SerializeIn"};
};

void EBlob::SerializeOut(EArchive& archive) const {
  eHal::detail::Write<Schema>(archive, *this);
}

void EBlob::SerializeIn(EArchive& archive) {
  eHal::detail::ReadRecord<Schema>(archive, *this);
}

void EBlob::Describe(ERecordVisitor& visitor, const char* name) const {
  visitor.BeginRecord(name);
  visitor.Bytes("Bytes", *this);
  visitor.EndRecord();
}

std::vector<ERecordLayout> EBlob::Layouts() {
  return eHal::detail::LayoutsOf<Schema>();
}

const ERecordDescription& EBlob::Form() {
  return eHal::detail::KeptDescription<Schema>();
}

const ERecordDescription& EBlob::Description() {
  static const ERecordDescription description = [] {
    ERecordDescription blob;
    blob.fields = {{"Bytes", EValueType::Blob()}};
    return blob;
  }();
  return description;
}

EArchive& operator<<(EArchive& archive, const EBlob& blob) {
  blob.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EBlob& blob) {
  blob.SerializeIn(archive);
  return archive;
}
