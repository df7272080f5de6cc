#pragma once

#include <QFont>
#include <QStringList>

#include <limits>

/// The text's lines ("\n" or "\r\n" between them) in the font, each at most maxWidth pixels wide: broken between words
/// where that is possible and within a word, such as a long path, where it is not. A line that fits stays as it is.
/// There is at least one line and there are at most maxLines (1 or more); the last one ends in an ellipsis when more
/// would follow.
QStringList wrappedLines(const QString &text, const QFont &font, int maxWidth,
                         int maxLines = std::numeric_limits<int>::max());
