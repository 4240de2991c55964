// EIgnoreInterfaceTableHooks: the hook object that reacts to no change of an interface table.
// Install it where no reaction is wanted, or derive from it to react to a few hooks only: every
// hook accepts its arguments and returns at once without reading them.
#pragma once

#include "eInterfaceTableHooks.h"

class EIgnoreInterfaceTableHooks : public EInterfaceTableHooks {
 public:
  EIgnoreInterfaceTableHooks() = default;
  ~EIgnoreInterfaceTableHooks() override;

#define EHAL_EMPTY_HOOK(Name, ...) \
  void Name(__VA_ARGS__) override {}
  EHAL_INTERFACE_TABLE_HOOKS(EHAL_EMPTY_HOOK, EHAL_EMPTY_HOOK, EHAL_EMPTY_HOOK)
#undef EHAL_EMPTY_HOOK
};
