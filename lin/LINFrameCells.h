#pragma once

#include "lin/CTableViewLIN.h"

#include <QStringList>

/// The columns of the table of LIN frames and of its file, in their order.
enum class LINColumn : quint8 { Number, SystemTime, Direction, Id, Length, Data, Check, State };
constexpr int LINColumnCount = 8;

/// How a frame's checksum stands to the checksum type that the channel is set to.
enum class LINFrameState : quint8 {
    Classic,       ///< classic, as set
    Enhanced,      ///< enhanced, as set
    WrongClassic,  ///< classic, but set to enhanced
    WrongEnhanced, ///< enhanced, but set to classic
    Wrong,         ///< matches neither
};

/// checksumType: 0 standard (classic), 1 enhanced.
LINFrameState linFrameState(const CTableViewLIN::DataObject &frame, quint8 checksumType);

/// Texts in the program's language; of all columns, in their order.
QStringList linColumnTitles();
/// Column Id to Check and SystemTime come from the frame, Number and State from the other two arguments.
QString linCell(const CTableViewLIN::DataObject &frame, int number, LINFrameState state, LINColumn column);
