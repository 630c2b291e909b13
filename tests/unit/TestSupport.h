// Helpers shared by the tests: the message of the exception an action throws, byte strings of
// binary data, files read whole, hostile inputs (deep nesting, mutated texts) and exact-size
// copies that let AddressSanitizer see a read past the end.
#ifndef OVXMLLIB6_TESTS_UNIT_TESTSUPPORT_H
#define OVXMLLIB6_TESTS_UNIT_TESTSUPPORT_H

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/xml/XmlDocument.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

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

// The short name of an exception's class: "Value", "Namespace", "Validation", "Param", "State",
// "Overflow" or "Exception".
inline std::string ClassOf(const COvException& e) {
  if (dynamic_cast<const COvInvalidValueException*>(&e) != nullptr) return "Value";
  if (dynamic_cast<const COvInvalidNamespaceException*>(&e) != nullptr) return "Namespace";
  if (dynamic_cast<const COvValidationException*>(&e) != nullptr) return "Validation";
  if (dynamic_cast<const COvInvalidParamException*>(&e) != nullptr) return "Param";
  if (dynamic_cast<const COvInvalidStateException*>(&e) != nullptr) return "State";
  if (dynamic_cast<const COvOverFlowException*>(&e) != nullptr) return "Overflow";
  return "Exception";
}

// The whole chain of the exception that `action` throws, outermost first, one "Class: message"
// line per exception; "no exception" when it returns.
template <class F>
std::string ChainOf(F&& action) {
  try {
    std::forward<F>(action)();
  } catch (const COvException& e) {
    std::string chain;
    for (const COvException* x = &e; x != nullptr; x = x->GetInnerException()) {
      if (!chain.empty()) chain += "\n";
      chain += ClassOf(*x) + ": " + x->GetMessage();
    }
    return chain;
  }
  return "no exception";
}

// The bytes of `data` as a string.
inline std::string Bytes(const CBinaryData& data) {
  return data.GetData() == nullptr
             ? std::string()
             : std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

// What b.CompareTo(a) must give when a.CompareTo(b) gave `result`: less and greater swap.
template <class R>
R Mirrored(R result, R less, R greater) {
  return result == less ? greater : result == greater ? less : result;
}

// The whole content of a file; "" when it cannot be read.
inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// `levels` nested elements of the name: deep enough to overflow any reader or writer that
// recurses.
inline std::string NestedElements(int levels, const std::string& name = "e") {
  const std::string open = "<" + name + ">";
  const std::string close = "</" + name + ">";
  std::string xml;
  xml.reserve(static_cast<std::size_t>(levels) * (open.size() + close.size()));
  for (int i = 0; i < levels; ++i) xml += open;
  for (int i = 0; i < levels; ++i) xml += close;
  return xml;
}

// Fuzz inputs: every prefix of every seed, then `count` seeds changed by one to `maxEdits` random
// edits (a character replaced, erased or inserted). New characters come from `alphabet`, one in
// eight an arbitrary non-zero byte.
inline std::vector<std::string> MutatedTexts(const std::vector<std::string>& seeds,
                                             const std::string& alphabet, int count,
                                             unsigned rngSeed, int maxEdits = 4) {
  std::vector<std::string> texts;
  for (const std::string& seed : seeds) {
    for (std::size_t n = 0; n <= seed.size(); ++n) texts.push_back(seed.substr(0, n));
  }
  std::mt19937 rng(rngSeed);
  for (int i = 0; i < count; ++i) {
    std::string text = seeds[rng() % seeds.size()];
    const int edits = 1 + static_cast<int>(rng() % static_cast<unsigned>(maxEdits));
    for (int e = 0; e < edits; ++e) {
      const std::size_t at = rng() % (text.size() + 1);
      const char c =
          rng() % 8 == 0 ? static_cast<char>(1 + rng() % 255) : alphabet[rng() % alphabet.size()];
      const unsigned kind = rng() % 3;
      if (kind == 0 || at == text.size()) {
        text.insert(at, 1, c);
      } else if (kind == 1) {
        text[at] = c;
      } else {
        text.erase(at, 1);
      }
    }
    texts.push_back(text);
  }
  return texts;
}

// A heap copy of `text` and its terminating zero, exactly that long.
inline std::unique_ptr<char[]> ExactCopy(const std::string& text) {
  std::unique_ptr<char[]> copy(new char[text.size() + 1]);
  std::memcpy(copy.get(), text.c_str(), text.size() + 1);
  return copy;
}

// Control characters, backslashes and the layout characters as escapes, so that every item is
// one line and differences in whitespace show.
inline std::string Visible(const std::string& text) {
  std::string out;
  for (unsigned char c : text) {
    if (c == '\\') {
      out += "\\\\";
    } else if (c < 0x20 || c == 0x7F) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02X", c);
      out += hex;
    } else {
      out += static_cast<char>(c);
    }
  }
  return out;
}

// The canonical form of an element's tree, one line per item: element names with their
// namespaces, the attributes sorted, the text. Without `blankText` text that is only whitespace
// is left out (the layout between elements, which bound objects do not keep).
inline void Canonical(const CXmlElement* element, int depth, std::vector<std::string>& lines,
                      bool blankText = true) {
  const std::string name = "{" + element->GetNamespaceURI() + "}" + element->GetLocalName();
  lines.push_back(std::string(static_cast<std::size_t>(depth), ' ') + "E " + name);
  std::vector<std::string> attributes;
  for (const CXmlAttribute* a : element->GetAttributes()) {
    attributes.push_back("A " + name + " {" + a->GetNamespaceURI() + "}" + a->GetLocalName() +
                         " = " + Visible(a->GetValue()));
  }
  std::sort(attributes.begin(), attributes.end());
  lines.insert(lines.end(), attributes.begin(), attributes.end());
  const std::string& text = element->GetText();
  if (!text.empty() && (blankText || text.find_first_not_of(" \t\r\n") != std::string::npos)) {
    lines.push_back("T " + name + " = " + Visible(text));
  }
  for (const CXmlElement* child = element->GetFirstElement(); child != nullptr;
       child = child->GetNextSiblingElement()) {
    Canonical(child, depth + 1, lines, blankText);
  }
}

}  // namespace test
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TESTS_UNIT_TESTSUPPORT_H
