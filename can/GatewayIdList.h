#pragma once

#include <QSet>
#include <QVector>

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
