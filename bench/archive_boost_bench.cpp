// EArchive beside Boost's text archives, each used as its users use it: a fresh archive per
// run. First the 10^6 numbers of archive_workload.h, written and read one at a time; then whole
// records archived and read back: an EDHCPStats, and an eHal::EMessage with a 1 KiB payload,
// against a struct with the same fields in a Boost text archive over a string stream.
#include <benchmark/benchmark.h>

#include <boost/archive/text_iarchive.hpp>
#include <boost/archive/text_oarchive.hpp>
#include <boost/serialization/string.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "archive_workload.h"
#include "eDHCPStats.h"
#include "eMessage.h"
#include "exchange_workload.h"

namespace {

using bench::Input;
using bench::Label;

std::string BoostText(const std::vector<unsigned int>& numbers) {
  std::ostringstream stream;
  {
    boost::archive::text_oarchive archive(stream);
    for (const unsigned int number : numbers)
      archive << number;
  }
  return stream.str();
}

void BM_Write_EArchive(benchmark::State& state) {
  bench::WriteFreshArchive(state);
}

void BM_Write_Boost(benchmark::State& state) {
  const auto& numbers = Input(state);
  for (auto _ : state) {
    std::ostringstream stream;
    boost::archive::text_oarchive archive(stream);
    for (const unsigned int number : numbers)
      archive << number;
    benchmark::DoNotOptimize(stream);
  }
  Label(state);
}

void BM_Read_EArchive(benchmark::State& state) {
  bench::ReadArchive(state);
}

void BM_Read_Boost(benchmark::State& state) {
  const auto& numbers = Input(state);
  const std::string text = BoostText(numbers);
  std::vector<unsigned int> values(numbers.size());
  for (auto _ : state) {
    state.PauseTiming();
    std::istringstream stream(text);
    state.ResumeTiming();
    boost::archive::text_iarchive archive(stream);
    for (unsigned int& value : values)
      archive >> value;
    benchmark::DoNotOptimize(values.data());
  }
  bench::CheckValues(state, values, numbers);
  Label(state);
}

void LabelRoundTrip(benchmark::State& state) {
  state.counters["ns_per_round_trip"] =
      benchmark::Counter(static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Archives `record` into a fresh storing archive, loads the bytes into a fresh loading archive
// and reads them into `back`.
template <typename Record>
void RoundTrip(const Record& record, Record& back) {
  EArchive out;
  out.SetMode(eModeStoring);
  out << record;
  EArchive in;
  in.SetMode(eModeLoading);
  in.SetFromEBlob(out.GetAsEBlob(), true);
  in >> back;
}

// The same through a Boost text archive over a string stream.
template <typename Record>
void BoostRoundTrip(const Record& record, Record& back) {
  std::ostringstream out;
  {
    boost::archive::text_oarchive archive(out);
    archive << record;
  }
  std::istringstream in(out.str());
  boost::archive::text_iarchive archive(in);
  archive >> back;
}

bool Same(const EDHCPStats& a, const EDHCPStats& b) {
  return !(a != b);
}

bool Same(const eHal::EMessage& a, const eHal::EMessage& b) {
  return a.GetMessage() == b.GetMessage() && a.GetMessagePortId() == b.GetMessagePortId() &&
         a.GetMessagePortCount() == b.GetMessagePortCount() &&
         a.GetMessageType() == b.GetMessageType() &&
         a.GetClientID().GetMajorID() == b.GetClientID().GetMajorID() &&
         a.GetClientID().GetMinorID() == b.GetClientID().GetMinorID();
}

template <typename Record>
bool Same(const Record& a, const Record& b) {
  return a == b;
}

template <typename Record>
void RunRoundTrips(benchmark::State& state, const Record& record,
                   void (*roundTrip)(const Record&, Record&)) {
  Record back;
  for (auto _ : state) {
    roundTrip(record, back);
    benchmark::DoNotOptimize(back);
  }
  if (!Same(back, record)) state.SkipWithError("the record did not survive");
  LabelRoundTrip(state);
}

EDHCPStats MakeStats() {
  EDHCPStats stats;
  exchange::Fill(stats, 0);
  return stats;
}

// EDHCPStats's fields, for Boost.
struct BoostStats {
  unsigned int discoversSent = 123456;
  unsigned int offersReceived = 120000;
  unsigned int requestsSent = 119000;
  unsigned int enabledInterfaces = 4096;
  unsigned int addressesDiscovered = 118500;
  unsigned int ackReceived = 118000;
  unsigned int nakReceived = 17;
  unsigned int releasesSent = 3;

  template <typename Archive>
  void serialize(Archive& archive, unsigned int) {
    archive& discoversSent& offersReceived& requestsSent& enabledInterfaces& addressesDiscovered&
        ackReceived& nakReceived& releasesSent;
  }
  bool operator==(const BoostStats& other) const {
    return discoversSent == other.discoversSent && offersReceived == other.offersReceived &&
           requestsSent == other.requestsSent && enabledInterfaces == other.enabledInterfaces &&
           addressesDiscovered == other.addressesDiscovered && ackReceived == other.ackReceived &&
           nakReceived == other.nakReceived && releasesSent == other.releasesSent;
  }
};

constexpr unsigned int kPayloadSize = 1024;

std::string PayloadBytes() {
  std::string bytes(kPayloadSize, '\0');
  for (unsigned int i = 0; i < kPayloadSize; ++i)
    bytes[i] = static_cast<char>(i * 7);
  return bytes;
}

eHal::EMessage MakeMessage() {
  const std::string bytes = PayloadBytes();
  eHal::EClientID client;
  client.SetMajorID("bench-client");
  client.SetMinorID(3);
  eHal::EMessage message;
  message.SetMessage(static_cast<eHal::EMessage::eMessageType>(5),
                     EBlob(bytes.data(), kPayloadSize));
  message.SetClientID(client);
  message.SetMessagePortId(7);
  return message;
}

// eHal::EClientID's and eHal::EMessage's fields, for Boost; the payload is a string, which
// Boost's text archive writes as its length and raw bytes, as EArchive writes a blob.
struct BoostClient {
  std::string major = "bench-client";
  int minor = 3;

  template <typename Archive>
  void serialize(Archive& archive, unsigned int) {
    archive& major& minor;
  }
  bool operator==(const BoostClient& other) const {
    return major == other.major && minor == other.minor;
  }
};

struct BoostMessage {
  unsigned int portCount = 1;
  unsigned int portId = 7;
  unsigned int destination = 1;
  BoostClient client;
  unsigned int type = 5;
  std::string payload = PayloadBytes();

  template <typename Archive>
  void serialize(Archive& archive, unsigned int) {
    archive& portCount& portId& destination& client& type& payload;
  }
  bool operator==(const BoostMessage& other) const {
    return portCount == other.portCount && portId == other.portId &&
           destination == other.destination && client == other.client && type == other.type &&
           payload == other.payload;
  }
};

void BM_RoundTrip_DHCPStats_EArchive(benchmark::State& state) {
  RunRoundTrips(state, MakeStats(), RoundTrip<EDHCPStats>);
}

void BM_RoundTrip_DHCPStats_Boost(benchmark::State& state) {
  RunRoundTrips(state, BoostStats(), BoostRoundTrip<BoostStats>);
}

void BM_RoundTrip_EMessage_EArchive(benchmark::State& state) {
  RunRoundTrips(state, MakeMessage(), RoundTrip<eHal::EMessage>);
}

void BM_RoundTrip_EMessage_Boost(benchmark::State& state) {
  RunRoundTrips(state, BoostMessage(), BoostRoundTrip<BoostMessage>);
}

BENCHMARK(BM_Write_EArchive)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write_Boost)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_EArchive)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read_Boost)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RoundTrip_DHCPStats_EArchive);
BENCHMARK(BM_RoundTrip_DHCPStats_Boost);
BENCHMARK(BM_RoundTrip_EMessage_EArchive);
BENCHMARK(BM_RoundTrip_EMessage_Boost);

}  // namespace
