#pragma once

#include "exchange/database/DatabaseParser.h"

#include <QHash>

/// Reads a DBC file. What it does not understand it reports, and goes on with the next statement.
class DbcParser : private DatabaseParser
{
public:
    using DatabaseParser::MaxNameLength;
    using DatabaseParser::MaxNesting;
    using DatabaseParser::MaxSignals;

    explicit DbcParser(const DatabaseText &text);

    Database parse();

private:
    /// A kind of statement. Its function reads what stands behind the keyword; false when it has reported that it did
    /// not get to the end. Without a function, all of it is passed over.
    struct Statement
    {
        const char *keyword;
        bool (DbcParser::*parse)();
    };
    /// What a statement is about.
    struct Subject
    {
        enum Kind { Whole, Node, Message, Signal, Other, Unknown } kind = Whole;
        int message = -1; ///< -1: of those that are passed over
        int signal = -1;
    };
    struct AttributeValue
    {
        QString text; ///< as it stands there
        std::optional<double> number;
    };

    static const Statement *statement(std::string_view keyword);
    void parseStatement();
    void skipStatement();
    bool skipRestOfLine(int line);

    bool parseVersion();
    bool parseNewSymbols();
    bool parseNodes();
    bool parseValueTable();
    bool parseMessage();
    void addMessage(DatabaseMessage &message, quint64 number);
    bool parseSignal();
    bool parseMultiplexing(DatabaseSignal &signal, std::optional<quint64> &selectedBy);
    bool parseBits(DatabaseSignal &signal);
    bool parseScale(DatabaseSignal &signal);
    void parseRange(DatabaseSignal &signal);
    bool parseTransmitters();
    bool parseComment();
    bool parseDefinition();
    bool parseDefault();
    bool parseAttribute();
    bool parseValues();
    bool parseValueType();
    bool parseMultiplexedValues();

    std::optional<Subject> subject();
    std::optional<Subject> messageSubject();
    std::optional<Subject> signalSubject();
    DatabaseMessage *messageOf(const Subject &subject);
    DatabaseSignal *signalOf(const Subject &subject);
    bool parseTexts(QVector<ValueText> &texts);
    std::optional<AttributeValue> attributeValue();
    void setAttribute(const QString &attribute, const Subject &subject, const AttributeValue &value);
    bool isFdFormat(const AttributeValue &value) const;
    void setDefaults();
    int onlyMultiplexor(int message) const;
    void resolveMultiplexing();

    bool m_isMessagePassedOver = true; ///< the last BO_, if any
    QHash<quint32, int> m_messageNumbers;
    QVector<QHash<QString, int>> m_signalNumbers; ///< for each message, by symbol
    QHash<QString, QVector<ValueText>> m_tables;
    QHash<QString, QStringList> m_enumerations; ///< of attributes
    QHash<QString, AttributeValue> m_defaults;
    QHash<int, AttributeValue> m_frameFormats;     ///< of messages
    QHash<QPair<int, int>, quint64> m_multiplexed; ///< by numbers of message and signal: the value behind its m
};
