#include "ui/editor/KeyLabel.h"

#include "core/text/Bidirectional.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

constexpr QChar zeroWidthSpace(0x200B);

bool isEndOfWord(QChar character, QChar next) {
  return !character.isLetterOrNumber() || (character.isLower() && next.isUpper());
}

/// With places at which a line may end: a label breaks lines only at blanks.
QString breakable(const QString& key) {
  constexpr qsizetype longestWord = 16;
  QString result;
  qsizetype length = 0;
  for (qsizetype i = 0; i < key.size(); ++i) {
    result.append(key[i]);
    ++length;
    const bool isLast = i + 1 == key.size();
    if (isLast || key[i].isHighSurrogate() || key[i + 1].isMark()) continue;
    if (length < longestWord && !isEndOfWord(key[i], key[i + 1])) continue;
    result.append(zeroWidthSpace);
    length = 0;
  }
  return result;
}

}  // namespace

KeyLabel::KeyLabel(const std::string& key, QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setFixedWidth(SectionGrid::labelWidth);
  // A label takes its direction from its text. In a line from right to left the colon stands at the left of a Latin
  // key, which is where its reader looks for it.
  const QString text = breakable(shownText(key));
  setText(qt(bidirectionalString({utf8(text)}, {}, isRightToLeft())) + QLatin1Char(':'));
  setAlignment(Qt::AlignTop | Qt::AlignAbsolute | (isRightToLeft() ? Qt::AlignLeft : Qt::AlignRight));
  setAccessibleName(shownText(key));
}

}  // namespace mirvel::ui
