#include "eGreStats.h"

using estats::C;

namespace {

constexpr estats::Layout kLayouts[] = {
    {1, {C(0, 3)}},
};

}  // namespace

// A foreign signature is reported under the name of the matching parameters reader, the text
// that clients of this record have always seen.
const estats::ArchiveForm EGreStats::kArchiveForm(kLayouts, {"x86_64/common/ehal/eGreStats", 93,
                                                             "EGreParameters::SerializeIn"});
