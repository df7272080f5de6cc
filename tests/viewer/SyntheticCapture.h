#pragma once

#include "viewer/core/StoreLoader.h"

#include <QByteArray>

/// A capture of a made-up engine: frames that come at their periods, a counter, a slow wave, a switch that moves once,
/// and now and then a CAN FD frame of 24 bytes, a remote frame and an error frame. It begins on 2024-05-17 08:30 UTC,
/// and finds one thing wrong.
StoreLoader::Open syntheticCapture(qint64 frames);

/// A DBC file for its frames: Engine (0x100), Doors (0x111, multiplexed by its counter), Radar (0x1BB, CAN FD), Gateway
/// (0x18FF1234) and Climate, which never comes.
QByteArray syntheticDatabase();
