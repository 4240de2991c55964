// The interface-table hooks: both lookups of the IP lookup index over 10^6 entries beside a
// literal linear scan of the same entries, forwarding one hook through a fan-out of eight hook
// objects, and SettingInterfaceTable rebuilding the index of 10^5 interfaces. The lookups also
// run over 10^3 to 10^6 entries, to show their logarithmic growth. Every benchmark reports the
// heap allocations per iteration ("allocs"), counted by this program's replacement of the
// global allocation functions: the lookups and the forwarding allocate nothing.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "eIPLookupInterfaceTableHooks.h"
#include "eIgnoreInterfaceTableHooks.h"
#include "eInterfaceTable.h"
#include "eMultipleInterfaceTableHooks.h"
#include "ipv4_host.h"

namespace {
std::atomic<std::size_t> g_Allocations{0};
}  // namespace

// Kept out of line: inlined into a caller, the pairing of operator new with std::free would
// look mismatched to the compiler's checks.
[[gnu::noinline]] void* operator new(std::size_t size) {
  g_Allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
  std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

namespace {

constexpr unsigned int kEntries = 1000000;
constexpr unsigned int kInterfaces = 100000;
constexpr unsigned int kVlans = 4;  // entries spread over VLAN ids 0, 100, 200, 300

EVLANIPAddressTableItemProperties Tagged(unsigned short id) {
  EVLANIPAddressTableItemProperties props;
  props.SetEnabled(id != 0);
  props.SetVLANID(id, 0);
  return props;
}

EVLAN Vlan(unsigned int id) {
  EVLAN vlan;
  vlan.SetVLANID(id);
  return vlan;
}

// Entry i: host 10.0.0.0 + i / 2 on VLAN id 100 * (i % 4), interface i + 1, so that every
// address is held twice.
unsigned int HostOf(unsigned int i) {
  return 0x0A000000 + i / 2;
}
unsigned short VlanOf(unsigned int i) {
  return static_cast<unsigned short>(100 * (i % kVlans));
}

// The literal reference: the same entries in a vector, searched from end to end.
struct Entry {
  EIPAddress address;
  unsigned int vlanId;
  unsigned int id;
};

struct Fixture {
  EIPLookupInterfaceTableHooks lookup;
  std::vector<Entry> entries;
  std::vector<unsigned int> probes;  // entry numbers in random order

  explicit Fixture(unsigned int n) {
    EInterfaceItem owner;
    EIPv4AddressItem& ipv4 = owner.GetIPv4AddressItem();
    entries.reserve(n);
    for (unsigned int i = 0; i < n; ++i) {
      owner.SetLocalId(i + 1);
      ipv4.SetAddress(IPv4Host(HostOf(i)));
      lookup.EnablingIPv4AddressItem(ipv4, Tagged(VlanOf(i)));
      entries.push_back({ipv4.GetAddress(), VlanOf(i), i + 1});
    }
    std::mt19937 random(7);
    std::uniform_int_distribution<unsigned int> pick(0, n - 1);
    for (int n = 0; n < 4096; ++n)
      probes.push_back(pick(random));
  }
};

// The index and the reference of `n` entries, built once.
const Fixture& Shared(unsigned int n) {
  static std::map<unsigned int, std::unique_ptr<const Fixture>> fixtures;
  std::unique_ptr<const Fixture>& fixture = fixtures[n];
  if (!fixture) fixture = std::make_unique<const Fixture>(n);
  return *fixture;
}

unsigned int ScanForInterface(const std::vector<Entry>& entries, const EIPAddress& address) {
  const Entry* best = nullptr;
  for (const Entry& entry : entries) {
    if (!(entry.address == address)) continue;
    if (best == nullptr || entry.vlanId < best->vlanId ||
        (entry.vlanId == best->vlanId && entry.id < best->id)) {
      best = &entry;
    }
  }
  return best == nullptr ? 0 : best->id;
}

unsigned int ScanForInterfaceOnVlan(const std::vector<Entry>& entries, const EIPAddress& address,
                                    unsigned int vlanId) {
  unsigned int best = 0;
  for (const Entry& entry : entries) {
    if (!(entry.address == address) || entry.vlanId != vlanId) continue;
    if (best == 0 || entry.id < best) best = entry.id;
  }
  return best;
}

// Runs `body` once per iteration over the probes into state.range(0) entries, and reports the
// allocations per iteration.
template <typename Body>
void OverProbes(benchmark::State& state, const Body& body) {
  const Fixture& fixture = Shared(static_cast<unsigned int>(state.range(0)));
  std::size_t next = 0;
  const std::size_t before = g_Allocations.load();
  for (auto _ : state) {
    const unsigned int i = fixture.probes[next++ % fixture.probes.size()];
    benchmark::DoNotOptimize(body(fixture, i));
  }
  state.counters["allocs"] = benchmark::Counter(static_cast<double>(g_Allocations.load() - before),
                                                benchmark::Counter::kAvgIterations);
}

void BM_GetInterfaceId(benchmark::State& state) {
  OverProbes(state, [](const Fixture& fixture, unsigned int i) {
    return fixture.lookup.GetInterfaceId(fixture.entries[i].address);
  });
}
BENCHMARK(BM_GetInterfaceId)->RangeMultiplier(10)->Range(1000, kEntries);

void BM_GetInterfaceIdFromVlan(benchmark::State& state) {
  OverProbes(state, [](const Fixture& fixture, unsigned int i) {
    static const EVLAN vlans[kVlans] = {Vlan(0), Vlan(100), Vlan(200), Vlan(300)};
    return fixture.lookup.GetInterfaceIdFromVlan(fixture.entries[i].address, vlans[i % kVlans]);
  });
}
BENCHMARK(BM_GetInterfaceIdFromVlan)->RangeMultiplier(10)->Range(1000, kEntries);

void BM_LinearScanForInterface(benchmark::State& state) {
  OverProbes(state, [](const Fixture& fixture, unsigned int i) {
    return ScanForInterface(fixture.entries, fixture.entries[i].address);
  });
}
BENCHMARK(BM_LinearScanForInterface)->Arg(kEntries)->Iterations(50);

void BM_LinearScanForInterfaceOnVlan(benchmark::State& state) {
  OverProbes(state, [](const Fixture& fixture, unsigned int i) {
    return ScanForInterfaceOnVlan(fixture.entries, fixture.entries[i].address, VlanOf(i));
  });
}
BENCHMARK(BM_LinearScanForInterfaceOnVlan)->Arg(kEntries)->Iterations(50);

// One hook through a fan-out of eight registrations that ignore it.
void BM_FanOutOfEight(benchmark::State& state) {
  EMultipleInterfaceTableHooks fanOut;
  const char* const names[] = {"a", "b", "c", "d", "e", "f", "g", "h"};
  for (const char* name : names) {
    fanOut.AddHooks(name, boost::shared_ptr<EInterfaceTableHooks>(new EIgnoreInterfaceTableHooks));
  }
  EInterfaceTableHooks& hooks = fanOut;
  const EInterfaceItem item;
  unsigned int mtu = 1500;
  const std::size_t before = g_Allocations.load();
  for (auto _ : state) {
    hooks.SettingInterfaceMTU(item, mtu++);
    benchmark::ClobberMemory();
  }
  state.counters["allocs"] = benchmark::Counter(static_cast<double>(g_Allocations.load() - before),
                                                benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_FanOutOfEight);

// SettingInterfaceTable over 10^5 interfaces, each with one IPv4 address on one of four VLANs.
void BM_SettingInterfaceTable(benchmark::State& state) {
  EInterfaceTable table;
  EInterfaceItem item;
  for (unsigned int i = 0; i < kInterfaces; ++i) {
    item.SetVLANItem(Tagged(VlanOf(i)));
    item.GetIPv4AddressItem().SetAddress(IPv4Host(HostOf(i)));
    table.AddInterfaceItem(item, i + 1);
  }
  const EInterfaceTable empty;
  EIPLookupInterfaceTableHooks lookup;
  const std::size_t before = g_Allocations.load();
  for (auto _ : state) {
    lookup.SettingInterfaceTable(empty, table);
    benchmark::DoNotOptimize(lookup.GetInterfaceId(IPv4Host(HostOf(0))));
  }
  state.counters["allocs"] = benchmark::Counter(static_cast<double>(g_Allocations.load() - before),
                                                benchmark::Counter::kAvgIterations);
  state.counters["interfaces"] = kInterfaces;
}
BENCHMARK(BM_SettingInterfaceTable)->Unit(benchmark::kMillisecond);

}  // namespace
