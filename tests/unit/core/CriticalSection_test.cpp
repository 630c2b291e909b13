#include "OvXmlLib6/core/CriticalSection.h"

#include <gtest/gtest.h>
#include <thread>

TEST(COVCriticalSection, IsReentrantAndExcludesOtherThreads) {
  COVCriticalSection section;
  long counter = 0;
  auto work = [&] {
    for (int i = 0; i < 20000; ++i) {
      section.Enter();
      section.Enter();  // the owner may enter again
      ++counter;
      section.Leave();
      section.Leave();
    }
  };
  std::thread a(work), b(work);
  a.join();
  b.join();
  EXPECT_EQ(counter, 40000);
}
