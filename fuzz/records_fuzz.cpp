// Feeds arbitrary bytes to the reader of every registered record class: the first byte picks the
// class, the rest is the archive a receiver loads. A read either completes or ends in the
// serialisation error (which throws here); a record that was read describes itself in exactly
// the bytes it writes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "ehal.h"
#include "fuzz_support.h"

namespace {

// What one read, with the description and writing of what it read, may allocate in all, in
// bytes. The vector reader reads as many items as the count says, past the data too (the archive
// then starts over from its beginning), so a large count costs memory and time without touching
// memory it does not own; such a run is cut short here.
constexpr std::size_t kAllocationBudget = std::size_t{32} << 20;

// The rest of the budget while a read runs; unlimited otherwise.
bool gBudgeted = false;
std::size_t gBudget = 0;

// Gives the read its budget for as long as it lives.
class Budget {
 public:
  Budget() {
    gBudget = kAllocationBudget;
    gBudgeted = true;
  }
  ~Budget() { gBudgeted = false; }
  Budget(const Budget&) = delete;
  Budget& operator=(const Budget&) = delete;
};

EBlob Written(const EAnyRecord& record) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  archive << record;
  return archive.GetAsEBlob();
}

EBlob Written(const ERecordValue& value) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  value.Write(archive);
  return archive.GetAsEBlob();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ThrowSerializeErrors();
  if (size == 0) return 0;
  const EBlob bytes(data + 1, static_cast<unsigned int>(size - 1));
  const std::vector<ERecordClass>& classes = ERecordRegistry::Classes();
  const ERecordClass& recordClass = classes[data[0] % classes.size()];
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(bytes, true);
  const std::unique_ptr<EAnyRecord> record = recordClass.Create();
  try {
    const Budget budget;
    archive >> *record;
    if (!(Written(ERecordValue::Of(*record)) == Written(*record))) __builtin_trap();
  } catch (const SerializeErrorRaised&) {
  } catch (const std::bad_alloc&) {
  }
  return 0;
}

// Every allocation of the process goes through these, counted against the budget while a read
// runs: all the forms of new and delete are replaced, so that they agree with one another.
namespace {
void* Allocate(std::size_t size) noexcept {
  if (gBudgeted) {
    if (size > gBudget) return nullptr;
    gBudget -= size;
  }
  return std::malloc(size == 0 ? 1 : size);
}
void* AllocateOrThrow(std::size_t size) {
  if (void* memory = Allocate(size)) return memory;
  throw std::bad_alloc();
}
}  // namespace

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
