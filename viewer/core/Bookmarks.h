#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// The rows of a capture that were marked, each with a note. A plain value.
class Bookmarks
{
public:
    static constexpr int MaxCount = 10000;
    static constexpr int MaxNote = 1000; ///< characters; longer notes are cut

    /// Also gives a row that is marked another note. False when there are MaxCount already.
    bool set(qint64 row, const QString &note);
    void remove(qint64 row) { m_notes.remove(row); }
    bool contains(qint64 row) const { return m_notes.contains(row); }
    QString note(qint64 row) const { return m_notes.value(row); }
    /// By row.
    const QMap<qint64, QString> &notes() const { return m_notes; }

    /// The next one behind row, or the last before it; -1 when there is none.
    qint64 next(qint64 row) const;
    qint64 previous(qint64 row) const;

    QByteArray toJson(const QString &capture) const;
    /// Leaves out what is not right; nothing is left of another text.
    static Bookmarks fromJson(const QByteArray &json);

    /// In a file of folder that belongs to the capture's path alone. No bookmarks where there is no such file.
    static Bookmarks load(const QString &folder, const QString &capture);
    /// Makes the folder; without bookmarks the file goes. False when it cannot be written.
    bool save(const QString &folder, const QString &capture) const;

private:
    QMap<qint64, QString> m_notes;
};
