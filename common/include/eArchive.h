// EArchive: the serialisation medium of the library. Numbers are written as decimal text
// followed by one blank, strings and blobs as a length followed by their raw bytes; the reader
// is tolerant and skips whatever is not part of a number. Also home of the one serialisation
// error function and of the vector/map container operations.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "detail/eBlobSize.h"
#include "detail/eContainerRead.h"
#include "detail/eDigits.h"
#include "detail/eNumberText.h"
#include "detail/ePortability.h"
#include "eBlob.h"

enum eArchiveMode { eModeNone = 0, eModeStoring = 1, eModeLoading = 2 };

class EArchive {
 public:
  // Called by SerializeError in place of the default report; see SetSerializeErrorHandler.
  using SerializeErrorHandler = void (*)(const char* file, int line, const char* function);

  EArchive() = default;
  EArchive(const EArchive& other);
  EArchive& operator=(const EArchive& other);
  ~EArchive();

  // Copies mode, valid bytes, both positions, the wrap limit and the wraps counted so far: the
  // copy reads on exactly as the original would, with no fresh allowance of wraps.
  void Copy(const EArchive& other);
  // Mode none, size 0 (allocation kept), both positions 0, no wraps counted.
  void Empty();
  // Stores the mode unchecked (see eArchiveMode).
  void SetMode(int mode) { m_Mode = mode; }
  int GetMode() const { return m_Mode; }
  bool IsStoring() const { return m_Mode == eModeStoring; }
  bool IsLoading() const { return m_Mode == eModeLoading; }
  unsigned int GetReadPosition() const { return m_ReadPosition; }
  unsigned int GetWritePosition() const { return m_WritePosition; }

  // The archive's bytes; the blob's size is the number of valid bytes.
  const EBlob& GetAsEBlob() const { return m_Buffer; }
  void GetAsEBlob(EBlob& blob) const { blob = m_Buffer; }
  // Hands the archive's bytes over without a copy (the blob's size is the number of valid bytes)
  // and leaves the archive as Empty() does, with no allocation.
  EBlob ReleaseAsEBlob();
  // Replaces the contents by a copy of `blob`, read position 0, write position at its end, no
  // wraps counted. With `terminate` a zero byte is stored after the copy and counted in the size (a
  // later write overwrites it). The mode is not touched. A blob of 2^32 - 1 bytes leaves no room
  // for the zero byte: it is refused with std::bad_alloc and the archive is left unchanged.
  void SetFromEBlob(const EBlob& blob, bool terminate);
  // SetFromEBlob with the blob's own allocation, without a copy: the archive takes `blob` over
  // (its capacity too) and leaves it as EBlob::Init() does. The terminating zero byte grows the
  // allocation only when there is no room for it.
  void MoveFromEBlob(EBlob&& blob, bool terminate);

  // The single low-level write: copies `length` bytes at the write position, doubling the
  // allocation as needed. A write position beyond the size restarts at 0. A write that would take
  // the archive beyond 2^32 - 1 bytes is refused with std::bad_alloc, and so is a string longer
  // than that.
  void Append(unsigned int length, const unsigned char* bytes);

  // Writers; each returns the archive for chaining.
  EArchive& operator<<(const unsigned int& value) { return WriteUnsignedInt(value); }
  EArchive& operator<<(const unsigned short& value) { return WriteUnsignedInt(value); }
  EArchive& operator<<(const unsigned char& value) { return WriteUnsignedInt(value); }
  EArchive& operator<<(const bool& value) { return WriteUnsignedInt(value ? 1u : 0u); }
  EArchive& operator<<(const int& value) { return WriteSignedInt(value); }
  EArchive& operator<<(const short& value) { return WriteSignedInt(value); }
  EArchive& operator<<(const signed char& value) { return WriteSignedInt(value); }
  EArchive& operator<<(const unsigned long& value) { return WriteUnsigned64Int(value); }
  // Length as unsigned 64-bit text, then the raw bytes with nothing after them.
  EArchive& operator<<(const std::string& value);
  // "%u " form.
  EArchive& WriteUnsignedInt(unsigned int value) { return WriteNumber(std::uint32_t{value}); }
  // "%d " form.
  EArchive& WriteSignedInt(int value) { return WriteNumber(std::int32_t{value}); }
  // 64-bit decimal digits and one blank.
  EArchive& WriteUnsigned64Int(unsigned long value) { return WriteNumber(std::uint64_t{value}); }
  // Size as unsigned int, then the raw bytes.
  EArchive& WriteBlob(const EBlob& blob);
  // The raw bytes and one line feed; no length.
  EArchive& SerializeRawStringOut(const std::string& value);

  // Readers. Past the end they yield 0 / empty and move the read position one beyond the
  // size, so that the next read starts over at position 0 (a wrap). The archive counts its
  // wraps; one that would exceed the wrap limit is refused through SerializeError, so that no
  // count or stream makes a reader do more than a fixed multiple of the data's work.
  EArchive& operator>>(unsigned int& value) {
    value = ReadUnsignedInt();
    return *this;
  }
  EArchive& operator>>(unsigned short& value);  // truncated to 16 bits
  EArchive& operator>>(unsigned char& value);   // truncated to 8 bits
  EArchive& operator>>(bool& value);            // true for any non-zero 32-bit value
  EArchive& operator>>(int& value);
  EArchive& operator>>(short& value);        // truncated to 16 bits
  EArchive& operator>>(signed char& value);  // truncated to 8 bits
  EArchive& operator>>(unsigned long& value);
  // A 32-bit length, then that many raw bytes, clamped to what remains.
  EArchive& operator>>(std::string& value);
  // Unsigned 32-bit accumulation of one token; wraps silently, '-' counts as digit value -3.
  unsigned int ReadUnsignedInt();
  // As ReadUnsignedInt, negated when the token starts with '-'.
  int ReadSignedInt();
  unsigned long ReadUnsigned64Int();
  // A 32-bit length, then that many raw bytes (clamped to what remains) into `blob`.
  EArchive& ReadBlob(EBlob& blob);
  // Bytes up to the next line feed or the end; the read position is left ON the line feed.
  EArchive& SerializeRawStringIn(std::string& value);
  // Copies the next number token (at most `capacity` - 1 characters, zero-terminated) into
  // `text` and returns its length; 0 when nothing is left.
  unsigned int BufferNumberText(char* text, unsigned int capacity);

  // Reports a record or container that does not match the stream and ends the process:
  // prints "*** Exception in FILE <file>, LINE <line>:\n<function> - EArchive::SerializeError()\n"
  // to standard output, flushes it and exits with status 1.
  [[noreturn]] static void SerializeError(const char* file, int line, const char* function);
  // The report SerializeError prints, for a handler that passes it on (for example in an
  // exception).
  static std::string SerializeErrorReport(const char* file, int line, const char* function);
  // Installs a process-wide replacement for the report above, for test harnesses and fuzzers
  // only (for example one that throws). The handler must not return; if it does, the default
  // report and exit follow. Null restores the default. Returns the previous handler.
  static SerializeErrorHandler SetSerializeErrorHandler(SerializeErrorHandler handler);

  // Number of characters a token may hold in the number readers.
  static constexpr unsigned int kNumberTextCapacity = 30;
  // Wraps to position 0 that a loading archive allows before it refuses the next one.
  static constexpr unsigned int kDefaultWrapLimit = 4;

  // Sets how many wraps to position 0 the reads may make; 0 allows any number.
  void SetWrapLimit(unsigned int limit) { m_WrapLimit = limit; }
  unsigned int GetWrapLimit() const { return m_WrapLimit; }
  // Wraps made since the data was last replaced (SetFromEBlob, Empty).
  unsigned int GetWrapCount() const { return m_WrapCount; }

 private:
  // The tokeniser: finds the next number token (at most `capacity` - 1 characters), hands each
  // character to `sink(character, index)` straight from the buffer, and returns the count.
  template <typename Sink>
  unsigned int ScanNumber(unsigned int capacity, Sink&& sink);
  // Makes room for `length` bytes at the write position (growing by doubling) and moves the
  // write position past them; returns where they go.
  unsigned char* Reserve(unsigned int length);
  // Where `length` bytes can be written at the write position without a new allocation, or null.
  // The capacity may still have to grow to cover them, within the allocation: see Written.
  unsigned char* WritableRoom(unsigned int length);
  // Moves the write position to `end`, past bytes written in place at WritableRoom, and raises the
  // size and (doubling as Append does) the capacity to cover them.
  void Written(unsigned int end);
  // The capacity Append's doubling gives for `end` bytes: twice the capacity (1 from 0), doubled
  // until it holds them, at most the largest blob.
  std::uint64_t GrownCapacity(std::uint64_t end) const;
  // Writes the number's text with one capacity check, straight into the buffer.
  template <typename Number>
  EArchive& WriteNumber(Number value);
  // WriteNumber when the room for the longest text is not there: the text goes through Append.
  template <typename Number>
  EArchive& AppendNumber(Number value);
  // The blob's allocation for `needed` bytes when it must grow (EBlob::GrowthAllocation), at most
  // the largest blob.
  static unsigned int GrowthAllocation(const EBlob& blob, std::uint64_t needed);
  // ReadUnsignedInt for every token that its inline fast path does not take.
  unsigned int ReadUnsignedIntSlow();
  unsigned char* ReserveSlow(unsigned int position, unsigned int length);
  // The read position, wrapped to 0 (and the wrap counted) when it lies beyond the size.
  unsigned int StartPosition();

  // The least allocation a growing archive makes: its capacity still doubles from 1 byte, but a
  // small record's doublings then fit in the first allocation.
  static constexpr unsigned int kSmallestAllocation = 256;

  unsigned int m_ReadPosition = 0;
  unsigned int m_WritePosition = 0;
  int m_Mode = eModeNone;
  unsigned int m_WrapLimit = kDefaultWrapLimit;
  unsigned int m_WrapCount = 0;
  EBlob m_Buffer;
};

// Fast path for the common token: up to fifteen plain digits at the read position, ended by a
// character that cannot continue a number, with five valid bytes there (sixteen for a token of
// more than four digits). One to four digits are taken a byte at a time: for numbers of similar
// length the branches are predicted, so the next read's position does not wait for the digits.
// Longer tokens are taken eight bytes at a time. Anything else (a '-' in the token, text to skip,
// a token near the end of the bytes) goes through the tokeniser. The result is the same: the
// tokeniser's accumulation wraps modulo 2^32 as this one does.
inline unsigned int EArchive::ReadUnsignedInt() {
  using namespace eHal::detail;
  const unsigned int position = m_ReadPosition;
  const std::uint64_t size = m_Buffer.GetSize();
  if (!kLittleEndian || std::uint64_t{position} + 5 > size) return ReadUnsignedIntSlow();
  const unsigned char* const first = m_Buffer.GetData() + position;
  std::uint32_t value;
  unsigned int count = TakeUpToFourDigits(first, value);
  if (count == 0) return ReadUnsignedIntSlow();
  if (count == 4 && DigitValue(first[4]) <= 9) {
    if (std::uint64_t{position} + 16 > size) return ReadUnsignedIntSlow();
    std::uint64_t values;
    count = LeadingDigits(LoadEight(first), values);
    if (count < 8) {
      value = SpellDigits(values, count);
    } else {
      std::uint64_t more;
      const unsigned int extra = LeadingDigits(LoadEight(first + 8), more);
      if (extra == 8) return ReadUnsignedIntSlow();
      value = SpellDigits(values, 8) * kPowersOfTen[extra];
      if (extra > 0) value += SpellDigits(more, extra);
      count += extra;
    }
  }
  if (first[count] == '-') return ReadUnsignedIntSlow();
  m_ReadPosition = position + count + 1;
  return value;
}

inline void ERefusalReport::Raise() const {
  EArchive::SerializeError(file, line, function);
}

inline std::uint64_t EArchive::GrownCapacity(std::uint64_t end) const {
  const unsigned int capacity = m_Buffer.GetCapacity();
  std::uint64_t doubled = capacity == 0 ? 1 : 2 * std::uint64_t{capacity};
  while (doubled < end)
    doubled *= 2;
  return std::min(doubled, eHal::detail::kLargestBlob);
}

inline unsigned char* EArchive::WritableRoom(unsigned int length) {
  const unsigned int position = m_WritePosition;
  const unsigned int size = m_Buffer.GetSize();
  if (position > size) return nullptr;
  const std::uint64_t end = std::uint64_t{position} + length;
  if (end > m_Buffer.Room() && (end > eHal::detail::kLargestBlob ||
                                GrownCapacity(end) > m_Buffer.Allocated(EBlob::ResizeKey()))) {
    return nullptr;
  }
  return m_Buffer.Resize(EBlob::ResizeKey(), size) + position;
}

inline void EArchive::Written(unsigned int end) {
  m_WritePosition = end;
  const unsigned int size = std::max(m_Buffer.GetSize(), end);
  const unsigned int capacity =
      end <= m_Buffer.Room() ? 0 : static_cast<unsigned int>(GrownCapacity(end));
  m_Buffer.Resize(EBlob::ResizeKey(), size, capacity);
}

// Inlined into every writer of a number: a call per number costs as much as the digits.
template <typename Number>
[[gnu::always_inline]] inline EArchive& EArchive::WriteNumber(Number value) {
  unsigned char* const out = WritableRoom(eHal::detail::kLongestNumberText);
  if (out == nullptr) return AppendNumber(value);
  Written(
      static_cast<unsigned int>(eHal::detail::WriteNumberText(out, value) - m_Buffer.GetData()));
  return *this;
}

inline unsigned char* EArchive::Reserve(unsigned int length) {
  const unsigned int position = m_WritePosition;
  const unsigned int size = m_Buffer.GetSize();
  const unsigned int room = m_Buffer.Room();
  if (position > size || length > room - position) return ReserveSlow(position, length);
  m_WritePosition = position + length;
  return m_Buffer.Resize(EBlob::ResizeKey(), std::max(size, position + length)) + position;
}

// Container operations. Writers need a storing archive, readers refuse only a storing one;
// counts are written as unsigned 64-bit and read as unsigned 32-bit. A reader reads no further
// than the data, whatever its count says: it stops once a read has run past the end (see
// eHal::detail::ReadCounted).

template <typename ItemType>
void SerializeOut(EArchive& archive, const std::vector<ItemType>& items) {
  if (!archive.IsStoring()) {
    EArchive::SerializeError("common/include/eArchive", 157,
                             "template<ItemType> SerializeOut(..,vector)");
  }
  archive.WriteUnsigned64Int(items.size());
  for (const ItemType& item : items)
    archive << item;
}

template <typename ItemType>
void SerializeIn(EArchive& archive, std::vector<ItemType>& items) {
  items.clear();
  if (archive.IsStoring()) {
    EArchive::SerializeError("common/include/eArchive", 172,
                             "template<ItemType> SerializeIn(..,vector)");
  }
  const unsigned int count = archive.ReadUnsignedInt();
  items.reserve(std::min<std::size_t>(count, eHal::detail::RemainingBytes(archive) / 2));
  eHal::detail::ReadCounted(archive, count, [&](unsigned int) {
    ItemType item{};
    archive >> item;
    items.push_back(std::move(item));
  });
}

template <typename KeyType, typename ItemType>
void SerializeOut(EArchive& archive, const std::map<KeyType, ItemType>& items) {
  if (!archive.IsStoring()) {
    EArchive::SerializeError("common/include/eArchive", 270,
                             "template<KeyType,ItemType> SerializeOut(..,map)");
  }
  archive.WriteUnsigned64Int(items.size());
  for (const auto& entry : items)
    archive << entry.first << entry.second;
}

template <typename KeyType, typename ItemType>
void SerializeIn(EArchive& archive, std::map<KeyType, ItemType>& items) {
  eHal::detail::StartMapRead(archive, items);
  eHal::detail::ReadCounted(archive, archive.ReadUnsignedInt(),
                            [&](unsigned int) { eHal::detail::ReadMapEntry(archive, items); });
}
