#pragma once

#include <QString>

#include <atomic>
#include <functional>

/// Asks for the newest firmware version published under a product code. Blocks until it is known; answers an empty
/// text when it is not, and within 500 ms of isCancelled becoming true. Called from the firmware monitor's thread.
/// Handed in by the application, so that device/ knows nothing of the network.
using FirmwareQuery = std::function<QString(const QString &productCode, const std::atomic<bool> &isCancelled)>;
