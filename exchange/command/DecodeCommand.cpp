#include "exchange/command/Command.h"

#include <QCoreApplication>

/// Needs the signal databases, which this build does not have.
int decodeCommand(CommandContext &context)
{
    return context.fail(
        QCoreApplication::translate("x9capture", "this build reads no signal databases, so nothing can be decoded."));
}
