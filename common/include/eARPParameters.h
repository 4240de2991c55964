// EARPParameters: the ARP timeout and retry settings of a test port's emulation, archived like
// the statistics records beside it.
#pragma once

#include "eStatsRecord.h"

// Two unsigned 16-bit settings and no counters; a fresh or emptied record holds the defaults.
class EARPParameters : public EStatsRecord<EARPParameters> {
 public:
  static constexpr unsigned short kDefaultTimeout = 3;
  static constexpr unsigned short kDefaultRetries = 5;

  void SetTimeout(unsigned short value) { m_Timeout = value; }
  unsigned short GetTimeout() const { return m_Timeout; }
  void SetRetries(unsigned short value) { m_Retries = value; }
  unsigned short GetRetries() const { return m_Retries; }

  struct Schema;  // the archive form, in eARPParameters.cpp

 private:
  unsigned short m_Timeout = kDefaultTimeout;
  unsigned short m_Retries = kDefaultRetries;
};

extern template class ERecord<EARPParameters>;
extern template class EStatsRecord<EARPParameters>;
