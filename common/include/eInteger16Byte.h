// eHal::Integer16Byte: a 128-bit unsigned integer kept as four 32-bit words, most significant
// first. It carries the arithmetic on IPv6 addresses: byte 0 is the most significant byte, so
// sixteen address bytes in network order are one big-endian number.
#pragma once

#include "eRecord.h"

class EBlob;

namespace eHal {

class Integer16Byte : public ERecord<Integer16Byte> {
 public:
  Integer16Byte() = default;
  // A value whose low 64 bits are `low`.
  explicit Integer16Byte(unsigned long low);
  // Zero, then byte i becomes byte i of the blob for every byte it holds (at most 16 are used),
  // so a 4-byte blob fills the most significant end.
  explicit Integer16Byte(const EBlob& blob);

  // The 16 bytes, big-endian.
  void Set(const unsigned char* bytes);
  void Get(unsigned char* bytes) const;
  // One byte by index, 0 the most significant; an index outside 0..15 is ignored / reads 0.
  void SetByte(int index, unsigned char value);
  unsigned char operator[](int index) const;

  // Set or clear the bits from `first` up to but excluding `end`, numbering the 128 bits from
  // the most significant one (bit 0) to the least (bit 127). Nothing happens unless
  // 0 <= first < end and first < 128; an end above 128 stops at the last bit.
  void One(int first, int end);
  void Zero(int first, int end);

  // Addition modulo 2^128, carrying across the words.
  Integer16Byte& operator+=(const Integer16Byte& other);
  Integer16Byte operator+(const Integer16Byte& other) const;
  // Shift towards the most significant end; bits shifted beyond the top are lost, so a shift
  // of 128 or more gives zero.
  Integer16Byte& operator<<=(unsigned int shift);

  bool operator==(const Integer16Byte& other) const;
  bool operator!=(const Integer16Byte& other) const { return !(*this == other); }

  struct Schema;  // the archive form, in eInteger16Byte.cpp

 private:
  void ApplyBits(int first, int end, bool set);

  unsigned int m_Words[4] = {0, 0, 0, 0};
};

}  // namespace eHal

extern template class ERecord<eHal::Integer16Byte>;
