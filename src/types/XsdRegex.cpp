#include "types/XsdRegex.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "types/UnicodeCategories.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>

namespace OvXmlLib6 {
namespace detail {

// ---------------------------------------------------------------------------------------------
// CodePointSet

void CodePointSet::AddRange(char32_t first, char32_t last) {
  last = std::min(last, kMax);
  if (first > last) return;
  // Ranges that come in ascending order (the category tables, \w and \p{..} made of thousands
  // of runs) extend the last one or follow it without sorting everything again.
  if (m_ranges.empty() || first > m_ranges.back().second) {
    if (!m_ranges.empty() && first == m_ranges.back().second + 1) {
      m_ranges.back().second = last;
    } else {
      m_ranges.emplace_back(first, last);
    }
    for (char32_t c = first; c <= last && c < 128; ++c) {
      m_ascii[c >> 6] |= std::uint64_t{1} << (c & 63);
    }
    return;
  }
  m_ranges.emplace_back(first, last);
  Normalize();
}

void CodePointSet::Add(const CodePointSet& other) {
  m_ranges.insert(m_ranges.end(), other.m_ranges.begin(), other.m_ranges.end());
  Normalize();
}

void CodePointSet::Negate() {
  std::vector<std::pair<char32_t, char32_t>> complement;
  char32_t next = 0;
  for (const auto& range : m_ranges) {
    if (range.first > next) complement.emplace_back(next, range.first - 1);
    next = range.second + 1;
  }
  if (next <= kMax) complement.emplace_back(next, kMax);
  m_ranges.swap(complement);
  Normalize();
}

void CodePointSet::Subtract(const CodePointSet& other) {
  CodePointSet rest = other;
  rest.Negate();
  // Intersection of two normalised range lists.
  std::vector<std::pair<char32_t, char32_t>> result;
  std::size_t i = 0, j = 0;
  while (i < m_ranges.size() && j < rest.m_ranges.size()) {
    const char32_t first = std::max(m_ranges[i].first, rest.m_ranges[j].first);
    const char32_t last = std::min(m_ranges[i].second, rest.m_ranges[j].second);
    if (first <= last) result.emplace_back(first, last);
    if (m_ranges[i].second < rest.m_ranges[j].second) {
      ++i;
    } else {
      ++j;
    }
  }
  m_ranges.swap(result);
  Normalize();
}

bool CodePointSet::Contains(char32_t c) const {
  if (c < 128) return (m_ascii[c >> 6] >> (c & 63)) & 1;
  // The first range whose end is not below c.
  const auto it = std::lower_bound(
      m_ranges.begin(), m_ranges.end(), c,
      [](const std::pair<char32_t, char32_t>& range, char32_t v) { return range.second < v; });
  return it != m_ranges.end() && it->first <= c;
}

void CodePointSet::Normalize() {
  std::sort(m_ranges.begin(), m_ranges.end());
  std::vector<std::pair<char32_t, char32_t>> merged;
  for (const auto& range : m_ranges) {
    if (!merged.empty() && range.first <= merged.back().second + 1) {
      merged.back().second = std::max(merged.back().second, range.second);
    } else {
      merged.push_back(range);
    }
  }
  m_ranges.swap(merged);
  m_ascii[0] = m_ascii[1] = 0;
  for (const auto& range : m_ranges) {
    for (char32_t c = range.first; c <= range.second && c < 128; ++c) {
      m_ascii[c >> 6] |= std::uint64_t{1} << (c & 63);
    }
  }
}

namespace {

// ---------------------------------------------------------------------------------------------
// Character data

// Decodes one UTF-8 sequence at text[i], advancing i. A malformed sequence (bad lead or
// continuation byte, overlong form, surrogate, beyond U+10FFFF, cut short) yields U+FFFD and
// advances by one byte.
char32_t DecodeUtf8(std::string_view text, std::size_t& i) {
  const unsigned char lead = static_cast<unsigned char>(text[i]);
  if (lead < 0x80) {
    ++i;
    return lead;
  }
  std::size_t length;
  char32_t c;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    c = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    c = lead & 0x0F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    c = lead & 0x07;
  } else {
    ++i;
    return 0xFFFD;
  }
  if (text.size() - i < length) {
    ++i;
    return 0xFFFD;
  }
  for (std::size_t k = 1; k < length; ++k) {
    const unsigned char b = static_cast<unsigned char>(text[i + k]);
    if ((b & 0xC0) != 0x80) {
      ++i;
      return 0xFFFD;
    }
    c = (c << 6) | (b & 0x3F);
  }
  static constexpr char32_t kMinimum[5] = {0, 0, 0x80, 0x800, 0x10000};
  if (c < kMinimum[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
    ++i;
    return 0xFFFD;
  }
  i += length;
  return c;
}

// The union of the general categories whose bits are set in `mask`.
CodePointSet CategorySet(std::uint32_t mask) {
  CodePointSet set;
  for (unsigned r = 0; r < kUnicodeCategoryRunCount; ++r) {
    if ((mask >> kUnicodeCategoryRuns[r].category) & 1) {
      const char32_t last = r + 1 < kUnicodeCategoryRunCount ? kUnicodeCategoryRuns[r + 1].first - 1
                                                             : CodePointSet::kMax;
      set.AddRange(kUnicodeCategoryRuns[r].first, last);
    }
  }
  return set;
}

// The bits of the categories that a property name stands for: a two-letter category ("Lu") or
// a one-letter major class ("L" = Lu, Ll, Lt, Lm, Lo). 0 when the name is neither.
std::uint32_t CategoryMask(const std::string& name) {
  std::uint32_t mask = 0;
  for (unsigned k = 0; k < kUnicodeCategoryCount; ++k) {
    const char* category = kUnicodeCategoryNames[k];
    if ((name.size() == 1 && name[0] == category[0]) || name == category) mask |= 1u << k;
  }
  return mask;
}

struct Block {
  const char* name;
  char32_t first;
  char32_t last;
};

// The Unicode blocks most used in schemas; a pattern naming another block is refused.
constexpr Block kBlocks[] = {
    {"BasicLatin", 0x0000, 0x007F},
    {"Latin-1Supplement", 0x0080, 0x00FF},
    {"LatinExtended-A", 0x0100, 0x017F},
    {"LatinExtended-B", 0x0180, 0x024F},
    {"IPAExtensions", 0x0250, 0x02AF},
    {"SpacingModifierLetters", 0x02B0, 0x02FF},
    {"CombiningDiacriticalMarks", 0x0300, 0x036F},
    {"Greek", 0x0370, 0x03FF},
    {"GreekandCoptic", 0x0370, 0x03FF},
    {"Cyrillic", 0x0400, 0x04FF},
    {"Armenian", 0x0530, 0x058F},
    {"Hebrew", 0x0590, 0x05FF},
    {"Arabic", 0x0600, 0x06FF},
    {"Devanagari", 0x0900, 0x097F},
    {"Thai", 0x0E00, 0x0E7F},
    {"Georgian", 0x10A0, 0x10FF},
    {"HangulJamo", 0x1100, 0x11FF},
    {"LatinExtendedAdditional", 0x1E00, 0x1EFF},
    {"GreekExtended", 0x1F00, 0x1FFF},
    {"GeneralPunctuation", 0x2000, 0x206F},
    {"SuperscriptsandSubscripts", 0x2070, 0x209F},
    {"CurrencySymbols", 0x20A0, 0x20CF},
    {"LetterlikeSymbols", 0x2100, 0x214F},
    {"NumberForms", 0x2150, 0x218F},
    {"Arrows", 0x2190, 0x21FF},
    {"MathematicalOperators", 0x2200, 0x22FF},
    {"BoxDrawing", 0x2500, 0x257F},
    {"GeometricShapes", 0x25A0, 0x25FF},
    {"MiscellaneousSymbols", 0x2600, 0x26FF},
    {"CJKSymbolsandPunctuation", 0x3000, 0x303F},
    {"Hiragana", 0x3040, 0x309F},
    {"Katakana", 0x30A0, 0x30FF},
    {"CJKUnifiedIdeographs", 0x4E00, 0x9FFF},
    {"HangulSyllables", 0xAC00, 0xD7AF},
    {"PrivateUseArea", 0xE000, 0xF8FF},
    {"AlphabeticPresentationForms", 0xFB00, 0xFB4F},
    {"HalfwidthandFullwidthForms", 0xFF00, 0xFFEF},
    {"Specials", 0xFFF0, 0xFFFF},
};

// XML names: the first character (\i) and the following ones (\c), after XML 1.0.
CodePointSet NameStartChars() {
  CodePointSet set;
  set.Add(':');
  set.Add('_');
  set.AddRange('A', 'Z');
  set.AddRange('a', 'z');
  static constexpr char32_t kRanges[][2] = {{0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},
                                            {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D},
                                            {0x2070, 0x218F}, {0x2C00, 0x2FEF}, {0x3001, 0xD7FF},
                                            {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
  for (const auto& range : kRanges) set.AddRange(range[0], range[1]);
  return set;
}

CodePointSet NameChars() {
  CodePointSet set = NameStartChars();
  set.Add('-');
  set.Add('.');
  set.AddRange('0', '9');
  set.Add(0xB7);
  set.AddRange(0x300, 0x36F);
  set.AddRange(0x203F, 0x2040);
  return set;
}

// Code point masks of the general categories used by the escapes.
std::uint32_t Mask(const char* name) { return CategoryMask(name); }

// ---------------------------------------------------------------------------------------------
// Parser: pattern text to a syntax tree

struct Node {
  enum Kind { kEmpty, kSet, kConcat, kAlternation, kRepeat } kind = kEmpty;
  std::uint32_t set = 0;  // kSet
  int min = 0;            // kRepeat
  int max = 0;            // kRepeat; -1 for no upper bound
  std::vector<Node> children;
};

constexpr int kMaxDepth = 100;               // nesting of groups and classes
constexpr int kMaxCount = 1000;              // largest number inside {n,m}
constexpr std::size_t kMaxProgram = 100000;  // instructions after expanding the counts

struct PatternError {
  std::string reason;
};

class Parser {
 public:
  Parser(std::string_view pattern, std::vector<CodePointSet>& sets) : m_sets(sets) {
    for (std::size_t i = 0; i < pattern.size();) {
      const std::size_t at = i;
      const char32_t c = DecodeUtf8(pattern, i);
      if (c == 0xFFFD && !(pattern.compare(at, 3, "\xEF\xBF\xBD") == 0)) {
        throw PatternError{"not valid UTF-8"};
      }
      m_text.push_back(c);
    }
  }

  Node Parse() {
    Node root = ParseRegExp(0);
    if (m_pos != m_text.size()) Fail("unbalanced ')'");
    return root;
  }

 private:
  [[noreturn]] void Fail(const char* reason) {
    throw PatternError{std::string(reason) + " at offset " + std::to_string(m_pos)};
  }

  bool AtEnd() const { return m_pos >= m_text.size(); }
  char32_t Peek(std::size_t ahead = 0) const {
    return m_pos + ahead < m_text.size() ? m_text[m_pos + ahead] : 0xFFFFFFFF;
  }
  char32_t Next() {
    if (AtEnd()) Fail("unexpected end of pattern");
    return m_text[m_pos++];
  }

  std::uint32_t AddSet(CodePointSet set) {
    m_sets.push_back(std::move(set));
    return static_cast<std::uint32_t>(m_sets.size() - 1);
  }

  Node SetNode(CodePointSet set) {
    Node node;
    node.kind = Node::kSet;
    node.set = AddSet(std::move(set));
    return node;
  }

  Node ParseRegExp(int depth) {
    if (depth > kMaxDepth) Fail("groups nested too deeply");
    Node first = ParseBranch(depth);
    if (Peek() != '|') return first;
    Node alternation;
    alternation.kind = Node::kAlternation;
    alternation.children.push_back(std::move(first));
    while (Peek() == '|') {
      ++m_pos;
      alternation.children.push_back(ParseBranch(depth));
    }
    return alternation;
  }

  Node ParseBranch(int depth) {
    Node branch;
    branch.kind = Node::kConcat;
    while (!AtEnd() && Peek() != '|' && Peek() != ')') branch.children.push_back(ParsePiece(depth));
    return branch;
  }

  Node ParsePiece(int depth) {
    Node atom = ParseAtom(depth);
    int min = 1, max = 1;
    switch (Peek()) {
      case '?':
        min = 0;
        break;
      case '*':
        min = 0;
        max = -1;
        break;
      case '+':
        max = -1;
        break;
      case '{':
        ++m_pos;
        ParseQuantity(min, max);
        --m_pos;  // stands on the closing brace, consumed below
        break;
      default:
        return atom;
    }
    ++m_pos;
    Node repeat;
    repeat.kind = Node::kRepeat;
    repeat.min = min;
    repeat.max = max;
    repeat.children.push_back(std::move(atom));
    return repeat;
  }

  int ParseNumber() {
    if (Peek() < '0' || Peek() > '9') Fail("expected a number in a quantifier");
    int value = 0;
    while (Peek() >= '0' && Peek() <= '9') {
      value = value * 10 + static_cast<int>(Next() - '0');
      if (value > kMaxCount) Fail("quantifier too large");
    }
    return value;
  }

  // After "{": n}, n,} or n,m}; leaves the position after the closing brace.
  void ParseQuantity(int& min, int& max) {
    min = ParseNumber();
    max = min;
    if (Peek() == ',') {
      ++m_pos;
      max = Peek() == '}' ? -1 : ParseNumber();
    }
    if (Next() != '}') Fail("expected '}'");
    if (max != -1 && max < min) Fail("quantifier range out of order");
  }

  Node ParseAtom(int depth) {
    const char32_t c = Next();
    switch (c) {
      case '(': {
        Node group = ParseRegExp(depth + 1);
        if (Next() != ')') Fail("expected ')'");
        return group;
      }
      case '[':
        return SetNode(ParseCharGroup(depth + 1));
      case '.': {
        CodePointSet set;
        set.Add('\n');
        set.Add('\r');
        set.Negate();
        return SetNode(std::move(set));
      }
      case '\\': {
        CodePointSet set;
        char32_t single;
        if (ParseEscape(set, single)) set.Add(single);
        return SetNode(std::move(set));
      }
      case '?':
      case '*':
      case '+':
      case '{':
      case '}':
      case ')':
      case ']':
      case '|':
        --m_pos;
        Fail("unexpected metacharacter");
      default: {
        CodePointSet set;
        set.Add(c);
        return SetNode(std::move(set));
      }
    }
  }

  // After "\": a single-character escape sets `single` and returns true; a multi-character
  // escape or a property fills `set` and returns false.
  bool ParseEscape(CodePointSet& set, char32_t& single) {
    const char32_t c = Next();
    switch (c) {
      case 'n':
        single = '\n';
        return true;
      case 'r':
        single = '\r';
        return true;
      case 't':
        single = '\t';
        return true;
      case '\\':
      case '|':
      case '.':
      case '?':
      case '*':
      case '+':
      case '(':
      case ')':
      case '{':
      case '}':
      case '-':
      case '[':
      case ']':
      case '^':
        single = c;
        return true;
      case 's':
      case 'S':
        set.Add(' ');
        set.Add('\t');
        set.Add('\n');
        set.Add('\r');
        break;
      case 'i':
      case 'I':
        set = NameStartChars();
        break;
      case 'c':
      case 'C':
        set = NameChars();
        break;
      case 'd':
      case 'D':
        set = CategorySet(Mask("Nd"));
        break;
      case 'w':
      case 'W':
        // Every character but punctuation, separators and "other" characters.
        set = CategorySet(Mask("P") | Mask("Z") | Mask("C"));
        set.Negate();
        break;
      case 'p':
      case 'P':
        set = ParseProperty();
        break;
      default:
        --m_pos;
        Fail("unknown escape");
    }
    if (c >= 'A' && c <= 'Z') set.Negate();
    return false;
  }

  // After "\p" or "\P": {Name}.
  CodePointSet ParseProperty() {
    if (Next() != '{') Fail("expected '{' after \\p");
    std::string name;
    while (Peek() != '}') {
      const char32_t c = Next();
      if (c > 0x7E) Fail("unknown property");
      name += static_cast<char>(c);
    }
    ++m_pos;
    if (name.size() > 2 && name.compare(0, 2, "Is") == 0) {
      for (const Block& block : kBlocks) {
        if (name.compare(2, std::string::npos, block.name) == 0) {
          CodePointSet set;
          set.AddRange(block.first, block.last);
          return set;
        }
      }
      Fail("unknown block name");
    }
    const std::uint32_t mask = CategoryMask(name);
    if (mask == 0) Fail("unknown category");
    return CategorySet(mask);
  }

  // A plain character or a single-character escape inside a class, for the end of a range.
  char32_t ParseRangeEnd() {
    const char32_t c = Next();
    if (c == '[' || c == ']') Fail("bad range end");
    if (c != '\\') return c;
    CodePointSet unused;
    char32_t single = 0;
    if (!ParseEscape(unused, single)) Fail("a multi-character escape cannot end a range");
    return single;
  }

  // After "[": the group, an optional subtraction, and the closing "]".
  CodePointSet ParseCharGroup(int depth) {
    if (depth > kMaxDepth) Fail("classes nested too deeply");
    CodePointSet set;
    bool negated = false;
    if (Peek() == '^') {
      negated = true;
      ++m_pos;
    }
    bool first = true;
    for (;;) {
      if (AtEnd()) Fail("unterminated character class");
      const char32_t c = Peek();
      if (c == ']') {
        if (first) Fail("empty character class");
        ++m_pos;
        break;
      }
      if (c == '-' && Peek(1) == '[' && !first) {
        m_pos += 2;
        const CodePointSet subtracted = ParseCharGroup(depth + 1);
        if (Next() != ']') Fail("a subtraction must end its class");
        if (negated) set.Negate();
        set.Subtract(subtracted);
        return set;
      }
      if (c == '-' && !first && Peek(1) != ']') Fail("unescaped '-' in a character class");
      if (c == '[') Fail("unescaped '[' in a character class");
      ++m_pos;
      char32_t low = c;
      if (c == '\\') {
        CodePointSet escaped;
        if (!ParseEscape(escaped, low)) {
          set.Add(escaped);
          first = false;
          continue;
        }
      }
      if (Peek() == '-' && Peek(1) != ']' && Peek(1) != '[') {
        ++m_pos;
        const char32_t high = ParseRangeEnd();
        if (high < low) Fail("character range out of order");
        set.AddRange(low, high);
      } else {
        set.Add(low);
      }
      first = false;
    }
    if (negated) set.Negate();
    return set;
  }

  std::vector<CodePointSet>& m_sets;
  std::vector<char32_t> m_text;
  std::size_t m_pos = 0;
};

// ---------------------------------------------------------------------------------------------
// Code generation: syntax tree to automaton

class Emitter {
 public:
  explicit Emitter(std::vector<CXsdRegex::Instruction>& program) : m_program(program) {}

  void Emit(const Node& node) {
    switch (node.kind) {
      case Node::kEmpty:
        break;
      case Node::kSet:
        Push(CXsdRegex::Instruction::kSet, node.set, 0);
        break;
      case Node::kConcat:
        for (const Node& child : node.children) Emit(child);
        break;
      case Node::kAlternation: {
        std::vector<std::size_t> jumps;
        for (std::size_t i = 0; i < node.children.size(); ++i) {
          if (i + 1 == node.children.size()) {
            Emit(node.children[i]);
            break;
          }
          const std::size_t split = Push(CXsdRegex::Instruction::kSplit, 0, 0);
          m_program[split].x = Here();
          Emit(node.children[i]);
          jumps.push_back(Push(CXsdRegex::Instruction::kJump, 0, 0));
          m_program[split].y = Here();
        }
        for (std::size_t jump : jumps) m_program[jump].x = Here();
        break;
      }
      case Node::kRepeat: {
        const Node& body = node.children[0];
        for (int i = 0; i < node.min; ++i) Emit(body);
        if (node.max < 0) {
          const std::size_t split = Push(CXsdRegex::Instruction::kSplit, 0, 0);
          m_program[split].x = Here();
          Emit(body);
          Push(CXsdRegex::Instruction::kJump, static_cast<std::uint32_t>(split), 0);
          m_program[split].y = Here();
        } else {
          std::vector<std::size_t> splits;
          for (int i = node.min; i < node.max; ++i) {
            splits.push_back(Push(CXsdRegex::Instruction::kSplit, 0, 0));
            m_program[splits.back()].x = Here();
            Emit(body);
          }
          for (std::size_t split : splits) m_program[split].y = Here();
        }
        break;
      }
    }
  }

  std::size_t Push(CXsdRegex::Instruction::Op op, std::uint32_t x, std::uint32_t y) {
    if (m_program.size() >= kMaxProgram) throw PatternError{"pattern too large"};
    m_program.push_back({op, x, y});
    return m_program.size() - 1;
  }

 private:
  std::uint32_t Here() const { return static_cast<std::uint32_t>(m_program.size()); }

  std::vector<CXsdRegex::Instruction>& m_program;
};

}  // namespace

CXsdRegex::CXsdRegex(std::string_view pattern) {
  try {
    Parser parser(pattern, m_sets);
    const Node root = parser.Parse();
    Emitter emitter(m_program);
    emitter.Emit(root);
    emitter.Push(Instruction::kMatch, 0, 0);
  } catch (const PatternError& error) {
    throw COvException(FormatString("Invalid pattern [%s]: %s", std::string(pattern).c_str(),
                                    error.reason.c_str()));
  }
  BuildAsciiAutomaton();
}

void CXsdRegex::BuildAsciiAutomaton() {
  // Bounds on the work done for a pattern when it is compiled (at most states * 128 closures of
  // the program), since restrictions are built in static tables.
  constexpr std::size_t kMaxProgram = 128;
  constexpr std::size_t kMaxStates = 128;
  if (m_program.size() > kMaxProgram) return;
  using StateSet = std::vector<std::uint32_t>;
  // The instructions that read a character or match, reachable from `starts` without reading
  // one: a state of the automaton, sorted so that equal sets compare equal.
  auto closure = [this](StateSet starts) {
    std::vector<bool> seen(m_program.size(), false);
    StateSet set;
    while (!starts.empty()) {
      const std::uint32_t pc = starts.back();
      starts.pop_back();
      if (seen[pc]) continue;
      seen[pc] = true;
      const Instruction& in = m_program[pc];
      if (in.op == Instruction::kJump) {
        starts.push_back(in.x);
      } else if (in.op == Instruction::kSplit) {
        starts.push_back(in.y);
        starts.push_back(in.x);
      } else {
        set.push_back(pc);
      }
    }
    std::sort(set.begin(), set.end());
    return set;
  };
  std::vector<StateSet> states;
  std::map<StateSet, std::uint16_t> numbers;
  // The number of a state, made when new; false when there would be too many.
  auto number = [&](StateSet set, std::uint16_t& result) {
    if (set.empty()) {
      result = kNoMatch;
      return true;
    }
    const auto found = numbers.find(set);
    if (found != numbers.end()) {
      result = found->second;
      return true;
    }
    if (states.size() == kMaxStates) return false;
    result = static_cast<std::uint16_t>(states.size());
    numbers.emplace(set, result);
    states.push_back(std::move(set));
    return true;
  };
  std::uint16_t start = 0;
  number(closure(StateSet{0}), start);
  std::vector<std::uint16_t> table;
  std::vector<bool> accepts;
  // `states` grows while it is walked: each new state gets its row in turn.
  for (std::size_t s = 0; s < states.size(); ++s) {
    bool accepting = false;
    for (const std::uint32_t pc : states[s]) {
      if (m_program[pc].op == Instruction::kMatch) accepting = true;
    }
    accepts.push_back(accepting);
    for (char32_t c = 0; c < 128; ++c) {
      StateSet reached;
      for (const std::uint32_t pc : states[s]) {
        const Instruction& in = m_program[pc];
        if (in.op == Instruction::kSet && m_sets[in.x].Contains(c)) reached.push_back(pc + 1);
      }
      std::uint16_t to = kNoMatch;
      if (!number(closure(std::move(reached)), to)) return;
      table.push_back(to);
    }
  }
  m_ascii = std::move(table);
  m_asciiAccepts = std::move(accepts);
}

bool CXsdRegex::Matches(std::string_view text) const {
  if (!m_ascii.empty()) {
    std::uint32_t state = 0;
    std::size_t i = 0;
    for (; i < text.size(); ++i) {
      const unsigned char c = static_cast<unsigned char>(text[i]);
      if (c >= 0x80) break;
      state = m_ascii[state * 128 + c];
      if (state == kNoMatch) return false;
    }
    if (i == text.size()) return m_asciiAccepts[state];
  }
  return MatchesByProgram(text);
}

bool CXsdRegex::MatchesByProgram(std::string_view text) const {
  // Patterns are checked on every value written or read: the lists live on the stack for the
  // usual small programs. Each list holds an instruction at most once per step (the marks), and
  // the walk's stack at most two entries per instruction visited plus the start.
  const std::size_t size = m_program.size();
  constexpr std::size_t kInlineSize = 64;
  const std::size_t needed = 5 * size + 1;
  std::uint32_t inlineStore[5 * kInlineSize + 1];
  std::unique_ptr<std::uint32_t[]> heapStore;
  std::uint32_t* store = inlineStore;
  if (size > kInlineSize) {
    heapStore.reset(new std::uint32_t[needed]);
    store = heapStore.get();
  }
  // mark[pc] == generation: pc is already in the list being built.
  std::uint32_t* const mark = store;
  std::uint32_t* current = store + size;
  std::uint32_t* next = store + 2 * size;
  std::uint32_t* const stack = store + 3 * size;
  std::fill(mark, mark + size, 0u);
  std::size_t currentCount = 0;
  std::size_t nextCount = 0;
  std::uint32_t generation = 0;

  // Adds pc and everything reachable from it without reading a character.
  auto addThread = [&](std::uint32_t* list, std::size_t& count, std::uint32_t start) {
    std::size_t depth = 0;
    stack[depth++] = start;
    while (depth != 0) {
      const std::uint32_t pc = stack[--depth];
      if (mark[pc] == generation) continue;
      mark[pc] = generation;
      const Instruction& in = m_program[pc];
      switch (in.op) {
        case Instruction::kJump:
          stack[depth++] = in.x;
          break;
        case Instruction::kSplit:
          stack[depth++] = in.y;
          stack[depth++] = in.x;
          break;
        default:
          list[count++] = pc;
          break;
      }
    }
  };

  ++generation;
  addThread(current, currentCount, 0);
  for (std::size_t i = 0; i < text.size();) {
    const char32_t c = DecodeUtf8(text, i);
    ++generation;
    nextCount = 0;
    for (std::size_t k = 0; k < currentCount; ++k) {
      const std::uint32_t pc = current[k];
      const Instruction& in = m_program[pc];
      if (in.op == Instruction::kSet && m_sets[in.x].Contains(c))
        addThread(next, nextCount, pc + 1);
    }
    std::swap(current, next);
    currentCount = nextCount;
    if (currentCount == 0) return false;
  }
  for (std::size_t k = 0; k < currentCount; ++k) {
    if (m_program[current[k]].op == Instruction::kMatch) return true;
  }
  return false;
}

}  // namespace detail
}  // namespace OvXmlLib6
