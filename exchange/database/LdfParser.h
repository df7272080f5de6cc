#pragma once

#include "exchange/database/DatabaseParser.h"

#include <QHash>

#include <map>

/// Reads a LIN description file of LIN 1.3, 2.0, 2.1 or 2.2. What it does not understand it reports, and goes on with
/// the next entry.
class LdfParser : private DatabaseParser
{
public:
    using DatabaseParser::MaxSignals;

    explicit LdfParser(const DatabaseText &text);

    Database parse();

private:
    /// A section: its entries are read one by one. Without a function, all of it is passed over.
    struct Section
    {
        const char *keyword;
        bool (LdfParser::*parseEntry)(); ///< false when it has reported that it did not get to the entry's end
    };
    /// What a signal is, whichever frames it is in.
    struct SignalDefinition
    {
        DatabaseSignal signal;
        QString publisher;
    };
    /// How the raw values of signals are understood.
    struct Encoding
    {
        QVector<SignalScale> scales;
        QVector<ValueText> texts;
        bool isBcd = false;
        bool isAscii = false;

        void moveTo(DatabaseSignal &signal);
    };
    /// Names in a frame's definition, for the end, when all are known.
    struct Reference
    {
        int message;
        QStringList frames;
        TextPlace place;
    };

    static const Section *section(std::string_view keyword);
    void parseStatement();
    void parseSection(const Section &section);
    void skipEntry();
    void skipBlock();
    bool parseSetting(const QString &keyword);

    bool parseNode();
    bool parseSignal();
    bool parseDiagnosticSignal();
    bool addSignal(bool isDiagnostic);
    bool parseInitialValue(bool &isArray);
    bool parseFrame();
    bool parseDiagnosticFrame();
    bool addFrame(bool isDiagnostic);
    bool parseFrameSignals(DatabaseMessage &message);
    bool parseFrameSignal(DatabaseMessage &message);
    bool parseEventTriggeredFrame();
    bool parseSporadicFrame();
    bool parseEncoding();
    bool parseEncodingEntry(Encoding &encoding);
    bool parsePhysicalRange(Encoding &encoding);
    bool parseLogicalValue(Encoding &encoding);
    bool parseRepresentation();

    /// A message whose identifier, if it has one, is checked; its number, or -1 where it is left out.
    int addMessage(const DatabaseMessage &message);
    QStringList names();
    void resolveFrames();
    void represent();

    std::map<QString, SignalDefinition> m_definitions;
    std::map<QString, Encoding> m_encodings;
    QHash<QString, QString> m_representations; ///< of signals
    QHash<QString, int> m_messageNumbers;      ///< by name
    QVector<bool> m_isIdentifierTaken;
    QVector<Reference> m_references;
};
