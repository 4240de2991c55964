// The IP address table's merge of an interface table written out step by step as it reads: for
// each usable interface in list order, every row is visited in key order and the host is carved
// out of the rows that hold it; the walk goes on with the row that followed a removed one, and
// rows are inserted only where no row has their key. The reference that the differential test
// and the benchmark hold the library's merge against (it is quadratic).
#pragma once

#include <map>

#include "eIPAddressTable.h"
#include "eInterfaceTable.h"
#include "ipv4_host.h"

namespace literal_merge {

using RowMap = std::map<EIPAddressRange, EIPAddressTableItem>;

// The first four bytes of an address as one number, the first byte highest.
inline unsigned int FirstFour(const EIPAddress& address) {
  const unsigned char* bytes = address.GetAddress();
  return (static_cast<unsigned int>(bytes[0]) << 24) | (static_cast<unsigned int>(bytes[1]) << 16) |
         (static_cast<unsigned int>(bytes[2]) << 8) | bytes[3];
}

// The row of one host that an interface becomes (without the interface-derived flag, which has
// no setter).
inline EIPAddressTableItem InterfaceRow(const EInterfaceItem& item) {
  const EIPv4AddressItem& ipv4 = item.GetIPv4AddressItem();
  EIPAddressTableItem row;
  EIPAddressRange range;
  range.SetAddress(ipv4.GetAddress());
  range.SetRangeCount(1);
  row.SetIPAddressRange(range);
  EMACAddressRange macs;
  macs.SetMACMode(0);
  macs.SetMACAddress(item.GetMacAddress());
  macs.SetMACRangeCount(1);
  row.SetMACAddressRange(macs);
  EIPMaskedAddress network(ipv4.GetGateway());
  network.SetMaskPrefixNumber(ipv4.GetMaskLength());
  row.SetNetwork(network);
  row.SetUseNetworkNumber(true);
  row.SetGateway(ipv4.GetGateway());
  row.SetOverrideDefaultGateway(true);
  row.SetVLANIPAddressTableItemProperties(item.GetVLANItem());
  row.SetVPI(item.GetVPI());
  row.SetVCI(item.GetVCI());
  row.SetEncapsulation(
      static_cast<eAtmEncapsulationMode>(static_cast<unsigned int>(item.GetEncapsulation())));
  row.SetATMMode(static_cast<EIPAddressTableItem::ATMModeEnum>(item.GetATMMode() == 0 ? 0 : 1));
  return row;
}

// The first `n` hosts of a row.
inline EIPAddressTableItem TrimBack(const EIPAddressTableItem& row, unsigned int n) {
  EIPAddressTableItem piece = row;
  EIPAddressRange ip = piece.GetIPAddressRange();
  ip.SetRangeCount(n);
  piece.SetIPAddressRange(ip);
  EMACAddressRange mac = piece.GetMACAddressRange();
  mac.SetMACRangeCount(n);
  piece.SetMACAddressRange(mac);
  return piece;
}

// The last `n` hosts of a row, with the MAC address the row gives its new first host.
inline EIPAddressTableItem TrimFront(const EIPAddressTableItem& row, unsigned int n) {
  const EIPAddressRange old = row.GetIPAddressRange();
  const EIPAddress first = IPv4Host(FirstFour(old.GetIPAddress()) + old.GetRangeCount() - n);
  EMACAddress firstMAC;
  row.GetMACAddressFromIPAddress(first, firstMAC);
  EIPAddressTableItem piece = row;
  EIPAddressRange ip = old;
  ip.SetAddress(first);
  ip.SetRangeCount(n);
  piece.SetIPAddressRange(ip);
  EMACAddressRange mac = piece.GetMACAddressRange();
  mac.SetMACAddress(firstMAC);
  mac.SetMACRangeCount(n);
  piece.SetMACAddressRange(mac);
  return piece;
}

inline void InsertIfNoEqualKey(RowMap& rows, const EIPAddressTableItem& item) {
  rows.try_emplace(item.GetIPAddressRange(), item);
}

// Merges `interfaces` into `rows`; `finish(row)` gives the row inserted for an interface's host
// (the test sets the interface-derived flag there).
template <typename Finish>
void Merge(RowMap& rows, const EInterfaceTable& interfaces, Finish finish) {
  const EInterfaceTable::InterfaceItemList& list = interfaces.GetInterfaceItemList();
  for (auto entry = list.begin(); entry != list.end(); ++entry) {
    const EInterfaceItem* item = list.GetItem(entry);
    if (item == nullptr || !item->IsEnabled()) continue;
    const EIPv4AddressItem& ipv4 = item->GetIPv4AddressItem();
    if (!ipv4.IsEnabled() || FirstFour(ipv4.GetAddress()) == 0) continue;
    const EIPAddressTableItem host = finish(InterfaceRow(*item));
    const unsigned int a = FirstFour(ipv4.GetAddress());
    for (auto row = rows.begin(); row != rows.end();) {
      const EIPAddressRange range = row->second.GetIPAddressRange();
      const unsigned int f = FirstFour(range.GetIPAddress());
      const unsigned int c = range.GetRangeCount();
      if (a < f || !(a < f + c) || c == 0) {
        ++row;
        continue;
      }
      const unsigned int d = a - f;
      const EIPAddressTableItem old = row->second;
      row = rows.erase(row);
      if (c == 1) continue;
      if (d == 0) {
        InsertIfNoEqualKey(rows, TrimFront(old, c - 1));
      } else if (d == c - 1) {
        InsertIfNoEqualKey(rows, TrimBack(old, c - 1));
      } else {
        InsertIfNoEqualKey(rows, TrimBack(old, d));
        InsertIfNoEqualKey(rows, TrimFront(old, c - d - 1));
      }
    }
    InsertIfNoEqualKey(rows, host);
  }
}

}  // namespace literal_merge
