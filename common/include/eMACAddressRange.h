// EMACAddressRange: a first MAC address with a count and a mode number that the users of the
// range interpret. Serialisable.
#pragma once

#include "eMACAddress.h"
#include "eRecord.h"

class EMACAddressRange : public ERecord<EMACAddressRange> {
 public:
  // Six zero bytes, count 0, mode 0.
  EMACAddressRange() = default;
  EMACAddressRange(const EMACAddressRange& other) = default;
  EMACAddressRange& operator=(const EMACAddressRange& other) = default;
  ~EMACAddressRange() = default;

  void Copy(const EMACAddressRange& other) { *this = other; }
  // Six zero bytes, count 0, mode 0.
  void Empty();

  void SetMACAddress(const EMACAddress& address) { m_Address = address; }
  EMACAddress GetMACAddress() const { return m_Address; }
  void SetMACRangeCount(unsigned int count) { m_RangeCount = count; }
  unsigned int GetMACRangeCount() const { return m_RangeCount; }
  void SetMACMode(int mode) { m_MACMode = mode; }
  int GetMACMode() const { return m_MACMode; }

  struct Schema;  // the archive form, in eMACAddressRange.cpp

 private:
  EMACAddress m_Address;
  unsigned int m_RangeCount = 0;
  int m_MACMode = 0;
};

extern template class ERecord<EMACAddressRange>;
