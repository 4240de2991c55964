// The PRBS capture conversation of examples/exchange.cpp between two processes over a loopback
// TCP connection. Each envelope travels as one frame: its length as 4 bytes, most significant
// first, then its archive bytes. Each side prints what it sends and receives.
//
//   ehal_tcp_exchange port PORTFILE   listens on 127.0.0.1 at a port the system picks, writes its
//                                     number into PORTFILE and serves one client until it closes
//   ehal_tcp_exchange client PORT     sends the requests and reads the replies; exit status 0
//                                     when they are the replies asked for
#include <sys/socket.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "exchange_endpoint.h"
#include "loopback_frames.h"
#include "prbs_conversation.h"

using namespace conversation;

namespace {

// No frame of this conversation comes near this; a larger length is a broken peer.
constexpr unsigned int kMaxFrame = 1u << 20;
// A peer that says nothing for this long is gone.
constexpr int kTimeoutSeconds = 10;

using loopback::FrameRead;
using loopback::Loopback;

// An example socket: sends and receives give up after kTimeoutSeconds of silence.
class Socket : public loopback::Socket {
 public:
  explicit Socket(int descriptor) : loopback::Socket(descriptor, kTimeoutSeconds) {}
};

void SendFrame(const Socket& socket, const EBlob& bytes) {
  const std::string frame = loopback::Frame(bytes.GetView());
  loopback::WriteAll(socket, frame.data(), frame.size());
}

// False when the peer closed the connection between frames.
bool ReceiveFrame(const Socket& socket, EBlob& bytes) {
  std::string envelope;
  const FrameRead read = loopback::ReceiveFrame(socket, envelope, kMaxFrame);
  if (read == FrameRead::kClosed) return false;
  if (read == FrameRead::kCut) throw std::runtime_error("cut frame");
  bytes = EBlob(envelope.data(), static_cast<unsigned int>(envelope.size()));
  return true;
}

// Writes the number into the file whole: the file appears under its name only when complete.
void PublishPort(const std::string& path, unsigned short port) {
  const std::string partial = path + ".partial";
  std::ofstream(partial) << port << "\n";
  if (std::rename(partial.c_str(), path.c_str()) != 0) Socket::Fail("rename");
}

int RunPort(const std::string& portFile) {
  const Socket listener(socket(AF_INET, SOCK_STREAM, 0));
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  if (bind(listener.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    Socket::Fail("bind");
  if (listen(listener.Get(), 1) != 0) Socket::Fail("listen");
  if (getsockname(listener.Get(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
    Socket::Fail("getsockname");
  const unsigned short port = ntohs(address.sin_port);
  std::printf("port: listening on 127.0.0.1:%u\n", port);
  PublishPort(portFile, port);

  const Socket connection(accept(listener.Get(), nullptr, nullptr));
  std::printf("port: client connected\n");
  // The server loop keeps its archives, envelopes and request from one message to the next, so
  // that once they have grown to fit, reading a request and writing its reply allocate nothing.
  exchange::Endpoint endpoint;
  EPRBS request(kReplyingSide);
  for (EBlob wire; ReceiveFrame(connection, wire);) {
    std::printf("port: receives a frame of %u bytes\n", wire.GetSize());
    const EMessage& received = endpoint.Receive(wire, request);
    PrintEnvelope(received);
    PrintRecord(request);
    std::printf("port: answers\n");
    const EPRBS reply = Serve(request);
    PrintRecord(reply);
    const EBlob& answer =
        endpoint.Send(reply, kPRBSReply, received.GetClientID(), received.GetPortID());
    PrintWire(answer);
    SendFrame(connection, answer);
  }
  std::printf("port: client closed the connection\n");
  return 0;
}

int RunClient(unsigned short port) {
  const Socket connection(socket(AF_INET, SOCK_STREAM, 0));
  const sockaddr_in address = Loopback(port);
  if (connect(connection.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    Socket::Fail("connect");
  std::printf("client: connected to 127.0.0.1:%u\n", port);
  std::vector<EPRBS> replies;
  for (const EPRBS& request : Requests()) {
    std::printf("client: sends request #%u\n", EMessage::GetNextSequenceNumber());
    SendFrame(connection, Send(request, kPRBSRequest, Client(), kPort));
    EBlob wire;
    if (!ReceiveFrame(connection, wire)) throw std::runtime_error("the port closed the connection");
    std::printf("client: receives a frame of %u bytes\n", wire.GetSize());
    EMessage envelope;
    EPRBS reply(kRequestingSide);
    Receive(wire, envelope, reply);
    replies.push_back(reply);
  }
  const bool ok = RepliesOk(replies);
  std::printf("client: %s\n", ok ? "exchange ok" : "exchange FAILED");
  return ok ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  // Line by line, so that the two sides' lines interleave in the order they happen.
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  const std::string role = argc == 3 ? argv[1] : "";
  try {
    if (role == "port") return RunPort(argv[2]);
    if (role == "client") return RunClient(static_cast<unsigned short>(std::atoi(argv[2])));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", role.c_str(), error.what());
    return 1;
  }
  std::fprintf(stderr, "usage: %s port PORTFILE | client PORT\n", argv[0]);
  return 2;
}
