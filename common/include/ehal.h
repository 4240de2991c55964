// Umbrella header: includes every public header of the library.
#pragma once

#include "eLock.h"
#include "eTickCount.h"
#include "eInetAddr.h"

#include "eBlob.h"
#include "eArchive.h"
#include "eStringList.h"

// Network value types
#include "eInteger16Byte.h"
#include "eIPAddress.h"
#include "eMACAddress.h"

// HAL port records
#include "eRecordText.h"
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
