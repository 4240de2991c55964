#include "eStringList.h"

#include "eArchive.h"

namespace {
constexpr unsigned int kSignature = 0x11180000;
}  // namespace

EStringList::EStringList(const EStringList& other) {
  Copy(other);
}

EStringList& EStringList::operator=(const EStringList& other) {
  Copy(other);
  return *this;
}

void EStringList::Copy(const EStringList& other) {
  if (this == &other) return;
  Empty();
  m_Items = other.m_Items;
}

void EStringList::Add(const std::string& text) {
  m_Items.push_back(text);
}

void EStringList::Add(const char* text) {
  m_Items.emplace_back(text != nullptr ? text : "");
}

void EStringList::Empty() {
  m_Items.clear();
}

unsigned int EStringList::GetCount() const {
  return static_cast<unsigned int>(m_Items.size());
}

const char* EStringList::GetNext(Position& position) const {
  if (position == m_Items.end()) return nullptr;
  const char* const text = position->c_str();
  ++position;
  return text;
}

const char* EStringList::GetHeadItem() const {
  return m_Items.empty() ? nullptr : m_Items.front().c_str();
}

std::string EStringList::GetString() const {
  std::string text;
  for (const std::string& item : m_Items)
    text += item;
  return text;
}

void EStringList::SerializeOut(EArchive& archive) const {
  archive.WriteUnsignedInt(kSignature);
  archive.WriteUnsignedInt(GetCount());
  for (const std::string& item : m_Items)
    archive << item;
}

void EStringList::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eStringList", 122, "EStringList::SerializeIn");
  }
  const unsigned int count = archive.ReadUnsignedInt();
  for (unsigned int i = 0; i < count; ++i) {
    std::string item;
    archive >> item;
    m_Items.push_back(std::move(item));
  }
}

EArchive& operator<<(EArchive& archive, const EStringList& list) {
  list.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EStringList& list) {
  list.SerializeIn(archive);
  return archive;
}
