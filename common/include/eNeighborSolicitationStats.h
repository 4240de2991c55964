// ENeighborSolicitationStats: the IPv6 neighbour solicitation and advertisement counters of
// a test port, as reported to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class ENeighborSolicitationStats : public EStatsRecord<ENeighborSolicitationStats> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::Swap;

  void SetIcmp6OutNeighborSolicits(unsigned int value) { m_Icmp6OutNeighborSolicits = value; }
  unsigned int GetIcmp6OutNeighborSolicits() const { return m_Icmp6OutNeighborSolicits; }
  void SetIcmp6OutNeighborAdvertisements(unsigned int value) {
    m_Icmp6OutNeighborAdvertisements = value;
  }
  unsigned int GetIcmp6OutNeighborAdvertisements() const {
    return m_Icmp6OutNeighborAdvertisements;
  }
  void SetIcmp6InNeighborSolicits(unsigned int value) { m_Icmp6InNeighborSolicits = value; }
  unsigned int GetIcmp6InNeighborSolicits() const { return m_Icmp6InNeighborSolicits; }
  void SetIcmp6InNeighborAdvertisements(unsigned int value) {
    m_Icmp6InNeighborAdvertisements = value;
  }
  unsigned int GetIcmp6InNeighborAdvertisements() const { return m_Icmp6InNeighborAdvertisements; }

  struct Schema;  // the archive form, in eNeighborSolicitationStats.cpp

 private:
  unsigned int m_Icmp6OutNeighborSolicits = 0;
  unsigned int m_Icmp6OutNeighborAdvertisements = 0;
  unsigned int m_Icmp6InNeighborSolicits = 0;
  unsigned int m_Icmp6InNeighborAdvertisements = 0;
};

extern template class ERecord<ENeighborSolicitationStats>;
extern template class EStatsRecord<ENeighborSolicitationStats>;
