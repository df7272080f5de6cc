#pragma once

#include "viewer/core/ColorRules.h"

#include <QDialog>

class ColorButton;
class FilterEdit;
class OpenCapture;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

/// The rules by which rows are coloured, from the first, which wins, to the last: each with its filter and its colours.
/// A rule that is wrong in this capture is marked. Once taken, sig_rulesTaken has them.
class ColorRulesDialog : public QDialog
{
    Q_OBJECT

public:
    /// capture must outlive this; its signals are those that filters may name. Where filter is not empty, a rule for it
    /// is added in front.
    ColorRulesDialog(const QVector<ColorRule> &rules, OpenCapture &capture, const QString &filter,
                     QWidget *parent = nullptr);
    ~ColorRulesDialog() override;

    QVector<ColorRule> rules() const;
    void accept() override;

signals:
    void sig_rulesTaken(const QVector<ColorRule> &rules);

private slots:
    void slot_currentChanged();
    void slot_edited();
    void slot_add();
    void slot_remove();
    void slot_sourceChanged();

private:
    QWidget *makeEditor();
    QLayout *makeButtons();
    static QPushButton *makeButton(const char *name, const QString &text);
    void fill(const QVector<ColorRule> &rules);
    void insert(int row, const ColorRule &rule);
    static ColorRule rule(const QListWidgetItem &item);
    void setRule(QListWidgetItem &item, const ColorRule &rule);
    void moveBy(int step);
    void showCurrent(const ColorRule &rule);
    /// What is wrong with a filter here; empty where nothing is.
    QString problem(const QString &filter) const;

    OpenCapture &m_capture;
    QListWidget *m_list;
    FilterEdit *m_filter = nullptr;
    ColorButton *m_text = nullptr;
    ColorButton *m_background = nullptr;
    QLabel *m_problem = nullptr;
    QLabel *m_sample = nullptr;
    QWidget *m_editor = nullptr;
    QPushButton *m_add = nullptr;
    QPushButton *m_remove = nullptr;
    QPushButton *m_up = nullptr;
    QPushButton *m_down = nullptr;
    bool m_isFilling = false; ///< changes are not the user's
};
