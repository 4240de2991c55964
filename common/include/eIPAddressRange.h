// EIPAddressRange: a first IP address and a count of consecutive addresses. It is the key of
// the IP address table, ordered by first address and then by count.
#pragma once

#include "eBlob.h"
#include "eIPAddress.h"
#include "eRecord.h"

class EIPAddressRange : public ERecord<EIPAddressRange> {
 public:
  // IPv4 zero address, count 1.
  EIPAddressRange() = default;
  EIPAddressRange(const EIPAddressRange& other) = default;
  EIPAddressRange& operator=(const EIPAddressRange& other) = default;
  ~EIPAddressRange() = default;

  void Copy(const EIPAddressRange& other) { *this = other; }
  // IPv4 zero address, count 1.
  void Empty();

  void SetAddress(const EIPAddress& address) { m_Address = address; }
  const EIPAddress& GetIPAddress() const { return m_Address; }
  void SetRangeCount(unsigned int count) { m_RangeCount = count; }
  unsigned int GetRangeCount() const { return m_RangeCount; }

  // IPv4 only: the first address from `from`; the count thru - from + 1, or 1 when from is
  // greater. Each blob counts as a big-endian number from its first four bytes when its
  // capacity is at least 4, as 0 otherwise.
  void SetIPAddresses(const EBlob& from, const EBlob& thru);
  // A 4-byte blob: the first four address bytes as a big-endian number plus i, modulo 2^32.
  EBlob GetIPAddressAt(unsigned int i) const;
  // GetIPAddressAt(count - 1).
  EBlob GetIPAddressThru() const;
  // The first address as a blob of 4 or 16 bytes.
  EBlob GetIPAddressFrom() const;

  // Equal counts and equal first addresses.
  bool IsEqual(const EIPAddressRange& other) const;
  bool operator==(const EIPAddressRange& other) const { return IsEqual(other); }
  bool operator!=(const EIPAddressRange& other) const { return !IsEqual(other); }
  // By first address (every IPv4 before every IPv6), then the smaller count first.
  bool operator<(const EIPAddressRange& other) const;

  struct Schema;  // the archive form, in eIPAddressRange.cpp

 private:
  EIPAddress m_Address;
  unsigned int m_RangeCount = 1;
};

extern template class ERecord<EIPAddressRange>;
