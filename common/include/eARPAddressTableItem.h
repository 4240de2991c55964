// EARPAddressTableItem: one static ARP entry, the MAC address that answers for an IP address.
// The rows of the ARP table EAddressTable<EIPAddress, EARPAddressTableItem>; serialisable.
#pragma once

#include "eAddressTable.h"
#include "eIPAddress.h"
#include "eMACAddress.h"
#include "eRecord.h"

class ETrace;

class EARPAddressTableItem : public ERecord<EARPAddressTableItem> {
 public:
  // IPv4 0.0.0.0 and the MAC address 00:00:00:00:00:00.
  EARPAddressTableItem() = default;
  EARPAddressTableItem(const EARPAddressTableItem& other) = default;
  EARPAddressTableItem& operator=(const EARPAddressTableItem& other) = default;
  ~EARPAddressTableItem() = default;

  void Copy(const EARPAddressTableItem& other) { *this = other; }
  // IPv4 0.0.0.0 and the MAC address 00:00:00:00:00:00.
  void Empty();

  EIPAddress GetIPAddress() const { return m_IPAddress; }
  void SetIPAddress(const EIPAddress& address) { m_IPAddress = address; }
  EMACAddress GetMACAddress() const { return m_MACAddress; }
  void SetMACAddress(const EMACAddress& address) { m_MACAddress = address; }

  // Traces "Not Implemented!" at level 4 whatever `header` says; nothing for a null channel.
  void DumpToLog(ETrace* trace, bool header) const;

  struct Schema;  // the archive form, in eARPAddressTableItem.cpp

 private:
  EIPAddress m_IPAddress;
  EMACAddress m_MACAddress;
};

extern template class ERecord<EARPAddressTableItem>;
extern template class ERecord<EAddressTable<EIPAddress, EARPAddressTableItem>>;
