#pragma once

#include "viewer/core/ColorRules.h"

#include <QPushButton>

/// Shows a colour of a rule and lets one choose another from a menu: none of its own, one of a few that can be told
/// from each other, or any.
class ColorButton : public QPushButton
{
    Q_OBJECT

public:
    /// For letters dark colours are offered, for a background light ones.
    enum Use { Text, Background };

    ColorButton(Use use, const QString &text, QWidget *parent = nullptr);

    /// A background that none of these rules has, while there is one.
    static quint32 freshBackground(const QVector<ColorRule> &rules);

    const ColorRule::Color &color() const { return m_color; }
    /// Emits nothing.
    void setColor(const ColorRule::Color &color);

signals:
    /// By the user.
    void sig_chosen();

private slots:
    void slot_other();

private:
    void choose(const ColorRule::Color &color);
    QIcon icon(const ColorRule::Color &color) const;

    ColorRule::Color m_color;
};
