// The operations of EStatsRecord that walk a record's schema: its counters and its fields.
// Internal to the library; a statistics record's source file includes it, defines its schema and
// instantiates EStatsRecord there.
#pragma once

#include <cstddef>
#include <list>
#include <tuple>
#include <type_traits>
#include <utility>

#include "eRecordSchema.h"
#include "eStatsRecord.h"

namespace eHal::detail {

template <typename Schema, std::size_t... I>
constexpr int CountCounters(std::index_sequence<I...>) {
  using Fields = std::decay_t<decltype(Schema::kFields)>;
  return (0 + ... + (std::tuple_element_t<I, Fields>::kCounter ? 1 : 0));
}

// How many fields of the schema are counters.
template <typename Schema>
constexpr int kCounterCount =
    CountCounters<Schema>(std::make_index_sequence<kFieldCount<Schema>>{});

}  // namespace eHal::detail

template <typename Derived>
void EStatsRecord<Derived>::FillListWithAllIds(std::list<int>& ids) const {
  for (int id = 0; id < eHal::detail::kCounterCount<typename Derived::Schema>; ++id)
    ids.push_back(id);
}

template <typename Derived>
Derived EStatsRecord<Derived>::operator+(const Derived& other) const {
  const Derived& self = static_cast<const Derived&>(*this);
  Derived sum;
  eHal::detail::ForEachField<typename Derived::Schema>([&](const auto& field) {
    if constexpr (std::decay_t<decltype(field)>::kCounter) {
      static_assert(std::is_same_v<std::decay_t<decltype(sum.*field.member)>, unsigned int>,
                    "a counter is an unsigned 32-bit number");
      sum.*field.member = self.*field.member + other.*field.member;
    }
  });
  return sum;
}

template <typename Derived>
bool EStatsRecord<Derived>::operator==(const Derived& other) const {
  return eHal::detail::SameFields<typename Derived::Schema>(static_cast<const Derived&>(*this),
                                                            other);
}

template <typename Derived>
bool EStatsRecord<Derived>::operator!=(const Derived& other) const {
  return !(*this == other);
}
