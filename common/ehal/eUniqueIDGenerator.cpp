#include "eUniqueIDGenerator.h"

#include <iterator>
#include <utility>

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Kept;
using eHal::detail::kUnsigned;
using eHal::detail::Layout;
using eHal::detail::ZeroEndedCodec;

namespace {

using RangeMap = std::map<unsigned int, unsigned int>;

// Moves the range at `range` to end at `last`; its neighbours keep it in order.
void MoveLast(RangeMap& ranges, RangeMap::iterator range, unsigned int last) {
  const auto next = std::next(range);
  auto node = ranges.extract(range);
  node.key() = last;
  ranges.insert(next, std::move(node));
}

// One free range as it travels: its first identifier, then its last (the map holds it as last
// to first).
struct FreeRange {
  static void Write(EArchive& archive, const RangeMap::value_type& range) {
    kUnsigned.Write(archive, range.second);
    kUnsigned.Write(archive, range.first);
  }
  // Keeps the range only when it is well formed and lies above the ranges read before it, and
  // joins it to one that ends just below it, so that the free ranges stay disjoint, ascending and
  // apart whatever the stream holds (a generator never writes them otherwise).
  static void ReadRest(EArchive& archive, unsigned int first, RangeMap& ranges) {
    const unsigned int last = archive.ReadUnsignedInt();
    if (last < first) return;
    if (ranges.empty()) {
      ranges.emplace(last, first);
      return;
    }
    const auto previous = std::prev(ranges.end());
    if (first <= previous->first) return;
    if (first == previous->first + 1) {
      MoveLast(ranges, previous, last);
      return;
    }
    ranges.emplace_hint(ranges.end(), last, first);
  }
  static void Describe(ERecordVisitor& visitor, const char* name,
                       const RangeMap::value_type& range) {
    visitor.BeginRecord(name);
    kUnsigned.Describe(visitor, "First", range.second);
    kUnsigned.Describe(visitor, "Last", range.first);
    visitor.EndRecord();
  }
  static EValueType Type() { return EValueType::Record(&Kept<FreeRange>); }
  static ERecordDescription Description() {
    ERecordDescription range;
    range.fields = {{"First", kUnsigned.Type()}, {"Last", kUnsigned.Type()}};
    return range;
  }
};

}  // namespace

// The last identifier, then the free ranges in ascending order, ended by a 0 (ReservedIDValue)
// where the next range's first would stand.
struct EUniqueIDGenerator::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("LastId", &EUniqueIDGenerator::m_LastId),
      Field("FreeRanges", &EUniqueIDGenerator::m_FreeRanges, ZeroEndedCodec<FreeRange>{}));
  static constexpr Layout kLayouts[] = {{0x1101001}};
  // A stream with no free range gives the default range.
  static constexpr auto kAfterRead = &EUniqueIDGenerator::FreeEverythingWhenNoneFree;
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eUniqueIDGenerator", 101,
                                              "EUniqueIDGenerator::SerializeIn"};
};

EUniqueIDGenerator::EUniqueIDGenerator() {
  FreeEverything();
}

void EUniqueIDGenerator::FreeEverythingWhenNoneFree() {
  if (m_FreeRanges.empty()) FreeEverything();
}

void EUniqueIDGenerator::FreeEverything() {
  const IDRange everything;
  m_FreeRanges.clear();
  m_FreeRanges.emplace(everything.last, everything.first);
}

void EUniqueIDGenerator::Empty() {
  FreeEverything();
  m_LastId = ReservedIDValue;
}

void EUniqueIDGenerator::Swap(EUniqueIDGenerator& other) {
  m_FreeRanges.swap(other.m_FreeRanges);
  std::swap(m_LastId, other.m_LastId);
}

// Next fit: the candidate is the identifier after the last one handed out. The range found is
// the first whose last is at least the candidate; past the top the search wraps around to the
// lowest range. A candidate inside the range above its first is handed out, else the range's
// first.
unsigned int EUniqueIDGenerator::ReserveNewID() {
  const unsigned int candidate = m_LastId == MaxIDValue ? 1 : m_LastId + 1;
  m_LastId = ReservedIDValue;
  if (m_FreeRanges.empty()) return ReservedIDValue;
  auto range = m_FreeRanges.lower_bound(candidate);
  const bool wrapped = range == m_FreeRanges.end();
  if (wrapped) range = m_FreeRanges.begin();
  const unsigned int id = !wrapped && range->second < candidate ? candidate : range->second;
  Take(range, id);
  m_LastId = id;
  return id;
}

bool EUniqueIDGenerator::ReserveID(unsigned int id) {
  const auto range = m_FreeRanges.lower_bound(id);
  if (range == m_FreeRanges.end() || range->second > id) return false;
  Take(range, id);
  m_LastId = id;
  return true;
}

// Looks at the first range whose last is at least id - 1: one ending just below id grows over
// it (and merges with a successor starting just above), one starting just above grows down to
// it, one holding it is left alone; otherwise [id, id] goes in before it. An id more than one
// above the highest free range is not returned, nor is any id while nothing is free.
void EUniqueIDGenerator::UnReserveID(unsigned int id) {
  if (id == ReservedIDValue || m_FreeRanges.empty()) return;
  const auto range = m_FreeRanges.lower_bound(id - 1);
  if (range == m_FreeRanges.end()) return;
  if (range->first == id - 1) {
    const auto next = std::next(range);
    if (next != m_FreeRanges.end() && next->second == id + 1) {
      next->second = range->second;
      m_FreeRanges.erase(range);
    } else {
      MoveLast(m_FreeRanges, range, id);
    }
    return;
  }
  if (range->second == id + 1) {
    range->second = id;
    return;
  }
  if (range->second <= id) return;  // already free
  m_FreeRanges.emplace_hint(range, id, id);
}

void EUniqueIDGenerator::Take(Ranges::iterator range, unsigned int id) {
  const unsigned int first = range->second;
  const unsigned int last = range->first;
  if (first == last) {
    m_FreeRanges.erase(range);
  } else if (id == first) {
    range->second = first + 1;
  } else if (id == last) {
    MoveLast(m_FreeRanges, range, last - 1);
  } else {
    m_FreeRanges.emplace_hint(range, id - 1, first);
    range->second = id + 1;
  }
}

template class ERecord<EUniqueIDGenerator>;
