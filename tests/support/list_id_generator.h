// The identifier generator's operations as a literal walk over a list of free ranges, step by
// step as they are defined ("the first range whose last is at least n"). The reference that the
// differential test and the benchmark hold the library's generator (an ordered map) against.
#pragma once

#include <iterator>
#include <list>
#include <utility>

#include "eUniqueIDGenerator.h"

class ListGenerator {
 public:
  using Range = EUniqueIDGenerator::IDRange;

  // Every identifier but 0 free, last identifier 0.
  ListGenerator() = default;
  // The given free ranges (disjoint, ascending) and last identifier.
  ListGenerator(std::list<Range> ranges, unsigned int last)
      : m_Ranges(std::move(ranges)), m_Last(last) {}

  unsigned int ReserveNewID() {
    const unsigned int candidate = m_Last == EUniqueIDGenerator::MaxIDValue ? 1 : m_Last + 1;
    m_Last = 0;
    if (m_Ranges.empty()) return 0;
    auto range = FirstEndingAtOrAbove(candidate);
    bool wrapped = false;
    if (range == m_Ranges.end()) {
      range = m_Ranges.begin();
      wrapped = true;
    }
    const unsigned int id = !wrapped && candidate > range->first ? candidate : range->first;
    Take(range, id);
    m_Last = id;
    return id;
  }

  bool ReserveID(unsigned int id) {
    if (m_Ranges.empty()) return false;
    const auto range = FirstEndingAtOrAbove(id);
    if (range == m_Ranges.end() || range->first > id) return false;
    Take(range, id);
    m_Last = id;
    return true;
  }

  void UnReserveID(unsigned int id) {
    if (id == 0) return;
    if (m_Ranges.empty()) return;
    const auto range = FirstEndingAtOrAbove(id - 1);
    if (range == m_Ranges.end()) return;
    if (range->last == id - 1) {
      range->last = id;
      const auto next = std::next(range);
      if (next != m_Ranges.end() && next->first == id + 1) {
        range->last = next->last;
        m_Ranges.erase(next);
      }
    } else if (range->first == id + 1) {
      range->first = id;
    } else if (range->first <= id && id <= range->last) {
      // already free
    } else {
      m_Ranges.insert(range, Range(id, id));
    }
  }

  void Empty() {
    m_Ranges.assign(1, Range());
    m_Last = 0;
  }

  unsigned int GetNextID() const { return m_Last + 1; }
  unsigned int GetLastID() const { return m_Last; }
  const std::list<Range>& GetRanges() const { return m_Ranges; }

 private:
  std::list<Range>::iterator FirstEndingAtOrAbove(unsigned int id) {
    auto range = m_Ranges.begin();
    while (range != m_Ranges.end() && range->last < id)
      ++range;
    return range;
  }

  // Takes `id`, which lies in `range`, out of it.
  void Take(std::list<Range>::iterator range, unsigned int id) {
    if (range->first == range->last) {
      m_Ranges.erase(range);
    } else if (id == range->first) {
      range->first += 1;
    } else if (id == range->last) {
      range->last -= 1;
    } else {
      m_Ranges.insert(range, Range(range->first, id - 1));
      range->first = id + 1;
    }
  }

  std::list<Range> m_Ranges = std::list<Range>(1, Range());
  unsigned int m_Last = 0;
};
