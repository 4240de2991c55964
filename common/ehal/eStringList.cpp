#include "eStringList.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::kUnsigned;
using eHal::detail::Layout;
using eHal::detail::TextCodec;

namespace {

// The items: their count as unsigned 32-bit, then each string. The reader appends.
struct Items {
  static void Write(EArchive& archive, const std::list<std::string>& items) {
    kUnsigned.Write(archive, items.size());
    for (const std::string& item : items)
      archive << item;
  }
  static void Read(EArchive& archive, std::list<std::string>& items) {
    const unsigned int count = archive.ReadUnsignedInt();
    for (unsigned int i = 0; i < count; ++i) {
      items.emplace_back();
      archive >> items.back();
    }
  }
  static void Describe(ERecordVisitor& visitor, const char* name,
                       const std::list<std::string>& items) {
    visitor.BeginList(name, ECountWire::kUnsigned32, items.size());
    for (const std::string& item : items)
      visitor.Text("", item);
    visitor.EndList();
  }
  static EValueType Type() { return EValueType::List(ECountWire::kUnsigned32, TextCodec::Type()); }
};

}  // namespace

struct EStringList::Schema {
  static constexpr auto kFields = std::make_tuple(Field("Items", &EStringList::m_Items, Items{}));
  static constexpr Layout kLayouts[] = {{0x11180000}};
  static constexpr ENumberWire kSignatureWire = ENumberWire::kUnsigned32;
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eStringList", 122,
                                              "EStringList::SerializeIn"};
};

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

template class ERecord<EStringList>;
