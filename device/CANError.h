#pragma once

/// Result of every operation of CANCommunication.
enum CANError {
    CAN_OK = 0,
    CAN_DeviceExists,           ///< opening a device that is already open; a scan while another one runs
    CAN_DeviceNotExists,        ///< closing something of a device that is not open
    CAN_DeviceOpenFailed,       ///< the library is missing or refused the device; a scan while both channels are open
    CAN_DeviceNotSupport,       ///< CAN FD on a model that has none, or whose information could not be read
    CAN_ChannelExists,          ///< opening an open channel; closing a device with an open channel
    CAN_ChannelNotExists,       ///< the gateway needs both CAN channels open
    CAN_ChannelOpenFailed,      ///< the library refused to initialise or start a channel
    CAN_SendFailed,             ///< fewer frames accepted than given; a LIN transmission or mode change failed
    CAN_ReadFailed,             ///< a LIN receive failed
    CAN_GatewayOperationFailed, ///< a gateway call failed, or the filter was set while the gateway is off
    CAN_Unknown,                ///< a LIN channel could not be closed for re-opening
};
