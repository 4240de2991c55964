// Soak of the exchange: a port and a client as two processes over loopback TCP. Each frame is an
// envelope (4-byte big-endian length, then the archived eHal::EMessage) carrying a record of a
// random registered class with random contents, payloads from 0 bytes to 1 MiB. The port reads
// the envelope and the record through the class's reader and answers with what the record and the
// envelope write; the client checks every reply byte for byte against what it sent. Midway the
// client drops its connection in the middle of a frame; the port must serve the next connection.
// The client samples the port's resident memory, which must stay flat after the warm-up, and the
// port must end with status 0 (under the address sanitizer: without a leak).
//   ehal_soak [--frames N] [--seed S] [--bound-mib M] [--every SECONDS]
// N frames (20000), random seed S (1), RSS bound M MiB over the warm-up's peak (8), a progress
// line every SECONDS (0: none). Exit status 0 when every reply matched and the port ended well.
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "archive_text.h"
#include "ehal.h"
#include "loopback_frames.h"
#include "record_vectors.h"

namespace {

using eHal::EMessage;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kMaxPayload = 1u << 20;
// An envelope around the largest payload, with room for its other fields.
constexpr unsigned int kMaxFrame = kMaxPayload + (64u << 10);
// A peer that says nothing for this long is gone.
constexpr int kTimeoutSeconds = 30;
// The message type of a frame with an empty payload; a record's is its class's index plus one.
constexpr unsigned int kEmptyPayload = 0;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
#else
constexpr bool kSanitized = false;
#endif

struct Options {
  unsigned long frames = 20000;
  unsigned int seed = 1;
  long boundMiB = 8;
  double every = 0;
};

using loopback::Frame;
using loopback::Loopback;
using loopback::WriteAll;

// A soak socket: sends and receives give up after kTimeoutSeconds of silence.
class Socket : public loopback::Socket {
 public:
  explicit Socket(int descriptor) : loopback::Socket(descriptor, kTimeoutSeconds) {}
};

// The envelope of the next frame; false when the connection ended, whole frame or not.
bool ReceiveFrame(const Socket& socket, std::string& envelope) {
  return loopback::ReceiveFrame(socket, envelope, kMaxFrame) == loopback::FrameRead::kWhole;
}

// --- the port ---

// What the port answers to an envelope: the record read through its class's reader and written
// again, in the envelope read and written again.
std::string Answer(const std::string& request) {
  EMessage envelope;
  ReadFrom(request, envelope);
  const unsigned int type = envelope.GetMessageType();
  if (type == kEmptyPayload) return BytesOf(envelope);
  const ERecordClass& recordClass = ERecordRegistry::Classes().at(type - 1);
  const ERecordRead read = recordClass.Read(TextOf(envelope.GetMessage()));
  if (!read.Complete()) throw std::runtime_error("port: a payload that is no whole record");
  envelope.SetMessage(BlobOf(BytesOf(*read.record)));
  return BytesOf(envelope);
}

// Serves connections one after the other until a frame of length 0 asks it to stop.
int RunPort(const Socket& listener) {
  for (;;) {
    const Socket connection(accept(listener.Get(), nullptr, nullptr));
    for (std::string request; ReceiveFrame(connection, request);) {
      if (request.empty()) return 0;
      const std::string reply = Frame(Answer(request));
      WriteAll(connection, reply.data(), reply.size());
    }
  }
}

// --- the client ---

// A registered class's fresh description (from its newest golden vector) and whether it holds a
// text or blob whose size can be chosen.
struct Template {
  std::size_t index;
  ERecordValue value;
  bool sized;
};

void CollectSized(ERecordValue& value, std::vector<ERecordValue*>& sized) {
  if (value.kind == ERecordValue::Kind::kText || value.kind == ERecordValue::Kind::kBytes)
    sized.push_back(&value);
  for (ERecordValue& item : value.items)
    CollectSized(item, sized);
}

std::vector<Template> Templates() {
  std::vector<Template> templates;
  const std::vector<ERecordClass>& classes = ERecordRegistry::Classes();
  for (std::size_t index = 0; index < classes.size(); ++index) {
    const ERecordRead read = classes[index].Read(VectorsOf(classes[index]).front().bytes);
    if (!read.Complete()) throw std::runtime_error("a golden vector does not read");
    Template entry{index, ERecordValue::Of(*read.record), false};
    std::vector<ERecordValue*> sized;
    CollectSized(entry.value, sized);
    entry.sized = !sized.empty();
    templates.push_back(std::move(entry));
  }
  return templates;
}

struct Refused {};

[[noreturn]] void ThrowRefused(const char*, int, const char*) {
  throw Refused();
}

class FrameMaker {
 public:
  explicit FrameMaker(unsigned int seed) : m_Random(seed), m_Templates(Templates()) {
    for (const Template& entry : m_Templates) {
      if (entry.sized) m_Sized.push_back(&entry);
    }
  }

  // The envelope of frame `number`: the first frames carry the largest payloads, so that the
  // warm-up sees the port's peak; then 0.5% carry none, 1% up to 1 MiB, 10% up to 64 KiB and the
  // rest records with short texts and blobs.
  std::string Next(unsigned long number) {
    const unsigned int share = Below(1000);
    if (number % 500 == 7 || share < 5) return Envelope(kEmptyPayload, "");
    if (number < 4) return Record(*Pick(m_Sized), kMaxPayload);
    if (share < 15) return Record(*Pick(m_Sized), 65536 + Below(kMaxPayload - 65536 + 1));
    if (share < 115) return Record(*Pick(m_Sized), 1024 + Below(65536 - 1024));
    return Record(Pick(m_Templates), Below(32));
  }

 private:
  unsigned int Below(std::size_t bound) { return static_cast<unsigned int>(m_Random() % bound); }

  template <typename T>
  const T& Pick(const std::vector<T>& items) {
    return items[Below(items.size())];
  }

  std::string Envelope(unsigned int type, const std::string& payload) {
    EMessage envelope;
    envelope.SetMessage(static_cast<EMessage::eMessageType>(type), BlobOf(payload));
    envelope.SetMessagePortId(Below(64));
    envelope.SetMessagePortCount(1 + Below(8));
    return BytesOf(envelope);
  }

  // A record of the class whose largest text or blob holds `size` random bytes and whose other
  // values are random; the class's fresh values where the record refuses the random ones.
  std::string Record(const Template& entry, std::size_t size) {
    ERecordValue value = entry.value;
    Randomise(value, size);
    const ERecordClass& recordClass = ERecordRegistry::Classes()[entry.index];
    ERecordRead read;
    try {
      read = recordClass.Read(BytesOf(value));
    } catch (const Refused&) {
    }
    if (!read.Complete()) read = recordClass.Read(BytesOf(entry.value));
    return Envelope(static_cast<unsigned int>(entry.index + 1), BytesOf(*read.record));
  }

  void Randomise(ERecordValue& value, std::size_t size) {
    std::vector<ERecordValue*> sized;
    CollectSized(value, sized);
    for (ERecordValue* item : sized)
      item->bytes = RandomBytes(Below(16));
    if (!sized.empty()) Pick(sized)->bytes = RandomBytes(size);
    RandomiseNumbers(value);
  }

  std::string RandomBytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(m_Random());
    return bytes;
  }

  // Every number but the signatures, within its wire form's range; half of the records keep
  // their numbers.
  void RandomiseNumbers(ERecordValue& value) {
    if (Below(2) == 0) return;
    for (ERecordValue& item : value.items)
      RandomiseNumbers(item);
    if (value.kind != ERecordValue::Kind::kNumber || value.name == "Signature") return;
    value.number = RandomNumber(value.wire);
  }

  std::uint64_t RandomNumber(ENumberWire wire) {
    const std::uint64_t random = (static_cast<std::uint64_t>(m_Random()) << 32) | m_Random();
    switch (wire) {
      case ENumberWire::kUnsigned8:
        return random & 0xFF;
      case ENumberWire::kUnsigned16:
        return random & 0xFFFF;
      case ENumberWire::kBool:
        return random & 1;
      case ENumberWire::kUnsigned64:
        return random;
      case ENumberWire::kSignedOutUnsignedIn:
        // A negative text read back unsigned is not the number written: the wire form's rule.
        return random & 0x7FFFFFFF;
      case ENumberWire::kSigned32:
        return static_cast<std::uint64_t>(
            static_cast<std::int64_t>(static_cast<std::int32_t>(random)));
      default:
        return random & 0xFFFFFFFF;
    }
  }

  std::mt19937 m_Random;
  std::vector<Template> m_Templates;
  std::vector<const Template*> m_Sized;
};

// The port process's resident memory in KiB.
long ResidentKiB(pid_t port) {
  std::ifstream statm("/proc/" + std::to_string(port) + "/statm");
  long pages = 0;
  long resident = 0;
  statm >> pages >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

struct Progress {
  unsigned long frames = 0;
  unsigned long long bytes = 0;
  long warmUpPeakKiB = 0;
  long peakKiB = 0;
  Clock::time_point start = Clock::now();
  Clock::time_point lastLine = Clock::now();
};

class Client {
 public:
  Client(const Options& options, unsigned short port, pid_t portProcess)
      : m_Options(options), m_Port(port), m_PortProcess(portProcess), m_Maker(options.seed) {}

  // Sends the frames over two connections, the first dropped in the middle of a frame; true when
  // every reply matched.
  bool Run() {
    const unsigned long half = m_Options.frames / 2;
    if (!Exchange(half)) return false;
    DropMidFrame();
    if (!Exchange(m_Options.frames - half)) return false;
    Stop();
    return true;
  }

  const Progress& GetProgress() const { return m_Progress; }

 private:
  void Connect(const Socket& connection) const {
    const sockaddr_in address = Loopback(m_Port);
    if (connect(connection.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
      Socket::Fail("connect");
  }

  bool Exchange(unsigned long count) {
    const Socket connection(socket(AF_INET, SOCK_STREAM, 0));
    Connect(connection);
    for (unsigned long i = 0; i < count; ++i) {
      if (!ExchangeOne(connection)) return false;
    }
    return true;
  }

  bool ExchangeOne(const Socket& connection) {
    const std::string frame = Frame(m_Maker.Next(m_Progress.frames));
    WriteAll(connection, frame.data(), frame.size());
    std::string reply;
    if (!ReceiveFrame(connection, reply))
      throw std::runtime_error("the port closed the connection");
    if (Frame(reply) != frame) {
      const std::string answer = Frame(reply);
      const auto differ = std::mismatch(frame.begin(), frame.end(), answer.begin(), answer.end());
      std::fprintf(stderr,
                   "frame %lu: the reply (%zu bytes) differs from the request (%zu bytes) "
                   "from byte %td\n",
                   m_Progress.frames, answer.size(), frame.size(), differ.first - frame.begin());
      return false;
    }
    ++m_Progress.frames;
    m_Progress.bytes += frame.size();
    Sample();
    return true;
  }

  // Half of a large frame, then a reset.
  void DropMidFrame() {
    const Socket connection(socket(AF_INET, SOCK_STREAM, 0));
    Connect(connection);
    const std::string frame = Frame(m_Maker.Next(0));
    WriteAll(connection, frame.data(), frame.size() / 2);
    connection.Abort();
  }

  // A frame of length 0 ends the port.
  void Stop() {
    const Socket connection(socket(AF_INET, SOCK_STREAM, 0));
    Connect(connection);
    WriteAll(connection, "\0\0\0\0", 4);
  }

  // Samples the port's memory every 64 frames: the warm-up's peak over its first tenth, the
  // peak after.
  void Sample() {
    if (m_Progress.frames % 64 != 0 && m_Progress.frames != m_Options.frames) return;
    const long resident = ResidentKiB(m_PortProcess);
    const bool warmingUp = m_Progress.frames <= m_Options.frames / 10;
    long& peak = warmingUp ? m_Progress.warmUpPeakKiB : m_Progress.peakKiB;
    peak = std::max(peak, resident);
    PrintProgress(resident);
  }

  void PrintProgress(long resident) {
    const auto now = Clock::now();
    if (m_Options.every <= 0 ||
        std::chrono::duration<double>(now - m_Progress.lastLine).count() < m_Options.every)
      return;
    m_Progress.lastLine = now;
    const double seconds = std::chrono::duration<double>(now - m_Progress.start).count();
    std::printf("t=%.0fs frames=%lu frames/s=%.0f MB/s=%.1f port_rss_kib=%ld\n", seconds,
                m_Progress.frames, m_Progress.frames / seconds, m_Progress.bytes / seconds / 1e6,
                resident);
  }

  Options m_Options;
  unsigned short m_Port;
  pid_t m_PortProcess;
  FrameMaker m_Maker;
  Progress m_Progress;
};

Options Parse(int argc, char** argv) {
  Options options;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string name = argv[i];
    const char* value = argv[i + 1];
    if (name == "--frames")
      options.frames = std::strtoul(value, nullptr, 10);
    else if (name == "--seed")
      options.seed = static_cast<unsigned int>(std::strtoul(value, nullptr, 10));
    else if (name == "--bound-mib")
      options.boundMiB = std::strtol(value, nullptr, 10);
    else if (name == "--every")
      options.every = std::strtod(value, nullptr);
    else
      throw std::runtime_error("unknown option " + name);
  }
  if (argc % 2 == 0) throw std::runtime_error("an option without its value");
  return options;
}

// Listens on 127.0.0.1 at a port the system picks; returns that port's number.
unsigned short Listen(const Socket& listener) {
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  if (bind(listener.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    Socket::Fail("bind");
  if (listen(listener.Get(), 4) != 0) Socket::Fail("listen");
  if (getsockname(listener.Get(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
    Socket::Fail("getsockname");
  return ntohs(address.sin_port);
}

// The port's exit status, or -1 when it did not exit normally.
int WaitFor(pid_t process) {
  int status = 0;
  if (waitpid(process, &status, 0) != process || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

// Checks and reports the run: every reply matched, the port ended well, its memory stayed flat.
bool Verdict(const Options& options, bool matched, int portStatus, const Progress& progress) {
  const double seconds = std::chrono::duration<double>(Clock::now() - progress.start).count();
  const long growthKiB = progress.peakKiB - progress.warmUpPeakKiB;
  std::printf(
      "soak: %lu frames in %.1f s (%.0f frames/s, %.1f MB/s); port RSS peak %ld KiB in the "
      "warm-up, %ld KiB after (bound %ld KiB over the warm-up)%s; port exit status %d\n",
      progress.frames, seconds, progress.frames / seconds, progress.bytes / seconds / 1e6,
      progress.warmUpPeakKiB, progress.peakKiB, options.boundMiB * 1024,
      kSanitized ? ", not enforced under the address sanitizer" : "", portStatus);
  const bool flat = kSanitized || growthKiB <= options.boundMiB * 1024;
  if (!flat) std::printf("soak: the port's memory grew by %ld KiB after the warm-up\n", growthKiB);
  return matched && portStatus == 0 && flat;
}

int Soak(const Options& options) {
  const Socket listener(socket(AF_INET, SOCK_STREAM, 0));
  const unsigned short port = Listen(listener);
  std::fflush(stdout);
  const pid_t portProcess = fork();
  if (portProcess < 0) Socket::Fail("fork");
  if (portProcess == 0) {
    int status = 1;
    try {
      status = RunPort(listener);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "port: %s\n", error.what());
    }
    std::exit(status);
  }
  // The client's random values may be refused by a record, which it then builds afresh.
  EArchive::SetSerializeErrorHandler(&ThrowRefused);
  Client client(options, port, portProcess);
  bool matched = false;
  try {
    matched = client.Run();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "client: %s\n", error.what());
  }
  if (!matched) kill(portProcess, SIGKILL);
  const int portStatus = WaitFor(portProcess);
  return Verdict(options, matched, portStatus, client.GetProgress()) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  try {
    return Soak(Parse(argc, argv));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "soak: %s\n", error.what());
    return 2;
  }
}
