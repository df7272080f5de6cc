#pragma once

#include "exchange/database/SignalDecoder.h"

/// What a table says of a signal's value.
struct SignalCells
{
    QString raw;
    QString physical; ///< empty where there is none
    QString unit;
    QString text;
};

/// data: BusFrame::MaxLength bytes, of a frame that has the signal.
SignalCells signalCells(const SignalDecoder &signal, const uchar *data);
