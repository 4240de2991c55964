// The hooks of EInterfaceTableHooks in the order of its virtual table, one per row: the name and
// the parameter types, with a row macro per number of parameters (ONE, TWO, FOUR). This one list
// declares the abstract interface, the ignoring implementation and the fan-out, so that the slot
// order is written once and the three cannot drift apart.
//
// It is a preprocessor list because C++ has no other way to produce member function declarations
// from a list: templates can forward calls, but cannot declare 160 named virtual operations. Each
// user defines the row macros it needs, expands EHAL_INTERFACE_TABLE_HOOKS and undefines them
// again. The rows name parameter types only; a user that needs parameter names (the fan-out) gives
// them in its row macros, which is why rows are told apart by their number of parameters.
#pragma once

// clang-format off
#define EHAL_INTERFACE_TABLE_HOOKS(ONE, TWO, FOUR)                                                 \
  TWO(SettingVpiMaskMode, const EInterfaceTable&, unsigned int)                                    \
  TWO(SettingDHCPv4RequestRate, const EInterfaceTable&, unsigned int)                              \
  TWO(SettingDHCPv6RequestRate, const EInterfaceTable&, unsigned int)                              \
  TWO(SettingDHCPv4MaxOutstandingRequests, const EInterfaceTable&, unsigned int)                   \
  TWO(SettingDHCPv6MaxOutstandingRequests, const EInterfaceTable&, unsigned int)                   \
  TWO(SettingFCoERequestRate, const EInterfaceTable&, unsigned int)                                \
  TWO(SettingFCoERetryCount, const EInterfaceTable&, unsigned int)                                 \
  TWO(SettingFCoERetryInterval, const EInterfaceTable&, unsigned int)                              \
  TWO(SettingFIPVersion, const EInterfaceTable&, short)                                            \
  TWO(SettingFCoECollectFcfMacListEnabled, const EInterfaceTable&, bool)                           \
  TWO(SettingFCoECollectFcfMacListTimer, const EInterfaceTable&, unsigned int)                     \
  TWO(SettingFCoEProposedMacInFpmaEnabled, const EInterfaceTable&, bool)                           \
  TWO(SettingFCoEVlanNameIdInVlanRequest, const EInterfaceTable&, bool)                            \
  TWO(SettingInterfaceTable, const EInterfaceTable&, const EInterfaceTable&)                       \
  ONE(AddingInterfaceItem, const EInterfaceItem&)                                                  \
  ONE(RemovingInterfaceItem, const EInterfaceItem&)                                                \
  TWO(SettingInterfaceItem, const EInterfaceItem&, const EInterfaceItem&)                          \
  ONE(EnablingInterfaceItem, const EInterfaceItem&)                                                \
  ONE(DisablingInterfaceItem, const EInterfaceItem&)                                               \
  TWO(SettingInterfacePPPHandle, const EInterfaceItem&, unsigned int)                              \
  TWO(SettingInterfacePPPSession, const EInterfaceItem&, unsigned int)                             \
  TWO(SettingInterfaceUid, const EInterfaceItem&, const EUID&)                                     \
  TWO(SettingInterfaceMac, const EInterfaceItem&, const EMACAddress&)                              \
  TWO(SettingInterfaceVlan, const EInterfaceItem&, const EVLANIPAddressTableItemProperties&)       \
  TWO(SettingInterfaceName, const EInterfaceItem&, const std::string&)                             \
  TWO(SettingInterfaceVPI, const EInterfaceItem&, unsigned int)                                    \
  TWO(SettingInterfaceVCI, const EInterfaceItem&, unsigned int)                                    \
  TWO(SettingInterfaceATMEncapsulation, const EInterfaceItem&, int)                                \
  TWO(SettingInterfaceATMMode, const EInterfaceItem&, int)                                         \
  TWO(SettingInterfaceConnectedViaId, const EInterfaceItem&, const EComponentId&)                  \
  TWO(SettingInterfaceMTU, const EInterfaceItem&, unsigned int)                                    \
  TWO(SettingInterfaceType, const EInterfaceItem&, int)                                            \
  TWO(SettingVcatCircuitId, const EInterfaceItem&, unsigned int)                                   \
  TWO(SettingIPv6Gateway, const EInterfaceItem&, const EIPAddress&)                                \
  FOUR(SettingIPv4AddressItem, const EIPv4AddressItem&, const EIPv4AddressItem&,                   \
       const EVLANIPAddressTableItemProperties&, const EVLANIPAddressTableItemProperties&)         \
  TWO(EnablingIPv4AddressItem, const EIPv4AddressItem&, const EVLANIPAddressTableItemProperties&)  \
  TWO(DisablingIPv4AddressItem, const EIPv4AddressItem&,                                           \
      const EVLANIPAddressTableItemProperties&)                                                    \
  FOUR(SettingIPv4Address, const EIPv4AddressItem&, const EIPAddress&,                             \
       const EVLANIPAddressTableItemProperties&, const EVLAN&)                                     \
  TWO(SettingIPv4MaskLength, const EIPv4AddressItem&, unsigned int)                                \
  TWO(SettingIPv4Gateway, const EIPv4AddressItem&, const EIPAddress&)                              \
  TWO(SettingIPv4MSS, const EIPv4AddressItem&, unsigned int)                                       \
  ONE(AddingIPv6AddressItem, const EIPv6AddressItem&)                                              \
  ONE(RemovingIPv6AddressItem, const EIPv6AddressItem&)                                            \
  TWO(SettingIPv6AddressItem, const EIPv6AddressItem&, const EIPv6AddressItem&)                    \
  TWO(SettingIPv6Address, const EIPv6AddressItem&, const EIPAddress&)                              \
  TWO(SettingIPv6MaskLength, const EIPv6AddressItem&, unsigned int)                                \
  TWO(SettingTargetLLAddrOptionEnabled, const EInterfaceTable&, bool)                              \
  TWO(SettingInterfaceGreSourceIp, const EInterfaceItem&, const EComponentId&)                     \
  TWO(SettingInterfaceGreDestIp, const EInterfaceItem&, const EIPAddress&)                         \
  TWO(SettingInterfaceGreUseChecksum, const EInterfaceItem&, bool)                                 \
  TWO(SettingInterfaceGreUseSequence, const EInterfaceItem&, bool)                                 \
  TWO(SettingInterfaceGreUseKey, const EInterfaceItem&, bool)                                      \
  TWO(SettingInterfaceGreInKey, const EInterfaceItem&, unsigned int)                               \
  TWO(SettingInterfaceGreOutKey, const EInterfaceItem&, unsigned int)                              \
  TWO(SettingDhcpProperties, const EDHCPProperties&, const EDHCPProperties&)                       \
  ONE(EnablingDhcpItem, const EDHCPProperties&)                                                    \
  ONE(DisablingDhcpItem, const EDHCPProperties&)                                                   \
  TWO(SettingDhcpClientId, const EDHCPProperties&, const std::string&)                             \
  TWO(SettingDhcpServerId, const EDHCPProperties&, const EIPAddress&)                              \
  TWO(SettingDhcpVendorClassId, const EDHCPProperties&, const std::string&)                        \
  TWO(SettingDhcpReleaseTimer, const EDHCPProperties&, unsigned int)                               \
  TWO(SettingDhcpTLVs, const EDHCPProperties&, const std::list<EDHCPTLV>&)                         \
  TWO(SettingDhcpRelayAgentIP, const EDHCPProperties&, const EIPAddress&)                          \
  TWO(SettingDhcpRelayDestination, const EDHCPProperties&, const EIPAddress&)                      \
  TWO(SettingDhcpRetryCount, const EDHCPProperties&, unsigned int)                                 \
  TWO(SettingDhcpv6Properties, const EDHCPv6Properties&, const EDHCPv6Properties&)                 \
  ONE(EnablingDhcpv6Item, const EDHCPv6Properties&)                                                \
  ONE(DisablingDhcpv6Item, const EDHCPv6Properties&)                                               \
  TWO(SettingDhcpv6IAId, const EDHCPv6Properties&, unsigned int)                                   \
  TWO(SettingDhcpv6IAType, const EDHCPv6Properties&, EDHCPv6Properties::eIAType)                   \
  TWO(SettingDhcpv6RenewTime, const EDHCPv6Properties&, unsigned int)                              \
  TWO(SettingDhcpv6TLVs, const EDHCPv6Properties&, const std::list<EDHCPTLV>&)                     \
  TWO(SettingDhcpv6RelayLinkAddress, const EDHCPv6Properties&, const EIPAddress&)                  \
  TWO(SettingDhcpv6RelayDestination, const EDHCPv6Properties&, const EIPAddress&)                  \
  TWO(SettingFCoEConfig, const EFCoEConfig&, const EFCoEConfig&)                                   \
  ONE(EnablingFCoEItem, const EFCoEConfig&)                                                        \
  ONE(DisablingFCoEItem, const EFCoEConfig&)                                                       \
  TWO(SettingFCoESrcPortWWN, const EFCoEConfig&, const EUID&)                                      \
  TWO(SettingFCoESrcNodeWWN, const EFCoEConfig&, const EUID&)                                      \
  TWO(SettingFCoEB2BRxSize, const EFCoEConfig&, unsigned int)                                      \
  TWO(SettingFCoESCREnabled, const EFCoEConfig&, bool)                                             \
  TWO(SettingFCoENSRegistrationEnabled, const EFCoEConfig&, bool)                                  \
  TWO(SettingFCoEPLOGIEnabled, const EFCoEConfig&, bool)                                           \
  TWO(SettingFCoEDestNodeId, const EFCoEConfig&, unsigned int)                                     \
  TWO(SettingFCoESrcOUI, const EFCoEConfig&, unsigned int)                                         \
  TWO(SettingFCoEFIPEnabled, const EFCoEConfig&, bool)                                             \
  TWO(SettingFCoEVlanDiscoveryEnabled, const EFCoEConfig&, bool)                                   \
  TWO(SettingFCoEVlanDiscoveryUntagged, const EFCoEConfig&, bool)                                  \
  TWO(SettingFIPKeepAliveEnabled, const EFCoEConfig&, bool)                                        \
  TWO(SettingVnPortKeepAliveEnabled, const EFCoEConfig&, bool)                                     \
  TWO(SettingResetFIPDiscoveryEnabled, const EFCoEConfig&, bool)                                   \
  TWO(SettingResetFIPDiscoveryNumberOfRetries, const EFCoEConfig&, short)                          \
  TWO(SettingFCoEMaxSize, const EFCoEConfig&, unsigned short)                                      \
  TWO(SettingFCoEAddressMode, const EFCoEConfig&, EFCoEConfig::eAddressModes)                      \
  TWO(SettingFCoEVendorID, const EFCoEConfig&, const EUID&)                                        \
  TWO(SettingFCoEVendorSpecificTLVs, const EFCoEConfig&, const std::list<EDHCPTLV>&)               \
  TWO(SettingFCoENSRegOption, const EFCoEConfig&, const ENSRegOption&)                             \
  TWO(SettingFCoEPLOGIDestinations, const EFCoEConfig&, const std::vector<EPLOGIDestination>&)     \
  TWO(SettingFCNSQueryOption, const EFCoEConfig&, const EFCNSQuery&)                               \
  TWO(SettingPRLIEnabled, const EFCoEConfig&, bool)                                                \
  TWO(SettingAutoPLOGIEnabled, const EFCoEConfig&, bool)                                           \
  TWO(SettingNSQueryEnabled, const EFCoEConfig&, bool)                                             \
  TWO(SettingFCSCROption, const EFCoEConfig&, EFCoEConfig::eSCROptions)                            \
  TWO(SettingNPIVConfig, const ENPIVConfig&, const ENPIVConfig&)                                   \
  TWO(SettingNPIVSrcPortWWN, const ENPIVConfig&, const EUID&)                                      \
  TWO(SettingNPIVSrcNodeWWN, const ENPIVConfig&, const EUID&)                                      \
  TWO(SettingNPIVB2BRxSize, const ENPIVConfig&, unsigned int)                                      \
  TWO(SettingNPIVSCREnabled, const ENPIVConfig&, bool)                                             \
  TWO(SettingNPIVNSRegistrationEnabled, const ENPIVConfig&, bool)                                  \
  TWO(SettingNPIVPLOGIEnabled, const ENPIVConfig&, bool)                                           \
  TWO(SettingNPIVDestNodeId, const ENPIVConfig&, unsigned int)                                     \
  TWO(SettingNPIVConnectedViaId, const EInterfaceItem&, const EComponentId&)                       \
  TWO(SettingNPIVNSRegOption, const ENPIVConfig&, const ENSRegOption&)                             \
  TWO(SettingNPIVPLOGIDestinations, const ENPIVConfig&, const std::vector<EPLOGIDestination>&)     \
  TWO(SettingNpIVVnPortKeepAliveEnabled, const ENPIVConfig&, bool)                                 \
  TWO(SettingNPIVNSQueryOption, const ENPIVConfig&, const EFCNSQuery&)                             \
  TWO(SettingNPIVPRLIEnabled, const ENPIVConfig&, bool)                                            \
  TWO(SettingNPIVAutoPLOGIEnabled, const ENPIVConfig&, bool)                                       \
  TWO(SettingNPIVNSQueryEnabled, const ENPIVConfig&, bool)                                         \
  TWO(SettingNPIVSCROption, const ENPIVConfig&, ENPIVConfig::eSCROptions)                          \
  TWO(SettingPTPConfig, const EPTPConfig&, const EPTPConfig&)                                      \
  ONE(EnablingPTPItem, const EPTPConfig&)                                                          \
  ONE(DisablingPTPItem, const EPTPConfig&)                                                         \
  TWO(SettingPTPClockId, const EPTPConfig&, const EUID&)                                           \
  TWO(SettingPTPPortNumber, const EPTPConfig&, unsigned short)                                     \
  TWO(SettingPTPClockClass, const EPTPConfig&, unsigned char)                                      \
  TWO(SettingPTPClockAccuracy, const EPTPConfig&, unsigned char)                                   \
  TWO(SettingPTPPriority1, const EPTPConfig&, unsigned char)                                       \
  TWO(SettingPTPPriority2, const EPTPConfig&, unsigned char)                                       \
  TWO(SettingPTPDomainNumber, const EPTPConfig&, unsigned char)                                    \
  TWO(SettingPTPLogAnnounceInterval, const EPTPConfig&, signed char)                               \
  TWO(SettingPTPLogSyncInterval, const EPTPConfig&, signed char)                                   \
  TWO(SettingPTPLogDelayRequestInterval, const EPTPConfig&, signed char)                           \
  TWO(SettingPTPAnnounceReceiptTimeout, const EPTPConfig&, unsigned char)                          \
  TWO(SettingPTPDelayMechanism, const EPTPConfig&, unsigned char)                                  \
  TWO(SettingPTPClockIsMaster, const EPTPConfig&, bool)                                            \
  TWO(SettingPTPStartOffset, const EPTPConfig&, long)                                              \
  TWO(SettingPTPPercentageBadTimestamp, const EPTPConfig&, unsigned char)                          \
  TWO(SettingPTPTimestampError, const EPTPConfig&, long)                                           \
  TWO(SettingPTPPercentageBadCrc, const EPTPConfig&, unsigned char)                                \
  TWO(SettingPTPPercentageDropFollowUpMessages, const EPTPConfig&, unsigned char)                  \
  TWO(SettingPTPPercentageDropDelayResponseMessages, const EPTPConfig&, unsigned char)             \
  TWO(SettingDCBXConfig, const EDCBXConfig&, const EDCBXConfig&)                                   \
  TWO(SettingLLDPConfig, const ELLDPConfig&, const ELLDPConfig&)                                   \
  ONE(EnablingDCBXItem, const EDCBXConfig&)                                                        \
  ONE(DisablingDCBXItem, const EDCBXConfig&)                                                       \
  ONE(EnablingLLDPItem, const ELLDPConfig&)                                                        \
  ONE(DisablingLLDPItem, const ELLDPConfig&)                                                       \
  TWO(SettingLLDPChassisId, const ELLDPConfig&, const ELLDPConfig::LLDPChassisId&)                 \
  TWO(SettingLLDPPortId, const ELLDPConfig&, const ELLDPConfig::LLDPPortId&)                       \
  TWO(SettingLLDPFastInitEnabled, const ELLDPConfig&, bool)                                        \
  TWO(SettingLLDPHoldTime, const ELLDPConfig&, unsigned short)                                     \
  TWO(SettingLLDPTxInterval, const ELLDPConfig&, unsigned short)                                   \
  TWO(SettingLLDPTxDelay, const ELLDPConfig&, unsigned short)                                      \
  TWO(SettingDCBXFeatureTlvs, const EDCBXConfig&, const std::vector<EDCBXFeatureTlv>&)             \
  TWO(SettingDCBXOUI, const EDCBXConfig&, unsigned int)                                            \
  TWO(SettingDCBXSubType, const EDCBXConfig&, unsigned char)                                       \
  TWO(SettingDCBXControlTlvMaxVersion, const EDCBXConfig&, unsigned char)                          \
  TWO(SettingDCBXControlTlvOperVersionEnabled, const EDCBXConfig&, bool)                           \
  TWO(SettingDCBXControlTlvOperVersion, const EDCBXConfig&, unsigned char)
// clang-format on
