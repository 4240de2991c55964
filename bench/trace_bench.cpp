// ETrace::Trace for dropped messages and for delivered lines, against literal references written
// here: a tracer that formats the whole line in a string stream before looking at the level, and
// the bare floor of one mutex lock, one comparison and one unlock.
#include <benchmark/benchmark.h>

#include <iomanip>
#include <mutex>
#include <sstream>
#include <string>

#include "eTrace.h"

namespace {

// Takes the line and does nothing with it.
class NullTracer : public ETracer {
 public:
  void Write(const char* line) override { benchmark::DoNotOptimize(line); }
};

NullTracer& Tracer() {
  static NullTracer tracer;
  return tracer;
}

ETrace* Channel(int level) {
  ETrace* channel = ETrace::GetTrace("BENCH" + std::to_string(level), &Tracer());
  ETrace::SetLevel("BENCH" + std::to_string(level), level, &Tracer());
  return channel;
}

// The reference channel: formats first, then checks the threshold under a mutex.
struct ReferenceChannel {
  std::mutex mutex;
  int level;
  std::string name;

  void Trace(int messageLevel, const std::string& first, const char* second) {
    std::ostringstream stream;
    const unsigned int ms = Tracer().GetElapsedTime();
    const unsigned int seconds = ms / 1000, minutes = seconds / 60, hours = minutes / 60;
    stream << std::setw(3) << std::setfill(' ') << hours << ":" << std::setw(2) << std::setfill('0')
           << minutes % 60 << ":" << std::setw(2) << seconds % 60 << ":" << std::setfill(' ')
           << name << " " << first << " " << second;
    const std::string line = stream.str();
    bool passes;
    {
      std::lock_guard<std::mutex> guard(mutex);
      passes = level >= messageLevel;
    }
    if (passes) Tracer().Write(line.c_str());
  }
};

const std::string kFirst = "table";

// The argument is the channel's threshold: 0 drops the level-6 message, 8 delivers it.
void BM_Trace_ETrace(benchmark::State& state) {
  ETrace* channel = Channel(static_cast<int>(state.range(0)));
  for (auto _ : state)
    channel->Trace(6, kFirst, "dump of 12 rows");
}

void BM_Trace_Reference(benchmark::State& state) {
  ReferenceChannel channel{{}, static_cast<int>(state.range(0)), "BENCH"};
  for (auto _ : state)
    channel.Trace(6, kFirst, "dump of 12 rows");
}

// The floor of a dropped message: one lock, one comparison, one unlock.
void BM_Dropped_BareLockCompareUnlock(benchmark::State& state) {
  std::mutex mutex;
  int level = 0;
  for (auto _ : state) {
    mutex.lock();
    const bool passes = level >= 6;
    mutex.unlock();
    benchmark::DoNotOptimize(passes);
  }
}

BENCHMARK(BM_Trace_ETrace)->ArgName("threshold")->Arg(0)->Arg(8);
BENCHMARK(BM_Trace_Reference)->ArgName("threshold")->Arg(0)->Arg(8);
BENCHMARK(BM_Dropped_BareLockCompareUnlock);

}  // namespace
