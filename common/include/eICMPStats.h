// EICMPStats: the echo counters of the ICMP emulation on a test port, as reported to its
// clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EICMPStats : public EStatsRecord<EICMPStats, estats::Fields<4>> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetEchoResponsesSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetEchoResponsesSent() const { return Word(0); }
  void SetEchoResponsesReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetEchoResponsesReceived() const { return Word(1); }
  void SetEchoRequestsSent(unsigned int value) { SetWord(2, value); }
  unsigned int GetEchoRequestsSent() const { return Word(2); }
  void SetEchoRequestsReceived(unsigned int value) { SetWord(3, value); }
  unsigned int GetEchoRequestsReceived() const { return Word(3); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
