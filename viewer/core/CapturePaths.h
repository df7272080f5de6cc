#pragma once

#include <QString>

/// What is kept beside captures, which may be renamed or gone.
namespace CapturePaths {

/// The path that is the same whatever way the capture was opened by.
QString absolute(const QString &capture);
/// The file of folder that belongs to the capture's path alone.
QString fileOf(const QString &folder, const QString &capture);

} // namespace CapturePaths
