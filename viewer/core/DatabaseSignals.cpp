#include "viewer/core/DatabaseSignals.h"

#include "exchange/BusFrame.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr double None = std::numeric_limits<double>::quiet_NaN();

bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_');
}

/// A name that expressions can have as one word, whatever file it is.
QString wordOf(QString name)
{
    for (QChar &character : name) {
        character = isWordCharacter(character) ? character : QLatin1Char('_');
    }
    return name.isEmpty() || name.at(0).isDigit() ? QLatin1Char('_') + name : name;
}

/// Words with points between them.
bool isWritable(const QString &name)
{
    const QVector<QStringRef> words = name.splitRef(QLatin1Char('.'));
    return !name.at(0).isDigit() && std::all_of(words.begin(), words.end(), [](const QStringRef &word) {
        return !word.isEmpty() && std::all_of(word.begin(), word.end(), isWordCharacter);
    });
}

bool isOnChannel(const DatabaseSignals::Part &part, int channel)
{
    return part.channels.isEmpty() || part.channels.contains(channel);
}

} // namespace

DatabaseSignals::DatabaseSignals(std::vector<Part> parts)
{
    std::stable_partition(parts.begin(), parts.end(), [](const Part &part) { return !part.channels.isEmpty(); });
    for (Part &part : parts) {
        DatabaseDecoder decoder(*part.database);
        m_parts.push_back({std::move(part), std::move(decoder), messageCount()});
        addMessages(static_cast<int>(m_parts.size()) - 1);
        addEvents(m_parts.back());
    }
    hideMessages();
    addNames();
    listNames();
}

void DatabaseSignals::addMessages(int part)
{
    const QVector<DatabaseMessage> &described = partAt(part).part.database->messages;
    for (int number = 0; number < described.size(); ++number) {
        PreparedMessage message{part, number, static_cast<int>(m_signals.size()), false, {}};
        if (described[number].kind != DatabaseMessage::Sporadic) {
            message.keys.append(keyOf(message));
        }
        for (int place = 0; place < described[number].content.size(); ++place) {
            m_signals.push_back({messageCount(), place});
        }
        m_messages.push_back(std::move(message));
    }
}

/// A frame that is event-triggered carries those that are associated.
void DatabaseSignals::addEvents(const PreparedPart &part)
{
    const QVector<DatabaseMessage> &described = part.part.database->messages;
    const auto prepared = m_messages.begin() + part.firstMessage;
    for (int number = 0; number < described.size(); ++number) {
        if (described[number].kind == DatabaseMessage::EventTriggered) {
            const FrameKey key = prepared[number].keys.first();
            for (const int associated : described[number].associated) {
                prepared[associated].keys.append(key);
            }
        }
    }
}

FrameKey DatabaseSignals::keyOf(const PreparedMessage &message) const
{
    const Database &database = *partAt(message.part).part.database;
    const DatabaseMessage &described = database.messages[message.number];
    const int flags =
        (described.extended ? BusFrame::Extended : 0) | (database.bus == Database::Lin ? BusFrame::Lin : 0);
    return frameKey(described.identifier, static_cast<quint16>(flags));
}

/// Whether all frames of second are first's, which comes before it.
bool DatabaseSignals::hides(const PreparedMessage &first, const PreparedMessage &second) const
{
    const QVector<int> &channels = partAt(second.part).part.channels;
    const Part &other = partAt(first.part).part;
    return channels.isEmpty() ? other.channels.isEmpty()
                              : std::all_of(channels.begin(), channels.end(),
                                            [&other](int channel) { return isOnChannel(other, channel); });
}

void DatabaseSignals::hideMessages()
{
    QMultiHash<FrameKey, int> seen;
    for (int number = 0; number < messageCount(); ++number) {
        PreparedMessage &message = m_messages[static_cast<std::size_t>(number)];
        if (message.keys.isEmpty()) {
            continue;
        }
        const FrameKey key = message.keys.first();
        const QList<int> others = seen.values(key);
        const auto by = std::find_if(others.begin(), others.end(), [&](int other) {
            return hides(m_messages[static_cast<std::size_t>(other)], message);
        });
        message.isHidden = by != others.end();
        if (message.isHidden) {
            m_hidden.push_back({number, *by});
        } else {
            seen.insert(key, number);
        }
    }
}

void DatabaseSignals::addNames()
{
    const auto add = [this](const QString &name, int number) {
        const auto found = m_numbers.find(name);
        if (found == m_numbers.end()) {
            m_numbers.insert(name, number);
        } else if (*found != number) {
            *found = -1;
        }
    };
    for (std::size_t i = 0; i < m_signals.size(); ++i) {
        const PreparedMessage &prepared = m_messages[static_cast<std::size_t>(m_signals[i].message)];
        if (!isUsed(m_signals[i].message)) {
            continue;
        }
        const auto number = static_cast<int>(i);
        const DatabaseMessage &described = message(m_signals[i].message);
        const QString file = wordOf(partAt(prepared.part).part.name) + QLatin1Char('.');
        for (const QString &messageName : {described.name, described.symbol}) {
            for (const QString &name : {signal(number).name, signal(number).symbol}) {
                const QString full = messageName + QLatin1Char('.') + name;
                add(name, number);
                add(full, number);
                add(file + full, number);
            }
        }
    }
}

void DatabaseSignals::listNames()
{
    for (int number = 0; number < messageCount(); ++number) {
        if (isUsed(number)) {
            m_named.append({keys(number).first(), message(number).name, partOf(number).channels});
        }
    }
    for (int number = 0; number < signalCount(); ++number) {
        m_expressions.push_back(shortestName(number));
        const QString &name = signal(number).name;
        if (signalNumber(name) == number && isWritable(name)) {
            m_signalNames.append(name);
        }
        const QString &full = expression(number);
        if (!full.isEmpty() && full != name) {
            m_signalNames.append(full);
        }
    }
}

int DatabaseSignals::signalNumber(const QString &name) const
{
    return m_numbers.value(name, -1);
}

QVector<FrameKey> DatabaseSignals::carriers(int signal) const
{
    return keys(messageOfSignal(signal));
}

int DatabaseSignals::messageOf(const BusFrame &frame) const
{
    for (const PreparedPart &part : m_parts) {
        if (isOnChannel(part.part, frame.channel)) {
            const int number = part.decoder.messageOf(frame);
            if (number >= 0) {
                return part.firstMessage + number;
            }
        }
    }
    return -1;
}

double DatabaseSignals::value(int signal, const BusFrame &frame) const
{
    const PreparedSignal &wanted = m_signals[static_cast<std::size_t>(signal)];
    if (!hasSoundData(frame) || messageOf(frame) != wanted.message) {
        return None;
    }
    const MessageDecoder &found = decoder(wanted.message);
    const uchar *data = frame.data.data();
    if (!found.has(wanted.place, data, frame.length)) {
        return None;
    }
    const SignalDecoder &value = found.content()[static_cast<std::size_t>(wanted.place)];
    return value.number(value.bits(data)).value_or(None);
}

QString DatabaseSignals::valueText(int signal, double value) const
{
    const SignalDecoder &found = signalDecoder(signal);
    const std::optional<quint64> bits = found.bitsOf(value);
    if (!bits) {
        return {};
    }
    char room[MaxNumberText];
    const std::string_view text = found.text(*bits, room);
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

QVector<SignalSource::State> DatabaseSignals::states(int signal) const
{
    QVector<State> states;
    for (const ValueText &text : this->signal(signal).texts) {
        const std::optional<double> value = signalDecoder(signal).numberOfText(text.value);
        if (value && valueText(signal, *value) == text.text) { // of two texts for a value the first counts
            states.append({*value, text.text});
        }
    }
    return states;
}

QString DatabaseSignals::unit(int signal) const
{
    return this->signal(signal).unit();
}

const DatabaseMessage &DatabaseSignals::message(int number) const
{
    const PreparedMessage &prepared = m_messages[static_cast<std::size_t>(number)];
    return partAt(prepared.part).part.database->messages[prepared.number];
}

const MessageDecoder &DatabaseSignals::decoder(int message) const
{
    const PreparedMessage &prepared = m_messages[static_cast<std::size_t>(message)];
    return partAt(prepared.part).decoder.message(prepared.number);
}

const DatabaseSignals::Part &DatabaseSignals::partOf(int message) const
{
    return partAt(m_messages[static_cast<std::size_t>(message)].part).part;
}

const DatabaseSignal &DatabaseSignals::signal(int number) const
{
    const PreparedSignal &prepared = m_signals[static_cast<std::size_t>(number)];
    return message(prepared.message).content[prepared.place];
}

const SignalDecoder &DatabaseSignals::signalDecoder(int number) const
{
    const PreparedSignal &prepared = m_signals[static_cast<std::size_t>(number)];
    return decoder(prepared.message).content()[static_cast<std::size_t>(prepared.place)];
}

/// A name that finds the signal, with its message's and, where it must be, its file's.
QString DatabaseSignals::shortestName(int number) const
{
    const PreparedMessage &prepared = m_messages[static_cast<std::size_t>(messageOfSignal(number))];
    const DatabaseMessage &described = message(messageOfSignal(number));
    const QString file = wordOf(partAt(prepared.part).part.name) + QLatin1Char('.');
    for (const QString &messageName : {described.name, described.symbol}) {
        for (const QString &name : {signal(number).name, signal(number).symbol}) {
            const QString full = messageName + QLatin1Char('.') + name;
            for (const QString &candidate : {full, file + full}) {
                if (signalNumber(candidate) == number && isWritable(candidate)) {
                    return candidate;
                }
            }
        }
    }
    return {};
}
