#include "eEthernetOAMSessionStatus.h"

#include "eArchive.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x78156152;
}  // namespace

void EEthernetOAMSesionStatus::Swap(EEthernetOAMSesionStatus& other) {
  m_LocalStatus.Swap(other.m_LocalStatus);
  m_RemoteStatus.Swap(other.m_RemoteStatus);
}

bool EEthernetOAMSesionStatus::operator==(const EEthernetOAMSesionStatus& other) const {
  return m_LocalStatus == other.m_LocalStatus && m_RemoteStatus == other.m_RemoteStatus;
}

std::string EEthernetOAMSesionStatus::ToString() const {
  return "Local DTE Status: " + m_LocalStatus.ToString() +
         ", Remote DTE Status: " + m_RemoteStatus.ToString();
}

void EEthernetOAMSesionStatus::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_LocalStatus << m_RemoteStatus;
}

void EEthernetOAMSesionStatus::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eEthernetOAMSessionStatus", 97,
                             "eHal::EEthernetOAMSesionStatus::SerializeIn");
  }
  archive >> m_LocalStatus >> m_RemoteStatus;
}

EArchive& operator<<(EArchive& archive, const EEthernetOAMSesionStatus& status) {
  status.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EEthernetOAMSesionStatus& status) {
  status.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
