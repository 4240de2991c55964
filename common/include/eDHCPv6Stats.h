// EDHCPv6Stats: the counters of the DHCPv6 client emulation on a test port, as reported to
// its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EDHCPv6Stats : public EStatsRecord<EDHCPv6Stats, estats::Fields<8>> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetDHCPv6SolicitsSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetDHCPv6SolicitsSent() const { return Word(0); }
  void SetDHCPv6AdvertisementsReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetDHCPv6AdvertisementsReceived() const { return Word(1); }
  void SetDHCPv6RequestsSent(unsigned int value) { SetWord(2, value); }
  unsigned int GetDHCPv6RequestsSent() const { return Word(2); }
  void SetDHCPv6EnabledInterfaces(unsigned int value) { SetWord(3, value); }
  unsigned int GetDHCPv6EnabledInterfaces() const { return Word(3); }
  void SetDHCPv6AddressesDiscovered(unsigned int value) { SetWord(4, value); }
  unsigned int GetDHCPv6AddressesDiscovered() const { return Word(4); }
  void SetDHCPv6DeclinesSent(unsigned int value) { SetWord(5, value); }
  unsigned int GetDHCPv6DeclinesSent() const { return Word(5); }
  void SetDHCPv6RepliesReceived(unsigned int value) { SetWord(6, value); }
  unsigned int GetDHCPv6RepliesReceived() const { return Word(6); }
  void SetDHCPv6ReleasesSent(unsigned int value) { SetWord(7, value); }
  unsigned int GetDHCPv6ReleasesSent() const { return Word(7); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
