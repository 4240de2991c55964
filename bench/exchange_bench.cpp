// ehal beside protocol buffers and Boost's text archives on the same work, each checking what it
// reads back: (a) an EDHCPStats round trip, (b) the typical exchange (an eHal::EPRBS request in an
// eHal::EMessage to the port and its reply back), (c) an eHal::EMessage with a 1 KiB and a 64 KiB
// payload, all with fresh objects filled each time as a client writes them, and (d) the same
// three with archives, records and strings reused from one round trip to the next, as a server
// loop does. After the runs a table gives ns per round trip, the ratio protobuf/ehal (above 1:
// ehal is faster) and the heap allocations per round trip.
#include <benchmark/benchmark.h>

#include <boost/archive/text_iarchive.hpp>
#include <boost/archive/text_oarchive.hpp>
#include <boost/serialization/string.hpp>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "allocation_counter.h"
#include "exchange.pb.h"
#include "exchange_workload.h"

namespace {

using eHal::EClientID;
using eHal::EMessage;
using eHal::EPRBS;
using exchange::Archived;
using exchange::kPort;
using exchange::kReply;
using exchange::kRequest;
using exchange::Read;

constexpr unsigned int kSmallPayload = 1024;
constexpr unsigned int kLargePayload = 64 * 1024;

// One round trip; false when it read back other values than it sent.
using RoundTrip = std::function<bool()>;

// Runs the round trip once outside the measurement (so that reused objects have grown to their
// steady state), then per iteration, counting the heap allocations made inside the loop.
void Measure(benchmark::State& state, const RoundTrip& roundTrip) {
  bool ok = roundTrip();
  const std::uint64_t before = allocation_counter::Count();
  for (auto _ : state) {
    if (!roundTrip()) ok = false;
  }
  const std::uint64_t allocations = allocation_counter::Count() - before;
  if (!ok) state.SkipWithError("a round trip read back other values");
  state.counters["allocs"] =
      static_cast<double>(allocations) / static_cast<double>(state.iterations());
}

// --- ehal, fresh objects: a user's code as the README shows it -------------------------------

// The record archived, wrapped in an envelope, and the envelope archived.
EBlob Wrapped(const EPRBS& record, EMessage::eMessageType type, const EClientID& client,
              unsigned int port) {
  EMessage message;
  message.SetMessage(type, Archived(record));
  message.SetClientID(client);
  message.SetMessagePortId(port);
  return Archived(message);
}

// The envelope read from received bytes, then the record from its payload.
void Unwrap(EBlob&& wire, EMessage& message, EPRBS& record) {
  Read(std::move(wire), message);
  Read(message.TakeMessage(), record);
}

bool EhalStats(unsigned int seed) {
  EDHCPStats stats;
  exchange::Fill(stats, seed);
  EDHCPStats back;
  Read(Archived(stats), back);
  return exchange::Sum(back) == exchange::ExpectedSum(seed);
}

bool EhalExchange(unsigned int messageId) {
  EPRBS request(true);
  exchange::FillRequest(request, messageId);
  EBlob wire = Wrapped(request, kRequest, exchange::Client(), kPort);
  // The port.
  EMessage received;
  EPRBS got(false);
  Unwrap(std::move(wire), received, got);
  EPRBS reply(false);
  exchange::Answer(got, reply);
  EBlob back = Wrapped(reply, kReply, received.GetClientID(), received.GetMessagePortId());
  // The client.
  EMessage envelope;
  EPRBS answer(true);
  Unwrap(std::move(back), envelope, answer);
  return answer.GetClientMessageId() == messageId && answer.GetReturnCode() == EPRBS::kSuccess;
}

// The sender's envelope is gone once its bytes are taken, as in a client that sends and moves on;
// the protocol buffers and Boost versions do the same.
bool EhalMessage(const std::vector<unsigned char>& source) {
  EBlob wire;
  {
    EMessage message;
    message.SetMessage(kRequest, EBlob(source.data(), static_cast<unsigned int>(source.size())));
    message.SetClientID(exchange::Client());
    message.SetMessagePortId(kPort);
    wire = Archived(message);
  }
  EMessage back;
  Read(std::move(wire), back);
  const EBlob& payload = back.GetMessageBytes();
  return payload.GetSize() == source.size() &&
         payload.GetData()[source.size() - 1] == source.back() && back.GetMessagePortId() == kPort;
}

// --- protocol buffers ---------------------------------------------------------------------------

using exchange_bench::DhcpStats;
using exchange_bench::Envelope;
using exchange_bench::Prbs;

void FillProto(DhcpStats& stats, unsigned int seed) {
  const std::array<unsigned int, 8> counters = exchange::Counters(seed);
  stats.set_discovers_sent(counters[0]);
  stats.set_discovers_offers_received(counters[1]);
  stats.set_requests_sent(counters[2]);
  stats.set_enabled_interfaces(counters[3]);
  stats.set_addresses_discovered(counters[4]);
  stats.set_ack_received(counters[5]);
  stats.set_nak_received(counters[6]);
  stats.set_releases_sent(counters[7]);
}

std::uint64_t SumProto(const DhcpStats& stats) {
  return std::uint64_t{stats.discovers_sent()} + stats.discovers_offers_received() +
         stats.requests_sent() + stats.enabled_interfaces() + stats.addresses_discovered() +
         stats.ack_received() + stats.nak_received() + stats.releases_sent();
}

// The envelope's fields as eHal::EMessage fills them.
void Address(Envelope& envelope, unsigned int type, const std::string& major, int minor,
             unsigned int port) {
  envelope.set_port_count(1);
  envelope.set_destination(1);
  envelope.set_message_type(type);
  envelope.mutable_client()->set_major_id(major);
  envelope.mutable_client()->set_minor_id(minor);
  envelope.set_port_id(port);
}

void FillRequestProto(Prbs& request, unsigned int messageId) {
  request.set_request_type(EPRBS::kPRBSStartCapture);
  request.set_client_message_id(messageId);
}

void AnswerProto(const Prbs& request, Prbs& reply) {
  reply = request;
  reply.set_return_code(EPRBS::kSuccess);
}

bool ProtoStats(unsigned int seed) {
  DhcpStats stats;
  FillProto(stats, seed);
  const std::string wire = stats.SerializeAsString();
  DhcpStats back;
  return back.ParseFromString(wire) && SumProto(back) == exchange::ExpectedSum(seed);
}

std::string WrappedProto(const Prbs& record, unsigned int type, const std::string& major, int minor,
                         unsigned int port) {
  Envelope envelope;
  Address(envelope, type, major, minor, port);
  record.SerializeToString(envelope.mutable_message());
  return envelope.SerializeAsString();
}

bool UnwrapProto(const std::string& wire, Envelope& envelope, Prbs& record) {
  return envelope.ParseFromString(wire) && record.ParseFromString(envelope.message());
}

bool ProtoExchange(unsigned int messageId) {
  Prbs request;
  FillRequestProto(request, messageId);
  const std::string wire = WrappedProto(request, kRequest, "bench-client", 3, kPort);
  Envelope received;
  Prbs got;
  if (!UnwrapProto(wire, received, got)) return false;
  Prbs reply;
  AnswerProto(got, reply);
  const std::string back = WrappedProto(reply, kReply, received.client().major_id(),
                                        received.client().minor_id(), received.port_id());
  Envelope envelope;
  Prbs answer;
  return UnwrapProto(back, envelope, answer) && answer.client_message_id() == messageId &&
         answer.return_code() == EPRBS::kSuccess;
}

bool ProtoMessage(const std::vector<unsigned char>& source) {
  std::string wire;
  {
    Envelope message;
    Address(message, kRequest, "bench-client", 3, kPort);
    message.set_message(source.data(), source.size());
    wire = message.SerializeAsString();
  }
  Envelope back;
  return back.ParseFromString(wire) && back.message().size() == source.size() &&
         static_cast<unsigned char>(back.message().back()) == source.back() &&
         back.port_id() == kPort;
}

// Reused messages and strings: Clear and Parse keep what the fields have allocated.
class ProtoStatsLoop {
 public:
  bool RoundTrip(unsigned int seed) {
    FillProto(m_Sent, seed);
    m_Sent.SerializeToString(&m_Wire);
    return m_Received.ParseFromString(m_Wire) &&
           SumProto(m_Received) == exchange::ExpectedSum(seed);
  }

 private:
  DhcpStats m_Sent;
  DhcpStats m_Received;
  std::string m_Wire;
};

// One side of the exchange with its envelopes and strings kept.
class ProtoEndpoint {
 public:
  const std::string& Send(const Prbs& record, unsigned int type, const std::string& major,
                          int minor, unsigned int port) {
    Address(m_Sent, type, major, minor, port);
    record.SerializeToString(m_Sent.mutable_message());
    m_Sent.SerializeToString(&m_Wire);
    return m_Wire;
  }
  const Envelope& Receive(const std::string& wire, Prbs& record) {
    m_Ok = UnwrapProto(wire, m_Received, record);
    return m_Received;
  }
  bool Ok() const { return m_Ok; }

 private:
  Envelope m_Sent;
  Envelope m_Received;
  std::string m_Wire;
  bool m_Ok = false;
};

class ProtoExchangeLoop {
 public:
  bool RoundTrip(unsigned int messageId) {
    FillRequestProto(m_Request, messageId);
    const std::string& wire = m_Client.Send(m_Request, kRequest, "bench-client", 3, kPort);
    const Envelope& envelope = m_Port.Receive(wire, m_Received);
    AnswerProto(m_Received, m_Reply);
    const std::string& back = m_Port.Send(m_Reply, kReply, envelope.client().major_id(),
                                          envelope.client().minor_id(), envelope.port_id());
    m_Client.Receive(back, m_Answer);
    return m_Port.Ok() && m_Client.Ok() && m_Answer.client_message_id() == messageId &&
           m_Answer.return_code() == EPRBS::kSuccess;
  }

 private:
  ProtoEndpoint m_Client;
  ProtoEndpoint m_Port;
  Prbs m_Request;
  Prbs m_Received;
  Prbs m_Reply;
  Prbs m_Answer;
};

class ProtoMessageLoop {
 public:
  explicit ProtoMessageLoop(unsigned int payloadSize)
      : m_Source(exchange::PayloadSource(payloadSize)) {}

  bool RoundTrip() {
    Address(m_Sent, kRequest, "bench-client", 3, kPort);
    m_Sent.set_message(m_Source.data(), m_Source.size());
    m_Sent.SerializeToString(&m_Wire);
    return m_Received.ParseFromString(m_Wire) && m_Received.message().size() == m_Source.size();
  }

 private:
  std::vector<unsigned char> m_Source;
  Envelope m_Sent;
  Envelope m_Received;
  std::string m_Wire;
};

// --- Boost text archives: structs with the same fields ------------------------------------------

struct BoostStats {
  unsigned int values[8] = {};

  template <typename Archive>
  void serialize(Archive& archive, unsigned int) {
    for (unsigned int& value : values)
      archive& value;
  }
};

struct BoostPRBS {
  unsigned int clientMessageId = 0, extraId = 0, requestType = 0, returnCode = 0;
  unsigned int bufferSize = 0, packetCount = 0, start = 0;

  template <typename Archive>
  void serialize(Archive& archive, unsigned int) {
    archive& clientMessageId& extraId& requestType& returnCode& bufferSize& packetCount& start;
  }
};

struct BoostEnvelope {
  unsigned int portCount = 1, portId = 0, destination = 1;
  std::string major;
  int minor = 0;
  unsigned int type = 0;
  std::string message;

  template <typename Archive>
  void serialize(Archive& archive, unsigned int) {
    archive& portCount& portId& destination& major& minor& type& message;
  }
};

template <typename Value>
std::string BoostArchived(const Value& value) {
  std::ostringstream stream;
  {
    boost::archive::text_oarchive archive(stream);
    archive << value;
  }
  return stream.str();
}

template <typename Value>
void BoostRead(const std::string& text, Value& value) {
  std::istringstream stream(text);
  boost::archive::text_iarchive archive(stream);
  archive >> value;
}

bool BoostStatsRoundTrip(unsigned int seed) {
  BoostStats stats;
  const std::array<unsigned int, 8> counters = exchange::Counters(seed);
  std::copy(counters.begin(), counters.end(), stats.values);
  BoostStats back;
  BoostRead(BoostArchived(stats), back);
  std::uint64_t sum = 0;
  for (const unsigned int value : back.values)
    sum += value;
  return sum == exchange::ExpectedSum(seed);
}

std::string BoostWrapped(const BoostPRBS& record, unsigned int type, const std::string& major,
                         int minor, unsigned int port) {
  BoostEnvelope envelope;
  envelope.type = type;
  envelope.major = major;
  envelope.minor = minor;
  envelope.portId = port;
  envelope.message = BoostArchived(record);
  return BoostArchived(envelope);
}

void BoostUnwrap(const std::string& wire, BoostEnvelope& envelope, BoostPRBS& record) {
  BoostRead(wire, envelope);
  BoostRead(envelope.message, record);
}

bool BoostExchange(unsigned int messageId) {
  BoostPRBS request;
  request.requestType = EPRBS::kPRBSStartCapture;
  request.clientMessageId = messageId;
  const std::string wire = BoostWrapped(request, kRequest, "bench-client", 3, kPort);
  BoostEnvelope received;
  BoostPRBS got;
  BoostUnwrap(wire, received, got);
  BoostPRBS reply = got;
  reply.returnCode = EPRBS::kSuccess;
  const std::string back =
      BoostWrapped(reply, kReply, received.major, received.minor, received.portId);
  BoostEnvelope envelope;
  BoostPRBS answer;
  BoostUnwrap(back, envelope, answer);
  return answer.clientMessageId == messageId && answer.returnCode == EPRBS::kSuccess;
}

bool BoostMessage(const std::vector<unsigned char>& source) {
  std::string wire;
  {
    BoostEnvelope message;
    message.type = kRequest;
    message.major = "bench-client";
    message.minor = 3;
    message.portId = kPort;
    message.message.assign(source.begin(), source.end());
    wire = BoostArchived(message);
  }
  BoostEnvelope back;
  BoostRead(wire, back);
  return back.message.size() == source.size() && back.portId == kPort;
}

// --- the cases and the summary ------------------------------------------------------------------

// The three implementations of one case; Boost's is absent where its archives cannot be reused
// (each writes its own header).
struct Case {
  std::string name;
  std::function<RoundTrip()> ehal;
  std::function<RoundTrip()> protobuf;
  std::function<RoundTrip()> boost;
};

// A round trip whose argument counts up, so that every iteration sends other values.
template <typename Function>
std::function<RoundTrip()> Counting(Function function) {
  return [function] { return RoundTrip([function, n = 0u]() mutable { return function(++n); }); };
}

template <typename Loop, typename... Arguments>
std::function<RoundTrip()> Looping(Arguments... arguments) {
  return [arguments...] {
    auto loop = std::make_shared<Loop>(arguments...);
    return RoundTrip([loop, n = 0u]() mutable { return loop->RoundTrip(++n); });
  };
}

std::function<RoundTrip()> WithPayload(bool (*function)(const std::vector<unsigned char>&),
                                       unsigned int size) {
  return [function, size] {
    return RoundTrip(
        [function, source = exchange::PayloadSource(size)] { return function(source); });
  };
}

// The reused envelope loops take no argument; their checks are in the loops.
template <typename Loop>
std::function<RoundTrip()> PayloadLoop(unsigned int size) {
  return [size] {
    auto loop = std::make_shared<Loop>(size);
    return RoundTrip([loop, size] {
      if constexpr (std::is_same_v<decltype(loop->RoundTrip()), bool>) {
        return loop->RoundTrip();
      } else {
        return loop->RoundTrip() == size;
      }
    });
  };
}

std::vector<Case> Cases() {
  return {
      {"a. EDHCPStats, fresh", Counting(EhalStats), Counting(ProtoStats),
       Counting(BoostStatsRoundTrip)},
      {"b. EPRBS in EMessage, request and reply, fresh", Counting(EhalExchange),
       Counting(ProtoExchange), Counting(BoostExchange)},
      {"c. EMessage, 1 KiB payload, fresh", WithPayload(EhalMessage, kSmallPayload),
       WithPayload(ProtoMessage, kSmallPayload), WithPayload(BoostMessage, kSmallPayload)},
      {"c. EMessage, 64 KiB payload, fresh", WithPayload(EhalMessage, kLargePayload),
       WithPayload(ProtoMessage, kLargePayload), WithPayload(BoostMessage, kLargePayload)},
      {"d. EDHCPStats, reused", Looping<exchange::StatsLoop>(), Looping<ProtoStatsLoop>(), nullptr},
      {"d. EPRBS in EMessage, request and reply, reused", Looping<exchange::PRBSLoop>(),
       Looping<ProtoExchangeLoop>(), nullptr},
      {"d. EMessage, 1 KiB payload, reused", PayloadLoop<exchange::MessageLoop>(kSmallPayload),
       PayloadLoop<ProtoMessageLoop>(kSmallPayload), nullptr},
      {"d. EMessage, 64 KiB payload, reused", PayloadLoop<exchange::MessageLoop>(kLargePayload),
       PayloadLoop<ProtoMessageLoop>(kLargePayload), nullptr},
  };
}

// Prints the runs as the console reporter does, then one table row per case.
class SummaryReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      // With repetitions, the median (reported after the repetitions) replaces them.
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
      Result& result = m_Results[run.run_name.str()];
      result.ns = run.GetAdjustedRealTime();
      const auto allocations = run.counters.find("allocs");
      if (allocations != run.counters.end()) result.allocations = allocations->second.value;
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf(
        "\n| case | ehal ns | protobuf ns | Boost ns | protobuf/ehal | allocations: ehal, "
        "protobuf, Boost |\n| --- | ---: | ---: | ---: | ---: | --- |\n");
    for (const Case& each : Cases()) {
      const Result ehal = Find(each.name, "ehal");
      const Result protobuf = Find(each.name, "protobuf");
      const Result boost = Find(each.name, "Boost");
      std::printf("| %s | %s | %s | %s | %.2f | %s, %s, %s |\n", each.name.c_str(),
                  Number(ehal.ns).c_str(), Number(protobuf.ns).c_str(), Number(boost.ns).c_str(),
                  ehal.ns > 0 ? protobuf.ns / ehal.ns : 0.0, Count(ehal).c_str(),
                  Count(protobuf).c_str(), Count(boost).c_str());
    }
  }

 private:
  struct Result {
    double ns = -1;
    double allocations = -1;
  };

  Result Find(const std::string& name, const char* implementation) const {
    const auto found = m_Results.find(name + "/" + implementation);
    return found == m_Results.end() ? Result{} : found->second;
  }
  static std::string Number(double value) {
    if (value < 0) return "-";
    char text[32];
    std::snprintf(text, sizeof text, value < 100 ? "%.1f" : "%.0f", value);
    return text;
  }
  static std::string Count(const Result& result) {
    if (result.allocations < 0) return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", result.allocations);
    return text;
  }

  std::map<std::string, Result> m_Results;
};

void Register(const std::string& name, const std::function<RoundTrip()>& make) {
  if (!make) return;
  benchmark::RegisterBenchmark(name.c_str(), [make](benchmark::State& state) {
    Measure(state, make());
  })->Unit(benchmark::kNanosecond);
}

}  // namespace

int main(int argc, char** argv) {
  GOOGLE_PROTOBUF_VERIFY_VERSION;
  for (const Case& each : Cases()) {
    Register(each.name + "/ehal", each.ehal);
    Register(each.name + "/protobuf", each.protobuf);
    Register(each.name + "/Boost", each.boost);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  SummaryReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  google::protobuf::ShutdownProtobufLibrary();
  return 0;
}
