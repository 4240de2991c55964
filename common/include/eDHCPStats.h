// EDHCPStats: the counters of the DHCP client emulation on a test port, as reported to its
// clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EDHCPStats : public EStatsRecord<EDHCPStats> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetDHCPDiscoversSent(unsigned int value) { m_DHCPDiscoversSent = value; }
  unsigned int GetDHCPDiscoversSent() const { return m_DHCPDiscoversSent; }
  void SetDHCPDiscoversOffersReceived(unsigned int value) { m_DHCPDiscoversOffersReceived = value; }
  unsigned int GetDHCPDiscoversOffersReceived() const { return m_DHCPDiscoversOffersReceived; }
  void SetDHCPRequestsSent(unsigned int value) { m_DHCPRequestsSent = value; }
  unsigned int GetDHCPRequestsSent() const { return m_DHCPRequestsSent; }
  void SetDHCPEnabledInterfaces(unsigned int value) { m_DHCPEnabledInterfaces = value; }
  unsigned int GetDHCPEnabledInterfaces() const { return m_DHCPEnabledInterfaces; }
  void SetDHCPAddressesDiscovered(unsigned int value) { m_DHCPAddressesDiscovered = value; }
  unsigned int GetDHCPAddressesDiscovered() const { return m_DHCPAddressesDiscovered; }
  void SetDHCPACKReceived(unsigned int value) { m_DHCPACKReceived = value; }
  unsigned int GetDHCPACKReceived() const { return m_DHCPACKReceived; }
  void SetDHCPNAKReceived(unsigned int value) { m_DHCPNAKReceived = value; }
  unsigned int GetDHCPNAKReceived() const { return m_DHCPNAKReceived; }
  void SetDHCPReleasesSent(unsigned int value) { m_DHCPReleasesSent = value; }
  unsigned int GetDHCPReleasesSent() const { return m_DHCPReleasesSent; }

  struct Schema;  // the archive form, in eDHCPStats.cpp

 private:
  unsigned int m_DHCPDiscoversSent = 0;
  unsigned int m_DHCPDiscoversOffersReceived = 0;
  unsigned int m_DHCPRequestsSent = 0;
  unsigned int m_DHCPEnabledInterfaces = 0;
  unsigned int m_DHCPAddressesDiscovered = 0;
  unsigned int m_DHCPACKReceived = 0;
  unsigned int m_DHCPNAKReceived = 0;
  unsigned int m_DHCPReleasesSent = 0;
};

extern template class ERecord<EDHCPStats>;
extern template class EStatsRecord<EDHCPStats>;
