#include "eARPAddressTableItem.h"

#include "eRecordSchema.h"
#include "eTrace.h"

using eHal::detail::Field;
using eHal::detail::Layout;

struct EARPAddressTableItem::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("IPAddress", &EARPAddressTableItem::m_IPAddress),
                      Field("MACAddress", &EARPAddressTableItem::m_MACAddress));
  static constexpr Layout kLayouts[] = {{0x13111111}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eARPAddressTableItem", 119,
                                              "EARPAddressTableItem::SerializeIn"};
};

namespace {
constexpr int kDumpLevel = 4;
}  // namespace

void EARPAddressTableItem::Empty() {
  m_IPAddress.Empty();
  m_MACAddress.Empty();
}

void EARPAddressTableItem::DumpToLog(ETrace* trace, bool) const {
  if (trace != nullptr) trace->Trace(kDumpLevel, "Not Implemented!\n");
}

template class ERecord<EARPAddressTableItem>;
