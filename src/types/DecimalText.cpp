#include "types/DecimalText.h"

#include "types/CharClass.h"

#include <string>

namespace OvXmlLib6 {
namespace detail {

namespace {

// value = 0.digits * 10^point, digits without leading or trailing zeros; zero has no digits.
struct Normalised {
  bool negative = false;
  std::string digits;
  long long point = 0;
};

bool Normalise(std::string_view text, Normalised& out) {
  std::size_t i = 0;
  const std::size_t n = text.size();
  if (i < n && (text[i] == '+' || text[i] == '-')) out.negative = text[i++] == '-';
  std::string digits;
  long long integerDigits = 0;
  for (; i < n && IsDigit(text[i]); ++i, ++integerDigits) digits += text[i];
  if (i < n && text[i] == '.') {
    for (++i; i < n && IsDigit(text[i]); ++i) digits += text[i];
  }
  if (digits.empty()) return false;
  long long exponent = 0;
  if (i < n && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    bool negativeExponent = false;
    if (i < n && (text[i] == '+' || text[i] == '-')) negativeExponent = text[i++] == '-';
    if (i == n || !IsDigit(text[i])) return false;
    for (; i < n && IsDigit(text[i]); ++i) {
      if (exponent < 1000000000) exponent = exponent * 10 + (text[i] - '0');
    }
    if (negativeExponent) exponent = -exponent;
  }
  if (i != n) return false;
  std::size_t first = digits.find_first_not_of('0');
  if (first == std::string::npos) {
    out.negative = false;  // minus zero is zero
    return true;
  }
  const std::size_t last = digits.find_last_not_of('0');
  out.digits = digits.substr(first, last - first + 1);
  out.point = integerDigits - static_cast<long long>(first) + exponent;
  return true;
}

// Order of the magnitudes.
int CompareMagnitude(const Normalised& a, const Normalised& b) {
  if (a.digits.empty() || b.digits.empty()) {
    return a.digits.empty() ? (b.digits.empty() ? 0 : -1) : 1;
  }
  if (a.point != b.point) return a.point < b.point ? -1 : 1;
  const int c = a.digits.compare(b.digits);  // a proper prefix is the smaller number
  return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

}  // namespace

Order CompareDecimalText(std::string_view a, std::string_view b) {
  Normalised x, y;
  if (!Normalise(a, x) || !Normalise(b, y)) return Order::kIncomparable;
  int c;
  if (x.negative != y.negative) {
    c = x.negative ? -1 : 1;
  } else {
    c = CompareMagnitude(x, y);
    if (x.negative) c = -c;
  }
  return c < 0 ? Order::kLess : (c > 0 ? Order::kGreater : Order::kEqual);
}

void CountDecimalDigits(std::string_view text, int& total, int& fraction) {
  std::size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  while (i < text.size() && text[i] == '0') ++i;
  int integerDigits = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) ++integerDigits;
  fraction = 0;
  if (i < text.size() && text[i] == '.') {
    int counted = 0;
    for (++i; i < text.size() && IsDigit(text[i]); ++i) {
      ++counted;
      if (text[i] != '0') fraction = counted;
    }
  }
  total = integerDigits + fraction;
}

}  // namespace detail
}  // namespace OvXmlLib6
