// EGreStats: the frame and byte counters of the GRE emulation on a test port, as reported
// to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EGreStats : public EStatsRecord<EGreStats, estats::Fields<4>> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetGreFramesSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetGreFramesSent() const { return Word(0); }
  void SetGreFramesReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetGreFramesReceived() const { return Word(1); }
  void SetGreBytesSent(unsigned int value) { SetWord(2, value); }
  unsigned int GetGreBytesSent() const { return Word(2); }
  void SetGreBytesReceived(unsigned int value) { SetWord(3, value); }
  unsigned int GetGreBytesReceived() const { return Word(3); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
