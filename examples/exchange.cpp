// One request and its reply, as a client and a port's HAL exchange them. The client archives a
// record, puts the bytes as payload into an eHal::EMessage with a message type, its client id and
// the port id, and archives the envelope; those bytes are what a transport would carry. The
// receiver loads them, reads the envelope, then the record from the payload, and answers by the
// same road.
#include <cctype>
#include <cstdio>
#include <string>

#include "ehal.h"

namespace {

using eHal::EClientID;
using eHal::EMessage;

// ---- The record carried in the payload: everything that depends on its class is here. ----

using Record = EStringList;

constexpr EMessage::eMessageType kRequestType = static_cast<EMessage::eMessageType>(1);
constexpr EMessage::eMessageType kReplyType = static_cast<EMessage::eMessageType>(2);

Record MakeRequest() {
  Record names;
  names.Add("alpha");
  names.Add("beta");
  return names;
}

// What the receiver does with a request: it answers with the names in upper case.
Record Answer(const Record& request) {
  Record reply;
  EStringList::Position position = request.GetHeadPosition();
  while (const char* name = request.GetNext(position)) {
    std::string upper = name;
    for (char& c : upper)
      c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    reply.Add(upper);
  }
  return reply;
}

void PrintRecord(const Record& names) {
  std::printf("  record     %u names:", names.GetCount());
  EStringList::Position position = names.GetHeadPosition();
  while (const char* name = names.GetNext(position))
    std::printf(" \"%s\"", name);
  std::printf("\n");
}

bool SameRecord(const Record& a, const Record& b) {
  return a.GetCount() == b.GetCount() && a.GetString() == b.GetString();
}

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
T ReadBytes(const EBlob& bytes) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(bytes, true);
  T value;
  archive >> value;
  return value;
}

// The wire bytes as a hex dump, and as text (numbers travel as decimal text), with anything
// unprintable shown as '.'.
void PrintWire(const char* step, const EBlob& wire) {
  std::string text(wire.GetSize(), '.');
  for (unsigned int i = 0; i < wire.GetSize(); ++i) {
    if (std::isprint(wire.GetData()[i])) text[i] = static_cast<char>(wire.GetData()[i]);
  }
  std::printf("%s: %u bytes on the wire\n%s\n  as text: %s\n", step, wire.GetSize(),
              wire.GetHexDumpOfPacket().c_str(), text.c_str());
}

void PrintEnvelope(const EMessage& message) {
  const EClientID& client = message.GetClientID();
  std::printf(
      "  envelope   type %u, destination %u, client \"%s\"/%d, port %u of %u, payload %u bytes\n",
      static_cast<unsigned int>(message.GetMessageType()),
      static_cast<unsigned int>(message.GetDestination()), client.GetMajorID().c_str(),
      client.GetMinorID(), message.GetPortID(), message.GetMessagePortCount(),
      message.GetMessage().GetSize());
}

// Puts a record into an envelope addressed by client and port, and archives the envelope.
EBlob Send(const Record& record, EMessage::eMessageType type, const EClientID& client,
           unsigned int port) {
  EMessage message;
  message.SetMessage(type, ArchiveBytes(record));
  message.SetClientID(client);
  message.SetMessagePortId(port);
  return ArchiveBytes(message);
}

// Reads the envelope from received bytes, prints it, and reads the record from its payload.
Record Receive(const EBlob& wire, EMessage& message) {
  message = ReadBytes<EMessage>(wire);
  PrintEnvelope(message);
  const Record record = ReadBytes<Record>(message.GetMessage());
  PrintRecord(record);
  return record;
}

}  // namespace

int main() {
  EClientID client;
  client.SetMajorID("example-client");
  client.SetMinorID(1);
  const unsigned int port = 7;

  // Client: the request goes out.
  const Record request = MakeRequest();
  std::printf("client sends request #%u\n", EMessage::GetNextSequenceNumber());
  PrintRecord(request);
  const EBlob requestWire = Send(request, kRequestType, client, port);
  PrintWire("request", requestWire);

  // Receiver: reads the request and answers the client on the same port.
  std::printf("\nreceiver reads the request\n");
  EMessage received;
  const Record receivedRecord = Receive(requestWire, received);
  const EBlob replyWire =
      Send(Answer(receivedRecord), kReplyType, received.GetClientID(), received.GetPortID());
  PrintWire("reply", replyWire);

  // Client: decodes the reply.
  std::printf("\nclient reads the reply\n");
  EMessage reply;
  const Record replyRecord = Receive(replyWire, reply);

  const bool ok = received.GetMessageType() == kRequestType &&
                  SameRecord(receivedRecord, request) && reply.GetMessageType() == kReplyType &&
                  reply.GetClientID().GetMajorID() == client.GetMajorID() &&
                  reply.GetClientID().GetMinorID() == client.GetMinorID() &&
                  reply.GetPortID() == port && SameRecord(replyRecord, Answer(request));
  std::printf("\n%s\n", ok ? "exchange ok" : "exchange FAILED");
  return ok ? 0 : 1;
}
