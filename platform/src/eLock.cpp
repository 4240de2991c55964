#include "eLock.h"

void ELock::Lock(eLockDebugData) const volatile {
  Mutex().lock();
}

void ELock::Unlock(eLockDebugData) const volatile {
  Mutex().unlock();
}
