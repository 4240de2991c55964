// The protocol statistics records: one table per class (accessors in field order, layouts as
// they appear in the stream, error report, operations offered) drives the same checks over all
// fourteen classes; the worked examples and the clock state of EPTPStats follow by hand.
#include <gtest/gtest.h>

#include <functional>
#include <list>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "damaged_streams.h"
#include "ehal.h"

namespace {

// One accessor pair, reached through the exact member names of the class.
template <typename T>
struct Accessor {
  std::function<void(T&, unsigned int)> set;
  std::function<unsigned int(const T&)> get;
};

template <typename T, typename Value>
Accessor<T> Pair(void (T::*set)(Value), Value (T::*get)() const) {
  return {[set](T& record, unsigned int value) { (record.*set)(static_cast<Value>(value)); },
          [get](const T& record) { return static_cast<unsigned int>((record.*get)()); }};
}

constexpr int kDropped = -1;  // a value an old layout carries that the record does not keep

// One layout: its signature, the text of the fields that are not counters (written or read as
// given, ahead of the counters), and the counters it carries by position, in stream order.
struct ExpectedLayout {
  unsigned int signature;
  std::vector<int> counters;
  std::string freshPrefix = "";  // the non-counter fields of a fresh record, as written
  std::string readPrefix = "";   // non-counter fields fed to the reader
};

std::vector<int> Span(int first, int last) {
  std::vector<int> positions;
  for (int position = first; position <= last; ++position)
    positions.push_back(position);
  return positions;
}

std::vector<int> Join(std::initializer_list<std::vector<int>> parts) {
  std::vector<int> joined;
  for (const std::vector<int>& part : parts)
    joined.insert(joined.end(), part.begin(), part.end());
  return joined;
}

template <typename T>
struct Table;

template <>
struct Table<EARPStats> {
  using T = EARPStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetResponsesSent, &T::GetResponsesSent),
            Pair(&T::SetResponsesReceived, &T::GetResponsesReceived),
            Pair(&T::SetRequestsSent, &T::GetRequestsSent),
            Pair(&T::SetRequestsReceived, &T::GetRequestsReceived)};
  }
  static std::vector<ExpectedLayout> Layouts() { return {{0x18321311, Span(0, 3)}}; }
  static constexpr const char* kFile = "x86_64/common/ehal/eARPStats";
  static constexpr int kLine = 94;
  static constexpr const char* kFunction = "EARPParameters::SerializeIn";
};

template <>
struct Table<EARPParameters> {
  using T = EARPParameters;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetTimeout, &T::GetTimeout), Pair(&T::SetRetries, &T::GetRetries)};
  }
  static std::vector<unsigned int> Defaults() { return {3, 5}; }
  static std::vector<ExpectedLayout> Layouts() { return {{0x18121311, {0, 1}}}; }
  static constexpr const char* kFile = "x86_64/common/ehal/eARPParameters";
  static constexpr int kLine = 87;
  static constexpr const char* kFunction = "EARPParameters::SerializeIn";
};

template <>
struct Table<EICMPStats> {
  using T = EICMPStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetEchoResponsesSent, &T::GetEchoResponsesSent),
            Pair(&T::SetEchoResponsesReceived, &T::GetEchoResponsesReceived),
            Pair(&T::SetEchoRequestsSent, &T::GetEchoRequestsSent),
            Pair(&T::SetEchoRequestsReceived, &T::GetEchoRequestsReceived)};
  }
  static std::vector<ExpectedLayout> Layouts() {
    return {{0x18321311, {0, 3}}, {0x18321312, {1, 2, 0, 3}}};
  }
  static constexpr const char* kFile = "x86_64/common/ehal/eICMPStats";
  static constexpr int kLine = 103;
  static constexpr const char* kFunction = "EICMPParameters::SerializeIn";
};

template <>
struct Table<EDriverStats> {
  using T = EDriverStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetPacketsSent, &T::GetPacketsSent),
            Pair(&T::SetPacketsReceived, &T::GetPacketsReceived),
            Pair(&T::SetPacketsDroppedByDriver, &T::GetPacketsDroppedByDriver),
            Pair(&T::SetPacketsReceiveOverflow, &T::GetPacketsReceiveOverflow)};
  }
  static std::vector<ExpectedLayout> Layouts() {
    return {{0x18321311, {0, 1, 2}}, {0x18321312, {3, 0, 1, 2}}};
  }
  static constexpr const char* kFile = "x86_64/common/ehal/eDriverStats";
  static constexpr int kLine = 96;
  static constexpr const char* kFunction = "EDriverParameters::SerializeIn";
};

template <>
struct Table<EVLANStats> {
  using T = EVLANStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetDroppedPackets, &T::GetDroppedPackets)};
  }
  static std::vector<ExpectedLayout> Layouts() { return {{0x18321311, {0}}}; }
  static constexpr const char* kFile = "x86_64/common/ehal/eVLANStats";
  static constexpr int kLine = 85;
  static constexpr const char* kFunction = "EVLANParameters::SerializeIn";
};

template <>
struct Table<ENeighborSolicitationStats> {
  using T = ENeighborSolicitationStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetIcmp6OutNeighborSolicits, &T::GetIcmp6OutNeighborSolicits),
            Pair(&T::SetIcmp6OutNeighborAdvertisements, &T::GetIcmp6OutNeighborAdvertisements),
            Pair(&T::SetIcmp6InNeighborSolicits, &T::GetIcmp6InNeighborSolicits),
            Pair(&T::SetIcmp6InNeighborAdvertisements, &T::GetIcmp6InNeighborAdvertisements)};
  }
  static std::vector<ExpectedLayout> Layouts() { return {{0x18321311, Span(0, 3)}}; }
  static constexpr const char* kFile = "x86_64/common/ehal/eNeighborSolicitationStats";
  static constexpr int kLine = 106;
  static constexpr const char* kFunction = "ENeighborSolicitationParameters::SerializeIn";
};

template <>
struct Table<EGreStats> {
  using T = EGreStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetGreFramesSent, &T::GetGreFramesSent),
            Pair(&T::SetGreFramesReceived, &T::GetGreFramesReceived),
            Pair(&T::SetGreBytesSent, &T::GetGreBytesSent),
            Pair(&T::SetGreBytesReceived, &T::GetGreBytesReceived)};
  }
  static std::vector<ExpectedLayout> Layouts() { return {{1, Span(0, 3)}}; }
  static constexpr const char* kFile = "x86_64/common/ehal/eGreStats";
  static constexpr int kLine = 93;
  static constexpr const char* kFunction = "EGreParameters::SerializeIn";
};

template <>
struct Table<EDHCPStats> {
  using T = EDHCPStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetDHCPDiscoversSent, &T::GetDHCPDiscoversSent),
            Pair(&T::SetDHCPDiscoversOffersReceived, &T::GetDHCPDiscoversOffersReceived),
            Pair(&T::SetDHCPRequestsSent, &T::GetDHCPRequestsSent),
            Pair(&T::SetDHCPEnabledInterfaces, &T::GetDHCPEnabledInterfaces),
            Pair(&T::SetDHCPAddressesDiscovered, &T::GetDHCPAddressesDiscovered),
            Pair(&T::SetDHCPACKReceived, &T::GetDHCPACKReceived),
            Pair(&T::SetDHCPNAKReceived, &T::GetDHCPNAKReceived),
            Pair(&T::SetDHCPReleasesSent, &T::GetDHCPReleasesSent)};
  }
  static std::vector<ExpectedLayout> Layouts() { return {{1, Span(0, 7)}}; }
  static constexpr const char* kFile = "x86_64/common/ehal/eDHCPStats";
  static constexpr int kLine = 136;
  static constexpr const char* kFunction = "EDHCPStats::SerializeIn";
};

template <>
struct Table<EDHCPv6Stats> {
  using T = EDHCPv6Stats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetDHCPv6SolicitsSent, &T::GetDHCPv6SolicitsSent),
            Pair(&T::SetDHCPv6AdvertisementsReceived, &T::GetDHCPv6AdvertisementsReceived),
            Pair(&T::SetDHCPv6RequestsSent, &T::GetDHCPv6RequestsSent),
            Pair(&T::SetDHCPv6EnabledInterfaces, &T::GetDHCPv6EnabledInterfaces),
            Pair(&T::SetDHCPv6AddressesDiscovered, &T::GetDHCPv6AddressesDiscovered),
            Pair(&T::SetDHCPv6DeclinesSent, &T::GetDHCPv6DeclinesSent),
            Pair(&T::SetDHCPv6RepliesReceived, &T::GetDHCPv6RepliesReceived),
            Pair(&T::SetDHCPv6ReleasesSent, &T::GetDHCPv6ReleasesSent)};
  }
  static std::vector<ExpectedLayout> Layouts() { return {{1, Span(0, 7)}}; }
  static constexpr const char* kFile = "x86_64/common/ehal/eDHCPv6Stats";
  static constexpr int kLine = 142;
  static constexpr const char* kFunction = "EDHCPv6Stats::SerializeIn";
};

// The clock state of layout 3: four 32-bit values, four 64-bit values and three texts.
const char* const kFreshClockState = "0 0 0 0 0 0 0 0 0 0 0 ";
const char* const kSomeClockState =
    "6 5 248 128 4294967296 77 18446744073709551615 1 4 port4 peer3 gps";

template <>
struct Table<EPTPStats> {
  using T = EPTPStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetSyncSent, &T::GetSyncSent),
            Pair(&T::SetSyncReceived, &T::GetSyncReceived),
            Pair(&T::SetFollowUpSent, &T::GetFollowUpSent),
            Pair(&T::SetFollowUpReceived, &T::GetFollowUpReceived),
            Pair(&T::SetDelayRequestsSent, &T::GetDelayRequestsSent),
            Pair(&T::SetDelayRequestsReceived, &T::GetDelayRequestsReceived),
            Pair(&T::SetDelayResponsesSent, &T::GetDelayResponsesSent),
            Pair(&T::SetDelayResponsesReceived, &T::GetDelayResponsesReceived),
            Pair(&T::SetAnnouncesSent, &T::GetAnnouncesSent),
            Pair(&T::SetAnnouncesReceived, &T::GetAnnouncesReceived)};
  }
  static std::vector<ExpectedLayout> Layouts() {
    return {{1, Span(0, 9)}, {2, Span(0, 9)}, {3, Span(0, 9), kFreshClockState, kSomeClockState}};
  }
  static constexpr const char* kFile = "x86_64/common/ehal/ePTPStats";
  static constexpr int kLine = 195;
  static constexpr const char* kFunction = "EPTPStats::SerializeIn";
};

template <>
struct Table<EFCoEStats> {
  using T = EFCoEStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetFCoEFlogiSent, &T::GetFCoEFlogiSent),
            Pair(&T::SetFCoEGlogiSuccessful, &T::GetFCoEFlogiSuccessful),
            Pair(&T::SetFCoEPlogiSent, &T::GetFCoEPlogiSent),
            Pair(&T::SetFCoEPlogiSuccessful, &T::GetFCoEPlogiSuccessful),
            Pair(&T::SetFCoEPlogiReceived, &T::GetFCoEPlogiReceived),
            Pair(&T::SetFCoEFlogoSent, &T::GetFCoEFlogoSent),
            Pair(&T::SetFCoEPlogoSent, &T::GetFCoEPlogoSent),
            Pair(&T::SetFCoEPlogoReceived, &T::GetFCoEPlogoReceived),
            Pair(&T::SetFCoEFdiscSent, &T::GetFCoEFdiscSent),
            Pair(&T::SetFCoEFdiscSuccessful, &T::GetFCoEFdiscSuccessful),
            Pair(&T::SetFCoENSRegSent, &T::GetFCoENSRegSent),
            Pair(&T::SetFCoENSRegSuccessful, &T::GetFCoENSRegSuccessul),
            Pair(&T::SetFCoENSQuerySent, &T::GetFCoENSQuerySent),
            Pair(&T::SetFCoENSQuerySuccessful, &T::GetFCoENSQuerySuccessul),
            Pair(&T::SetFCoEPRLISent, &T::GetFCoEPRLISent),
            Pair(&T::SetFCoEPRLISuccessful, &T::GetFCoEPRLISuccessul),
            Pair(&T::SetFCoEPRLIReceived, &T::GetFCoEPRLIReceived),
            Pair(&T::SetFCoENPortsEnabled, &T::GetFCoENPortsEnabled),
            Pair(&T::SetFCoEPNPortIdsAcquired, &T::GetFCoENPortIdsAcquired),
            Pair(&T::SetFCoEDiscoverySolicitationsSent, &T::GetFCoEDiscoverySolicitationsSent),
            Pair(&T::SetFCoEDiscoveryAdvertisementsReceived,
                 &T::GetFCoEDiscoveryAdvertisementsReceived),
            Pair(&T::SetFCoEKeepAlivesSent, &T::GetFCoEKeepAlivesSent),
            Pair(&T::SetFCoEClearVirtualLinksReceived, &T::GetFCoEClearVirtualLinksReceived),
            Pair(&T::SetRSCNReceived, &T::GetRSCNReceived),
            Pair(&T::SetRSCNAccTransmitted, &T::GetRSCNAccTransmitted),
            Pair(&T::SetSCRTransmitted, &T::GetSCRTransmitted),
            Pair(&T::SetSCRAccReceived, &T::GetSCRAccReceived)};
  }
  static std::vector<ExpectedLayout> Layouts() {
    const std::vector<int> v1 = Join({Span(0, 11), {17, 18}});
    const std::vector<int> v2 = Join({Span(19, 22), v1});
    const std::vector<int> v3 = Join({Span(12, 16), v2});
    const std::vector<int> v4 = Join({Span(23, 26), v3});
    return {{1, v1}, {2, v2}, {3, v3}, {4, v4}};
  }
  static constexpr const char* kFile = "x86_64/common/ehal/eFCoEStats";
  static constexpr int kLine = 270;
  static constexpr const char* kFunction = "EFCoEStats::SerializeIn";
};

template <>
struct Table<EDCBXStats> {
  using T = EDCBXStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetDCBXSent, &T::GetDCBXSent),
            Pair(&T::SetDCBXReceived, &T::GetDCBXReceived),
            Pair(&T::SetDCBXRxError, &T::GetDCBXRxError),
            Pair(&T::SetControlTlvSent, &T::GetControlTlvSent),
            Pair(&T::SetControlTlvReceived, &T::GetControlTlvReceived),
            Pair(&T::SetPriorityGroupTlvSent, &T::GetPriorityGroupTlvSent),
            Pair(&T::SetPriorityGroupTlvReceived, &T::GetPriorityGroupTlvReceived),
            Pair(&T::SetPFCTlvSent, &T::GetPFCTlvSent),
            Pair(&T::SetPFCTlvReceived, &T::GetPFCTlvReceived),
            Pair(&T::SetFCoETlvSent, &T::GetFCoETlvSent),
            Pair(&T::SetFCoETlvReceived, &T::GetFCoETlvReceived),
            Pair(&T::SetFCoELogicalLinkTlvSent, &T::GetFCoELogicalLinkTlvSent),
            Pair(&T::SetFCoELogicalLinkTlvReceived, &T::GetFCoELogicalLinkTlvReceived),
            Pair(&T::SetLANLogicalLinkTlvSent, &T::GetLANLogicalLinkTlvSent),
            Pair(&T::SetLANLogicalLinkTlvReceived, &T::GetLANLogicalLinkTlvReceived),
            Pair(&T::SetCustomizedDCBXTlvSent, &T::GetCustomizedDCBXTlvSent),
            Pair(&T::SetCustomizedDCBXTlvReceived, &T::GetCustomizedDCBXTlvReceived),
            Pair(&T::SetMismatchTlvDetected, &T::GetMismatchTlvDetected),
            Pair(&T::SetiSCSITlvSent, &T::GetiSCSITlvSent),
            Pair(&T::SetiSCSITlvReceived, &T::GetiSCSITlvReceived)};
  }
  static std::vector<ExpectedLayout> Layouts() {
    const std::vector<int> v1 = Join({{0, 1}, Span(3, 17)});
    const std::vector<int> v2 = Join({{2}, v1});
    const std::vector<int> v3 = Join({{18, 19, 2}, v1});
    return {{0x21080128, v1}, {0x21080129, v2}, {0x2108012a, v3}};
  }
  static constexpr const char* kFile = "x86_64/common/ehal/eDcbxStats";
  static constexpr int kLine = 172;
  static constexpr const char* kFunction = "EDCBXStats::SerializeIn";
};

template <>
struct Table<ELLDPStats> {
  using T = ELLDPStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetLLDPSent, &T::GetLLDPSent),
            Pair(&T::SetLLDPReceived, &T::GetLLDPReceived),
            Pair(&T::SetLLDPRxAgeout, &T::GetLLDPRxAgeout),
            Pair(&T::SetLLDPRxError, &T::GetLLDPRxError),
            Pair(&T::SetLLDPNeighborCount, &T::GetLLDPNeighborCount),
            Pair(&T::SetLLDPRxTlvUnrecognized, &T::GetLLDPRxTlvUnrecognized)};
  }
  static std::vector<ExpectedLayout> Layouts() {
    return {{0x21080128, {0, 1, 2, kDropped, 3, kDropped, 5}}, {0x21080129, {4, 0, 1, 2, 3, 5}}};
  }
  static constexpr const char* kFile = "x86_64/common/ehal/eLldpStats";
  static constexpr int kLine = 125;
  static constexpr const char* kFunction = "ELLDPStats::SerializeIn";
};

template <>
struct Table<EEthernetOAMStats> {
  using T = EEthernetOAMStats;
  static std::vector<Accessor<T>> Counters() {
    return {Pair(&T::SetInformationPDUsSent, &T::GetInformationPDUsSent),
            Pair(&T::SetInformationPDUsReceived, &T::GetInformationPDUsReceived),
            Pair(&T::SetEventNotificationPDUsReceived, &T::GetEventNotificationPDUsReceived),
            Pair(&T::SetLoopbackControlPDUsReceived, &T::GetLoopbackControlPDUsReceived),
            Pair(&T::SetOrgPDUsReceived, &T::GetOrgPDUsReceived),
            Pair(&T::SetVariableRequestPDUsReceived, &T::GetVariableRequestPDUsReceived),
            Pair(&T::SetVariableResponsePDUsReceived, &T::GetVariableResponsePDUsReceived),
            Pair(&T::SetUnsupportedPDUsReceived, &T::GetUnsupportedPDUsReceived)};
  }
  static std::vector<ExpectedLayout> Layouts() { return {{0x91201742, Span(0, 7)}}; }
  static constexpr const char* kFile = "x86_64/common/ehal/eEthernetOAMStats";
  static constexpr int kLine = 149;
  static constexpr const char* kFunction = "EEthernetOAMStats::SerializeIn";
};

// The classes that offer each optional operation.
using IdListingClasses =
    std::tuple<EARPStats, EICMPStats, EDriverStats, EVLANStats, ENeighborSolicitationStats,
               EGreStats, EDHCPStats, EDHCPv6Stats, EPTPStats, EFCoEStats, EEthernetOAMStats>;
using SummableClasses = std::tuple<EDHCPStats, EDHCPv6Stats, EPTPStats, EFCoEStats, EDCBXStats,
                                   ELLDPStats, EEthernetOAMStats>;
using UnequalClasses =
    std::tuple<EDHCPStats, EDHCPv6Stats, EPTPStats, EDCBXStats, ELLDPStats, EEthernetOAMStats>;
using EqualClasses = std::tuple<EEthernetOAMStats>;
using SwappableClasses = std::tuple<ENeighborSolicitationStats, EEthernetOAMStats>;
using DescribableClasses = std::tuple<EEthernetOAMStats>;

template <typename T, typename Tuple>
struct Contains;
template <typename T, typename... Classes>
struct Contains<T, std::tuple<Classes...>> : std::disjunction<std::is_same<T, Classes>...> {};

template <typename Tuple>
struct AsTestTypes;
template <typename... Classes>
struct AsTestTypes<std::tuple<Classes...>> {
  using type = ::testing::Types<Classes...>;
};

// The counters of a fresh record: zeros unless the class's table says otherwise.
template <typename T, typename = void>
struct DefaultsOf {
  static std::vector<unsigned int> Get() {
    return std::vector<unsigned int>(Table<T>::Counters().size(), 0u);
  }
};
template <typename T>
struct DefaultsOf<T, std::void_t<decltype(Table<T>::Defaults())>> {
  static std::vector<unsigned int> Get() { return Table<T>::Defaults(); }
};

// Which of the optional operations a class offers (protected operations do not count).
template <typename T, typename = void>
struct HasFillIds : std::false_type {};
template <typename T>
struct HasFillIds<T, std::void_t<decltype(std::declval<const T&>().FillListWithAllIds(
                         std::declval<std::list<int>&>()))>> : std::true_type {};
template <typename T, typename = void>
struct HasPlus : std::false_type {};
template <typename T>
struct HasPlus<T, std::void_t<decltype(std::declval<const T&>() + std::declval<const T&>())>>
    : std::true_type {};
template <typename T, typename = void>
struct HasEqual : std::false_type {};
template <typename T>
struct HasEqual<T, std::void_t<decltype(std::declval<const T&>() == std::declval<const T&>())>>
    : std::true_type {};
template <typename T, typename = void>
struct HasNotEqual : std::false_type {};
template <typename T>
struct HasNotEqual<T, std::void_t<decltype(std::declval<const T&>() != std::declval<const T&>())>>
    : std::true_type {};
template <typename T, typename = void>
struct HasSwap : std::false_type {};
template <typename T>
struct HasSwap<T, std::void_t<decltype(std::declval<T&>().Swap(std::declval<T&>()))>>
    : std::true_type {};
template <typename T, typename = void>
struct HasToString : std::false_type {};
template <typename T>
struct HasToString<T, std::void_t<decltype(std::declval<const T&>().ToString())>> : std::true_type {
};

template <typename T>
std::vector<unsigned int> CountersOf(const T& record) {
  std::vector<unsigned int> values;
  for (const Accessor<T>& counter : Table<T>::Counters())
    values.push_back(counter.get(record));
  return values;
}

// A record whose counter i holds base + i.
template <typename T>
T Filled(unsigned int base) {
  T record;
  const std::vector<Accessor<T>> counters = Table<T>::Counters();
  for (std::size_t i = 0; i < counters.size(); ++i)
    counters[i].set(record, base + static_cast<unsigned int>(i));
  return record;
}

template <typename T>
std::vector<unsigned int> Sequence(unsigned int base) {
  return CountersOf(Filled<T>(base));
}

// Signatures the class must refuse: the neighbours of its accepted ones, 0 and a foreign one.
template <typename T>
std::vector<unsigned int> ForeignSignatures() {
  std::vector<unsigned int> foreign{0u, 0x12345678u};
  for (const ExpectedLayout& layout : Table<T>::Layouts()) {
    for (const unsigned int candidate : {layout.signature - 1, layout.signature + 1}) {
      bool accepted = false;
      for (const ExpectedLayout& other : Table<T>::Layouts())
        accepted = accepted || other.signature == candidate;
      if (!accepted) foreign.push_back(candidate);
    }
  }
  return foreign;
}

template <typename T>
class StatsRecord : public ::testing::Test {};

using StatsClasses =
    ::testing::Types<EARPStats, EARPParameters, EICMPStats, EDriverStats, EVLANStats,
                     ENeighborSolicitationStats, EGreStats, EDHCPStats, EDHCPv6Stats, EPTPStats,
                     EFCoEStats, EDCBXStats, ELLDPStats, EEthernetOAMStats>;

class ClassNames {
 public:
  template <typename T>
  static std::string GetName(int) {
    return std::string(::testing::internal::GetTypeName<T>());
  }
};

TYPED_TEST_SUITE(StatsRecord, StatsClasses, ClassNames);

TYPED_TEST(StatsRecord, OffersExactlyItsOperations) {
  using T = TypeParam;
  EXPECT_EQ(HasFillIds<T>::value, (Contains<T, IdListingClasses>::value));
  EXPECT_EQ(HasPlus<T>::value, (Contains<T, SummableClasses>::value));
  EXPECT_EQ(HasEqual<T>::value, (Contains<T, EqualClasses>::value));
  EXPECT_EQ(HasNotEqual<T>::value, (Contains<T, UnequalClasses>::value));
  EXPECT_EQ(HasSwap<T>::value, (Contains<T, SwappableClasses>::value));
  EXPECT_EQ(HasToString<T>::value, (Contains<T, DescribableClasses>::value));
}

TYPED_TEST(StatsRecord, FreshAndEmptiedRecordsHoldTheDefaults) {
  using T = TypeParam;
  const std::vector<unsigned int> defaults = DefaultsOf<T>::Get();
  EXPECT_EQ(CountersOf(T()), defaults);
  T record = Filled<T>(100);
  ASSERT_NE(CountersOf(record), defaults);
  record.Empty();
  EXPECT_EQ(CountersOf(record), defaults);
}

TYPED_TEST(StatsRecord, EveryAccessorReachesItsOwnCounter) {
  using T = TypeParam;
  const std::vector<Accessor<T>> counters = Table<T>::Counters();
  const std::vector<unsigned int> defaults = DefaultsOf<T>::Get();
  for (std::size_t i = 0; i < counters.size(); ++i) {
    T record;
    counters[i].set(record, 40000 + static_cast<unsigned int>(i));
    std::vector<unsigned int> expected = defaults;
    expected[i] = 40000 + static_cast<unsigned int>(i);
    EXPECT_EQ(CountersOf(record), expected) << "counter " << i;
  }
}

TYPED_TEST(StatsRecord, CopyAndAssignmentTakeEveryCounter) {
  using T = TypeParam;
  const T source = Filled<T>(7);
  T copied;
  copied.Copy(source);
  EXPECT_EQ(CountersOf(copied), Sequence<T>(7));
  const T constructed(source);
  EXPECT_EQ(CountersOf(constructed), Sequence<T>(7));
  T assigned = Filled<T>(300);
  assigned = source;
  EXPECT_EQ(CountersOf(assigned), Sequence<T>(7));
}

// The text a layout carries for the given counter values (dropped values as `dropped`).
template <typename T>
std::string LayoutText(const ExpectedLayout& layout, const std::string& prefix,
                       const std::vector<unsigned int>& values, unsigned int dropped) {
  std::string text = std::to_string(layout.signature) + " " + prefix;
  for (const int position : layout.counters)
    text += std::to_string(position == kDropped ? dropped : values[position]) + " ";
  return text;
}

TYPED_TEST(StatsRecord, WritesTheNewestLayout) {
  using T = TypeParam;
  const ExpectedLayout newest = Table<T>::Layouts().back();
  EXPECT_EQ(BytesOf(Filled<T>(100)),
            LayoutText<T>(newest, newest.freshPrefix, Sequence<T>(100), 0));
  EXPECT_EQ(BytesOf(T()), LayoutText<T>(newest, newest.freshPrefix, DefaultsOf<T>::Get(), 0));
}

TYPED_TEST(StatsRecord, ReadsEveryLayoutIntoAPrefilledRecord) {
  using T = TypeParam;
  for (const ExpectedLayout& layout : Table<T>::Layouts()) {
    SCOPED_TRACE(layout.signature);
    const std::vector<unsigned int> incoming = Sequence<T>(200);
    const std::string bytes = LayoutText<T>(layout, layout.readPrefix, incoming, 999);
    T record = Filled<T>(500);
    EArchive archive = LoadingArchive(bytes);
    archive >> record;
    EXPECT_EQ(archive.GetReadPosition(), bytes.size()) << "reads exactly the layout";
    std::vector<unsigned int> expected = Sequence<T>(500);
    for (const int position : layout.counters) {
      if (position != kDropped) expected[position] = incoming[position];
    }
    EXPECT_EQ(CountersOf(record), expected);
  }
}

TYPED_TEST(StatsRecord, RoundTrip) {
  using T = TypeParam;
  T back;
  ReadFrom(BytesOf(Filled<T>(0xFFFF0000u)), back);
  EXPECT_EQ(CountersOf(back), Sequence<T>(0xFFFF0000u));
}

TYPED_TEST(StatsRecord, ForeignSignatureIsReportedAndEndsTheProcess) {
  using T = TypeParam;
  for (const unsigned int signature : ForeignSignatures<T>()) {
    SCOPED_TRACE(signature);
    ExpectSerializeError(
        [signature] {
          T record;
          ReadFrom(std::to_string(signature) + " 1 2 3 4 5 6 7 8 ", record);
        },
        Table<T>::kFile, Table<T>::kLine, Table<T>::kFunction);
  }
}

TYPED_TEST(StatsRecord, ForeignSignatureLeavesTheRecordAsItWas) {
  using T = TypeParam;
  ScopedThrowingSerializeErrors throwing;
  T record = Filled<T>(60);
  try {
    ReadFrom("305419896 1 2 3 ", record);
    ADD_FAILURE() << "a foreign signature was accepted";
  } catch (const SerializeErrorThrown& error) {
    EXPECT_EQ(error.file, Table<T>::kFile);
    EXPECT_EQ(error.line, Table<T>::kLine);
    EXPECT_EQ(error.function, Table<T>::kFunction);
  }
  EXPECT_EQ(CountersOf(record), Sequence<T>(60));
}

TYPED_TEST(StatsRecord, ReadsEveryPrefixOfItsStreamSafely) {
  using T = TypeParam;
  const std::string bytes = BytesOf(Filled<T>(10));
  // Streams cut anywhere run out of data; the reader then yields zeros and wraps, or is refused
  // at the wrap limit, and stays within the buffer (the sanitizer build checks that).
  EXPECT_GT(ReadEveryPrefix<T>(bytes), 0);
  // The last token may end at the end of the stream, without its blank.
  T record;
  ReadFrom(bytes.substr(0, bytes.size() - 1), record);
  EXPECT_EQ(CountersOf(record), Sequence<T>(10));
}

// The optional operations, each over the classes that offer it.

template <typename T>
class IdListingRecord : public ::testing::Test {};
TYPED_TEST_SUITE(IdListingRecord, AsTestTypes<IdListingClasses>::type, ClassNames);

TYPED_TEST(IdListingRecord, FillListWithAllIdsAppendsEveryCounterId) {
  using T = TypeParam;
  const int count = static_cast<int>(Table<T>::Counters().size());
  std::list<int> ids{9};
  Filled<T>(3).FillListWithAllIds(ids);
  std::list<int> expected{9};
  for (int id = 0; id < count; ++id)
    expected.push_back(id);
  EXPECT_EQ(ids, expected);
  T().FillListWithAllIds(ids);  // appends again
  for (int id = 0; id < count; ++id)
    expected.push_back(id);
  EXPECT_EQ(ids, expected);
}

template <typename T>
class SummableRecord : public ::testing::Test {};
TYPED_TEST_SUITE(SummableRecord, AsTestTypes<SummableClasses>::type, ClassNames);

TYPED_TEST(SummableRecord, SumWrapsCounterByCounter) {
  using T = TypeParam;
  const T left = Filled<T>(0xFFFFFFF0u);
  const T right = Filled<T>(0x20u);
  const T sum = left + right;
  const std::vector<unsigned int> values = CountersOf(sum);
  for (std::size_t i = 0; i < values.size(); ++i)
    EXPECT_EQ(values[i], 0x10u + 2 * i) << "counter " << i;
  EXPECT_EQ(CountersOf(left), Sequence<T>(0xFFFFFFF0u)) << "operands are unchanged";
  EXPECT_EQ(CountersOf(right), Sequence<T>(0x20u)) << "operands are unchanged";
}

template <typename T>
class ComparableRecord : public ::testing::Test {};
TYPED_TEST_SUITE(ComparableRecord, AsTestTypes<UnequalClasses>::type, ClassNames);

TYPED_TEST(ComparableRecord, InequalitySeesEveryCounter) {
  using T = TypeParam;
  const std::vector<Accessor<T>> counters = Table<T>::Counters();
  const T base = Filled<T>(11);
  EXPECT_FALSE(base != Filled<T>(11));
  for (std::size_t i = 0; i < counters.size(); ++i) {
    T other = base;
    counters[i].set(other, counters[i].get(other) + 1);
    EXPECT_TRUE(base != other) << "counter " << i;
  }
}

template <typename T>
class SwappableRecord : public ::testing::Test {};
TYPED_TEST_SUITE(SwappableRecord, AsTestTypes<SwappableClasses>::type, ClassNames);

TYPED_TEST(SwappableRecord, SwapExchangesEveryCounter) {
  using T = TypeParam;
  T first = Filled<T>(1);
  T second = Filled<T>(1000);
  first.Swap(second);
  EXPECT_EQ(CountersOf(first), Sequence<T>(1000));
  EXPECT_EQ(CountersOf(second), Sequence<T>(1));
}

// Worked examples and edge cases, class by class.

TEST(EICMPStats, WritesTheMissingCountersFirst) {
  EICMPStats record;
  record.SetEchoResponsesSent(1);
  record.SetEchoResponsesReceived(2);
  record.SetEchoRequestsSent(3);
  record.SetEchoRequestsReceived(4);
  EXPECT_EQ(BytesOf(record), "405934866 2 3 1 4 ");
}

TEST(EICMPStats, OldLayoutSetsOnlyItsTwoCounters) {
  EICMPStats record;
  record.SetEchoResponsesSent(1);
  record.SetEchoResponsesReceived(2);
  record.SetEchoRequestsSent(3);
  record.SetEchoRequestsReceived(4);
  ReadFrom("405934865 7 8 ", record);
  EXPECT_EQ(record.GetEchoResponsesSent(), 7u);
  EXPECT_EQ(record.GetEchoResponsesReceived(), 2u);
  EXPECT_EQ(record.GetEchoRequestsSent(), 3u);
  EXPECT_EQ(record.GetEchoRequestsReceived(), 8u);
}

TEST(EICMPStats, ReportNamesTheParametersReader) {
  ExpectSerializeError(
      [] {
        EICMPStats record;
        ReadFrom("405934867 ", record);
      },
      "x86_64/common/ehal/eICMPStats", 103, "EICMPParameters::SerializeIn");
  const ChildResult result = RunInChild([] {
    EICMPStats record;
    ReadFrom("1 ", record);
  });
  EXPECT_EQ(result.output,
            "*** Exception in FILE x86_64/common/ehal/eICMPStats, LINE 103:\n"
            "EICMPParameters::SerializeIn - EArchive::SerializeError()\n");
}

TEST(EARPStats, FillListWithAllIdsKeepsWhatTheListHeld) {
  std::list<int> ids{9};
  EARPStats().FillListWithAllIds(ids);
  EXPECT_EQ(ids, (std::list<int>{9, 0, 1, 2, 3}));
}

TEST(EARPStats, ReportNamesTheParametersReader) {
  ExpectSerializeError(
      [] {
        EARPStats record;
        ReadFrom("405934866 1 2 3 4 ", record);
      },
      "x86_64/common/ehal/eARPStats", 94, "EARPParameters::SerializeIn");
}

TEST(EARPParameters, FreshAndEmptiedRecordHoldTimeout3AndRetries5) {
  EARPParameters parameters;
  EXPECT_EQ(parameters.GetTimeout(), 3);
  EXPECT_EQ(parameters.GetRetries(), 5);
  parameters.SetTimeout(60);
  parameters.SetRetries(0);
  parameters.Empty();
  EXPECT_EQ(parameters.GetTimeout(), 3);
  EXPECT_EQ(parameters.GetRetries(), 5);
  EXPECT_EQ(BytesOf(parameters), "403837713 3 5 ");
}

TEST(EARPParameters, FieldsAreSixteenBitsWide) {
  EARPParameters parameters;
  parameters.SetTimeout(65535);
  EXPECT_EQ(BytesOf(parameters), "403837713 65535 5 ");
  ReadFrom("403837713 65536 65537 ", parameters);  // read as unsigned short: truncated
  EXPECT_EQ(parameters.GetTimeout(), 0);
  EXPECT_EQ(parameters.GetRetries(), 1);
}

TEST(EDriverStats, OldLayoutLeavesTheOverflowCounter) {
  EDriverStats record;
  record.SetPacketsReceiveOverflow(77);
  ReadFrom("405934865 1 2 3 ", record);
  EXPECT_EQ(record.GetPacketsSent(), 1u);
  EXPECT_EQ(record.GetPacketsReceived(), 2u);
  EXPECT_EQ(record.GetPacketsDroppedByDriver(), 3u);
  EXPECT_EQ(record.GetPacketsReceiveOverflow(), 77u);
  EXPECT_EQ(BytesOf(record), "405934866 77 1 2 3 ");
}

TEST(EDHCPStats, SumWrapsModulo2To32) {
  EDHCPStats left;
  EDHCPStats right;
  left.SetDHCPReleasesSent(0xFFFFFFFFu);
  right.SetDHCPReleasesSent(1);
  left.SetDHCPACKReceived(5);
  right.SetDHCPACKReceived(6);
  const EDHCPStats sum = left + right;
  EXPECT_EQ(sum.GetDHCPReleasesSent(), 0u);
  EXPECT_EQ(sum.GetDHCPACKReceived(), 11u);
  EXPECT_TRUE(sum != left);
  EXPECT_EQ(BytesOf(sum), "1 0 0 0 0 0 11 0 0 ");
}

TEST(EFCoEStats, MisspelledAccessorsReachTheirCounters) {
  EFCoEStats record;
  record.SetFCoEGlogiSuccessful(1);
  record.SetFCoENSRegSuccessful(2);
  record.SetFCoENSQuerySuccessful(3);
  record.SetFCoEPRLISuccessful(4);
  record.SetFCoEPNPortIdsAcquired(5);
  EXPECT_EQ(record.GetFCoEFlogiSuccessful(), 1u);
  EXPECT_EQ(record.GetFCoENSRegSuccessul(), 2u);
  EXPECT_EQ(record.GetFCoENSQuerySuccessul(), 3u);
  EXPECT_EQ(record.GetFCoEPRLISuccessul(), 4u);
  EXPECT_EQ(record.GetFCoENPortIdsAcquired(), 5u);
}

TEST(EFCoEStats, Version2LeavesTheLaterCounters) {
  EFCoEStats record = Filled<EFCoEStats>(1000);
  // c19..c22, then c0..c11, c17, c18
  ReadFrom("2 19 20 21 22 0 1 2 3 4 5 6 7 8 9 10 11 17 18 ", record);
  const std::vector<unsigned int> values = CountersOf(record);
  for (unsigned int i = 0; i < 27; ++i) {
    const bool read = i <= 11 || i == 17 || i == 18 || (i >= 19 && i <= 22);
    EXPECT_EQ(values[i], read ? i : 1000 + i) << "counter " << i;
  }
}

TEST(EFCoEStats, WritesVersion4) {
  EXPECT_EQ(BytesOf(Filled<EFCoEStats>(0)),
            "4 23 24 25 26 12 13 14 15 16 19 20 21 22 0 1 2 3 4 5 6 7 8 9 10 11 17 18 ");
}

TEST(EDCBXStats, FirstLayoutHasNoRxErrorCounter) {
  EDCBXStats record;
  record.SetDCBXRxError(42);
  record.SetMismatchTlvDetected(1);
  record.SetiSCSITlvSent(43);
  ReadFrom("554172712 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 ", record);
  EXPECT_EQ(record.GetDCBXSent(), 1u);
  EXPECT_EQ(record.GetDCBXReceived(), 2u);
  EXPECT_EQ(record.GetDCBXRxError(), 42u);
  EXPECT_EQ(record.GetControlTlvSent(), 3u);
  EXPECT_EQ(record.GetMismatchTlvDetected(), 17u);
  EXPECT_EQ(record.GetiSCSITlvSent(), 43u);
  EXPECT_EQ(BytesOf(record), "554172714 43 0 42 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 ");
}

TEST(ELLDPStats, FirstLayoutDropsItsRetiredValues) {
  ELLDPStats record;
  record.SetLLDPNeighborCount(66);
  ReadFrom("554172712 1 2 3 99 4 98 5 ", record);
  EXPECT_EQ(record.GetLLDPSent(), 1u);
  EXPECT_EQ(record.GetLLDPReceived(), 2u);
  EXPECT_EQ(record.GetLLDPRxAgeout(), 3u);
  EXPECT_EQ(record.GetLLDPRxError(), 4u);
  EXPECT_EQ(record.GetLLDPRxTlvUnrecognized(), 5u);
  EXPECT_EQ(record.GetLLDPNeighborCount(), 66u);
  EXPECT_EQ(BytesOf(record), "554172713 66 1 2 3 4 5 ");
}

TEST(EEthernetOAMStats, SignatureIsWrittenUnsigned) {
  EXPECT_EQ(BytesOf(EEthernetOAMStats()), "2434799426 0 0 0 0 0 0 0 0 ");
  EEthernetOAMStats record;
  ReadFrom("2434799426 1 2 3 4 5 6 7 8 ", record);
  EXPECT_EQ(record.GetUnsupportedPDUsReceived(), 8u);
  // The same value as a negative text is a different token and is refused.
  ExpectSerializeError(
      [] {
        EEthernetOAMStats other;
        ReadFrom("-1860167870 1 2 3 4 5 6 7 8 ", other);
      },
      "x86_64/common/ehal/eEthernetOAMStats", 149, "EEthernetOAMStats::SerializeIn");
}

TEST(EEthernetOAMStats, ToStringLeavesOutTheOrgCounter) {
  EEthernetOAMStats record = Filled<EEthernetOAMStats>(1);
  record.SetOrgPDUsReceived(555);
  EXPECT_EQ(record.ToString(),
            ", Information PDUs Sent: 1, Information PDUs Received: 2, Event Notification PDUs "
            "Received: 3, Loopback Control PDUs Received: 4, Variable Request PDUs Received: 6, "
            "Variable Response PDUs Received: 7, Unsupported PDUs Received: 8");
  EXPECT_EQ(EEthernetOAMStats().ToString(),
            ", Information PDUs Sent: 0, Information PDUs Received: 0, Event Notification PDUs "
            "Received: 0, Loopback Control PDUs Received: 0, Variable Request PDUs Received: 0, "
            "Variable Response PDUs Received: 0, Unsupported PDUs Received: 0");
  record.SetInformationPDUsSent(4294967295u);
  EXPECT_EQ(record.ToString().substr(0, 36), ", Information PDUs Sent: 4294967295,");
}

TEST(EEthernetOAMStats, EqualitySeesEveryCounter) {
  const std::vector<Accessor<EEthernetOAMStats>> counters = Table<EEthernetOAMStats>::Counters();
  const EEthernetOAMStats base = Filled<EEthernetOAMStats>(11);
  EXPECT_TRUE(base == Filled<EEthernetOAMStats>(11));
  for (std::size_t i = 0; i < counters.size(); ++i) {
    EEthernetOAMStats other = base;
    counters[i].set(other, counters[i].get(other) + 1);
    EXPECT_FALSE(base == other) << "counter " << i;
  }
}

TEST(EEthernetOAMStats, EqualityAndSwap) {
  EEthernetOAMStats first = Filled<EEthernetOAMStats>(1);
  EEthernetOAMStats second;
  EXPECT_FALSE(first == second);
  first.Swap(second);
  EXPECT_TRUE(first == EEthernetOAMStats());
  EXPECT_TRUE(second == Filled<EEthernetOAMStats>(1));
}

// EPTPStats: the clock state has no accessors, so it is observed through the archive.
const std::string kSomeClockStream = std::string("3 ") + kSomeClockState + "0 1 2 3 4 5 6 7 8 9 ";

TEST(EPTPStats, ClockStateSurvivesARoundTrip) {
  EPTPStats record;
  ReadFrom(kSomeClockStream, record);
  EXPECT_EQ(BytesOf(record), kSomeClockStream);
  EXPECT_EQ(record.GetSyncSent(), 0u);
  EXPECT_EQ(record.GetAnnouncesReceived(), 9u);
}

TEST(EPTPStats, Versions1And2ReadExactlyTheTenCounters) {
  for (const char* signature : {"1 ", "2 "}) {
    EPTPStats record;
    ReadFrom(kSomeClockStream, record);
    const std::string bytes = std::string(signature) + "10 11 12 13 14 15 16 17 18 19 ";
    EArchive archive = LoadingArchive(bytes);
    archive >> record;
    EXPECT_EQ(archive.GetReadPosition(), bytes.size());
    EXPECT_EQ(BytesOf(record),
              std::string("3 ") + kSomeClockState + "10 11 12 13 14 15 16 17 18 19 ")
        << "the clock state is left as it was";
  }
}

TEST(EPTPStats, Versions0And4AreRefused) {
  for (const char* bytes : {"0 1 2 3 4 5 6 7 8 9 10 ", "4 1 2 3 4 5 6 7 8 9 10 "}) {
    ExpectSerializeError(
        [bytes] {
          EPTPStats record;
          ReadFrom(bytes, record);
        },
        "x86_64/common/ehal/ePTPStats", 195, "EPTPStats::SerializeIn");
  }
}

TEST(EPTPStats, SumTakesOnlyTheCountersAndAFreshClockState) {
  EPTPStats left;
  ReadFrom(kSomeClockStream, left);
  EPTPStats right;
  right.SetSyncSent(0xFFFFFFFFu);
  right.SetAnnouncesReceived(1);
  const EPTPStats sum = left + right;
  EXPECT_EQ(BytesOf(sum), std::string("3 ") + kFreshClockState + "4294967295 1 2 3 4 5 6 7 8 10 ");
}

TEST(EPTPStats, InequalitySeesTheClockState) {
  EPTPStats first;
  EPTPStats second;
  ReadFrom(kSomeClockStream, first);
  ReadFrom(kSomeClockStream, second);
  EXPECT_FALSE(first != second);
  ReadFrom(
      "3 6 5 248 128 4294967296 77 18446744073709551615 1 4 port4 peer3 ntp"
      "0 1 2 3 4 5 6 7 8 9 ",
      second);
  EXPECT_TRUE(first != second);
  second.Copy(first);
  EXPECT_FALSE(first != second);
  second.Empty();
  EXPECT_EQ(BytesOf(second), std::string("3 ") + kFreshClockState + "0 0 0 0 0 0 0 0 0 0 ");
}

}  // namespace
