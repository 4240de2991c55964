#include "eTrace.h"

#include <cstring>
#include <locale>
#include <ostream>

#include "detail/eDigits.h"
#include "eStringList.h"
#include "eTickCount.h"

namespace {

// Longest elapsed-time text: four hour digits (the 32-bit tick difference stays below 1194
// hours) and ":MM:SS:", plus room to spare.
constexpr std::size_t kElapsedTimeSize = 16;

// Writes "HHH:MM:SS:" for `milliseconds` into `out`: hours right-aligned in three columns with
// blanks (wider when they need more digits), minutes and seconds as two digits; the
// milliseconds are dropped. Returns the number of characters written.
std::size_t FormatElapsedTime(unsigned int milliseconds, char* out) {
  const unsigned int seconds = milliseconds / 1000;
  const unsigned int minutes = seconds / 60;
  const unsigned int hours = minutes / 60;
  std::size_t length = 0;
  for (unsigned int pad = eHal::detail::DigitCount(hours); pad < 3; ++pad)
    out[length++] = ' ';
  length = static_cast<std::size_t>(eHal::detail::WriteDecimal(out + length, hours) - out);
  for (const unsigned int part : {minutes % 60, seconds % 60}) {
    out[length++] = ':';
    out[length++] = eHal::detail::kDigitPairs[2 * part];
    out[length++] = eHal::detail::kDigitPairs[2 * part + 1];
  }
  out[length++] = ':';
  return length;
}

// Builds one trace line; short lines stay in a buffer on the stack, longer ones move to the heap.
class LineBuffer {
 public:
  void Append(const char* data, std::size_t size) {
    if (!m_OnHeap && m_Size + size < sizeof m_Stack) {
      std::memcpy(m_Stack + m_Size, data, size);
      m_Size += size;
      m_Stack[m_Size] = '\0';
      return;
    }
    if (!m_OnHeap) {
      m_Heap.assign(m_Stack, m_Size);
      m_OnHeap = true;
    }
    m_Heap.append(data, size);
  }
  const char* Text() const { return m_OnHeap ? m_Heap.c_str() : m_Stack; }

 private:
  char m_Stack[256] = {'\0'};
  std::size_t m_Size = 0;
  bool m_OnHeap = false;
  std::string m_Heap;
};

}  // namespace

char Etoupper(char c) {
  return std::use_facet<std::ctype<char>>(std::locale::classic()).toupper(c);
}

// ---------------------------------------------------------------------------------------------
// ETracer

ETracer::ETracer() : m_ZeroTime(EGetTickCount()) {}

ETracer::~ETracer() = default;

void ETracer::NewTrace(std::string) {}

void ETracer::SetZeroTime() {
  SetZeroTime(EGetTickCount());
}

void ETracer::SetZeroTime(unsigned int tickCount) {
  m_ZeroTime.store(tickCount, std::memory_order_relaxed);
}

unsigned int ETracer::GetElapsedTime() const {
  return EGetTickCount() - m_ZeroTime.load(std::memory_order_relaxed);
}

// ---------------------------------------------------------------------------------------------
// ETrace: registry and levels

const ETrace::LevelName ETrace::Levels[ETrace::NLevels] = {
    {1, "CRITICAL"}, {2, "ERROR"}, {3, "ALERT"}, {4, "WARNING"},
    {5, "ANNOUNCE"}, {6, "INFO"},  {7, "DEBUG"}, {8, "LOWDEBUG"}};

ETrace::Registry ETrace::m_Assoc;
ELock ETrace::aLock;

ETrace* ETrace::GetTrace(const std::string& name, ETracer* tracer) {
  ETrace* channel = nullptr;
  {
    EScopedLock registry(aLock);
    const Registry::iterator byName = m_Assoc.find(name);
    if (byName != m_Assoc.end()) {
      const TracerMap::iterator byTracer = byName->second.find(tracer);
      if (byTracer != byName->second.end()) channel = byTracer->second.get();
    }
    if (channel != nullptr) return channel;
    const boost::shared_ptr<ETrace> created(new ETrace(name, tracer));
    m_Assoc[name][tracer] = created;
    channel = created.get();
  }
  // Only a new channel gets here; the tracer hears of it with the registry unlocked, so it may
  // set levels or ask for channels from inside NewTrace.
  tracer->NewTrace(name);
  return channel;
}

ETrace* ETrace::GetTrace(const char* name, ETracer* tracer) {
  return GetTrace(std::string(name != nullptr ? name : ""), tracer);
}

void ETrace::SetLevel(const std::string& name, int level, ETracer* tracer) {
  EScopedLock registry(aLock);
  const Registry::iterator byName = m_Assoc.find(name);
  if (byName == m_Assoc.end()) return;
  if (tracer == nullptr) {
    for (const TracerMap::value_type& entry : byName->second)
      entry.second->StoreLevel(level);
    return;
  }
  const TracerMap::iterator byTracer = byName->second.find(tracer);
  if (byTracer != byName->second.end()) byTracer->second->StoreLevel(level);
}

void ETrace::SetLevel(const char* name, int level, ETracer* tracer) {
  SetLevel(std::string(name != nullptr ? name : ""), level, tracer);
}

int ETrace::NameToLevel(const std::string& name) {
  std::string upper(name);
  for (char& c : upper)
    c = Etoupper(c);
  for (const LevelName& row : Levels) {
    if (upper == row.name) return row.level;
  }
  return 0;
}

// ---------------------------------------------------------------------------------------------
// ETrace: one channel

ETrace::ETrace(const std::string& name, ETracer* tracer)
    : m_Tracer(tracer), m_Level(0), m_Name(name) {}

ETrace::ETrace(const volatile ETrace& other) : m_Tracer(nullptr), m_Level(0) {
  ELockedPtr<const ETrace> source(other, other.m_Lock);
  m_Tracer = source->m_Tracer;
  m_Level = source->m_Level;
  m_Name = source->m_Name;
}

ETrace& ETrace::operator=(const volatile ETrace& other) volatile {
  ETrace copy(other);  // the source's lock is released again before ours is taken
  ELockedPtr<ETrace> self(*this, m_Lock);
  self->Swap(copy);
  return *self;
}

ETrace::~ETrace() = default;

void ETrace::Swap(ETrace& other) {
  std::swap(m_Tracer, other.m_Tracer);
  std::swap(m_Level, other.m_Level);
  m_Name.swap(other.m_Name);
}

bool ETrace::IsTraceable(int level) const volatile {
  ELockedPtr<const ETrace> self(*this, m_Lock);
  return self->m_Level >= level;
}

int ETrace::GetLevel() const volatile {
  ELockedPtr<const ETrace> self(*this, m_Lock);
  return self->m_Level;
}

void ETrace::StoreLevel(int level) volatile {
  ELockedPtr<ETrace> self(*this, m_Lock);
  self->m_Level = level;
}

ETrace::Piece::Piece(const char* text)
    : data(text), size(text != nullptr ? std::strlen(text) : 0) {}

void ETrace::Trace(int level, const char* text) {
  if (!IsTraceable(level)) return;
  const Piece pieces[] = {text};
  Deliver(pieces, 1);
}

void ETrace::Trace(int level, const std::string& text) {
  if (!IsTraceable(level)) return;
  const Piece pieces[] = {text};
  Deliver(pieces, 1);
}

void ETrace::Trace(int level, const std::string& first, const char* second) {
  if (!IsTraceable(level)) return;
  const Piece pieces[] = {first, second};
  Deliver(pieces, 2);
}

void ETrace::Trace(int level, const std::string& first, const std::string& second) {
  if (!IsTraceable(level)) return;
  const Piece pieces[] = {first, second};
  Deliver(pieces, 2);
}

void ETrace::Trace(int level, const EStringList& list) {
  if (!IsTraceable(level)) return;
  const std::string joined = list.GetString();
  const Piece pieces[] = {joined};
  Deliver(pieces, 1);
}

void ETrace::Trace(int level, const std::string& first, const EStringList& list) {
  if (!IsTraceable(level)) return;
  const std::string joined = list.GetString();
  const Piece pieces[] = {first, joined};
  Deliver(pieces, 2);
}

void ETrace::Deliver(const Piece* pieces, int count) {
  // A channel made directly may have been given no tracer; its lines go nowhere.
  if (m_Tracer == nullptr) return;
  LineBuffer line;
  char elapsed[kElapsedTimeSize];
  line.Append(elapsed, FormatElapsedTime(m_Tracer->GetElapsedTime(), elapsed));
  line.Append(m_Name.data(), m_Name.size());
  for (int i = 0; i < count; ++i) {
    line.Append(" ", 1);
    if (pieces[i].data == nullptr) break;  // a null piece ends the line, as a failed stream would
    line.Append(pieces[i].data, pieces[i].size);
  }
  m_Tracer->Write(line.Text());
}

void ETrace::WriteElapsedTime(std::ostream& stream) const {
  WriteElapsedTime(stream, m_Tracer != nullptr ? m_Tracer->GetElapsedTime() : 0);
}

void ETrace::WriteElapsedTime(std::ostream& stream, unsigned int milliseconds) {
  char elapsed[kElapsedTimeSize + 1];
  elapsed[FormatElapsedTime(milliseconds, elapsed)] = '\0';
  const std::streamsize width = stream.width(0);
  const char fill = stream.fill();
  stream << elapsed;
  stream.width(width);
  stream.fill(fill);
}
