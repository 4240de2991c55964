// EBlob: the library's owned byte buffer, with separate size (valid bytes) and capacity
// (allocation). It stores archives, payloads, addresses and keys, compares and orders bytewise,
// does big-endian arithmetic on its contents and has hex-string, hex-dump and archive forms.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "eRecord.h"

class EArchive;

class EBlob {
 public:
  EBlob() = default;
  // Copies `length` bytes from `data` (nothing is copied when `data` is null).
  EBlob(const void* data, unsigned int length);
  // Two-part form of SetData.
  EBlob(const void* first, unsigned int firstLength, const void* second, unsigned int secondLength);
  EBlob(const EBlob& other);
  EBlob& operator=(const EBlob& other);
  // Moves take the other's allocation, bytes and capacity and leave it as Init() does.
  EBlob(EBlob&& other) noexcept { TakeFrom(other); }
  EBlob& operator=(EBlob&& other) noexcept;
  ~EBlob();

  // Sets data, size and capacity to zero without freeing anything.
  void Init();
  // Copies the other blob's valid bytes (no-op on self).
  void Copy(const EBlob& other);
  // Releases the allocation; size and capacity keep their values, so the blob must be given a
  // new allocation (NewBuf, SetSize, SetData) before its bytes are used again.
  void FreeBuf();
  // Replaces the allocation by `n` bytes (none when `n` is 0); the size is not changed.
  void NewBuf(unsigned int n);
  // Size 0; reallocates to exactly `n` bytes (contents dropped) only when the capacity is below.
  void Empty(unsigned int n = 0);
  // Reserves `n` bytes. Without `keep` the size becomes 0, with it the size is clamped to `n`
  // and the valid bytes survive a reallocation. Never raises the size.
  void SetSize(unsigned int n, bool keep);
  void Swap(EBlob& other);
  // Shrinks the size to `n`; false (and no change) when the size is below `n`.
  bool TruncateToSize(unsigned int n);

  // Copies `length` bytes (or leaves them uninitialised-zero when `data` is null); size = length.
  void SetData(const void* data, unsigned int length);
  // Stores `first` then `second`; when `first` is null `second` goes to index 0. The size is
  // the total either way. Nothing happens for a total of 0 or when both sources are null.
  void SetData(const void* first, unsigned int firstLength, const void* second,
               unsigned int secondLength);
  // Appends the other's valid bytes, growing to the exact size needed; false if that fails.
  bool Append(const EBlob& other) {
    const unsigned int room = Room();
    if (m_Size > room || other.m_Size > room - m_Size) return AppendGrowing(other);
    if (other.m_Size > 0) std::memmove(m_Data + m_Size, other.m_Data, other.m_Size);
    m_Size += other.m_Size;
    return true;
  }
  bool operator+=(const EBlob& other) { return Append(other); }
  // Sets `count` bytes from `offset`, clipped to the capacity (never allocates); raises the
  // size to cover them and returns the end index of what was set.
  unsigned int Memset(unsigned char value, unsigned int offset, unsigned int count);
  // Drops the first `n` bytes; true when anything (or everything) was removed, false for 0.
  bool RemoveLeadingBytes(unsigned int n);
  // Resizes the contents as a big-endian number: zeros are added in front or leading bytes cut.
  void ForceSize(unsigned int n);

  // Copies `length` bytes from `offset`; bounded by the capacity, so reserved bytes are readable.
  bool GetAt(unsigned char* destination, unsigned int offset, unsigned int length) const;
  // Copies `length` valid bytes from `offset` into `destination`; false beyond the size.
  bool GetAt(EBlob& destination, unsigned int offset, unsigned int length) const;

  bool IsEqual(const EBlob& other) const;
  bool operator==(const EBlob& other) const { return IsEqual(other); }
  bool operator!=(const EBlob& other) const { return !IsEqual(other); }
  // Prefix test: true when the first `length` bytes equal `bytes`; false for null or length 0.
  bool Compare(const unsigned char* bytes, unsigned int length) const;
  // Prefix test against the other's first `length` bytes (false if it holds fewer).
  bool Compare(const EBlob& other, unsigned int length) const;
  // Lexicographic over unsigned bytes; a blob without allocation sorts before every other.
  bool operator<(const EBlob& other) const;

  // Inverts every valid byte in place.
  EBlob& operator~();
  // Adds `n` to the contents read as one big-endian number; returns the carry out (1 on wrap).
  unsigned int IncrementBy(unsigned int n);

  // "0A FF " for the bytes 0x0A 0xFF: two upper-case digits and a blank per byte.
  std::string GetHexString() const;
  // Parses hex text: non-hex characters are skipped, and the character after a hex digit is
  // always taken as the low half of the byte ("A B" gives 0xA0 0xB0).
  void SetHexString(const std::string& text);
  void SetFromSerializableString(const std::string& text) { SetHexString(text); }
  // Log form: 16 bytes per line, each line "\t%08x :" then " XX" per byte, an extra blank
  // after every eighth byte; lines separated by "\n"; no final line feed.
  std::string GetHexDumpOfPacket() const;

  // Hex digit value of a character; 0 for anything that is not a hex digit.
  unsigned char AsciiToHex(char c) const;
  // Upper-case hex digit of the low four bits.
  char HexToAscii(char value) const;
  // Writes two hex digits, a blank and a terminating zero into `text` (four characters).
  void HexToText(char value, char* text) const;

  // The blob's archive form (see Form): its signature, size and raw bytes; the reader also takes
  // the old hex text.
  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);
  // Hands the blob to `visitor` as a record of one field, "Bytes", the blob in its archive form.
  void Describe(ERecordVisitor& visitor, const char* name = "") const;
  // The layouts the reader accepts: the current one (the bytes) and the old hex text.
  static std::vector<ERecordLayout> Layouts();
  // The archive form of every blob, wherever one travels: signature, layouts and refusal report.
  static const ERecordDescription& Form();
  // A blob as a registered record: one field, "Bytes", of type blob.
  static const ERecordDescription& Description();

  struct Schema;  // the archive form, in eBlob.cpp

  // Valid bytes (may be null when nothing is allocated).
  const unsigned char* GetData() const { return m_Data; }
  unsigned int GetSize() const { return m_Size; }
  unsigned int GetCapacity() const { return m_Capacity; }
  // The valid bytes as a view; empty when nothing is allocated.
  std::string_view GetView() const {
    if (m_Data == nullptr) return {};
    return std::string_view(reinterpret_cast<const char*>(m_Data), m_Size);
  }
  // Bytes usable without a new allocation: the capacity, or 0 when nothing is allocated.
  unsigned int Room() const { return m_Data != nullptr ? m_Capacity : 0; }

  // The key to Resize: only the archive (and the blob itself) can make one.
  class ResizeKey {
    friend class EArchive;
    friend class EBlob;
    // Provided rather than defaulted, so that `ResizeKey{}` is no aggregate anyone may build.
    ResizeKey() {}
  };
  // The archive's one access to the bytes, for a writer that fills reserved bytes before its size
  // covers them. When `capacity` exceeds the room, the capacity becomes `capacity`, keeping the
  // valid bytes below `size` and leaving the others uninitialised; the allocation behind it grows
  // only when it is smaller, and then to at least `allocation` bytes (see Reallocate). Then the
  // size becomes `size`, which must not exceed the room, and the bytes are returned for writing.
  unsigned char* Resize(ResizeKey, unsigned int size, unsigned int capacity = 0,
                        unsigned int allocation = 0) {
    if (capacity > Room()) {
      if (m_Data != nullptr && capacity <= m_Allocated) {
        m_Capacity = capacity;  // the allocation already holds it
      } else {
        Reallocate(capacity, std::min(size, m_Size), allocation);
      }
    }
    m_Size = size;
    return m_Data;
  }
  // The bytes allocated behind the capacity (0 without an allocation), for the archive's writes in
  // place.
  unsigned int Allocated(ResizeKey) const { return m_Data != nullptr ? m_Allocated : 0; }
  // Growing to `needed` bytes allocates those, or twice an existing allocation when that is more.
  std::uint64_t GrowthAllocation(ResizeKey, std::uint64_t needed) const {
    return std::max(needed, 2 * std::uint64_t{Allocated(ResizeKey())});
  }

 private:
  // Append when the allocation must first grow to the exact size needed.
  bool AppendGrowing(const EBlob& other);
  // Resize's growth to a capacity of `capacity` bytes whose first `keep` bytes are the valid
  // bytes; the others are left uninitialised rather than zeroed. The capacity is what the blob
  // reports and bounds every access; the allocation behind it may be larger, so that a writer that
  // grows its capacity by doubling (the archive) can ask for room for several doublings at once.
  // An allocation that already holds `capacity` bytes is kept; otherwise it becomes
  // max(`capacity`, `allocation`) bytes.
  void Reallocate(unsigned int capacity, unsigned int keep, unsigned int allocation);
  // Makes the capacity exactly `length` (above the room) for bytes about to be copied over all of
  // it: within the allocation when it holds them, else in a new one, left uninitialised since the
  // copy fills it, whose GrowthAllocation spares a reused blob that grows a little from
  // reallocating every time.
  void ReserveForCopy(unsigned int length);
  // Takes the other's allocation and leaves it as Init() does.
  void TakeFrom(EBlob& other) noexcept {
    m_Data = other.m_Data;
    m_Size = other.m_Size;
    m_Capacity = other.m_Capacity;
    m_Allocated = other.m_Allocated;
    other.Init();
  }

  unsigned char* m_Data = nullptr;
  unsigned int m_Size = 0;
  unsigned int m_Capacity = 0;
  unsigned int m_Allocated = 0;  // bytes allocated at m_Data, at least the capacity
};

inline EBlob& EBlob::operator=(EBlob&& other) noexcept {
  if (this == &other) return *this;
  FreeBuf();
  TakeFrom(other);
  return *this;
}

EArchive& operator<<(EArchive& archive, const EBlob& blob);
EArchive& operator>>(EArchive& archive, EBlob& blob);
