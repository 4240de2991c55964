// ELLDPStats: the LLDP frame counters and the neighbour count of a test port, as reported to
// its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class ELLDPStats : public EStatsRecord<ELLDPStats, estats::Fields<6>> {
 public:
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetLLDPSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetLLDPSent() const { return Word(0); }
  void SetLLDPReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetLLDPReceived() const { return Word(1); }
  void SetLLDPRxAgeout(unsigned int value) { SetWord(2, value); }
  unsigned int GetLLDPRxAgeout() const { return Word(2); }
  void SetLLDPRxError(unsigned int value) { SetWord(3, value); }
  unsigned int GetLLDPRxError() const { return Word(3); }
  void SetLLDPNeighborCount(unsigned int value) { SetWord(4, value); }
  unsigned int GetLLDPNeighborCount() const { return Word(4); }
  void SetLLDPRxTlvUnrecognized(unsigned int value) { SetWord(5, value); }
  unsigned int GetLLDPRxTlvUnrecognized() const { return Word(5); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
