#include "OvXmlLib6/core/SmartPtr.h"

#include "unit/core/TestNode.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <type_traits>
#include <utility>

using namespace OvXmlLib6;
using testing_support::CTestNode;

namespace {

// The reference count of an object that is held at least once.
std::int32_t Count(CXmlObjectBase* object) {
  object->AddRef();
  return object->Release();
}

bool TakesRaw(CXmlObjectBase* p) { return p != nullptr; }

}  // namespace

TEST(CSmartPtr, TakingAddsAReferenceAndLettingGoReleasesIt) {
  bool destroyed = false;
  CXmlObjectBase* raw = new CTestNode("n", "", &destroyed);
  {
    CSmartPtr<CXmlObjectBase> a(raw);
    EXPECT_EQ(Count(a), 1);
    EXPECT_TRUE(TakesRaw(a));
    {
      CSmartPtr<CXmlObjectBase> b = a;
      EXPECT_EQ(Count(raw), 2);
      EXPECT_TRUE(a == b);
      EXPECT_TRUE(b == raw);
      EXPECT_TRUE(raw == b);
    }
    EXPECT_EQ(Count(raw), 1);
    EXPECT_FALSE(destroyed);
  }
  EXPECT_TRUE(destroyed);
}

TEST(CSmartPtr, MoveTransfersWithoutCounting) {
  bool destroyed = false;
  CSmartPtr<CXmlObjectBase> a(new CTestNode("n", "", &destroyed));
  CXmlObjectBase* raw = a.get();
  CSmartPtr<CXmlObjectBase> b(std::move(a));
  EXPECT_EQ(a, nullptr);
  EXPECT_EQ(Count(raw), 1);
  CSmartPtr<CXmlObjectBase> c;
  c = std::move(b);
  EXPECT_EQ(Count(raw), 1);
  EXPECT_EQ(b, nullptr);
  CSmartPtr<CXmlObjectBase>& same = c;  // through a reference, to test self-move on purpose
  c = std::move(same);
  EXPECT_EQ(Count(raw), 1);
  c = nullptr;
  EXPECT_TRUE(destroyed);
  EXPECT_TRUE(c == nullptr);
  EXPECT_TRUE(nullptr == c);
  EXPECT_FALSE(c);
}

TEST(CSmartPtr, AssignmentReleasesThePreviousObject) {
  bool firstDestroyed = false;
  bool secondDestroyed = false;
  CSmartPtr<CXmlObjectBase> p(new CTestNode("n", "", &firstDestroyed));
  CXmlObjectBase* second = new CTestNode("n", "", &secondDestroyed);
  p = second;
  EXPECT_TRUE(firstDestroyed);
  EXPECT_EQ(Count(second), 1);
  // Assigning the object the pointer already holds must not delete it on the way.
  p = second;
  CSmartPtr<CXmlObjectBase>& same = p;
  p = same;
  EXPECT_FALSE(secondDestroyed);
  EXPECT_EQ(Count(second), 1);
  CSmartPtr<CXmlObjectBase> other;
  p = other;
  EXPECT_TRUE(secondDestroyed);
}

TEST(CSmartPtr, ConvertsFromDerivedSmartPointers) {
  bool destroyed = false;
  CSmartPtr<CTestNode> derived(new CTestNode("n", "", &destroyed));
  CSmartPtr<CXmlObjectBase> base(derived);
  EXPECT_EQ(Count(derived), 2);
  EXPECT_TRUE(base == derived.get());
  EXPECT_TRUE(base == derived);
  EXPECT_FALSE(derived != base);
  CSmartPtr<CXmlObjectBase> assigned;
  assigned = derived;
  EXPECT_EQ(Count(derived), 3);
  CSmartPtr<CXmlObjectBase> moved(std::move(derived));
  EXPECT_EQ(Count(moved), 3);
  assigned = CSmartPtr<CTestNode>(new CTestNode("n", "", &destroyed));
  EXPECT_EQ(Count(assigned), 1);
  static_assert(!std::is_constructible<CSmartPtr<CTestNode>, CSmartPtr<CXmlObjectBase>>::value,
                "a base pointer must not convert to a derived one");
}
