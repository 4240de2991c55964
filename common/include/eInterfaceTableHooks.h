// EInterfaceTableHooks: the change notifications of an interface table. The table's owner calls
// one hook object whenever an interface, an address item or a protocol setting is about to
// change, so that state derived from the table elsewhere can follow.
//
// Every hook returns nothing and takes scalars by value and records by const reference. A hook
// named Setting... receives the object and its new value, or the old record first and the new
// one second; Adding/Removing hooks announce an item entering or leaving the table, and
// Enabling/Disabling hooks a change of its enabled flag. The order of the hooks is the order of
// the virtual table and part of the interface; it is stated once, in
// detail/eInterfaceTableHookList.h.
#pragma once

#include <list>
#include <string>
#include <vector>

#include "detail/eInterfaceTableHookList.h"
#include "eInterfaceConfigRecords.h"

class EComponentId;
class EIPAddress;
class EIPv4AddressItem;
class EIPv6AddressItem;
class EInterfaceItem;
class EInterfaceTable;
class EMACAddress;
class EUID;
class EVLAN;
class EVLANIPAddressTableItemProperties;

class EInterfaceTableHooks {
 public:
  virtual ~EInterfaceTableHooks();

#define EHAL_PURE_HOOK(Name, ...) virtual void Name(__VA_ARGS__) = 0;
  EHAL_INTERFACE_TABLE_HOOKS(EHAL_PURE_HOOK, EHAL_PURE_HOOK, EHAL_PURE_HOOK)
#undef EHAL_PURE_HOOK
};
