#pragma once

#include "viewer/FilterEdit.h"

/// A line for what a plot shows; see PlotExpression. taken() with Return; the line is empty then.
class ValueEdit : public FilterEdit
{
    Q_OBJECT

public:
    explicit ValueEdit(QWidget *parent = nullptr);

signals:
    void sig_valueTaken(const QString &text);

protected:
    std::optional<Filter> parse(const QString &text, FilterError &error) const override;
    FilterCompletion completionAtCursor() const override;
};
