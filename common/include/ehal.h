// Umbrella header: includes every public header of the library.
#pragma once

#include "eLock.h"
#include "eTickCount.h"
#include "eInetAddr.h"
#include "vqml.h"

#include "eBlob.h"
#include "eArchive.h"
#include "eRecord.h"
#include "eRecordDescription.h"
#include "eRecordRegistry.h"
#include "eRecordValue.h"
#include "eStringList.h"

// Network value types
#include "eInteger16Byte.h"
#include "eIPAddress.h"
#include "eIPMaskedAddress.h"
#include "eIPAddressRange.h"
#include "eMACAddress.h"
#include "eMACAddressRange.h"
#include "eIPMACPair.h"
#include "eUid64.h"
#include "eFormatUtils.h"

// Tracing
#include "eTrace.h"
#include "eFileTracer.h"

// VLAN and protocol
#include "eProtocol.h"
#include "eVLAN.h"

// Address tables
#include "eISLIPAddressTableItemProperties.h"
#include "eVLANIPAddressTableItemProperties.h"
#include "eIPAddressTableItem.h"
#include "eAddressTable.h"
#include "eARPAddressTableItem.h"
#include "eIPAddressTable.h"

// Interface-table model (the default stand-in for the interface-table library)
#include "eIPv4AddressItem.h"
#include "eIPv6AddressItem.h"
#include "eInterfaceItem.h"
#include "eInterfaceTable.h"
#include "eInterfaceConfigRecords.h"

// Interface-table hooks
#include "eInterfaceTableHooks.h"
#include "eIgnoreInterfaceTableHooks.h"
#include "eMultipleInterfaceTableHooks.h"
#include "eIPLookupInterfaceTableHooks.h"

// Protocol statistics
#include "eStatsRecord.h"
#include "eARPStats.h"
#include "eARPParameters.h"
#include "eICMPStats.h"
#include "eDriverStats.h"
#include "eVLANStats.h"
#include "eNeighborSolicitationStats.h"
#include "eGreStats.h"
#include "eDHCPStats.h"
#include "eDHCPv6Stats.h"
#include "ePTPStats.h"
#include "eFCoEStats.h"
#include "eDCBXStats.h"
#include "eLLDPStats.h"
#include "eEthernetOAMStats.h"

// Identity
#include "eComponentId.h"
#include "eMultiComponentId.h"
#include "eUniqueIDGenerator.h"
#include "eUniqueIDMapImplBase.h"
#include "eUniqueIDMap.h"
#include "eSingleCommand.h"
#include "eCommandLog.h"
#include "eProtocolName.h"
#include "eTableName.h"
#include "eClientID.h"
#include "eConfigEvent.h"

// Message envelopes
#include "eEnvelope.h"
#include "eMessage.h"
#include "eGlobalMessage.h"
#include "eOutgoingGlobalMessage.h"
#include "eOutgoingMessage.h"
#include "eOutgoingProtocolMessage.h"
#include "eTableMessage.h"
#include "eSwitchUpdateMessage.h"

// HAL port records
#include "ePacket.h"
#include "ePRBS.h"
#include "eMacSec.h"
#include "eConditionalStatConfig.h"
#include "eStreamConfig.h"
#include "ePOSLinkLayerSettings.h"
#include "eDataCenterModeSettings.h"
#include "eActivePortSetting.h"
#include "eFCParams.h"
#include "eFCPhyMessage.h"
#include "eTLV.h"
#include "eEthernetOAMConfig.h"
#include "eEthernetOAMStatus.h"
#include "eEthernetOAMSessionStatus.h"
#include "eAggregateModeSetting.h"

// Value lists
#include "eValueList.h"
