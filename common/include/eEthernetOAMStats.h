// EEthernetOAMStats: the Ethernet OAM PDU counters of a test port, as reported to its clients
// through an archive.
#pragma once

#include <string>

#include "eStatsRecord.h"

class EEthernetOAMStats : public EStatsRecord<EEthernetOAMStats> {
 public:
  using EStatsRecord::FillListWithAllIds;
  using EStatsRecord::operator+;
  using EStatsRecord::operator==;
  using EStatsRecord::operator!=;
  using EStatsRecord::Swap;

  void SetInformationPDUsSent(unsigned int value) { m_InformationPDUsSent = value; }
  unsigned int GetInformationPDUsSent() const { return m_InformationPDUsSent; }
  void SetInformationPDUsReceived(unsigned int value) { m_InformationPDUsReceived = value; }
  unsigned int GetInformationPDUsReceived() const { return m_InformationPDUsReceived; }
  void SetEventNotificationPDUsReceived(unsigned int value) {
    m_EventNotificationPDUsReceived = value;
  }
  unsigned int GetEventNotificationPDUsReceived() const { return m_EventNotificationPDUsReceived; }
  void SetLoopbackControlPDUsReceived(unsigned int value) { m_LoopbackControlPDUsReceived = value; }
  unsigned int GetLoopbackControlPDUsReceived() const { return m_LoopbackControlPDUsReceived; }
  void SetOrgPDUsReceived(unsigned int value) { m_OrgPDUsReceived = value; }
  unsigned int GetOrgPDUsReceived() const { return m_OrgPDUsReceived; }
  void SetVariableRequestPDUsReceived(unsigned int value) { m_VariableRequestPDUsReceived = value; }
  unsigned int GetVariableRequestPDUsReceived() const { return m_VariableRequestPDUsReceived; }
  void SetVariableResponsePDUsReceived(unsigned int value) {
    m_VariableResponsePDUsReceived = value;
  }
  unsigned int GetVariableResponsePDUsReceived() const { return m_VariableResponsePDUsReceived; }
  void SetUnsupportedPDUsReceived(unsigned int value) { m_UnsupportedPDUsReceived = value; }
  unsigned int GetUnsupportedPDUsReceived() const { return m_UnsupportedPDUsReceived; }

  // ", Information PDUs Sent: <n>, ..." (every counter but OrgPDUsReceived), to be appended
  // to a caller's prefix.
  std::string ToString() const;

  struct Schema;  // the archive form, in eEthernetOAMStats.cpp

 private:
  unsigned int m_InformationPDUsSent = 0;
  unsigned int m_InformationPDUsReceived = 0;
  unsigned int m_EventNotificationPDUsReceived = 0;
  unsigned int m_LoopbackControlPDUsReceived = 0;
  unsigned int m_OrgPDUsReceived = 0;
  unsigned int m_VariableRequestPDUsReceived = 0;
  unsigned int m_VariableResponsePDUsReceived = 0;
  unsigned int m_UnsupportedPDUsReceived = 0;
};

extern template class ERecord<EEthernetOAMStats>;
extern template class EStatsRecord<EEthernetOAMStats>;
