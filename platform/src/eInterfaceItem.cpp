#include "eInterfaceItem.h"

#include <memory>
#include <utility>

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

// The model's own form: the interface's settings, its IPv4 item and its IPv6 list (which
// carries the items' identifiers). The local id travels with the table's list, and the parent
// is a link inside the model.
struct EInterfaceItem::Schema {
  using R = EInterfaceItem;
  static constexpr auto kFields = std::make_tuple(
      Field("Enabled", &R::m_Enabled), Field("MacAddress", &R::m_MacAddress),
      Field("VLANItem", &R::m_VLANItem), Field("VPI", &R::m_VPI), Field("VCI", &R::m_VCI),
      Field("Encapsulation", &R::m_Encapsulation), Field("ATMMode", &R::m_ATMMode),
      Field("IPv4AddressItem", &R::m_IPv4AddressItem),
      Field("IPv6AddressItems", &R::m_IPv6AddressItems));
  static constexpr Layout kLayouts[] = {{0x1E0E0001}};
  static constexpr ERefusalReport kRefusal = {"x86_64/platform/src/eInterfaceItem", 80,
                                              "EInterfaceItem::SerializeIn"};
};

EInterfaceItem::EInterfaceItem() : m_IPv6AddressItems(this) {
  m_IPv4AddressItem.SetOwner(this);
}

EInterfaceItem::EInterfaceItem(const EInterfaceItem& other) : EInterfaceItem() {
  *this = other;
}

EInterfaceItem& EInterfaceItem::operator=(const EInterfaceItem& other) {
  if (this == &other) return *this;
  m_Enabled = other.m_Enabled;
  m_MacAddress = other.m_MacAddress;
  m_VLANItem = other.m_VLANItem;
  m_LocalId = other.m_LocalId;
  m_Parent = other.m_Parent;
  m_VPI = other.m_VPI;
  m_VCI = other.m_VCI;
  m_Encapsulation = other.m_Encapsulation;
  m_ATMMode = other.m_ATMMode;
  m_IPv4AddressItem = other.m_IPv4AddressItem;
  m_IPv4AddressItem.SetOwner(this);
  // The list's assignment points the copied items at this list's parent, this item.
  m_IPv6AddressItems = other.m_IPv6AddressItems;
  return *this;
}

EIPv6AddressItem* EInterfaceItem::AddIPv6Address(const EIPAddress& address) {
  auto item = std::make_unique<EIPv6AddressItem>();
  item->SetAddress(address);
  return m_IPv6AddressItems.AdoptItem(std::move(item));
}

template class ERecord<EInterfaceItem>;
