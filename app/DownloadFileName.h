#pragma once

#include <QString>

class QUrl;

/// The name under which the file at an address is stored: the last segment of its path, with the percent encoding
/// resolved once. Empty when that is no plain file name on every system: empty, "." or "..", with a separator, a colon
/// or a control character, not UTF-8, ending in a dot or a blank, or the name of a device of Windows.
QString downloadFileName(const QUrl &url);
