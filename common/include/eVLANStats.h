// EVLANStats: the VLAN counter of a test port (packets dropped for their tagging), as
// reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EVLANStats : public EStatsRecord<EVLANStats, estats::Fields<1>> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetDroppedPackets(unsigned int value) { SetWord(0, value); }
  unsigned int GetDroppedPackets() const { return Word(0); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
