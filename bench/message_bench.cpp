// Envelope round trip: a 1 KiB payload is put into an eHal::EMessage, the envelope is archived,
// the bytes are loaded into a second archive and the envelope is read back. The literal reference
// writes the same fields with snprintf into a stack buffer, appends the payload bytes, and parses
// them back with strtoul and memcpy, reusing its buffers as the envelope path reuses its archives.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "eArchive.h"
#include "eMessage.h"

namespace {

constexpr unsigned int kPayloadSize = 1024;

EBlob MakePayload() {
  std::vector<unsigned char> bytes(kPayloadSize);
  for (unsigned int i = 0; i < kPayloadSize; ++i)
    bytes[i] = static_cast<unsigned char>(i * 7);
  return EBlob(bytes.data(), kPayloadSize);
}

eHal::EClientID MakeClient() {
  eHal::EClientID client;
  client.SetMajorID("bench-client");
  client.SetMinorID(3);
  return client;
}

void Label(benchmark::State& state) {
  state.counters["ns_per_round_trip"] =
      benchmark::Counter(static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kPayloadSize);
}

void BM_RoundTrip_EMessage(benchmark::State& state) {
  const EBlob payload = MakePayload();
  const eHal::EClientID client = MakeClient();
  EArchive out;
  EArchive in;
  eHal::EMessage message;
  eHal::EMessage back;
  for (auto _ : state) {
    message.SetMessage(static_cast<eHal::EMessage::eMessageType>(5), payload);
    message.SetClientID(client);
    message.SetMessagePortId(7);
    out.Empty();
    out.SetMode(eModeStoring);
    out << message;
    in.SetMode(eModeLoading);
    in.SetFromEBlob(out.GetAsEBlob(), true);
    in >> back;
    benchmark::DoNotOptimize(back.GetMessagePortId());
  }
  if (back.GetMessage() != payload) state.SkipWithError("payload did not survive");
  Label(state);
}

// The literal reference: the same numbers and texts in the same order, without records.
struct LiteralEnvelope {
  unsigned int portCount = 1;
  unsigned int portId = 0;
  unsigned int destination = 1;
  std::string major;
  int minor = 0;
  unsigned int type = 0;
  std::vector<unsigned char> payload;
};

std::size_t WriteLiteral(const LiteralEnvelope& e, std::vector<char>& buffer) {
  buffer.resize(128 + e.major.size() + e.payload.size());
  char* text = buffer.data();
  int length = std::snprintf(text, 128, "3 %u %u %u 1167589410 %zu ", e.portCount, e.portId,
                             e.destination & 0xFFu, e.major.size());
  std::memcpy(text + length, e.major.data(), e.major.size());
  length += static_cast<int>(e.major.size());
  length +=
      std::snprintf(text + length, 64, "%d %u 287454021 %zu ", e.minor, e.type, e.payload.size());
  std::memcpy(text + length, e.payload.data(), e.payload.size());
  return static_cast<std::size_t>(length) + e.payload.size();
}

void ReadLiteral(const char* text, LiteralEnvelope& e) {
  char* next = nullptr;
  std::strtoul(text, &next, 10);  // version
  e.portCount = static_cast<unsigned int>(std::strtoul(next, &next, 10));
  e.portId = static_cast<unsigned int>(std::strtoul(next, &next, 10));
  e.destination = static_cast<unsigned int>(std::strtoul(next, &next, 10));
  std::strtoul(next, &next, 10);  // client signature
  const std::size_t majorLength = std::strtoul(next, &next, 10);
  ++next;
  e.major.assign(next, majorLength);
  next += majorLength;
  e.minor = static_cast<int>(std::strtol(next, &next, 10));
  e.type = static_cast<unsigned int>(std::strtoul(next, &next, 10));
  std::strtoul(next, &next, 10);  // payload signature
  const std::size_t payloadLength = std::strtoul(next, &next, 10);
  ++next;
  e.payload.assign(next, next + payloadLength);
}

void BM_RoundTrip_Literal(benchmark::State& state) {
  const EBlob payload = MakePayload();
  LiteralEnvelope message;
  message.major = "bench-client";
  message.minor = 3;
  message.portId = 7;
  message.type = 5;
  LiteralEnvelope back;
  std::vector<char> buffer;
  std::vector<char> received;
  for (auto _ : state) {
    message.payload.assign(payload.GetData(), payload.GetData() + payload.GetSize());
    const std::size_t length = WriteLiteral(message, buffer);
    received.assign(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(length));
    received.push_back('\0');
    ReadLiteral(received.data(), back);
    benchmark::DoNotOptimize(back.portId);
  }
  if (back.payload != message.payload) state.SkipWithError("payload did not survive");
  Label(state);
}

BENCHMARK(BM_RoundTrip_Literal);
BENCHMARK(BM_RoundTrip_EMessage);

}  // namespace
