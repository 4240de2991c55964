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
#include "literal_merge.h"

namespace {

constexpr unsigned int kHostsPerRow = 10;
constexpr unsigned int kFirstHost = 0x0A000001;  // 10.0.0.1

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

using RowMap = literal_merge::RowMap;

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
  literal_merge::Merge(rows, interfaces, [](const EIPAddressTableItem& row) { return row; });
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
