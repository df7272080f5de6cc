#pragma once

#include "device/CANAPI.h"

#include <QString>

#include <optional>

/// Texts that a device tells of itself, at most AdapterInfoSize characters each.
struct DeviceInfo
{
    QString serial;
    QString model;
    QString firmware;
};

/// Asks a device, from any thread; an adapter may answer for open devices only. Nothing when it refuses or when the
/// entry is missing.
std::optional<DeviceInfo> readInfo(const CANAPI &api, quint8 dev);
