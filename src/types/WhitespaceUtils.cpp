#include "OvXmlLib6/types/WhitespaceUtils.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "types/WhitespaceView.h"

#include <cstring>

namespace OvXmlLib6 {
namespace detail {

namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

std::string_view PreserveView(std::string_view s, std::string& scratch) {
  if (s.find('\r') == std::string_view::npos) return s;
  scratch.clear();
  scratch.reserve(s.size());
  for (char c : s) {
    if (c != '\r') scratch += c;
  }
  return scratch;
}

std::string_view ReplaceView(std::string_view s, std::string& scratch) {
  std::size_t i = 0;
  while (i < s.size() && s[i] != '\r' && s[i] != '\t' && s[i] != '\n') ++i;
  if (i == s.size()) return s;
  scratch.assign(s.data(), i);
  for (; i < s.size(); ++i) {
    const char c = s[i];
    if (c == '\r') continue;
    scratch += IsBlank(c) ? ' ' : c;
  }
  return scratch;
}

// True when collapsing s would change nothing: no CR, tab or LF, no leading or trailing space,
// no two spaces in a row.
bool IsCollapsed(std::string_view s) {
  if (s.empty()) return true;
  if (s.front() == ' ' || s.back() == ' ') return false;
  char previous = 'x';
  for (char c : s) {
    if (c == '\r' || c == '\t' || c == '\n') return false;
    if (c == ' ' && previous == ' ') return false;
    previous = c;
  }
  return true;
}

std::string_view CollapseView(std::string_view s, std::string& scratch) {
  if (IsCollapsed(s)) return s;
  scratch.clear();
  scratch.reserve(s.size());
  // Starts set, so leading whitespace is dropped. A CR neither ends nor starts a run.
  bool lastWasSpace = true;
  for (char c : s) {
    if (c == '\r') continue;
    if (IsBlank(c)) {
      if (!lastWasSpace) scratch += ' ';
      lastWasSpace = true;
    } else {
      scratch += c;
      lastWasSpace = false;
    }
  }
  if (!scratch.empty() && scratch.back() == ' ') scratch.pop_back();
  return scratch;
}

}  // namespace

std::string_view ApplyRuleView(Rule rule, std::string_view s, std::string& scratch) {
  switch (rule) {
    case CWhitespaceUtils::WhitespaceRule_None:
      return s;
    case CWhitespaceUtils::WhitespaceRule_Preserve:
      return PreserveView(s, scratch);
    case CWhitespaceUtils::WhitespaceRule_Replace:
      return ReplaceView(s, scratch);
    case CWhitespaceUtils::WhitespaceRule_Collapse:
      return CollapseView(s, scratch);
  }
  throw COvException("Unknown WhitespaceRule");
}

}  // namespace detail

namespace {

// Returns the view as a string, moving the scratch buffer out when the view points into it.
std::string ToString(std::string_view view, const std::string& source, std::string& scratch) {
  if (view.data() == source.data() && view.size() == source.size()) return source;
  if (!scratch.empty() && view.data() == scratch.data() && view.size() == scratch.size()) {
    return std::move(scratch);
  }
  return std::string(view);
}

}  // namespace

std::string CWhitespaceUtils::ApplyRule(WhitespaceRule rule, const std::string& s) {
  std::string scratch;
  return ToString(detail::ApplyRuleView(rule, s, scratch), s, scratch);
}

std::string CWhitespaceUtils::Preserve(const std::string& s) {
  return ApplyRule(WhitespaceRule_Preserve, s);
}

std::string CWhitespaceUtils::Preserve(const char* p, int len) {
  if (p == nullptr || len < 1) return std::string();
  std::string result;
  result.reserve(static_cast<std::size_t>(len));
  for (int i = 0; i < len; ++i) {
    if (p[i] != '\r') result += p[i];
  }
  return result;
}

std::string CWhitespaceUtils::Replace(const std::string& s) {
  return ApplyRule(WhitespaceRule_Replace, s);
}

std::string CWhitespaceUtils::Collapse(const std::string& s) {
  return ApplyRule(WhitespaceRule_Collapse, s);
}

}  // namespace OvXmlLib6
