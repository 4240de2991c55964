#include "eInterfaceTableHooks.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <list>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "child_process.h"
#include "eComponentId.h"
#include "eIPAddress.h"
#include "eIgnoreInterfaceTableHooks.h"
#include "eInterfaceTable.h"
#include "eMACAddress.h"
#include "eMultipleInterfaceTableHooks.h"
#include "eUid64.h"
#include "eVLAN.h"
#include "eVLANIPAddressTableItemProperties.h"
#include "virtual_slot.h"

namespace {

using Hooks = EInterfaceTableHooks;
using Table = const EInterfaceTable&;
using Item = const EInterfaceItem&;
using V4Item = const EIPv4AddressItem&;
using V6Item = const EIPv6AddressItem&;
using Props = const EVLANIPAddressTableItemProperties&;
using Address = const EIPAddress&;
using Vlan = const EVLAN&;
using Mac = const EMACAddress&;
using Uid = const EUID&;
using Component = const EComponentId&;
using Text = const std::string&;
using Dhcp = const EDHCPProperties&;
using Dhcpv6 = const EDHCPv6Properties&;
using FCoE = const EFCoEConfig&;
using NPIV = const ENPIVConfig&;
using PTP = const EPTPConfig&;
using DCBX = const EDCBXConfig&;
using LLDP = const ELLDPConfig&;
using TLVs = const std::list<EDHCPTLV>&;
using NSRegOption = const ENSRegOption&;
using PLOGIDestinations = const std::vector<EPLOGIDestination>&;
using FCNSQuery = const EFCNSQuery&;
using ChassisId = const ELLDPConfig::LLDPChassisId&;
using PortId = const ELLDPConfig::LLDPPortId&;
using FeatureTlvs = const std::vector<EDCBXFeatureTlv>&;

// The slot of a hook whose signature is exactly `Signature`: any other parameter list does not
// convert, so a changed signature fails to compile.
template <typename Signature>
std::ptrdiff_t Slot(Signature Hooks::*hook) {
#if EHAL_HAS_VIRTUAL_SLOT
  return VirtualSlot(hook);
#else
  static_cast<void>(hook);
  return -1;
#endif
}

// What a hook call received: the hook, the object called and each argument's identity (the
// address of a record, the value of a scalar).
struct Call {
  std::string hook;
  std::string receiver;
  std::vector<std::uint64_t> arguments;
  bool operator==(const Call& other) const {
    return hook == other.hook && receiver == other.receiver && arguments == other.arguments;
  }
};
std::ostream& operator<<(std::ostream& out, const Call& call) {
  out << call.receiver << "." << call.hook << "(";
  for (const std::uint64_t argument : call.arguments)
    out << " " << argument;
  return out << " )";
}
using CallLog = std::vector<Call>;

// Records are passed by reference, so the same object must arrive; scalars by value.
template <typename T>
std::uint64_t Identity(const T& argument) {
  if constexpr (std::is_class_v<T>) {
    return reinterpret_cast<std::uintptr_t>(&argument);
  } else {
    return static_cast<std::uint64_t>(argument);
  }
}

// A hook object that writes every call it receives into a shared log under its own name.
class RecordingHooks : public EIgnoreInterfaceTableHooks {
 public:
  RecordingHooks(std::string name, CallLog& log) : m_Name(std::move(name)), m_Log(log) {}

#define RECORD_ONE(Name, A)       \
  void Name(A a) override {       \
    Record(#Name, {Identity(a)}); \
  }
#define RECORD_TWO(Name, A, B)                 \
  void Name(A a, B b) override {               \
    Record(#Name, {Identity(a), Identity(b)}); \
  }
#define RECORD_FOUR(Name, A, B, C, D)                                    \
  void Name(A a, B b, C c, D d) override {                               \
    Record(#Name, {Identity(a), Identity(b), Identity(c), Identity(d)}); \
  }
  EHAL_INTERFACE_TABLE_HOOKS(RECORD_ONE, RECORD_TWO, RECORD_FOUR)
#undef RECORD_ONE
#undef RECORD_TWO
#undef RECORD_FOUR

 private:
  void Record(const char* hook, std::vector<std::uint64_t> arguments) {
    m_Log.push_back(Call{hook, m_Name, std::move(arguments)});
  }

  std::string m_Name;
  CallLog& m_Log;
};

// Arguments for every hook: four distinct objects of each record type (one per parameter
// position, so that two records of one type cannot be swapped unnoticed) and scalar values
// chosen by a seed (1 and 2 give both truth values and both enumerators of each enumeration).
class HookArguments {
 public:
  explicit HookArguments(int seed) : m_Seed(seed) {}

  template <typename Parameter>
  Parameter Get(int position) const {
    using T = std::decay_t<Parameter>;
    if constexpr (std::is_class_v<T>) {
      return std::get<std::array<T, 4>>(m_Records)[static_cast<std::size_t>(position)];
    } else if constexpr (std::is_same_v<T, bool>) {
      return m_Seed == 1;
    } else if constexpr (std::is_enum_v<T>) {
      return static_cast<T>(m_Seed - 1);
    } else {
      return static_cast<T>(m_Seed == 1 ? 0x5A + position : -7);
    }
  }

 private:
  template <typename... T>
  using Arrays = std::tuple<std::array<T, 4>...>;

  int m_Seed;
  Arrays<EInterfaceTable, EInterfaceItem, EIPv4AddressItem, EIPv6AddressItem,
         EVLANIPAddressTableItemProperties, EIPAddress, EVLAN, EMACAddress, EUID, EComponentId,
         std::string, EDHCPProperties, EDHCPv6Properties, EFCoEConfig, ENPIVConfig, EPTPConfig,
         EDCBXConfig, ELLDPConfig, std::list<EDHCPTLV>, ENSRegOption,
         std::vector<EPLOGIDestination>, EFCNSQuery, ELLDPConfig::LLDPChassisId,
         ELLDPConfig::LLDPPortId, std::vector<EDCBXFeatureTlv>>
      m_Records;
};

// Calls every hook of `hooks` once, in slot order, and returns the call each should produce on a
// recording object named `receiver`.
CallLog CallEveryHook(EInterfaceTableHooks& hooks, const HookArguments& args,
                      const std::string& receiver) {
  CallLog expected;
#define CALL_ONE(Name, A)     \
  hooks.Name(args.Get<A>(0)); \
  expected.push_back(Call{#Name, receiver, {Identity(args.Get<A>(0))}});
#define CALL_TWO(Name, A, B)                  \
  hooks.Name(args.Get<A>(0), args.Get<B>(1)); \
  expected.push_back(Call{#Name, receiver, {Identity(args.Get<A>(0)), Identity(args.Get<B>(1))}});
#define CALL_FOUR(Name, A, B, C, D)                                            \
  hooks.Name(args.Get<A>(0), args.Get<B>(1), args.Get<C>(2), args.Get<D>(3));  \
  expected.push_back(Call{#Name,                                               \
                          receiver,                                            \
                          {Identity(args.Get<A>(0)), Identity(args.Get<B>(1)), \
                           Identity(args.Get<C>(2)), Identity(args.Get<D>(3))}});
  EHAL_INTERFACE_TABLE_HOOKS(CALL_ONE, CALL_TWO, CALL_FOUR)
#undef CALL_ONE
#undef CALL_TWO
#undef CALL_FOUR
  return expected;
}

// The expected log of a fan-out: each hook's calls on every receiver, receivers in the given
// order, hook after hook.
CallLog Interleave(const std::vector<CallLog>& perReceiver) {
  CallLog merged;
  for (std::size_t call = 0; call < perReceiver.front().size(); ++call) {
    for (const CallLog& log : perReceiver)
      merged.push_back(log[call]);
  }
  return merged;
}

}  // namespace

// The hooks in the order of the virtual table, each with its exact parameter types: a hook that
// moves to another slot fails here, one whose parameters change does not compile. The two
// destructor entries take slots 0 and 1.
TEST(EInterfaceTableHooks, SlotOrderAndSignatures) {
#if EHAL_HAS_VIRTUAL_SLOT
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingVpiMaskMode), 2);
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingDHCPv4RequestRate), 3);
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingDHCPv6RequestRate), 4);
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingDHCPv4MaxOutstandingRequests), 5);
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingDHCPv6MaxOutstandingRequests), 6);
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingFCoERequestRate), 7);
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingFCoERetryCount), 8);
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingFCoERetryInterval), 9);
  EXPECT_EQ(Slot<void(Table, short)>(&Hooks::SettingFIPVersion), 10);
  EXPECT_EQ(Slot<void(Table, bool)>(&Hooks::SettingFCoECollectFcfMacListEnabled), 11);
  EXPECT_EQ(Slot<void(Table, unsigned int)>(&Hooks::SettingFCoECollectFcfMacListTimer), 12);
  EXPECT_EQ(Slot<void(Table, bool)>(&Hooks::SettingFCoEProposedMacInFpmaEnabled), 13);
  EXPECT_EQ(Slot<void(Table, bool)>(&Hooks::SettingFCoEVlanNameIdInVlanRequest), 14);
  EXPECT_EQ(Slot<void(Table, Table)>(&Hooks::SettingInterfaceTable), 15);
  EXPECT_EQ(Slot<void(Item)>(&Hooks::AddingInterfaceItem), 16);
  EXPECT_EQ(Slot<void(Item)>(&Hooks::RemovingInterfaceItem), 17);
  EXPECT_EQ(Slot<void(Item, Item)>(&Hooks::SettingInterfaceItem), 18);
  EXPECT_EQ(Slot<void(Item)>(&Hooks::EnablingInterfaceItem), 19);
  EXPECT_EQ(Slot<void(Item)>(&Hooks::DisablingInterfaceItem), 20);
  EXPECT_EQ(Slot<void(Item, unsigned int)>(&Hooks::SettingInterfacePPPHandle), 21);
  EXPECT_EQ(Slot<void(Item, unsigned int)>(&Hooks::SettingInterfacePPPSession), 22);
  EXPECT_EQ(Slot<void(Item, Uid)>(&Hooks::SettingInterfaceUid), 23);
  EXPECT_EQ(Slot<void(Item, Mac)>(&Hooks::SettingInterfaceMac), 24);
  EXPECT_EQ(Slot<void(Item, Props)>(&Hooks::SettingInterfaceVlan), 25);
  EXPECT_EQ(Slot<void(Item, Text)>(&Hooks::SettingInterfaceName), 26);
  EXPECT_EQ(Slot<void(Item, unsigned int)>(&Hooks::SettingInterfaceVPI), 27);
  EXPECT_EQ(Slot<void(Item, unsigned int)>(&Hooks::SettingInterfaceVCI), 28);
  EXPECT_EQ(Slot<void(Item, int)>(&Hooks::SettingInterfaceATMEncapsulation), 29);
  EXPECT_EQ(Slot<void(Item, int)>(&Hooks::SettingInterfaceATMMode), 30);
  EXPECT_EQ(Slot<void(Item, Component)>(&Hooks::SettingInterfaceConnectedViaId), 31);
  EXPECT_EQ(Slot<void(Item, unsigned int)>(&Hooks::SettingInterfaceMTU), 32);
  EXPECT_EQ(Slot<void(Item, int)>(&Hooks::SettingInterfaceType), 33);
  EXPECT_EQ(Slot<void(Item, unsigned int)>(&Hooks::SettingVcatCircuitId), 34);
  EXPECT_EQ(Slot<void(Item, Address)>(&Hooks::SettingIPv6Gateway), 35);
  EXPECT_EQ(Slot<void(V4Item, V4Item, Props, Props)>(&Hooks::SettingIPv4AddressItem), 36);
  EXPECT_EQ(Slot<void(V4Item, Props)>(&Hooks::EnablingIPv4AddressItem), 37);
  EXPECT_EQ(Slot<void(V4Item, Props)>(&Hooks::DisablingIPv4AddressItem), 38);
  EXPECT_EQ(Slot<void(V4Item, Address, Props, Vlan)>(&Hooks::SettingIPv4Address), 39);
  EXPECT_EQ(Slot<void(V4Item, unsigned int)>(&Hooks::SettingIPv4MaskLength), 40);
  EXPECT_EQ(Slot<void(V4Item, Address)>(&Hooks::SettingIPv4Gateway), 41);
  EXPECT_EQ(Slot<void(V4Item, unsigned int)>(&Hooks::SettingIPv4MSS), 42);
  EXPECT_EQ(Slot<void(V6Item)>(&Hooks::AddingIPv6AddressItem), 43);
  EXPECT_EQ(Slot<void(V6Item)>(&Hooks::RemovingIPv6AddressItem), 44);
  EXPECT_EQ(Slot<void(V6Item, V6Item)>(&Hooks::SettingIPv6AddressItem), 45);
  EXPECT_EQ(Slot<void(V6Item, Address)>(&Hooks::SettingIPv6Address), 46);
  EXPECT_EQ(Slot<void(V6Item, unsigned int)>(&Hooks::SettingIPv6MaskLength), 47);
  EXPECT_EQ(Slot<void(Table, bool)>(&Hooks::SettingTargetLLAddrOptionEnabled), 48);
  EXPECT_EQ(Slot<void(Item, Component)>(&Hooks::SettingInterfaceGreSourceIp), 49);
  EXPECT_EQ(Slot<void(Item, Address)>(&Hooks::SettingInterfaceGreDestIp), 50);
  EXPECT_EQ(Slot<void(Item, bool)>(&Hooks::SettingInterfaceGreUseChecksum), 51);
  EXPECT_EQ(Slot<void(Item, bool)>(&Hooks::SettingInterfaceGreUseSequence), 52);
  EXPECT_EQ(Slot<void(Item, bool)>(&Hooks::SettingInterfaceGreUseKey), 53);
  EXPECT_EQ(Slot<void(Item, unsigned int)>(&Hooks::SettingInterfaceGreInKey), 54);
  EXPECT_EQ(Slot<void(Item, unsigned int)>(&Hooks::SettingInterfaceGreOutKey), 55);
  EXPECT_EQ(Slot<void(Dhcp, Dhcp)>(&Hooks::SettingDhcpProperties), 56);
  EXPECT_EQ(Slot<void(Dhcp)>(&Hooks::EnablingDhcpItem), 57);
  EXPECT_EQ(Slot<void(Dhcp)>(&Hooks::DisablingDhcpItem), 58);
  EXPECT_EQ(Slot<void(Dhcp, Text)>(&Hooks::SettingDhcpClientId), 59);
  EXPECT_EQ(Slot<void(Dhcp, Address)>(&Hooks::SettingDhcpServerId), 60);
  EXPECT_EQ(Slot<void(Dhcp, Text)>(&Hooks::SettingDhcpVendorClassId), 61);
  EXPECT_EQ(Slot<void(Dhcp, unsigned int)>(&Hooks::SettingDhcpReleaseTimer), 62);
  EXPECT_EQ(Slot<void(Dhcp, TLVs)>(&Hooks::SettingDhcpTLVs), 63);
  EXPECT_EQ(Slot<void(Dhcp, Address)>(&Hooks::SettingDhcpRelayAgentIP), 64);
  EXPECT_EQ(Slot<void(Dhcp, Address)>(&Hooks::SettingDhcpRelayDestination), 65);
  EXPECT_EQ(Slot<void(Dhcp, unsigned int)>(&Hooks::SettingDhcpRetryCount), 66);
  EXPECT_EQ(Slot<void(Dhcpv6, Dhcpv6)>(&Hooks::SettingDhcpv6Properties), 67);
  EXPECT_EQ(Slot<void(Dhcpv6)>(&Hooks::EnablingDhcpv6Item), 68);
  EXPECT_EQ(Slot<void(Dhcpv6)>(&Hooks::DisablingDhcpv6Item), 69);
  EXPECT_EQ(Slot<void(Dhcpv6, unsigned int)>(&Hooks::SettingDhcpv6IAId), 70);
  EXPECT_EQ(Slot<void(Dhcpv6, EDHCPv6Properties::eIAType)>(&Hooks::SettingDhcpv6IAType), 71);
  EXPECT_EQ(Slot<void(Dhcpv6, unsigned int)>(&Hooks::SettingDhcpv6RenewTime), 72);
  EXPECT_EQ(Slot<void(Dhcpv6, TLVs)>(&Hooks::SettingDhcpv6TLVs), 73);
  EXPECT_EQ(Slot<void(Dhcpv6, Address)>(&Hooks::SettingDhcpv6RelayLinkAddress), 74);
  EXPECT_EQ(Slot<void(Dhcpv6, Address)>(&Hooks::SettingDhcpv6RelayDestination), 75);
  EXPECT_EQ(Slot<void(FCoE, FCoE)>(&Hooks::SettingFCoEConfig), 76);
  EXPECT_EQ(Slot<void(FCoE)>(&Hooks::EnablingFCoEItem), 77);
  EXPECT_EQ(Slot<void(FCoE)>(&Hooks::DisablingFCoEItem), 78);
  EXPECT_EQ(Slot<void(FCoE, Uid)>(&Hooks::SettingFCoESrcPortWWN), 79);
  EXPECT_EQ(Slot<void(FCoE, Uid)>(&Hooks::SettingFCoESrcNodeWWN), 80);
  EXPECT_EQ(Slot<void(FCoE, unsigned int)>(&Hooks::SettingFCoEB2BRxSize), 81);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingFCoESCREnabled), 82);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingFCoENSRegistrationEnabled), 83);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingFCoEPLOGIEnabled), 84);
  EXPECT_EQ(Slot<void(FCoE, unsigned int)>(&Hooks::SettingFCoEDestNodeId), 85);
  EXPECT_EQ(Slot<void(FCoE, unsigned int)>(&Hooks::SettingFCoESrcOUI), 86);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingFCoEFIPEnabled), 87);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingFCoEVlanDiscoveryEnabled), 88);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingFCoEVlanDiscoveryUntagged), 89);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingFIPKeepAliveEnabled), 90);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingVnPortKeepAliveEnabled), 91);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingResetFIPDiscoveryEnabled), 92);
  EXPECT_EQ(Slot<void(FCoE, short)>(&Hooks::SettingResetFIPDiscoveryNumberOfRetries), 93);
  EXPECT_EQ(Slot<void(FCoE, unsigned short)>(&Hooks::SettingFCoEMaxSize), 94);
  EXPECT_EQ(Slot<void(FCoE, EFCoEConfig::eAddressModes)>(&Hooks::SettingFCoEAddressMode), 95);
  EXPECT_EQ(Slot<void(FCoE, Uid)>(&Hooks::SettingFCoEVendorID), 96);
  EXPECT_EQ(Slot<void(FCoE, TLVs)>(&Hooks::SettingFCoEVendorSpecificTLVs), 97);
  EXPECT_EQ(Slot<void(FCoE, NSRegOption)>(&Hooks::SettingFCoENSRegOption), 98);
  EXPECT_EQ(Slot<void(FCoE, PLOGIDestinations)>(&Hooks::SettingFCoEPLOGIDestinations), 99);
  EXPECT_EQ(Slot<void(FCoE, FCNSQuery)>(&Hooks::SettingFCNSQueryOption), 100);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingPRLIEnabled), 101);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingAutoPLOGIEnabled), 102);
  EXPECT_EQ(Slot<void(FCoE, bool)>(&Hooks::SettingNSQueryEnabled), 103);
  EXPECT_EQ(Slot<void(FCoE, EFCoEConfig::eSCROptions)>(&Hooks::SettingFCSCROption), 104);
  EXPECT_EQ(Slot<void(NPIV, NPIV)>(&Hooks::SettingNPIVConfig), 105);
  EXPECT_EQ(Slot<void(NPIV, Uid)>(&Hooks::SettingNPIVSrcPortWWN), 106);
  EXPECT_EQ(Slot<void(NPIV, Uid)>(&Hooks::SettingNPIVSrcNodeWWN), 107);
  EXPECT_EQ(Slot<void(NPIV, unsigned int)>(&Hooks::SettingNPIVB2BRxSize), 108);
  EXPECT_EQ(Slot<void(NPIV, bool)>(&Hooks::SettingNPIVSCREnabled), 109);
  EXPECT_EQ(Slot<void(NPIV, bool)>(&Hooks::SettingNPIVNSRegistrationEnabled), 110);
  EXPECT_EQ(Slot<void(NPIV, bool)>(&Hooks::SettingNPIVPLOGIEnabled), 111);
  EXPECT_EQ(Slot<void(NPIV, unsigned int)>(&Hooks::SettingNPIVDestNodeId), 112);
  EXPECT_EQ(Slot<void(Item, Component)>(&Hooks::SettingNPIVConnectedViaId), 113);
  EXPECT_EQ(Slot<void(NPIV, NSRegOption)>(&Hooks::SettingNPIVNSRegOption), 114);
  EXPECT_EQ(Slot<void(NPIV, PLOGIDestinations)>(&Hooks::SettingNPIVPLOGIDestinations), 115);
  EXPECT_EQ(Slot<void(NPIV, bool)>(&Hooks::SettingNpIVVnPortKeepAliveEnabled), 116);
  EXPECT_EQ(Slot<void(NPIV, FCNSQuery)>(&Hooks::SettingNPIVNSQueryOption), 117);
  EXPECT_EQ(Slot<void(NPIV, bool)>(&Hooks::SettingNPIVPRLIEnabled), 118);
  EXPECT_EQ(Slot<void(NPIV, bool)>(&Hooks::SettingNPIVAutoPLOGIEnabled), 119);
  EXPECT_EQ(Slot<void(NPIV, bool)>(&Hooks::SettingNPIVNSQueryEnabled), 120);
  EXPECT_EQ(Slot<void(NPIV, ENPIVConfig::eSCROptions)>(&Hooks::SettingNPIVSCROption), 121);
  EXPECT_EQ(Slot<void(PTP, PTP)>(&Hooks::SettingPTPConfig), 122);
  EXPECT_EQ(Slot<void(PTP)>(&Hooks::EnablingPTPItem), 123);
  EXPECT_EQ(Slot<void(PTP)>(&Hooks::DisablingPTPItem), 124);
  EXPECT_EQ(Slot<void(PTP, Uid)>(&Hooks::SettingPTPClockId), 125);
  EXPECT_EQ(Slot<void(PTP, unsigned short)>(&Hooks::SettingPTPPortNumber), 126);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPClockClass), 127);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPClockAccuracy), 128);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPPriority1), 129);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPPriority2), 130);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPDomainNumber), 131);
  EXPECT_EQ(Slot<void(PTP, signed char)>(&Hooks::SettingPTPLogAnnounceInterval), 132);
  EXPECT_EQ(Slot<void(PTP, signed char)>(&Hooks::SettingPTPLogSyncInterval), 133);
  EXPECT_EQ(Slot<void(PTP, signed char)>(&Hooks::SettingPTPLogDelayRequestInterval), 134);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPAnnounceReceiptTimeout), 135);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPDelayMechanism), 136);
  EXPECT_EQ(Slot<void(PTP, bool)>(&Hooks::SettingPTPClockIsMaster), 137);
  EXPECT_EQ(Slot<void(PTP, long)>(&Hooks::SettingPTPStartOffset), 138);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPPercentageBadTimestamp), 139);
  EXPECT_EQ(Slot<void(PTP, long)>(&Hooks::SettingPTPTimestampError), 140);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPPercentageBadCrc), 141);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPPercentageDropFollowUpMessages), 142);
  EXPECT_EQ(Slot<void(PTP, unsigned char)>(&Hooks::SettingPTPPercentageDropDelayResponseMessages),
            143);
  EXPECT_EQ(Slot<void(DCBX, DCBX)>(&Hooks::SettingDCBXConfig), 144);
  EXPECT_EQ(Slot<void(LLDP, LLDP)>(&Hooks::SettingLLDPConfig), 145);
  EXPECT_EQ(Slot<void(DCBX)>(&Hooks::EnablingDCBXItem), 146);
  EXPECT_EQ(Slot<void(DCBX)>(&Hooks::DisablingDCBXItem), 147);
  EXPECT_EQ(Slot<void(LLDP)>(&Hooks::EnablingLLDPItem), 148);
  EXPECT_EQ(Slot<void(LLDP)>(&Hooks::DisablingLLDPItem), 149);
  EXPECT_EQ(Slot<void(LLDP, ChassisId)>(&Hooks::SettingLLDPChassisId), 150);
  EXPECT_EQ(Slot<void(LLDP, PortId)>(&Hooks::SettingLLDPPortId), 151);
  EXPECT_EQ(Slot<void(LLDP, bool)>(&Hooks::SettingLLDPFastInitEnabled), 152);
  EXPECT_EQ(Slot<void(LLDP, unsigned short)>(&Hooks::SettingLLDPHoldTime), 153);
  EXPECT_EQ(Slot<void(LLDP, unsigned short)>(&Hooks::SettingLLDPTxInterval), 154);
  EXPECT_EQ(Slot<void(LLDP, unsigned short)>(&Hooks::SettingLLDPTxDelay), 155);
  EXPECT_EQ(Slot<void(DCBX, FeatureTlvs)>(&Hooks::SettingDCBXFeatureTlvs), 156);
  EXPECT_EQ(Slot<void(DCBX, unsigned int)>(&Hooks::SettingDCBXOUI), 157);
  EXPECT_EQ(Slot<void(DCBX, unsigned char)>(&Hooks::SettingDCBXSubType), 158);
  EXPECT_EQ(Slot<void(DCBX, unsigned char)>(&Hooks::SettingDCBXControlTlvMaxVersion), 159);
  EXPECT_EQ(Slot<void(DCBX, bool)>(&Hooks::SettingDCBXControlTlvOperVersionEnabled), 160);
  EXPECT_EQ(Slot<void(DCBX, unsigned char)>(&Hooks::SettingDCBXControlTlvOperVersion), 161);
#else
  GTEST_SKIP() << "table layout not readable on this ABI";
#endif
}

TEST(EInterfaceTableHooks, IsAbstractWithAVirtualDestructor) {
  EXPECT_TRUE(std::is_abstract_v<EInterfaceTableHooks>);
  EXPECT_TRUE(std::has_virtual_destructor_v<EInterfaceTableHooks>);
  EXPECT_EQ(sizeof(EInterfaceTableHooks), sizeof(void*));  // no fields
  EXPECT_FALSE(std::is_abstract_v<EIgnoreInterfaceTableHooks>);
  EXPECT_FALSE(std::is_abstract_v<EMultipleInterfaceTableHooks>);
  EXPECT_TRUE((std::is_base_of_v<EInterfaceTableHooks, EIgnoreInterfaceTableHooks>));
  EXPECT_TRUE((std::is_base_of_v<EInterfaceTableHooks, EMultipleInterfaceTableHooks>));
}

// Each hook, called through the interface, reaches its own override with the same record objects
// and the same scalar values.
TEST(EInterfaceTableHooks, EveryHookReachesItsOwnOverrideWithItsArguments) {
  for (const int seed : {1, 2}) {
    const HookArguments args(seed);
    CallLog log;
    RecordingHooks recorder("recorder", log);
    const CallLog expected = CallEveryHook(recorder, args, "recorder");
    EXPECT_EQ(log, expected);
    std::set<std::string> names;
    for (const Call& call : log)
      names.insert(call.hook);
    EXPECT_EQ(names.size(), 160u);
  }
}

TEST(EIgnoreInterfaceTableHooks, AnObjectOverridingOneHookReceivesThoseCallsOnly) {
  class MacHooks : public EIgnoreInterfaceTableHooks {
   public:
    void SettingInterfaceMac(const EInterfaceItem& item, const EMACAddress& mac) override {
      calls.push_back({&item, &mac});
    }
    std::vector<std::pair<const EInterfaceItem*, const EMACAddress*>> calls;
  };
  const HookArguments args(1);
  MacHooks hooks;
  CallEveryHook(hooks, args, "");
  CallEveryHook(hooks, args, "");
  const std::pair<const EInterfaceItem*, const EMACAddress*> call{
      &args.Get<const EInterfaceItem&>(0), &args.Get<const EMACAddress&>(1)};
  EXPECT_EQ(hooks.calls,
            (std::vector<std::pair<const EInterfaceItem*, const EMACAddress*>>{call, call}));
}

TEST(EIgnoreInterfaceTableHooks, EveryHookAcceptsAnyArgumentsWithoutEffect) {
  EInterfaceTable table;
  EInterfaceItem item;
  item.SetLocalId(4);
  table.AddInterfaceItem(item, 4);
  const EInterfaceTable before = table;
  EIgnoreInterfaceTableHooks hooks;
  for (const int seed : {1, 2})
    CallEveryHook(hooks, HookArguments(seed), "");
  hooks.SettingInterfaceTable(table, table);
  hooks.RemovingInterfaceItem(*table.FindInterfaceItem(4));
  ASSERT_NE(table.FindInterfaceItem(4), nullptr);
  EXPECT_EQ(table.GetInterfaceItemList().size(), before.GetInterfaceItemList().size());
}

// Every hook reaches every registered object, in byte-wise name order, with the arguments
// unchanged.
TEST(EMultipleInterfaceTableHooks, ForwardsEveryHookInNameOrder) {
  for (const int seed : {1, 2}) {
    const HookArguments args(seed);
    CallLog log;
    EMultipleInterfaceTableHooks fanOut;
    // Registered out of order: "B" < "a" < "ab" < "b" < "\xff" byte by byte.
    for (const char* name : {"b", "\xff", "a", "B", "ab"}) {
      fanOut.AddHooks(name, boost::shared_ptr<EInterfaceTableHooks>(new RecordingHooks(name, log)));
    }
    EInterfaceTableHooks& hooks = fanOut;
    CallEveryHook(hooks, args, "");
    EIgnoreInterfaceTableHooks nothing;
    std::vector<CallLog> perReceiver;
    for (const char* name : {"B", "a", "ab", "b", "\xff"}) {
      perReceiver.push_back(CallEveryHook(nothing, args, name));
    }
    EXPECT_EQ(log, Interleave(perReceiver));
  }
}

TEST(EMultipleInterfaceTableHooks, AnEmptyFanOutAcceptsEveryHook) {
  EMultipleInterfaceTableHooks fanOut;
  CallEveryHook(fanOut, HookArguments(1), "");
  EXPECT_EQ(fanOut.FindHooks(""), nullptr);
  CallLog log;
  fanOut.AddHooks("late", boost::shared_ptr<EInterfaceTableHooks>(new RecordingHooks("late", log)));
  EXPECT_TRUE(log.empty());
  fanOut.SettingInterfaceMTU(EInterfaceItem(), 1500);
  EXPECT_EQ(log.size(), 1u);
}

TEST(EMultipleInterfaceTableHooks, TheFirstRegistrationOfANameStays) {
  CallLog log;
  const boost::shared_ptr<EInterfaceTableHooks> first(new RecordingHooks("first", log));
  const boost::shared_ptr<EInterfaceTableHooks> second(new RecordingHooks("second", log));
  EMultipleInterfaceTableHooks fanOut;
  fanOut.AddHooks("x", first);
  fanOut.AddHooks("x", second);
  EXPECT_EQ(fanOut.FindHooks("x"), first);
  EXPECT_EQ(second.use_count(), 1);  // the dropped pointer is not kept
  const EInterfaceItem item;
  fanOut.EnablingInterfaceItem(item);
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log[0].receiver, "first");
}

TEST(EMultipleInterfaceTableHooks, FindAndRemoveOfAnUnknownName) {
  CallLog log;
  const boost::shared_ptr<EInterfaceTableHooks> hooks(new RecordingHooks("a", log));
  EMultipleInterfaceTableHooks fanOut;
  fanOut.AddHooks("a", hooks);
  EXPECT_EQ(fanOut.FindHooks("b"), nullptr);
  EXPECT_EQ(fanOut.FindHooks("A"), nullptr);
  const boost::shared_ptr<EInterfaceTableHooks> found = fanOut.FindHooks("a");
  EXPECT_EQ(found, hooks);
  EXPECT_EQ(hooks.use_count(), 3);  // the test, the fan-out and the found copy
  fanOut.RemoveHooks("b");
  fanOut.RemoveHooks("");
  const EInterfaceItem item;
  fanOut.DisablingInterfaceItem(item);
  EXPECT_EQ(log.size(), 1u);
}

TEST(EMultipleInterfaceTableHooks, ARemovedObjectHeldElsewhereLivesOnAndHearsNothing) {
  CallLog log;
  boost::shared_ptr<EInterfaceTableHooks> kept(new RecordingHooks("kept", log));
  EMultipleInterfaceTableHooks fanOut;
  fanOut.AddHooks("kept", kept);
  fanOut.AddHooks("other",
                  boost::shared_ptr<EInterfaceTableHooks>(new RecordingHooks("other", log)));
  EXPECT_EQ(kept.use_count(), 2);
  fanOut.RemoveHooks("kept");
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_EQ(fanOut.FindHooks("kept"), nullptr);
  const EInterfaceItem item;
  fanOut.AddingInterfaceItem(item);
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log[0].receiver, "other");
  kept->AddingInterfaceItem(item);  // still alive
  EXPECT_EQ(log.size(), 2u);
}

TEST(EMultipleInterfaceTableHooks, DestructionReleasesEveryReference) {
  CallLog log;
  const boost::shared_ptr<EInterfaceTableHooks> hooks(new RecordingHooks("a", log));
  {
    EMultipleInterfaceTableHooks fanOut;
    fanOut.AddHooks("a", hooks);
    fanOut.AddHooks("b", hooks);
    EXPECT_EQ(hooks.use_count(), 3);
  }
  EXPECT_EQ(hooks.use_count(), 1);
}

namespace {
// Writes its name to standard output, unbuffered, when SettingVpiMaskMode reaches it.
class NamingHooks : public EIgnoreInterfaceTableHooks {
 public:
  explicit NamingHooks(const char* name) : m_Name(name) {}
  void SettingVpiMaskMode(const EInterfaceTable&, unsigned int) override {
    std::fputs(m_Name, stdout);
    std::fflush(stdout);
  }

 private:
  const char* m_Name;
};
}  // namespace

// An empty registration is not skipped: forwarding stops the process through the smart
// pointer's assertion, in every build type, after the registrations named before it.
TEST(EMultipleInterfaceTableHooks, AnEmptyRegistrationStopsTheProcess) {
  EMultipleInterfaceTableHooks fanOut;
  fanOut.AddHooks("a", boost::shared_ptr<EInterfaceTableHooks>(new NamingHooks("a\n")));
  fanOut.AddHooks("broken", boost::shared_ptr<EInterfaceTableHooks>());
  fanOut.AddHooks("z", boost::shared_ptr<EInterfaceTableHooks>(new NamingHooks("z\n")));
  const EInterfaceTable table;
  const ChildResult result = RunInChild([&] {
    dup2(STDOUT_FILENO, STDERR_FILENO);  // the assertion reports on standard error
    fanOut.SettingVpiMaskMode(table, 1);
  });
  EXPECT_FALSE(result.exited);
  EXPECT_EQ(result.status, SIGABRT);
  EXPECT_EQ(result.output.rfind("a\n", 0), 0u) << result.output;
  EXPECT_NE(result.output.find("px != 0"), std::string::npos) << result.output;
  EXPECT_EQ(result.output.find("z\n"), std::string::npos) << result.output;
}
