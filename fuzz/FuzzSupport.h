// Helpers shared by the fuzz targets. A target calls the library inside Attempt(), which swallows
// the library's own exceptions (a refused input is a correct outcome) and lets everything else
// escape, so that libFuzzer reports it: std::bad_alloc, any other exception, a crash. A broken
// invariant (a round trip that disagrees) goes through Require(), which prints and aborts.
#ifndef OVXMLLIB6_FUZZ_FUZZSUPPORT_H
#define OVXMLLIB6_FUZZ_FUZZSUPPORT_H

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/types/BinaryData.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

// Whether OVXML_FUZZ_VERBOSE is set: refusals are then printed, to see why a seed is refused.
inline bool Verbose() {
  static const bool verbose = std::getenv("OVXML_FUZZ_VERBOSE") != nullptr;
  return verbose;
}

// Runs `body`; true when it returned, false when it threw one of the library's exceptions.
template <typename Body>
bool Attempt(Body&& body) {
  try {
    body();
    return true;
  } catch (const OvXmlLib6::COvException& e) {
    if (Verbose()) {
      std::fprintf(stderr, "refused: %s\n", e.GetFullMessage().c_str());
    }
    return false;
  }
}

// Aborts with both texts when `condition` is false.
inline void Require(bool condition, const char* what, const std::string& first = std::string(),
                    const std::string& second = std::string()) {
  if (condition) {
    return;
  }
  std::fprintf(
      stderr,
      "\nFUZZ INVARIANT BROKEN: %s\n--- first (%zu bytes):\n%s\n--- second (%zu bytes):\n%s\n",
      what, first.size(), first.c_str(), second.size(), second.c_str());
  std::abort();
}

// Aborts when `body` throws one of the library's exceptions: for steps that must succeed, such
// as reading back what the library itself wrote. The message says which step and why.
template <typename Body>
void MustSucceed(const char* what, const std::string& input, Body&& body) {
  try {
    body();
  } catch (const OvXmlLib6::COvException& e) {
    Require(false, what, input, e.GetFullMessage());
  }
}

// A duration with every field zero prints as "P" (or "-P"), a form the duration parser refuses
// (a bare "P" has no field): the one printed value that is not expected to parse again.
inline bool IsZeroDurationText(const std::string& text) { return text == "P" || text == "-P"; }

// Reads the input from the front: single bytes for choices, the rest as text or bytes.
class CInput {
 public:
  CInput(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

  bool Empty() const { return m_size == 0; }
  std::size_t Size() const { return m_size; }
  const std::uint8_t* Data() const { return m_data; }

  // The next byte, 0 when none is left.
  std::uint8_t Byte() {
    if (m_size == 0) {
      return 0;
    }
    --m_size;
    return *m_data++;
  }

  // The text up to the next `separator` (dropped) or to the end.
  std::string TextUntil(char separator) {
    std::size_t length = 0;
    while (length < m_size && m_data[length] != static_cast<std::uint8_t>(separator)) {
      ++length;
    }
    std::string text(reinterpret_cast<const char*>(m_data), length);
    const std::size_t taken = length < m_size ? length + 1 : length;
    m_data += taken;
    m_size -= taken;
    return text;
  }

  // Everything left, NUL bytes included.
  std::string Rest() {
    std::string text(reinterpret_cast<const char*>(m_data), m_size);
    m_data += m_size;
    m_size = 0;
    return text;
  }

 private:
  const std::uint8_t* m_data;
  std::size_t m_size;
};

// The round trip of a bound object (T made by `make`): the input is read; when that succeeds
// and the object writes as XML text, that text must read into a new object that writes the same
// text, and the object's Fast Infoset form must read into one that writes the same text too.
template <typename T, typename Make>
void ObjectRoundTrip(const std::uint8_t* data, std::size_t size, Make&& make) {
  using namespace OvXmlLib6;
  CSmartPtr<T> first = make();
  std::string xml;
  if (!Attempt([&] {
        first->FromXmlStream(data, static_cast<std::uint32_t>(size));
        xml = first->ToXml(false, false, EOLType_LF);
      })) {
    return;
  }
  CSmartPtr<T> second = make();
  std::string again;
  MustSucceed("the XML written reads back and writes again", xml, [&] {
    second->FromXml(xml.c_str());
    again = second->ToXml(false, false, EOLType_LF);
  });
  if (again != xml) {
    // The text writer writes line ends and tabs in attribute values as they are, as it is
    // documented to, and the parser's attribute normalization turns them into spaces: the first
    // read may change them. From then on the XML must write back unchanged.
    CSmartPtr<T> settled = make();
    std::string third;
    MustSucceed("the XML written a second time reads back and writes again", again, [&] {
      settled->FromXml(again.c_str());
      third = settled->ToXml(false, false, EOLType_LF);
    });
    Require(third == again, "XML read back writes the same XML", again, third);
  }

  CBinaryData fastInfoset;
  MustSucceed("an object that writes XML writes Fast Infoset", xml,
              [&] { fastInfoset = first->ToFastInfosetStream(); });
  CSmartPtr<T> third = make();
  MustSucceed("the Fast Infoset written reads back and writes XML", xml, [&] {
    third->FromXmlStream(fastInfoset);
    again = third->ToXml(false, false, EOLType_LF);
  });
  Require(again == xml, "Fast Infoset read back writes the same XML", xml, again);
}

}  // namespace fuzz

#endif  // OVXMLLIB6_FUZZ_FUZZSUPPORT_H
