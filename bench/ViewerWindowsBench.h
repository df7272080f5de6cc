#pragma once

#include <QString>

class BenchReport;

/// The windows of the viewer's menu "Analyse" with a capture of frames frames, without a display: how long until each
/// shows something and until it shows all, and the longest time that its thread did nothing else meanwhile. mode: one
/// of viewerWindowModes(). False when it does not come to an end.
bool benchViewerWindow(BenchReport &report, const QString &mode, qint64 frames, int argc, char *argv[]);
QStringList viewerWindowModes();
