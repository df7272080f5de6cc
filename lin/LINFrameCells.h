#pragma once

#include "lin/CTableViewLIN.h"

#include <QStringList>

/// The columns of the table of LIN frames and of its file, in their order.
enum class LINColumn : quint8 { Number, SystemTime, Direction, Id, Length, Data, Check, State };
constexpr int LINColumnCount = 8;

/// Texts in the program's language; of all columns, in their order.
QStringList linColumnTitles();
/// number: of the row. checksumType: what the channel was set to when the frame came, 0 standard (classic), 1 enhanced;
/// the state says how the frame's checksum stands to it.
QString linCell(const CTableViewLIN::DataObject &frame, int number, quint8 checksumType, LINColumn column);
