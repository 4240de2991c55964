// Umbrella header: includes every public header of the library.
#pragma once

#include "eLock.h"
#include "eTickCount.h"
#include "eInetAddr.h"

#include "eBlob.h"
#include "eArchive.h"
#include "eStringList.h"

// Tracing
#include "eTrace.h"
#include "eFileTracer.h"

// VLAN and protocol
#include "eProtocol.h"
#include "eVLAN.h"
