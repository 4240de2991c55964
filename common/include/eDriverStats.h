// EDriverStats: the packet counters of a test port's driver, as reported to its clients
// through an archive.
#pragma once

#include "eStatsRecord.h"

class EDriverStats : public EStatsRecord<EDriverStats, estats::Fields<4>> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetPacketsSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetPacketsSent() const { return Word(0); }
  void SetPacketsReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetPacketsReceived() const { return Word(1); }
  void SetPacketsDroppedByDriver(unsigned int value) { SetWord(2, value); }
  unsigned int GetPacketsDroppedByDriver() const { return Word(2); }
  void SetPacketsReceiveOverflow(unsigned int value) { SetWord(3, value); }
  unsigned int GetPacketsReceiveOverflow() const { return Word(3); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
