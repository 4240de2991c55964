// EFCoEStats: the FCoE/FIP login, name-server, discovery and state-change counters of a
// test port, as reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EFCoEStats : public EStatsRecord<EFCoEStats> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;

  // The accessor names are the published interface, odd spellings included.
  void SetFCoEFlogiSent(unsigned int value) { m_FCoEFlogiSent = value; }
  unsigned int GetFCoEFlogiSent() const { return m_FCoEFlogiSent; }
  void SetFCoEGlogiSuccessful(unsigned int value) { m_FCoEFlogiSuccessful = value; }
  unsigned int GetFCoEFlogiSuccessful() const { return m_FCoEFlogiSuccessful; }
  void SetFCoEPlogiSent(unsigned int value) { m_FCoEPlogiSent = value; }
  unsigned int GetFCoEPlogiSent() const { return m_FCoEPlogiSent; }
  void SetFCoEPlogiSuccessful(unsigned int value) { m_FCoEPlogiSuccessful = value; }
  unsigned int GetFCoEPlogiSuccessful() const { return m_FCoEPlogiSuccessful; }
  void SetFCoEPlogiReceived(unsigned int value) { m_FCoEPlogiReceived = value; }
  unsigned int GetFCoEPlogiReceived() const { return m_FCoEPlogiReceived; }
  void SetFCoEFlogoSent(unsigned int value) { m_FCoEFlogoSent = value; }
  unsigned int GetFCoEFlogoSent() const { return m_FCoEFlogoSent; }
  void SetFCoEPlogoSent(unsigned int value) { m_FCoEPlogoSent = value; }
  unsigned int GetFCoEPlogoSent() const { return m_FCoEPlogoSent; }
  void SetFCoEPlogoReceived(unsigned int value) { m_FCoEPlogoReceived = value; }
  unsigned int GetFCoEPlogoReceived() const { return m_FCoEPlogoReceived; }
  void SetFCoEFdiscSent(unsigned int value) { m_FCoEFdiscSent = value; }
  unsigned int GetFCoEFdiscSent() const { return m_FCoEFdiscSent; }
  void SetFCoEFdiscSuccessful(unsigned int value) { m_FCoEFdiscSuccessful = value; }
  unsigned int GetFCoEFdiscSuccessful() const { return m_FCoEFdiscSuccessful; }
  void SetFCoENSRegSent(unsigned int value) { m_FCoENSRegSent = value; }
  unsigned int GetFCoENSRegSent() const { return m_FCoENSRegSent; }
  void SetFCoENSRegSuccessful(unsigned int value) { m_FCoENSRegSuccessful = value; }
  unsigned int GetFCoENSRegSuccessul() const { return m_FCoENSRegSuccessful; }
  void SetFCoENSQuerySent(unsigned int value) { m_FCoENSQuerySent = value; }
  unsigned int GetFCoENSQuerySent() const { return m_FCoENSQuerySent; }
  void SetFCoENSQuerySuccessful(unsigned int value) { m_FCoENSQuerySuccessful = value; }
  unsigned int GetFCoENSQuerySuccessul() const { return m_FCoENSQuerySuccessful; }
  void SetFCoEPRLISent(unsigned int value) { m_FCoEPRLISent = value; }
  unsigned int GetFCoEPRLISent() const { return m_FCoEPRLISent; }
  void SetFCoEPRLISuccessful(unsigned int value) { m_FCoEPRLISuccessful = value; }
  unsigned int GetFCoEPRLISuccessul() const { return m_FCoEPRLISuccessful; }
  void SetFCoEPRLIReceived(unsigned int value) { m_FCoEPRLIReceived = value; }
  unsigned int GetFCoEPRLIReceived() const { return m_FCoEPRLIReceived; }
  void SetFCoENPortsEnabled(unsigned int value) { m_FCoENPortsEnabled = value; }
  unsigned int GetFCoENPortsEnabled() const { return m_FCoENPortsEnabled; }
  void SetFCoEPNPortIdsAcquired(unsigned int value) { m_FCoENPortIdsAcquired = value; }
  unsigned int GetFCoENPortIdsAcquired() const { return m_FCoENPortIdsAcquired; }
  void SetFCoEDiscoverySolicitationsSent(unsigned int value) {
    m_FCoEDiscoverySolicitationsSent = value;
  }
  unsigned int GetFCoEDiscoverySolicitationsSent() const {
    return m_FCoEDiscoverySolicitationsSent;
  }
  void SetFCoEDiscoveryAdvertisementsReceived(unsigned int value) {
    m_FCoEDiscoveryAdvertisementsReceived = value;
  }
  unsigned int GetFCoEDiscoveryAdvertisementsReceived() const {
    return m_FCoEDiscoveryAdvertisementsReceived;
  }
  void SetFCoEKeepAlivesSent(unsigned int value) { m_FCoEKeepAlivesSent = value; }
  unsigned int GetFCoEKeepAlivesSent() const { return m_FCoEKeepAlivesSent; }
  void SetFCoEClearVirtualLinksReceived(unsigned int value) {
    m_FCoEClearVirtualLinksReceived = value;
  }
  unsigned int GetFCoEClearVirtualLinksReceived() const { return m_FCoEClearVirtualLinksReceived; }
  void SetRSCNReceived(unsigned int value) { m_RSCNReceived = value; }
  unsigned int GetRSCNReceived() const { return m_RSCNReceived; }
  void SetRSCNAccTransmitted(unsigned int value) { m_RSCNAccTransmitted = value; }
  unsigned int GetRSCNAccTransmitted() const { return m_RSCNAccTransmitted; }
  void SetSCRTransmitted(unsigned int value) { m_SCRTransmitted = value; }
  unsigned int GetSCRTransmitted() const { return m_SCRTransmitted; }
  void SetSCRAccReceived(unsigned int value) { m_SCRAccReceived = value; }
  unsigned int GetSCRAccReceived() const { return m_SCRAccReceived; }

  struct Schema;  // the archive form, in eFCoEStats.cpp

 private:
  unsigned int m_FCoEFlogiSent = 0;
  unsigned int m_FCoEFlogiSuccessful = 0;
  unsigned int m_FCoEPlogiSent = 0;
  unsigned int m_FCoEPlogiSuccessful = 0;
  unsigned int m_FCoEPlogiReceived = 0;
  unsigned int m_FCoEFlogoSent = 0;
  unsigned int m_FCoEPlogoSent = 0;
  unsigned int m_FCoEPlogoReceived = 0;
  unsigned int m_FCoEFdiscSent = 0;
  unsigned int m_FCoEFdiscSuccessful = 0;
  unsigned int m_FCoENSRegSent = 0;
  unsigned int m_FCoENSRegSuccessful = 0;
  unsigned int m_FCoENSQuerySent = 0;
  unsigned int m_FCoENSQuerySuccessful = 0;
  unsigned int m_FCoEPRLISent = 0;
  unsigned int m_FCoEPRLISuccessful = 0;
  unsigned int m_FCoEPRLIReceived = 0;
  unsigned int m_FCoENPortsEnabled = 0;
  unsigned int m_FCoENPortIdsAcquired = 0;
  unsigned int m_FCoEDiscoverySolicitationsSent = 0;
  unsigned int m_FCoEDiscoveryAdvertisementsReceived = 0;
  unsigned int m_FCoEKeepAlivesSent = 0;
  unsigned int m_FCoEClearVirtualLinksReceived = 0;
  unsigned int m_RSCNReceived = 0;
  unsigned int m_RSCNAccTransmitted = 0;
  unsigned int m_SCRTransmitted = 0;
  unsigned int m_SCRAccReceived = 0;
};

extern template class ERecord<EFCoEStats>;
extern template class EStatsRecord<EFCoEStats>;
