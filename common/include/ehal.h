// Umbrella header: includes every public header of the library.
#pragma once

#include "eLock.h"
#include "eTickCount.h"
#include "eInetAddr.h"

#include "eBlob.h"
#include "eArchive.h"
#include "eStringList.h"

// Identity
#include "eRecordLayout.h"
#include "eComponentId.h"
#include "eMultiComponentId.h"
#include "eSingleCommand.h"
#include "eProtocolName.h"
#include "eTableName.h"
#include "eClientID.h"
#include "eConfigEvent.h"

// Message envelopes
#include "eMessage.h"
#include "eGlobalMessage.h"
#include "eOutgoingGlobalMessage.h"
#include "eOutgoingMessage.h"
#include "eOutgoingProtocolMessage.h"
#include "eTableMessage.h"
#include "eSwitchUpdateMessage.h"
