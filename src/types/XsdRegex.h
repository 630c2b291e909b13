// XML Schema regular expressions (the pattern facet), compiled once and matched against whole
// UTF-8 values.
//
// The pattern language is the one of XML Schema: no anchors ("^" and "$" are ordinary
// characters; every match is implicitly anchored at both ends), no back-references, character
// classes with ranges, negation and subtraction ("[a-z-[aeiou]]"), the escapes \n \r \t and the
// escaped metacharacters, the multi-character escapes \s \S \d \D \w \W \i \I \c \C, the wildcard
// ".", and \p{..} / \P{..} with the Unicode general categories (L, Lu, Nd, ...) and the common
// block names (IsBasicLatin, IsGreek, ...). Quantifiers are ?, *, + and {n}, {n,}, {n,m}.
//
// The compiled program is a Thompson automaton run as a set of states over the code points of
// the text (no backtracking), so matching is linear in the length of the text for a given
// pattern and no input can make it recurse, however long. A compiled expression is immutable and
// may be used by several threads at once.
#ifndef OVXMLLIB6_SRC_TYPES_XSDREGEX_H
#define OVXMLLIB6_SRC_TYPES_XSDREGEX_H

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

// A set of Unicode code points as sorted, disjoint, non-adjacent ranges, with a bitmap for ASCII.
class CodePointSet {
 public:
  static constexpr char32_t kMax = 0x10FFFF;

  void AddRange(char32_t first, char32_t last);
  void Add(char32_t c) { AddRange(c, c); }
  void Add(const CodePointSet& other);
  // Every code point not in the set.
  void Negate();
  void Subtract(const CodePointSet& other);
  bool Contains(char32_t c) const;

 private:
  void Normalize();

  std::vector<std::pair<char32_t, char32_t>> m_ranges;
  std::uint64_t m_ascii[2] = {0, 0};
};

class CXsdRegex {
 public:
  // Throws COvException "Invalid pattern [%s]: %s" (the pattern, then what is wrong with it).
  explicit CXsdRegex(std::string_view pattern);

  // Whether the whole text matches. Bytes that are not valid UTF-8 are read as U+FFFD.
  bool Matches(std::string_view text) const;
  // The program run as a set of states: the general matcher, which Matches uses for patterns
  // too large for the automaton and for text beyond ASCII. Both give the same answer.
  bool MatchesByProgram(std::string_view text) const;

  struct Instruction {
    enum Op : std::uint8_t { kSet, kSplit, kJump, kMatch } op;
    std::uint32_t x;  // kSet: the set's index; kSplit, kJump: a target
    std::uint32_t y;  // kSplit: the second target
  };

 private:
  // Builds the automaton below when the program is small and has few states over ASCII.
  void BuildAsciiAutomaton();

  std::vector<Instruction> m_program;
  std::vector<CodePointSet> m_sets;
  // A deterministic automaton for ASCII text, which most values are: the state after a byte is
  // m_ascii[state * 128 + byte], kNoMatch when nothing can match any more; m_asciiAccepts[state]
  // tells whether a text may end in it. Empty when the pattern has too many states; a text with
  // a byte from 0x80 on goes to the program.
  static constexpr std::uint16_t kNoMatch = 0xFFFF;
  std::vector<std::uint16_t> m_ascii;
  std::vector<bool> m_asciiAccepts;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_XSDREGEX_H
