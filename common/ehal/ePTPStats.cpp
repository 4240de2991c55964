#include "ePTPStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::Field;
using eHal::detail::From;
using eHal::detail::Layout;

// Layout 3 put the clock state ahead of the counters; layouts 1 and 2 carry only the counters.
struct EPTPStats::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("PortState", &EPTPStats::m_PortState),
      Field("StepsRemoved", &EPTPStats::m_StepsRemoved),
      Field("GrandmasterClockClass", &EPTPStats::m_GrandmasterClockClass),
      Field("GrandmasterPriority1", &EPTPStats::m_GrandmasterPriority1),
      Field("OffsetFromMaster", &EPTPStats::m_OffsetFromMaster),
      Field("MeanPathDelay", &EPTPStats::m_MeanPathDelay),
      Field("ClockIdentity", &EPTPStats::m_ClockIdentity),
      Field("GrandmasterIdentity", &EPTPStats::m_GrandmasterIdentity),
      Field("PortIdentity", &EPTPStats::m_PortIdentity),
      Field("ParentPortIdentity", &EPTPStats::m_ParentPortIdentity),
      Field("TimeSource", &EPTPStats::m_TimeSource), Counter("SyncSent", &EPTPStats::m_SyncSent),
      Counter("SyncReceived", &EPTPStats::m_SyncReceived),
      Counter("FollowUpSent", &EPTPStats::m_FollowUpSent),
      Counter("FollowUpReceived", &EPTPStats::m_FollowUpReceived),
      Counter("DelayRequestsSent", &EPTPStats::m_DelayRequestsSent),
      Counter("DelayRequestsReceived", &EPTPStats::m_DelayRequestsReceived),
      Counter("DelayResponsesSent", &EPTPStats::m_DelayResponsesSent),
      Counter("DelayResponsesReceived", &EPTPStats::m_DelayResponsesReceived),
      Counter("AnnouncesSent", &EPTPStats::m_AnnouncesSent),
      Counter("AnnouncesReceived", &EPTPStats::m_AnnouncesReceived));
  static constexpr Layout kLayouts[] = {{3}, {2, From("SyncSent")}, {1, From("SyncSent")}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/ePTPStats", 195,
                                              "EPTPStats::SerializeIn"};
};

template class ERecord<EPTPStats>;
template class EStatsRecord<EPTPStats>;
