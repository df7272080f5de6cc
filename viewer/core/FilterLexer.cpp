#include "viewer/core/FilterLexer.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

namespace {

struct Unit
{
    const char *name;
    double seconds;
};

constexpr std::array<Unit, 5> Units{{{"s", 1}, {"ms", 1e-3}, {"us", 1e-6}, {"ns", 1e-9}, {"min", 60}}};

// Longer ones first.
constexpr std::array<const char *, 30> Symbols{"..", "&&", "||", "==", "!=", "<=", ">=", "<<", ">>", "!~",
                                               "=",  "<",  ">",  "!",  "~",  "&",  "|",  "^",  "+",  "-",
                                               "*",  "/",  "%",  "(",  ")",  "[",  "]",  "{",  "}",  ","};

bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_');
}

class Lexer
{
public:
    explicit Lexer(const QString &text)
        : m_text(text)
    {
    }

    FilterToken next()
    {
        while (at(m_next).isSpace()) {
            ++m_next;
        }
        const int begin = m_next;
        FilterToken token = read();
        token.position = begin;
        token.length = m_next - begin;
        return token;
    }

private:
    /// A character that is in no text, behind the end.
    QChar at(int position) const { return position < m_text.size() ? m_text.at(position) : QChar(); }

    FilterToken read()
    {
        const QChar first = at(m_next);
        if (m_next >= m_text.size()) {
            return {};
        }
        if (first.isDigit()) {
            return number();
        }
        if (isWordCharacter(first)) {
            return word();
        }
        if (first == QLatin1Char('"') || first == QLatin1Char('\'')) {
            return quoted(first);
        }
        return symbol();
    }

    static FilterToken wrong(const QString &text) { return {FilterToken::Wrong, 0, 0, text, 0}; }

    FilterToken number()
    {
        const int begin = m_next;
        bool isRight = false;
        double value = 0;
        const QChar kind = at(m_next) == QLatin1Char('0') ? at(m_next + 1).toLower() : QChar();
        if (kind == QLatin1Char('x') || kind == QLatin1Char('b')) {
            while (isWordCharacter(at(m_next))) {
                ++m_next;
            }
            value = static_cast<double>(
                m_text.midRef(begin + 2, m_next - begin - 2).toULongLong(&isRight, kind == QLatin1Char('x') ? 16 : 2));
        } else {
            value = decimal(isRight);
        }
        if (!isRight) {
            return wrong(QCoreApplication::translate("Filter", "This is no number."));
        }
        return {FilterToken::Number, 0, 0, m_text.mid(begin, m_next - begin), value};
    }

    void passDigits()
    {
        while (at(m_next).isDigit()) {
            ++m_next;
        }
    }

    double decimal(bool &isRight)
    {
        const int begin = m_next;
        passDigits();
        if (at(m_next) == QLatin1Char('.') && at(m_next + 1).isDigit()) { // ".." is a range
            ++m_next;
            passDigits();
        }
        const bool isSigned = at(m_next + 1) == QLatin1Char('-') || at(m_next + 1) == QLatin1Char('+');
        if (at(m_next).toLower() == QLatin1Char('e') && at(m_next + (isSigned ? 2 : 1)).isDigit()) {
            m_next += isSigned ? 2 : 1;
            passDigits();
        }
        const double value = m_text.midRef(begin, m_next - begin).toDouble(&isRight);
        const int unit = m_next;
        while (isWordCharacter(at(m_next))) {
            ++m_next;
        }
        if (m_next == unit) {
            return value;
        }
        const QStringRef name = m_text.midRef(unit, m_next - unit);
        const auto *found = std::find_if(Units.begin(), Units.end(),
                                         [&name](const Unit &known) { return name == QLatin1String(known.name); });
        isRight = isRight && found != Units.end();
        return isRight ? value * found->seconds : 0;
    }

    FilterToken word()
    {
        const int begin = m_next;
        while (isWordCharacter(at(m_next)) || (at(m_next) == QLatin1Char('.') && isWordCharacter(at(m_next + 1)))) {
            ++m_next;
        }
        return {FilterToken::Word, 0, 0, m_text.mid(begin, m_next - begin), 0};
    }

    FilterToken quoted(QChar quote)
    {
        const int begin = m_next + 1;
        const int end = m_text.indexOf(quote, begin);
        m_next = end < 0 ? m_text.size() : end + 1;
        if (end < 0) {
            return wrong(QCoreApplication::translate("Filter", "The quotation mark at the end is missing."));
        }
        return {FilterToken::Text, 0, 0, m_text.mid(begin, end - begin), 0};
    }

    FilterToken symbol()
    {
        for (const char *symbol : Symbols) {
            const QLatin1String name(symbol);
            if (m_text.midRef(m_next).startsWith(name)) {
                m_next += name.size();
                return {FilterToken::Symbol, 0, 0, name, 0};
            }
        }
        ++m_next;
        return wrong(QCoreApplication::translate("Filter", "This character has no meaning here."));
    }

    const QString &m_text;
    int m_next = 0;
};

} // namespace

std::vector<FilterToken> filterTokens(const QString &text)
{
    Lexer lexer(text);
    std::vector<FilterToken> tokens;
    do {
        tokens.push_back(lexer.next());
    } while (tokens.back().kind != FilterToken::End && tokens.back().kind != FilterToken::Wrong);
    return tokens;
}
