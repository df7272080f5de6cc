#pragma once

#include "exchange/database/MessageDecoder.h"
#include "viewer/core/SignalSource.h"

#include <QMultiHash>

#include <memory>
#include <vector>

/// The signals of the databases of a capture. Messages and signals are counted through all of them. A frame belongs to
/// the first database that has it; those for some channels come before those for all. A signal is found by its name, by
/// "Message.Signal", and by "file.Message.Signal" where several databases have the same; a name that more than one
/// signal has finds none.
class DatabaseSignals : public SignalSource
{
public:
    struct Part
    {
        std::shared_ptr<const Database> database;
        QString name;          ///< of the file, without its ending
        QVector<int> channels; ///< from 0; empty: all
    };
    /// A message that no frame belongs to, as another one has all of them.
    struct Hidden
    {
        int message;
        int by;
    };

    explicit DatabaseSignals(std::vector<Part> parts);

    QVector<Message> messages() const override { return m_named; }
    QStringList signalNames() const override { return m_signalNames; }
    int signalNumber(const QString &name) const override;
    QVector<FrameKey> carriers(int signal) const override;
    double value(int signal, const BusFrame &frame) const override;
    QString valueText(int signal, double value) const override;
    QVector<State> states(int signal) const override;
    QString unit(int signal) const override;

    int signalCount() const { return static_cast<int>(m_signals.size()); }
    int messageCount() const { return static_cast<int>(m_messages.size()); }
    const DatabaseMessage &message(int number) const;
    /// For decoding the frames of a message; its content is the message's.
    const MessageDecoder &decoder(int message) const;
    const Part &partOf(int message) const;
    /// The signals of a message are numbered from here on, in their order.
    int firstSignal(int message) const { return m_messages[static_cast<std::size_t>(message)].firstSignal; }
    int messageOfSignal(int signal) const { return m_signals[static_cast<std::size_t>(signal)].message; }
    const DatabaseSignal &signal(int number) const;
    const SignalDecoder &signalDecoder(int number) const;
    /// Whether a frame can belong to it: it has an identifier, and no other message has all of its frames.
    bool isUsed(int message) const
    {
        const PreparedMessage &prepared = m_messages[static_cast<std::size_t>(message)];
        return !prepared.isHidden && !prepared.keys.isEmpty();
    }
    /// The identifiers of the frames that a message is in.
    const QVector<FrameKey> &keys(int message) const { return m_messages[static_cast<std::size_t>(message)].keys; }
    /// The message whose signals are in a frame; -1: none. The frame's data may not have been on the bus.
    int messageOf(const BusFrame &frame) const;
    /// A name that finds the signal, with its message's where that does; empty where there is none, or where it is not
    /// a word of expressions.
    const QString &expression(int signal) const { return m_expressions[static_cast<std::size_t>(signal)]; }
    const std::vector<Hidden> &hidden() const { return m_hidden; }

private:
    struct PreparedPart
    {
        Part part;
        DatabaseDecoder decoder;
        int firstMessage;
    };
    struct PreparedMessage
    {
        int part;
        int number; ///< in its database
        int firstSignal;
        bool isHidden;
        QVector<FrameKey> keys;
    };
    struct PreparedSignal
    {
        int message;
        int place; ///< in the message
    };

    void addMessages(int part);
    void addEvents(const PreparedPart &part);
    void hideMessages();
    void addNames();
    void listNames();
    QString shortestName(int number) const;
    FrameKey keyOf(const PreparedMessage &message) const;
    bool hides(const PreparedMessage &first, const PreparedMessage &second) const;
    const PreparedPart &partAt(int part) const { return m_parts[static_cast<std::size_t>(part)]; }

    std::vector<PreparedPart> m_parts;
    std::vector<PreparedMessage> m_messages;
    std::vector<PreparedSignal> m_signals;
    std::vector<Hidden> m_hidden;
    // Made once, as these are asked for while somebody types.
    QVector<Message> m_named;
    QStringList m_signalNames;
    std::vector<QString> m_expressions; ///< by signal
    QHash<QString, int> m_numbers;      ///< by name; -1 where several signals have it
};
