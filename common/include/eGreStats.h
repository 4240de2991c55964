// EGreStats: the frame and byte counters of the GRE emulation on a test port, as reported
// to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EGreStats : public EStatsRecord<EGreStats> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetGreFramesSent(unsigned int value) { m_GreFramesSent = value; }
  unsigned int GetGreFramesSent() const { return m_GreFramesSent; }
  void SetGreFramesReceived(unsigned int value) { m_GreFramesReceived = value; }
  unsigned int GetGreFramesReceived() const { return m_GreFramesReceived; }
  void SetGreBytesSent(unsigned int value) { m_GreBytesSent = value; }
  unsigned int GetGreBytesSent() const { return m_GreBytesSent; }
  void SetGreBytesReceived(unsigned int value) { m_GreBytesReceived = value; }
  unsigned int GetGreBytesReceived() const { return m_GreBytesReceived; }

  struct Schema;  // the archive form, in eGreStats.cpp

 private:
  unsigned int m_GreFramesSent = 0;
  unsigned int m_GreFramesReceived = 0;
  unsigned int m_GreBytesSent = 0;
  unsigned int m_GreBytesReceived = 0;
};

extern template class ERecord<EGreStats>;
extern template class EStatsRecord<EGreStats>;
