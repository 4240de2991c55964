// EVLANStats: the VLAN counter of a test port (packets dropped for their tagging), as
// reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EVLANStats : public EStatsRecord<EVLANStats> {
 public:
  using EStatsRecord::FillListWithAllIds;

  void SetDroppedPackets(unsigned int value) { m_DroppedPackets = value; }
  unsigned int GetDroppedPackets() const { return m_DroppedPackets; }

  struct Schema;  // the archive form, in eVLANStats.cpp

 private:
  unsigned int m_DroppedPackets = 0;
};

extern template class ERecord<EVLANStats>;
extern template class EStatsRecord<EVLANStats>;
