#pragma once

#include <QByteArray>

/// The public key that updates must be signed with, as the program was built with it (X9_UPDATE_KEY): the line of a
/// minisign key file. Empty: updates need no signature.
QByteArray updateKey();
