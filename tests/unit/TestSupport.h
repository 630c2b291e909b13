// Helpers shared by the unit tests: the message of the exception an action throws, and byte
// strings of binary data.
#ifndef OVXMLLIB6_TESTS_UNIT_TESTSUPPORT_H
#define OVXMLLIB6_TESTS_UNIT_TESTSUPPORT_H

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/BinaryData.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace OvXmlLib6 {
namespace test {

// The message of the E that `action` throws; "wrong class: <message>" for another library
// exception, "no exception" when it returns.
template <class E = COvException, class F>
std::string MessageOf(F&& action) {
  try {
    try {
      std::forward<F>(action)();
    } catch (const E& e) {
      return e.GetMessage();
    }
  } catch (const COvException& e) {
    return "wrong class: " + e.GetMessage();
  }
  return "no exception";
}

// Expects `action` to throw an E with exactly `message`.
template <class E = COvException, class F>
void ExpectThrowMessage(F&& action, const std::string& message) {
  EXPECT_EQ(MessageOf<E>(std::forward<F>(action)), message);
}

// The bytes of `data` as a string.
inline std::string Bytes(const CBinaryData& data) {
  return data.GetData() == nullptr
             ? std::string()
             : std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

}  // namespace test
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TESTS_UNIT_TESTSUPPORT_H
