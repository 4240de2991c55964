// EPTPStats: the message counters of the precision time protocol emulation on a test port,
// with the clock state last seen, as reported to its clients through an archive.
#pragma once

#include <string>

#include "eStatsRecord.h"

class EPTPStats : public EStatsRecord<EPTPStats> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetSyncSent(unsigned int value) { m_SyncSent = value; }
  unsigned int GetSyncSent() const { return m_SyncSent; }
  void SetSyncReceived(unsigned int value) { m_SyncReceived = value; }
  unsigned int GetSyncReceived() const { return m_SyncReceived; }
  void SetFollowUpSent(unsigned int value) { m_FollowUpSent = value; }
  unsigned int GetFollowUpSent() const { return m_FollowUpSent; }
  void SetFollowUpReceived(unsigned int value) { m_FollowUpReceived = value; }
  unsigned int GetFollowUpReceived() const { return m_FollowUpReceived; }
  void SetDelayRequestsSent(unsigned int value) { m_DelayRequestsSent = value; }
  unsigned int GetDelayRequestsSent() const { return m_DelayRequestsSent; }
  void SetDelayRequestsReceived(unsigned int value) { m_DelayRequestsReceived = value; }
  unsigned int GetDelayRequestsReceived() const { return m_DelayRequestsReceived; }
  void SetDelayResponsesSent(unsigned int value) { m_DelayResponsesSent = value; }
  unsigned int GetDelayResponsesSent() const { return m_DelayResponsesSent; }
  void SetDelayResponsesReceived(unsigned int value) { m_DelayResponsesReceived = value; }
  unsigned int GetDelayResponsesReceived() const { return m_DelayResponsesReceived; }
  void SetAnnouncesSent(unsigned int value) { m_AnnouncesSent = value; }
  unsigned int GetAnnouncesSent() const { return m_AnnouncesSent; }
  void SetAnnouncesReceived(unsigned int value) { m_AnnouncesReceived = value; }
  unsigned int GetAnnouncesReceived() const { return m_AnnouncesReceived; }

  struct Schema;  // the archive form, in ePTPStats.cpp

 private:
  unsigned int m_SyncSent = 0;
  unsigned int m_SyncReceived = 0;
  unsigned int m_FollowUpSent = 0;
  unsigned int m_FollowUpReceived = 0;
  unsigned int m_DelayRequestsSent = 0;
  unsigned int m_DelayRequestsReceived = 0;
  unsigned int m_DelayResponsesSent = 0;
  unsigned int m_DelayResponsesReceived = 0;
  unsigned int m_AnnouncesSent = 0;
  unsigned int m_AnnouncesReceived = 0;
  // The clock state last seen; no accessors, the archive carries it.
  unsigned int m_PortState = 0;
  unsigned int m_StepsRemoved = 0;
  unsigned int m_GrandmasterClockClass = 0;
  unsigned int m_GrandmasterPriority1 = 0;
  unsigned long m_OffsetFromMaster = 0;
  unsigned long m_MeanPathDelay = 0;
  unsigned long m_ClockIdentity = 0;
  unsigned long m_GrandmasterIdentity = 0;
  std::string m_PortIdentity;
  std::string m_ParentPortIdentity;
  std::string m_TimeSource;
};

extern template class ERecord<EPTPStats>;
extern template class EStatsRecord<EPTPStats>;
