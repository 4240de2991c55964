// EDriverStats: the packet counters of a test port's driver, as reported to its clients
// through an archive.
#pragma once

#include "eStatsRecord.h"

class EDriverStats : public EStatsRecord<EDriverStats> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetPacketsSent(unsigned int value) { m_PacketsSent = value; }
  unsigned int GetPacketsSent() const { return m_PacketsSent; }
  void SetPacketsReceived(unsigned int value) { m_PacketsReceived = value; }
  unsigned int GetPacketsReceived() const { return m_PacketsReceived; }
  void SetPacketsDroppedByDriver(unsigned int value) { m_PacketsDroppedByDriver = value; }
  unsigned int GetPacketsDroppedByDriver() const { return m_PacketsDroppedByDriver; }
  void SetPacketsReceiveOverflow(unsigned int value) { m_PacketsReceiveOverflow = value; }
  unsigned int GetPacketsReceiveOverflow() const { return m_PacketsReceiveOverflow; }

  struct Schema;  // the archive form, in eDriverStats.cpp

 private:
  unsigned int m_PacketsSent = 0;
  unsigned int m_PacketsReceived = 0;
  unsigned int m_PacketsDroppedByDriver = 0;
  unsigned int m_PacketsReceiveOverflow = 0;
};

extern template class ERecord<EDriverStats>;
extern template class EStatsRecord<EDriverStats>;
