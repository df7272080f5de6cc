// What an LDF file says about the raw values of signals, and what is put together when all of it has been read.

#include "exchange/database/LdfParser.h"

#include <algorithm>

/// name { entries }
bool LdfParser::parseEncoding()
{
    const auto symbol = needWord();
    if (!symbol || !needSymbol('{')) {
        return false;
    }
    Encoding &encoding = m_encodings[*symbol];
    while (!m_in.symbol('}')) {
        if (m_in.isAtEnd()) {
            return true; // the section reports it
        }
        if (!parseEncodingEntry(encoding)) {
            skipEntry();
        }
    }
    return true;
}

bool LdfParser::parseEncodingEntry(Encoding &encoding)
{
    const TextPlace place = m_in.place();
    const auto kind = needWord();
    if (!kind || !mayHave(m_textCount, MaxTexts)) {
        return false;
    }
    if (*kind == QLatin1String("logical_value")) {
        return parseLogicalValue(encoding);
    }
    if (*kind == QLatin1String("physical_value")) {
        return parsePhysicalRange(encoding);
    }
    const bool isBcd = *kind == QLatin1String("bcd_value");
    const bool isAscii = *kind == QLatin1String("ascii_value");
    if (!isBcd && !isAscii) {
        report(place, DatabaseParser::tr("Not understood: %1").arg(*kind));
        return false;
    }
    encoding.isBcd = encoding.isBcd || isBcd;
    encoding.isAscii = encoding.isAscii || isAscii;
    return needSymbol(';');
}

/// , value, "text";
bool LdfParser::parseLogicalValue(Encoding &encoding)
{
    const auto value = needSymbol(',') ? needInteger() : std::nullopt;
    if (!value) {
        return false;
    }
    ValueText entry{*value, QString()};
    if (m_in.symbol(',')) {
        entry.text = needQuoted().value_or(QString()).left(MaxTextLength);
    }
    encoding.texts.append(entry);
    return needSymbol(';');
}

/// , lowest raw value, highest, factor, offset, "unit";
bool LdfParser::parsePhysicalRange(Encoding &encoding)
{
    const auto first = needSymbol(',') ? needInteger() : std::nullopt;
    const auto last = first && needSymbol(',') ? needInteger() : std::nullopt;
    const auto factor = last && needSymbol(',') ? needNumber() : std::nullopt;
    const auto offset = factor && needSymbol(',') ? needNumber() : std::nullopt;
    if (!offset) {
        return false;
    }
    SignalScale scale{{*first, *last}, *factor, *offset, QString()};
    if (m_in.symbol(',')) {
        scale.unit = needQuoted().value_or(QString()).left(MaxTextLength);
    }
    encoding.scales.append(scale);
    return needSymbol(';');
}

/// encoding: signals;
bool LdfParser::parseRepresentation()
{
    const TextPlace place = m_in.place();
    const auto encoding = needWord();
    if (!encoding || !needSymbol(':')) {
        return false;
    }
    if (m_encodings.count(*encoding) == 0) {
        report(place, DatabaseParser::tr("%1 is no encoding").arg(*encoding));
    }
    const QStringList signalNames = names();
    for (const QString &signal : signalNames) {
        m_representations.insert(signal, *encoding);
    }
    return needSymbol(';');
}

void LdfParser::resolveFrames()
{
    for (const Reference &reference : qAsConst(m_references)) {
        DatabaseMessage &message = m_database.messages[reference.message];
        for (const QString &frame : reference.frames) {
            const int number = m_messageNumbers.value(frame, -1);
            if (number < 0 || m_database.messages[number].kind != DatabaseMessage::Plain) {
                report(reference.place, DatabaseParser::tr("%1 is no frame of its own").arg(frame));
                continue;
            }
            message.associated.append(number);
            message.length = std::max(message.length, m_database.messages[number].length);
        }
    }
}

/// Gives the signals their encodings.
void LdfParser::represent()
{
    for (DatabaseMessage &message : m_database.messages) {
        for (DatabaseSignal &signal : message.content) {
            const auto encoding = m_encodings.find(m_representations.value(signal.symbol));
            if (encoding != m_encodings.end()) {
                Encoding(encoding->second).moveTo(signal); // which shares the tables
            }
        }
    }
}

void LdfParser::Encoding::moveTo(DatabaseSignal &signal)
{
    signal.scales.swap(scales);
    signal.texts.swap(texts);
    if (isAscii && signal.length % 8 == 0) {
        signal.type = DatabaseSignal::Ascii;
    } else if (isBcd && signal.length % 4 == 0) {
        signal.type = DatabaseSignal::Bcd;
    }
    if (!signal.scales.isEmpty()) {
        const SignalScale &scale = qAsConst(signal.scales).first();
        const double first = static_cast<double>(scale.raw.first) * scale.factor + scale.offset;
        const double last = static_cast<double>(scale.raw.last) * scale.factor + scale.offset;
        signal.minimum = std::min(first, last);
        signal.maximum = std::max(first, last);
    }
}
