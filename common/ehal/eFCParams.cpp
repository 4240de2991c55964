#include "eFCParams.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::kSignedOutUnsignedIn;
using eHal::detail::Layout;

// The signature is a version number. The timeout selections are written signed.
struct EFCParams::Schema {
  using P = EFCParams;
  static constexpr auto kFields = std::make_tuple(
      Field("RtTOVOverride", &P::m_RtTOVOverride), Field("RaTOVOverride", &P::m_RaTOVOverride),
      Field("EdTOVOverride", &P::m_EdTOVOverride),
      Field("RtTOV", &P::m_RtTOV, kSignedOutUnsignedIn),
      Field("RaTOV", &P::m_RaTOV, kSignedOutUnsignedIn),
      Field("EdTOV", &P::m_EdTOV, kSignedOutUnsignedIn),
      Field("RemoteBBCredit", &P::m_RemoteBBCredit), Field("BbSCN", &P::m_BbSCN),
      Field("RtTOVOverrideValid", &P::m_RtTOVOverrideValid),
      Field("RaTOVOverrideValid", &P::m_RaTOVOverrideValid),
      Field("EdTOVOverrideValid", &P::m_EdTOVOverrideValid), Field("RtTOVValid", &P::m_RtTOVValid),
      Field("RaTOVValid", &P::m_RaTOVValid), Field("EdTOVValid", &P::m_EdTOVValid),
      Field("RemoteBBCreditValid", &P::m_RemoteBBCreditValid),
      Field("BbSCNValid", &P::m_BbSCNValid), Field("ResetLink", &P::m_ResetLink),
      Field("ResetLinkAck", &P::m_ResetLinkAck), Field("ReservedShort", &P::m_ReservedShort),
      Field("ReservedLong1", &P::m_ReservedLong1), Field("ReservedLong2", &P::m_ReservedLong2),
      Field("ReservedText", &P::m_ReservedText));
  static constexpr Layout kLayouts[] = {{1}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eFCParams", 175,
                                              "EFCParams::SerializeIn"};
};

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

template class ERecord<EFCParams>;
