// What a DBC file says about messages and signals behind their own lines: comments, attributes, texts of values.

#include "exchange/database/DbcParser.h"

#include <algorithm>
#include <limits>

namespace {

const char *const FrameFormat = "VFrameFormat";
const char *const CycleTime = "GenMsgCycleTime";
const char *const LongMessageName = "SystemMessageLongSymbol";
const char *const LongSignalName = "SystemSignalLongSymbol";
const char *const BusType = "BusType";

bool isRead(const QString &attribute)
{
    const auto known = {FrameFormat, CycleTime, LongMessageName, LongSignalName, BusType};
    return std::any_of(known.begin(), known.end(),
                       [&attribute](const char *name) { return attribute == QLatin1String(name); });
}

} // namespace

/// The object a statement is about: a keyword and what identifies it, or nothing.
std::optional<DbcParser::Subject> DbcParser::subject()
{
    const auto word = m_in.peekWord();
    if (!word) {
        return Subject{};
    }
    const QString kind = name(*m_in.word());
    if (kind == QLatin1String("BO_")) {
        return messageSubject();
    }
    if (kind == QLatin1String("SG_")) {
        return signalSubject();
    }
    const bool isNode = kind == QLatin1String("BU_");
    if (!isNode && kind != QLatin1String("EV_")) {
        reportHere(DatabaseParser::tr("Not understood: %1").arg(kind));
        return std::nullopt;
    }
    Subject subject;
    subject.kind = isNode ? Subject::Node : Subject::Other;
    return needWord() ? std::optional(subject) : std::nullopt;
}

std::optional<DbcParser::Subject> DbcParser::messageSubject()
{
    const TextPlace place = m_in.place();
    const auto number = needInteger();
    if (!number) {
        return std::nullopt;
    }
    Subject subject;
    subject.kind = Subject::Message;
    const bool isPossible = *number <= std::numeric_limits<quint32>::max();
    subject.message = isPossible ? m_messageNumbers.value(static_cast<quint32>(*number), -1) : -1;
    if (subject.message < 0 && *number != 0xC0000000U) {
        report(place, DatabaseParser::tr("No message has the identifier %1").arg(*number));
    }
    return subject;
}

std::optional<DbcParser::Subject> DbcParser::signalSubject()
{
    auto subject = messageSubject();
    const TextPlace place = m_in.place();
    const auto symbol = subject ? needWord() : std::nullopt;
    if (!symbol) {
        return std::nullopt;
    }
    subject->kind = Subject::Signal;
    if (subject->message >= 0) {
        subject->signal = m_signalNumbers[subject->message].value(*symbol, -1);
        if (subject->signal < 0) {
            report(
                place,
                DatabaseParser::tr("%1 has no signal %2").arg(m_database.messages[subject->message].symbol, *symbol));
        }
    }
    return subject;
}

DatabaseMessage *DbcParser::messageOf(const Subject &subject)
{
    return subject.kind == Subject::Message && subject.message >= 0 ? &m_database.messages[subject.message] : nullptr;
}

DatabaseSignal *DbcParser::signalOf(const Subject &subject)
{
    return subject.signal >= 0 ? &m_database.messages[subject.message].content[subject.signal] : nullptr;
}

bool DbcParser::parseTransmitters()
{
    const auto subject = messageSubject();
    if (!subject || !needSymbol(':')) {
        return false;
    }
    DatabaseMessage *message = messageOf(*subject);
    while (const auto node = m_in.word()) {
        if (message != nullptr && message->senders.size() < 1000) {
            message->senders.append(name(*node));
        }
        m_in.symbol(',');
    }
    return needSymbol(';');
}

bool DbcParser::parseComment()
{
    const auto about = subject();
    const auto text = about ? needQuoted(TextScanner::SeveralLines) : std::nullopt;
    if (!text) {
        return false;
    }
    if (DatabaseMessage *message = messageOf(*about)) {
        message->comment = *text;
    } else if (DatabaseSignal *signal = signalOf(*about)) {
        signal->comment = *text;
    }
    return m_in.hasOpenText() || needSymbol(';');
}

/// Of attributes that are read only the names of an enumeration's values matter.
bool DbcParser::parseDefinition()
{
    m_in.word(); // what kind of object has it
    const auto attribute = needQuoted();
    const auto type = attribute ? needWord() : std::nullopt;
    if (!type) {
        return false;
    }
    if (!isRead(*attribute) || *type != QLatin1String("ENUM")) {
        skipStatement();
        return true;
    }
    QStringList &values = m_enumerations[*attribute];
    do {
        const auto value = needQuoted();
        if (!value || !mayHave(m_textCount, MaxTexts)) {
            return false;
        }
        values.append(*value);
    } while (m_in.symbol(','));
    return needSymbol(';');
}

std::optional<DbcParser::AttributeValue> DbcParser::attributeValue()
{
    AttributeValue value;
    if (m_in.nextIs('"')) {
        const auto text = needQuoted(TextScanner::SeveralLines);
        value.text = text.value_or(QString());
        return text ? std::optional(value) : std::nullopt;
    }
    value.number = needNumber();
    return value.number ? std::optional(value) : std::nullopt;
}

bool DbcParser::parseDefault()
{
    const auto attribute = needQuoted();
    if (!attribute || !isRead(*attribute)) {
        return false; // passed over, or reported
    }
    const auto value = attributeValue();
    if (!value) {
        return false;
    }
    m_defaults.insert(*attribute, *value);
    return needSymbol(';');
}

bool DbcParser::parseAttribute()
{
    const auto attribute = needQuoted();
    if (!attribute || !isRead(*attribute)) {
        return false; // passed over, or reported
    }
    const auto about = subject();
    const auto value = about ? attributeValue() : std::nullopt;
    if (!value) {
        return false;
    }
    setAttribute(*attribute, *about, *value);
    return needSymbol(';');
}

void DbcParser::setAttribute(const QString &attribute, const Subject &subject, const AttributeValue &value)
{
    if (attribute == QLatin1String(BusType) && subject.kind == Subject::Whole) {
        m_database.bus = value.text == QLatin1String("LIN") ? Database::Lin : Database::Can;
    } else if (DatabaseMessage *message = messageOf(subject)) {
        if (attribute == QLatin1String(FrameFormat)) {
            m_frameFormats.insert(subject.message, value);
        } else if (attribute == QLatin1String(CycleTime)) {
            message->cycleTime = value.number;
        } else if (attribute == QLatin1String(LongMessageName) && !value.text.isEmpty()) {
            message->name = value.text.left(MaxNameLength);
        }
    } else if (DatabaseSignal *signal = signalOf(subject)) {
        if (attribute == QLatin1String(LongSignalName) && !value.text.isEmpty()) {
            signal->name = value.text.left(MaxNameLength);
        }
    }
}

/// The value is one of the enumeration's texts or the number of one. Without an enumeration the numbers are the usual
/// ones.
bool DbcParser::isFdFormat(const AttributeValue &value) const
{
    const QStringList formats = m_enumerations.value(QLatin1String(FrameFormat));
    const int number =
        value.number && *value.number >= 0 && *value.number < 1000 ? static_cast<int>(*value.number) : -1;
    if (value.number && formats.isEmpty()) {
        return number == 14 || number == 15;
    }
    return (value.number ? formats.value(number) : value.text).endsWith(QLatin1String("_FD"));
}

void DbcParser::setDefaults()
{
    const auto format = m_defaults.constFind(QLatin1String(FrameFormat));
    const auto cycle = m_defaults.constFind(QLatin1String(CycleTime));
    for (int i = 0; i < m_database.messages.size(); ++i) {
        DatabaseMessage &message = m_database.messages[i];
        message.senders.removeDuplicates();
        if (const auto own = m_frameFormats.constFind(i); own != m_frameFormats.constEnd()) {
            message.fd = message.fd || isFdFormat(*own);
        } else if (format != m_defaults.constEnd()) {
            message.fd = message.fd || isFdFormat(*format);
        }
        if (!message.cycleTime && cycle != m_defaults.constEnd()) {
            message.cycleTime = cycle->number;
        }
        if (message.cycleTime && !(*message.cycleTime > 0)) {
            message.cycleTime.reset();
        }
    }
}

/// Texts of a signal's values: listed, or those of a named table. Without an identifier, of an environment variable.
bool DbcParser::parseValues()
{
    if (m_in.peekWord()) {
        return false; // passed over
    }
    const auto about = signalSubject();
    if (!about) {
        return false;
    }
    QVector<ValueText> texts;
    if (const auto table = m_in.word()) {
        texts = m_tables.value(name(*table));
        if (!needSymbol(';')) {
            return false;
        }
    } else if (!parseTexts(texts)) {
        return false;
    }
    if (DatabaseSignal *signal = signalOf(*about)) {
        signal->texts.swap(texts);
    }
    return true;
}

/// 1: float, 2: double.
bool DbcParser::parseValueType()
{
    const auto about = signalSubject();
    if (!about) {
        return false;
    }
    m_in.symbol(':');
    const TextPlace place = m_in.place();
    const auto type = needInteger();
    if (!type) {
        return false;
    }
    DatabaseSignal *signal = signalOf(*about);
    if (*type > 2 || (signal != nullptr && *type > 0 && signal->length != 32 * *type)) {
        report(place, DatabaseParser::tr("A float has 32 bits and the type 1, a double 64 and the type 2"));
    } else if (signal != nullptr && *type > 0) {
        signal->type = DatabaseSignal::Float;
    }
    return needSymbol(';');
}

/// Which values of which multiplexor a signal belongs to: 0-3, 7-7.
bool DbcParser::parseMultiplexedValues()
{
    const auto about = signalSubject();
    const TextPlace place = m_in.place();
    const auto symbol = about ? needWord() : std::nullopt;
    if (!symbol) {
        return false;
    }
    QVector<RawRange> ranges;
    do {
        const auto first = needInteger();
        const auto last = first && needSymbol('-') ? needInteger() : std::nullopt;
        if (!last || !mayHave(m_textCount, MaxTexts)) {
            return false;
        }
        ranges.append({*first, *last});
    } while (m_in.symbol(','));
    if (DatabaseSignal *signal = signalOf(*about)) {
        signal->multiplexed.swap(ranges);
        signal->multiplexor = m_signalNumbers[about->message].value(*symbol, -1);
        if (signal->multiplexor < 0) {
            report(place,
                   DatabaseParser::tr("%1 has no signal %2").arg(m_database.messages[about->message].symbol, *symbol));
            signal->multiplexor = about->signal; // which nothing can be multiplexed by: left out by the checks
        } else {
            m_database.messages[about->message].content[signal->multiplexor].isMultiplexor = true;
        }
    }
    return needSymbol(';');
}

/// The message's multiplexor that is always there; -1 where there is none, or more than one.
int DbcParser::onlyMultiplexor(int message) const
{
    const QVector<DatabaseSignal> &content = m_database.messages[message].content;
    int found = -1;
    for (int i = 0; i < content.size(); ++i) {
        if (content[i].isMultiplexor && !m_multiplexed.contains({message, i})) {
            if (found >= 0) {
                return -1;
            }
            found = i;
        }
    }
    return found;
}

/// Signals whose multiplexor is not named have the only one that is always there.
void DbcParser::resolveMultiplexing()
{
    QHash<int, int> multiplexors; // of messages
    for (auto it = m_multiplexed.cbegin(); it != m_multiplexed.cend(); ++it) {
        const auto [message, number] = it.key();
        DatabaseSignal &signal = m_database.messages[message].content[number];
        if (signal.multiplexed.isEmpty()) {
            if (!multiplexors.contains(message)) {
                multiplexors.insert(message, onlyMultiplexor(message));
            }
            const int found = multiplexors.value(message);
            signal.multiplexed = {{it.value(), it.value()}};
            signal.multiplexor = found >= 0 ? found : number; // itself: left out by the checks
        }
    }
}
