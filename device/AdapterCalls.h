#pragma once

#include "device/CANAPI.h"
#include "device/ChannelParam.h"

#include <QString>

#include <optional>

// Calls into the adapter library that are made in more than one place. From any thread.

/// Calls an entry that answers AdapterSuccess; a missing entry counts as refused.
template<class Entry, class... Arguments>
bool succeeds(Entry entry, Arguments... arguments)
{
    return entry != nullptr && entry(AdapterDeviceType, arguments...) == AdapterSuccess;
}

/// Texts that a device tells of itself, at most AdapterInfoSize characters each.
struct DeviceInfo
{
    QString serial;
    QString model;
    QString firmware;
};

/// Asks a device; an adapter may answer for open devices only. Nothing when it refuses.
std::optional<DeviceInfo> readInfo(const CANAPI &api, quint8 dev);

/// Initialises and starts a CAN channel, and drops the frames that wait in it. False when the adapter refuses.
bool startCAN(const CANAPI &api, const ChannelParam &param);

/// What a library tells of a channel that did not open.
struct ChannelProblem
{
    AdapterProblemCode code = AdapterProblemCode::None;
    QString text;   ///< in English; what stands in the way
    QString remedy; ///< a command that would help; empty when there is none
};

/// Asks the library; also of a device that is not open. AdapterProblemCode::None when there is nothing to tell, and for
/// libraries that do not tell.
ChannelProblem readChannelProblem(const CANAPI &api, quint8 dev, quint8 ch);
