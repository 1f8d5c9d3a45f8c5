// eu16string: a UTF-16 text value (16-bit code units; a surrogate pair counts as two) with
// conversions from and to the byte encodings of the host and the platform, and "Ansi"
// operations that count positions from 1 and clip out-of-range arguments instead of failing.
// Thread: any; an object is not shared between threads without a lock.
#pragma once

#include <string>

class eu16string {
public:
  using units_type = std::basic_string<unsigned short>;

  eu16string() = default;
  // Zero-terminated text in the application's text encoding (Mac Roman); empty when it cannot
  // be decoded or is null.
  eu16string(const char* text);
  // Zero-terminated UTF-8 text; empty when it is not valid UTF-8 or is null.
  eu16string(const unsigned char* text);
  // One code point: U+10000..U+10FFFF as a surrogate pair, anything else as the unit of its low
  // 16 bits (empty when that unit is 0).
  explicit eu16string(unsigned int codePoint);
  explicit eu16string(int codePoint) : eu16string(static_cast<unsigned int>(codePoint)) {}
  // One character in the application's text encoding; empty for 0.
  explicit eu16string(char c);
  // The units as they are.
  explicit eu16string(units_type units) : text_(std::move(units)) {}
  virtual ~eu16string() = default;

  eu16string(const eu16string&) = default;
  eu16string(eu16string&&) = default;
  eu16string& operator=(const eu16string&) = default;
  eu16string& operator=(eu16string&&) = default;

  const units_type& str() const { return text_; }
  const unsigned short* c_str() const { return text_.c_str(); }
  size_t length() const { return text_.size(); }
  bool empty() const { return text_.empty(); }
  bool operator==(const eu16string& other) const { return text_ == other.text_; }

  // The text in the application's text encoding; a character it cannot hold becomes '?'.
  // `out` is cleared first and stays empty when the conversion cannot be made.
  void GetStdString(std::string& out) const;

  // 1-based position of the first occurrence of `sub`, 0 when there is none (an empty `sub` is
  // found at 1 in a non-empty string and nowhere in an empty one).
  unsigned int AnsiPos(const eu16string& sub) const;
  // Removes `count` units from 1-based `index`, cut at the end; nothing for index 0, count < 1
  // or index past the end.
  eu16string& AnsiDelete(unsigned int index, int count);
  // `count` units from 1-based `index` (below 1 counts as 1), cut at the end; empty when count
  // < 1 or index is past the end.
  eu16string AnsiSubString(int index, int count) const;
  // Truncates to `length` units; never lengthens.
  eu16string& AnsiSetLength(unsigned int length);
  // The unit at 1-based `index`; a space (0x20) outside 1..length.
  unsigned short AnsiCharAtIndex(int index) const;
  // The unit at 1-based `index`. Outside 1..length it is the first unit of a non-empty string
  // (the long-standing rule callers rely on); for an empty string it is a scratch unit outside
  // the text, so a write through it is discarded and the string stays empty and terminated.
  unsigned short& AnsiCharAtIndex(int index);

private:
  units_type text_;
};

// `text`'s leading decimal number (0 when it does not start with one); `defaultValue` when
// `text` is empty or no platform string can be made from it.
int StrToIntDef(eu16string text, int defaultValue);
// The decimal text of `value`.
eu16string IntToEu16Str(long value);
