#include "OvXmlLib6/core/SmartPtr.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <utility>

using namespace OvXmlLib6;

namespace {

// Counts like the library's bound objects: starts at 0, deletes itself when a release brings the
// count back to 0, and reports its destruction through a flag.
class CCounted {
 public:
  explicit CCounted(bool* destroyed) : m_destroyed(destroyed) {}
  virtual ~CCounted() { *m_destroyed = true; }
  std::int32_t AddRef() { return ++m_count; }
  std::int32_t Release() {
    const std::int32_t count = --m_count;
    if (count == 0) delete this;
    return count;
  }
  std::int32_t Count() const { return m_count; }

 private:
  bool* m_destroyed;
  std::int32_t m_count = 0;
};

class CDerived : public CCounted {
 public:
  using CCounted::CCounted;
};

bool TakesRaw(CCounted* p) { return p != nullptr; }

}  // namespace

TEST(CSmartPtr, TakingAddsAReferenceAndLettingGoReleasesIt) {
  bool destroyed = false;
  CCounted* raw = new CCounted(&destroyed);
  {
    CSmartPtr<CCounted> a(raw);
    EXPECT_EQ(a->Count(), 1);
    EXPECT_TRUE(TakesRaw(a));
    {
      CSmartPtr<CCounted> b = a;
      EXPECT_EQ(raw->Count(), 2);
      EXPECT_TRUE(a == b);
      EXPECT_TRUE(b == raw);
      EXPECT_TRUE(raw == b);
    }
    EXPECT_EQ(raw->Count(), 1);
    EXPECT_FALSE(destroyed);
  }
  EXPECT_TRUE(destroyed);
}

TEST(CSmartPtr, MoveTransfersWithoutCounting) {
  bool destroyed = false;
  CSmartPtr<CCounted> a(new CCounted(&destroyed));
  CCounted* raw = a.get();
  CSmartPtr<CCounted> b(std::move(a));
  EXPECT_EQ(a, nullptr);
  EXPECT_EQ(raw->Count(), 1);
  CSmartPtr<CCounted> c;
  c = std::move(b);
  EXPECT_EQ(raw->Count(), 1);
  EXPECT_EQ(b, nullptr);
  CSmartPtr<CCounted>& same = c;  // through a reference, to test self-move on purpose
  c = std::move(same);
  EXPECT_EQ(raw->Count(), 1);
  c = nullptr;
  EXPECT_TRUE(destroyed);
  EXPECT_TRUE(c == nullptr);
  EXPECT_TRUE(nullptr == c);
  EXPECT_FALSE(c);
}

TEST(CSmartPtr, AssignmentReleasesThePreviousObject) {
  bool firstDestroyed = false;
  bool secondDestroyed = false;
  CSmartPtr<CCounted> p(new CCounted(&firstDestroyed));
  CCounted* second = new CCounted(&secondDestroyed);
  p = second;
  EXPECT_TRUE(firstDestroyed);
  EXPECT_EQ(second->Count(), 1);
  // Assigning the object the pointer already holds must not delete it on the way.
  p = second;
  CSmartPtr<CCounted>& same = p;
  p = same;
  EXPECT_FALSE(secondDestroyed);
  EXPECT_EQ(second->Count(), 1);
  CSmartPtr<CCounted> other;
  p = other;
  EXPECT_TRUE(secondDestroyed);
}

TEST(CSmartPtr, ConvertsFromDerivedSmartPointers) {
  bool destroyed = false;
  CSmartPtr<CDerived> derived(new CDerived(&destroyed));
  CSmartPtr<CCounted> base(derived);
  EXPECT_EQ(derived->Count(), 2);
  EXPECT_TRUE(base == derived.get());
  EXPECT_TRUE(base == derived);
  EXPECT_FALSE(derived != base);
  CSmartPtr<CCounted> assigned;
  assigned = derived;
  EXPECT_EQ(derived->Count(), 3);
  CSmartPtr<CCounted> moved(std::move(derived));
  EXPECT_EQ(moved->Count(), 3);
  assigned = CSmartPtr<CDerived>(new CDerived(&destroyed));
  EXPECT_EQ(assigned->Count(), 1);
  static_assert(!std::is_constructible<CSmartPtr<CDerived>, CSmartPtr<CCounted>>::value,
                "a base pointer must not convert to a derived one");
}
