// The IP address table's merge of an interface table, side by side with a literal reference that
// visits every row for every interface, as the merge is defined. The table holds n rows of ten
// hosts each and the interface table n interfaces, one at the fifth host of each row, so that
// every interface splits one row in three. Each iteration merges into a fresh copy of the rows
// (making and destroying the copy is not timed). The reference's iteration count is fixed: it is
// quadratic.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <iterator>
#include <map>
#include <memory>

#include "eIPAddressTable.h"
#include "eInterfaceTable.h"
#include "ipv4_host.h"

namespace {

constexpr unsigned int kHostsPerRow = 10;
constexpr unsigned int kFirstHost = 0x0A000001;  // 10.0.0.1

unsigned int HostOf(const EIPAddress& address) {
  const unsigned char* bytes = address.GetAddress();
  return (static_cast<unsigned int>(bytes[0]) << 24) | (static_cast<unsigned int>(bytes[1]) << 16) |
         (static_cast<unsigned int>(bytes[2]) << 8) | bytes[3];
}

EIPAddressRange Hosts(unsigned int first, unsigned int count) {
  EIPAddressRange range;
  range.SetAddress(IPv4Host(first));
  range.SetRangeCount(count);
  return range;
}

EIPAddressTable Rows(unsigned int n) {
  EIPAddressTable table;
  for (unsigned int i = 0; i < n; ++i) {
    EIPAddressTableItem item;
    item.SetIPAddressRange(Hosts(kFirstHost + i * kHostsPerRow, kHostsPerRow));
    EMACAddressRange macs;
    macs.SetMACRangeCount(kHostsPerRow);
    item.SetMACAddressRange(macs);
    table.AddEntry(item.GetIPAddressRange(), item);
  }
  return table;
}

EInterfaceTable Interfaces(unsigned int n) {
  EInterfaceTable table;
  EInterfaceItem item;
  item.SetEnabled(true);
  item.GetIPv4AddressItem().SetEnabled(true);
  item.GetIPv4AddressItem().SetMaskLength(24);
  for (unsigned int i = 0; i < n; ++i) {
    item.GetIPv4AddressItem().SetAddress(IPv4Host(kFirstHost + i * kHostsPerRow + 4));
    table.AddInterfaceItem(item);
  }
  return table;
}

// The reference: the merge's steps as they read. (The rows here are keyed by their own ranges,
// so the walk reads a row's range from its key.)
using RowMap = std::map<EIPAddressRange, EIPAddressTableItem>;

void SetCounts(EIPAddressTableItem& piece, const EIPAddress& first, unsigned int n) {
  piece.SetIPAddressRange([&] {
    EIPAddressRange range;
    range.SetAddress(first);
    range.SetRangeCount(n);
    return range;
  }());
  EMACAddressRange macs = piece.GetMACAddressRange();
  macs.SetMACRangeCount(n);
  piece.SetMACAddressRange(macs);
}

EIPAddressTableItem TrimBack(const EIPAddressTableItem& row, unsigned int n) {
  EIPAddressTableItem piece = row;
  SetCounts(piece, row.GetIPAddressRange().GetIPAddress(), n);
  return piece;
}

EIPAddressTableItem TrimFront(const EIPAddressTableItem& row, unsigned int f, unsigned int c,
                              unsigned int n) {
  const EIPAddress first = IPv4Host(f + c - n);
  EMACAddress mac;
  row.GetMACAddressFromIPAddress(first, mac);
  EIPAddressTableItem piece = row;
  EMACAddressRange macs = piece.GetMACAddressRange();
  macs.SetMACAddress(mac);
  piece.SetMACAddressRange(macs);
  SetCounts(piece, first, n);
  return piece;
}

void InsertIfNew(RowMap& rows, const EIPAddressTableItem& item) {
  rows.try_emplace(item.GetIPAddressRange(), item);
}

EIPAddressTableItem InterfaceRow(const EInterfaceItem& item) {
  const EIPv4AddressItem& ipv4 = item.GetIPv4AddressItem();
  EIPAddressTableItem row;
  SetCounts(row, ipv4.GetAddress(), 1);
  EMACAddressRange macs = row.GetMACAddressRange();
  macs.SetMACAddress(item.GetMacAddress());
  row.SetMACAddressRange(macs);
  EIPMaskedAddress network(ipv4.GetGateway());
  network.SetMaskPrefixNumber(ipv4.GetMaskLength());
  row.SetNetwork(network);
  row.SetUseNetworkNumber(true);
  row.SetGateway(ipv4.GetGateway());
  row.SetOverrideDefaultGateway(true);
  row.SetVLANIPAddressTableItemProperties(item.GetVLANItem());
  return row;
}

void LiteralMerge(RowMap& rows, const EInterfaceTable& table) {
  const EInterfaceTable::InterfaceItemList& list = table.GetInterfaceItemList();
  for (auto entry = list.begin(); entry != list.end(); ++entry) {
    const EInterfaceItem* item = list.GetItem(entry);
    if (item == nullptr || !item->IsEnabled() || !item->GetIPv4AddressItem().IsEnabled()) continue;
    const unsigned int a = HostOf(item->GetIPv4AddressItem().GetAddress());
    if (a == 0) continue;
    const EIPAddressTableItem host = InterfaceRow(*item);
    for (auto row = rows.begin(); row != rows.end();) {
      const unsigned int f = HostOf(row->first.GetIPAddress());
      const unsigned int c = row->first.GetRangeCount();
      if (a < f || !(a < f + c) || c == 0) {
        ++row;
        continue;
      }
      const unsigned int d = a - f;
      const EIPAddressTableItem old = row->second;
      row = rows.erase(row);
      if (c == 1) continue;
      if (d == 0) {
        InsertIfNew(rows, TrimFront(old, f, c, c - 1));
      } else if (d == c - 1) {
        InsertIfNew(rows, TrimBack(old, c - 1));
      } else {
        InsertIfNew(rows, TrimBack(old, d));
        InsertIfNew(rows, TrimFront(old, f, c, c - d - 1));
      }
    }
    InsertIfNew(rows, host);
  }
}

// The working rows of one iteration: a copy of the table, for the library and for the
// reference.
void Fill(std::unique_ptr<EIPAddressTable>& rows, const EIPAddressTable& table) {
  rows = std::make_unique<EIPAddressTable>(table);
}
void Fill(std::unique_ptr<RowMap>& rows, const EIPAddressTable& table) {
  rows = std::make_unique<RowMap>(table.Begin(), table.End());
}

void Merge(EIPAddressTable& rows, const EInterfaceTable& interfaces) {
  rows.MergeWithInterfaceTable(interfaces);
}
void Merge(RowMap& rows, const EInterfaceTable& interfaces) {
  LiteralMerge(rows, interfaces);
}

std::size_t CountOf(const EIPAddressTable& rows) {
  return static_cast<std::size_t>(std::distance(rows.Begin(), rows.End()));
}
std::size_t CountOf(const RowMap& rows) {
  return rows.size();
}

// Times the merge of n interfaces into a fresh copy of n rows; making and destroying the copies
// is not timed.
template <typename Working>
void TimeMerges(benchmark::State& state) {
  const auto n = static_cast<unsigned int>(state.range(0));
  const EIPAddressTable table = Rows(n);
  const EInterfaceTable interfaces = Interfaces(n);
  std::unique_ptr<Working> rows;
  for (auto _ : state) {
    state.PauseTiming();
    rows.reset();
    Fill(rows, table);
    state.ResumeTiming();
    Merge(*rows, interfaces);
  }
  if (rows == nullptr || CountOf(*rows) != 3 * n) state.SkipWithError("unexpected rows");
}

void BM_MergeWithInterfaceTable(benchmark::State& state) {
  TimeMerges<EIPAddressTable>(state);
}
BENCHMARK(BM_MergeWithInterfaceTable)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_LiteralMerge(benchmark::State& state) {
  TimeMerges<RowMap>(state);
}
BENCHMARK(BM_LiteralMerge)->Arg(10000)->Iterations(2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LiteralMerge)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
