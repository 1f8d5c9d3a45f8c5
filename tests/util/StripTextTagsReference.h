// The tag removal done the slow, literal way: every tag removed by moving the rest down. Tests and
// the fuzzer compare SXUtilStripTextTags against it.
#pragma once

#include <string>

inline std::u16string StripLiterally(std::u16string t) {
  size_t pos = t.find(u'^');
  while (pos != std::u16string::npos) {
    if (t.compare(pos, 7, u"^flat()") == 0)
      t[pos++] = u'b';
    const size_t open = t.find(u'(', pos + 1);
    const size_t close = open == std::u16string::npos ? open : t.find(u')', open + 1);
    if (close == std::u16string::npos)
      break;
    t.erase(pos, close + 1 - pos);
    pos = t.find(u'^', pos);
  }
  return t;
}
