#include "eIPAddressTable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "eByteOrder.h"
#include "eInterfaceTable.h"
#include "eRecordSchema.h"
#include "eTrace.h"

using namespace eHal::detail;

struct EIPAddressTable::Schema {
  static constexpr auto kFields =
      std::make_tuple(Property<EIPAddressTable>("AddressTable", BasePart<Base>{}));
  static constexpr Layout kLayouts[] = {{0x22222222}};
  static constexpr ESerializeErrorSite kError = {"x86_64/common/ehal/eIPAddressTable", 97,
                                                 "EIPAddressTable::SerializeIn"};
};

namespace {

using Rows = EIPAddressTable::Rows;
using Row = Rows::iterator;

constexpr char kTitle[] = "IP Address Table\n";
constexpr char kRule[] = "================\n";

// A host as the merge counts it: the first four address bytes as a big-endian number, whatever
// the address type.
unsigned int HostNumber(const EIPAddress& address) {
  return ReadBigEndian32(address.GetAddress());
}

unsigned int HostOf(const EInterfaceItem& item) {
  return HostNumber(item.GetIPv4AddressItem().GetAddress());
}

// The hosts [first, end) of an item range. A host h lies in a range when first <= h < first +
// count in 32-bit arithmetic, so a range of count 0, or one whose end passes 2^32 - 1, holds
// none.
struct HostSpan {
  unsigned int first;
  unsigned int end;
};

// False when the range holds no host.
bool SpanOf(const EIPAddressRange& range, HostSpan& span) {
  const std::uint64_t first = HostNumber(range.GetIPAddress());
  const std::uint64_t end = first + range.GetRangeCount();
  if (end == first || end > UINT32_MAX) return false;
  span = {static_cast<unsigned int>(first), static_cast<unsigned int>(end)};
  return true;
}

// The rows of a table indexed by the hosts their item ranges hold, so that carving a host out
// of a table whose rows may overlap visits only the rows that hold it: finding the k rows that
// hold a host costs O((k + 1) log n). The first hosts that rows can ever have are fixed when the
// index is built; a segment tree over them keeps, for each part, the furthest end of the spans
// that start there, and each span waits in a map ordered by first host, furthest end first.
class HostRangeIndex {
 public:
  // Indexes every row of `rows`. A row added later must start at the first host of a row
  // indexed now or at one of `moreStarts`.
  HostRangeIndex(Rows& rows, std::vector<unsigned int> moreStarts)
      : m_Starts(std::move(moreStarts)) {
    HostSpan span;
    for (const auto& row : rows) {
      if (SpanOf(row.second.GetIPAddressRange(), span)) m_Starts.push_back(span.first);
    }
    std::sort(m_Starts.begin(), m_Starts.end());
    m_Starts.erase(std::unique(m_Starts.begin(), m_Starts.end()), m_Starts.end());
    while (m_LeafCount < m_Starts.size())
      m_LeafCount *= 2;
    m_Reach.assign(2 * m_LeafCount, 0);
    for (Row row = rows.begin(); row != rows.end(); ++row)
      Add(row);
  }

  // Indexes a row; one that holds no host is left out.
  void Add(Row row) {
    HostSpan span;
    if (!SpanOf(row->second.GetIPAddressRange(), span)) return;
    m_Spans.emplace(span, row);
    const std::size_t leaf = static_cast<std::size_t>(
        std::lower_bound(m_Starts.begin(), m_Starts.end(), span.first) - m_Starts.begin());
    for (std::size_t node = m_LeafCount + leaf; node >= 1; node /= 2)
      m_Reach[node] = std::max(m_Reach[node], span.end);
  }

  // Takes every row that holds `host` out of the index and returns them, in no particular
  // order; the list lives until the next call.
  std::vector<Row>& TakeRowsHolding(unsigned int host) {
    m_Taken.clear();
    const std::size_t limit = static_cast<std::size_t>(
        std::upper_bound(m_Starts.begin(), m_Starts.end(), host) - m_Starts.begin());
    Collect(1, 0, m_LeafCount, limit, host);
    return m_Taken;
  }

 private:
  struct SpanOrder {
    bool operator()(const HostSpan& a, const HostSpan& b) const {
      return a.first != b.first ? a.first < b.first : a.end > b.end;
    }
  };

  // Takes the spans holding `host` from the leaves below `node` (which covers the starts
  // [low, high)) whose start is below `limit`, and renews the reach on the way back.
  void Collect(std::size_t node, std::size_t low, std::size_t high, std::size_t limit,
               unsigned int host) {
    if (low >= limit || m_Reach[node] <= host) return;
    if (high - low == 1) {
      m_Reach[node] = TakeFromLeaf(m_Starts[low], host);
      return;
    }
    const std::size_t middle = low + (high - low) / 2;
    Collect(2 * node, low, middle, limit, host);
    Collect(2 * node + 1, middle, high, limit, host);
    m_Reach[node] = std::max(m_Reach[2 * node], m_Reach[2 * node + 1]);
  }

  // Takes the spans starting at `first` that reach beyond `host`; returns the furthest end of
  // those left, 0 for none.
  unsigned int TakeFromLeaf(unsigned int first, unsigned int host) {
    auto span = m_Spans.lower_bound(HostSpan{first, UINT32_MAX});
    while (span != m_Spans.end() && span->first.first == first && span->first.end > host) {
      m_Taken.push_back(span->second);
      span = m_Spans.erase(span);
    }
    return span != m_Spans.end() && span->first.first == first ? span->first.end : 0;
  }

  std::vector<unsigned int> m_Starts;  // every first host a row can have, ascending
  std::size_t m_LeafCount = 1;         // a power of two, at least the number of starts
  std::vector<unsigned int> m_Reach;   // the tree, root at 1, leaves from m_LeafCount
  std::multimap<HostSpan, Row, SpanOrder> m_Spans;
  std::vector<Row> m_Taken;
};

// Both counts of a piece become n.
void SetHostCount(EIPAddressTableItem& piece, unsigned int n) {
  EIPAddressRange hosts = piece.GetIPAddressRange();
  hosts.SetRangeCount(n);
  piece.SetIPAddressRange(hosts);
  EMACAddressRange macs = piece.GetMACAddressRange();
  macs.SetMACRangeCount(n);
  piece.SetMACAddressRange(macs);
}

// The row trimmed to its first n hosts; the first addresses stay.
EIPAddressTableItem FirstHosts(const EIPAddressTableItem& row, unsigned int n) {
  EIPAddressTableItem piece(row);
  SetHostCount(piece, n);
  return piece;
}

// The row trimmed to its last n hosts: the first address becomes the IPv4 address first +
// count - n, the first MAC the one the row gave that host.
EIPAddressTableItem LastHosts(const EIPAddressTableItem& row, unsigned int n) {
  EIPAddressTableItem piece(row);
  EIPAddressRange hosts = row.GetIPAddressRange();
  unsigned char bytes[4];
  WriteBigEndian32(bytes, HostNumber(hosts.GetIPAddress()) + hosts.GetRangeCount() - n);
  EIPAddress first;
  first.SetAddress(bytes, eIPv4Address);
  EMACAddress mac;
  row.GetMACAddressFromIPAddress(first, mac);
  hosts.SetAddress(first);
  piece.SetIPAddressRange(hosts);
  EMACAddressRange macs = row.GetMACAddressRange();
  macs.SetMACAddress(mac);
  piece.SetMACAddressRange(macs);
  SetHostCount(piece, n);
  return piece;
}

// Inserts the row unless a row has its key already, and indexes it.
void InsertNew(Rows& rows, HostRangeIndex& index, const EIPAddressTableItem& item) {
  const auto [row, inserted] = rows.try_emplace(item.GetIPAddressRange(), item);
  if (inserted) index.Add(row);
}

// Carves `host` out of every row that holds it, in key order: each such row is removed, and
// the hosts before and the hosts after `host`, where there are any, come back as rows of their
// own where no row has their key.
void CarveOut(Rows& rows, HostRangeIndex& index, unsigned int host) {
  std::vector<Row>& holding = index.TakeRowsHolding(host);
  std::sort(holding.begin(), holding.end(), [](Row a, Row b) { return a->first < b->first; });
  for (const Row row : holding) {
    const auto removed = rows.extract(row);
    const EIPAddressTableItem& item = removed.mapped();
    const EIPAddressRange hosts = item.GetIPAddressRange();
    const unsigned int before = host - HostNumber(hosts.GetIPAddress());
    const unsigned int after = hosts.GetRangeCount() - before - 1;
    if (before > 0) InsertNew(rows, index, FirstHosts(item, before));
    if (after > 0) InsertNew(rows, index, LastHosts(item, after));
  }
}

// The interface items that become rows: enabled, with an enabled IPv4 item whose address is
// not 0.0.0.0, in the order of the list.
std::vector<const EInterfaceItem*> UsableInterfaces(const EInterfaceTable& table) {
  std::vector<const EInterfaceItem*> usable;
  const EInterfaceTable::InterfaceItemList& list = table.GetInterfaceItemList();
  for (auto entry = list.begin(); entry != list.end(); ++entry) {
    const EInterfaceItem* item = list.GetItem(entry);
    if (item == nullptr || !item->IsEnabled() || !item->GetIPv4AddressItem().IsEnabled()) continue;
    if (HostOf(*item) != 0) usable.push_back(item);
  }
  return usable;
}

// The first hosts of the rows a merge of these interfaces can add: their own, and the one
// after each.
std::vector<unsigned int> StartsAddedBy(const std::vector<const EInterfaceItem*>& interfaces) {
  std::vector<unsigned int> starts;
  starts.reserve(2 * interfaces.size());
  for (const EInterfaceItem* item : interfaces) {
    starts.push_back(HostOf(*item));
    starts.push_back(HostOf(*item) + 1);
  }
  return starts;
}

}  // namespace

void EIPAddressTable::SerializeOut(EArchive& archive) const {
  Write<Schema>(archive, *this);
}

void EIPAddressTable::SerializeIn(EArchive& archive) {
  Read<Schema>(archive, *this);
}

void EIPAddressTable::Describe(ERecordVisitor& visitor, const char* name) const {
  eHal::detail::Describe<Schema>(visitor, name, *this);
}

EArchive& operator<<(EArchive& archive, const EIPAddressTable& table) {
  table.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EIPAddressTable& table) {
  table.SerializeIn(archive);
  return archive;
}

void EIPAddressTable::DumpToLog(ETrace* trace) const {
  if (trace == nullptr || !trace->IsTraceable(kDumpLevel)) return;
  trace->Trace(kDumpLevel, kTitle);
  trace->Trace(kDumpLevel, kRule);
  Base::DumpToLog(trace);
  trace->Trace(kDumpLevel, kRule);
}

EIPAddressTableItem EIPAddressTable::InterfaceRow(const EInterfaceItem& item) {
  const EIPv4AddressItem& ipv4 = item.GetIPv4AddressItem();
  EIPAddressTableItem row;
  EIPAddressRange hosts;
  hosts.SetAddress(ipv4.GetAddress());
  hosts.SetRangeCount(1);
  row.SetIPAddressRange(hosts);
  EMACAddressRange macs;
  macs.SetMACMode(EIPAddressTableItem::kMACOneToOne);
  macs.SetMACAddress(item.GetMacAddress());
  macs.SetMACRangeCount(1);
  row.SetMACAddressRange(macs);
  EIPMaskedAddress network(ipv4.GetGateway());
  network.SetMaskPrefixNumber(ipv4.GetMaskLength());
  row.SetNetwork(network);
  row.SetUseNetworkNumber(true);
  row.SetGateway(ipv4.GetGateway());
  row.SetOverrideDefaultGateway(true);
  row.m_InterfaceDerived = true;
  row.SetVLANIPAddressTableItemProperties(item.GetVLANItem());
  row.SetVPI(item.GetVPI());
  row.SetVCI(item.GetVCI());
  row.SetEncapsulation(
      static_cast<eAtmEncapsulationMode>(static_cast<unsigned int>(item.GetEncapsulation())));
  row.SetATMMode(static_cast<EIPAddressTableItem::ATMModeEnum>(item.GetATMMode() == 0 ? 0 : 1));
  return row;
}

void EIPAddressTable::MergeWithInterfaceTable(const EInterfaceTable& table) {
  const std::vector<const EInterfaceItem*> interfaces = UsableInterfaces(table);
  if (interfaces.empty()) return;
  HostRangeIndex index(m_Rows, StartsAddedBy(interfaces));
  for (const EInterfaceItem* item : interfaces) {
    const unsigned int host = HostOf(*item);
    CarveOut(m_Rows, index, host);
    InsertNew(m_Rows, index, InterfaceRow(*item));
  }
}
