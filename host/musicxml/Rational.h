// Exact fractions for musical time: positions and durations in quarters or in MusicXML ticks.
// Triplets and other tuplets have no finite binary form, so time is never kept in floating
// point; a value that no longer fits 64 bits is an error, not a rounding.
#pragma once

#include <cstdint>
#include <numeric>
#include <stdexcept>
#include <string>

namespace scribo::musicxml {

class Rational {
public:
  constexpr Rational() = default;
  constexpr Rational(int64_t whole) : num_(whole) {}
  Rational(int64_t num, int64_t den) : num_(num), den_(den) {
    if (den_ == 0)
      throw std::domain_error("a duration with a zero denominator");
    Normalise();
  }

  int64_t num() const { return num_; }
  int64_t den() const { return den_; }
  bool IsWhole() const { return den_ == 1; }

  // Rounds toward minus infinity: a position inside a tick belongs to that tick.
  int64_t Floor() const {
    int64_t q = num_ / den_;
    return (num_ % den_ != 0 && num_ < 0) ? q - 1 : q;
  }

  friend Rational operator+(Rational a, Rational b) {
    int64_t g = std::gcd(a.den_, b.den_);
    int64_t da = b.den_ / g;
    return Rational(Add(Mul(a.num_, da), Mul(b.num_, a.den_ / g)), Mul(a.den_, da));
  }
  friend Rational operator-(Rational a, Rational b) { return a + Rational(-b.num_, b.den_); }
  friend Rational operator*(Rational a, Rational b) {
    int64_t g1 = std::gcd(a.num_, b.den_);
    int64_t g2 = std::gcd(b.num_, a.den_);
    if (g1 == 0)
      g1 = 1;
    if (g2 == 0)
      g2 = 1;
    return Rational(Mul(a.num_ / g1, b.num_ / g2), Mul(a.den_ / g2, b.den_ / g1));
  }
  friend Rational operator/(Rational a, Rational b) {
    if (b.num_ == 0)
      throw std::domain_error("a duration divided by zero");
    return a * Rational(b.den_, b.num_);
  }
  Rational& operator+=(Rational b) { return *this = *this + b; }
  Rational& operator-=(Rational b) { return *this = *this - b; }

  friend bool operator==(const Rational&, const Rational&) = default;
  friend auto operator<=>(Rational a, Rational b) {
    // Cross-multiplication in 128 bits cannot overflow for 64-bit parts.
    __int128 l = static_cast<__int128>(a.num_) * b.den_;
    __int128 r = static_cast<__int128>(b.num_) * a.den_;
    return l <=> r;
  }

  std::string ToString() const {
    return den_ == 1 ? std::to_string(num_) : std::to_string(num_) + "/" + std::to_string(den_);
  }

private:
  static int64_t Mul(int64_t a, int64_t b) {
    int64_t r;
    if (__builtin_mul_overflow(a, b, &r))
      throw std::overflow_error("a duration too fine to be written exactly");
    return r;
  }
  static int64_t Add(int64_t a, int64_t b) {
    int64_t r;
    if (__builtin_add_overflow(a, b, &r))
      throw std::overflow_error("a duration too long to be written exactly");
    return r;
  }
  void Normalise() {
    if (den_ < 0) {
      num_ = -num_;
      den_ = -den_;
    }
    int64_t g = std::gcd(num_, den_);
    if (g > 1) {
      num_ /= g;
      den_ /= g;
    }
  }

  int64_t num_ = 0;
  int64_t den_ = 1;
};

// Least common multiple that refuses to overflow.
inline int64_t CheckedLcm(int64_t a, int64_t b) {
  int64_t g = std::gcd(a, b);
  int64_t r;
  if (__builtin_mul_overflow(a / g, b, &r))
    throw std::overflow_error("the durations need more divisions than MusicXML can hold");
  return r;
}

} // namespace scribo::musicxml
