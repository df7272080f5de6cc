#include "lin/LINIdSpinBox.h"

namespace {
constexpr int MaxId = 0x3F;
}

LINIdSpinBox::LINIdSpinBox(QWidget *parent)
    : QSpinBox(parent)
{
    setDisplayIntegerBase(16); // decides what can be typed
    setRange(0, MaxId);
}

QString LINIdSpinBox::textFromValue(int value) const
{
    return QString::number(value, 16).toUpper();
}
