#include "system/thread_own.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace tolvane::system {
namespace {

std::atomic<int> alive{0};

struct Counted {
  Counted() { ++alive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --alive; }
  std::vector<int> numbers;
};

ThreadOwn<Counted>& counted() {
  static ThreadOwn<Counted> own;
  return own;
}

TEST(ThreadOwnTest, AThreadFindsItsOwnAgain) {
  counted().get().numbers = {1, 2, 3};
  EXPECT_EQ(counted().get().numbers, (std::vector<int>{1, 2, 3}));
}

TEST(ThreadOwnTest, ThreadsDoNotSeeEachOthers) {
  counted().get().numbers = {1};
  std::vector<int> seen{9};
  std::thread([&] { seen = counted().get().numbers; }).join();
  EXPECT_TRUE(seen.empty());
}

TEST(ThreadOwnTest, ItGoesWithItsThread) {
  const int before = alive;
  for (int i = 0; i < 20; ++i) {
    std::thread([&] { counted().get().numbers.assign(1000, i); }).join();
  }
  EXPECT_EQ(alive, before);
}

}  // namespace
}  // namespace tolvane::system
