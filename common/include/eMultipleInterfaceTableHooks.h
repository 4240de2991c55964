// EMultipleInterfaceTableHooks: lets several independent parties follow one interface table.
// It holds hook objects under unique names and forwards every hook call to each of them in name
// order, with the arguments unchanged; the names chosen at registration decide who sees a change
// first. The hook objects are shared with whoever registered them.
#pragma once

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include "eInterfaceTableHooks.h"

class EMultipleInterfaceTableHooks : public EInterfaceTableHooks {
 public:
  EMultipleInterfaceTableHooks() = default;
  // Releases every registration.
  ~EMultipleInterfaceTableHooks() override;

  // Registers `hooks` under `name`. A name already registered keeps its first object and the new
  // pointer is dropped: remove it first to replace it. An empty pointer is a programming error
  // that the first forwarded call stops the process on ("px != 0").
  void AddHooks(const char* name, boost::shared_ptr<EInterfaceTableHooks> hooks);
  // Removes the registration of `name`; an unknown name changes nothing.
  void RemoveHooks(const char* name);
  // The object registered under `name`, or an empty pointer.
  boost::shared_ptr<EInterfaceTableHooks> FindHooks(const char* name) const;

  // Every hook calls the same hook on each registered object, in name order. The registrations
  // must not change while a call is being forwarded.
#define EHAL_FORWARDED_HOOK(Name, ...) void Name(__VA_ARGS__) override;
  EHAL_INTERFACE_TABLE_HOOKS(EHAL_FORWARDED_HOOK, EHAL_FORWARDED_HOOK, EHAL_FORWARDED_HOOK)
#undef EHAL_FORWARDED_HOOK

 private:
  template <typename... Parameters, typename... Arguments>
  void Forward(void (EInterfaceTableHooks::*hook)(Parameters...),
               const Arguments&... arguments) const;

  // Ordered by byte-wise name comparison.
  std::map<std::string, boost::shared_ptr<EInterfaceTableHooks>> m_Hooks;
};
