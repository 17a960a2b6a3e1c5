#pragma once

#include <Qsci/qscilexercpp.h>

namespace mirvel::ui {

/// A language that is like C++ in its comments, numbers and strings, and has words of its own.
class BracesLexer final : public QsciLexerCPP {
 public:
  struct Words {
    const char* language;
    const char* keywords;
    const char* types;
  };
  static const Words javaScript;
  static const Words swift;

  explicit BracesLexer(const Words& words);

  const char* language() const override;
  const char* keywords(int set) const override;

 private:
  Words m_words;
};

}  // namespace mirvel::ui
