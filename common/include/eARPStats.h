// EARPStats: the counters of the ARP emulation on a test port (requests and responses
// sent and received), as reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EARPStats : public EStatsRecord<EARPStats> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetResponsesSent(unsigned int value) { m_ResponsesSent = value; }
  unsigned int GetResponsesSent() const { return m_ResponsesSent; }
  void SetResponsesReceived(unsigned int value) { m_ResponsesReceived = value; }
  unsigned int GetResponsesReceived() const { return m_ResponsesReceived; }
  void SetRequestsSent(unsigned int value) { m_RequestsSent = value; }
  unsigned int GetRequestsSent() const { return m_RequestsSent; }
  void SetRequestsReceived(unsigned int value) { m_RequestsReceived = value; }
  unsigned int GetRequestsReceived() const { return m_RequestsReceived; }

  struct Schema;  // the archive form, in eARPStats.cpp

 private:
  unsigned int m_ResponsesSent = 0;
  unsigned int m_ResponsesReceived = 0;
  unsigned int m_RequestsSent = 0;
  unsigned int m_RequestsReceived = 0;
};

extern template class ERecord<EARPStats>;
extern template class EStatsRecord<EARPStats>;
