// The pieces of a PRBS capture conversation between a client and a test port's HAL, shared by
// the examples: the client fills a request record, archives it, puts the bytes as payload into an
// eHal::EMessage with its client id and the port id, and archives the envelope; those bytes are
// what a transport carries. The port reads the envelope, then the record, checks it and answers
// by the same road.
#pragma once

#include <cctype>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "ehal.h"
#include "exchange_endpoint.h"

namespace conversation {

using eHal::EClientID;
using eHal::EMessage;
using eHal::EPacket;
using eHal::EPRBS;

// Envelope message types of this conversation; the receiver picks the record class from them.
inline constexpr auto kPRBSRequest = static_cast<EMessage::eMessageType>(1);
inline constexpr auto kPRBSReply = static_cast<EMessage::eMessageType>(2);

// The record's sides: the client builds requests, the port builds replies.
inline constexpr bool kRequestingSide = true;
inline constexpr bool kReplyingSide = false;

// Archives a value into a fresh storing archive and takes the bytes (without a copy).
template <typename T>
EBlob ArchiveBytes(const T& value) {
  return exchange::Archived(value);
}

// Reads a value from received bytes, as a receiver loads them (a copy: the bytes stay the
// caller's).
template <typename T>
void ReadBytes(const EBlob& bytes, T& value) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(bytes, true);
  archive >> value;
}

// The wire bytes as a hex dump, and as text (numbers travel as decimal text), with anything
// unprintable shown as '.'.
inline void PrintWire(const EBlob& wire) {
  std::string text(wire.GetSize(), '.');
  for (unsigned int i = 0; i < wire.GetSize(); ++i) {
    if (std::isprint(wire.GetData()[i])) text[i] = static_cast<char>(wire.GetData()[i]);
  }
  std::printf("  wire       %u bytes\n%s\n  as text    %s\n", wire.GetSize(),
              wire.GetHexDumpOfPacket().c_str(), text.c_str());
}

inline void PrintEnvelope(const EMessage& message) {
  const EClientID& client = message.GetClientID();
  std::printf("  envelope   type %u, client \"%s\"/%d, port %u, payload %u bytes\n",
              static_cast<unsigned int>(message.GetMessageType()), client.GetMajorID().c_str(),
              client.GetMinorID(), message.GetPortID(), message.GetMessage().GetSize());
}

inline void PrintRecord(const EPRBS& record) {
  std::printf("  record     %s\n", record.ToString().c_str());
}

// Archives the record, wraps it in an envelope addressed by client and port, archives that.
inline EBlob Send(const EPRBS& record, EMessage::eMessageType type, const EClientID& client,
                  unsigned int port) {
  PrintRecord(record);
  EMessage message;
  message.SetMessage(type, ArchiveBytes(record));
  message.SetClientID(client);
  message.SetMessagePortId(port);
  EBlob wire = ArchiveBytes(message);
  PrintWire(wire);
  return wire;
}

// Reads the envelope from received bytes, then the record from its payload.
inline void Receive(const EBlob& wire, EMessage& message, EPRBS& record) {
  ReadBytes(wire, message);
  PrintEnvelope(message);
  ReadBytes(message.GetMessageBytes(), record);
  PrintRecord(record);
}

// What the port does with a request: checks it and fills in the reply fields.
inline EPRBS Serve(const EPRBS& request) {
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

// The client's identity and the port it talks to.
inline EClientID Client() {
  EClientID client;
  client.SetMajorID("example-client");
  client.SetMinorID(1);
  return client;
}
inline constexpr unsigned int kPort = 7;

// The client's requests: start a capture, then fetch the first two packets.
inline std::vector<EPRBS> Requests() {
  EPRBS start(kRequestingSide);
  start.SetRequestType(EPRBS::kPRBSStartCapture);
  start.SetClientMessageId(1);
  EPRBS fetch(kRequestingSide);
  fetch.SetRequestType(EPRBS::kPRBSGetCountPacketsFromStart);
  fetch.SetClientMessageId(2);
  fetch.SetStart(0);
  fetch.SetPacketCount(2);
  return {start, fetch};
}

// True when the replies are those the requests ask for.
inline bool RepliesOk(const std::vector<EPRBS>& replies) {
  return replies.size() == 2 && replies[0].GetReturnCode() == EPRBS::kSuccess &&
         replies[0].GetRequestType() == EPRBS::kPRBSStartCapture &&
         replies[1].GetReturnCode() == EPRBS::kSuccess && replies[1].GetPackets().size() == 2;
}

}  // namespace conversation
