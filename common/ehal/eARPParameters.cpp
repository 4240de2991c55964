#include "eARPParameters.h"

using estats::U16;

namespace {

constexpr estats::Layout kLayouts[] = {
    {0x18121311, {U16(0, 1)}},
};

}  // namespace

const estats::ArchiveForm EARPParameters::kArchiveForm(kLayouts,
                                                       {"x86_64/common/ehal/eARPParameters", 87,
                                                        "EARPParameters::SerializeIn"});
