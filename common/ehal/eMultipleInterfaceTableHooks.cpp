// Forwarding dereferences each registered pointer through the smart pointer, whose assertion
// ("px != 0") stops the process on an empty registration. That stop is part of the fan-out's
// behaviour in every build type, so this file keeps assertions on even where the rest of the
// build defines NDEBUG; it must come before the first include.
#undef NDEBUG

#include "eMultipleInterfaceTableHooks.h"

#include <utility>

EMultipleInterfaceTableHooks::~EMultipleInterfaceTableHooks() = default;

void EMultipleInterfaceTableHooks::AddHooks(const char* name,
                                            boost::shared_ptr<EInterfaceTableHooks> hooks) {
  m_Hooks.emplace(name, std::move(hooks));  // keeps an existing registration
}

void EMultipleInterfaceTableHooks::RemoveHooks(const char* name) {
  m_Hooks.erase(name);
}

boost::shared_ptr<EInterfaceTableHooks> EMultipleInterfaceTableHooks::FindHooks(
    const char* name) const {
  const auto found = m_Hooks.find(name);
  if (found == m_Hooks.end()) return {};
  return found->second;
}

template <typename... Parameters, typename... Arguments>
void EMultipleInterfaceTableHooks::Forward(void (EInterfaceTableHooks::*hook)(Parameters...),
                                           const Arguments&... arguments) const {
  for (const auto& registration : m_Hooks) {
    ((*registration.second).*hook)(arguments...);
  }
}

// clang-format off
#define EHAL_FORWARD_ONE(Name, A)                                                     \
  void EMultipleInterfaceTableHooks::Name(A a) { Forward(&EInterfaceTableHooks::Name, a); }
#define EHAL_FORWARD_TWO(Name, A, B)                                                  \
  void EMultipleInterfaceTableHooks::Name(A a, B b) {                                 \
    Forward(&EInterfaceTableHooks::Name, a, b);                                       \
  }
#define EHAL_FORWARD_FOUR(Name, A, B, C, D)                                           \
  void EMultipleInterfaceTableHooks::Name(A a, B b, C c, D d) {                       \
    Forward(&EInterfaceTableHooks::Name, a, b, c, d);                                 \
  }
// clang-format on
EHAL_INTERFACE_TABLE_HOOKS(EHAL_FORWARD_ONE, EHAL_FORWARD_TWO, EHAL_FORWARD_FOUR)
#undef EHAL_FORWARD_ONE
#undef EHAL_FORWARD_TWO
#undef EHAL_FORWARD_FOUR
