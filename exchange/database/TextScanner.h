#pragma once

#include "exchange/database/Database.h"

#include <QByteArray>

#include <optional>
#include <string_view>

/// Goes through the text of a database piece by piece: words, numbers, texts in quotation marks, single characters.
/// Blanks and line ends between them are passed over, and comments where the kind of file has them. What is asked for
/// and not there is not taken. Takes time that grows with the text only, whatever stands in it.
class TextScanner
{
public:
    enum Comments {
        NoComments,
        CComments ///< from // to the end of the line, and /* */
    };

    enum Lines { OneLine, SeveralLines };

    /// text: UTF-8.
    TextScanner(QByteArray text, Comments comments);

    bool isAtEnd();
    bool symbol(char wanted);
    bool nextIs(char wanted) { return peek() == wanted; }
    /// Letters, digits and underscores, and characters beyond ASCII; does not begin with a digit.
    std::optional<std::string_view> word();
    std::optional<std::string_view> peekWord();
    std::optional<double> number();
    /// Decimal or, with 0x, hexadecimal, from -2^63 to 2^64-1, negative ones as two's complement. A number with a
    /// fraction of zeros is one, too.
    std::optional<quint64> integer();
    /// Between quotation marks. \" is a quotation mark in it, unless a semicolon follows. A text that does not end goes
    /// to the end of its line, see hasOpenText().
    std::optional<std::string_view> quoted(Lines lines);
    /// The last quoted() had no end.
    bool hasOpenText() const { return m_openText; }
    /// Moves on by a character, whatever it is.
    void skipCharacter();

    /// Of the next piece.
    TextPlace place();
    /// The next piece is the first one of its line.
    bool isFirstOfLine();
    /// The next piece is on this line.
    bool isOnLine(int line) { return !isAtEnd() && place().line == line; }
    std::string_view rest() const;

private:
    char peek();
    void skipBlanks();
    bool skipComment();
    std::string_view numberText();
    std::size_t endOfQuoted(Lines lines) const;

    QByteArray m_text;
    Comments m_comments;
    int m_at = 0;
    int m_noEndFrom; ///< a text that begins behind has no end
    bool m_openText = false;
    // The place that was asked for last: places are asked for in the order of the text.
    int m_placeAt = 0;
    TextPlace m_place{1, 1};
};
