#include "KeyboardShortcuts/Text.h"

#include <QTextBoundaryFinder>

namespace KeyboardShortcuts {

QString capitalized(const QString& text) {
    QString result;
    bool startsWord = true;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype start = 0, end = finder.toNextBoundary(); end > start;
         start = end, end = finder.toNextBoundary()) {
        const QString character = text.mid(start, end - start);
        if (startsWord) {
            // One letter may become two, of which only the first starts the word.
            const QString upper = character.toUpper();
            result += upper.left(1) +
                      (upper.size() > character.size() ? upper.mid(1).toLower() : upper.mid(1));
        } else {
            result += character.toLower();
        }
        startsWord = character.at(0).isSpace();
    }
    return result;
}

} // namespace KeyboardShortcuts
