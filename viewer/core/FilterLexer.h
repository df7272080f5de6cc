#pragma once

#include <QString>

#include <vector>

/// A piece of a filter's text.
struct FilterToken
{
    enum Kind {
        End,
        Number, ///< "12", "0x1F", "0b101", "1.5", "1e3", and with a unit of time, in seconds: "20ms"
        Text,   ///< in quotes, without them
        Word,   ///< letters, digits, "_", and "." within it
        Symbol,
        Wrong ///< text says what is wrong
    };

    Kind kind = End;
    int position = 0;
    int length = 0;
    QString text;
    double number = 0;

    bool isSymbol(const char *symbol) const { return kind == Symbol && text == QLatin1String(symbol); }
    /// Words of the language are the same in upper and lower case.
    bool isWord(const char *word) const
    {
        return kind == Word && text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    }
};

/// All tokens, the last of which is End, or Wrong where the text cannot be read further.
std::vector<FilterToken> filterTokens(const QString &text);
