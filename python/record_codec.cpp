#include "record_codec.h"

#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "eArchive.h"
#include "eBlob.h"

namespace eHal::python {

namespace {

// How many ThrowingScopes are alive on this thread.
thread_local unsigned int tThrowingDepth = 0;
// The handler installed before the module's, which the module's hands other errors to.
EArchive::SerializeErrorHandler gPreviousHandler = nullptr;

void HandleSerializeError(const char* file, int line, const char* function) {
  if (tThrowingDepth > 0)
    throw SerializeFailure(EArchive::SerializeErrorReport(file, line, function));
  if (gPreviousHandler != nullptr) gPreviousHandler(file, line, function);
  // Returning lets the library print its report and end the process, as without the module.
}

// The bytes of a record, or of a description, written into a fresh archive.
template <typename T>
std::string BytesOf(const T& value) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  archive << value;
  const EBlob& blob = archive.GetAsEBlob();
  return std::string(reinterpret_cast<const char*>(blob.GetData()), blob.GetSize());
}

// The emptied storing archives of this thread that no StoringArchive holds.
thread_local std::vector<std::unique_ptr<EArchive>> tSpareArchives;
// A spare archive keeps at most this much memory between calls.
constexpr unsigned int kLargestSpare = 1u << 20;

// Reads one record of the class from the bytes written into `written` as ERecordClass::Read
// reads a copy of them, but in place: terminated as a receiver stores them, then read from the
// start. Null when a read left the bytes; exceptions as the reader raises them.
std::unique_ptr<EAnyRecord> ReadWritten(const ERecordClass& recordClass, EArchive& written,
                                        std::size_t* consumed = nullptr) {
  const std::size_t size = written.GetAsEBlob().GetSize();
  if (size >= 0xFFFFFFFFu) throw BadInput("more than 4 GiB of archive bytes");
  const unsigned char terminator = 0;
  written.Append(1, &terminator);
  written.SetMode(eModeLoading);
  const ThrowingScope throwing;
  std::unique_ptr<EAnyRecord> record = recordClass.Create();
  written >> *record;
  // A read that ran past the bytes left the position beyond them; one that started over from
  // the first counted a wrap.
  if (written.GetReadPosition() > size || written.GetWrapCount() > 0) return nullptr;
  if (consumed != nullptr) *consumed = written.GetReadPosition();
  return record;
}

// The record of the class read from `bytes`, or null when a read left them.
std::unique_ptr<EAnyRecord> ReadRecord(const ERecordClass& recordClass, std::string_view bytes,
                                       std::size_t* consumed = nullptr) {
  if (bytes.size() >= 0xFFFFFFFFu) throw BadInput("more than 4 GiB of archive bytes");
  StoringArchive copy;
  copy.Archive().Append(static_cast<unsigned int>(bytes.size()),
                        reinterpret_cast<const unsigned char*>(bytes.data()));
  return ReadWritten(recordClass, copy.Archive(), consumed);
}

std::string NumberText(const ERecordValue& value) {
  return value.IsSigned() ? std::to_string(value.Signed()) : std::to_string(value.number);
}

// Where two descriptions first differ, as "Field.Inner[2]: given X, kept Y"; empty when alike.
std::string FirstDifference(const ERecordValue& given, const ERecordValue& kept,
                            const std::string& path) {
  const std::string here = path.empty() ? given.name : path;
  if (given.kind != kept.kind || given.items.size() != kept.items.size())
    return here + ": read back as a different shape";
  if (given.kind == ERecordValue::Kind::kNumber && given.number != kept.number)
    return here + ": given " + NumberText(given) + ", the record keeps " + NumberText(kept);
  if (given.bytes != kept.bytes) return here + ": the record keeps other bytes";
  for (std::size_t i = 0; i < given.items.size(); ++i) {
    const ERecordValue& item = given.items[i];
    const std::string itemPath = item.name.empty() ? here + "[" + std::to_string(i) + "]"
                                 : here.empty()    ? item.name
                                                   : here + "." + item.name;
    std::string difference = FirstDifference(item, kept.items[i], itemPath);
    if (!difference.empty()) return difference;
  }
  return "";
}

// The type of the list reached from a record of the description by `path`, as the description
// states it; null when the path leads elsewhere.
const EValueType* ListTypeAt(const ERecordDescription& description, const ERecordValue& value,
                             const std::vector<std::size_t>& path) {
  const ERecordDescription* record = &description;
  const EValueType* type = nullptr;
  const ERecordValue* here = &value;
  for (const std::size_t index : path) {
    if (index >= here->items.size()) return nullptr;
    here = &here->items[index];
    if (record != nullptr) {
      const EFieldDescription* field = record->FindField(here->name);
      if (field == nullptr) return nullptr;
      type = &field->type;
    } else if (type != nullptr && type->kind == EValueType::Kind::kList) {
      type = type->item.get();
    }
    record = type->kind == EValueType::Kind::kRecord ? &type->record() : nullptr;
  }
  return type != nullptr && type->kind == EValueType::Kind::kList ? type : nullptr;
}

}  // namespace

void InstallSerializeErrorHandler() {
  static const bool installed = [] {
    gPreviousHandler = EArchive::SetSerializeErrorHandler(&HandleSerializeError);
    return true;
  }();
  (void)installed;
}

ThrowingScope::ThrowingScope() {
  ++tThrowingDepth;
}

ThrowingScope::~ThrowingScope() {
  --tThrowingDepth;
}

std::string UnknownNameMessage(const std::string& what, std::string_view name,
                               const std::vector<std::string>& close, const std::string& hint) {
  std::string message = "unknown " + what + " " + ERecordValue::Quoted(name);
  if (close.empty()) return message + hint;
  message += "; close names:";
  for (const std::string& candidate : close)
    message += " " + candidate;
  return message;
}

const ERecordClass& ClassNamed(std::string_view name) {
  if (const ERecordClass* recordClass = ERecordRegistry::Find(name)) return *recordClass;
  throw UnknownName(UnknownNameMessage("record class", name, ERecordRegistry::CloseNames(name),
                                       "; see ehal.classes()"));
}

Decoded Decode(const ERecordClass& recordClass, std::string_view bytes) {
  std::size_t consumed = 0;
  std::unique_ptr<EAnyRecord> record = ReadRecord(recordClass, bytes, &consumed);
  if (record == nullptr)
    throw BadInput("input truncated: " + recordClass.name + " needs more than the " +
                   std::to_string(bytes.size()) + " bytes given");
  return {std::move(record), consumed};
}

const ERecordValue& FreshValue(const ERecordClass& recordClass) {
  static std::mutex mutex;
  static std::map<const ERecordClass*, ERecordValue> fresh;
  const std::lock_guard<std::mutex> lock(mutex);
  const auto found = fresh.find(&recordClass);
  if (found != fresh.end()) return found->second;
  return fresh.emplace(&recordClass, ERecordValue::Of(*recordClass.Create())).first->second;
}

std::string Encode(const ERecordClass& recordClass, const ERecordValue& value) {
  const std::string given = Written(value);
  const std::unique_ptr<EAnyRecord> record = ReadRecord(recordClass, given);
  if (record == nullptr) throw BadInput("the values do not form a " + recordClass.name + " record");
  std::string written = BytesOf(*record);
  // The record kept every value as given exactly when it writes the bytes it read.
  if (written == given) return written;
  const std::string difference = FirstDifference(value, ERecordValue::Of(*record), "");
  throw BadInput(recordClass.name + (difference.empty()
                                         ? ": the record writes other bytes than the values give"
                                         : "." + difference));
}

std::string Written(const ERecordValue& value) {
  return BytesOf(value);
}

StoringArchive::StoringArchive() {
  if (tSpareArchives.empty()) {
    m_Archive = std::make_unique<EArchive>();
    m_Archive->SetMode(eModeStoring);
    return;
  }
  m_Archive = std::move(tSpareArchives.back());
  tSpareArchives.pop_back();
}

StoringArchive::~StoringArchive() {
  if (m_Archive->GetAsEBlob().Room() > kLargestSpare) return;
  // Emptying keeps the allocation for the next call.
  m_Archive->Empty();
  m_Archive->SetMode(eModeStoring);
  tSpareArchives.push_back(std::move(m_Archive));
}

std::string_view StoringArchive::Bytes() const {
  const EBlob& blob = m_Archive->GetAsEBlob();
  return blob.GetView();
}

bool KeepsWritten(const ERecordClass& recordClass, EArchive& written) {
  const std::size_t size = written.GetAsEBlob().GetSize();
  const std::unique_ptr<EAnyRecord> record = ReadWritten(recordClass, written);
  if (record == nullptr) return false;
  StoringArchive again;
  again.Archive() << *record;
  return again.Bytes() == written.GetAsEBlob().GetView().substr(0, size);
}

std::optional<ERecordValue> ListItem(const ERecordClass& recordClass, const ERecordValue& value,
                                     const std::vector<std::size_t>& path) {
  const EValueType* list = ListTypeAt(*recordClass.description, value, path);
  if (list == nullptr) return std::nullopt;
  return ERecordValue::OfType(*list->item);
}

unsigned int FirstNumber(std::string_view bytes) {
  const std::optional<unsigned int> number = ERecordRegistry::FirstNumber(bytes);
  if (!number) throw BadInput("no number in the input");
  return *number;
}

}  // namespace eHal::python
