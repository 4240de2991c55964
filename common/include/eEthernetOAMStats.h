// EEthernetOAMStats: the Ethernet OAM PDU counters of a test port, as reported to its clients
// through an archive.
#pragma once

#include <string>

#include "eStatsRecord.h"

class EEthernetOAMStats : public EStatsRecord<EEthernetOAMStats, estats::Fields<8>> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;
  using EStatsRecord::operator==;
  using EStatsRecord::operator!=;
  using EStatsRecord::Swap;

  void SetInformationPDUsSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetInformationPDUsSent() const { return Word(0); }
  void SetInformationPDUsReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetInformationPDUsReceived() const { return Word(1); }
  void SetEventNotificationPDUsReceived(unsigned int value) { SetWord(2, value); }
  unsigned int GetEventNotificationPDUsReceived() const { return Word(2); }
  void SetLoopbackControlPDUsReceived(unsigned int value) { SetWord(3, value); }
  unsigned int GetLoopbackControlPDUsReceived() const { return Word(3); }
  void SetOrgPDUsReceived(unsigned int value) { SetWord(4, value); }
  unsigned int GetOrgPDUsReceived() const { return Word(4); }
  void SetVariableRequestPDUsReceived(unsigned int value) { SetWord(5, value); }
  unsigned int GetVariableRequestPDUsReceived() const { return Word(5); }
  void SetVariableResponsePDUsReceived(unsigned int value) { SetWord(6, value); }
  unsigned int GetVariableResponsePDUsReceived() const { return Word(6); }
  void SetUnsupportedPDUsReceived(unsigned int value) { SetWord(7, value); }
  unsigned int GetUnsupportedPDUsReceived() const { return Word(7); }

  // ", Information PDUs Sent: <n>, ..." (every counter but OrgPDUsReceived), to be appended
  // to a caller's prefix.
  std::string ToString() const;

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
