#pragma once

#include "viewer/core/FrameColumns.h"

class OpenCapture;

/// The names that the capture's database has for its messages; none without a database.
FrameColumns::Names identifierNames(const OpenCapture &capture);
/// "1: 123  Engine"; an error frame's has a word.
QString identifierLabel(FrameKey key, quint16 channel, const FrameColumns::Names &names);
/// The frames of an identifier, on one channel.
QString identifierFilterOn(FrameKey key, quint16 channel);
