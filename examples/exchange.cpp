// One PRBS capture conversation between a client and a test port's HAL. The client fills a
// request record, archives it, puts the bytes as payload into an eHal::EMessage with its client
// id and the port id, and archives the envelope: those bytes are what a transport carries. The
// port loads them, reads the envelope and then the record, checks it, fills in the reply and
// answers by the same road; the client decodes the reply.
#include <cctype>
#include <cstdio>
#include <stdexcept>
#include <string>

#include "ehal.h"

namespace {

using eHal::EClientID;
using eHal::EMessage;
using eHal::EPacket;
using eHal::EPRBS;

// Envelope message types of this conversation; the receiver picks the record class from them.
constexpr auto kPRBSRequest = static_cast<EMessage::eMessageType>(1);
constexpr auto kPRBSReply = static_cast<EMessage::eMessageType>(2);

// The record's sides: the client builds requests, the port builds replies.
constexpr bool kRequestingSide = true;
constexpr bool kReplyingSide = false;

// ---- The road: generic steps that any record takes. ----

// Archives a value into a fresh storing archive and returns the bytes.
template <typename T>
EBlob ArchiveBytes(const T& value) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  archive << value;
  return archive.GetAsEBlob();
}

// Reads a value from received bytes, as a receiver loads them.
template <typename T>
void ReadBytes(const EBlob& bytes, T& value) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(bytes, true);
  archive >> value;
}

// The wire bytes as a hex dump, and as text (numbers travel as decimal text), with anything
// unprintable shown as '.'.
void PrintWire(const EBlob& wire) {
  std::string text(wire.GetSize(), '.');
  for (unsigned int i = 0; i < wire.GetSize(); ++i) {
    if (std::isprint(wire.GetData()[i])) text[i] = static_cast<char>(wire.GetData()[i]);
  }
  std::printf("  wire       %u bytes\n%s\n  as text    %s\n", wire.GetSize(),
              wire.GetHexDumpOfPacket().c_str(), text.c_str());
}

void PrintEnvelope(const EMessage& message) {
  const EClientID& client = message.GetClientID();
  std::printf("  envelope   type %u, client \"%s\"/%d, port %u, payload %u bytes\n",
              static_cast<unsigned int>(message.GetMessageType()), client.GetMajorID().c_str(),
              client.GetMinorID(), message.GetPortID(), message.GetMessage().GetSize());
}

// Archives the record, wraps it in an envelope addressed by client and port, archives that.
EBlob Send(const EPRBS& record, EMessage::eMessageType type, const EClientID& client,
           unsigned int port) {
  std::printf("  record     %s\n", record.ToString().c_str());
  EMessage message;
  message.SetMessage(type, ArchiveBytes(record));
  message.SetClientID(client);
  message.SetMessagePortId(port);
  const EBlob wire = ArchiveBytes(message);
  PrintWire(wire);
  return wire;
}

// Reads the envelope from received bytes, then the record from its payload.
void Receive(const EBlob& wire, EMessage& message, EPRBS& record) {
  ReadBytes(wire, message);
  PrintEnvelope(message);
  ReadBytes(message.GetMessage(), record);
  std::printf("  record     %s\n", record.ToString().c_str());
}

// ---- The port's side. ----

// What the port does with a request: checks it and fills in the reply fields.
EPRBS Serve(const EPRBS& request) {
  EPRBS reply(kReplyingSide);
  reply.Copy(request);
  reply.SetDirection(kReplyingSide);
  try {
    request.IsValid(true);
  } catch (const std::runtime_error& error) {
    std::printf("  refused    %s\n", error.what());
    reply.SetReturnCode(EPRBS::kInvalidArgs);
    return reply;
  }
  reply.SetReturnCode(EPRBS::kSuccess);
  if (request.GetRequestType() == EPRBS::kPRBSGetCountPacketsFromStart) {
    // Hands back the captured packets the client asked for.
    std::vector<EPacket> packets;
    for (unsigned int i = 0; i < request.GetPacketCount(); ++i) {
      EPacket packet;
      packet.SetPacketTimestamp(1000000UL + request.GetStart() + i);
      const unsigned char bytes[] = {0xAA, 0x55, static_cast<unsigned char>(i)};
      packet.SetPacketData(EBlob(bytes, sizeof bytes));
      packets.push_back(packet);
    }
    reply.SetPackets(packets);
  }
  return reply;
}

// One request and its reply; returns the reply as the client decoded it.
EPRBS Converse(const EPRBS& request, const EClientID& client, unsigned int port) {
  std::printf("client sends request #%u\n", EMessage::GetNextSequenceNumber());
  const EBlob requestWire = Send(request, kPRBSRequest, client, port);

  std::printf("port reads the request\n");
  EMessage received;
  EPRBS receivedRequest(kReplyingSide);
  Receive(requestWire, received, receivedRequest);
  std::printf("port answers\n");
  const EBlob replyWire =
      Send(Serve(receivedRequest), kPRBSReply, received.GetClientID(), received.GetPortID());

  std::printf("client reads the reply\n");
  EMessage replyEnvelope;
  EPRBS reply(kRequestingSide);
  Receive(replyWire, replyEnvelope, reply);
  std::printf("\n");
  return reply;
}

}  // namespace

int main() {
  EClientID client;
  client.SetMajorID("example-client");
  client.SetMinorID(1);
  const unsigned int port = 7;

  EPRBS start(kRequestingSide);
  start.SetRequestType(EPRBS::kPRBSStartCapture);
  start.SetClientMessageId(1);
  const EPRBS started = Converse(start, client, port);

  EPRBS fetch(kRequestingSide);
  fetch.SetRequestType(EPRBS::kPRBSGetCountPacketsFromStart);
  fetch.SetClientMessageId(2);
  fetch.SetStart(0);
  fetch.SetPacketCount(2);
  const EPRBS fetched = Converse(fetch, client, port);
  std::printf("full reply: %s\n", fetched.ToStringFull().c_str());

  const bool ok = started.GetReturnCode() == EPRBS::kSuccess &&
                  started.GetRequestType() == EPRBS::kPRBSStartCapture &&
                  fetched.GetReturnCode() == EPRBS::kSuccess && fetched.GetPackets().size() == 2;
  std::printf("%s\n", ok ? "exchange ok" : "exchange FAILED");
  return ok ? 0 : 1;
}
