// The work of the exchange benchmark, shared with the test that counts its allocations: the
// values a client fills in, the port's answer, and the reused-archive round trip of a record that
// travels without an envelope.
#pragma once

#include <array>
#include <cstdint>
#include <numeric>
#include <vector>

#include "eArchive.h"
#include "eDHCPStats.h"
#include "ePRBS.h"
#include "exchange_endpoint.h"

namespace exchange {

inline constexpr auto kRequest = static_cast<eHal::EMessage::eMessageType>(1);
inline constexpr auto kReply = static_cast<eHal::EMessage::eMessageType>(2);
inline constexpr unsigned int kPort = 7;

// The eight counters as a client fills them, in the record's field order, varied by `seed`.
inline std::array<unsigned int, 8> Counters(unsigned int seed) {
  return {123456 + seed, 120000 + seed, 119000, 4096, 118500, 118000, 17, 3};
}

// The counters set as a client sets them.
inline void Fill(EDHCPStats& stats, unsigned int seed) {
  const std::array<unsigned int, 8> counters = Counters(seed);
  stats.SetDHCPDiscoversSent(counters[0]);
  stats.SetDHCPDiscoversOffersReceived(counters[1]);
  stats.SetDHCPRequestsSent(counters[2]);
  stats.SetDHCPEnabledInterfaces(counters[3]);
  stats.SetDHCPAddressesDiscovered(counters[4]);
  stats.SetDHCPACKReceived(counters[5]);
  stats.SetDHCPNAKReceived(counters[6]);
  stats.SetDHCPReleasesSent(counters[7]);
}

// What a reader does with the counters: reads all eight.
inline std::uint64_t Sum(const EDHCPStats& stats) {
  return std::uint64_t{stats.GetDHCPDiscoversSent()} + stats.GetDHCPDiscoversOffersReceived() +
         stats.GetDHCPRequestsSent() + stats.GetDHCPEnabledInterfaces() +
         stats.GetDHCPAddressesDiscovered() + stats.GetDHCPACKReceived() +
         stats.GetDHCPNAKReceived() + stats.GetDHCPReleasesSent();
}

// The sum Sum gives for the counters Fill sets.
inline std::uint64_t ExpectedSum(unsigned int seed) {
  const std::array<unsigned int, 8> counters = Counters(seed);
  return std::accumulate(counters.begin(), counters.end(), std::uint64_t{0});
}

// The client's identity.
inline eHal::EClientID Client() {
  eHal::EClientID client;
  client.SetMajorID("bench-client");
  client.SetMinorID(3);
  return client;
}

// A payload of `size` bytes as a client has it before it sends.
inline std::vector<unsigned char> PayloadSource(unsigned int size) {
  std::vector<unsigned char> bytes(size);
  for (unsigned int i = 0; i < size; ++i)
    bytes[i] = static_cast<unsigned char>(i * 7);
  return bytes;
}

// The typical request: start a capture, numbered by the client.
inline void FillRequest(eHal::EPRBS& request, unsigned int messageId) {
  request.SetRequestType(eHal::EPRBS::kPRBSStartCapture);
  request.SetClientMessageId(messageId);
}

// The port's answer to a request: the same record, from the replying side, with a return code.
inline void Answer(const eHal::EPRBS& request, eHal::EPRBS& reply) {
  reply.Copy(request);
  reply.SetDirection(false);
  reply.SetReturnCode(eHal::EPRBS::kSuccess);
}

// An EDHCPStats archived and read back with the same two archives and records every time.
class StatsLoop {
 public:
  std::uint64_t RoundTrip(unsigned int seed) {
    Fill(m_Sent, seed);
    m_Out.Empty();
    m_Out.SetMode(eModeStoring);
    m_Out << m_Sent;
    m_In.SetMode(eModeLoading);
    m_In.SetFromEBlob(m_Out.GetAsEBlob(), true);
    m_In >> m_Received;
    return Sum(m_Received);
  }

 private:
  EArchive m_Out;
  EArchive m_In;
  EDHCPStats m_Sent;
  EDHCPStats m_Received;
};

// The typical exchange with both sides reusing their endpoints and records: the client's request
// travels to the port, the port's reply back. Returns the reply's message id.
class PRBSLoop {
 public:
  unsigned int RoundTrip(unsigned int messageId) {
    FillRequest(m_Request, messageId);
    const EBlob& request = m_Client.Send(m_Request, kRequest, m_Identity, kPort);
    const eHal::EMessage& envelope = m_Port.Receive(request, m_Received);
    Answer(m_Received, m_Reply);
    const EBlob& reply =
        m_Port.Send(m_Reply, kReply, envelope.GetClientID(), envelope.GetMessagePortId());
    m_Client.Receive(reply, m_Answer);
    return m_Answer.GetReturnCode() == eHal::EPRBS::kSuccess ? m_Answer.GetClientMessageId() : 0;
  }

 private:
  const eHal::EClientID m_Identity = Client();
  Endpoint m_Client;
  Endpoint m_Port;
  eHal::EPRBS m_Request{true};
  eHal::EPRBS m_Received{false};
  eHal::EPRBS m_Reply{false};
  eHal::EPRBS m_Answer{true};
};

// An envelope with a payload of raw bytes sent and received by reused endpoints. Returns the
// received payload's size.
class MessageLoop {
 public:
  explicit MessageLoop(unsigned int payloadSize)
      : m_Source(PayloadSource(payloadSize)), m_Payload(m_Source.data(), payloadSize) {}

  unsigned int RoundTrip() {
    const EBlob& wire = m_Sender.SendBytes(m_Payload, kRequest, m_Identity, kPort);
    const eHal::EMessage& received = m_Receiver.ReceiveEnvelope(wire);
    return received.GetMessageBytes().GetSize();
  }

 private:
  const eHal::EClientID m_Identity = Client();
  std::vector<unsigned char> m_Source;
  EBlob m_Payload;
  Endpoint m_Sender;
  Endpoint m_Receiver;
};

}  // namespace exchange
