// EDHCPv6Stats: the counters of the DHCPv6 client emulation on a test port, as reported to
// its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EDHCPv6Stats : public EStatsRecord<EDHCPv6Stats> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetDHCPv6SolicitsSent(unsigned int value) { m_DHCPv6SolicitsSent = value; }
  unsigned int GetDHCPv6SolicitsSent() const { return m_DHCPv6SolicitsSent; }
  void SetDHCPv6AdvertisementsReceived(unsigned int value) {
    m_DHCPv6AdvertisementsReceived = value;
  }
  unsigned int GetDHCPv6AdvertisementsReceived() const { return m_DHCPv6AdvertisementsReceived; }
  void SetDHCPv6RequestsSent(unsigned int value) { m_DHCPv6RequestsSent = value; }
  unsigned int GetDHCPv6RequestsSent() const { return m_DHCPv6RequestsSent; }
  void SetDHCPv6EnabledInterfaces(unsigned int value) { m_DHCPv6EnabledInterfaces = value; }
  unsigned int GetDHCPv6EnabledInterfaces() const { return m_DHCPv6EnabledInterfaces; }
  void SetDHCPv6AddressesDiscovered(unsigned int value) { m_DHCPv6AddressesDiscovered = value; }
  unsigned int GetDHCPv6AddressesDiscovered() const { return m_DHCPv6AddressesDiscovered; }
  void SetDHCPv6DeclinesSent(unsigned int value) { m_DHCPv6DeclinesSent = value; }
  unsigned int GetDHCPv6DeclinesSent() const { return m_DHCPv6DeclinesSent; }
  void SetDHCPv6RepliesReceived(unsigned int value) { m_DHCPv6RepliesReceived = value; }
  unsigned int GetDHCPv6RepliesReceived() const { return m_DHCPv6RepliesReceived; }
  void SetDHCPv6ReleasesSent(unsigned int value) { m_DHCPv6ReleasesSent = value; }
  unsigned int GetDHCPv6ReleasesSent() const { return m_DHCPv6ReleasesSent; }

  struct Schema;  // the archive form, in eDHCPv6Stats.cpp

 private:
  unsigned int m_DHCPv6SolicitsSent = 0;
  unsigned int m_DHCPv6AdvertisementsReceived = 0;
  unsigned int m_DHCPv6RequestsSent = 0;
  unsigned int m_DHCPv6EnabledInterfaces = 0;
  unsigned int m_DHCPv6AddressesDiscovered = 0;
  unsigned int m_DHCPv6DeclinesSent = 0;
  unsigned int m_DHCPv6RepliesReceived = 0;
  unsigned int m_DHCPv6ReleasesSent = 0;
};

extern template class ERecord<EDHCPv6Stats>;
extern template class EStatsRecord<EDHCPv6Stats>;
