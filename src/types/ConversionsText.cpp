// Booleans, characters, strings and binary data.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Conversions.h"
#include "types/WhitespaceView.h"

#include <string_view>

namespace OvXmlLib6 {

namespace {

bool EqualsIgnoreCase(std::string_view a, std::string_view lowerCase) {
  if (a.size() != lowerCase.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char c = a[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != lowerCase[i]) return false;
  }
  return true;
}

}  // namespace

bool CConversions::booleanFromString(const std::string& s, WhitespaceRule rule) {
  std::string scratch;
  const std::string_view t = detail::ApplyRuleView(rule, s, scratch);
  if (EqualsIgnoreCase(t, "true")) return true;
  if (EqualsIgnoreCase(t, "false")) return false;
  if (t == "1") return true;
  if (t == "0") return false;
  throw COvInvalidValueException(
      FormatString("A Boolean Value read from an XML document was invalid [%s]. Valid values are "
                   "'true', 'false', '1', or '0'",
                   std::string(t).c_str()));
}

std::string CConversions::booleanToString(bool value) { return value ? "true" : "false"; }

char CConversions::charFromString(const std::string& s, WhitespaceRule rule) {
  std::string scratch;
  const std::string_view t = detail::ApplyRuleView(rule, s, scratch);
  if (t.size() != 1) {
    throw COvInvalidValueException(
        FormatString("The value [%s] can not be a char as it is either empty of greater than 1 "
                     "char long",
                     std::string(t).c_str()));
  }
  return t[0];
}

std::string CConversions::charToString(char value) {
  return value == '\0' ? std::string() : std::string(1, value);
}

std::string CConversions::stringFromString(const std::string& s, WhitespaceRule rule) {
  return CWhitespaceUtils::ApplyRule(rule, s);
}

std::string CConversions::stringToString(const std::string& value) { return value; }

CBinaryData CConversions::hexBinaryFromString(const std::string& s, WhitespaceRule rule) {
  const std::string t = CWhitespaceUtils::ApplyRule(rule, s);
  CBinaryData data;
  data.SetAsHexString(t.c_str());
  return data;
}

std::string CConversions::hexBinaryToString(const CBinaryData& value) {
  return value.GetAsHexString();
}

CBinaryData CConversions::base64BinaryFromString(const std::string& s, WhitespaceRule rule) {
  const std::string t = CWhitespaceUtils::ApplyRule(rule, s);
  CBinaryData data;
  data.SetAsBase64(t.c_str());
  return data;
}

std::string CConversions::base64BinaryToString(const CBinaryData& value) {
  return value.GetAsBase64();
}

}  // namespace OvXmlLib6
