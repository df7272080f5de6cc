#pragma once

#include <QString>

/// What went wrong in a CAN tab since its table was last cleared, in frames and failed calls.
struct CanTabErrors
{
    quint64 unlisted = 0;  ///< frames for which the table had no room
    quint64 refused = 0;   ///< frames that the adapter did not take for sending
    quint64 receiving = 0; ///< receptions that the adapter ended with an error
};

/// A few characters: the kind and its count, or the sum of several kinds; from ten thousand on the count is cut to
/// thousands, millions and so on. Empty when nothing went wrong.
QString errorText(const CanTabErrors &errors);
/// The same in words, a line for each kind with its whole count.
QString errorToolTip(const CanTabErrors &errors);
