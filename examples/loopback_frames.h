// Frames over loopback TCP, shared by the TCP example and the exchange's soak: a socket that
// closes itself, the loopback address, and frames (an envelope's length as 4 bytes, most
// significant first, then its archive bytes).
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace loopback {

// Owns a socket descriptor; sends and receives give up after `timeoutSeconds` of silence.
class Socket {
 public:
  Socket(int descriptor, int timeoutSeconds) : m_Descriptor(descriptor) {
    if (m_Descriptor < 0) Fail("socket");
    const timeval timeout{timeoutSeconds, 0};
    setsockopt(m_Descriptor, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    setsockopt(m_Descriptor, SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() { close(m_Descriptor); }

  int Get() const { return m_Descriptor; }

  // Closes with a reset instead of an orderly shutdown, as a crashed peer would.
  void Abort() const {
    const linger abrupt{1, 0};
    setsockopt(m_Descriptor, SOL_SOCKET, SO_LINGER, &abrupt, sizeof abrupt);
  }

  // Throws the failed call's name with the system's reason.
  [[noreturn]] static void Fail(const char* what) {
    throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
  }

 private:
  int m_Descriptor;
};

inline sockaddr_in Loopback(unsigned short port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

inline void WriteAll(const Socket& socket, const void* data, std::size_t length) {
  const char* next = static_cast<const char*>(data);
  while (length > 0) {
    const ssize_t written = send(socket.Get(), next, length, MSG_NOSIGNAL);
    if (written <= 0) Socket::Fail("send");
    next += written;
    length -= static_cast<std::size_t>(written);
  }
}

// The number of bytes read before the connection ended (closed or reset): `length` when all came.
inline std::size_t ReadAll(const Socket& socket, void* data, std::size_t length) {
  char* const bytes = static_cast<char*>(data);
  std::size_t done = 0;
  while (done < length) {
    const ssize_t count = recv(socket.Get(), bytes + done, length - done, 0);
    if (count == 0 || (count < 0 && errno == ECONNRESET)) return done;
    if (count < 0) Socket::Fail("recv");
    done += static_cast<std::size_t>(count);
  }
  return done;
}

// The frame's bytes: the length, most significant byte first, then the envelope.
inline std::string Frame(std::string_view envelope) {
  const auto length = static_cast<unsigned int>(envelope.size());
  std::string frame = {static_cast<char>(length >> 24), static_cast<char>(length >> 16),
                       static_cast<char>(length >> 8), static_cast<char>(length)};
  return frame.append(envelope);
}

// How a frame's read ended.
enum class FrameRead { kWhole, kClosed, kCut };

// Reads the next frame's envelope into `bytes` (a std::string): kClosed when the connection
// ended between frames, kCut when it ended inside one. A length beyond `maxFrame` throws.
inline FrameRead ReceiveFrame(const Socket& socket, std::string& bytes, unsigned int maxFrame) {
  unsigned char prefix[4];
  const std::size_t got = ReadAll(socket, prefix, sizeof prefix);
  if (got == 0) return FrameRead::kClosed;
  if (got < sizeof prefix) return FrameRead::kCut;
  unsigned int length = 0;
  for (const unsigned char byte : prefix)
    length = (length << 8) | byte;
  if (length > maxFrame) throw std::runtime_error("frame too long");
  bytes.resize(length);
  return ReadAll(socket, bytes.data(), length) == length ? FrameRead::kWhole : FrameRead::kCut;
}

}  // namespace loopback
