#include "eTrace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <deque>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "eFileTracer.h"
#include "eStringList.h"
#include "eTickCount.h"
#include "virtual_slot.h"

namespace {

// A tracer that records its lines and the channel names it is told about.
class RecordingTracer : public ETracer {
 public:
  void Write(const char* line) override {
    std::lock_guard<std::mutex> guard(m_Mutex);
    m_Lines.emplace_back(line);
  }
  void NewTrace(std::string name) override {
    std::lock_guard<std::mutex> guard(m_Mutex);
    m_Names.push_back(std::move(name));
  }
  std::vector<std::string> Lines() const {
    std::lock_guard<std::mutex> guard(m_Mutex);
    return m_Lines;
  }
  std::vector<std::string> Names() const {
    std::lock_guard<std::mutex> guard(m_Mutex);
    return m_Names;
  }
  // Moves the zero time back so that the elapsed time is `milliseconds` plus the time the test
  // takes from here on; whole seconds leave up to 999 ms before the printed time changes.
  void Pin(unsigned int milliseconds) { SetZeroTime(EGetTickCount() - milliseconds); }

 private:
  mutable std::mutex m_Mutex;
  std::vector<std::string> m_Lines;
  std::vector<std::string> m_Names;
};

// The registry outlives every test and keys channels by tracer address, so every test takes
// tracers that are never destroyed: an address is never reused for another test's tracer.
template <typename Tracer = RecordingTracer>
Tracer& FreshTracer() {
  static std::deque<Tracer> tracers;
  static std::mutex mutex;
  std::lock_guard<std::mutex> guard(mutex);
  tracers.emplace_back();
  return tracers.back();
}

std::string Elapsed(unsigned int milliseconds) {
  std::ostringstream stream;
  ETrace::WriteElapsedTime(stream, milliseconds);
  return stream.str();
}

TEST(ETracer, WriteComesRightBeforeNewTrace) {
#if EHAL_HAS_VIRTUAL_SLOT
  EXPECT_EQ(VirtualSlot(&ETracer::Write), 2);  // after the two destructor entries
  EXPECT_EQ(VirtualSlot(&ETracer::NewTrace), 3);
#else
  GTEST_SKIP() << "table layout not readable on this ABI";
#endif
}

TEST(ETraceLevels, TableRowsInOrder) {
  ASSERT_EQ(ETrace::NLevels, 8);
  const char* const names[] = {"CRITICAL", "ERROR", "ALERT", "ANNOUNCE"};
  EXPECT_EQ(ETrace::Levels[0].level, 1);
  EXPECT_STREQ(ETrace::Levels[0].name, names[0]);
  EXPECT_EQ(ETrace::Levels[1].level, 2);
  EXPECT_STREQ(ETrace::Levels[1].name, names[1]);
  // ALERT ranks below ERROR, ANNOUNCE sits between WARNING and INFO.
  EXPECT_EQ(ETrace::Levels[2].level, 3);
  EXPECT_STREQ(ETrace::Levels[2].name, names[2]);
  EXPECT_EQ(ETrace::Levels[3].level, 4);
  EXPECT_STREQ(ETrace::Levels[3].name, "WARNING");
  EXPECT_EQ(ETrace::Levels[4].level, 5);
  EXPECT_STREQ(ETrace::Levels[4].name, names[3]);
  EXPECT_EQ(ETrace::Levels[5].level, 6);
  EXPECT_STREQ(ETrace::Levels[5].name, "INFO");
  EXPECT_EQ(ETrace::Levels[6].level, 7);
  EXPECT_STREQ(ETrace::Levels[6].name, "DEBUG");
  EXPECT_EQ(ETrace::Levels[7].level, 8);
  EXPECT_STREQ(ETrace::Levels[7].name, "LOWDEBUG");
}

TEST(ETraceLevels, NameToLevel) {
  EXPECT_EQ(ETrace::NameToLevel("lowdebug"), 8);
  EXPECT_EQ(ETrace::NameToLevel("DEBUG"), 7);
  EXPECT_EQ(ETrace::NameToLevel(""), 0);
  EXPECT_EQ(ETrace::NameToLevel("info"), 6);
  EXPECT_EQ(ETrace::NameToLevel("Info"), 6);
  EXPECT_EQ(ETrace::NameToLevel("INFO"), 6);
  EXPECT_EQ(ETrace::NameToLevel("critical"), 1);
  EXPECT_EQ(ETrace::NameToLevel("Error"), 2);
  EXPECT_EQ(ETrace::NameToLevel("alert"), 3);
  EXPECT_EQ(ETrace::NameToLevel("warning"), 4);
  EXPECT_EQ(ETrace::NameToLevel("announce"), 5);
  // No trimming, no prefixes, whole names only.
  EXPECT_EQ(ETrace::NameToLevel(" INFO"), 0);
  EXPECT_EQ(ETrace::NameToLevel("INFO "), 0);
  EXPECT_EQ(ETrace::NameToLevel("INF"), 0);
  EXPECT_EQ(ETrace::NameToLevel("INFOS"), 0);
  EXPECT_EQ(ETrace::NameToLevel("VERBOSE"), 0);
  EXPECT_EQ(ETrace::NameToLevel(std::string("INFO\0", 5)), 0);
}

TEST(ETraceLevels, EtoupperUsesTheClassicLocale) {
  EXPECT_EQ(Etoupper('a'), 'A');
  EXPECT_EQ(Etoupper('z'), 'Z');
  EXPECT_EQ(Etoupper('Q'), 'Q');
  EXPECT_EQ(Etoupper('1'), '1');
  EXPECT_EQ(Etoupper(' '), ' ');
  EXPECT_EQ(Etoupper('\xE9'), '\xE9');  // no letters beyond ASCII in the "C" locale
}

TEST(ETraceRegistry, FreshChannelIsSilent) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace("fresh", &tracer);
  ASSERT_NE(channel, nullptr);
  EXPECT_EQ(channel->GetName(), "fresh");
  EXPECT_EQ(channel->GetTracer(), &tracer);
  EXPECT_EQ(channel->GetLevel(), 0);
  EXPECT_FALSE(channel->IsTraceable(1));
  EXPECT_TRUE(channel->IsTraceable(0));
  EXPECT_TRUE(channel->IsTraceable(-1));
  channel->Trace(1, "dropped");
  channel->Trace(1, std::string("dropped"));
  EXPECT_TRUE(tracer.Lines().empty());
}

TEST(ETraceRegistry, SameNameAndTracerGiveTheSameChannelAndOneNotice) {
  RecordingTracer& first = FreshTracer();
  RecordingTracer& second = FreshTracer();
  ETrace* channel = ETrace::GetTrace(std::string("same"), &first);
  EXPECT_EQ(ETrace::GetTrace("same", &first), channel);
  EXPECT_EQ(ETrace::GetTrace(std::string("same"), &first), channel);
  EXPECT_EQ(first.Names(), std::vector<std::string>{"same"});

  ETrace* other = ETrace::GetTrace("same", &second);
  EXPECT_NE(other, channel);
  EXPECT_EQ(other->GetTracer(), &second);
  EXPECT_EQ(second.Names(), std::vector<std::string>{"same"});
  EXPECT_EQ(first.Names().size(), 1u);

  // Names compare exactly and case-sensitively.
  ETrace* upper = ETrace::GetTrace("SAME", &first);
  EXPECT_NE(upper, channel);
  EXPECT_EQ(first.Names(), (std::vector<std::string>{"same", "SAME"}));
}

TEST(ETraceRegistry, NullNameIsTheEmptyName) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace(static_cast<const char*>(nullptr), &tracer);
  EXPECT_EQ(channel->GetName(), "");
  EXPECT_EQ(ETrace::GetTrace("", &tracer), channel);
  EXPECT_EQ(tracer.Names(), std::vector<std::string>{""});
  ETrace::SetLevel(static_cast<const char*>(nullptr), 4, &tracer);
  EXPECT_EQ(channel->GetLevel(), 4);
}

TEST(ETraceRegistry, LevelSixPassesOneToSix) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* arp = ETrace::GetTrace("ARP", &tracer);
  ETrace::SetLevel("ARP", 6, nullptr);
  EXPECT_TRUE(arp->IsTraceable(6));
  EXPECT_FALSE(arp->IsTraceable(7));
  for (int level = 1; level <= 8; ++level)
    arp->Trace(level, std::to_string(level));
  const std::vector<std::string> lines = tracer.Lines();
  ASSERT_EQ(lines.size(), 6u);
  for (int level = 1; level <= 6; ++level)
    EXPECT_EQ(lines[level - 1], "  0:00:00:ARP " + std::to_string(level));
}

TEST(ETraceRegistry, LevelNamesAreCaseSensitiveAndNotRemembered) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* arp = ETrace::GetTrace("ARP", &tracer);
  ETrace::SetLevel("ARP", 0, nullptr);
  ETrace::SetLevel("arp", 6, nullptr);
  EXPECT_EQ(arp->GetLevel(), 0);
  ETrace::SetLevel("AR", 6, nullptr);    // no prefix matching
  ETrace::SetLevel("ARP*", 6, nullptr);  // no wildcards
  EXPECT_EQ(arp->GetLevel(), 0);

  ETrace::SetLevel("not yet created", 7, nullptr);
  ETrace::SetLevel(std::string("not yet created"), 7, &tracer);
  ETrace* later = ETrace::GetTrace("not yet created", &tracer);
  EXPECT_EQ(later->GetLevel(), 0);
  EXPECT_FALSE(later->IsTraceable(1));
}

TEST(ETraceRegistry, SetLevelPerTracerOrForAll) {
  RecordingTracer& first = FreshTracer();
  RecordingTracer& second = FreshTracer();
  RecordingTracer& stranger = FreshTracer();
  ETrace* a = ETrace::GetTrace("per-tracer", &first);
  ETrace* b = ETrace::GetTrace("per-tracer", &second);

  ETrace::SetLevel("per-tracer", 3, &second);
  EXPECT_EQ(a->GetLevel(), 0);
  EXPECT_EQ(b->GetLevel(), 3);

  ETrace::SetLevel("per-tracer", 5, &stranger);  // no channel of this tracer: nothing happens
  EXPECT_EQ(a->GetLevel(), 0);
  EXPECT_EQ(b->GetLevel(), 3);
  EXPECT_TRUE(stranger.Names().empty());

  ETrace::SetLevel(std::string("per-tracer"), 7, nullptr);
  EXPECT_EQ(a->GetLevel(), 7);
  EXPECT_EQ(b->GetLevel(), 7);
}

TEST(ETraceRegistry, LevelsAreStoredWithoutRangeCheck) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace("range", &tracer);
  ETrace::SetLevel("range", 100, &tracer);
  EXPECT_EQ(channel->GetLevel(), 100);
  EXPECT_TRUE(channel->IsTraceable(8));
  EXPECT_TRUE(channel->IsTraceable(100));
  EXPECT_FALSE(channel->IsTraceable(101));

  ETrace::SetLevel("range", -5, &tracer);
  EXPECT_EQ(channel->GetLevel(), -5);
  EXPECT_FALSE(channel->IsTraceable(0));
  EXPECT_FALSE(channel->IsTraceable(1));
  EXPECT_TRUE(channel->IsTraceable(-5));  // the comparison is signed
  EXPECT_TRUE(channel->IsTraceable(-6));
  channel->Trace(1, "dropped");
  channel->Trace(-7, "kept");
  EXPECT_EQ(tracer.Lines(), std::vector<std::string>{"  0:00:00:range kept"});
}

// A tracer that configures each new channel from inside NewTrace, which only works when the
// registry lock is no longer held.
class ConfiguringTracer : public RecordingTracer {
 public:
  void NewTrace(std::string name) override {
    RecordingTracer::NewTrace(name);
    ETrace::SetLevel(name, 6, this);
    if (name == "outer") ETrace::GetTrace("inner", this);
  }
};

TEST(ETraceRegistry, NewTraceMayUseTheRegistry) {
  ConfiguringTracer& tracer = FreshTracer<ConfiguringTracer>();
  ETrace* outer = ETrace::GetTrace("outer", &tracer);
  EXPECT_EQ(outer->GetLevel(), 6);
  EXPECT_EQ(tracer.Names(), (std::vector<std::string>{"outer", "inner"}));
  EXPECT_EQ(ETrace::GetTrace("inner", &tracer)->GetLevel(), 6);
}

TEST(ETraceLine, TheSixOverloads) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace("ICMP", &tracer);
  ETrace::SetLevel("ICMP", 2, &tracer);
  tracer.Pin(0);
  EStringList list;
  list.Add("a");
  list.Add("b c");
  list.Add("d");
  channel->Trace(1, "text");
  channel->Trace(2, std::string("string"));
  channel->Trace(1, std::string("first"), "second");
  channel->Trace(2, std::string("first"), std::string("second"));
  channel->Trace(1, list);
  channel->Trace(2, std::string("head"), list);
  channel->Trace(3, "dropped");
  channel->Trace(3, std::string("dropped"), list);
  EXPECT_EQ(tracer.Lines(), (std::vector<std::string>{
                                "  0:00:00:ICMP text",
                                "  0:00:00:ICMP string",
                                "  0:00:00:ICMP first second",
                                "  0:00:00:ICMP first second",
                                "  0:00:00:ICMP ab cd",
                                "  0:00:00:ICMP head ab cd",
                            }));
}

TEST(ETraceLine, EmptyPiecesKeepTheirBlanks) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace("E", &tracer);
  ETrace::SetLevel("E", 1, &tracer);
  tracer.Pin(0);
  channel->Trace(1, "");
  channel->Trace(1, std::string(), std::string());
  channel->Trace(1, EStringList());
  EXPECT_EQ(tracer.Lines(),
            (std::vector<std::string>{"  0:00:00:E ", "  0:00:00:E  ", "  0:00:00:E "}));
}

TEST(ETraceLine, NullTextTruncatesTheLine) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace("NULLS", &tracer);
  ETrace::SetLevel("NULLS", 1, &tracer);
  tracer.Pin(0);
  channel->Trace(1, static_cast<const char*>(nullptr));
  channel->Trace(1, std::string("before"), static_cast<const char*>(nullptr));
  EXPECT_EQ(tracer.Lines(),
            (std::vector<std::string>{"  0:00:00:NULLS ", "  0:00:00:NULLS before "}));
}

TEST(ETraceLine, WorkedExampleLine) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* arp = ETrace::GetTrace("ARP", &tracer);
  ETrace::SetLevel("ARP", 6, &tracer);
  tracer.Pin(3723000);  // 1 h 2 min 3 s, with under a second of slack
  arp->Trace(6, "table dump");
  EXPECT_EQ(tracer.Lines(), std::vector<std::string>{"  1:02:03:ARP table dump"});
}

TEST(ETraceLine, LongLinesAreDeliveredWhole) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace("LONG", &tracer);
  ETrace::SetLevel("LONG", 8, &tracer);
  tracer.Pin(0);
  const std::string first(250, 'x');
  const std::string second(5000, 'y');
  channel->Trace(8, first, second);
  channel->Trace(8, std::string(246, 'z'));  // exactly fills the short-line buffer
  const std::vector<std::string> lines = tracer.Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], "  0:00:00:LONG " + first + " " + second);
  EXPECT_EQ(lines[1], "  0:00:00:LONG " + std::string(246, 'z'));
}

TEST(ETraceElapsedTime, Formats) {
  EXPECT_EQ(Elapsed(0), "  0:00:00:");
  EXPECT_EQ(Elapsed(999), "  0:00:00:");
  EXPECT_EQ(Elapsed(59999), "  0:00:59:");  // truncated, not rounded
  EXPECT_EQ(Elapsed(3723456), "  1:02:03:");
  EXPECT_EQ(Elapsed(36000000), " 10:00:00:");
  EXPECT_EQ(Elapsed(86400000), " 24:00:00:");  // hours are not reduced modulo 24
  EXPECT_EQ(Elapsed(360000000), "100:00:00:");
  EXPECT_EQ(Elapsed(3600000000u), "1000:00:00:");
  EXPECT_EQ(Elapsed(0xFFFFFFFFu), "1193:02:47:");
}

TEST(ETraceElapsedTime, StreamFillAndWidthAreRestored) {
  std::ostringstream stream;
  stream.fill('*');
  stream.width(12);
  ETrace::WriteElapsedTime(stream, 61000);
  EXPECT_EQ(stream.str(), "  0:01:01:");
  EXPECT_EQ(stream.fill(), '*');
  EXPECT_EQ(stream.width(), 12);
  stream << 7;
  EXPECT_EQ(stream.str(), "  0:01:01:***********7");
}

TEST(ETraceElapsedTime, ChannelUsesItsTracersTime) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace("clock", &tracer);
  tracer.Pin(7200000);
  std::ostringstream stream;
  channel->WriteElapsedTime(stream);
  EXPECT_EQ(stream.str(), "  2:00:00:");
}

TEST(ETraceElapsedTime, TracerTimeBase) {
  RecordingTracer& tracer = FreshTracer();
  EXPECT_LT(tracer.GetElapsedTime(), 1000u);  // the zero time starts at construction
  tracer.Pin(5000);
  EXPECT_GE(tracer.GetElapsedTime(), 5000u);
  EXPECT_LT(tracer.GetElapsedTime(), 6000u);
  tracer.SetZeroTime();
  EXPECT_LT(tracer.GetElapsedTime(), 1000u);
  // A zero time ahead of the clock wraps in 32 bits.
  tracer.SetZeroTime(EGetTickCount() + 1000);
  EXPECT_GT(tracer.GetElapsedTime(), 0xFFFFFC18u - 1000u);
}

TEST(ETraceCopy, CopyIsAnUnregisteredSnapshot) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* channel = ETrace::GetTrace("copied", &tracer);
  ETrace::SetLevel("copied", 5, &tracer);
  ETrace copy(*channel);
  EXPECT_EQ(copy.GetName(), "copied");
  EXPECT_EQ(copy.GetTracer(), &tracer);
  EXPECT_EQ(copy.GetLevel(), 5);
  EXPECT_EQ(ETrace::GetTrace("copied", &tracer), channel);
  EXPECT_EQ(tracer.Names().size(), 1u);
  ETrace::SetLevel("copied", 1, nullptr);  // reaches only the registered channel
  EXPECT_EQ(copy.GetLevel(), 5);
  EXPECT_EQ(channel->GetLevel(), 1);
  tracer.Pin(0);
  copy.Trace(5, "from the copy");
  EXPECT_EQ(tracer.Lines(), std::vector<std::string>{"  0:00:00:copied from the copy"});
}

TEST(ETraceCopy, AssignmentAndSwap) {
  RecordingTracer& first = FreshTracer();
  RecordingTracer& second = FreshTracer();
  ETrace a("a", &first);
  ETrace b("b", &second);
  EXPECT_EQ(a.GetLevel(), 0);
  EXPECT_EQ(first.Names().size(), 0u);  // channels made directly are not announced
  ETrace* registered = ETrace::GetTrace("assigned", &second);
  ETrace::SetLevel("assigned", 4, &second);

  a = *registered;
  EXPECT_EQ(a.GetName(), "assigned");
  EXPECT_EQ(a.GetTracer(), &second);
  EXPECT_EQ(a.GetLevel(), 4);
  EXPECT_EQ(registered->GetName(), "assigned");
  EXPECT_EQ(registered->GetLevel(), 4);

  const ETrace& alias = a;
  a = alias;  // self-assignment takes the one lock twice in turn, never at once
  EXPECT_EQ(a.GetName(), "assigned");
  EXPECT_EQ(a.GetLevel(), 4);

  a.Swap(b);
  EXPECT_EQ(a.GetName(), "b");
  EXPECT_EQ(a.GetTracer(), &second);
  EXPECT_EQ(a.GetLevel(), 0);
  EXPECT_EQ(b.GetName(), "assigned");
  EXPECT_EQ(b.GetLevel(), 4);

  volatile ETrace shared("shared", &first);
  shared = b;
  EXPECT_EQ(shared.GetLevel(), 4);
  EXPECT_TRUE(shared.IsTraceable(4));
  EXPECT_FALSE(shared.IsTraceable(5));
}

TEST(ETraceCopy, ChannelWithoutTracerIsHarmless) {
  ETrace orphan("orphan", nullptr);
  EXPECT_FALSE(orphan.IsTraceable(1));
  orphan.Trace(0, "no tracer to write to");
  std::ostringstream stream;
  orphan.WriteElapsedTime(stream);
  EXPECT_EQ(stream.str(), "  0:00:00:");
}

TEST(EFileTracer, WritesOneTerminatedLinePerTrace) {
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  static std::deque<EFileTracer> tracers;  // never destroyed while the registry holds them
  tracers.emplace_back(file, true);
  EFileTracer& tracer = tracers.back();
  EXPECT_EQ(tracer.GetFile(), file);
  ETrace* channel = ETrace::GetTrace("FILE", &tracer);
  ETrace::SetLevel("FILE", 2, &tracer);
  channel->Trace(2, "one");
  channel->Trace(3, "dropped");
  channel->Trace(1, std::string("two"), "parts");
  std::rewind(file);
  char buffer[256] = {};
  const std::size_t read = std::fread(buffer, 1, sizeof buffer - 1, file);
  std::fclose(file);
  EXPECT_EQ(std::string(buffer, read), "  0:00:00:FILE one\n  0:00:00:FILE two parts\n");
}

// Several threads create channels, raise and lower levels, copy channels and trace at once.
TEST(ETraceConcurrency, ThreadsCreateSetAndTrace) {
  constexpr int kThreads = 4;
  constexpr int kNames = 6;
  constexpr int kRounds = 300;
  RecordingTracer* tracers[2] = {&FreshTracer(), &FreshTracer()};
  std::vector<std::vector<ETrace*>> seen(kThreads, std::vector<ETrace*>(2 * kNames, nullptr));
  std::atomic<bool> go(false);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      while (!go.load())
        std::this_thread::yield();
      for (int round = 0; round < kRounds; ++round) {
        const int n = (round + t) % kNames;
        const int which = (round / kNames + t) % 2;
        const std::string name = "concurrent." + std::to_string(n);
        ETrace* channel = ETrace::GetTrace(name, tracers[which]);
        ETrace*& slot = seen[t][which * kNames + n];
        if (slot == nullptr) slot = channel;
        EXPECT_EQ(slot, channel);
        ETrace::SetLevel(name, round % 9, (round % 3 == 0) ? nullptr : tracers[which]);
        channel->Trace(round % 9, "round", std::to_string(round));
        channel->Trace(4, std::string("fixed"));
        if (channel->IsTraceable(1)) {
          const ETrace copy(*channel);
          EXPECT_EQ(copy.GetName(), name);
        }
      }
    });
  }
  go = true;
  for (std::thread& thread : threads)
    thread.join();

  // Every thread saw the same channel for a pair, and each pair was announced exactly once.
  for (int slot = 0; slot < 2 * kNames; ++slot) {
    for (int t = 1; t < kThreads; ++t) {
      if (seen[0][slot] != nullptr && seen[t][slot] != nullptr) {
        EXPECT_EQ(seen[0][slot], seen[t][slot]);
      }
    }
  }
  for (RecordingTracer* tracer : tracers) {
    std::vector<std::string> names = tracer->Names();
    std::sort(names.begin(), names.end());
    ASSERT_EQ(names.size(), static_cast<std::size_t>(kNames));
    for (int n = 0; n < kNames; ++n)
      EXPECT_EQ(names[n], "concurrent." + std::to_string(n));
    for (const std::string& line : tracer->Lines())
      EXPECT_NE(line.find(":concurrent."), std::string::npos) << line;
  }
}

// A shared volatile channel is assigned from one thread while others read its threshold and
// the registry changes the source's level.
TEST(ETraceConcurrency, AssignmentWhileLevelsChange) {
  RecordingTracer& tracer = FreshTracer();
  ETrace* source = ETrace::GetTrace("assigned.concurrently", &tracer);
  volatile ETrace shared("shared", &tracer);
  std::atomic<bool> stop(false);
  std::thread setter([&] {
    for (int i = 0; i < 2000; ++i)
      ETrace::SetLevel("assigned.concurrently", i % 8, nullptr);
    stop = true;
  });
  std::thread reader([&] {
    while (!stop.load()) {
      const int level = shared.GetLevel();
      EXPECT_GE(level, 0);
      EXPECT_LE(level, 7);
    }
  });
  while (!stop.load())
    shared = *source;
  setter.join();
  reader.join();
  shared = *source;
  EXPECT_EQ(shared.GetLevel(), 1999 % 8);
}

}  // namespace
