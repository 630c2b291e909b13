#include "OvXmlLib6/core/Exceptions.h"

#include <cfloat>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

using namespace OvXmlLib6;

namespace {

// Which category handlers receive an exception thrown as E.
template <typename E>
std::string CaughtBy() {
  std::string by;
  try {
    throw E("x");
  } catch (const COvValidationException&) {
    by += "validation ";
  } catch (const COvException&) {
  }
  try {
    throw E("x");
  } catch (const COvException& e) {
    by += e.GetMessage();
  }
  return by;
}

}  // namespace

TEST(COvException, CategoriesCatchAsTheHierarchySays) {
  EXPECT_EQ(CaughtBy<COvValidationException>(), "validation x");
  EXPECT_EQ(CaughtBy<COvInvalidValueException>(), "validation x");
  EXPECT_EQ(CaughtBy<COvInvalidNamespaceException>(), "validation x");
  EXPECT_EQ(CaughtBy<COvInvalidParamException>(), "x");
  EXPECT_EQ(CaughtBy<COvInvalidStateException>(), "x");
  EXPECT_EQ(CaughtBy<COvOverFlowException>(), "x");
  EXPECT_EQ(CaughtBy<COvException>(), "x");
}

TEST(COvException, FullMessageJoinsTheChainOutermostFirst) {
  const COvException plain("alone");
  EXPECT_EQ(plain.GetFullMessage(), plain.GetMessage());
  EXPECT_EQ(plain.GetInnerException(), nullptr);

  const COvValidationException chain(
      "outer", COvValidationException("middle", COvInvalidValueException("inner")));
  EXPECT_EQ(chain.GetMessage(), "outer");
  EXPECT_EQ(chain.GetFullMessage(), "outer\nmiddle\ninner");
  // The inner exceptions keep their classes through the deep copies.
  const COvException* middle = chain.GetInnerException();
  ASSERT_NE(middle, nullptr);
  EXPECT_NE(dynamic_cast<const COvValidationException*>(middle), nullptr);
  EXPECT_NE(dynamic_cast<const COvInvalidValueException*>(middle->GetInnerException()), nullptr);
}

TEST(COvException, CopiesAndAssignmentsOwnTheirChains) {
  auto* first = new COvException("outer", COvInvalidStateException("inner"));
  const COvException copy(*first);
  EXPECT_NE(copy.GetInnerException(), first->GetInnerException());
  delete first;
  ASSERT_NE(copy.GetInnerException(), nullptr);
  EXPECT_EQ(copy.GetFullMessage(), "outer\ninner");
  EXPECT_NE(dynamic_cast<const COvInvalidStateException*>(copy.GetInnerException()), nullptr);

  COvException target("old", COvException("old inner", COvException("older")));
  const COvException source("new", COvOverFlowException("new inner"));
  target = source;  // the leak check of the sanitizer build shows the old chain is released
  EXPECT_EQ(target.GetFullMessage(), "new\nnew inner");
  target = COvException("bare");
  EXPECT_EQ(target.GetInnerException(), nullptr);
  const COvException& alias = target;
  target = alias;  // self-assignment keeps the value
  EXPECT_EQ(target.GetFullMessage(), "bare");

  // A subclass made or assigned from a base keeps the message and chain; only the class changes.
  COvInvalidParamException param("p");
  param = source;
  EXPECT_EQ(param.GetFullMessage(), "new\nnew inner");
  EXPECT_EQ(COvInvalidStateException(source).GetFullMessage(), "new\nnew inner");
}

TEST(COvException, DeepChainsAreBuiltCopiedAndDestroyedWithoutRecursion) {
  // Wrapping an rvalue takes its chain over, so this builds in linear time; copies, assignment
  // and destruction go link by link (a recursive copy would overflow the stack, under ASan too).
  constexpr int kDepth = 100000;
  std::unique_ptr<COvException> chain(new COvValidationException("level 0"));
  for (int i = 1; i < kDepth; ++i)
    chain.reset(new COvValidationException("level " + std::to_string(i), std::move(*chain)));
  COvException copy(*chain);
  COvException assigned;
  assigned = copy;
  int links = 0;
  const COvException* last = &assigned;
  for (const COvException* e = &assigned; e != nullptr; e = e->GetInnerException(), ++links)
    last = e;
  EXPECT_EQ(links, kDepth);
  EXPECT_EQ(last->GetMessage(), "level 0");
  EXPECT_NE(dynamic_cast<const COvValidationException*>(last), nullptr);
  EXPECT_EQ(chain->GetInnerException()->GetMessage(), "level 99998");  // the original is intact
}

TEST(FormatString, NeverTruncates) {
  const std::string big(100000, 'q');
  EXPECT_EQ(FormatString("%s", big.c_str()), big);
  EXPECT_EQ(FormatString("[%s]", big.c_str()), "[" + big + "]");

  const std::string huge = FormatString("%f", 1e300);
  EXPECT_EQ(huge.size(), 301u + 7u);  // 301 integer digits, the point and six decimals
  EXPECT_EQ(huge.substr(0, 2), "10");
  EXPECT_EQ(FormatString("%.2f", -DBL_MAX).size(), 1u + 309u + 3u);
}

TEST(FormatString, FormatsLikePrintf) {
  EXPECT_EQ(FormatString("100%%"), "100%");
  EXPECT_EQ(FormatString("Index %d is out of range, use 0 - %d", 7, 3),
            "Index 7 is out of range, use 0 - 3");
  EXPECT_EQ(FormatString("%-4s|%04x|%#o|%+d", "ab", 255, 8, 5), "ab  |00ff|010|+5");
  EXPECT_EQ(FormatString("%*.*f", 8, 2, 3.14159), "    3.14");
  EXPECT_EQ(FormatString("%c%c", 'o', 'k'), "ok");
  const char* empty = "";
  EXPECT_EQ(FormatString("%s", empty), "");
}

TEST(FormatString, AcceptsLegacySizePrefixes) {
  // Called through a pointer: the legacy prefixes are not printf's, so the compiler's format
  // check would flag them.
  std::string (*format)(const char*, ...) = &FormatString;
  EXPECT_EQ(format("%I64d|%I64u", static_cast<long long>(-9000000000LL),
                   static_cast<unsigned long long>(18000000000ULL)),
            "-9000000000|18000000000");
  int value = 42;
  EXPECT_EQ(format("%Fd %Nd", 1, 2), "1 2");
  EXPECT_NE(format("%Fp", static_cast<void*>(&value)), "");
  EXPECT_EQ(format("I64 F N"), "I64 F N");
}
