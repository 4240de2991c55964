// EIPMaskedAddress: an IP address with a network mask. It answers subnet questions (same
// network, network, broadcast and n-th host address) and converts between masks and prefix
// lengths. Serialisable: the address record followed by the mask.
#pragma once

#include "eIPAddress.h"

class EBlob;

class EIPMaskedAddress : public EIPAddress {
 public:
  // IPv4 zero address with the mask 255.255.255.255.
  EIPMaskedAddress();
  // Copies type and address; the mask gets prefix length 64 for IPv6 and 24 for any other type.
  explicit EIPMaskedAddress(const EIPAddress& address);
  EIPMaskedAddress(const EIPMaskedAddress& other) = default;
  EIPMaskedAddress& operator=(const EIPMaskedAddress& other) = default;

  ~EIPMaskedAddress() override = default;
  // IPv4 zero address; mask bytes 0-3 become 0xFF (a /32), the others keep their values.
  void Empty() override;
  // The given type, zero address, and a /64 mask for IPv6, /24 otherwise.
  void Empty(int type) override;
  // Swaps the address parts, and the masks too when the other is also a masked address.
  void Swap(EIPAddress& other) override;
  // The address record, then the mask under a signature of its own (see Schema).
  void SerializeOut(EArchive& archive) const override;
  void SerializeIn(EArchive& archive) override;
  // The address record and the mask, inside BeginRecord(name)/EndRecord().
  void Describe(ERecordVisitor& visitor, const char* name = "") const;
  // The layouts of the address record it opens with, each followed by the mask.
  static std::vector<ERecordLayout> Layouts();
  // What the address and mask hold, without an instance.
  static const ERecordDescription& Description();

  // Writes all 16 mask bytes for prefix length n; false (and no change) above 128.
  bool SetMaskPrefixNumber(unsigned int n);
  // Leading one bits of the 4 or 16 mask bytes; a non-contiguous mask yields its leading run.
  unsigned int GetMaskPrefixNumber() const;
  // Prefix length of an IPv4 mask held in a blob (its first four bytes are examined).
  static unsigned int GetMaskPrefixNumber(const EBlob& mask);
  // The blob becomes the four bytes of the IPv4 mask of prefix length n; false above 128.
  static bool SetMaskPrefixNumber(EBlob& mask, unsigned int n);

  // The first min(16, blob size) bytes become the mask, the rest zero; the type is not used.
  void SetMask(const EBlob& mask, int type);
  // The 4 or 16 mask bytes by the type.
  void GetMask(EBlob& mask) const;
  EBlob GetMaskAsBlob() const;
  const unsigned char* GetMaskBytes() const { return m_Mask; }
  // The value's bytes as they lie in memory (network order) become mask bytes 0-3.
  void NetworkSetMaskFromDWORD(unsigned int mask);
  // Host order: the most significant byte becomes mask byte 0 (0xFFFFFF00 is 255.255.255.0).
  void HostSetMaskFromDWORD(unsigned int mask);
  // Mask bytes 0-3 as a big-endian number (255.255.255.0 is 0xFFFFFF00).
  unsigned int GetMaskHost() const;
  // The byte-swapped GetMaskHost.
  unsigned int GetMaskNetwork() const;
  // The mask formatted as an address of this type ("255.255.255.0").
  std::string GetMaskAsString() const;

  // False when the address lengths differ; otherwise true when the addresses agree under the
  // mask in every byte.
  bool IsOnSameNetwork(const EIPAddress& address) const;
  // Address AND mask, of this type.
  EIPAddress GetNetworkAddress() const;
  // Address OR NOT mask, of this type.
  EIPAddress GetBroadcastAddress() const;
  // The n-th usable host (n from 0); the host number wraps within the host part of mask bytes
  // 0-3, and a prefix above 126 gives this object's own address.
  EIPAddress GetHostAddress(int n) const;

  // Equal addresses and equal 4 or 16 mask bytes.
  bool operator==(const EIPMaskedAddress& other) const;
  bool operator!=(const EIPMaskedAddress& other) const { return !(*this == other); }

  struct Schema;  // the archive form, in eIPMaskedAddress.cpp

 private:
  unsigned char m_Mask[kMaxAddressLength] = {};
};
