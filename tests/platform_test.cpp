#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "eInetAddr.h"
#include "eLock.h"
#include "eTickCount.h"

namespace {

TEST(EInetAddr, FirstByteInTheLowestBits) {
  EXPECT_EQ(EInetAddr("1.2.3.4"), 0x04030201u);
  EXPECT_EQ(EInetAddr("10.0.0.1"), 0x0100000Au);
  EXPECT_EQ(EInetAddr("0.0.0.0"), 0u);
  EXPECT_EQ(EInetAddr("255.255.255.255"), kInetAddrNone);
  EXPECT_EQ(EInetAddr("192.168.001.010"), 0x0A01A8C0u);
}

TEST(EInetAddr, MalformedTextGivesNone) {
  for (const char* text : {"", "1.2.3", "1.2.3.4.5", "256.1.1.1", "1.2.3.4 ", " 1.2.3.4", "a.b.c.d",
                           "1..2.3", "1.2.3.0004", "-1.2.3.4"}) {
    EXPECT_EQ(EInetAddr(text), kInetAddrNone) << text;
  }
  EXPECT_EQ(EInetAddr(nullptr), kInetAddrNone);
}

TEST(ELock, GuardsACounterAcrossThreads) {
  struct Counter {
    int value = 0;
  };
  volatile Counter counter;
  ELock lock;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 10000; ++i) {
        ELockedPtr<Counter> guarded(counter, lock);
        ++guarded->value;
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  ELockedPtr<Counter> guarded(counter, lock);
  EXPECT_EQ(guarded->value, 40000);
}

TEST(ELock, LockAndUnlockThroughConstVolatile) {
  const volatile ELock lock;
  lock.Lock(eLockDebugData());
  lock.Unlock(eLockDebugData());
  { const EScopedLock scoped(lock); }
  lock.Lock();
  lock.Unlock();
  // Every lock was released: another thread takes the lock at once.
  std::atomic<bool> taken{false};
  std::thread other([&lock, &taken] {
    lock.Lock();
    taken = true;
    lock.Unlock();
  });
  for (int i = 0; i < 200 && !taken; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_TRUE(taken);
  if (taken) {
    other.join();
  } else {
    other.detach();
  }
}

TEST(EGetTickCount, IsMonotonicMilliseconds) {
  const unsigned int start = EGetTickCount();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const unsigned int elapsed = EGetTickCount() - start;
  EXPECT_GE(elapsed, 19u);
  EXPECT_LT(elapsed, 5000u);
}

}  // namespace
