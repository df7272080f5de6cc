#include "exchange/database/DatabaseParser.h"

#include "exchange/BusFrame.h"

#include <algorithm>

namespace {

/// What need() may be asked for, beside single characters.
[[maybe_unused]] const char *const asked[] = {
    QT_TRANSLATE_NOOP("DatabaseParser", "a keyword"),     QT_TRANSLATE_NOOP("DatabaseParser", "a name"),
    QT_TRANSLATE_NOOP("DatabaseParser", "a number"),      QT_TRANSLATE_NOOP("DatabaseParser", "a whole number"),
    QT_TRANSLATE_NOOP("DatabaseParser", "a quoted text"), QT_TRANSLATE_NOOP("DatabaseParser", "the end of the line")};

/// Whether the signal's multiplexors lead to one that is always there, in a bounded number of steps and over none that
/// is left out.
bool isReachable(const DatabaseMessage &message, int signal, const QVector<bool> &isLeftOut)
{
    for (int steps = 0; steps <= DatabaseParser::MaxNesting; ++steps) {
        if (isLeftOut[signal]) {
            return false;
        }
        if (message.content[signal].multiplexor < 0) {
            return true;
        }
        signal = message.content[signal].multiplexor;
    }
    return false;
}

void removeSignals(DatabaseMessage &message, const QVector<bool> &isLeftOut)
{
    QVector<int> numbers;
    QVector<DatabaseSignal> kept;
    for (int i = 0; i < message.content.size(); ++i) {
        numbers.append(kept.size());
        if (!isLeftOut[i]) {
            kept.append(message.content[i]);
        }
    }
    for (DatabaseSignal &signal : kept) {
        signal.multiplexor = signal.multiplexor < 0 ? -1 : numbers[signal.multiplexor];
    }
    message.content = kept;
}

} // namespace

DatabaseParser::DatabaseParser(const DatabaseText &text, TextScanner::Comments comments)
    : m_in(text.utf8, comments)
{
    m_database.encoding = text.encoding;
}

void DatabaseParser::report(TextPlace place, const QString &text)
{
    if (m_database.findingCount++ < Database::MaxFindings) {
        m_database.findings.append({place, text});
    }
}

bool DatabaseParser::need(bool isThere, const char *what)
{
    if (!isThere) {
        reportHere(tr("Expected here: %1").arg(tr(what)));
    }
    return isThere;
}

bool DatabaseParser::needSymbol(char wanted)
{
    const bool isThere = m_in.symbol(wanted);
    if (!isThere) {
        reportHere(tr("Expected here: %1").arg(QLatin1Char(wanted)));
    }
    return isThere;
}

std::optional<QString> DatabaseParser::needWord()
{
    const auto word = m_in.word();
    return need(word.has_value(), "a name") ? std::optional(name(*word)) : std::nullopt;
}

std::optional<QString> DatabaseParser::needQuoted(TextScanner::Lines lines)
{
    const TextPlace place = m_in.place();
    const auto text = m_in.quoted(lines);
    if (!need(text.has_value(), "a quoted text")) {
        return std::nullopt;
    }
    if (m_in.hasOpenText()) {
        report(place, tr("This text has no end"));
    }
    QString whole = QString::fromUtf8(text->data(), static_cast<int>(text->size()));
    return whole.replace(QLatin1String("\\\""), QLatin1String("\""))
        .replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

std::optional<double> DatabaseParser::needNumber()
{
    const auto number = m_in.number();
    need(number.has_value(), "a number");
    return number;
}

std::optional<quint64> DatabaseParser::needInteger()
{
    const auto number = m_in.integer();
    need(number.has_value(), "a whole number");
    return number;
}

bool DatabaseParser::mayHave(int &count, int limit)
{
    if (count >= limit) {
        if (!m_isFull) {
            reportHere(tr("More than %1 of these are not read").arg(limit));
        }
        m_isFull = true;
        return false;
    }
    ++count;
    return true;
}

QString DatabaseParser::name(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size())).left(MaxNameLength);
}

void DatabaseParser::checkMessages()
{
    for (DatabaseMessage &message : m_database.messages) {
        checkMessage(message);
    }
    std::stable_sort(m_database.findings.begin(), m_database.findings.end(),
                     [](const DatabaseFinding &left, const DatabaseFinding &right) {
                         return std::pair(left.place.line, left.place.column) <
                                std::pair(right.place.line, right.place.column);
                     });
}

void DatabaseParser::checkMessage(DatabaseMessage &message)
{
    QVector<bool> isLeftOut(message.content.size());
    for (int i = 0; i < message.content.size(); ++i) {
        const DatabaseSignal &signal = message.content[i];
        checkFit(message, signal);
        isLeftOut[i] = bytesNeeded(signal) > BusFrame::MaxLength;
        if (!isLeftOut[i] && signal.multiplexor == i) {
            isLeftOut[i] = true;
            report(signal.place, tr("%1 is multiplexed by nothing that the message has").arg(signal.name));
        }
    }
    for (int i = 0; i < message.content.size(); ++i) {
        if (!isLeftOut[i] && !isReachable(message, i, isLeftOut)) {
            isLeftOut[i] = true;
            report(message.content[i].place,
                   tr("What multiplexes %1 is left out, goes round in a circle or is nested too deep")
                       .arg(message.content[i].name));
        }
    }
    if (isLeftOut.contains(true)) {
        removeSignals(message, isLeftOut);
    }
}

void DatabaseParser::checkFit(const DatabaseMessage &message, const DatabaseSignal &signal)
{
    const int needed = bytesNeeded(signal);
    if (needed > BusFrame::MaxLength) {
        report(signal.place, tr("%1 does not fit into any frame and is left out").arg(signal.name));
    } else if (needed > message.length) {
        report(signal.place, tr("%1 needs %2 bytes, its message has %3")
                                 .arg(signal.name, QString::number(needed), QString::number(message.length)));
    }
}
