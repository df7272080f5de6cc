# Linux's own CAN behind the functions of the adapter library, in a folder of its own: beside the program it would pass for
# the maker's.
x9_add_library(
  x9_socketcan_adapter
  SOURCES
    socketcan/InterfaceMap.cpp
    socketcan/KernelFilter.cpp
    socketcan/KernelSystem.cpp
    socketcan/LinkMessages.cpp
    socketcan/Links.cpp
    socketcan/NetlinkTransport.cpp
    socketcan/Receiver.cpp
    socketcan/RunningChannel.cpp
    socketcan/SocketCanAdapter.cpp
    socketcan/SocketPort.cpp
  HEADERS
    socketcan/CanPort.h
    socketcan/ChannelCounts.h
    socketcan/FileDescriptor.h
    socketcan/InterfaceMap.h
    socketcan/KernelFilter.h
    socketcan/KernelSystem.h
    socketcan/Link.h
    socketcan/LinkMessages.h
    socketcan/LinkTransport.h
    socketcan/Links.h
    socketcan/NetlinkTransport.h
    socketcan/Receiver.h
    socketcan/RunningChannel.h
    socketcan/SocketCanAdapter.h
    socketcan/SocketPort.h
    socketcan/System.h
  LINK x9_adapter_core Threads::Threads)

x9_add_adapter(ControlCAN_socketcan "${PROJECT_BINARY_DIR}/bin/socketcan"
  SOURCES socketcan/LibraryAdapter.cpp
  LIBS x9_socketcan_adapter)
