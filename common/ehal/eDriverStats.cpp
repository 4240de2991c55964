#include "eDriverStats.h"

using estats::C;

namespace {

constexpr estats::Layout kLayouts[] = {
    {0x18321311, {C(0, 2)}},
    {0x18321312, {C(3), C(0, 2)}},
};

}  // namespace

// A foreign signature is reported under the name of the matching parameters reader, the text
// that clients of this record have always seen.
const estats::ArchiveForm EDriverStats::kArchiveForm(kLayouts,
                                                     {"x86_64/common/ehal/eDriverStats", 96,
                                                      "EDriverParameters::SerializeIn"});
