// One PRBS capture conversation between a client and a test port's HAL, in one process: each
// request and reply goes the whole road (record, envelope, wire bytes and back), printed step by
// step. examples/tcp_exchange.cpp runs the same conversation between two processes.
#include <cstdio>
#include <vector>

#include "prbs_conversation.h"

using namespace conversation;

namespace {

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
  std::vector<EPRBS> replies;
  for (const EPRBS& request : Requests())
    replies.push_back(Converse(request, Client(), kPort));
  std::printf("full reply: %s\n", replies.back().ToStringFull().c_str());

  const bool ok = RepliesOk(replies);
  std::printf("%s\n", ok ? "exchange ok" : "exchange FAILED");
  return ok ? 0 : 1;
}
