#pragma once

#include <QVector>
#include <QWidget>

/// For reports.
inline QString nameOf(const QWidget &widget)
{
    return QStringLiteral("%1 '%2'").arg(QLatin1String(widget.metaObject()->className()), widget.objectName());
}

/// The widgets of the window itself, without those of windows that belong to it.
inline QVector<QWidget *> widgetsOf(const QWidget &window)
{
    QVector<QWidget *> widgets;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->window() == &window) {
            widgets.append(widget);
        }
    }
    return widgets;
}

inline bool isInside(const QWidget &widget, const char *className)
{
    for (const QWidget *parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
        if (parent->inherits(className)) {
            return true;
        }
    }
    return false;
}

/// In a panel of no height.
inline bool isFolded(const QWidget &widget)
{
    return widget.size().isEmpty() || (widget.parentWidget() != nullptr && isFolded(*widget.parentWidget()));
}
