// Default lock of the platform layer: a mutex that can be locked through const volatile
// references, plus ELockedPtr, the guard that locks an object's lock for the lifetime of the
// guard and gives non-volatile access to the object meanwhile.
#pragma once

#include <mutex>

// Where a lock was taken; the default lock ignores it. Callers pass an empty record.
struct eLockDebugData {
  const char* file = nullptr;
  int line = 0;
};

class ELock {
 public:
  ELock() = default;
  ELock(const ELock&) = delete;
  ELock& operator=(const ELock&) = delete;

  // Blocks until the lock is held by the calling thread. Not recursive.
  void Lock(eLockDebugData = eLockDebugData()) const volatile { Mutex().lock(); }
  void Unlock(eLockDebugData = eLockDebugData()) const volatile { Mutex().unlock(); }

 private:
  std::mutex& Mutex() const volatile { return const_cast<std::mutex&>(m_Mutex); }

  mutable std::mutex m_Mutex;
};

// Locks `lock` on construction and unlocks it on destruction; while it lives, the guarded
// object is reachable without its volatile qualifier through -> and *.
template <typename T>
class ELockedPtr {
 public:
  ELockedPtr(volatile T& object, const volatile ELock& lock)
      : m_Object(const_cast<T*>(&object)), m_Lock(lock) {
    m_Lock.Lock(eLockDebugData());
  }
  ~ELockedPtr() { m_Lock.Unlock(eLockDebugData()); }
  ELockedPtr(const ELockedPtr&) = delete;
  ELockedPtr& operator=(const ELockedPtr&) = delete;

  T* operator->() const { return m_Object; }
  T& operator*() const { return *m_Object; }

 private:
  T* m_Object;
  const volatile ELock& m_Lock;
};

// Scoped lock for an ELock without a guarded object.
class EScopedLock {
 public:
  explicit EScopedLock(const volatile ELock& lock) : m_Lock(lock) { m_Lock.Lock(eLockDebugData()); }
  ~EScopedLock() { m_Lock.Unlock(eLockDebugData()); }
  EScopedLock(const EScopedLock&) = delete;
  EScopedLock& operator=(const EScopedLock&) = delete;

 private:
  const volatile ELock& m_Lock;
};
