// EDHCPStats: the counters of the DHCP client emulation on a test port, as reported to its
// clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EDHCPStats : public EStatsRecord<EDHCPStats, estats::Fields<8>> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetDHCPDiscoversSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetDHCPDiscoversSent() const { return Word(0); }
  void SetDHCPDiscoversOffersReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetDHCPDiscoversOffersReceived() const { return Word(1); }
  void SetDHCPRequestsSent(unsigned int value) { SetWord(2, value); }
  unsigned int GetDHCPRequestsSent() const { return Word(2); }
  void SetDHCPEnabledInterfaces(unsigned int value) { SetWord(3, value); }
  unsigned int GetDHCPEnabledInterfaces() const { return Word(3); }
  void SetDHCPAddressesDiscovered(unsigned int value) { SetWord(4, value); }
  unsigned int GetDHCPAddressesDiscovered() const { return Word(4); }
  void SetDHCPACKReceived(unsigned int value) { SetWord(5, value); }
  unsigned int GetDHCPACKReceived() const { return Word(5); }
  void SetDHCPNAKReceived(unsigned int value) { SetWord(6, value); }
  unsigned int GetDHCPNAKReceived() const { return Word(6); }
  void SetDHCPReleasesSent(unsigned int value) { SetWord(7, value); }
  unsigned int GetDHCPReleasesSent() const { return Word(7); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
