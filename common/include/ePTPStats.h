// EPTPStats: the message counters of the precision time protocol emulation on a test port,
// with the clock state last seen, as reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

// Ten counters, then four 32-bit values, four 64-bit values and three texts of clock state.
class EPTPStats : public EStatsRecord<EPTPStats, estats::Fields<10, 4, 4, 3>> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetSyncSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetSyncSent() const { return Word(0); }
  void SetSyncReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetSyncReceived() const { return Word(1); }
  void SetFollowUpSent(unsigned int value) { SetWord(2, value); }
  unsigned int GetFollowUpSent() const { return Word(2); }
  void SetFollowUpReceived(unsigned int value) { SetWord(3, value); }
  unsigned int GetFollowUpReceived() const { return Word(3); }
  void SetDelayRequestsSent(unsigned int value) { SetWord(4, value); }
  unsigned int GetDelayRequestsSent() const { return Word(4); }
  void SetDelayRequestsReceived(unsigned int value) { SetWord(5, value); }
  unsigned int GetDelayRequestsReceived() const { return Word(5); }
  void SetDelayResponsesSent(unsigned int value) { SetWord(6, value); }
  unsigned int GetDelayResponsesSent() const { return Word(6); }
  void SetDelayResponsesReceived(unsigned int value) { SetWord(7, value); }
  unsigned int GetDelayResponsesReceived() const { return Word(7); }
  void SetAnnouncesSent(unsigned int value) { SetWord(8, value); }
  unsigned int GetAnnouncesSent() const { return Word(8); }
  void SetAnnouncesReceived(unsigned int value) { SetWord(9, value); }
  unsigned int GetAnnouncesReceived() const { return Word(9); }

  // Positions of the clock state carried after the counters: 32-bit values (numbered after the
  // counters), 64-bit values and texts. They have no accessors; the archive carries them.
  enum eClockState32 {
    kPortState = 10,
    kStepsRemoved,
    kGrandmasterClockClass,
    kGrandmasterPriority1
  };
  enum eClockState64 {
    kOffsetFromMaster = 0,
    kMeanPathDelay,
    kClockIdentity,
    kGrandmasterIdentity
  };
  enum eClockStateText { kPortIdentity = 0, kParentPortIdentity, kTimeSource };

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
