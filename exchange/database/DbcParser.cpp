#include "exchange/database/DbcParser.h"

#include "exchange/BusFrame.h"

#include <algorithm>
#include <limits>

namespace {

constexpr quint64 ExtendedBit = quint64(1) << 31U;
constexpr quint32 MaxStandardIdentifier = 0x7FF;
constexpr quint32 MaxIdentifier = 0x1FFFFFFF;
/// The message that holds signals which no message has.
constexpr quint64 NoMessage = 0xC0000000U;
const char *const NoNode = "Vector__XXX";

} // namespace

/// Null for a keyword that is not known. Those without a function say nothing about what is in frames.
const DbcParser::Statement *DbcParser::statement(std::string_view keyword)
{
    static constexpr Statement statements[] = {{"VERSION", &DbcParser::parseVersion},
                                               {"NS_", &DbcParser::parseNewSymbols},
                                               {"BS_", nullptr},
                                               {"BU_", &DbcParser::parseNodes},
                                               {"VAL_TABLE_", &DbcParser::parseValueTable},
                                               {"BO_", &DbcParser::parseMessage},
                                               {"SG_", &DbcParser::parseSignal},
                                               {"BO_TX_BU_", &DbcParser::parseTransmitters},
                                               {"EV_", nullptr},
                                               {"ENVVAR_DATA_", nullptr},
                                               {"EV_DATA_", nullptr},
                                               {"SGTYPE_", nullptr},
                                               {"SGTYPE_VAL_", nullptr},
                                               {"SIGTYPE_VALTYPE_", nullptr},
                                               {"SIG_TYPE_REF_", nullptr},
                                               {"SIG_GROUP_", nullptr},
                                               {"SIGNAL_GROUP_", nullptr},
                                               {"CM_", &DbcParser::parseComment},
                                               {"BA_DEF_", &DbcParser::parseDefinition},
                                               {"BA_DEF_DEF_", &DbcParser::parseDefault},
                                               {"BA_", &DbcParser::parseAttribute},
                                               {"BA_DEF_REL_", nullptr},
                                               {"BA_DEF_DEF_REL_", nullptr},
                                               {"BA_REL_", nullptr},
                                               {"BA_SGTYPE_", nullptr},
                                               {"BA_DEF_SGTYPE_", nullptr},
                                               {"BU_SG_REL_", nullptr},
                                               {"BU_EV_REL_", nullptr},
                                               {"BU_BO_REL_", nullptr},
                                               {"CAT_DEF_", nullptr},
                                               {"CAT_", nullptr},
                                               {"FILTER", nullptr},
                                               {"VAL_", &DbcParser::parseValues},
                                               {"SIG_VALTYPE_", &DbcParser::parseValueType},
                                               {"SG_MUL_VAL_", &DbcParser::parseMultiplexedValues}};
    const auto *found = std::find_if(std::begin(statements), std::end(statements),
                                     [keyword](const Statement &known) { return keyword == known.keyword; });
    return found != std::end(statements) ? found : nullptr;
}

DbcParser::DbcParser(const DatabaseText &text)
    : DatabaseParser(text, TextScanner::NoComments)
{
}

Database DbcParser::parse()
{
    while (!m_in.isAtEnd()) {
        parseStatement();
    }
    setDefaults();
    resolveMultiplexing();
    checkMessages();
    return m_database;
}

void DbcParser::parseStatement()
{
    const TextPlace place = m_in.place();
    const auto keyword = m_in.word();
    if (!keyword) {
        if (!m_in.symbol(';')) {
            need(false, "a keyword");
            skipStatement();
        }
        return;
    }
    const Statement *found = statement(*keyword);
    if (found == nullptr) {
        report(place, DatabaseParser::tr("The keyword %1 is not known").arg(name(*keyword)));
    }
    if (found == nullptr || found->parse == nullptr || !(this->*found->parse)()) {
        skipStatement();
    }
}

/// To behind the next semicolon, or to a line that begins with a known keyword.
void DbcParser::skipStatement()
{
    while (!m_in.isAtEnd() && !m_in.symbol(';')) {
        const auto word = m_in.peekWord();
        if (word && m_in.isFirstOfLine() && statement(*word) != nullptr) {
            return;
        }
        if (word) {
            m_in.word();
        } else if (m_in.nextIs('"')) {
            needQuoted(TextScanner::SeveralLines);
        } else {
            m_in.skipCharacter();
        }
    }
}

/// Messages and signals end with their line; nothing may be left on it but a semicolon.
bool DbcParser::skipRestOfLine(int line)
{
    if (m_in.isOnLine(line) && !m_in.symbol(';')) {
        need(false, "the end of the line");
    }
    while (m_in.isOnLine(line)) {
        m_in.skipCharacter();
    }
    return true;
}

bool DbcParser::parseVersion()
{
    const auto version = needQuoted();
    m_database.version = version.value_or(QString());
    return version.has_value();
}

/// Keywords, each alone on its line.
bool DbcParser::parseNewSymbols()
{
    needSymbol(':');
    while (const auto word = m_in.peekWord()) {
        std::string_view behind = m_in.rest().substr(word->size());
        behind = behind.substr(0, behind.find('\n'));
        if (behind.find_first_not_of(" \t\r") != std::string_view::npos) {
            break;
        }
        m_in.word();
    }
    return true;
}

bool DbcParser::parseNodes()
{
    const int line = m_in.place().line;
    needSymbol(':');
    while (m_in.isOnLine(line)) {
        const auto node = needWord();
        if (!node) {
            return false;
        }
        m_database.nodes.append(*node);
        if (m_in.isOnLine(line)) {
            m_in.symbol(',');
        }
    }
    return true;
}

bool DbcParser::parseValueTable()
{
    const auto table = needWord();
    return table && parseTexts(m_tables[*table]);
}

/// Pairs of a value and a text, and a semicolon.
bool DbcParser::parseTexts(QVector<ValueText> &texts)
{
    texts.clear();
    while (!m_in.symbol(';')) {
        const auto value = needInteger();
        const auto text = value ? needQuoted() : std::nullopt;
        if (!text || !mayHave(m_textCount, MaxTexts)) {
            return false;
        }
        texts.append({*value, text->left(MaxTextLength)});
    }
    return true;
}

bool DbcParser::parseMessage()
{
    m_isMessagePassedOver = true;
    DatabaseMessage message;
    message.place = m_in.place();
    const int line = message.place.line;
    const auto number = needInteger();
    const auto symbol = number ? needWord() : std::nullopt;
    if (!symbol || !needSymbol(':')) {
        return false;
    }
    const auto length = needInteger();
    if (!length) {
        return false;
    }
    const auto sender = m_in.isOnLine(line) ? m_in.word() : std::nullopt;
    if (sender && *sender != NoNode) {
        message.senders.append(name(*sender));
    }
    message.name = message.symbol = *symbol;
    message.length = static_cast<int>(std::min<quint64>(*length, BusFrame::MaxLength));
    message.fd = message.length > 8;
    if (*number != NoMessage) {
        if (*length > BusFrame::MaxLength) {
            report(message.place, DatabaseParser::tr("%1 is longer than any frame").arg(*symbol));
        }
        addMessage(message, *number);
    }
    return skipRestOfLine(line);
}

void DbcParser::addMessage(DatabaseMessage &message, quint64 number)
{
    message.extended = (number & ExtendedBit) != 0;
    message.identifier = static_cast<quint32>(number & ~ExtendedBit);
    const quint64 highest = std::numeric_limits<quint32>::max();
    if (number > highest || m_messageNumbers.contains(static_cast<quint32>(number)) ||
        message.identifier > MaxIdentifier) {
        report(message.place,
               DatabaseParser::tr("Another message has this identifier, or none can have it: %1 is left out")
                   .arg(message.symbol));
        return;
    }
    if (!mayHave(m_messageCount, MaxMessages)) {
        return;
    }
    if (!message.extended && message.identifier > MaxStandardIdentifier) {
        report(message.place,
               DatabaseParser::tr("The identifier of %1 has more than 11 bits and is taken for an extended one")
                   .arg(message.symbol));
        message.extended = true;
    }
    m_isMessagePassedOver = false;
    m_messageNumbers.insert(static_cast<quint32>(number), m_database.messages.size());
    m_database.messages.append(message);
    m_signalNumbers.append(QHash<QString, int>());
}

bool DbcParser::parseSignal()
{
    DatabaseSignal signal;
    signal.place = m_in.place();
    const int line = signal.place.line;
    const auto symbol = needWord();
    if (!symbol) {
        return false;
    }
    signal.name = signal.symbol = *symbol;
    const int message = m_database.messages.size() - 1;
    std::optional<quint64> selectedBy;
    if (!parseMultiplexing(signal, selectedBy) || !needSymbol(':') || !parseBits(signal) || !parseScale(signal)) {
        return false;
    }
    parseRange(signal);
    signal.scales.first().unit = needQuoted().value_or(QString()).left(MaxTextLength);
    while (m_in.isOnLine(line)) {
        const auto receiver = m_in.word();
        if (!receiver) {
            break;
        }
        if (*receiver != NoNode) {
            signal.receivers.append(name(*receiver));
        }
        m_in.symbol(',');
    }
    if (!m_isMessagePassedOver && mayHave(m_signalCount, MaxSignals)) {
        const int number = m_database.messages[message].content.size();
        QHash<QString, int> &numbers = m_signalNumbers[message];
        if (numbers.contains(*symbol)) {
            report(signal.place, DatabaseParser::tr("Its message has another signal with the name %1").arg(*symbol));
        } else {
            numbers.insert(*symbol, number);
        }
        m_database.messages[message].content.append(signal);
        if (selectedBy) {
            m_multiplexed.insert({message, number}, *selectedBy);
        }
    }
    return skipRestOfLine(line);
}

/// M: selects others; m1: is there when they are selected by 1; m1M: both.
bool DbcParser::parseMultiplexing(DatabaseSignal &signal, std::optional<quint64> &selectedBy)
{
    const TextPlace place = m_in.place();
    auto word = m_in.word();
    if (!word) {
        return true;
    }
    if (word->back() == 'M') {
        signal.isMultiplexor = true;
        word->remove_suffix(1);
    }
    if (word->empty()) {
        return true;
    }
    bool isNumber = word->front() == 'm';
    const quint64 value = name(word->substr(1)).toULongLong(&isNumber);
    if (word->front() != 'm' || !isNumber) {
        report(place, DatabaseParser::tr("Expected here: %1").arg(QLatin1String("M, m0, m0M")));
        return false;
    }
    selectedBy = value;
    return true;
}

/// start|length@order, of which 1 is little-endian, and + or - for signed.
bool DbcParser::parseBits(DatabaseSignal &signal)
{
    const auto start = needInteger();
    if (!start || !needSymbol('|')) {
        return false;
    }
    const TextPlace place = m_in.place();
    const auto length = needInteger();
    if (!length || !needSymbol('@')) {
        return false;
    }
    const bool isLittle = m_in.symbol('1');
    if (!isLittle && !m_in.symbol('0')) {
        return need(false, "a number");
    }
    const bool isSigned = m_in.symbol('-');
    if (!isSigned && !needSymbol('+')) {
        return false;
    }
    if (*length < 1 || *length > 64) {
        report(place,
               DatabaseParser::tr("The length of a signal is from 1 to 64 bits: %1 is left out").arg(signal.name));
        return false;
    }
    // A start beyond any frame is reported with the other checks.
    signal.startBit = static_cast<quint16>(std::min<quint64>(*start, 0xFFF));
    signal.length = static_cast<quint16>(*length);
    signal.byteOrder = isLittle ? DatabaseSignal::LittleEndian : DatabaseSignal::BigEndian;
    signal.type = isSigned ? DatabaseSignal::Signed : DatabaseSignal::Unsigned;
    return true;
}

bool DbcParser::parseScale(DatabaseSignal &signal)
{
    SignalScale scale;
    const auto factor = needSymbol('(') ? needNumber() : std::nullopt;
    const auto offset = factor && needSymbol(',') ? needNumber() : std::nullopt;
    if (!offset || !needSymbol(')')) {
        return false;
    }
    scale.factor = *factor;
    scale.offset = *offset;
    signal.scales = {scale};
    return true;
}

/// Says nothing about values in frames: a signal is read without it, too.
void DbcParser::parseRange(DatabaseSignal &signal)
{
    if (!needSymbol('[')) {
        return;
    }
    const auto minimum = needNumber();
    const auto maximum = minimum && needSymbol('|') ? needNumber() : std::nullopt;
    if (maximum) {
        signal.minimum = *minimum;
        signal.maximum = *maximum;
        needSymbol(']');
        return;
    }
    while (m_in.isOnLine(signal.place.line) && !m_in.symbol(']')) {
        m_in.skipCharacter();
    }
}
