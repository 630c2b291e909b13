#include "OvXmlLib6/core/SharedString.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using OvXmlLib6::CSharedString;

TEST(CSharedString, CopiesShareOneTextAndAssignmentMayReadItsOwnText) {
  CSharedString a("urn:example:orders");
  CSharedString b = a;
  EXPECT_EQ(&a.str(), &b.str());
  // Assigning a string's own text must not read the block it releases.
  a = std::string_view(a.str()).substr(4);
  EXPECT_EQ(a.str(), "example:orders");
  EXPECT_EQ(b.str(), "urn:example:orders");
  a = static_cast<const char*>(nullptr);
  EXPECT_TRUE(a.empty());
  EXPECT_STREQ(a.c_str(), "");
  EXPECT_EQ(CSharedString(""), CSharedString());
}

TEST(CSharedString, ThreadsCopyAndDropOneTextConcurrently) {
  std::vector<CSharedString> copies(4, CSharedString("shared between threads"));
  std::vector<std::thread> threads;
  for (CSharedString& mine : copies) {
    threads.emplace_back([&mine] {
      for (int i = 0; i < 20000; ++i) {
        CSharedString copy = mine;
        mine = copy;
      }
      mine = CSharedString();
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const CSharedString& copy : copies) EXPECT_TRUE(copy.empty());
}
