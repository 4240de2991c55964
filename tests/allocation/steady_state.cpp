// Reused archives, records and envelopes make no allocation once they have grown to fit their
// messages: the server-loop round trips of the exchange benchmark, counted by a counting
// allocator. Built as a program of its own, since the counter replaces the C allocator.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include "allocation_counter.h"
#include "exchange_workload.h"

namespace {

constexpr unsigned int kRoundTrips = 1000;

// Allocations made by round trips 1 to `kRoundTrips` after one with the largest number (the
// longest text), which grows every allocation to fit; every result must pass `check`.
template <typename RoundTrip, typename Check>
std::uint64_t SteadyStateAllocations(RoundTrip roundTrip, Check check) {
  EXPECT_TRUE(check(roundTrip(kRoundTrips), kRoundTrips));
  bool ok = true;
  const std::uint64_t before = allocation_counter::Count();
  for (unsigned int i = 1; i <= kRoundTrips; ++i)
    ok = check(roundTrip(i), i) && ok;
  const std::uint64_t allocations = allocation_counter::Count() - before;
  EXPECT_TRUE(ok);
  return allocations;
}

TEST(SteadyState, TheCounterSeesOperatorNewAndTheArchivesGrowth) {
  std::uint64_t before = allocation_counter::Count();
  const auto number = std::make_unique<int>(7);
  EXPECT_EQ(allocation_counter::Count() - before, 1u);
  before = allocation_counter::Count();
  EArchive archive;
  archive.SetMode(eModeStoring);
  archive << 1u << 2u << 3u;
  EXPECT_EQ(allocation_counter::Count() - before, 1u);  // one allocation for all three numbers
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 8u);    // while the capacity doubles from 1
  EXPECT_EQ(*number, 7);
}

TEST(SteadyState, AReusedStatsRoundTripAllocatesNothing) {
  exchange::StatsLoop loop;
  const auto allocations = SteadyStateAllocations(
      [&](unsigned int seed) { return loop.RoundTrip(seed); },
      [](std::uint64_t sum, unsigned int seed) { return sum == exchange::ExpectedSum(seed); });
  EXPECT_EQ(allocations, 0u);
}

TEST(SteadyState, TheReusedExchangeOfRequestAndReplyAllocatesNothing) {
  exchange::PRBSLoop loop;
  const auto allocations =
      SteadyStateAllocations([&](unsigned int id) { return loop.RoundTrip(id); },
                             [](unsigned int answered, unsigned int id) { return answered == id; });
  EXPECT_EQ(allocations, 0u);
}

TEST(SteadyState, AReusedEnvelopeWithAPayloadAllocatesNothing) {
  for (const unsigned int size : {1024u, 64u * 1024u}) {
    exchange::MessageLoop loop(size);
    const auto allocations = SteadyStateAllocations(
        [&](unsigned int) { return loop.RoundTrip(); },
        [size](unsigned int received, unsigned int) { return received == size; });
    EXPECT_EQ(allocations, 0u) << size << " bytes";
  }
}

// Messages that grow from one round trip to the next (ids 1 to 1000 take 1 to 4 digits) cost an
// allocation per growing buffer only now and then: a reused buffer that must grow doubles.
TEST(SteadyState, GrowingMessagesReallocateOnlyNowAndThen) {
  exchange::PRBSLoop loop;
  EXPECT_EQ(loop.RoundTrip(1), 1u);
  const std::uint64_t before = allocation_counter::Count();
  for (unsigned int i = 2; i <= kRoundTrips; ++i)
    loop.RoundTrip(i);
  // Eight buffers grow (per side: the payload set into the envelope, the envelope's bytes loaded,
  // the payload read from them, and the payload loaded), once each.
  EXPECT_EQ(allocation_counter::Count() - before, 8u);
}

}  // namespace
