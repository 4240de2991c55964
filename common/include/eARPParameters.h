// EARPParameters: the ARP timeout and retry settings of a test port's emulation, archived like
// the statistics records beside it.
#pragma once

#include "eStatsRecord.h"

// Two unsigned 16-bit fields (timeout, retries) and no counters.
class EARPParameters : public EStatsRecord<EARPParameters, estats::Fields<0, 0, 0, 0, 2>> {
 public:
  static constexpr unsigned short kDefaultTimeout = 3;
  static constexpr unsigned short kDefaultRetries = 5;

  void SetTimeout(unsigned short value) { SetShort(0, value); }
  unsigned short GetTimeout() const { return Short(0); }
  void SetRetries(unsigned short value) { SetShort(1, value); }
  unsigned short GetRetries() const { return Short(1); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;

 private:
  friend EStatsRecord;
  // A fresh or emptied record holds the default timeout and retry count.
  static Fields InitialFields() { return Fields{{}, {}, {}, {kDefaultTimeout, kDefaultRetries}}; }
};
