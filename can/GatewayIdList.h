#pragma once

#include <QSet>
#include <QString>
#include <QVector>

#include <optional>

/// An entry of the adapter's gateway list is one word: identifier × 8 + type × 2 + 1. A word that the adapter reports
/// may have other bits in the lowest three; these functions take any word.

/// Values of the frame type, as the dialog's choice and bit 1 of the word have them.
constexpr quint8 GatewayStandard = 0;
constexpr quint8 GatewayExtend = 1;

/// The word of an identifier of up to 29 bits; higher bits do not fit and are lost.
quint32 gatewayWord(quint32 id, quint8 type);
/// Bits 31..3.
quint32 gatewayId(quint32 word);
bool isGatewayExtend(quint32 word);

/// The identifier in a text of hexadecimal digits, blanks ignored. Nothing unless 1 to 8 digits remain and the number
/// is at most 0x1FFF (standard) or 0x1FFFFFFF (extended). Other types have no limit.
std::optional<quint32> gatewayIdFromText(const QString &text, quint8 type);

/// "0x" and the word's identifier with eight digits.
QString gatewayIdText(quint32 word);
/// The number of a row, with two digits at least.
QString gatewayRowNumber(int number);

/// The words of a gateway list while it is edited: each once, in the order of the rows. Words that the adapter reported
/// stay as they are, whatever their bits and however many there are, so that a list that nobody edits does not change.
class GatewayIdList
{
public:
    enum class AddResult { Added, Full, Exists };

    /// Sorted by identifier, standard before extended.
    explicit GatewayIdList(const QSet<quint32> &words);

    /// Adds a word behind the others. Full when there are AdapterGatewayMaxIds or more, whether the word is among them
    /// or not; Exists when there is room and it is.
    AddResult add(quint32 word);
    /// Takes a word out, the others keep their order. Nothing happens when it is not there.
    void remove(quint32 word) { m_words.removeOne(word); }
    void clear() { m_words.clear(); }

    const QVector<quint32> &words() const { return m_words; }
    QSet<quint32> toSet() const { return {m_words.cbegin(), m_words.cend()}; }

private:
    QVector<quint32> m_words;
};
