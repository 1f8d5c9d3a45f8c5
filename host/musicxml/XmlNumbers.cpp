#include "XmlNumbers.h"

#include <cctype>

#include "ScoreError.h"

namespace scribo::musicxml {

Rational ParseDecimal(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
    text.remove_prefix(1);
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
    text.remove_suffix(1);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  int64_t num = 0;
  int64_t den = 1;
  bool digits = false;
  bool point = false;
  for (char c : text) {
    if (c == '.' && !point) {
      point = true;
      continue;
    }
    if (c < '0' || c > '9')
      throw ScoreError("\"" + std::string(text) + "\" is not a number");
    digits = true;
    if (num > 100000000000LL || den > 100000000000LL)
      throw ScoreError("\"" + std::string(text) + "\" has too many digits");
    num = num * 10 + (c - '0');
    if (point)
      den *= 10;
  }
  if (!digits)
    throw ScoreError("\"" + std::string(text) + "\" is not a number");
  return Rational(negative ? -num : num, den);
}

int SumOfNumbers(std::string_view text) {
  int total = 0;
  int current = 0;
  for (char c : text) {
    if (c >= '0' && c <= '9') {
      current = current * 10 + (c - '0');
      if (current > 1000000)
        return 0;
    } else {
      total += current;
      current = 0;
    }
  }
  return total + current;
}

std::string FormatDecimal(Rational value) {
  if (value.IsWhole())
    return std::to_string(value.num());
  // A finite decimal exists when the denominator has no factors but 2 and 5.
  int64_t den = value.den();
  int places = 0;
  int64_t scale = 1;
  while (den % 10 == 0 || den % 2 == 0 || den % 5 == 0) {
    if (den % 10 == 0)
      den /= 10;
    else if (den % 2 == 0)
      den /= 2;
    else
      den /= 5;
    ++places;
  }
  if (den != 1 || places > 12)
    throw ScoreError(value.ToString() + " has no exact decimal form");
  for (int i = 0; i < places; ++i)
    scale *= 10;
  Rational scaled = value * Rational(scale);
  int64_t whole = scaled.num();
  bool negative = whole < 0;
  if (negative)
    whole = -whole;
  std::string digits = std::to_string(whole);
  while (static_cast<int>(digits.size()) <= places)
    digits.insert(digits.begin(), '0');
  digits.insert(digits.end() - places, '.');
  while (digits.back() == '0')
    digits.pop_back();
  if (digits.back() == '.')
    digits.pop_back();
  return negative ? "-" + digits : digits;
}

} // namespace scribo::musicxml
