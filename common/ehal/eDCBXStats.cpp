#include "eDCBXStats.h"

using estats::C;

namespace {

// The first layout has no DCBXRxError (position 2); later ones add their counters first.
constexpr estats::Layout kLayouts[] = {
    {0x21080128, {C(0, 1), C(3, 17)}},
    {0x21080129, {C(2), C(0, 1), C(3, 17)}},
    {0x2108012a, {C(18, 19), C(2), C(0, 1), C(3, 17)}},
};

}  // namespace

const estats::ArchiveForm EDCBXStats::kArchiveForm(kLayouts, {"x86_64/common/ehal/eDcbxStats", 172,
                                                              "EDCBXStats::SerializeIn"});
