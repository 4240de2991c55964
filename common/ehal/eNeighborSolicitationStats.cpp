#include "eNeighborSolicitationStats.h"

using estats::C;

namespace {

constexpr estats::Layout kLayouts[] = {
    {0x18321311, {C(0, 3)}},
};

}  // namespace

// A foreign signature is reported under the name of the matching parameters reader, the text
// that clients of this record have always seen.
const estats::ArchiveForm ENeighborSolicitationStats::kArchiveForm(
    kLayouts, {"x86_64/common/ehal/eNeighborSolicitationStats", 106,
               "ENeighborSolicitationParameters::SerializeIn"});
