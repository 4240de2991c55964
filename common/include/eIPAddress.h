// EIPAddress: the one value type for IPv4 and IPv6 addresses, a family tag and sixteen address
// bytes in network order. It orders every IPv4 address before every IPv6 one (map key of the
// address tables), does the address arithmetic used to walk ranges, and is a serialisable record.
#pragma once

#include <string>

#include "eRecord.h"

class EBlob;

namespace eHal {
class Integer16Byte;
}

// Address families; any other value is an unknown type, handled as 16 bytes.
enum eIPAddressType : unsigned int { eIPv4Address = 17, eIPv6Address = 18 };

class EIPAddress : public ERecord<EIPAddress> {
 public:
  static constexpr unsigned int kMaxAddressLength = 16;

  // IPv4, all bytes zero.
  EIPAddress() = default;
  EIPAddress(const EIPAddress& other) = default;
  EIPAddress& operator=(const EIPAddress& other) = default;

  // The virtual operations, in this order (derived classes override them).
  virtual ~EIPAddress() = default;
  // IPv4, all 16 bytes zero.
  virtual void Empty();
  // The given type, all 16 bytes zero.
  virtual void Empty(int type);
  // Exchanges type and all 16 bytes.
  virtual void Swap(EIPAddress& other);
  // Writes the current layout (see Schema); a derived class adds its own fields.
  virtual void SerializeOut(EArchive& archive) const;
  // Reads the current layout or the old IPv4-only one.
  virtual void SerializeIn(EArchive& archive);

  unsigned int GetType() const { return m_Type; }
  void SetType(unsigned int type) { m_Type = type; }
  // The 16 address bytes (only the first 4 matter for IPv4).
  const unsigned char* GetAddress() const { return m_Address; }
  // 4 for IPv4, 16 for every other type.
  unsigned int GetAddressLength() const { return AddressLength(m_Type); }
  static unsigned int AddressLength(unsigned int type) { return type == eIPv4Address ? 4 : 16; }

  // Sets the type and copies 4 or 16 bytes by it; nothing changes for a null pointer.
  void SetAddress(const unsigned char* bytes, unsigned int type);
  // Zeroes all 16 bytes; then, for a non-null pointer, sets the type and copies `length` bytes
  // (at most 16).
  void SetAddress(const unsigned char* bytes, unsigned int length, unsigned int type);
  // Sets the type and copies min(type length, blob size) bytes; later bytes keep their values.
  void SetAddress(const EBlob& blob, unsigned int type);
  // Sets the type and takes all 16 bytes from the integer, most significant first.
  void SetAddress(const eHal::Integer16Byte& value, unsigned int type);
  // A new blob of 4 or 16 bytes.
  EBlob GetAddressAsBlob() const;
  // Copies the 4 or 16 bytes into `blob` at `offset` when they fit in its capacity, raising its
  // size to cover them; otherwise writes nothing.
  void Encode(EBlob& blob, int offset) const;
  // Sets the type and copies 4 or 16 bytes from the blob at `offset`; bytes that lie outside
  // the blob's allocation are not read (the address bytes then keep their values).
  void Decode(const EBlob& blob, int offset, int type);
  // A new IPv4 address made of bytes 12-15 (not checked to be a mapped address).
  EIPAddress GetMappedIPv4FromIPv6() const;
  // Treats the first `bitLength` bits as a number and returns its n-th byte from the least
  // significant end, together with the bits above it (callers keep the low 8 bits).
  int GetNthByteFromOffset(int bitLength, int n) const;
  // Writes `value` as the n-th byte from the least significant end of the first `bitLength`
  // bits; the inverse of GetNthByteFromOffset.
  void SetNthByteAtOffset(unsigned char value, int bitLength, int n);
  // Clears bits first..end-1, numbered from the most significant bit of byte 0, whatever the
  // type. Nothing happens unless first < end and first < 128; an end above 128 clears to the end.
  void Zero(unsigned int first, unsigned int end);

  // Same type and the same 4 or 16 bytes.
  bool IsEqual(const EIPAddress& other) const;
  // Compares with the IPv4 address parsed from dotted-decimal text.
  bool IsEqual(const std::string& text) const;
  bool operator==(const EIPAddress& other) const { return IsEqual(other); }
  bool operator!=(const EIPAddress& other) const { return !IsEqual(other); }
  // By type first (every IPv4 before every IPv6), then the 4 or 16 bytes as unsigned bytes.
  bool operator<(const EIPAddress& other) const;
  bool operator>=(const EIPAddress& other) const { return !(*this < other); }
  bool operator<=(const EIPAddress& other) const { return *this < other || IsEqual(other); }

  // True for an unknown type, else when all 4 or 16 bytes are zero.
  bool IsZero() const;
  // 127.x.x.x, or ::1.
  bool IsLoopback() const;
  // IPv4 224.0.0.0 and above (240.0.0.0/4 included), or IPv6 ff00::/8.
  bool IsMulticast() const;
  // The first 12 bytes are ten zeros and 0xFF 0xFF (the type is not consulted).
  bool IsIPv4MappedIPv6Address() const;
  // 0 not IPv6 or ::, 1 loopback, 2 link-local multicast, 3 site-local multicast, 4 other
  // multicast, 5 link-local (fe80::/10), 6 site-local (fec0::/10), 7 global.
  unsigned int GetIPv6Scope() const;

  // Adds n units of the last prefix bit, modulo the address width. IPv4 shifts n by
  // (32 - prefixLength) mod 32; IPv6 uses IncrementIPv6; other types are left alone.
  void Increment(unsigned int n, int prefixLength);
  // Adds n << (128 - prefixLength) to the 16 bytes as one big-endian number, modulo 2^128; bits
  // shifted beyond the top are lost.
  void IncrementIPv6(unsigned int n, int prefixLength);
  // Adds the value to all 16 bytes read as one big-endian number, whatever the type.
  void Increment(const eHal::Integer16Byte& value);
  void Increment(const EIPAddress& other);
  // Bytewise sum with carry over this address's length; the carry out of byte 0 is lost. The
  // result is always typed IPv4, and callers set the type they need afterwards.
  EIPAddress operator+(const EIPAddress& other) const;

  // "192.168.0.1"; IPv6 as eight upper-case hex groups without compression
  // ("FE80:0:0:0:0:0:0:1"); "unknown type" for any other type.
  std::string GetAsString() const;

  struct Schema;  // the archive form, in eIPAddress.cpp

 private:
  eHal::Integer16Byte GetAsInteger() const;

  unsigned int m_Type = eIPv4Address;
  unsigned char m_Address[kMaxAddressLength] = {};
};

extern template class ERecord<EIPAddress>;
