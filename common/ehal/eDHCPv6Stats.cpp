#include "eDHCPv6Stats.h"

using estats::C;

namespace {

constexpr estats::Layout kLayouts[] = {
    {1, {C(0, 7)}},
};

}  // namespace

const estats::ArchiveForm EDHCPv6Stats::kArchiveForm(kLayouts, {"x86_64/common/ehal/eDHCPv6Stats",
                                                                142, "EDHCPv6Stats::SerializeIn"});
