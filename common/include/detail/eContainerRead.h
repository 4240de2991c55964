// The steps every container reader shares: how much data is left, whether a read has run past
// the end, the loop that reads a counted list no further than the data, and the map's first steps
// and entry. eArchive.h includes this before it defines EArchive, so each is a template over the
// archive; not part of the interface.
#pragma once

#include <cstddef>
#include <map>
#include <utility>

namespace eHal::detail {

// The bytes between the read position and the end. Every element takes at least two of them (a
// digit and a blank), so no more than half of them is ever reserved from an untrusted count.
template <typename Archive>
std::size_t RemainingBytes(const Archive& archive) {
  const unsigned int size = archive.GetAsEBlob().GetSize();
  const unsigned int position = archive.GetReadPosition();
  return position < size ? size - position : 0;
}

// True when the last read ran past the end of the data: the next one would start over from the
// beginning of the archive.
template <typename Archive>
bool ReadPastEnd(const Archive& archive) {
  return archive.GetReadPosition() > archive.GetAsEBlob().GetSize();
}

// Calls `readOne(i)` for i from 0 below `count`, stopping early once a read has run past the end
// of the data: the items the data holds are all consumed, and a hostile count cannot keep a reader
// going round the same bytes for billions of rounds. An item whose later reads started over from
// the beginning (a wrap) has run past the end too. The item during which that happened is the
// last one, and is kept as it was read (zeros where its reads found nothing).
template <typename Archive, typename ReadOne>
void ReadCounted(Archive& archive, unsigned int count, ReadOne&& readOne) {
  const unsigned int wraps = archive.GetWrapCount();
  for (unsigned int i = 0; i < count; ++i) {
    if (ReadPastEnd(archive) || archive.GetWrapCount() != wraps) return;
    readOne(i);
  }
}

// The map reader's first steps: the map is cleared, then a storing archive is refused.
template <typename Archive, typename KeyType, typename ItemType>
void StartMapRead(Archive& archive, std::map<KeyType, ItemType>& items) {
  items.clear();
  if (archive.IsStoring()) {
    Archive::SerializeError("common/include/eArchive", 285,
                            "template<KeyType,ItemType> SerializeIn(..,map)");
  }
}

// Reads one pair into a fresh key and a fresh value and stores it, replacing the value of an
// equal key: with a repeated key the last pair wins.
template <typename Archive, typename KeyType, typename ItemType>
void ReadMapEntry(Archive& archive, std::map<KeyType, ItemType>& items) {
  KeyType key{};
  ItemType item{};
  archive >> key >> item;
  items.insert_or_assign(std::move(key), std::move(item));
}

}  // namespace eHal::detail
