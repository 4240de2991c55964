// ENeighborSolicitationStats: the IPv6 neighbour solicitation and advertisement counters of
// a test port, as reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class ENeighborSolicitationStats
    : public EStatsRecord<ENeighborSolicitationStats, estats::Fields<4>> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::Swap;

  void SetIcmp6OutNeighborSolicits(unsigned int value) { SetWord(0, value); }
  unsigned int GetIcmp6OutNeighborSolicits() const { return Word(0); }
  void SetIcmp6OutNeighborAdvertisements(unsigned int value) { SetWord(1, value); }
  unsigned int GetIcmp6OutNeighborAdvertisements() const { return Word(1); }
  void SetIcmp6InNeighborSolicits(unsigned int value) { SetWord(2, value); }
  unsigned int GetIcmp6InNeighborSolicits() const { return Word(2); }
  void SetIcmp6InNeighborAdvertisements(unsigned int value) { SetWord(3, value); }
  unsigned int GetIcmp6InNeighborAdvertisements() const { return Word(3); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
