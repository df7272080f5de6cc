#include "exchange/database/LdfParser.h"

#include <algorithm>

namespace {

constexpr int Identifiers = 64;
constexpr int MasterRequest = 0x3C;
constexpr int MaxLength = 8;

/// The length of a frame that says none: by its identifier, as LIN 1.x has it.
int usualLength(quint64 identifier)
{
    return identifier < 0x20 ? 2 : identifier < 0x30 ? 4 : 8;
}

} // namespace

/// Null for a keyword that is not known. Those without a function say nothing about what is in frames.
const LdfParser::Section *LdfParser::section(std::string_view keyword)
{
    static constexpr Section sections[] = {{"Nodes", &LdfParser::parseNode},
                                           {"Signals", &LdfParser::parseSignal},
                                           {"Diagnostic_signals", &LdfParser::parseDiagnosticSignal},
                                           {"Frames", &LdfParser::parseFrame},
                                           {"Sporadic_frames", &LdfParser::parseSporadicFrame},
                                           {"Event_triggered_frames", &LdfParser::parseEventTriggeredFrame},
                                           {"Diagnostic_frames", &LdfParser::parseDiagnosticFrame},
                                           {"Signal_encoding_types", &LdfParser::parseEncoding},
                                           {"Signal_representation", &LdfParser::parseRepresentation},
                                           {"Diagnostic_addresses", nullptr},
                                           {"Dynamic_frames", nullptr},
                                           {"Node_attributes", nullptr},
                                           {"Node_composition", nullptr},
                                           {"composite", nullptr},
                                           {"Schedule_tables", nullptr},
                                           {"Signal_groups", nullptr}};
    const auto *found = std::find_if(std::begin(sections), std::end(sections),
                                     [keyword](const Section &known) { return keyword == known.keyword; });
    return found != std::end(sections) ? found : nullptr;
}

LdfParser::LdfParser(const DatabaseText &text)
    : DatabaseParser(text, TextScanner::CComments)
    , m_isIdentifierTaken(Identifiers)
{
    m_database.bus = Database::Lin;
}

Database LdfParser::parse()
{
    while (!m_in.isAtEnd()) {
        parseStatement();
    }
    resolveFrames();
    represent();
    checkMessages();
    return m_database;
}

void LdfParser::parseStatement()
{
    const TextPlace place = m_in.place();
    const auto word = m_in.word();
    if (!word) {
        if (!m_in.symbol(';')) {
            need(false, "a keyword");
            skipEntry();
            m_in.symbol('}'); // one too many
        }
        return;
    }
    const QString keyword = name(*word);
    if (m_in.symbol(';')) { // LIN_description_file
        return;
    }
    if (m_in.symbol('=')) {
        if (!parseSetting(keyword)) {
            skipEntry();
        }
        return;
    }
    const Section *found = section(keyword.toUtf8().constData());
    if (found == nullptr) {
        report(place, DatabaseParser::tr("The keyword %1 is not known").arg(keyword));
    }
    if (found != nullptr && found->parseEntry != nullptr) {
        parseSection(*found);
    } else if (m_in.symbol('{')) {
        skipBlock();
    } else {
        skipEntry();
    }
}

/// LIN_protocol_version = "2.1"; and the like. Only this one is kept.
bool LdfParser::parseSetting(const QString &keyword)
{
    if (keyword != QLatin1String("LIN_protocol_version")) {
        skipEntry();
        return true;
    }
    const auto version = needQuoted();
    m_database.version = version.value_or(QString());
    return version && needSymbol(';');
}

void LdfParser::parseSection(const Section &section)
{
    if (!needSymbol('{')) {
        return;
    }
    while (!m_in.symbol('}')) {
        if (m_in.isAtEnd()) {
            needSymbol('}');
            return;
        }
        if (!(this->*section.parseEntry)()) {
            skipEntry();
        }
    }
}

/// To behind the next semicolon or block, or to the end of the block that it is in.
void LdfParser::skipEntry()
{
    while (!m_in.isAtEnd() && !m_in.symbol(';') && !m_in.nextIs('}')) {
        if (m_in.symbol('{')) {
            return skipBlock();
        }
        if (m_in.nextIs('"')) {
            needQuoted();
        } else if (!m_in.word()) {
            m_in.skipCharacter();
        }
    }
}

/// To behind the end of the block that it is in.
void LdfParser::skipBlock()
{
    int depth = 1;
    while (depth > 0 && !m_in.isAtEnd()) {
        if (m_in.symbol('{')) {
            ++depth;
        } else if (m_in.symbol('}')) {
            --depth;
        } else if (m_in.nextIs('"')) {
            needQuoted();
        } else if (!m_in.word()) {
            m_in.skipCharacter();
        }
    }
}

/// Master: name, time base, jitter; or Slaves: names;
bool LdfParser::parseNode()
{
    const auto role = needWord();
    const auto node = role && needSymbol(':') ? needWord() : std::nullopt;
    if (!node) {
        return false;
    }
    m_database.nodes.append(*node);
    if (*role == QLatin1String("Slaves")) {
        while (m_in.symbol(',')) {
            const auto further = needWord();
            if (!further) {
                return false;
            }
            m_database.nodes.append(*further);
        }
        return needSymbol(';');
    }
    skipEntry();
    return true;
}

bool LdfParser::parseSignal()
{
    return addSignal(false);
}

bool LdfParser::parseDiagnosticSignal()
{
    return addSignal(true);
}

/// name: size, initial value, publisher, subscribers; of a diagnostic one without the nodes.
bool LdfParser::addSignal(bool isDiagnostic)
{
    SignalDefinition definition;
    DatabaseSignal &signal = definition.signal;
    const TextPlace place = m_in.place();
    signal.place = place;
    const auto symbol = needWord();
    const auto size = symbol && needSymbol(':') ? needInteger() : std::nullopt;
    bool isArray = false;
    if (!size || !needSymbol(',') || !parseInitialValue(isArray)) {
        return false;
    }
    signal.name = signal.symbol = *symbol;
    if (m_in.symbol(',')) {
        definition.publisher = needWord().value_or(QString());
    } else if (!isDiagnostic) {
        needSymbol(',');
    }
    while (m_in.symbol(',')) {
        signal.receivers.append(needWord().value_or(QString()));
    }
    if (*size < 1 || *size > 64 || (isArray && *size % 8 != 0)) {
        report(place,
               DatabaseParser::tr("A signal has 1 to 64 bits, an array 1 to 8 bytes: %1 is left out").arg(*symbol));
    } else if (m_definitions.count(*symbol) > 0) {
        report(place, DatabaseParser::tr("Another signal has the name %1").arg(*symbol));
    } else if (mayHave(m_signalCount, MaxSignals)) {
        signal.length = static_cast<quint16>(*size);
        signal.type = isArray ? DatabaseSignal::Bytes : DatabaseSignal::Unsigned;
        m_definitions.emplace(*symbol, definition);
    }
    return needSymbol(';');
}

/// A number, or the bytes of an array in braces.
bool LdfParser::parseInitialValue(bool &isArray)
{
    isArray = m_in.symbol('{');
    do {
        if (!needInteger()) {
            return false;
        }
    } while (isArray && m_in.symbol(','));
    return !isArray || needSymbol('}');
}

int LdfParser::addMessage(const DatabaseMessage &message)
{
    const bool hasIdentifier = message.kind != DatabaseMessage::Sporadic;
    if (m_messageNumbers.contains(message.symbol)) {
        report(message.place, DatabaseParser::tr("Another frame has the name %1").arg(message.symbol));
        return -1;
    }
    if (hasIdentifier && m_isIdentifierTaken[static_cast<int>(message.identifier)]) {
        report(message.place,
               DatabaseParser::tr("Another message has this identifier, or none can have it: %1 is left out")
                   .arg(message.symbol));
        return -1;
    }
    if (!mayHave(m_messageCount, MaxMessages)) {
        return -1;
    }
    if (hasIdentifier) {
        m_isIdentifierTaken[static_cast<int>(message.identifier)] = true;
    }
    m_messageNumbers.insert(message.symbol, m_database.messages.size());
    m_database.messages.append(message);
    return m_database.messages.size() - 1;
}

bool LdfParser::parseFrame()
{
    return addFrame(false);
}

bool LdfParser::parseDiagnosticFrame()
{
    return addFrame(true);
}

/// name: identifier, publisher, length { signal, offset; ... }. Diagnostic ones have neither publisher nor length, and
/// in LIN 1.x a frame may have no length.
bool LdfParser::addFrame(bool isDiagnostic)
{
    DatabaseMessage message;
    message.place = m_in.place();
    const auto symbol = needWord();
    if (!symbol || !needSymbol(':')) {
        return false;
    }
    message.name = message.symbol = *symbol;
    const TextPlace place = m_in.place();
    const auto identifier = needInteger();
    if (!identifier) {
        return false;
    }
    if (*identifier >= Identifiers) {
        report(place, DatabaseParser::tr("The identifier of a LIN frame is from 0 to 63: %1 is left out").arg(*symbol));
        return false;
    }
    message.identifier = static_cast<quint32>(*identifier);
    message.kind = isDiagnostic || *identifier >= MasterRequest ? DatabaseMessage::Diagnostic : DatabaseMessage::Plain;
    message.length = usualLength(*identifier);
    if (m_in.symbol(',')) {
        message.senders.append(needWord().value_or(QString()));
    }
    if (m_in.symbol(',')) {
        const auto length = needInteger();
        if (length && (*length < 1 || *length > MaxLength)) {
            reportHere(DatabaseParser::tr("%1 is longer than any frame").arg(*symbol));
        } else if (length) {
            message.length = static_cast<int>(*length);
        }
    }
    if (!needSymbol('{')) {
        return false;
    }
    if (!parseFrameSignals(message)) {
        return false;
    }
    addMessage(message);
    return true;
}

bool LdfParser::parseFrameSignals(DatabaseMessage &message)
{
    while (!m_in.symbol('}')) {
        if (m_in.isAtEnd()) {
            return true; // the section reports it
        }
        if (!parseFrameSignal(message)) {
            skipEntry();
        }
    }
    return true;
}

/// signal, offset;
bool LdfParser::parseFrameSignal(DatabaseMessage &message)
{
    const TextPlace place = m_in.place();
    const auto symbol = needWord();
    const auto offset = symbol && needSymbol(',') ? needInteger() : std::nullopt;
    if (!offset) {
        return false;
    }
    const auto definition = m_definitions.find(*symbol);
    if (definition == m_definitions.end()) {
        report(place, DatabaseParser::tr("%1 is no signal").arg(*symbol));
    } else if (mayHave(m_signalCount, MaxSignals)) {
        DatabaseSignal signal = definition->second.signal;
        signal.place = place;
        signal.startBit = static_cast<quint16>(std::min<quint64>(*offset, 0xFFF));
        message.content.append(signal);
        if (message.senders.isEmpty() && !definition->second.publisher.isEmpty()) {
            message.senders.append(definition->second.publisher);
        }
    }
    return needSymbol(';');
}

QStringList LdfParser::names()
{
    QStringList found;
    while (const auto word = m_in.word()) {
        found.append(name(*word));
        if (!m_in.symbol(',')) {
            break;
        }
    }
    return found;
}

/// name: schedule table, identifier, frames; the table is there from LIN 2.1 on.
bool LdfParser::parseEventTriggeredFrame()
{
    DatabaseMessage message;
    message.kind = DatabaseMessage::EventTriggered;
    message.place = m_in.place();
    const auto symbol = needWord();
    if (!symbol || !needSymbol(':')) {
        return false;
    }
    if (m_in.word()) {
        needSymbol(',');
    }
    const TextPlace place = m_in.place();
    const auto identifier = needInteger();
    if (!identifier) {
        return false;
    }
    if (*identifier >= Identifiers) {
        report(place, DatabaseParser::tr("The identifier of a LIN frame is from 0 to 63: %1 is left out").arg(*symbol));
        return false;
    }
    message.name = message.symbol = *symbol;
    message.identifier = static_cast<quint32>(*identifier);
    const QStringList frames = m_in.symbol(',') ? names() : QStringList();
    if (const int number = addMessage(message); number >= 0) {
        m_references.append({number, frames, message.place});
    }
    return needSymbol(';');
}

bool LdfParser::parseSporadicFrame()
{
    DatabaseMessage message;
    message.kind = DatabaseMessage::Sporadic;
    message.place = m_in.place();
    const auto symbol = needWord();
    if (!symbol || !needSymbol(':')) {
        return false;
    }
    message.name = message.symbol = *symbol;
    const QStringList frames = names();
    if (const int number = addMessage(message); number >= 0) {
        m_references.append({number, frames, message.place});
    }
    return needSymbol(';');
}
