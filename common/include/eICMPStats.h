// EICMPStats: the echo counters of the ICMP emulation on a test port, as reported to its
// clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EICMPStats : public EStatsRecord<EICMPStats> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetEchoResponsesSent(unsigned int value) { m_EchoResponsesSent = value; }
  unsigned int GetEchoResponsesSent() const { return m_EchoResponsesSent; }
  void SetEchoResponsesReceived(unsigned int value) { m_EchoResponsesReceived = value; }
  unsigned int GetEchoResponsesReceived() const { return m_EchoResponsesReceived; }
  void SetEchoRequestsSent(unsigned int value) { m_EchoRequestsSent = value; }
  unsigned int GetEchoRequestsSent() const { return m_EchoRequestsSent; }
  void SetEchoRequestsReceived(unsigned int value) { m_EchoRequestsReceived = value; }
  unsigned int GetEchoRequestsReceived() const { return m_EchoRequestsReceived; }

  struct Schema;  // the archive form, in eICMPStats.cpp

 private:
  unsigned int m_EchoResponsesSent = 0;
  unsigned int m_EchoResponsesReceived = 0;
  unsigned int m_EchoRequestsSent = 0;
  unsigned int m_EchoRequestsReceived = 0;
};

extern template class ERecord<EICMPStats>;
extern template class EStatsRecord<EICMPStats>;
