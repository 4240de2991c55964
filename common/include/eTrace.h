// Named trace channels with a severity threshold each, bound to an application-supplied sink
// (ETracer). A process-wide registry hands out one channel per (name, tracer) pair, so every
// component asking for the same channel shares its threshold.
#pragma once

#include <atomic>
#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include "eLock.h"

class EStringList;

// Upper-case form of one character under the classic "C" locale.
char Etoupper(char c);

// Sink of trace lines and owner of the time base of its channels. Applications derive their
// tracers from it; it must be safe to call from several threads at once.
class ETracer {
 public:
  // The zero time starts at construction.
  ETracer();
  virtual ~ETracer();

  // Receives one finished line; the line carries no terminator.
  virtual void Write(const char* line) = 0;
  // Told that a channel of this name was just created for this tracer; does nothing by default.
  // Called with no lock held, so it may set levels or ask for channels itself.
  virtual void NewTrace(std::string name);

  // Elapsed time restarts from now.
  void SetZeroTime();
  // Elapsed time restarts from the given tick count (lets several tracers share a time base).
  void SetZeroTime(unsigned int tickCount);
  // Milliseconds since the zero time, in unsigned 32-bit arithmetic (wraps after ~49.7 days).
  unsigned int GetElapsedTime() const;

 private:
  std::atomic<unsigned int> m_ZeroTime;
};

class ETrace {
 public:
  struct LevelName {
    int level;
    const char* name;
  };
  // Severity levels: a smaller number is more severe; 0 is silent.
  static constexpr int NLevels = 8;
  static const LevelName Levels[NLevels];

  using TracerMap = std::map<ETracer*, boost::shared_ptr<ETrace>>;
  using Registry = std::map<std::string, TracerMap>;
  // Every channel by name, then by tracer; owns the channels until process exit. Guarded by
  // aLock, which is always taken before any channel's own lock.
  static Registry m_Assoc;
  static ELock aLock;

  // The channel for (name, tracer), created on first request with threshold 0; the tracer's
  // NewTrace is then called after the registry is unlocked. The pointer stays valid until
  // process exit. `tracer` must not be null when the channel may be created.
  static ETrace* GetTrace(const std::string& name, ETracer* tracer);
  // A null name is taken as the empty name.
  static ETrace* GetTrace(const char* name, ETracer* tracer);
  // Sets the threshold of the existing channels called exactly `name`: of `tracer` only, or of
  // every tracer when `tracer` is null. Unknown names and tracers are ignored; the level is
  // stored without a range check.
  static void SetLevel(const std::string& name, int level, ETracer* tracer);
  static void SetLevel(const char* name, int level, ETracer* tracer);
  // Level number of a level name, case-insensitive ("info" gives 6); 0 when unknown.
  static int NameToLevel(const std::string& name);

  // A channel outside the registry, with threshold 0.
  ETrace(const std::string& name, ETracer* tracer);
  // Copies tracer, level and name under the source's lock; the copy has its own lock and is not
  // entered in the registry.
  ETrace(const volatile ETrace& other);
  // Copies the source under its lock, then swaps the copy in under this channel's lock; the two
  // locks are never held together. Returns the channel without its volatile qualifier, so
  // that plain assignment statements need no cast.
  ETrace& operator=(const volatile ETrace& other) volatile;
  ~ETrace();

  // Exchanges tracer, level and name without locking.
  void Swap(ETrace& other);

  // True when a message of `level` passes the threshold (threshold >= level).
  bool IsTraceable(int level) const volatile;

  // When `level` passes, hands the tracer one line: elapsed time, channel name, then each piece
  // preceded by a blank. A null text piece ends the line before it (its blank is kept).
  void Trace(int level, const char* text);
  void Trace(int level, const std::string& text);
  void Trace(int level, const std::string& first, const char* second);
  void Trace(int level, const std::string& first, const std::string& second);
  // The list's items are joined without separators.
  void Trace(int level, const EStringList& list);
  void Trace(int level, const std::string& first, const EStringList& list);

  // Writes the tracer's elapsed time as "HHH:MM:SS:" (hours blank-padded to width 3 and never
  // reduced, so they may widen); the stream's fill and width are left as they were.
  void WriteElapsedTime(std::ostream& stream) const;
  // The same form for a given number of milliseconds.
  static void WriteElapsedTime(std::ostream& stream, unsigned int milliseconds);

  const std::string& GetName() const { return m_Name; }
  ETracer* GetTracer() const { return m_Tracer; }
  // The threshold, read under the channel's lock.
  int GetLevel() const volatile;

 private:
  // One piece of text of a message; a null `data` ends the line.
  struct Piece {
    Piece(const char* text);
    Piece(const std::string& text) : data(text.data()), size(text.size()) {}
    const char* data;
    std::size_t size;
  };
  // Formats the line from the pieces and hands it to the tracer; called once the level passed.
  void Deliver(const Piece* pieces, int count);
  // Stores the threshold under the channel's lock.
  void StoreLevel(int level) volatile;

  ETracer* m_Tracer;
  int m_Level;
  ELock m_Lock;
  std::string m_Name;
};
