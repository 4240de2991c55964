// EUID: a 64-bit identifier kept as eight bytes, most significant first (world-wide names, clock
// identities, interface identifiers), with the modified EUI-64 conversions between identifiers,
// MAC addresses and IPv6 link-local addresses.
#pragma once

#include <string>

#include "eBlob.h"
#include "eRecord.h"

class EIPAddress;
class EMACAddress;

class EUID : public ERecord<EUID> {
 public:
  static constexpr unsigned int kLength = 8;

  // All zero.
  EUID() = default;
  EUID(const EUID& other) = default;
  EUID& operator=(const EUID& other);
  ~EUID() = default;

  void Copy(const EUID& other);
  // All zero.
  void Empty();
  void Swap(EUID& other);

  bool operator!=(const EUID& other) const;
  bool operator==(const EUID& other) const { return !(*this != other); }

  // The eight bytes, most significant first.
  const unsigned char* GetId() const { return m_Id; }
  // The bytes as a big-endian 64-bit number.
  unsigned long GetAsUint64() const;
  // A new 8-byte blob.
  EBlob GetAsBlob() const;
  // All zero, then the first min(length, 8) bytes from a non-null source.
  void SetId(const unsigned char* bytes, unsigned long length);
  // The first eight bytes of the blob; a shorter blob is padded with zeros at the END.
  void SetId(const EBlob& bytes);

  // The bytes as characters up to the first zero byte, at most eight.
  std::string GetAsASCIIString() const;
  // "00:11:22:ff:fe:33:44:55".
  std::string GetAsString() const;
  // "00 11 22 ff fe 33 44 55".
  std::string GetAsByteString() const;

  struct Schema;  // the archive form, in eUid64.cpp

 private:
  unsigned char m_Id[kLength] = {};
};

extern template class ERecord<EUID>;

namespace eHal {
// m0^0x02 m1 m2 FF FE m3 m4 m5 from a MAC address of at least six bytes; 00 00 00 FF FE 00 00 00
// from a shorter one.
void MacToUid64(const EMACAddress& mac, EUID& id);
// When bytes 3 and 4 are FF FE: the MAC address becomes b0^0x02 b1 b2 b5 b6 b7 and the result is
// true. Otherwise the MAC address is untouched and the result is false.
bool Uid64ToMac(const EUID& id, EMACAddress& mac);
// fe80::/64 with the identifier as interface identifier.
void Uid64ToLinkLocalIp6(const EUID& id, EIPAddress& address);
// MacToUid64, then Uid64ToLinkLocalIp6.
void MacToLinkLocalIp6(const EMACAddress& mac, EIPAddress& address);
}  // namespace eHal
