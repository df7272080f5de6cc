<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>CTableViewCAN</name>
    <message>
        <source>System Time</source>
        <translation>System Time</translation>
    </message>
    <message>
        <source>Time Stamp</source>
        <translation>Time Stamp</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Direction</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Protocol</source>
        <translation>Protocol</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Data</source>
        <comment>frame format</comment>
        <translation>Data</translation>
    </message>
    <message>
        <source>None</source>
        <translation>None</translation>
    </message>
    <message>
        <source>Revice</source>
        <translation>Revice</translation>
    </message>
    <message>
        <source>Send successfully</source>
        <translation>Send successfully</translation>
    </message>
    <message>
        <source>Send failure</source>
        <translation>Send failure</translation>
    </message>
    <message>
        <source>CANFD Speed</source>
        <translation>CANFD Speed</translation>
    </message>
    <message>
        <source>Remote</source>
        <translation>Remote</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>Extend</translation>
    </message>
</context>
<context>
    <name>GUI_CanDevice</name>
    <message>
        <source>CAN Send</source>
        <translation>CAN Send</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>Type:</translation>
    </message>
    <message>
        <source>Frames of send:</source>
        <translation>Frames of send:</translation>
    </message>
    <message>
        <source>ID increase</source>
        <translation>ID increase</translation>
    </message>
    <message>
        <source>Data increase</source>
        <translation>Data increase</translation>
    </message>
    <message>
        <source>Send message</source>
        <translation>Send message</translation>
    </message>
    <message>
        <source>Saved frames:</source>
        <translation>Saved frames:</translation>
    </message>
    <message>
        <source>Length:</source>
        <translation>Length:</translation>
    </message>
    <message>
        <source>Sending cycle:</source>
        <translation>Sending cycle:</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>Setting cache:</source>
        <translation>Setting cache:</translation>
    </message>
    <message>
        <source>Protocol:</source>
        <translation>Protocol:</translation>
    </message>
    <message>
        <source>Data:</source>
        <translation>Data:</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>Extend</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Remote</source>
        <translation>Remote</translation>
    </message>
    <message>
        <source>CAN</source>
        <translation>CAN</translation>
    </message>
    <message>
        <source>CANFD</source>
        <translation>CANFD</translation>
    </message>
    <message>
        <source>CANFD Speed</source>
        <translation>CANFD Speed</translation>
    </message>
    <message>
        <source>CAN function setup</source>
        <translation>CAN function setup</translation>
    </message>
    <message>
        <source>CAN gateway switch</source>
        <translation>CAN gateway switch</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>CAN gateway filter</source>
        <translation>CAN gateway filter</translation>
    </message>
    <message>
        <source>Real time saving</source>
        <translation>Real time saving</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Send file</source>
        <translation>Send file</translation>
    </message>
    <message>
        <source>Stop sending</source>
        <translation>Stop sending</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>Pause receiving</source>
        <translation>Pause receiving</translation>
    </message>
    <message>
        <source>Pause sending</source>
        <translation>Pause sending</translation>
    </message>
    <message>
        <source>Send list</source>
        <translation>Send list</translation>
    </message>
    <message>
        <source>Statistical data</source>
        <translation>Statistical data</translation>
    </message>
    <message>
        <source>Frame rate R:</source>
        <translation>Frame rate R:</translation>
    </message>
    <message>
        <source>Frame rate T:</source>
        <translation>Frame rate T:</translation>
    </message>
    <message>
        <source>Error check:</source>
        <translation>Error check:</translation>
    </message>
    <message>
        <source>Fold</source>
        <translation>Fold</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>CAN channel Receive Filter ID Setting (Direct frame ID)</source>
        <translation>CAN channel Receive Filter ID Setting (Direct frame ID)</translation>
    </message>
    <message>
        <source>Enable</source>
        <translation>Enable</translation>
    </message>
    <message>
        <source>Disable</source>
        <translation>Disable</translation>
    </message>
    <message>
        <source>Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: 0x0-0x1FFFFFFF</source>
        <translation>Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: 0x0-0x1FFFFFFF</translation>
    </message>
    <message>
        <source>Send stopped</source>
        <translation>Send stopped</translation>
    </message>
    <message>
        <source>Suspend CAN sending</source>
        <translation>Suspend CAN sending</translation>
    </message>
    <message>
        <source>Resume CAN sending</source>
        <translation>Resume CAN sending</translation>
    </message>
    <message>
        <source>Suspend CAN receiving</source>
        <translation>Suspend CAN receiving</translation>
    </message>
    <message>
        <source>Resume CAN receiving</source>
        <translation>Resume CAN receiving</translation>
    </message>
    <message>
        <source>File saved successfully!</source>
        <translation>File saved successfully!</translation>
    </message>
    <message>
        <source>File saving failure!</source>
        <translation>File saving failure!</translation>
    </message>
    <message>
        <source>The gateway function fails to be enabled!</source>
        <translation>The gateway function fails to be enabled!</translation>
    </message>
    <message>
        <source>Successful setting!</source>
        <translation>Successful setting!</translation>
    </message>
    <message>
        <source>Setup failure, Please check whether the gateway function is enabled!</source>
        <translation>Setup failure, Please check whether the gateway function is enabled!</translation>
    </message>
    <message>
        <source>Device reset</source>
        <translation>Device reset</translation>
    </message>
    <message>
        <source>Device reset failure</source>
        <translation>Device reset failure</translation>
    </message>
    <message>
        <source>Send File</source>
        <translation>Send File</translation>
    </message>
    <message>
        <source>List send</source>
        <translation>List send</translation>
    </message>
    <message>
        <source>Frame ID:</source>
        <translation>Frame ID:</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Set</translation>
    </message>
    <message>
        <source>There is no such frame ID, the highest one is 0x1FFFFFFF. No frames are hidden now.</source>
        <translation>There is no such frame ID, the highest one is 0x1FFFFFFF. No frames are hidden now.</translation>
    </message>
    <message>
        <source>How many of the newest frames to save, at least 1</source>
        <translation>How many of the newest frames to save, at least 1</translation>
    </message>
    <message>
        <source>The table holds at most %1 frames.
Type a number and press Enter to change it.</source>
        <translation>The table holds at most %1 frames.
Type a number and press Enter to change it.</translation>
    </message>
    <message>
        <source>Only .txt and .csv files can be saved in real time.</source>
        <translation>Only .txt and .csv files can be saved in real time.</translation>
    </message>
</context>
<context>
    <name>ErrorText</name>
    <message>
        <source>Full %1</source>
        <translation>Full %1</translation>
    </message>
    <message>
        <source>Frames not listed because the table is full: %1</source>
        <translation>Frames not listed because the table is full: %1</translation>
    </message>
    <message>
        <source>Send %1</source>
        <translation>Send %1</translation>
    </message>
    <message>
        <source>Frames that the adapter refused to send: %1</source>
        <translation>Frames that the adapter refused to send: %1</translation>
    </message>
    <message>
        <source>Recv %1</source>
        <translation>Recv %1</translation>
    </message>
    <message>
        <source>Errors of the adapter while receiving: %1</source>
        <translation>Errors of the adapter while receiving: %1</translation>
    </message>
    <message>
        <source>Errors %1</source>
        <translation>Errors %1</translation>
    </message>
    <message>
        <source>Since the table was last cleared:</source>
        <translation>Since the table was last cleared:</translation>
    </message>
</context>
<context>
    <name>GUI_CanGateWay</name>
    <message>
        <source>Gateway filtering rule</source>
        <translation>Gateway filtering rule</translation>
    </message>
    <message>
        <source>ID:  0x</source>
        <translation>ID:  0x</translation>
    </message>
    <message>
        <source>Identifier in hexadecimal</source>
        <translation>Identifier in hexadecimal</translation>
    </message>
    <message>
        <source>Frame type</source>
        <translation>Frame type</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>Extend</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>Forwarded identifiers</source>
        <translation>Forwarded identifiers</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancle</source>
        <translation>Cancle</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Maximum frame count 64!</source>
        <translation>Maximum frame count 64!</translation>
    </message>
    <message>
        <source>The ID already exists in the list!</source>
        <translation>The ID already exists in the list!</translation>
    </message>
    <message>
        <source>Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: 0x0-0x1FFFFFFF</source>
        <translation>Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: 0x0-0x1FFFFFFF</translation>
    </message>
</context>
<context>
    <name>GUI_CanSendFile</name>
    <message>
        <source>File name</source>
        <translation>File name</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Browse</translation>
    </message>
    <message>
        <source>File type</source>
        <translation>File type</translation>
    </message>
    <message>
        <source>Sending parameter</source>
        <translation>Sending parameter</translation>
    </message>
    <message>
        <source>File type:</source>
        <translation>File type:</translation>
    </message>
    <message>
        <source>Frame ID</source>
        <translation>Frame ID</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>Type:</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>Count:</source>
        <translation>Count:</translation>
    </message>
    <message>
        <source>Interval:</source>
        <translation>Interval:</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progress</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Send</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>Extend</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>Open File</translation>
    </message>
    <message>
        <source>CANFD file not supported</source>
        <translation>CANFD file not supported</translation>
    </message>
    <message>
        <source>File read failure</source>
        <translation>File read failure</translation>
    </message>
</context>
<context>
    <name>GUI_CanView</name>
    <message>
        <source>ToolBar</source>
        <translation>ToolBar</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Connect</translation>
    </message>
    <message>
        <source>Connect to the device</source>
        <translation>Connect to the device</translation>
    </message>
    <message>
        <source>Open device</source>
        <translation>Open device</translation>
    </message>
    <message>
        <source>Close device</source>
        <translation>Close device</translation>
    </message>
    <message>
        <source>To begin: &quot;%1&quot; &gt; &quot;%2&quot;</source>
        <translation>To begin: &quot;%1&quot; &gt; &quot;%2&quot;</translation>
    </message>
    <message>
        <source>About</source>
        <translation>About</translation>
    </message>
    <message>
        <source>Software information</source>
        <translation>Software information</translation>
    </message>
    <message>
        <source>Device information</source>
        <translation>Device information</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>Chinese</source>
        <translation>Chinese</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>The current language has changed and takes effect after the restart.</source>
        <translation>The current language has changed and takes effect after the restart.</translation>
    </message>
    <message>
        <source>Do you wish to restart it now?</source>
        <translation>Do you wish to restart it now?</translation>
    </message>
    <message>
        <source>The upgrade program is still running. It will run on, but how it ends will not be shown. Do not unplug the adapter meanwhile.</source>
        <translation>The upgrade program is still running. It will run on, but how it ends will not be shown. Do not unplug the adapter meanwhile.</translation>
    </message>
    <message>
        <source>Do you wish to end this program now?</source>
        <translation>Do you wish to end this program now?</translation>
    </message>
    <message>
        <source>Devices is open</source>
        <translation>Devices is open</translation>
    </message>
    <message>
        <source>No devices!!!</source>
        <translation>No devices!!!</translation>
    </message>
    <message>
        <source>Device turned off</source>
        <translation>Device turned off</translation>
    </message>
    <message>
        <source>New firmware version detected,</source>
        <translation>New firmware version detected,</translation>
    </message>
    <message>
        <source>Do you want to go update it now?</source>
        <translation>Do you want to go update it now?</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>Channel</translation>
    </message>
    <message>
        <source>The language could not be stored. Check that &quot;Init.ini&quot; beside the program, or your configuration folder, can be written.</source>
        <translation>The language could not be stored. Check that &quot;Init.ini&quot; beside the program, or your configuration folder, can be written.</translation>
    </message>
</context>
<context>
    <name>AdapterProblem</name>
    <message>
        <source>The adapter library %1 was not found.
Put it beside the program and start the program again.</source>
        <translation>The adapter library %1 was not found.
Put it beside the program and start the program again.</translation>
    </message>
    <message>
        <source>The adapter library %1 is made for another kind of processor; this program needs the %2-bit one.
Put the right library beside the program and start it again.</source>
        <translation>The adapter library %1 is made for another kind of processor; this program needs the %2-bit one.
Put the right library beside the program and start it again.</translation>
    </message>
    <message>
        <source>The adapter library %1 could not be loaded:
%2</source>
        <translation>The adapter library %1 could not be loaded:
%2</translation>
    </message>
    <message>
        <source>The adapter library %1 is too old: it lacks %2.
Install the adapter's current library.</source>
        <translation>The adapter library %1 is too old: it lacks %2.
Install the adapter's current library.</translation>
    </message>
    <message>
        <source>Device %1 could not be opened.
Check that it is plugged in and not used by another program.</source>
        <translation>Device %1 could not be opened.
Check that it is plugged in and not used by another program.</translation>
    </message>
    <message>
        <source>Device %1 does not offer CAN FD.
Open it without a CAN FD bit rate.</source>
        <translation>Device %1 does not offer CAN FD.
Open it without a CAN FD bit rate.</translation>
    </message>
    <message>
        <source>Device %1, channel %2 is open already.</source>
        <translation>Device %1, channel %2 is open already.</translation>
    </message>
    <message>
        <source>Device %1 refused to open channel %2.
Check the bit rate and the other parameters.</source>
        <translation>Device %1 refused to open channel %2.
Check the bit rate and the other parameters.</translation>
    </message>
    <message>
        <source>Device %1, channel %2 could not be opened.</source>
        <translation>Device %1, channel %2 could not be opened.</translation>
    </message>
    <message>
        <source>Device %1 does not answer any more. Was it unplugged?
What was received stays in its tabs and can be saved. To go on, close these tabs, plug it in and open the channels again.</source>
        <translation>Device %1 does not answer any more. Was it unplugged?
What was received stays in its tabs and can be saved. To go on, close these tabs, plug it in and open the channels again.</translation>
    </message>
    <message>
        <source>The adapter library %1 is a %2-bit one; this is the %3-bit program.
Put the adapter's %3-bit library beside the program and start it again.</source>
        <translation>The adapter library %1 is a %2-bit one; this is the %3-bit program.
Put the adapter's %3-bit library beside the program and start it again.</translation>
    </message>
    <message>
        <source>The adapter library %1 is a %2-bit one; this is the %3-bit program.
Install the program that fits: the download with "%4" in its name. Or put the adapter's %3-bit library beside this program and start it again.</source>
        <translation>The adapter library %1 is a %2-bit one; this is the %3-bit program.
Install the program that fits: the download with "%4" in its name. Or put the adapter's %3-bit library beside this program and start it again.</translation>
    </message>
    <message>
        <source>This computer has no CAN interface for it.</source>
        <translation>This computer has no CAN interface for it.</translation>
    </message>
    <message>
        <source>Its interface runs at another bit rate, which this program may not change.</source>
        <translation>Its interface runs at another bit rate, which this program may not change.</translation>
    </message>
    <message>
        <source>Its interface is in another mode, which this program may not change.</source>
        <translation>Its interface is in another mode, which this program may not change.</translation>
    </message>
    <message>
        <source>Its interface is down, and this program may not bring it up.</source>
        <translation>Its interface is down, and this program may not bring it up.</translation>
    </message>
    <message>
        <source>Its interface has no CAN FD.</source>
        <translation>Its interface has no CAN FD.</translation>
    </message>
    <message>
        <source>This bit rate cannot be set.</source>
        <translation>This bit rate cannot be set.</translation>
    </message>
    <message>
        <source>This adapter has no LIN.</source>
        <translation>This adapter has no LIN.</translation>
    </message>
    <message>
        <source>The system refused it.</source>
        <translation>The system refused it.</translation>
    </message>
    <message>
        <source>An administrator can help with this command:
%1</source>
        <translation>An administrator can help with this command:
%1</translation>
    </message>
    <message>
        <source>Device %1 could not open channel %2.</source>
        <translation>Device %1 could not open channel %2.</translation>
    </message>
</context>
<context>
    <name>GUI_DeviceInfo</name>
    <message>
        <source>About Device</source>
        <translation>About Device</translation>
    </message>
    <message>
        <source>Product SN：</source>
        <translation>Product SN：</translation>
    </message>
    <message>
        <source>Firmware version:</source>
        <translation>Firmware version:</translation>
    </message>
    <message>
        <source>Check updates</source>
        <translation>Check updates</translation>
    </message>
    <message>
        <source>Updating...</source>
        <translation>Updating...</translation>
    </message>
    <message>
        <source>Migration</source>
        <translation>Migration</translation>
    </message>
    <message>
        <source>New version detected</source>
        <translation>New version detected</translation>
    </message>
    <message>
        <source>Do you wish to update it now?</source>
        <translation>Do you wish to update it now?</translation>
    </message>
    <message>
        <source>The upgrade program has crashed.</source>
        <translation>The upgrade program has crashed.</translation>
    </message>
    <message>
        <source>The upgrade program cannot be started.</source>
        <translation>The upgrade program cannot be started.</translation>
    </message>
    <message>
        <source>No device was found. Connect it and open this window again.</source>
        <translation>No device was found. Connect it and open this window again.</translation>
    </message>
    <message>
        <source>No firmware is published for this device.</source>
        <translation>No firmware is published for this device.</translation>
    </message>
    <message>
        <source>Network connection exception!</source>
        <translation>Network connection exception!</translation>
    </message>
    <message>
        <source>Server request failed!</source>
        <translation>Server request failed!</translation>
    </message>
    <message>
        <source>Congratulations, This is the latest version!</source>
        <translation>Congratulations, This is the latest version!</translation>
    </message>
    <message>
        <source>The firmware cannot be downloaded: its address names no file.</source>
        <translation>The firmware cannot be downloaded: its address names no file.</translation>
    </message>
    <message>
        <source>The firmware could not be downloaded.</source>
        <translation>The firmware could not be downloaded.</translation>
    </message>
    <message>
        <source>The firmware was refused and not installed.</source>
        <translation>The firmware was refused and not installed.</translation>
    </message>
    <message>
        <source>It is older than V%1, which the device has.</source>
        <translation>It is older than V%1, which the device has.</translation>
    </message>
</context>
<context>
    <name>GUI_SoftwareInfo</name>
    <message>
        <source>About Software</source>
        <translation>About Software</translation>
    </message>
    <message>
        <source>Software name:</source>
        <translation>Software name:</translation>
    </message>
    <message>
        <source>Software version:</source>
        <translation>Software version:</translation>
    </message>
    <message>
        <source>Technical support:</source>
        <translation>Technical support:</translation>
    </message>
    <message>
        <source>Check updates</source>
        <translation>Check updates</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Checking...</translation>
    </message>
</context>
<context>
    <name>GUI_LINDevice</name>
    <message>
        <source>List mode</source>
        <translation>List mode</translation>
    </message>
    <message>
        <source>Monitor mode</source>
        <translation>Monitor mode</translation>
    </message>
    <message>
        <source>Developer mode</source>
        <translation>Developer mode</translation>
    </message>
    <message>
        <source>LIN Baudrate:</source>
        <translation>LIN Baudrate:</translation>
    </message>
    <message>
        <source>Checksum:</source>
        <translation>Checksum:</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Set</translation>
    </message>
    <message>
        <source>Standard checksum</source>
        <translation>Standard checksum</translation>
    </message>
    <message>
        <source>Enhanced checksum</source>
        <translation>Enhanced checksum</translation>
    </message>
    <message>
        <source>Switchover failure</source>
        <translation>Switchover failure</translation>
    </message>
    <message>
        <source>Switchover successful</source>
        <translation>Switchover successful</translation>
    </message>
    <message>
        <source>Baudrate in force: %1</source>
        <translation>Baudrate in force: %1</translation>
    </message>
</context>
<context>
    <name>GUI_LINModeList</name>
    <message>
        <source>Parameter setting</source>
        <translation>Parameter setting</translation>
    </message>
    <message>
        <source>Frame count:</source>
        <translation>Frame count:</translation>
    </message>
    <message>
        <source>Display mode:</source>
        <translation>Display mode:</translation>
    </message>
    <message>
        <source>Dynamic display</source>
        <translation>Dynamic display</translation>
    </message>
    <message>
        <source>Static display</source>
        <translation>Static display</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Select</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Direction</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>Interval</source>
        <translation>Interval</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Send</translation>
    </message>
    <message>
        <source>Revice</source>
        <translation>Revice</translation>
    </message>
    <message>
        <source>The ID is out of range, Error line</source>
        <translation>The ID is out of range, Error line</translation>
    </message>
    <message>
        <source>Valid ID range: 0x0-0x3F</source>
        <translation>Valid ID range: 0x0-0x3F</translation>
    </message>
    <message>
        <source>The data length is out of range, Error line</source>
        <translation>The data length is out of range, Error line</translation>
    </message>
    <message>
        <source>The interval is out of range, Error line</source>
        <translation>The interval is out of range, Error line</translation>
    </message>
    <message>
        <source>The data is not valid, Error line</source>
        <translation>The data is not valid, Error line</translation>
    </message>
</context>
<context>
    <name>LINFrameModel</name>
    <message>
        <source>System Time</source>
        <translation>System Time</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Direction</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Check</translation>
    </message>
    <message>
        <source>State</source>
        <translation>State</translation>
    </message>
    <message>
        <source>Revice</source>
        <translation>Revice</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Send</translation>
    </message>
    <message>
        <source>Error state</source>
        <translation>Error state</translation>
    </message>
    <message>
        <source>Error checksum</source>
        <translation>Error checksum</translation>
    </message>
</context>
<context>
    <name>LINModePage</name>
    <message>
        <source>Communication error</source>
        <translation>Communication error</translation>
    </message>
</context>
<context>
    <name>LINTablePage</name>
    <message>
        <source>Csv File(*.csv)</source>
        <translation>Csv File(*.csv)</translation>
    </message>
    <message>
        <source>Save successfully</source>
        <translation>Save successfully</translation>
    </message>
    <message>
        <source>Save failure</source>
        <translation>Save failure</translation>
    </message>
</context>
<context>
    <name>MigrationWidget</name>
    <message>
        <source>Migration</source>
        <translation>Migration</translation>
    </message>
    <message>
        <source>Result:</source>
        <translation>Result:</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>Device migration operation description</source>
        <translation>Device migration operation description</translation>
    </message>
    <message>
        <source>Firmware version less than</source>
        <translation>Firmware version less than</translation>
    </message>
    <message>
        <source>Do not power off during the upgrade</source>
        <translation>Do not power off during the upgrade</translation>
    </message>
    <message>
        <source>If the operation fails, remove and reinsert the device and try again</source>
        <translation>If the operation fails, remove and reinsert the device and try again</translation>
    </message>
</context>
<context>
    <name>PlotCurveList</name>
    <message>
        <source>Curves</source>
        <translation>Curves</translation>
    </message>
    <message>
        <source>Curve</source>
        <translation>Curve</translation>
    </message>
    <message>
        <source>At cursor</source>
        <translation>At cursor</translation>
    </message>
    <message>
        <source>At second</source>
        <translation>At second</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Difference</translation>
    </message>
    <message>
        <source>Pane</source>
        <translation>Pane</translation>
    </message>
    <message>
        <source>Color...</source>
        <translation>Color...</translation>
    </message>
    <message>
        <source>To the pane above</source>
        <translation>To the pane above</translation>
    </message>
    <message>
        <source>To the pane below</source>
        <translation>To the pane below</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
</context>
<context>
    <name>PlotExport</name>
    <message>
        <source>It was stopped.</source>
        <translation>It was stopped.</translation>
    </message>
</context>
<context>
    <name>PlotExpression</name>
    <message>
        <source>A step is from 1ns to a day: 100ms.</source>
        <translation>A step is from 1ns to a day: 100ms.</translation>
    </message>
    <message>
        <source>A step of time, such as 100ms, or “of” comes here.</source>
        <translation>A step of time, such as 100ms, or “of” comes here.</translation>
    </message>
</context>
<context>
    <name>PlotPane</name>
    <message>
        <source>Plot</source>
        <translation>Plot</translation>
    </message>
</context>
<context>
    <name>PlotPanel</name>
    <message>
        <source>The plots are in a window of their own.</source>
        <translation>The plots are in a window of their own.</translation>
    </message>
    <message>
        <source>These are as many curves as there can be.</source>
        <translation>These are as many curves as there can be.</translation>
    </message>
    <message>
        <source>Cursor: %1</source>
        <translation>Cursor: %1</translation>
    </message>
    <message>
        <source>Second: %1</source>
        <translation>Second: %1</translation>
    </message>
    <message>
        <source>Difference: %1</source>
        <translation>Difference: %1</translation>
    </message>
    <message>
        <source>Save the plots</source>
        <translation>Save the plots</translation>
    </message>
    <message>
        <source>Picture (*.png)</source>
        <translation>Picture (*.png)</translation>
    </message>
    <message>
        <source>Document (*.pdf)</source>
        <translation>Document (*.pdf)</translation>
    </message>
    <message>
        <source>Table (*.csv)</source>
        <translation>Table (*.csv)</translation>
    </message>
    <message>
        <source>Saving %1</source>
        <translation>Saving %1</translation>
    </message>
    <message>
        <source>%1 was saved.</source>
        <translation>%1 was saved.</translation>
    </message>
    <message>
        <source>%1 was not saved: %2</source>
        <translation>%1 was not saved: %2</translation>
    </message>
    <message>
        <source>Plot</source>
        <translation>Plot</translation>
    </message>
    <message>
        <source>Frames a second</source>
        <translation>Frames a second</translation>
    </message>
    <message>
        <source>Byte %1</source>
        <translation>Byte %1</translation>
    </message>
    <message>
        <source>Plots</source>
        <translation>Plots</translation>
    </message>
    <message>
        <source>The curves cannot be kept for the next time.</source>
        <translation>The curves cannot be kept for the next time.</translation>
    </message>
</context>
<context>
    <name>PlottedCurves</name>
    <message>
        <source>Memory is full; not all of it is drawn.</source>
        <translation>Memory is full; not all of it is drawn.</translation>
    </message>
</context>
<context>
    <name>PlotTools</name>
    <message>
        <source>Back</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>The view before (Alt+Left)</source>
        <translation>The view before (Alt+Left)</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Forward</translation>
    </message>
    <message>
        <source>The view behind (Alt+Right)</source>
        <translation>The view behind (Alt+Right)</translation>
    </message>
    <message>
        <source>Zooms in (+, or the wheel)</source>
        <translation>Zooms in (+, or the wheel)</translation>
    </message>
    <message>
        <source>Zooms out (-, or the wheel)</source>
        <translation>Zooms out (-, or the wheel)</translation>
    </message>
    <message>
        <source>Whole capture</source>
        <translation>Whole capture</translation>
    </message>
    <message>
        <source>Shows the whole capture (W)</source>
        <translation>Shows the whole capture (W)</translation>
    </message>
    <message>
        <source>Fit values</source>
        <translation>Fit values</translation>
    </message>
    <message>
        <source>Scales of values follow what is shown (A). Ctrl+wheel, or the wheel over a scale, makes them fixed.</source>
        <translation>Scales of values follow what is shown (A). Ctrl+wheel, or the wheel over a scale, makes them fixed.</translation>
    </message>
    <message>
        <source>Clock</source>
        <translation>Clock</translation>
    </message>
    <message>
        <source>Times as the clock shows them instead of since the start</source>
        <translation>Times as the clock shows them instead of since the start</translation>
    </message>
    <message>
        <source>Own window</source>
        <translation>Own window</translation>
    </message>
    <message>
        <source>Takes the plots out into a window of their own</source>
        <translation>Takes the plots out into a window of their own</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>What is &amp;shown...</source>
        <translation>What is &amp;shown...</translation>
    </message>
    <message>
        <source>The &amp;whole capture...</source>
        <translation>The &amp;whole capture...</translation>
    </message>
</context>
<context>
    <name>TimeTicks</name>
    <message>
        <source>%1 d</source>
        <translation>%1 d</translation>
    </message>
</context>
<context>
    <name>UpgradeProcess</name>
    <message>
        <source>Device upgrade succeeded</source>
        <translation>Device upgrade succeeded</translation>
    </message>
    <message>
        <source>File cannot be accessed</source>
        <translation>File cannot be accessed</translation>
    </message>
    <message>
        <source>Hardware version does not match</source>
        <translation>Hardware version does not match</translation>
    </message>
    <message>
        <source>No old device was found</source>
        <translation>No old device was found</translation>
    </message>
    <message>
        <source>Enter BootLoader failed</source>
        <translation>Enter BootLoader failed</translation>
    </message>
    <message>
        <source>Version read failed</source>
        <translation>Version read failed</translation>
    </message>
    <message>
        <source>Flash erasing failed</source>
        <translation>Flash erasing failed</translation>
    </message>
    <message>
        <source>Data send failed</source>
        <translation>Data send failed</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Unknown error</translation>
    </message>
    <message>
        <source>The upgrade program is still running. Wait until it has ended, and do not unplug the adapter meanwhile.</source>
        <translation>The upgrade program is still running. Wait until it has ended, and do not unplug the adapter meanwhile.</translation>
    </message>
</context>
<context>
    <name>PopupWidget</name>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>ValueEdit</name>
    <message>
        <source>Plot, such as  data[0] &lt;&lt; 8 | data[1] of id == 0x123</source>
        <translation>Plot, such as  data[0] &lt;&lt; 8 | data[1] of id == 0x123</translation>
    </message>
    <message>
        <source>A signal, a number of each frame, or “rate”; behind the word “of” a filter for the frames:
Speed
data[0] &lt;&lt; 8 | data[1] of id == 0x123
rate of error
rate 100ms of id == 0x123 and dir == tx</source>
        <translation>A signal, a number of each frame, or “rate”; behind the word “of” a filter for the frames:
Speed
data[0] &lt;&lt; 8 | data[1] of id == 0x123
rate of error
rate 100ms of id == 0x123 and dir == tx</translation>
    </message>
</context>
<context>
    <name>WidgetDeviceBase</name>
    <message>
        <source>Save File</source>
        <translation>Save File</translation>
    </message>
</context>
<context>
    <name>CMessageBox</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>SaveAll</source>
        <translation>SaveAll</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>YesToAll</source>
        <translation>YesToAll</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>NoToAll</source>
        <translation>NoToAll</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abort</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Retry</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignore</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Discard</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>RestoreDefaults</source>
        <translation>RestoreDefaults</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Question</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Success</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
<context>
    <name>CNotice</name>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Question</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Success</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
<context>
    <name>CHexEditView</name>
    <message>
        <source>Edit data</source>
        <translation>Edit data</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Redo</translation>
    </message>
    <message>
        <source>Byte</source>
        <translation>Byte</translation>
    </message>
    <message>
        <source>Bytes per line</source>
        <translation>Bytes per line</translation>
    </message>
    <message>
        <source>Data bytes</source>
        <translation>Data bytes</translation>
    </message>
</context>
<context>
    <name>CHexLineEdit</name>
    <message>
        <source>Data bytes in hexadecimal</source>
        <translation>Data bytes in hexadecimal</translation>
    </message>
    <message>
        <source>Edit data</source>
        <translation>Edit data</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Redo</translation>
    </message>
</context>
<context>
    <name>CaptureFormat</name>
    <message>
        <source>CAN File(*.can)</source>
        <translation>CAN File(*.can)</translation>
    </message>
    <message>
        <source>CAN(*.can)</source>
        <translation>CAN(*.can)</translation>
    </message>
    <message>
        <source>CANFD File(*.canfd)</source>
        <translation>CANFD File(*.canfd)</translation>
    </message>
    <message>
        <source>CANFD(*.canfd)</source>
        <translation>CANFD(*.canfd)</translation>
    </message>
    <message>
        <source>Csv File(*.csv)</source>
        <translation>Csv File(*.csv)</translation>
    </message>
    <message>
        <source>CSV File(*.csv)</source>
        <translation>CSV File(*.csv)</translation>
    </message>
    <message>
        <source>Csv(*.csv)</source>
        <translation>Csv(*.csv)</translation>
    </message>
    <message>
        <source>Text File(*.txt)</source>
        <translation>Text File(*.txt)</translation>
    </message>
    <message>
        <source>Text(*.txt)</source>
        <translation>Text(*.txt)</translation>
    </message>
</context>
<context>
    <name>GUI_CanAdvancedOpearation</name>
    <message>
        <source>All</source>
        <translation>All</translation>
    </message>
    <message>
        <source>Invert</source>
        <translation>Invert</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Send list</source>
        <translation>Send list</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Frame count</source>
        <translation>Frame count</translation>
    </message>
    <message>
        <source>Send count</source>
        <translation>Send count</translation>
    </message>
    <message>
        <source>Interval</source>
        <translation>Interval</translation>
    </message>
    <message>
        <source>Send mode</source>
        <translation>Send mode</translation>
    </message>
    <message>
        <source>Repeat</source>
        <translation>Repeat</translation>
    </message>
    <message>
        <source>Print to table</source>
        <translation>Print to table</translation>
    </message>
    <message>
        <source>List send</source>
        <translation>List send</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Parallel send mode</source>
        <translation>Parallel send mode</translation>
    </message>
    <message>
        <source>Order send mode</source>
        <translation>Order send mode</translation>
    </message>
    <message>
        <source>The send list is empty</source>
        <translation>The send list is empty</translation>
    </message>
    <message>
        <source>Please check the items you want to send</source>
        <translation>Please check the items you want to send</translation>
    </message>
    <message>
        <source>Please select the delete item first</source>
        <translation>Please select the delete item first</translation>
    </message>
    <message>
        <source>Not available in this version</source>
        <translation>Not available in this version</translation>
    </message>
</context>
<context>
    <name>WidgetDelegateCAN</name>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>Extend</translation>
    </message>
</context>
<context>
    <name>GUI_CanScanBaudrate</name>
    <message>
        <source>Auto scan baudrate</source>
        <translation>Auto scan baudrate</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Scan</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>Baudrate</source>
        <translation>Baudrate</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>Channel</translation>
    </message>
    <message>
        <source>Effective baudrate</source>
        <translation>Effective baudrate</translation>
    </message>
    <message>
        <source>Invalid baudrate</source>
        <translation>Invalid baudrate</translation>
    </message>
    <message>
        <source>No devices</source>
        <translation>No devices</translation>
    </message>
    <message>
        <source>Another scan is running</source>
        <translation>Another scan is running</translation>
    </message>
    <message>
        <source>Both CAN channels are in use</source>
        <translation>Both CAN channels are in use</translation>
    </message>
    <message>
        <source>Device open failed</source>
        <translation>Device open failed</translation>
    </message>
    <message>
        <source>The scan was interrupted</source>
        <translation>The scan was interrupted</translation>
    </message>
    <message>
        <source>CANFD baudrate: %1</source>
        <translation>CANFD baudrate: %1</translation>
    </message>
    <message>
        <source>%1, CANFD %2</source>
        <translation>%1, CANFD %2</translation>
    </message>
    <message>
        <source>Trying %1</source>
        <translation>Trying %1</translation>
    </message>
    <message>
        <source>No baudrate found</source>
        <translation>No baudrate found</translation>
    </message>
    <message>
        <source>Not all baudrates tried, none found</source>
        <translation>Not all baudrates tried, none found</translation>
    </message>
    <message>
        <source>Found: %1</source>
        <translation>Found: %1</translation>
    </message>
</context>
<context>
    <name>GUI_CanDeviceParam</name>
    <message>
        <source>Parameter validation</source>
        <translation>Parameter validation</translation>
    </message>
    <message>
        <source>CAN parameters</source>
        <translation>CAN parameters</translation>
    </message>
    <message>
        <source>LIN parameters</source>
        <translation>LIN parameters</translation>
    </message>
    <message>
        <source>Device index:</source>
        <translation>Device index:</translation>
    </message>
    <message>
        <source>CAN channal:</source>
        <translation>CAN channal:</translation>
    </message>
    <message>
        <source>LIN channal:</source>
        <translation>LIN channal:</translation>
    </message>
    <message>
        <source>Acc code:</source>
        <translation>Acc code:</translation>
    </message>
    <message>
        <source>Acc mask:</source>
        <translation>Acc mask:</translation>
    </message>
    <message>
        <source>Filter mode:</source>
        <translation>Filter mode:</translation>
    </message>
    <message>
        <source> BTR0/1:</source>
        <translation> BTR0/1:</translation>
    </message>
    <message>
        <source>(Hex)</source>
        <translation>(Hex)</translation>
    </message>
    <message>
        <source>Operating mode:</source>
        <translation>Operating mode:</translation>
    </message>
    <message>
        <source>CAN baudrate:</source>
        <translation>CAN baudrate:</translation>
    </message>
    <message>
        <source>CANFD baudrate:</source>
        <translation>CANFD baudrate:</translation>
    </message>
    <message>
        <source>Filter configuration tool</source>
        <translation>Filter configuration tool</translation>
    </message>
    <message>
        <source>Open all CAN channel</source>
        <translation>Open all CAN channel</translation>
    </message>
    <message>
        <source>Scan baudrate</source>
        <translation>Scan baudrate</translation>
    </message>
    <message>
        <source>Checksum:</source>
        <translation>Checksum:</translation>
    </message>
    <message>
        <source>Baudrate:</source>
        <translation>Baudrate:</translation>
    </message>
    <message>
        <source>LIN Setup</source>
        <translation>LIN Setup</translation>
    </message>
    <message>
        <source>LIN setup</source>
        <translation>LIN setup</translation>
    </message>
    <message>
        <source>CAN setup</source>
        <translation>CAN setup</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Custom</translation>
    </message>
    <message>
        <source>None</source>
        <translation>None</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Listen</source>
        <translation>Listen</translation>
    </message>
    <message>
        <source>Receive all</source>
        <translation>Receive all</translation>
    </message>
    <message>
        <source>Standard checksum</source>
        <translation>Standard checksum</translation>
    </message>
    <message>
        <source>Enhanced checksum</source>
        <translation>Enhanced checksum</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>Channel</translation>
    </message>
    <message>
        <source>BTR0</source>
        <translation>BTR0</translation>
    </message>
    <message>
        <source>BTR1</source>
        <translation>BTR1</translation>
    </message>
    <message>
        <source>No adapter found. Connect one and open this dialog again.</source>
        <translation>No adapter found. Connect one and open this dialog again.</translation>
    </message>
    <message>
        <source>All CAN channels are open already.</source>
        <translation>All CAN channels are open already.</translation>
    </message>
    <message>
        <source>All LIN channels are open already.</source>
        <translation>All LIN channels are open already.</translation>
    </message>
</context>
<context>
    <name>GUI_CanFilterTool</name>
    <message>
        <source>Filter configuration tool</source>
        <translation>Filter configuration tool</translation>
    </message>
    <message>
        <source>Identifiers to receive</source>
        <translation>Identifiers to receive</translation>
    </message>
    <message>
        <source>Frame type</source>
        <translation>Frame type</translation>
    </message>
    <message>
        <source>From:</source>
        <translation>From:</translation>
    </message>
    <message>
        <source>To (optional):</source>
        <translation>To (optional):</translation>
    </message>
    <message>
        <source>(Hex)</source>
        <translation>(Hex)</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>From</source>
        <translation>From</translation>
    </message>
    <message>
        <source>To</source>
        <translation>To</translation>
    </message>
    <message>
        <source>Acceptance filter</source>
        <translation>Acceptance filter</translation>
    </message>
    <message>
        <source>Acc code:</source>
        <translation>Acc code:</translation>
    </message>
    <message>
        <source>Acc mask:</source>
        <translation>Acc mask:</translation>
    </message>
    <message>
        <source>Others that pass:</source>
        <translation>Others that pass:</translation>
    </message>
    <message>
        <source>Test an identifier</source>
        <translation>Test an identifier</translation>
    </message>
    <message>
        <source>Identifier</source>
        <translation>Identifier</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>Extend</translation>
    </message>
    <message>
        <source>Standard: %1, extended: %2</source>
        <translation>Standard: %1, extended: %2</translation>
    </message>
    <message>
        <source>An empty list lets everything pass.</source>
        <translation>An empty list lets everything pass.</translation>
    </message>
    <message>
        <source>Such standard frames pass or not, depending on their data.</source>
        <translation>Such standard frames pass or not, depending on their data.</translation>
    </message>
    <message>
        <source>Extended identifiers: 0 to 1FFFFFFF, hexadecimal</source>
        <translation>Extended identifiers: 0 to 1FFFFFFF, hexadecimal</translation>
    </message>
    <message>
        <source>Standard identifiers: 0 to 7FF, hexadecimal</source>
        <translation>Standard identifiers: 0 to 7FF, hexadecimal</translation>
    </message>
    <message>
        <source>The first identifier of the range is above the last one</source>
        <translation>The first identifier of the range is above the last one</translation>
    </message>
    <message>
        <source>Already in the list</source>
        <translation>Already in the list</translation>
    </message>
    <message>
        <source>The list is full: %1 entries</source>
        <translation>The list is full: %1 entries</translation>
    </message>
    <message>
        <source>Does not pass</source>
        <translation>Does not pass</translation>
    </message>
    <message>
        <source>Passes or not, depending on its data</source>
        <translation>Passes or not, depending on its data</translation>
    </message>
    <message>
        <source>Passes</source>
        <translation>Passes</translation>
    </message>
</context>
<context>
    <name>GUI_LINModeMonitor</name>
    <message>
        <source>Monitor Parameter Settings</source>
        <translation>Monitor Parameter Settings</translation>
    </message>
    <message>
        <source>Monitor mode:</source>
        <translation>Monitor mode:</translation>
    </message>
    <message>
        <source>Display mode:</source>
        <translation>Display mode:</translation>
    </message>
    <message>
        <source>Fixed ID Settings</source>
        <translation>Fixed ID Settings</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>Fixed ID</source>
        <translation>Fixed ID</translation>
    </message>
    <message>
        <source>Bus monitoring</source>
        <translation>Bus monitoring</translation>
    </message>
    <message>
        <source>Dynamic display</source>
        <translation>Dynamic display</translation>
    </message>
    <message>
        <source>Static display</source>
        <translation>Static display</translation>
    </message>
</context>
<context>
    <name>GUI_LINModeDeveloper</name>
    <message>
        <source>Communication parameter area</source>
        <translation>Communication parameter area</translation>
    </message>
    <message>
        <source>Length:</source>
        <translation>Length:</translation>
    </message>
    <message>
        <source>Data:</source>
        <translation>Data:</translation>
    </message>
    <message>
        <source>Calculation parameter</source>
        <translation>Calculation parameter</translation>
    </message>
    <message>
        <source>Checksum:</source>
        <translation>Checksum:</translation>
    </message>
    <message>
        <source>Automatic slave recognition</source>
        <translation>Automatic slave recognition</translation>
    </message>
    <message>
        <source>Timed receiving interval(ms):</source>
        <translation>Timed receiving interval(ms):</translation>
    </message>
    <message>
        <source>Playback count:</source>
        <translation>Playback count:</translation>
    </message>
    <message>
        <source>Mask send ID</source>
        <translation>Mask send ID</translation>
    </message>
    <message>
        <source>Import data</source>
        <translation>Import data</translation>
    </message>
    <message>
        <source>Send status:</source>
        <translation>Send status:</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Cycle</source>
        <translation>Cycle</translation>
    </message>
    <message>
        <source>The data is not valid</source>
        <translation>The data is not valid</translation>
    </message>
    <message>
        <source>Open CSV File</source>
        <translation>Open CSV File</translation>
    </message>
    <message>
        <source>CSV files (*.csv)</source>
        <translation>CSV files (*.csv)</translation>
    </message>
    <message>
        <source>Please import data first</source>
        <translation>Please import data first</translation>
    </message>
    <message>
        <source>Import failure</source>
        <translation>Import failure</translation>
    </message>
</context>
<context>
    <name>WindowMessages</name>
    <message>
        <source>Tips</source>
        <translation>Tips</translation>
    </message>
    <message>
        <source>Further messages not shown: %1</source>
        <translation>Further messages not shown: %1</translation>
    </message>
</context>
<context>
    <name>FileDownload</name>
    <message>
        <source>The address of the file cannot be used.</source>
        <translation>The address of the file cannot be used.</translation>
    </message>
    <message>
        <source>The file on the server is empty.</source>
        <translation>The file on the server is empty.</translation>
    </message>
    <message>
        <source>The file on the server is too large.</source>
        <translation>The file on the server is too large.</translation>
    </message>
    <message>
        <source>The connection ended before the file was complete.</source>
        <translation>The connection ended before the file was complete.</translation>
    </message>
    <message>
        <source>The server does not answer any more.</source>
        <translation>The server does not answer any more.</translation>
    </message>
    <message>
        <source>The file cannot be written: %1</source>
        <translation>The file cannot be written: %1</translation>
    </message>
    <message>
        <source>The file on the server is not the one that was signed.</source>
        <translation>The file on the server is not the one that was signed.</translation>
    </message>
</context>
<context>
    <name>GUI_Update</name>
    <message>
        <source>This is the latest version</source>
        <translation>This is the latest version</translation>
    </message>
    <message>
        <source>Check upgrade failure</source>
        <translation>Check upgrade failure</translation>
    </message>
    <message>
        <source>New version detected</source>
        <translation>New version detected</translation>
    </message>
    <message>
        <source>You are advised to check that the network connection is normal and try again</source>
        <translation>You are advised to check that the network connection is normal and try again</translation>
    </message>
    <message>
        <source>You can choose to download the installation package from the official website</source>
        <translation>You can choose to download the installation package from the official website</translation>
    </message>
    <message>
        <source>About this version</source>
        <translation>About this version</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
    </message>
    <message>
        <source>upgrade</source>
        <translation>upgrade</translation>
    </message>
    <message>
        <source>Exit upgrade</source>
        <translation>Exit upgrade</translation>
    </message>
</context>
<context>
    <name>SoftwareUpdate</name>
    <message>
        <source>Current version</source>
        <translation>Current version</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>Please wait</translation>
    </message>
    <message>
        <source>Downloading a new version of the program</source>
        <translation>Downloading a new version of the program</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>The new version could not be downloaded.</source>
        <translation>The new version could not be downloaded.</translation>
    </message>
    <message>
        <source>The program that installs the new version cannot be started. The new version lies in:</source>
        <translation>The program that installs the new version cannot be started. The new version lies in:</translation>
    </message>
    <message>
        <source>Tips</source>
        <translation>Tips</translation>
    </message>
    <message>
        <source>The new version was refused and not installed.</source>
        <translation>The new version was refused and not installed.</translation>
    </message>
</context>
<context>
    <name>SingleInstance</name>
    <message>
        <source>The system gives no shared memory.</source>
        <translation>The system gives no shared memory.</translation>
    </message>
    <message>
        <source>The lock file %1 cannot be written.</source>
        <translation>The lock file %1 cannot be written.</translation>
    </message>
    <message>
        <source>Check that the folder for temporary files exists and that you may write to it.</source>
        <translation>Check that the folder for temporary files exists and that you may write to it.</translation>
    </message>
    <message>
        <source>The lock file %1 stands in the way, and no running X9CAN holds it.</source>
        <translation>The lock file %1 stands in the way, and no running X9CAN holds it.</translation>
    </message>
    <message>
        <source>Remove it and start the program again.</source>
        <translation>Remove it and start the program again.</translation>
    </message>
    <message>
        <source>Tips</source>
        <translation>Tips</translation>
    </message>
</context>
<context>
    <name>SignedDownload</name>
    <message>
        <source>Its signature cannot be downloaded: %1</source>
        <translation>Its signature cannot be downloaded: %1</translation>
    </message>
    <message>
        <source>The key for updates that this program was built with cannot be used.</source>
        <translation>The key for updates that this program was built with cannot be used.</translation>
    </message>
    <message>
        <source>What the server sends as its signature is not one.</source>
        <translation>What the server sends as its signature is not one.</translation>
    </message>
    <message>
        <source>It was signed with another key.</source>
        <translation>It was signed with another key.</translation>
    </message>
    <message>
        <source>Its signature was changed or forged.</source>
        <translation>Its signature was changed or forged.</translation>
    </message>
</context>
<context>
    <name>OfferedPackage</name>
    <message>
        <source>Its signature is for something else: %1</source>
        <translation>Its signature is for something else: %1</translation>
    </message>
    <message>
        <source>It is version %1; what was offered is version %2.</source>
        <translation>It is version %1; what was offered is version %2.</translation>
    </message>
    <message>
        <source>It is version %1, which is not newer than this program, version %2.</source>
        <translation>It is version %1, which is not newer than this program, version %2.</translation>
    </message>
    <message>
        <source>It is the package for %1; this program needs the one for %2.</source>
        <translation>It is the package for %1; this program needs the one for %2.</translation>
    </message>
</context>
<context>
    <name>FindingTexts</name>
    <message>
        <source>no frame of a bus: skipped</source>
        <translation>no frame of a bus: skipped</translation>
    </message>
    <message>
        <source>damaged line: skipped</source>
        <translation>damaged line: skipped</translation>
    </message>
    <message>
        <source>fewer bytes than the length says: frame skipped</source>
        <translation>fewer bytes than the length says: frame skipped</translation>
    </message>
    <message>
        <source>damaged: skipped up to the next record</source>
        <translation>damaged: skipped up to the next record</translation>
    </message>
    <message>
        <source>the file ends within a record</source>
        <translation>the file ends within a record</translation>
    </message>
    <message>
        <source>damaged compressed data: the rest of the container skipped</source>
        <translation>damaged compressed data: the rest of the container skipped</translation>
    </message>
    <message>
        <source>unknown compression: container skipped</source>
        <translation>unknown compression: container skipped</translation>
    </message>
    <message>
        <source>container holds another number of bytes than it says</source>
        <translation>container holds another number of bytes than it says</translation>
    </message>
    <message>
        <source>request to send, no frame: skipped</source>
        <translation>request to send, no frame: skipped</translation>
    </message>
    <message>
        <source>kind of the error not written: this kind of file does not tell it</source>
        <translation>kind of the error not written: this kind of file does not tell it</translation>
    </message>
    <message>
        <source>data of a LIN frame with an error not written: this kind of file has none</source>
        <translation>data of a LIN frame with an error not written: this kind of file has none</translation>
    </message>
    <message>
        <source>length %1 is none of CAN FD: padded to %2</source>
        <translation>length %1 is none of CAN FD: padded to %2</translation>
    </message>
    <message>
        <source>the output is a pipe: the file&apos;s size, counts and end time are left out of its header</source>
        <translation>the output is a pipe: the file&apos;s size, counts and end time are left out of its header</translation>
    </message>
    <message>
        <source>the file&apos;s header is damaged</source>
        <translation>the file&apos;s header is damaged</translation>
    </message>
    <message>
        <source>unknown version of the format: read as the latest known</source>
        <translation>unknown version of the format: read as the latest known</translation>
    </message>
    <message>
        <source>time beyond the year 2262: left out</source>
        <translation>time beyond the year 2262: left out</translation>
    </message>
</context>
<context>
    <name>TimeOrigin</name>
    <message>
        <source>frame without a time: written with that of the one before</source>
        <translation>frame without a time: written with that of the one before</translation>
    </message>
    <message>
        <source>time beyond the year 2262: written with that of the frame before</source>
        <translation>time beyond the year 2262: written with that of the frame before</translation>
    </message>
    <message>
        <source>time before the capture&apos;s start: written as the start</source>
        <translation>time before the capture&apos;s start: written as the start</translation>
    </message>
</context>
<context>
    <name>CanFdFormat</name>
    <message>
        <source>the header is missing</source>
        <translation>the header is missing</translation>
    </message>
    <message>
        <source>%1 bytes that are no records</source>
        <translation>%1 bytes that are no records</translation>
    </message>
    <message>
        <source>bits are set that have no meaning</source>
        <translation>bits are set that have no meaning</translation>
    </message>
</context>
<context>
    <name>CanFormat</name>
    <message>
        <source>the header is missing</source>
        <translation>the header is missing</translation>
    </message>
    <message>
        <source>zeros where records should be</source>
        <translation>zeros where records should be</translation>
    </message>
    <message>
        <source>bits are set that have no meaning</source>
        <translation>bits are set that have no meaning</translation>
    </message>
    <message>
        <source>the last record is cut and was left out</source>
        <translation>the last record is cut and was left out</translation>
    </message>
    <message>
        <source>a standard frame with an identifier of more than 11 bits was left out</source>
        <translation>a standard frame with an identifier of more than 11 bits was left out</translation>
    </message>
    <message>
        <source>a length of more than 8 was taken as 8</source>
        <translation>a length of more than 8 was taken as 8</translation>
    </message>
</context>
<context>
    <name>CandumpFormat</name>
    <message>
        <source>a line that holds no frame was left out</source>
        <translation>a line that holds no frame was left out</translation>
    </message>
</context>
<context>
    <name>CaptureCheck</name>
    <message>
        <source>the time jumps back</source>
        <translation>the time jumps back</translation>
    </message>
    <message>
        <source>the time jumps forward by more than an hour</source>
        <translation>the time jumps forward by more than an hour</translation>
    </message>
    <message>
        <source>the adapter&apos;s time stamp jumps back</source>
        <translation>the adapter&apos;s time stamp jumps back</translation>
    </message>
    <message>
        <source>an identifier that no frame has</source>
        <translation>an identifier that no frame has</translation>
    </message>
    <message>
        <source>a length that no frame has</source>
        <translation>a length that no frame has</translation>
    </message>
</context>
<context>
    <name>CaptureSink</name>
    <message>
        <source>%1 cannot be written.</source>
        <translation>%1 cannot be written.</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 cannot be written: %2</translation>
    </message>
</context>
<context>
    <name>CaptureSource</name>
    <message>
        <source>%1 is a folder.</source>
        <translation>%1 is a folder.</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 cannot be read: %2</translation>
    </message>
    <message>
        <source>%1 is no capture of a known kind. Name the kind with --from.</source>
        <translation>%1 is no capture of a known kind. Name the kind with --from.</translation>
    </message>
    <message>
        <source>the file has become shorter while it was read</source>
        <translation>the file has become shorter while it was read</translation>
    </message>
</context>
<context>
    <name>FrameLosses</name>
    <message>
        <source>CAN frame left out: this kind of file holds none</source>
        <translation>CAN frame left out: this kind of file holds none</translation>
    </message>
    <message>
        <source>CAN FD frame left out: this kind of file holds none</source>
        <translation>CAN FD frame left out: this kind of file holds none</translation>
    </message>
    <message>
        <source>remote frame left out: this kind of file holds none</source>
        <translation>remote frame left out: this kind of file holds none</translation>
    </message>
    <message>
        <source>error frame left out: this kind of file holds none</source>
        <translation>error frame left out: this kind of file holds none</translation>
    </message>
    <message>
        <source>LIN frame left out: this kind of file holds none</source>
        <translation>LIN frame left out: this kind of file holds none</translation>
    </message>
    <message>
        <source>frame that the adapter refused: this kind of file does not tell it apart</source>
        <translation>frame that the adapter refused: this kind of file does not tell it apart</translation>
    </message>
    <message>
        <source>channel not written: this kind of file has one</source>
        <translation>channel not written: this kind of file has one</translation>
    </message>
    <message>
        <source>direction not written: this kind of file does not tell it</source>
        <translation>direction not written: this kind of file does not tell it</translation>
    </message>
    <message>
        <source>error state indicator not written: this kind of file has none</source>
        <translation>error state indicator not written: this kind of file has none</translation>
    </message>
</context>
<context>
    <name>LinCsvFormat</name>
    <message>
        <source>a line without eight cells was left out</source>
        <translation>a line without eight cells was left out</translation>
    </message>
    <message>
        <source>a line with an unknown direction was left out</source>
        <translation>a line with an unknown direction was left out</translation>
    </message>
    <message>
        <source>a state that is not known</source>
        <translation>a state that is not known</translation>
    </message>
    <message>
        <source>a time of day that cannot be read; that of the frame before was taken</source>
        <translation>a time of day that cannot be read; that of the frame before was taken</translation>
    </message>
    <message>
        <source>a line with an identifier that no frame has was left out</source>
        <translation>a line with an identifier that no frame has was left out</translation>
    </message>
    <message>
        <source>a line with a damaged payload was left out</source>
        <translation>a line with a damaged payload was left out</translation>
    </message>
    <message>
        <source>a line with a damaged checksum was left out</source>
        <translation>a line with a damaged checksum was left out</translation>
    </message>
</context>
<context>
    <name>OwnRecords</name>
    <message>
        <source>the last record is cut and was left out</source>
        <translation>the last record is cut and was left out</translation>
    </message>
</context>
<context>
    <name>OwnTextFormat</name>
    <message>
        <source>a line that is too long was left out</source>
        <translation>a line that is too long was left out</translation>
    </message>
    <message>
        <source>the header is missing</source>
        <translation>the header is missing</translation>
    </message>
    <message>
        <source>the titles are missing</source>
        <translation>the titles are missing</translation>
    </message>
</context>
<context>
    <name>OwnTextLine</name>
    <message>
        <source>a line with too few cells was left out</source>
        <translation>a line with too few cells was left out</translation>
    </message>
    <message>
        <source>a line with an unknown direction was left out</source>
        <translation>a line with an unknown direction was left out</translation>
    </message>
    <message>
        <source>a line with an unknown protocol, format or type was left out</source>
        <translation>a line with an unknown protocol, format or type was left out</translation>
    </message>
    <message>
        <source>a line with an identifier that no frame has was left out</source>
        <translation>a line with an identifier that no frame has was left out</translation>
    </message>
    <message>
        <source>a line with a damaged payload was left out</source>
        <translation>a line with a damaged payload was left out</translation>
    </message>
    <message>
        <source>the length is not that of the payload, which was taken</source>
        <translation>the length is not that of the payload, which was taken</translation>
    </message>
    <message>
        <source>a classic frame of more than 8 bytes was left out</source>
        <translation>a classic frame of more than 8 bytes was left out</translation>
    </message>
    <message>
        <source>a time of day that cannot be read; that of the frame before was taken</source>
        <translation>a time of day that cannot be read; that of the frame before was taken</translation>
    </message>
    <message>
        <source>a time stamp that cannot be read</source>
        <translation>a time stamp that cannot be read</translation>
    </message>
    <message>
        <source>a number that cannot be read</source>
        <translation>a number that cannot be read</translation>
    </message>
    <message>
        <source>frames are missing: their numbers jump</source>
        <translation>frames are missing: their numbers jump</translation>
    </message>
    <message>
        <source>the numbers jump back</source>
        <translation>the numbers jump back</translation>
    </message>
</context>
<context>
    <name>x9capture</name>
    <message>
        <source>Tells what is in captures.</source>
        <translation>Tells what is in captures.</translation>
    </message>
    <message>
        <source>Writes a capture as one of another kind.</source>
        <translation>Writes a capture as one of another kind.</translation>
    </message>
    <message>
        <source>Tells what is wrong with captures, and where.</source>
        <translation>Tells what is wrong with captures, and where.</translation>
    </message>
    <message>
        <source>Saves what is left of a damaged capture.</source>
        <translation>Saves what is left of a damaged capture.</translation>
    </message>
    <message>
        <source>Tells how often and how regularly each identifier comes.</source>
        <translation>Tells how often and how regularly each identifier comes.</translation>
    </message>
    <message>
        <source>Writes several captures as one, by their times.</source>
        <translation>Writes several captures as one, by their times.</translation>
    </message>
    <message>
        <source>Writes the wanted part of a capture.</source>
        <translation>Writes the wanted part of a capture.</translation>
    </message>
    <message>
        <source>Writes the signals of a capture as a table, by a DBC or LDF file.</source>
        <translation>Writes the signals of a capture as a table, by a DBC or LDF file.</translation>
    </message>
    <message>
        <source>--%1: %2 is no such number.</source>
        <translation>--%1: %2 is no such number.</translation>
    </message>
    <message>
        <source>--%1: there is no kind of capture named %2.</source>
        <translation>--%1: there is no kind of capture named %2.</translation>
    </message>
    <message>
        <source>--date: %1 is no date such as 2026-03-31.</source>
        <translation>--date: %1 is no date such as 2026-03-31.</translation>
    </message>
    <message>
        <source>kind</source>
        <translation>kind</translation>
    </message>
    <message>
        <source>Kind of capture that is read.</source>
        <translation>Kind of capture that is read.</translation>
    </message>
    <message>
        <source>Kind of capture that is written.</source>
        <translation>Kind of capture that is written.</translation>
    </message>
    <message>
        <source>date</source>
        <translation>date</translation>
    </message>
    <message>
        <source>Day of the last frame, for times without a date; otherwise the file&apos;s.</source>
        <translation>Day of the last frame, for times without a date; otherwise the file&apos;s.</translation>
    </message>
    <message>
        <source>Replaces a file that exists.</source>
        <translation>Replaces a file that exists.</translation>
    </message>
    <message>
        <source>Writes nothing where something would be lost.</source>
        <translation>Writes nothing where something would be lost.</translation>
    </message>
    <message>
        <source>Says nothing when all went well.</source>
        <translation>Says nothing when all went well.</translation>
    </message>
    <message>
        <source>Which of two times becomes a frame&apos;s only one; auto: the adapter&apos;s.</source>
        <translation>Which of two times becomes a frame&apos;s only one; auto: the adapter&apos;s.</translation>
    </message>
    <message>
        <source>Language of the words in captures of the program.</source>
        <translation>Language of the words in captures of the program.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>name</translation>
    </message>
    <message>
        <source>Encoding of captures of the program, such as UTF-8 or GBK.</source>
        <translation>Encoding of captures of the program, such as UTF-8 or GBK.</translation>
    </message>
    <message>
        <source>Goes on while the file grows, until it is interrupted.</source>
        <translation>Goes on while the file grows, until it is interrupted.</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>seconds</translation>
    </message>
    <message>
        <source>Ends --follow when for so long nothing has come.</source>
        <translation>Ends --follow when for so long nothing has come.</translation>
    </message>
    <message>
        <source>Bit rate of the CAN buses, to tell their load.</source>
        <translation>Bit rate of the CAN buses, to tell their load.</translation>
    </message>
    <message>
        <source>Bit rate of CAN FD frames&apos; data (2000000).</source>
        <translation>Bit rate of CAN FD frames&apos; data (2000000).</translation>
    </message>
    <message>
        <source>Bit rate of LIN buses (19200).</source>
        <translation>Bit rate of LIN buses (19200).</translation>
    </message>
    <message>
        <source>Separates the cells by commas.</source>
        <translation>Separates the cells by commas.</translation>
    </message>
    <message>
        <source>Each capture gets channels of its own.</source>
        <translation>Each capture gets channels of its own.</translation>
    </message>
    <message>
        <source>All captures begin at the time of the first one.</source>
        <translation>All captures begin at the time of the first one.</translation>
    </message>
    <message>
        <source>time</source>
        <translation>time</translation>
    </message>
    <message>
        <source>From this time on: seconds since the first frame, or 2026-03-31T10:20:30.5.</source>
        <translation>From this time on: seconds since the first frame, or 2026-03-31T10:20:30.5.</translation>
    </message>
    <message>
        <source>Before this time.</source>
        <translation>Before this time.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>number</translation>
    </message>
    <message>
        <source>Leaves out the first so many.</source>
        <translation>Leaves out the first so many.</translation>
    </message>
    <message>
        <source>No more frames than these.</source>
        <translation>No more frames than these.</translation>
    </message>
    <message>
        <source>range</source>
        <translation>range</translation>
    </message>
    <message>
        <source>Identifiers, hexadecimal: 7DF or 100-1FF. May be given several times.</source>
        <translation>Identifiers, hexadecimal: 7DF or 100-1FF. May be given several times.</translation>
    </message>
    <message>
        <source>A channel, from 1. May be given several times.</source>
        <translation>A channel, from 1. May be given several times.</translation>
    </message>
    <message>
        <source>file</source>
        <translation>file</translation>
    </message>
    <message>
        <source>A column for each signal instead of a line.</source>
        <translation>A column for each signal instead of a line.</translation>
    </message>
    <message>
        <source>Reads, checks, turns into each other and decodes captures of CAN, CAN FD and LIN buses.</source>
        <translation>Reads, checks, turns into each other and decodes captures of CAN, CAN FD and LIN buses.</translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation>Commands:</translation>
    </message>
    <message>
        <source>Kinds of captures:</source>
        <translation>Kinds of captures:</translation>
    </message>
    <message>
        <source>x9capture COMMAND --help tells more. &quot;-&quot; stands for standard input or output.
It ends with 0 when all went well, 1 when a file cannot be read or written, 2 when it was called wrongly,
3 when verify has found something or --strict has kept something from being lost.</source>
        <translation>x9capture COMMAND --help tells more. &quot;-&quot; stands for standard input or output.
It ends with 0 when all went well, 1 when a file cannot be read or written, 2 when it was called wrongly,
3 when verify has found something or --strict has kept something from being lost.</translation>
    </message>
    <message>
        <source>Examples:</source>
        <translation>Examples:</translation>
    </message>
    <message>
        <source>%1 wants: %2</source>
        <translation>%1 wants: %2</translation>
    </message>
    <message>
        <source>--words is en or zh, --times is auto, system or device.</source>
        <translation>--words is en or zh, --times is auto, system or device.</translation>
    </message>
    <message>
        <source>%1 could not be read to its end.</source>
        <translation>%1 could not be read to its end.</translation>
    </message>
    <message>
        <source>none</source>
        <translation>none</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 classic CAN</source>
        <translation>%1 classic CAN</translation>
    </message>
    <message>
        <source>%1 CAN FD</source>
        <translation>%1 CAN FD</translation>
    </message>
    <message>
        <source>%1 LIN</source>
        <translation>%1 LIN</translation>
    </message>
    <message>
        <source>%1 error frames</source>
        <translation>%1 error frames</translation>
    </message>
    <message>
        <source>%1 of them remote</source>
        <translation>%1 of them remote</translation>
    </message>
    <message>
        <source>%1 sent</source>
        <translation>%1 sent</translation>
    </message>
    <message>
        <source>%1 refused</source>
        <translation>%1 refused</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 frames</translation>
    </message>
    <message>
        <source>bus load %1 %</source>
        <translation>bus load %1 %</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Channel %1</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Kind</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>Frames</translation>
    </message>
    <message>
        <source>First</source>
        <translation>First</translation>
    </message>
    <message>
        <source>Last</source>
        <translation>Last</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Duration</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>Rate</translation>
    </message>
    <message>
        <source>%1 frames/s</source>
        <translation>%1 frames/s</translation>
    </message>
    <message>
        <source>Identifiers</source>
        <translation>Identifiers</translation>
    </message>
    <message>
        <source>more than %1</source>
        <translation>more than %1</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>Findings</translation>
    </message>
    <message>
        <source>%1; x9capture verify lists them</source>
        <translation>%1; x9capture verify lists them</translation>
    </message>
    <message>
        <source>error</source>
        <translation>error</translation>
    </message>
    <message>
        <source>extended</source>
        <translation>extended</translation>
    </message>
    <message>
        <source>standard</source>
        <translation>standard</translation>
    </message>
    <message>
        <source>%1: %2 frames, %3 findings</source>
        <translation>%1: %2 frames, %3 findings</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>Channel</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Mean ms</source>
        <translation>Mean ms</translation>
    </message>
    <message>
        <source>Min ms</source>
        <translation>Min ms</translation>
    </message>
    <message>
        <source>Max ms</source>
        <translation>Max ms</translation>
    </message>
    <message>
        <source>Deviation ms</source>
        <translation>Deviation ms</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>Changing bytes</source>
        <translation>Changing bytes</translation>
    </message>
    <message>
        <source>%1 frames of further identifiers are not listed</source>
        <translation>%1 frames of further identifiers are not listed</translation>
    </message>
    <message>
        <source>%1: which kind of capture is to be written? Name it with --to.</source>
        <translation>%1: which kind of capture is to be written? Name it with --to.</translation>
    </message>
    <message>
        <source>%1 would not hold everything; it was not written.</source>
        <translation>%1 would not hold everything; it was not written.</translation>
    </message>
    <message>
        <source>%1: %2 frames from %3</source>
        <translation>%1: %2 frames from %3</translation>
    </message>
    <message>
        <source>--%1: %2 is neither a number of seconds nor a time such as 2026-03-31T10:20:30.</source>
        <translation>--%1: %2 is neither a number of seconds nor a time such as 2026-03-31T10:20:30.</translation>
    </message>
    <message>
        <source>--start and --end must both be seconds or both be times with a date.</source>
        <translation>--start and --end must both be seconds or both be times with a date.</translation>
    </message>
    <message>
        <source>--id: %1 is neither an identifier nor a range of them (hexadecimal).</source>
        <translation>--id: %1 is neither an identifier nor a range of them (hexadecimal).</translation>
    </message>
    <message>
        <source>--channel: %1 is no channel.</source>
        <translation>--channel: %1 is no channel.</translation>
    </message>
    <message>
        <source>%1 has times of another kind than %2. With --align all begin together.</source>
        <translation>%1 has times of another kind than %2. With --align all begin together.</translation>
    </message>
    <message>
        <source>%1 captures</source>
        <translation>%1 captures</translation>
    </message>
    <message>
        <source>%1: %2 values from %3 of %4 frames</source>
        <translation>%1: %2 values from %3 of %4 frames</translation>
    </message>
    <message>
        <source>%1 frames are in no database.</source>
        <translation>%1 frames are in no database.</translation>
    </message>
    <message>
        <source>%1 frames are too short for all of their signals.</source>
        <translation>%1 frames are too short for all of their signals.</translation>
    </message>
    <message>
        <source>By which DBC or LDF file? Name it with --database.</source>
        <translation>By which DBC or LDF file? Name it with --database.</translation>
    </message>
    <message>
        <source>--signal: no database has %1.</source>
        <translation>--signal: no database has %1.</translation>
    </message>
    <message>
        <source>The DBC or LDF file. May be given several times.</source>
        <translation>The DBC or LDF file. May be given several times.</translation>
    </message>
    <message>
        <source>With --wide: a column keeps its last value.</source>
        <translation>With --wide: a column keeps its last value.</translation>
    </message>
    <message>
        <source>Only this: &quot;Message&quot; or &quot;Message.Signal&quot;, with * and ?. May be given several times.</source>
        <translation>Only this: &quot;Message&quot; or &quot;Message.Signal&quot;, with * and ?. May be given several times.</translation>
    </message>
    <message>
        <source>%1 exists already. It is replaced with --force only.</source>
        <translation>%1 exists already. It is replaced with --force only.</translation>
    </message>
</context>
<context>
    <name>DatabaseFile</name>
    <message>
        <source>The encoding %1 is not known</source>
        <translation>The encoding %1 is not known</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 cannot be read: %2</translation>
    </message>
    <message>
        <source>%1 is larger than %2 MB</source>
        <translation>%1 is larger than %2 MB</translation>
    </message>
    <message>
        <source>%1 has no messages that can be decoded</source>
        <translation>%1 has no messages that can be decoded</translation>
    </message>
</context>
<context>
    <name>DatabaseParser</name>
    <message>
        <source>a keyword</source>
        <translation>a keyword</translation>
    </message>
    <message>
        <source>a name</source>
        <translation>a name</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>a number</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>a whole number</translation>
    </message>
    <message>
        <source>a quoted text</source>
        <translation>a quoted text</translation>
    </message>
    <message>
        <source>the end of the line</source>
        <translation>the end of the line</translation>
    </message>
    <message>
        <source>Expected here: %1</source>
        <translation>Expected here: %1</translation>
    </message>
    <message>
        <source>This text has no end</source>
        <translation>This text has no end</translation>
    </message>
    <message>
        <source>More than %1 of these are not read</source>
        <translation>More than %1 of these are not read</translation>
    </message>
    <message>
        <source>%1 is multiplexed by nothing that the message has</source>
        <translation>%1 is multiplexed by nothing that the message has</translation>
    </message>
    <message>
        <source>What multiplexes %1 is left out, goes round in a circle or is nested too deep</source>
        <translation>What multiplexes %1 is left out, goes round in a circle or is nested too deep</translation>
    </message>
    <message>
        <source>%1 does not fit into any frame and is left out</source>
        <translation>%1 does not fit into any frame and is left out</translation>
    </message>
    <message>
        <source>%1 needs %2 bytes, its message has %3</source>
        <translation>%1 needs %2 bytes, its message has %3</translation>
    </message>
    <message>
        <source>The keyword %1 is not known</source>
        <translation>The keyword %1 is not known</translation>
    </message>
    <message>
        <source>%1 is longer than any frame</source>
        <translation>%1 is longer than any frame</translation>
    </message>
    <message>
        <source>Another message has this identifier, or none can have it: %1 is left out</source>
        <translation>Another message has this identifier, or none can have it: %1 is left out</translation>
    </message>
    <message>
        <source>The identifier of %1 has more than 11 bits and is taken for an extended one</source>
        <translation>The identifier of %1 has more than 11 bits and is taken for an extended one</translation>
    </message>
    <message>
        <source>Its message has another signal with the name %1</source>
        <translation>Its message has another signal with the name %1</translation>
    </message>
    <message>
        <source>The length of a signal is from 1 to 64 bits: %1 is left out</source>
        <translation>The length of a signal is from 1 to 64 bits: %1 is left out</translation>
    </message>
    <message>
        <source>Not understood: %1</source>
        <translation>Not understood: %1</translation>
    </message>
    <message>
        <source>No message has the identifier %1</source>
        <translation>No message has the identifier %1</translation>
    </message>
    <message>
        <source>%1 has no signal %2</source>
        <translation>%1 has no signal %2</translation>
    </message>
    <message>
        <source>A float has 32 bits and the type 1, a double 64 and the type 2</source>
        <translation>A float has 32 bits and the type 1, a double 64 and the type 2</translation>
    </message>
    <message>
        <source>A signal has 1 to 64 bits, an array 1 to 8 bytes: %1 is left out</source>
        <translation>A signal has 1 to 64 bits, an array 1 to 8 bytes: %1 is left out</translation>
    </message>
    <message>
        <source>Another signal has the name %1</source>
        <translation>Another signal has the name %1</translation>
    </message>
    <message>
        <source>Another frame has the name %1</source>
        <translation>Another frame has the name %1</translation>
    </message>
    <message>
        <source>The identifier of a LIN frame is from 0 to 63: %1 is left out</source>
        <translation>The identifier of a LIN frame is from 0 to 63: %1 is left out</translation>
    </message>
    <message>
        <source>%1 is no signal</source>
        <translation>%1 is no signal</translation>
    </message>
    <message>
        <source>%1 is no encoding</source>
        <translation>%1 is no encoding</translation>
    </message>
    <message>
        <source>%1 is no frame of its own</source>
        <translation>%1 is no frame of its own</translation>
    </message>
</context>
<context>
    <name>CaptureFile</name>
    <message>
        <source>The file cannot be opened: %1</source>
        <translation>The file cannot be opened: %1</translation>
    </message>
    <message>
        <source>The file is of no known kind.</source>
        <translation>The file is of no known kind.</translation>
    </message>
    <message>
        <source>This is not a file.</source>
        <translation>This is not a file.</translation>
    </message>
</context>
<context>
    <name>CaptureTab</name>
    <message>
        <source>Overview</source>
        <translation>Overview</translation>
    </message>
    <message>
        <source>&amp;Filter:</source>
        <translation>&amp;Filter:</translation>
    </message>
    <message>
        <source>Find, in the same language</source>
        <translation>Find, in the same language</translation>
    </message>
    <message>
        <source>F&amp;ind:</source>
        <translation>F&amp;ind:</translation>
    </message>
    <message>
        <source>Stop loading</source>
        <translation>Stop loading</translation>
    </message>
    <message>
        <source>Stop following</source>
        <translation>Stop following</translation>
    </message>
    <message>
        <source>Last data at the &amp;selected frame instead of at the end</source>
        <translation>Last data at the &amp;selected frame instead of at the end</translation>
    </message>
    <message>
        <source>Frame %1 is not among those that are shown.</source>
        <translation>Frame %1 is not among those that are shown.</translation>
    </message>
    <message>
        <source>Frame %1 does not pass the filter; this is the next one that does.</source>
        <translation>Frame %1 does not pass the filter; this is the next one that does.</translation>
    </message>
    <message>
        <source>Go to</source>
        <translation>Go to</translation>
    </message>
    <message>
        <source>Number of a frame, seconds (12.5, 300 ms) or clock time (13:45:06):</source>
        <translation>Number of a frame, seconds (12.5, 300 ms) or clock time (13:45:06):</translation>
    </message>
    <message>
        <source>There is no frame “%1”.</source>
        <translation>There is no frame “%1”.</translation>
    </message>
    <message>
        <source>Bookmark</source>
        <translation>Bookmark</translation>
    </message>
    <message>
        <source>Note for frame %1; without a note the bookmark goes:</source>
        <translation>Note for frame %1; without a note the bookmark goes:</translation>
    </message>
    <message>
        <source>The bookmarks cannot be saved.</source>
        <translation>The bookmarks cannot be saved.</translation>
    </message>
    <message>
        <source>There is no further bookmark.</source>
        <translation>There is no further bookmark.</translation>
    </message>
    <message>
        <source>loading</source>
        <translation>loading</translation>
    </message>
    <message>
        <source>loading, %1 s left</source>
        <translation>loading, %1 s left</translation>
    </message>
    <message>
        <source>following the file</source>
        <translation>following the file</translation>
    </message>
    <message>
        <source>complete</source>
        <translation>complete</translation>
    </message>
    <message>
        <source>loading was stopped</source>
        <translation>loading was stopped</translation>
    </message>
    <message>
        <source>memory is full; the rest was not loaded</source>
        <translation>memory is full; the rest was not loaded</translation>
    </message>
    <message>
        <source>%1 over %2</source>
        <translation>%1 over %2</translation>
    </message>
    <message>
        <source>%1 of %2 frames</source>
        <translation>%1 of %2 frames</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 frames</translation>
    </message>
    <message>
        <source>Findings: %1...</source>
        <translation>Findings: %1...</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>Findings</translation>
    </message>
    <message>
        <source>Plots</source>
        <translation>Plots</translation>
    </message>
    <message>
        <source>Bookmarks</source>
        <translation>Bookmarks</translation>
    </message>
    <message>
        <source>There are %1 bookmarks already.</source>
        <translation>There are %1 bookmarks already.</translation>
    </message>
</context>
<context>
    <name>Filter</name>
    <message>
        <source>The expression is too long.</source>
        <translation>The expression is too long.</translation>
    </message>
    <message>
        <source>This is no number.</source>
        <translation>This is no number.</translation>
    </message>
    <message>
        <source>The quotation mark at the end is missing.</source>
        <translation>The quotation mark at the end is missing.</translation>
    </message>
    <message>
        <source>This character has no meaning here.</source>
        <translation>This character has no meaning here.</translation>
    </message>
    <message>
        <source>“%1” is missing here.</source>
        <translation>“%1” is missing here.</translation>
    </message>
    <message>
        <source>“and”, “or” or a comparison is missing before this.</source>
        <translation>“and”, “or” or a comparison is missing before this.</translation>
    </message>
    <message>
        <source>A comparison is missing behind this.</source>
        <translation>A comparison is missing behind this.</translation>
    </message>
    <message>
        <source>This can be equal or not equal only.</source>
        <translation>This can be equal or not equal only.</translation>
    </message>
    <message>
        <source>Only “data”, “name” and a signal alone are compared with a text.</source>
        <translation>Only “data”, “name” and a signal alone are compared with a text.</translation>
    </message>
    <message>
        <source>What a value stands for is a text in quotation marks.</source>
        <translation>What a value stands for is a text in quotation marks.</translation>
    </message>
    <message>
        <source>No value of the signal stands for this text.</source>
        <translation>No value of the signal stands for this text.</translation>
    </message>
    <message>
        <source>The range&apos;s end is below its beginning.</source>
        <translation>The range&apos;s end is below its beginning.</translation>
    </message>
    <message>
        <source>A number is missing here.</source>
        <translation>A number is missing here.</translation>
    </message>
    <message>
        <source>A direction is “rx”, “tx” or “refused”.</source>
        <translation>A direction is “rx”, “tx” or “refused”.</translation>
    </message>
    <message>
        <source>Data are bytes in quotation marks, such as &quot;DE AD ?? EF&quot;.</source>
        <translation>Data are bytes in quotation marks, such as &quot;DE AD ?? EF&quot;.</translation>
    </message>
    <message>
        <source>A name is a text in quotation marks.</source>
        <translation>A name is a text in quotation marks.</translation>
    </message>
    <message>
        <source>A field, a signal or a number is missing here.</source>
        <translation>A field, a signal or a number is missing here.</translation>
    </message>
    <message>
        <source>A byte&apos;s number is 0 to %1.</source>
        <translation>A byte&apos;s number is 0 to %1.</translation>
    </message>
    <message>
        <source>“%1” is neither a field nor a signal.</source>
        <translation>“%1” is neither a field nor a signal.</translation>
    </message>
</context>
<context>
    <name>FilterEdit</name>
    <message>
        <source>Filter, such as  id == 0x123 and data[0] &amp; 0x80</source>
        <translation>Filter, such as  id == 0x123 and data[0] &amp; 0x80</translation>
    </message>
    <message>
        <source>Filters that were used lately (Down)</source>
        <translation>Filters that were used lately (Down)</translation>
    </message>
</context>
<context>
    <name>FrameColumns</name>
    <message>
        <source>No.</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>Date and time</source>
        <translation>Date and time</translation>
    </message>
    <message>
        <source>Time [s]</source>
        <translation>Time [s]</translation>
    </message>
    <message>
        <source>Since shown [s]</source>
        <translation>Since shown [s]</translation>
    </message>
    <message>
        <source>Since ID [s]</source>
        <translation>Since ID [s]</translation>
    </message>
    <message>
        <source>Since mark [s]</source>
        <translation>Since mark [s]</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>Channel</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Direction</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Rx</source>
        <translation>Rx</translation>
    </message>
    <message>
        <source>Tx</source>
        <translation>Tx</translation>
    </message>
    <message>
        <source>Refused</source>
        <translation>Refused</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Remote</source>
        <translation>Remote</translation>
    </message>
</context>
<context>
    <name>FrameTableView</name>
    <message>
        <source>Frames</source>
        <translation>Frames</translation>
    </message>
    <message>
        <source>Only the first %1 frames of the selection were copied.</source>
        <translation>Only the first %1 frames of the selection were copied.</translation>
    </message>
    <message>
        <source>Frames copied: %1</source>
        <translation>Frames copied: %1</translation>
    </message>
    <message>
        <source>Co&amp;lumns...</source>
        <translation>Co&amp;lumns...</translation>
    </message>
</context>
<context>
    <name>OverviewModel</name>
    <message>
        <source>Channel</source>
        <translation>Channel</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Count</translation>
    </message>
    <message>
        <source>Rate [1/s]</source>
        <translation>Rate [1/s]</translation>
    </message>
    <message>
        <source>Period [ms]</source>
        <translation>Period [ms]</translation>
    </message>
    <message>
        <source>Least [ms]</source>
        <translation>Least [ms]</translation>
    </message>
    <message>
        <source>Greatest [ms]</source>
        <translation>Greatest [ms]</translation>
    </message>
    <message>
        <source>Deviation [ms]</source>
        <translation>Deviation [ms]</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>First [s]</source>
        <translation>First [s]</translation>
    </message>
    <message>
        <source>Last [s]</source>
        <translation>Last [s]</translation>
    </message>
    <message>
        <source>Last data, [changed]</source>
        <translation>Last data, [changed]</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
<context>
    <name>StoreLoader</name>
    <message>
        <source>Reading failed before the end of the file.</source>
        <translation>Reading failed before the end of the file.</translation>
    </message>
    <message>
        <source>The file has become shorter while it was followed.</source>
        <translation>The file has become shorter while it was followed.</translation>
    </message>
    <message>
        <source>The file was deleted, moved away, replaced or emptied while it was followed. What was read before is here.</source>
        <translation>The file was deleted, moved away, replaced or emptied while it was followed. What was read before is here.</translation>
    </message>
</context>
<context>
    <name>ViewerWindow</name>
    <message>
        <source>Drop captures here, or open them with Ctrl+O.</source>
        <translation>Drop captures here, or open them with Ctrl+O.</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Open...</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>Open &amp;recent</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quit</translation>
    </message>
    <message>
        <source>&amp;Go</source>
        <translation>&amp;Go</translation>
    </message>
    <message>
        <source>&amp;Filter</source>
        <translation>&amp;Filter</translation>
    </message>
    <message>
        <source>F&amp;ind</source>
        <translation>F&amp;ind</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>Find &amp;next</translation>
    </message>
    <message>
        <source>Find &amp;previous</source>
        <translation>Find &amp;previous</translation>
    </message>
    <message>
        <source>Go &amp;to...</source>
        <translation>Go &amp;to...</translation>
    </message>
    <message>
        <source>Time &amp;zero here</source>
        <translation>Time &amp;zero here</translation>
    </message>
    <message>
        <source>&amp;Bookmark...</source>
        <translation>&amp;Bookmark...</translation>
    </message>
    <message>
        <source>Next boo&amp;kmark</source>
        <translation>Next boo&amp;kmark</translation>
    </message>
    <message>
        <source>Pre&amp;vious bookmark</source>
        <translation>Pre&amp;vious bookmark</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>&amp;Panels below the frames</source>
        <translation>&amp;Panels below the frames</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Language</translation>
    </message>
    <message>
        <source>Chinese</source>
        <translation>Chinese</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>Open captures</source>
        <translation>Open captures</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>The language changes when the program is started again.</source>
        <translation>The language changes when the program is started again.</translation>
    </message>
    <message>
        <source>&amp;Save as...</source>
        <translation>&amp;Save as...</translation>
    </message>
    <message>
        <source>&amp;Load again</source>
        <translation>&amp;Load again</translation>
    </message>
    <message>
        <source>C&amp;olumns...</source>
        <translation>C&amp;olumns...</translation>
    </message>
    <message>
        <source>Colour &amp;rules...</source>
        <translation>Colour &amp;rules...</translation>
    </message>
    <message>
        <source>Databases</source>
        <translation>Databases</translation>
    </message>
    <message>
        <source>A database belongs to a capture. Open the capture first.</source>
        <translation>A database belongs to a capture. Open the capture first.</translation>
    </message>
</context>
<context>
    <name>CaptureSaver</name>
    <message>
        <source>There is not enough memory.</source>
        <translation>There is not enough memory.</translation>
    </message>
</context>
<context>
    <name>CaptureKinds</name>
    <message>
        <source>Captures (%1)</source>
        <translation>Captures (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>All files (*)</translation>
    </message>
</context>
<context>
    <name>EndButton</name>
    <message>
        <source>Stay at the &amp;end</source>
        <translation>Stay at the &amp;end</translation>
    </message>
    <message>
        <source>Shows new frames as they come; off when the table is scrolled back, on again at its end</source>
        <translation>Shows new frames as they come; off when the table is scrolled back, on again at its end</translation>
    </message>
</context>
<context>
    <name>LoadNotice</name>
    <message>
        <source>&amp;Load again</source>
        <translation>&amp;Load again</translation>
    </message>
</context>
<context>
    <name>ExchangeFormat</name>
    <message>
        <source>X9CAN classic capture</source>
        <translation>X9CAN classic capture</translation>
    </message>
    <message>
        <source>X9CAN CAN FD capture</source>
        <translation>X9CAN CAN FD capture</translation>
    </message>
    <message>
        <source>X9CAN table of LIN frames</source>
        <translation>X9CAN table of LIN frames</translation>
    </message>
    <message>
        <source>X9CAN table of frames, commas</source>
        <translation>X9CAN table of frames, commas</translation>
    </message>
    <message>
        <source>X9CAN table of frames, blanks</source>
        <translation>X9CAN table of frames, blanks</translation>
    </message>
    <message>
        <source>candump log</source>
        <translation>candump log</translation>
    </message>
    <message>
        <source>ASC</source>
        <translation>ASC</translation>
    </message>
    <message>
        <source>BLF</source>
        <translation>BLF</translation>
    </message>
    <message>
        <source>pcapng, SocketCAN</source>
        <translation>pcapng, SocketCAN</translation>
    </message>
    <message>
        <source>pcap, SocketCAN</source>
        <translation>pcap, SocketCAN</translation>
    </message>
    <message>
        <source>TRC 2.1</source>
        <translation>TRC 2.1</translation>
    </message>
</context>
<context>
    <name>FindingLines</name>
    <message>
        <source>line %1: </source>
        <translation>line %1: </translation>
    </message>
    <message>
        <source>byte %1: </source>
        <translation>byte %1: </translation>
    </message>
    <message>
        <source>frame %1: </source>
        <translation>frame %1: </translation>
    </message>
    <message>
        <source> (%1 times)</source>
        <translation> (%1 times)</translation>
    </message>
    <message>
        <source>%1 more of the same</source>
        <translation>%1 more of the same</translation>
    </message>
</context>
<context>
    <name>SaveDialog</name>
    <message>
        <source>Save as</source>
        <translation>Save as</translation>
    </message>
    <message>
        <source>-part</source>
        <translation>-part</translation>
    </message>
    <message>
        <source>Those that the &amp;filter passes</source>
        <translation>Those that the &amp;filter passes</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>&amp;All</translation>
    </message>
    <message>
        <source>The &amp;selected ones: %1</source>
        <translation>The &amp;selected ones: %1</translation>
    </message>
    <message>
        <source>Those of a &amp;time</source>
        <translation>Those of a &amp;time</translation>
    </message>
    <message>
        <source>A&amp;ll, also those that the filter hides</source>
        <translation>A&amp;ll, also those that the filter hides</translation>
    </message>
    <message>
        <source>12.5 or 13:45:06</source>
        <translation>12.5 or 13:45:06</translation>
    </message>
    <message>
        <source>the end</source>
        <translation>the end</translation>
    </message>
    <message>
        <source>f&amp;rom</source>
        <translation>f&amp;rom</translation>
    </message>
    <message>
        <source>t&amp;o</source>
        <translation>t&amp;o</translation>
    </message>
    <message>
        <source>With the a&amp;dapter&apos;s times instead of the computer&apos;s</source>
        <translation>With the a&amp;dapter&apos;s times instead of the computer&apos;s</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Browse...</translation>
    </message>
    <message>
        <source>Frames:</source>
        <translation>Frames:</translation>
    </message>
    <message>
        <source>&amp;Kind:</source>
        <translation>&amp;Kind:</translation>
    </message>
    <message>
        <source>F&amp;ile:</source>
        <translation>F&amp;ile:</translation>
    </message>
    <message>
        <source>Sa&amp;ve</source>
        <translation>Sa&amp;ve</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Stop</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>Looking what this kind of file can hold...</source>
        <translation>Looking what this kind of file can hold...</translation>
    </message>
    <message>
        <source>“%1” is no time of this capture.</source>
        <translation>“%1” is no time of this capture.</translation>
    </message>
    <message>
        <source>There are no such frames.</source>
        <translation>There are no such frames.</translation>
    </message>
    <message>
        <source>The file needs a name.</source>
        <translation>The file needs a name.</translation>
    </message>
    <message>
        <source>This file is open here. Choose another name.</source>
        <translation>This file is open here. Choose another name.</translation>
    </message>
    <message>
        <source>%1 exists already. Is it to be replaced?</source>
        <translation>%1 exists already. Is it to be replaced?</translation>
    </message>
    <message>
        <source>Saving...</source>
        <translation>Saving...</translation>
    </message>
    <message>
        <source>Saving was stopped; nothing was written.</source>
        <translation>Saving was stopped; nothing was written.</translation>
    </message>
    <message>
        <source>%1 frames, %2. This kind of file can hold all of it.</source>
        <translation>%1 frames, %2. This kind of file can hold all of it.</translation>
    </message>
    <message>
        <source>%1 frames, %2. This kind of file cannot hold everything:</source>
        <translation>%1 frames, %2. This kind of file cannot hold everything:</translation>
    </message>
    <message>
        <source>%1 frames were saved, %2.</source>
        <translation>%1 frames were saved, %2.</translation>
    </message>
    <message>
        <source>%1 frames were saved, %2, but for this:</source>
        <translation>%1 frames were saved, %2, but for this:</translation>
    </message>
</context>
<context>
    <name>BookmarkPanel</name>
    <message>
        <source>Note</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>Return goes to the frame, F2 changes the note, Del removes the bookmark. Ctrl+B in the table sets one.</source>
        <translation>Return goes to the frame, F2 changes the note, Del removes the bookmark. Ctrl+B in the table sets one.</translation>
    </message>
</context>
<context>
    <name>CaptureSearch</name>
    <message>
        <source>Nothing was found.</source>
        <translation>Nothing was found.</translation>
    </message>
    <message>
        <source>Nothing more was found up to the beginning; once more goes on from the end.</source>
        <translation>Nothing more was found up to the beginning; once more goes on from the end.</translation>
    </message>
    <message>
        <source>Nothing more was found up to the end; once more goes on from the beginning.</source>
        <translation>Nothing more was found up to the end; once more goes on from the beginning.</translation>
    </message>
    <message>
        <source>Went on from the end.</source>
        <translation>Went on from the end.</translation>
    </message>
    <message>
        <source>Went on from the beginning.</source>
        <translation>Went on from the beginning.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 of %2</translation>
    </message>
</context>
<context>
    <name>ColorButton</name>
    <message>
        <source>Red</source>
        <translation>Red</translation>
    </message>
    <message>
        <source>Orange</source>
        <translation>Orange</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Yellow</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Green</translation>
    </message>
    <message>
        <source>Cyan</source>
        <translation>Cyan</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blue</translation>
    </message>
    <message>
        <source>Violet</source>
        <translation>Violet</translation>
    </message>
    <message>
        <source>Grey</source>
        <translation>Grey</translation>
    </message>
    <message>
        <source>As other rows</source>
        <translation>As other rows</translation>
    </message>
    <message>
        <source>Another...</source>
        <translation>Another...</translation>
    </message>
</context>
<context>
    <name>ColorRulesDialog</name>
    <message>
        <source>Colour rules</source>
        <translation>Colour rules</translation>
    </message>
    <message>
        <source>The first rule that is on and passes a frame gives its row the colours.</source>
        <translation>The first rule that is on and passes a frame gives its row the colours.</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Add</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Remove</translation>
    </message>
    <message>
        <source>&amp;Up</source>
        <translation>&amp;Up</translation>
    </message>
    <message>
        <source>&amp;Down</source>
        <translation>&amp;Down</translation>
    </message>
    <message>
        <source>&amp;Standard</source>
        <translation>&amp;Standard</translation>
    </message>
    <message>
        <source>&amp;Filter:</source>
        <translation>&amp;Filter:</translation>
    </message>
    <message>
        <source>&amp;Text</source>
        <translation>&amp;Text</translation>
    </message>
    <message>
        <source>&amp;Background</source>
        <translation>&amp;Background</translation>
    </message>
    <message>
        <source>A rule without a filter colours nothing.</source>
        <translation>A rule without a filter colours nothing.</translation>
    </message>
</context>
<context>
    <name>ColumnsDialog</name>
    <message>
        <source>&amp;Up</source>
        <translation>&amp;Up</translation>
    </message>
    <message>
        <source>&amp;Down</source>
        <translation>&amp;Down</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Columns</translation>
    </message>
    <message>
        <source>&amp;Standard</source>
        <translation>&amp;Standard</translation>
    </message>
    <message>
        <source>Shown while a frame is marked as time zero.</source>
        <translation>Shown while a frame is marked as time zero.</translation>
    </message>
</context>
<context>
    <name>FrameTableActions</name>
    <message>
        <source>&amp;Only these</source>
        <translation>&amp;Only these</translation>
    </message>
    <message>
        <source>&amp;Not these</source>
        <translation>&amp;Not these</translation>
    </message>
    <message>
        <source>&amp;Find next like this</source>
        <translation>&amp;Find next like this</translation>
    </message>
    <message>
        <source>Find &amp;previous like this</source>
        <translation>Find &amp;previous like this</translation>
    </message>
    <message>
        <source>Co&amp;lour these...</source>
        <translation>Co&amp;lour these...</translation>
    </message>
    <message>
        <source>From h&amp;ere on</source>
        <translation>From h&amp;ere on</translation>
    </message>
    <message>
        <source>&amp;Up to here</source>
        <translation>&amp;Up to here</translation>
    </message>
    <message>
        <source>Time &amp;zero here</source>
        <translation>Time &amp;zero here</translation>
    </message>
    <message>
        <source>&amp;Bookmark...</source>
        <translation>&amp;Bookmark...</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copy</translation>
    </message>
    <message>
        <source>Copy as C&amp;SV</source>
        <translation>Copy as C&amp;SV</translation>
    </message>
</context>
<context>
    <name>BitView</name>
    <message>
        <source>Bits of the frame</source>
        <translation>Bits of the frame</translation>
    </message>
    <message>
        <source>Byte %1, bit %2: %3</source>
        <translation>Byte %1, bit %2: %3</translation>
    </message>
</context>
<context>
    <name>CaptureDatabases</name>
    <message>
        <source>%1 is not used: frames %2 are %3 of %4</source>
        <translation>%1 is not used: frames %2 are %3 of %4</translation>
    </message>
</context>
<context>
    <name>CaptureSignals</name>
    <message>
        <source>Signals</source>
        <translation>Signals</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Values</translation>
    </message>
    <message>
        <source>Databases</source>
        <translation>Databases</translation>
    </message>
    <message>
        <source>The databases of this capture cannot be remembered.</source>
        <translation>The databases of this capture cannot be remembered.</translation>
    </message>
    <message>
        <source>Add databases</source>
        <translation>Add databases</translation>
    </message>
    <message>
        <source>Databases (*.dbc *.ldf *.DBC *.LDF);;All files (*)</source>
        <translation>Databases (*.dbc *.ldf *.DBC *.LDF);;All files (*)</translation>
    </message>
</context>
<context>
    <name>DatabasePanel</name>
    <message>
        <source>What was found in the database</source>
        <translation>What was found in the database</translation>
    </message>
    <message>
        <source>Databases of the capture</source>
        <translation>Databases of the capture</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Database</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Channels</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Messages</translation>
    </message>
    <message>
        <source>Signals</source>
        <translation>Signals</translation>
    </message>
    <message>
        <source>State</source>
        <translation>State</translation>
    </message>
    <message>
        <source>&amp;Add database...</source>
        <translation>&amp;Add database...</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Remove</translation>
    </message>
    <message>
        <source>&amp;Load again</source>
        <translation>&amp;Load again</translation>
    </message>
    <message>
        <source>loading</source>
        <translation>loading</translation>
    </message>
    <message>
        <source>not usable</source>
        <translation>not usable</translation>
    </message>
    <message>
        <source>findings: %1</source>
        <translation>findings: %1</translation>
    </message>
    <message>
        <source>in use</source>
        <translation>in use</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>line %1, column %2: %3</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>and %1 more</translation>
    </message>
    <message>
        <source>all</source>
        <translation>all</translation>
    </message>
    <message>
        <source>Numbers of channels with commas, such as 1, 3; empty for all</source>
        <translation>Numbers of channels with commas, such as 1, 3; empty for all</translation>
    </message>
    <message>
        <source>DBC and LDF files name the messages and signals of a capture. Add one, or drop it onto the window.</source>
        <translation>DBC and LDF files name the messages and signals of a capture. Add one, or drop it onto the window.</translation>
    </message>
</context>
<context>
    <name>SignalMenu</name>
    <message>
        <source>Sig&amp;nals</source>
        <translation>Sig&amp;nals</translation>
    </message>
    <message>
        <source>&amp;Add database...</source>
        <translation>&amp;Add database...</translation>
    </message>
    <message>
        <source>Add &amp;recent</source>
        <translation>Add &amp;recent</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>Re&amp;move</translation>
    </message>
    <message>
        <source>&amp;Load again</source>
        <translation>&amp;Load again</translation>
    </message>
    <message>
        <source>&amp;Databases of the capture</source>
        <translation>&amp;Databases of the capture</translation>
    </message>
    <message>
        <source>%1, channels %2</source>
        <translation>%1, channels %2</translation>
    </message>
</context>
<context>
    <name>SignalPanel</name>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>Signals of the frame</source>
        <translation>Signals of the frame</translation>
    </message>
    <message>
        <source>Signal</source>
        <translation>Signal</translation>
    </message>
    <message>
        <source>Raw</source>
        <translation>Raw</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Unit</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Select a frame to see its signals.</source>
        <translation>Select a frame to see its signals.</translation>
    </message>
    <message>
        <source>No database of this capture describes frame %1.</source>
        <translation>No database of this capture describes frame %1.</translation>
    </message>
    <message>
        <source>Frame %1. Its signals need a database: Signals, Add database...</source>
        <translation>Frame %1. Its signals need a database: Signals, Add database...</translation>
    </message>
    <message>
        <source>Frame %1: %2 (%3)</source>
        <translation>Frame %1: %2 (%3)</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>from %1</translation>
    </message>
    <message>
        <source>every %1 ms</source>
        <translation>every %1 ms</translation>
    </message>
    <message>
        <source>too short for %1 of its signals</source>
        <translation>too short for %1 of its signals</translation>
    </message>
    <message>
        <source>a remote frame has no data</source>
        <translation>a remote frame has no data</translation>
    </message>
    <message>
        <source>these data were not on the bus; filters and plots leave them out</source>
        <translation>these data were not on the bus; filters and plots leave them out</translation>
    </message>
    <message>
        <source>&amp;Plot this</source>
        <translation>&amp;Plot this</translation>
    </message>
    <message>
        <source>only the first %1 signals are shown</source>
        <translation>only the first %1 signals are shown</translation>
    </message>
</context>
<context>
    <name>ValuePanel</name>
    <message>
        <source>Messages and signals with their last values</source>
        <translation>Messages and signals with their last values</translation>
    </message>
    <message>
        <source>Search messages and signals</source>
        <translation>Search messages and signals</translation>
    </message>
    <message>
        <source>&amp;Only what is in the capture</source>
        <translation>&amp;Only what is in the capture</translation>
    </message>
    <message>
        <source>Only frames of t&amp;his</source>
        <translation>Only frames of t&amp;his</translation>
    </message>
    <message>
        <source>&amp;Plot this</source>
        <translation>&amp;Plot this</translation>
    </message>
    <message>
        <source>Values need a database: Signals, Add database...</source>
        <translation>Values need a database: Signals, Add database...</translation>
    </message>
    <message>
        <source>Up to frame %1</source>
        <translation>Up to frame %1</translation>
    </message>
    <message>
        <source>At the end, frame %1</source>
        <translation>At the end, frame %1</translation>
    </message>
    <message>
        <source>&amp;Go to its frame</source>
        <translation>&amp;Go to its frame</translation>
    </message>
</context>
<context>
    <name>ValueTreeModel</name>
    <message>
        <source>Message, signal</source>
        <translation>Message, signal</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Unit</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Time [s]</source>
        <translation>Time [s]</translation>
    </message>
</context>
<context>
    <name>AnalyseMenu</name>
    <message>
        <source>&amp;Analyse</source>
        <translation>&amp;Analyse</translation>
    </message>
    <message>
        <source>&amp;Compare captures...</source>
        <translation>&amp;Compare captures...</translation>
    </message>
    <message>
        <source>Compare before and after the &amp;marked frame</source>
        <translation>Compare before and after the &amp;marked frame</translation>
    </message>
    <message>
        <source>Histogram of &amp;periods...</source>
        <translation>Histogram of &amp;periods...</translation>
    </message>
    <message>
        <source>Bus &amp;load...</source>
        <translation>Bus &amp;load...</translation>
    </message>
</context>
<context>
    <name>BusLoadWindow</name>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>Bus load - %1</source>
        <translation>Bus load - %1</translation>
    </message>
    <message>
        <source>Time since the start [s]</source>
        <translation>Time since the start [s]</translation>
    </message>
    <message>
        <source>Bus load [%]</source>
        <translation>Bus load [%]</translation>
    </message>
    <message>
        <source>&amp;Steps of:</source>
        <translation>&amp;Steps of:</translation>
    </message>
    <message>
        <source>&amp;Limit:</source>
        <translation>&amp;Limit:</translation>
    </message>
    <message>
        <source>Bit rates are set in the table (500k, 2M). A click shows the frame at that time.</source>
        <translation>Bit rates are set in the table (500k, 2M). A click shows the frame at that time.</translation>
    </message>
    <message>
        <source>&amp;Next above the limit</source>
        <translation>&amp;Next above the limit</translation>
    </message>
    <message>
        <source>Save &amp;picture...</source>
        <translation>Save &amp;picture...</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Save picture</translation>
    </message>
    <message>
        <source>Save &amp;CSV...</source>
        <translation>Save &amp;CSV...</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>Save CSV</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>Channel</translation>
    </message>
    <message>
        <source>Bit rate [bit/s]</source>
        <translation>Bit rate [bit/s]</translation>
    </message>
    <message>
        <source>Data [bit/s]</source>
        <translation>Data [bit/s]</translation>
    </message>
    <message>
        <source>LIN [bit/s]</source>
        <translation>LIN [bit/s]</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>Frames</translation>
    </message>
    <message>
        <source>Least [%]</source>
        <translation>Least [%]</translation>
    </message>
    <message>
        <source>Mean [%]</source>
        <translation>Mean [%]</translation>
    </message>
    <message>
        <source>Greatest [%]</source>
        <translation>Greatest [%]</translation>
    </message>
    <message>
        <source>Steps above</source>
        <translation>Steps above</translation>
    </message>
    <message>
        <source>adding up...</source>
        <translation>adding up...</translation>
    </message>
    <message>
        <source>That is no bit rate: write 500000, 500k or 2M.</source>
        <translation>That is no bit rate: write 500000, 500k or 2M.</translation>
    </message>
    <message>
        <source>Steps of %1, because there are too many.</source>
        <translation>Steps of %1, because there are too many.</translation>
    </message>
    <message>
        <source>There are no frames that have a time.</source>
        <translation>There are no frames that have a time.</translation>
    </message>
    <message>
        <source>No step is above the limit.</source>
        <translation>No step is above the limit.</translation>
    </message>
    <message>
        <source>That was the last one; next comes the first again.</source>
        <translation>That was the last one; next comes the first again.</translation>
    </message>
    <message>
        <source>channel %1 [%]</source>
        <translation>channel %1 [%]</translation>
    </message>
</context>
<context>
    <name>ComparisonModel</name>
    <message>
        <source>Channel</source>
        <translation>Channel</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>What differs</source>
        <translation>What differs</translation>
    </message>
    <message>
        <source>Bytes A</source>
        <translation>Bytes A</translation>
    </message>
    <message>
        <source>Bytes B</source>
        <translation>Bytes B</translation>
    </message>
    <message>
        <source>Count A</source>
        <translation>Count A</translation>
    </message>
    <message>
        <source>Count B</source>
        <translation>Count B</translation>
    </message>
    <message>
        <source>B - A</source>
        <translation>B - A</translation>
    </message>
    <message>
        <source>Rate A [1/s]</source>
        <translation>Rate A [1/s]</translation>
    </message>
    <message>
        <source>Rate B [1/s]</source>
        <translation>Rate B [1/s]</translation>
    </message>
    <message>
        <source>B - A [1/s]</source>
        <translation>B - A [1/s]</translation>
    </message>
    <message>
        <source>Period A [ms]</source>
        <translation>Period A [ms]</translation>
    </message>
    <message>
        <source>Period B [ms]</source>
        <translation>Period B [ms]</translation>
    </message>
    <message>
        <source>B - A [ms]</source>
        <translation>B - A [ms]</translation>
    </message>
    <message>
        <source>Length A</source>
        <translation>Length A</translation>
    </message>
    <message>
        <source>Length B</source>
        <translation>Length B</translation>
    </message>
    <message>
        <source>byte %1</source>
        <translation>byte %1</translation>
    </message>
    <message>
        <source>%1 bit %2</source>
        <translation>%1 bit %2</translation>
    </message>
    <message>
        <source>only in A</source>
        <translation>only in A</translation>
    </message>
    <message>
        <source>only in B</source>
        <translation>only in B</translation>
    </message>
    <message>
        <source>%1 moves in B</source>
        <translation>%1 moves in B</translation>
    </message>
    <message>
        <source>%1 moves in A</source>
        <translation>%1 moves in A</translation>
    </message>
    <message>
        <source>length</source>
        <translation>length</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>rate</translation>
    </message>
    <message>
        <source>period</source>
        <translation>period</translation>
    </message>
    <message>
        <source>error frames</source>
        <translation>error frames</translation>
    </message>
</context>
<context>
    <name>ComparisonWindow</name>
    <message>
        <source>Compare captures</source>
        <translation>Compare captures</translation>
    </message>
    <message>
        <source>S&amp;wap</source>
        <translation>S&amp;wap</translation>
    </message>
    <message>
        <source>all frames</source>
        <translation>all frames</translation>
    </message>
    <message>
        <source>before the marked frame</source>
        <translation>before the marked frame</translation>
    </message>
    <message>
        <source>from the marked frame on</source>
        <translation>from the marked frame on</translation>
    </message>
    <message>
        <source>from a time to a time</source>
        <translation>from a time to a time</translation>
    </message>
    <message>
        <source>start</source>
        <translation>start</translation>
    </message>
    <message>
        <source>end</source>
        <translation>end</translation>
    </message>
    <message>
        <source>Seconds since the start (12.5, 300 ms), a clock time (13:45:06) or a frame's number</source>
        <translation>Seconds since the start (12.5, 300 ms), a clock time (13:45:06) or a frame's number</translation>
    </message>
    <message>
        <source>Only what &amp;differs</source>
        <translation>Only what &amp;differs</translation>
    </message>
    <message>
        <source>&amp;Tell channels apart</source>
        <translation>&amp;Tell channels apart</translation>
    </message>
    <message>
        <source>&amp;Rates and periods differ from:</source>
        <translation>&amp;Rates and periods differ from:</translation>
    </message>
    <message>
        <source>bits that never change, but are not the same in A and B</source>
        <translation>bits that never change, but are not the same in A and B</translation>
    </message>
    <message>
        <source>bits that never change in A, but do in B</source>
        <translation>bits that never change in A, but do in B</translation>
    </message>
    <message>
        <source>bits that never change in B, but do in A</source>
        <translation>bits that never change in B, but do in A</translation>
    </message>
    <message>
        <source>A double click shows the identifier in both captures, and in B the frame in which it is moved.</source>
        <translation>A double click shows the identifier in both captures, and in B the frame in which it is moved.</translation>
    </message>
    <message>
        <source>&amp;Copy all</source>
        <translation>&amp;Copy all</translation>
    </message>
    <message>
        <source>Save CS&amp;V...</source>
        <translation>Save CS&amp;V...</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>Save CSV</translation>
    </message>
    <message>
        <source>Open the captures to compare, and choose them.</source>
        <translation>Open the captures to compare, and choose them.</translation>
    </message>
    <message>
        <source>No frame is marked in %1: select one and press Ctrl+M.</source>
        <translation>No frame is marked in %1: select one and press Ctrl+M.</translation>
    </message>
    <message>
        <source>There is no frame “%1”.</source>
        <translation>There is no frame “%1”.</translation>
    </message>
    <message>
        <source>comparing...</source>
        <translation>comparing...</translation>
    </message>
    <message>
        <source>%1 of %2 identifiers differ; frames: A %3, B %4</source>
        <translation>%1 of %2 identifiers differ; frames: A %3, B %4</translation>
    </message>
    <message>
        <source>, comparing...</source>
        <translation>, comparing...</translation>
    </message>
</context>
<context>
    <name>IdentifierNames</name>
    <message>
        <source>error frames</source>
        <translation>error frames</translation>
    </message>
</context>
<context>
    <name>OverviewActions</name>
    <message>
        <source>Only these</source>
        <translation>Only these</translation>
    </message>
    <message>
        <source>Not these</source>
        <translation>Not these</translation>
    </message>
    <message>
        <source>Histogram of its periods...</source>
        <translation>Histogram of its periods...</translation>
    </message>
</context>
<context>
    <name>PeriodWindow</name>
    <message>
        <source>Periods - %1</source>
        <translation>Periods - %1</translation>
    </message>
    <message>
        <source>Period [ms]</source>
        <translation>Period [ms]</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Count</translation>
    </message>
    <message>
        <source>without outliers</source>
        <translation>without outliers</translation>
    </message>
    <message>
        <source>all periods</source>
        <translation>all periods</translation>
    </message>
    <message>
        <source>automatic</source>
        <translation>automatic</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Logarithmic counts</source>
        <translation>&amp;Logarithmic counts</translation>
    </message>
    <message>
        <source>&amp;Identifier:</source>
        <translation>&amp;Identifier:</translation>
    </message>
    <message>
        <source>&amp;Shown:</source>
        <translation>&amp;Shown:</translation>
    </message>
    <message>
        <source>&amp;Bin width:</source>
        <translation>&amp;Bin width:</translation>
    </message>
    <message>
        <source>A click on a bar shows a frame with such a period, the next click the next one.</source>
        <translation>A click on a bar shows a frame with such a period, the next click the next one.</translation>
    </message>
    <message>
        <source>Save &amp;picture...</source>
        <translation>Save &amp;picture...</translation>
    </message>
    <message>
        <source>Save &amp;CSV...</source>
        <translation>Save &amp;CSV...</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Save picture</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>Save CSV</translation>
    </message>
    <message>
        <source>least</source>
        <translation>least</translation>
    </message>
    <message>
        <source>mean</source>
        <translation>mean</translation>
    </message>
    <message>
        <source>greatest</source>
        <translation>greatest</translation>
    </message>
    <message>
        <source>There are no periods: fewer than two frames that have a time.</source>
        <translation>There are no periods: fewer than two frames that have a time.</translation>
    </message>
    <message>
        <source>%1 periods: least %2 ms, mean %3 ms, greatest %4 ms, standard deviation %5 ms; %6 frames a second; bins of %7 ms</source>
        <translation>%1 periods: least %2 ms, mean %3 ms, greatest %4 ms, standard deviation %5 ms; %6 frames a second; bins of %7 ms</translation>
    </message>
    <message>
        <source>; %1 shorter and %2 longer ones are not shown</source>
        <translation>; %1 shorter and %2 longer ones are not shown</translation>
    </message>
</context>
<context>
    <name>TableText</name>
    <message>
        <source>Copy</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Copy as CSV</source>
        <translation>Copy as CSV</translation>
    </message>
    <message>
        <source>“%1” cannot be written.</source>
        <translation>“%1” cannot be written.</translation>
    </message>
</context>
</TS>
