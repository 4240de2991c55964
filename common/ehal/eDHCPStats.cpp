#include "eDHCPStats.h"

using estats::C;

namespace {

constexpr estats::Layout kLayouts[] = {
    {1, {C(0, 7)}},
};

}  // namespace

const estats::ArchiveForm EDHCPStats::kArchiveForm(kLayouts, {"x86_64/common/ehal/eDHCPStats", 136,
                                                              "EDHCPStats::SerializeIn"});
