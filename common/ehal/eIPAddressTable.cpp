#include "eIPAddressTable.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "eByteOrder.h"
#include "eInterfaceTable.h"
#include "eRecordSchema.h"
#include "eTrace.h"

using eHal::detail::BasePartCodec;
using eHal::detail::KeptDescription;
using eHal::detail::Layout;
using eHal::detail::Property;
using eHal::detail::ReadBigEndian32;
using eHal::detail::ReadRecord;
using eHal::detail::Write;
using eHal::detail::WriteBigEndian32;

struct EIPAddressTable::Schema {
  static constexpr auto kFields =
      std::make_tuple(Property<EIPAddressTable>("AddressTable", BasePartCodec<Base>{}));
  static constexpr Layout kLayouts[] = {{0x22222222}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eIPAddressTable", 97,
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
    assert(leaf < m_Starts.size() && m_Starts[leaf] == span.first);
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

// The merge's work on the rows, which edits their fields in place.
struct EIPAddressTable::MergeSteps {
  // Both counts of a row become n.
  static void SetHostCount(EIPAddressTableItem& row, unsigned int n) {
    row.m_IPAddressRange.SetRangeCount(n);
    row.m_MACAddressRange.SetMACRangeCount(n);
  }

  // Trims a row to its last n hosts: the first address becomes the IPv4 address first + count
  // - n, the first MAC the one the untrimmed row gave that host.
  static void KeepLastHosts(EIPAddressTableItem& row, unsigned int n) {
    const EIPAddressRange& hosts = row.m_IPAddressRange;
    unsigned char bytes[4];
    WriteBigEndian32(bytes, HostNumber(hosts.GetIPAddress()) + hosts.GetRangeCount() - n);
    EIPAddress first;
    first.SetAddress(bytes, eIPv4Address);
    EMACAddress mac;
    row.GetMACAddressFromIPAddress(first, mac);
    row.m_IPAddressRange.SetAddress(first);
    row.m_MACAddressRange.SetMACAddress(mac);
    SetHostCount(row, n);
  }

  // Fills an empty row with the settings of a usable interface and marks it as derived from
  // the interface table.
  static void SetInterfaceRow(EIPAddressTableItem& row, const EInterfaceItem& item) {
    const EIPv4AddressItem& ipv4 = item.GetIPv4AddressItem();
    row.m_IPAddressRange.SetAddress(ipv4.GetAddress());
    row.m_IPAddressRange.SetRangeCount(1);
    row.m_MACAddressRange.SetMACMode(EIPAddressTableItem::kMACOneToOne);
    row.m_MACAddressRange.SetMACAddress(item.GetMacAddress());
    row.m_MACAddressRange.SetMACRangeCount(1);
    row.m_Network = EIPMaskedAddress(ipv4.GetGateway());
    row.m_Network.SetMaskPrefixNumber(ipv4.GetMaskLength());
    row.m_UseNetworkNumber = true;
    row.m_Gateway = ipv4.GetGateway();
    row.m_OverrideDefaultGateway = true;
    row.m_InterfaceDerived = true;
    row.m_VLAN = item.GetVLANItem();
    row.m_VPI = item.GetVPI();
    row.m_VCI = item.GetVCI();
    row.m_Encapsulation =
        static_cast<eAtmEncapsulationMode>(static_cast<unsigned int>(item.GetEncapsulation()));
    row.m_ATMMode = static_cast<EIPAddressTableItem::ATMModeEnum>(item.GetATMMode() == 0 ? 0 : 1);
  }

  // Inserts a copy of the row trimmed to its first n hosts (the first addresses stay), unless a
  // row has its key, and indexes it. `hint` is where the copy is expected to go.
  static void InsertFirstHosts(Rows& rows, HostRangeIndex& index, Row hint,
                               const EIPAddressTableItem& row, unsigned int n) {
    EIPAddressRange key = row.m_IPAddressRange;
    key.SetRangeCount(n);
    const std::size_t count = rows.size();
    const Row piece = rows.try_emplace(hint, key, row);
    if (rows.size() == count) return;
    SetHostCount(piece->second, n);
    index.Add(piece);
  }

  // Trims the row held by a removed node to its last n hosts and puts it back, unless a row has
  // its new key, and indexes it. `hint` is where it is expected to go; returns where it went, or
  // the end of the rows.
  static Row InsertLastHosts(Rows& rows, HostRangeIndex& index, Row hint, Rows::node_type node,
                             unsigned int n) {
    KeepLastHosts(node.mapped(), n);
    node.key() = node.mapped().GetIPAddressRange();
    const Row piece = rows.insert(hint, std::move(node));
    if (!node.empty()) return rows.end();
    index.Add(piece);
    return piece;
  }

  // Carves `host` out of every row that holds it, in key order: each such row is removed, and
  // the hosts before and the hosts after `host`, where there are any, come back as rows of their
  // own where no row has their key. Returns a row of the hosts after `host`, or the end of the
  // rows when there is none.
  static Row CarveOut(Rows& rows, HostRangeIndex& index, unsigned int host) {
    std::vector<Row>& holding = index.TakeRowsHolding(host);
    std::sort(holding.begin(), holding.end(), [](Row a, Row b) { return a->first < b->first; });
    Row after = rows.end();
    for (const Row row : holding) {
      const Row next = std::next(row);
      Rows::node_type removed = rows.extract(row);
      const EIPAddressRange& hosts = removed.mapped().m_IPAddressRange;
      const unsigned int first = host - HostNumber(hosts.GetIPAddress());
      const unsigned int last = hosts.GetRangeCount() - first - 1;
      if (first > 0) InsertFirstHosts(rows, index, next, removed.mapped(), first);
      if (last == 0) continue;
      const Row piece = InsertLastHosts(rows, index, next, std::move(removed), last);
      if (after == rows.end()) after = piece;
    }
    return after;
  }
};

void EIPAddressTable::SerializeOut(EArchive& archive) const {
  Write<Schema>(archive, *this);
}

void EIPAddressTable::SerializeIn(EArchive& archive) {
  ReadRecord<Schema>(archive, *this);
}

void EIPAddressTable::Describe(ERecordVisitor& visitor, const char* name) const {
  eHal::detail::Describe<Schema>(visitor, name, *this);
}

const ERecordDescription& EIPAddressTable::Description() {
  return KeptDescription<Schema>();
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

void EIPAddressTable::MergeWithInterfaceTable(const EInterfaceTable& table) {
  const std::vector<const EInterfaceItem*> interfaces = UsableInterfaces(table);
  if (interfaces.empty()) return;
  HostRangeIndex index(m_Rows, StartsAddedBy(interfaces));
  for (const EInterfaceItem* item : interfaces) {
    // The hosts after the interface's, if any, follow its row.
    const Row after = MergeSteps::CarveOut(m_Rows, index, HostOf(*item));
    EIPAddressRange hosts;
    hosts.SetAddress(item->GetIPv4AddressItem().GetAddress());
    hosts.SetRangeCount(1);
    // The row is built in place from the empty values, where no row has its key.
    const std::size_t count = m_Rows.size();
    const Row row =
        after == m_Rows.end() ? m_Rows.try_emplace(hosts).first : m_Rows.try_emplace(after, hosts);
    if (m_Rows.size() == count) continue;
    MergeSteps::SetInterfaceRow(row->second, *item);
    index.Add(row);
  }
}
