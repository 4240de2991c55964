#include "ePTPStats.h"

using estats::C;
using estats::Text;
using estats::U64;

namespace {

using PTP = EPTPStats;

// Layouts 1 and 2 carry the same fields; 3 puts the clock state ahead of the counters.
constexpr estats::Layout kLayouts[] = {
    {1, {C(0, 9)}},
    {2, {C(0, 9)}},
    {3,
     {C(PTP::kPortState, PTP::kGrandmasterPriority1),
      U64(PTP::kOffsetFromMaster, PTP::kGrandmasterIdentity),
      Text(PTP::kPortIdentity, PTP::kTimeSource), C(0, 9)}},
};

}  // namespace

const estats::ArchiveForm EPTPStats::kArchiveForm(kLayouts, {"x86_64/common/ehal/ePTPStats", 195,
                                                             "EPTPStats::SerializeIn"});
