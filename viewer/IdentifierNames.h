#pragma once

#include "viewer/core/FrameColumns.h"

/// "1: 123  Engine"; an error frame's has a word.
QString identifierLabel(FrameKey key, quint16 channel, const FrameNames &names);
/// The frames of an identifier, on one channel.
QString identifierFilterOn(FrameKey key, quint16 channel);
