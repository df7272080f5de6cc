#pragma once

#include "viewer/core/Filter.h"

#include <QLineEdit>

#include <memory>
#include <optional>

class QCompleter;
class QStringListModel;
class TableSettings;

/// A line for a filter: it offers what may stand at the cursor, and underlines what is wrong. The filter is taken with
/// Return; Esc gives back the text that was taken last; Down offers the filters that were taken lately.
class FilterEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit FilterEdit(QWidget *parent = nullptr);

    /// Names that a filter may have from now on. One that was taken is made anew with them, if it is right then.
    void setSource(std::shared_ptr<const SignalSource> source);
    /// Where filters that are taken are remembered, which must outlive this.
    void setSettings(TableSettings &settings);
    /// The filter that was taken last.
    const Filter &filter() const { return m_filter; }
    /// Whether the text is the one that was taken last.
    bool isTaken() const { return text() == m_taken; }
    /// As if it had been typed and taken. False when it is wrong.
    bool take(const QString &text);
    /// Shows a text to be edited, which Esc comes back to; nothing is taken.
    void edit(const QString &text);
    /// What is wrong with the text as it stands; empty when it is right.
    QString problem() const { return m_error ? m_error->text : QString(); }

signals:
    void sig_filterTaken();
    /// The filter that was taken says the same with other names.
    void sig_filterRenewed();
    void sig_problemChanged(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    /// For lines of a language of their own: nothing, with error, where text is wrong.
    virtual std::optional<Filter> parse(const QString &text, FilterError &error) const;
    virtual FilterCompletion completionAtCursor() const;
    const std::shared_ptr<const SignalSource> &source() const { return m_source; }

private slots:
    void slot_check();
    void slot_complete(const QString &candidate);
    void slot_offerRecent();

private:
    void offer();
    void showCandidates(const QStringList &candidates);
    void underline();

    TableSettings *m_settings = nullptr;
    bool m_isRecent = false; ///< whole filters are offered
    std::shared_ptr<const SignalSource> m_source;
    Filter m_filter;
    QString m_taken;
    std::optional<FilterError> m_error;
    QCompleter *m_completer;
    QStringListModel *m_candidates;
};
