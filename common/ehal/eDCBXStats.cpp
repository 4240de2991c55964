#include "eDCBXStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::From;
using eHal::detail::Layout;

// Each layout added its counters first; the first one has no DCBXRxError.
struct EDCBXStats::Schema {
  static constexpr auto kFields = std::make_tuple(
      Counter("iSCSITlvSent", &EDCBXStats::m_iSCSITlvSent),
      Counter("iSCSITlvReceived", &EDCBXStats::m_iSCSITlvReceived),
      Counter("DCBXRxError", &EDCBXStats::m_DCBXRxError),
      Counter("DCBXSent", &EDCBXStats::m_DCBXSent),
      Counter("DCBXReceived", &EDCBXStats::m_DCBXReceived),
      Counter("ControlTlvSent", &EDCBXStats::m_ControlTlvSent),
      Counter("ControlTlvReceived", &EDCBXStats::m_ControlTlvReceived),
      Counter("PriorityGroupTlvSent", &EDCBXStats::m_PriorityGroupTlvSent),
      Counter("PriorityGroupTlvReceived", &EDCBXStats::m_PriorityGroupTlvReceived),
      Counter("PFCTlvSent", &EDCBXStats::m_PFCTlvSent),
      Counter("PFCTlvReceived", &EDCBXStats::m_PFCTlvReceived),
      Counter("FCoETlvSent", &EDCBXStats::m_FCoETlvSent),
      Counter("FCoETlvReceived", &EDCBXStats::m_FCoETlvReceived),
      Counter("FCoELogicalLinkTlvSent", &EDCBXStats::m_FCoELogicalLinkTlvSent),
      Counter("FCoELogicalLinkTlvReceived", &EDCBXStats::m_FCoELogicalLinkTlvReceived),
      Counter("LANLogicalLinkTlvSent", &EDCBXStats::m_LANLogicalLinkTlvSent),
      Counter("LANLogicalLinkTlvReceived", &EDCBXStats::m_LANLogicalLinkTlvReceived),
      Counter("CustomizedDCBXTlvSent", &EDCBXStats::m_CustomizedDCBXTlvSent),
      Counter("CustomizedDCBXTlvReceived", &EDCBXStats::m_CustomizedDCBXTlvReceived),
      Counter("MismatchTlvDetected", &EDCBXStats::m_MismatchTlvDetected));
  static constexpr Layout kLayouts[] = {
      {0x2108012a}, {0x21080129, From("DCBXRxError")}, {0x21080128, From("DCBXSent")}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eDcbxStats", 172,
                                              "EDCBXStats::SerializeIn"};
};

template class ERecord<EDCBXStats>;
template class EStatsRecord<EDCBXStats>;
