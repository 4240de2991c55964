#include "eFCoEStats.h"

using estats::C;

namespace {

// Each layout adds its counters ahead of the previous one's.
constexpr estats::Layout kLayouts[] = {
    {1, {C(0, 11), C(17, 18)}},
    {2, {C(19, 22), C(0, 11), C(17, 18)}},
    {3, {C(12, 16), C(19, 22), C(0, 11), C(17, 18)}},
    {4, {C(23, 26), C(12, 16), C(19, 22), C(0, 11), C(17, 18)}},
};

}  // namespace

const estats::ArchiveForm EFCoEStats::kArchiveForm(kLayouts, {"x86_64/common/ehal/eFCoEStats", 270,
                                                              "EFCoEStats::SerializeIn"});
