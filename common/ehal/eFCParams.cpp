#include "eFCParams.h"

#include "eArchive.h"

namespace {
constexpr unsigned int kVersion = 1;
}  // namespace

void EFCParams::Empty() {
  m_RtTOVOverride = 2000;
  m_RaTOVOverride = 10000;
  m_EdTOVOverride = 100;
  m_RtTOV = kTOVStandard;
  m_RaTOV = kTOVStandard;
  m_EdTOV = kTOVStandard;
  m_RemoteBBCredit = 65535;
  m_BbSCN = 0;
  m_RtTOVOverrideValid = false;
  m_RaTOVOverrideValid = false;
  m_EdTOVOverrideValid = false;
  m_RtTOVValid = false;
  m_RaTOVValid = false;
  m_EdTOVValid = false;
  m_RemoteBBCreditValid = false;
  m_BbSCNValid = false;
  m_ResetLink = 0;
  m_ResetLinkAck = 0;
  m_ReservedShort = 0;
  m_ReservedLong2 = 0;
}

void EFCParams::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kVersion));
  archive << m_RtTOVOverride << m_RaTOVOverride << m_EdTOVOverride;
  archive.WriteSignedInt(static_cast<int>(m_RtTOV));
  archive.WriteSignedInt(static_cast<int>(m_RaTOV));
  archive.WriteSignedInt(static_cast<int>(m_EdTOV));
  archive << m_RemoteBBCredit << m_BbSCN << m_RtTOVOverrideValid << m_RaTOVOverrideValid
          << m_EdTOVOverrideValid << m_RtTOVValid << m_RaTOVValid << m_EdTOVValid
          << m_RemoteBBCreditValid << m_BbSCNValid << m_ResetLink << m_ResetLinkAck
          << m_ReservedShort << m_ReservedLong1 << m_ReservedLong2 << m_ReservedText;
}

void EFCParams::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kVersion) {
    EArchive::SerializeError("x86_64/common/ehal/eFCParams", 175, "EFCParams::SerializeIn");
  }
  archive >> m_RtTOVOverride >> m_RaTOVOverride >> m_EdTOVOverride;
  m_RtTOV = static_cast<eTOV>(archive.ReadUnsignedInt());
  m_RaTOV = static_cast<eTOV>(archive.ReadUnsignedInt());
  m_EdTOV = static_cast<eTOV>(archive.ReadUnsignedInt());
  archive >> m_RemoteBBCredit >> m_BbSCN >> m_RtTOVOverrideValid >> m_RaTOVOverrideValid >>
      m_EdTOVOverrideValid >> m_RtTOVValid >> m_RaTOVValid >> m_EdTOVValid >>
      m_RemoteBBCreditValid >> m_BbSCNValid >> m_ResetLink >> m_ResetLinkAck >> m_ReservedShort >>
      m_ReservedLong1 >> m_ReservedLong2 >> m_ReservedText;
}

EArchive& operator<<(EArchive& archive, const EFCParams& params) {
  params.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EFCParams& params) {
  params.SerializeIn(archive);
  return archive;
}
