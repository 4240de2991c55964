// EARPStats: the counters of the ARP emulation on a test port (requests and responses
// sent and received), as reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EARPStats : public EStatsRecord<EARPStats, estats::Fields<4>> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetResponsesSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetResponsesSent() const { return Word(0); }
  void SetResponsesReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetResponsesReceived() const { return Word(1); }
  void SetRequestsSent(unsigned int value) { SetWord(2, value); }
  unsigned int GetRequestsSent() const { return Word(2); }
  void SetRequestsReceived(unsigned int value) { SetWord(3, value); }
  unsigned int GetRequestsReceived() const { return Word(3); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
