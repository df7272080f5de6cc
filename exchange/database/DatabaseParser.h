#pragma once

#include "exchange/database/Database.h"
#include "exchange/database/DatabaseText.h"
#include "exchange/database/TextScanner.h"

#include <QCoreApplication>

/// What the parsers of databases share: the text, what has been found in it, and the checks at the end.
///
/// Nothing of a file is trusted: what would be more than these bounds allow is reported and left out.
class DatabaseParser
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseParser)
public:
    static constexpr int MaxMessages = 100000;
    static constexpr int MaxSignals = 200000;
    static constexpr int MaxTexts = 1000000;   ///< of raw values
    static constexpr int MaxNesting = 16;      ///< of multiplexors in each other
    static constexpr int MaxNameLength = 256;  ///< longer ones are cut
    static constexpr int MaxTextLength = 1024; ///< of units and texts of values; longer ones are cut

protected:
    DatabaseParser(const DatabaseText &text, TextScanner::Comments comments);

    void report(TextPlace place, const QString &text);
    void reportHere(const QString &text) { report(m_in.place(), text); }
    /// Reports what should be at this place unless it is there; returns whether it is. what: see the list in the
    /// source.
    bool need(bool isThere, const char *what);
    bool needSymbol(char wanted);
    /// A word, a text in quotation marks; reports where it is not there, or has no end.
    std::optional<QString> needWord();
    std::optional<QString> needQuoted(TextScanner::Lines lines = TextScanner::OneLine);
    std::optional<double> needNumber();
    std::optional<quint64> needInteger();
    /// Counts one more, of messages, signals or texts; false and reported once when that is too many.
    bool mayHave(int &count, int limit);

    static QString name(std::string_view utf8);

    /// What the messages hold is checked against them; signals that cannot be decoded are reported and left out.
    void checkMessages();

    TextScanner m_in;
    Database m_database;
    int m_messageCount = 0;
    int m_signalCount = 0;
    int m_textCount = 0;

private:
    void checkMessage(DatabaseMessage &message);
    void checkFit(const DatabaseMessage &message, const DatabaseSignal &signal);

    bool m_isFull = false;
};
