// EFCoEStats: the FCoE/FIP login, name-server, discovery and state-change counters of a
// test port, as reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EFCoEStats : public EStatsRecord<EFCoEStats, estats::Fields<27>> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;

  // The accessor names are the published interface, odd spellings included.
  void SetFCoEFlogiSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetFCoEFlogiSent() const { return Word(0); }
  void SetFCoEGlogiSuccessful(unsigned int value) { SetWord(1, value); }
  unsigned int GetFCoEFlogiSuccessful() const { return Word(1); }
  void SetFCoEPlogiSent(unsigned int value) { SetWord(2, value); }
  unsigned int GetFCoEPlogiSent() const { return Word(2); }
  void SetFCoEPlogiSuccessful(unsigned int value) { SetWord(3, value); }
  unsigned int GetFCoEPlogiSuccessful() const { return Word(3); }
  void SetFCoEPlogiReceived(unsigned int value) { SetWord(4, value); }
  unsigned int GetFCoEPlogiReceived() const { return Word(4); }
  void SetFCoEFlogoSent(unsigned int value) { SetWord(5, value); }
  unsigned int GetFCoEFlogoSent() const { return Word(5); }
  void SetFCoEPlogoSent(unsigned int value) { SetWord(6, value); }
  unsigned int GetFCoEPlogoSent() const { return Word(6); }
  void SetFCoEPlogoReceived(unsigned int value) { SetWord(7, value); }
  unsigned int GetFCoEPlogoReceived() const { return Word(7); }
  void SetFCoEFdiscSent(unsigned int value) { SetWord(8, value); }
  unsigned int GetFCoEFdiscSent() const { return Word(8); }
  void SetFCoEFdiscSuccessful(unsigned int value) { SetWord(9, value); }
  unsigned int GetFCoEFdiscSuccessful() const { return Word(9); }
  void SetFCoENSRegSent(unsigned int value) { SetWord(10, value); }
  unsigned int GetFCoENSRegSent() const { return Word(10); }
  void SetFCoENSRegSuccessful(unsigned int value) { SetWord(11, value); }
  unsigned int GetFCoENSRegSuccessul() const { return Word(11); }
  void SetFCoENSQuerySent(unsigned int value) { SetWord(12, value); }
  unsigned int GetFCoENSQuerySent() const { return Word(12); }
  void SetFCoENSQuerySuccessful(unsigned int value) { SetWord(13, value); }
  unsigned int GetFCoENSQuerySuccessul() const { return Word(13); }
  void SetFCoEPRLISent(unsigned int value) { SetWord(14, value); }
  unsigned int GetFCoEPRLISent() const { return Word(14); }
  void SetFCoEPRLISuccessful(unsigned int value) { SetWord(15, value); }
  unsigned int GetFCoEPRLISuccessul() const { return Word(15); }
  void SetFCoEPRLIReceived(unsigned int value) { SetWord(16, value); }
  unsigned int GetFCoEPRLIReceived() const { return Word(16); }
  void SetFCoENPortsEnabled(unsigned int value) { SetWord(17, value); }
  unsigned int GetFCoENPortsEnabled() const { return Word(17); }
  void SetFCoEPNPortIdsAcquired(unsigned int value) { SetWord(18, value); }
  unsigned int GetFCoENPortIdsAcquired() const { return Word(18); }
  void SetFCoEDiscoverySolicitationsSent(unsigned int value) { SetWord(19, value); }
  unsigned int GetFCoEDiscoverySolicitationsSent() const { return Word(19); }
  void SetFCoEDiscoveryAdvertisementsReceived(unsigned int value) { SetWord(20, value); }
  unsigned int GetFCoEDiscoveryAdvertisementsReceived() const { return Word(20); }
  void SetFCoEKeepAlivesSent(unsigned int value) { SetWord(21, value); }
  unsigned int GetFCoEKeepAlivesSent() const { return Word(21); }
  void SetFCoEClearVirtualLinksReceived(unsigned int value) { SetWord(22, value); }
  unsigned int GetFCoEClearVirtualLinksReceived() const { return Word(22); }
  void SetRSCNReceived(unsigned int value) { SetWord(23, value); }
  unsigned int GetRSCNReceived() const { return Word(23); }
  void SetRSCNAccTransmitted(unsigned int value) { SetWord(24, value); }
  unsigned int GetRSCNAccTransmitted() const { return Word(24); }
  void SetSCRTransmitted(unsigned int value) { SetWord(25, value); }
  unsigned int GetSCRTransmitted() const { return Word(25); }
  void SetSCRAccReceived(unsigned int value) { SetWord(26, value); }
  unsigned int GetSCRAccReceived() const { return Word(26); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
