// ELLDPStats: the LLDP frame counters and the neighbour count of a test port, as reported
// to its clients through an archive.
#pragma once

#include "eStatsRecord.h"

class ELLDPStats : public EStatsRecord<ELLDPStats> {
 public:
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetLLDPSent(unsigned int value) { m_LLDPSent = value; }
  unsigned int GetLLDPSent() const { return m_LLDPSent; }
  void SetLLDPReceived(unsigned int value) { m_LLDPReceived = value; }
  unsigned int GetLLDPReceived() const { return m_LLDPReceived; }
  void SetLLDPRxAgeout(unsigned int value) { m_LLDPRxAgeout = value; }
  unsigned int GetLLDPRxAgeout() const { return m_LLDPRxAgeout; }
  void SetLLDPRxError(unsigned int value) { m_LLDPRxError = value; }
  unsigned int GetLLDPRxError() const { return m_LLDPRxError; }
  void SetLLDPNeighborCount(unsigned int value) { m_LLDPNeighborCount = value; }
  unsigned int GetLLDPNeighborCount() const { return m_LLDPNeighborCount; }
  void SetLLDPRxTlvUnrecognized(unsigned int value) { m_LLDPRxTlvUnrecognized = value; }
  unsigned int GetLLDPRxTlvUnrecognized() const { return m_LLDPRxTlvUnrecognized; }

  struct Schema;  // the archive form, in eLLDPStats.cpp

 private:
  unsigned int m_LLDPSent = 0;
  unsigned int m_LLDPReceived = 0;
  unsigned int m_LLDPRxAgeout = 0;
  unsigned int m_LLDPRxError = 0;
  unsigned int m_LLDPNeighborCount = 0;
  unsigned int m_LLDPRxTlvUnrecognized = 0;
};

extern template class ERecord<ELLDPStats>;
extern template class EStatsRecord<ELLDPStats>;
