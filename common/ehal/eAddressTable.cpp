#include "eAddressTable.h"

#include "eARPAddressTableItem.h"
#include "eIPAddressTable.h"
#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

// The rows as a map: the count (written as unsigned 64-bit, read as unsigned 32-bit), then each
// key and item in key order. Reading clears the table and stores each pair read into a fresh
// key and item, a later pair with an equal key replacing the earlier one.
template <typename KeyType, typename ItemType>
struct EAddressTable<KeyType, ItemType>::Schema {
  static constexpr auto kFields = std::make_tuple(Field("Rows", &EAddressTable::m_Rows));
  static constexpr Layout kLayouts[] = {{0x11111111}};
  // The table is a template in its header, which the report names.
  static constexpr ERefusalReport kRefusal = {
      "common/include/eAddressTable", 120, "template<KeyType,ItemType> EAddressTable::SerializeIn"};
};

template class ERecord<EAddressTable<EIPAddressRange, EIPAddressTableItem>>;
template class ERecord<EAddressTable<EIPAddress, EARPAddressTableItem>>;
