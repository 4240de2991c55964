#include "eICMPStats.h"

using estats::C;

namespace {

constexpr estats::Layout kLayouts[] = {
    {0x18321311, {C(0), C(3)}},
    {0x18321312, {C(1), C(2), C(0), C(3)}},
};

}  // namespace

// A foreign signature is reported under the name of the matching parameters reader, the text
// that clients of this record have always seen.
const estats::ArchiveForm EICMPStats::kArchiveForm(kLayouts, {"x86_64/common/ehal/eICMPStats", 103,
                                                              "EICMPParameters::SerializeIn"});
