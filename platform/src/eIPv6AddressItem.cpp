#include "eIPv6AddressItem.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

// The model's own form: the address only. The local id travels with the list that holds the
// item, and the owner is a link inside the model.
struct EIPv6AddressItem::Schema {
  static constexpr auto kFields = std::make_tuple(Field("Address", &EIPv6AddressItem::m_Address));
  static constexpr Layout kLayouts[] = {{0x1E060001}};
  static constexpr ERefusalReport kRefusal = {"x86_64/platform/src/eIPv6AddressItem", 30,
                                              "EIPv6AddressItem::SerializeIn"};
};

EIPv6AddressItem::EIPv6AddressItem() {
  m_Address.Empty(eIPv6Address);
}

template class ERecord<EIPv6AddressItem>;
