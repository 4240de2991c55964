#include "eIPv4AddressItem.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

// The model's own form: the enabled flag, the address, the gateway and the mask length. The
// owner is a link inside the model and does not travel.
struct EIPv4AddressItem::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("Enabled", &EIPv4AddressItem::m_Enabled),
                      Field("Address", &EIPv4AddressItem::m_Address),
                      Field("Gateway", &EIPv4AddressItem::m_Gateway),
                      Field("MaskLength", &EIPv4AddressItem::m_MaskLength));
  static constexpr Layout kLayouts[] = {{0x1E040001}};
  static constexpr ERefusalReport kRefusal = {"x86_64/platform/src/eIPv4AddressItem", 40,
                                              "EIPv4AddressItem::SerializeIn"};
};

template class ERecord<EIPv4AddressItem>;
