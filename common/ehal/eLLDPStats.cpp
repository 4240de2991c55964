#include "eLLDPStats.h"

using estats::C;
using estats::kDropped;

namespace {

// The first layout carries two values the record no longer keeps, and no neighbour count.
constexpr estats::Layout kLayouts[] = {
    {0x21080128, {C(0, 2), kDropped, C(3), kDropped, C(5)}},
    {0x21080129, {C(4), C(0, 3), C(5)}},
};

}  // namespace

const estats::ArchiveForm ELLDPStats::kArchiveForm(kLayouts, {"x86_64/common/ehal/eLldpStats", 125,
                                                              "ELLDPStats::SerializeIn"});
