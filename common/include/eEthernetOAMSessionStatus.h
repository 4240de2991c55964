// eHal::EEthernetOAMSesionStatus (spelled with one "s" in "Sesion"): the Ethernet OAM
// information of both ends of a link, the port's own (local) and the peer's (remote).
#pragma once

#include <string>

#include "eEthernetOAMStatus.h"
#include "eRecord.h"

namespace eHal {

class EEthernetOAMSesionStatus : public ERecord<EEthernetOAMSesionStatus> {
 public:
  EEthernetOAMSesionStatus() = default;

  void Swap(EEthernetOAMSesionStatus& other);
  bool operator==(const EEthernetOAMSesionStatus& other) const;
  bool operator!=(const EEthernetOAMSesionStatus& other) const { return !(*this == other); }

  // The port's own end.
  void SetLocalStatus(const EEthernetOAMStatus& status) { m_LocalStatus = status; }
  const EEthernetOAMStatus& GetLocalStatus() const { return m_LocalStatus; }
  // The peer's end.
  void SetRemoteStatus(const EEthernetOAMStatus& status) { m_RemoteStatus = status; }
  const EEthernetOAMStatus& GetRemoteStatus() const { return m_RemoteStatus; }

  // "Local DTE Status: <local>, Remote DTE Status: <remote>".
  std::string ToString() const;

  struct Schema;  // the archive form, in eEthernetOAMSessionStatus.cpp

 private:
  EEthernetOAMStatus m_LocalStatus;
  EEthernetOAMStatus m_RemoteStatus;
};

}  // namespace eHal

extern template class ERecord<eHal::EEthernetOAMSesionStatus>;
