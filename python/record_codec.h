// The Python module's work on records, free of Python: reading one record of a registered class
// from archive bytes into its description, writing a description back through the record's own
// reader and writer, and making a fresh item of a list from the class's description. Serialisation
// errors become exceptions here, on the threads inside the module only. The archives used are
// the thread's spare ones, so that a call allocates none after the first.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "eRecordRegistry.h"
#include "eRecordValue.h"

namespace eHal::python {

// A serialisation error met inside the module; what() is the library's report text.
class SerializeFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Bytes that end before the record does, or that a record does not read as given.
class BadInput : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

// Installs the module's serialisation error handler once per process. Inside a ThrowingScope it
// throws SerializeFailure; on any other thread, or outside the module, it hands the error to the
// handler installed before it, and otherwise lets the library print its report and exit as it
// always does. So other C++ users of the process see no change.
void InstallSerializeErrorHandler();

// While alive, serialisation errors on this thread throw SerializeFailure.
class ThrowingScope {
 public:
  ThrowingScope();
  ~ThrowingScope();
  ThrowingScope(const ThrowingScope&) = delete;
  ThrowingScope& operator=(const ThrowingScope&) = delete;
};

// A class or field name that does not exist; what() names the close ones.
class UnknownName : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The message for an unknown name: what it is, the name, and the close names or `hint`.
std::string UnknownNameMessage(const std::string& what, std::string_view name,
                               const std::vector<std::string>& close, const std::string& hint);

// The registered class of that name; UnknownName naming the close names when there is none.
const ERecordClass& ClassNamed(std::string_view name);

// One record read from the start of some bytes, and the bytes its reader took.
struct Decoded {
  std::unique_ptr<EAnyRecord> record;
  std::size_t consumed;
};

// Reads one record of the class from `bytes` as a receiver loads them. Bytes that end before
// the record does are BadInput; a signature the class does not accept is SerializeFailure.
Decoded Decode(const ERecordClass& recordClass, std::string_view bytes);

// The description of a fresh record of the class (kept per class: it never changes).
const ERecordValue& FreshValue(const ERecordClass& recordClass);

// The bytes of a record of the class built from `value`: the description is written, read back
// through the record's own reader and written again in the current layout. BadInput when the
// record does not read the description back exactly as given (a value it does not keep).
std::string Encode(const ERecordClass& recordClass, const ERecordValue& value);

// The archive bytes of a description as it stands.
std::string Written(const ERecordValue& value);

// A storing archive for the length of a call, taken from the thread's spare ones (made when there
// is none) and handed back emptied, so that calls after the first allocate nothing for it.
class StoringArchive {
 public:
  StoringArchive();
  ~StoringArchive();
  StoringArchive(const StoringArchive&) = delete;
  StoringArchive& operator=(const StoringArchive&) = delete;

  EArchive& Archive() { return *m_Archive; }
  // The bytes written so far.
  std::string_view Bytes() const;

 private:
  std::unique_ptr<EArchive> m_Archive;
};

// True when the record of the class reads the bytes written into `written` (a description of it
// in its current layout) and writes those same bytes back: it keeps every value as given. The
// bytes are read in place: `written` is left loading them, a terminating zero after them.
bool KeepsWritten(const ERecordClass& recordClass, EArchive& written);

// A fresh item of the list reached from the record `value` by `path` (indices into items), of the
// item type the class's description states. Null when the path leads to no list.
std::optional<ERecordValue> ListItem(const ERecordClass& recordClass, const ERecordValue& value,
                                     const std::vector<std::size_t>& path);

// The first number of the bytes, as a signature is read; BadInput when there is none.
unsigned int FirstNumber(std::string_view bytes);

}  // namespace eHal::python
