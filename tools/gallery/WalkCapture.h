#pragma once

#include <QByteArray>
#include <QString>

/// A capture for the walk: an engine runs until the program, which has set the oil pump's mode before, reduces it, and
/// the oil pressure drops.
namespace WalkCapture {

constexpr int DropMs = 37430;
constexpr int EndMs = 52000;

QByteArray database();

/// Appends the rows from one moment to another, in milliseconds, in the layout of real-time saving; in front of those
/// from the start its titles. False when it cannot be written.
bool append(const QString &path, int fromMs, int toMs);

} // namespace WalkCapture
