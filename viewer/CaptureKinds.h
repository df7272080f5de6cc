#pragma once

#include <QStringList>

struct ExchangeFormat;

/// The kinds of captures as dialogs name them, in the user's language.
namespace CaptureKinds {

/// "candump log (*.log *.candump)"
QString filter(const ExchangeFormat &format);
/// For opening: all kinds at once, each one, all files.
QStringList openFilters();
/// The kinds that can be written.
QVector<const ExchangeFormat *> written();

} // namespace CaptureKinds
