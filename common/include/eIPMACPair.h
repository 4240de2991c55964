// EIPMACPair: a source and a destination IP address with their MAC addresses and whether each
// MAC address has been resolved. Serialisable.
#pragma once

#include "eIPAddress.h"
#include "eMACAddress.h"
#include "eRecord.h"

class EIPMACPair : public ERecord<EIPMACPair> {
 public:
  // Both addresses IPv4 zero, both MAC addresses six zero bytes, neither resolved.
  EIPMACPair() = default;
  EIPMACPair(const EIPMACPair& other) = default;
  EIPMACPair& operator=(const EIPMACPair& other) = default;
  ~EIPMACPair() = default;

  void Copy(const EIPMACPair& other) { *this = other; }
  void Empty();

  void SetSourceIP(const EIPAddress& address) { m_SourceIP = address; }
  void SetDestinationIP(const EIPAddress& address) { m_DestinationIP = address; }
  const EIPAddress& GetSourceIP() const { return m_SourceIP; }
  const EIPAddress& GetDestinationIP() const { return m_DestinationIP; }
  // Setting a MAC address leaves its resolved flag as it is.
  void SetSourceMAC(const EMACAddress& address) { m_SourceMAC = address; }
  void SetDestinationMAC(const EMACAddress& address) { m_DestinationMAC = address; }
  const EMACAddress& GetSourceMAC() const { return m_SourceMAC; }
  const EMACAddress& GetDestinationMAC() const { return m_DestinationMAC; }
  void SetSourceResolved(bool resolved) { m_SourceResolved = resolved; }
  void SetDestinationResolved(bool resolved) { m_DestinationResolved = resolved; }
  bool IsSourceResolved() const { return m_SourceResolved; }
  bool IsDestinationResolved() const { return m_DestinationResolved; }

  struct Schema;  // the archive form, in eIPMACPair.cpp

 private:
  EIPAddress m_SourceIP;
  EIPAddress m_DestinationIP;
  EMACAddress m_SourceMAC;
  EMACAddress m_DestinationMAC;
  bool m_SourceResolved = false;
  bool m_DestinationResolved = false;
};

extern template class ERecord<EIPMACPair>;
