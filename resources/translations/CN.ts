<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>CTableViewCAN</name>
    <message>
        <source>System Time</source>
        <translation>系统时间</translation>
    </message>
    <message>
        <source>Time Stamp</source>
        <translation>时间戳</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>帧ID</translation>
    </message>
    <message>
        <source>Protocol</source>
        <translation>协议</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>帧格式</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>帧类型</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>数据</translation>
    </message>
    <message>
        <source>Data</source>
        <comment>frame format</comment>
        <translation>数据帧</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
    <message>
        <source>Revice</source>
        <translation>接收</translation>
    </message>
    <message>
        <source>Send successfully</source>
        <translation>发送成功</translation>
    </message>
    <message>
        <source>Send failure</source>
        <translation>发送失败</translation>
    </message>
    <message>
        <source>CANFD Speed</source>
        <translation>CANFD加速</translation>
    </message>
    <message>
        <source>Remote</source>
        <translation>远程帧</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>标准帧</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>扩展帧</translation>
    </message>
</context>
<context>
    <name>GUI_CanDevice</name>
    <message>
        <source>CAN Send</source>
        <translation>CAN发送</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>帧类型：</translation>
    </message>
    <message>
        <source>Frames of send:</source>
        <translation>发送帧数：</translation>
    </message>
    <message>
        <source>ID increase</source>
        <translation>ID递增</translation>
    </message>
    <message>
        <source>Data increase</source>
        <translation>数据递增</translation>
    </message>
    <message>
        <source>Send message</source>
        <translation>发送报文</translation>
    </message>
    <message>
        <source>Saved frames:</source>
        <translation>保存帧数：</translation>
    </message>
    <message>
        <source>Length:</source>
        <translation>数据长度：</translation>
    </message>
    <message>
        <source>Sending cycle:</source>
        <translation>发送周期：</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>帧格式：</translation>
    </message>
    <message>
        <source>Setting cache:</source>
        <translation>缓存帧数：</translation>
    </message>
    <message>
        <source>Protocol:</source>
        <translation>协议：</translation>
    </message>
    <message>
        <source>Data:</source>
        <translation>数据：</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>标准帧</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>扩展帧</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>数据帧</translation>
    </message>
    <message>
        <source>Remote</source>
        <translation>远程帧</translation>
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
        <translation>CANFD加速</translation>
    </message>
    <message>
        <source>CAN function setup</source>
        <translation>CAN功能设置</translation>
    </message>
    <message>
        <source>CAN gateway switch</source>
        <translation>CAN网关开关</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>开启</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>CAN gateway filter</source>
        <translation>CAN网关过滤</translation>
    </message>
    <message>
        <source>Real time saving</source>
        <translation>实时保存</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Send file</source>
        <translation>发送文件</translation>
    </message>
    <message>
        <source>Stop sending</source>
        <translation>停止发送</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Pause receiving</source>
        <translation>暂停接收</translation>
    </message>
    <message>
        <source>Pause sending</source>
        <translation>暂停发送</translation>
    </message>
    <message>
        <source>Send list</source>
        <translation>发送列表</translation>
    </message>
    <message>
        <source>Statistical data</source>
        <translation>统计数据</translation>
    </message>
    <message>
        <source>Frame rate R:</source>
        <translation>接收帧率：</translation>
    </message>
    <message>
        <source>Frame rate T:</source>
        <translation>发送帧率：</translation>
    </message>
    <message>
        <source>Error check:</source>
        <translation>错误检测：</translation>
    </message>
    <message>
        <source>Fold</source>
        <translation>折叠</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>复位</translation>
    </message>
    <message>
        <source>CAN channel Receive Filter ID Setting (Direct frame ID)</source>
        <translation>CAN通道接收过滤ID设置（直接填写帧ID）</translation>
    </message>
    <message>
        <source>Enable</source>
        <translation>启用</translation>
    </message>
    <message>
        <source>Disable</source>
        <translation>禁用</translation>
    </message>
    <message>
        <source>Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: 0x0-0x1FFFFFFF</source>
        <translation>帧ID错误，标准帧有效范围：0x0-0x7FF，扩展帧有效范围：0x0-0x1FFFFFFF</translation>
    </message>
    <message>
        <source>Send stopped</source>
        <translation>发送已停止</translation>
    </message>
    <message>
        <source>Suspend CAN sending</source>
        <translation>已暂停CAN发送</translation>
    </message>
    <message>
        <source>Resume CAN sending</source>
        <translation>已恢复CAN发送</translation>
    </message>
    <message>
        <source>Suspend CAN receiving</source>
        <translation>已暂停CAN接收</translation>
    </message>
    <message>
        <source>Resume CAN receiving</source>
        <translation>已恢复CAN接收</translation>
    </message>
    <message>
        <source>File saved successfully!</source>
        <translation>文件保存成功！</translation>
    </message>
    <message>
        <source>File saving failure!</source>
        <translation>文件保存失败！</translation>
    </message>
    <message>
        <source>The gateway function fails to be enabled!</source>
        <translation>网关功能开启失败！</translation>
    </message>
    <message>
        <source>Successful setting!</source>
        <translation>设置成功！</translation>
    </message>
    <message>
        <source>Setup failure, Please check whether the gateway function is enabled!</source>
        <translation>设置失败，请检查网关功能是否已开启！</translation>
    </message>
    <message>
        <source>Device reset</source>
        <translation>设备已复位</translation>
    </message>
    <message>
        <source>Device reset failure</source>
        <translation>设备复位失败</translation>
    </message>
    <message>
        <source>Send File</source>
        <translation>发送文件</translation>
    </message>
    <message>
        <source>List send</source>
        <translation>列表发送</translation>
    </message>
    <message>
        <source>Frame ID:</source>
        <translation>帧ID：</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>There is no such frame ID, the highest one is 0x1FFFFFFF. No frames are hidden now.</source>
        <translation>不存在这样的帧ID，最大的帧ID为 0x1FFFFFFF。当前不隐藏任何帧。</translation>
    </message>
    <message>
        <source>How many of the newest frames to save, at least 1</source>
        <translation>要保存的最新帧数，至少为 1</translation>
    </message>
    <message>
        <source>The table holds at most %1 frames.
Type a number and press Enter to change it.</source>
        <translation>表格最多容纳 %1 帧。
输入数值并按回车键可更改。</translation>
    </message>
    <message>
        <source>Only .txt and .csv files can be saved in real time.</source>
        <translation>只有 .txt 和 .csv 文件可以实时保存。</translation>
    </message>
</context>
<context>
    <name>ErrorText</name>
    <message>
        <source>Full %1</source>
        <translation>已满 %1</translation>
    </message>
    <message>
        <source>Frames not listed because the table is full: %1</source>
        <translation>因表格已满而未列出的帧：%1</translation>
    </message>
    <message>
        <source>Send %1</source>
        <translation>发送 %1</translation>
    </message>
    <message>
        <source>Frames that the adapter refused to send: %1</source>
        <translation>适配器拒绝发送的帧：%1</translation>
    </message>
    <message>
        <source>Recv %1</source>
        <translation>接收 %1</translation>
    </message>
    <message>
        <source>Errors of the adapter while receiving: %1</source>
        <translation>适配器接收出错的次数：%1</translation>
    </message>
    <message>
        <source>Errors %1</source>
        <translation>错误 %1</translation>
    </message>
    <message>
        <source>Since the table was last cleared:</source>
        <translation>自上次清空表格以来：</translation>
    </message>
</context>
<context>
    <name>GUI_CanGateWay</name>
    <message>
        <source>Gateway filtering rule</source>
        <translation>网关过滤规则</translation>
    </message>
    <message>
        <source>ID:  0x</source>
        <translation>帧ID：0x</translation>
    </message>
    <message>
        <source>Identifier in hexadecimal</source>
        <translation>十六进制ID</translation>
    </message>
    <message>
        <source>Frame type</source>
        <translation>帧类型</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>标准帧</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>扩展帧</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>Forwarded identifiers</source>
        <translation>转发的ID</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancle</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Maximum frame count 64!</source>
        <translation>最多64个帧！</translation>
    </message>
    <message>
        <source>The ID already exists in the list!</source>
        <translation>该ID已在列表中！</translation>
    </message>
    <message>
        <source>Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: 0x0-0x1FFFFFFF</source>
        <translation>帧ID错误，标准帧有效范围：0x0-0x7FF，扩展帧有效范围：0x0-0x1FFFFFFF</translation>
    </message>
</context>
<context>
    <name>GUI_CanSendFile</name>
    <message>
        <source>File name</source>
        <translation>文件名</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>浏览</translation>
    </message>
    <message>
        <source>File type</source>
        <translation>文件类型</translation>
    </message>
    <message>
        <source>Sending parameter</source>
        <translation>发送参数</translation>
    </message>
    <message>
        <source>File type:</source>
        <translation>文件类型：</translation>
    </message>
    <message>
        <source>Frame ID</source>
        <translation>帧ID</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>帧类型：</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>格式：</translation>
    </message>
    <message>
        <source>Count:</source>
        <translation>次数：</translation>
    </message>
    <message>
        <source>Interval:</source>
        <translation>间隔：</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>发送</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>标准帧</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>扩展帧</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>打开文件</translation>
    </message>
    <message>
        <source>CANFD file not supported</source>
        <translation>不支持CANFD文件</translation>
    </message>
    <message>
        <source>File read failure</source>
        <translation>文件读取失败</translation>
    </message>
</context>
<context>
    <name>GUI_CanView</name>
    <message>
        <source>ToolBar</source>
        <translation>工具栏</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Connect to the device</source>
        <translation>连接设备</translation>
    </message>
    <message>
        <source>Open device</source>
        <translation>打开设备</translation>
    </message>
    <message>
        <source>Close device</source>
        <translation>关闭设备</translation>
    </message>
    <message>
        <source>To begin: &quot;%1&quot; &gt; &quot;%2&quot;</source>
        <translation>开始使用：“%1” &gt; “%2”</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Software information</source>
        <translation>软件信息</translation>
    </message>
    <message>
        <source>Device information</source>
        <translation>设备信息</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>Chinese</source>
        <translation>简体中文</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>The current language has changed and takes effect after the restart.</source>
        <translation>界面语言已更改，重启后生效。</translation>
    </message>
    <message>
        <source>Do you wish to restart it now?</source>
        <translation>是否立即重启？</translation>
    </message>
    <message>
        <source>The upgrade program is still running. It will run on, but how it ends will not be shown. Do not unplug the adapter meanwhile.</source>
        <translation>升级程序仍在运行。它会继续运行，但不再显示其结果。在此期间请勿拔出适配器。</translation>
    </message>
    <message>
        <source>Do you wish to end this program now?</source>
        <translation>是否现在退出本程序？</translation>
    </message>
    <message>
        <source>Devices is open</source>
        <translation>设备已打开</translation>
    </message>
    <message>
        <source>No devices!!!</source>
        <translation>没有可用的设备！</translation>
    </message>
    <message>
        <source>Device turned off</source>
        <translation>设备已关闭</translation>
    </message>
    <message>
        <source>New firmware version detected,</source>
        <translation>检测到新的固件版本，</translation>
    </message>
    <message>
        <source>Do you want to go update it now?</source>
        <translation>是否现在前往更新？</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>设备</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>The language could not be stored. Check that &quot;Init.ini&quot; beside the program, or your configuration folder, can be written.</source>
        <translation>语言设置无法保存。请检查程序旁的“Init.ini”或您的配置文件夹是否可写。</translation>
    </message>
</context>
<context>
    <name>AdapterProblem</name>
    <message>
        <source>The adapter library %1 was not found.
Put it beside the program and start the program again.</source>
        <translation>未找到适配器动态库 %1。
请将其放到程序所在目录，然后重新启动程序。</translation>
    </message>
    <message>
        <source>The adapter library %1 is made for another kind of processor; this program needs the %2-bit one.
Put the right library beside the program and start it again.</source>
        <translation>适配器动态库 %1 与本程序的处理器架构不一致，本程序需要 %2 位版本。
请将正确版本的动态库放到程序所在目录，然后重新启动程序。</translation>
    </message>
    <message>
        <source>The adapter library %1 could not be loaded:
%2</source>
        <translation>无法加载适配器动态库 %1：
%2</translation>
    </message>
    <message>
        <source>The adapter library %1 is too old: it lacks %2.
Install the adapter's current library.</source>
        <translation>适配器动态库 %1 版本过旧，缺少 %2。
请安装适配器的最新动态库。</translation>
    </message>
    <message>
        <source>Device %1 could not be opened.
Check that it is plugged in and not used by another program.</source>
        <translation>无法打开设备%1。
请检查设备是否已插好，且未被其他程序占用。</translation>
    </message>
    <message>
        <source>Device %1 does not offer CAN FD.
Open it without a CAN FD bit rate.</source>
        <translation>设备%1不支持CAN FD。
请不选择CANFD波特率再打开。</translation>
    </message>
    <message>
        <source>Device %1, channel %2 is open already.</source>
        <translation>设备%1的通道%2已打开。</translation>
    </message>
    <message>
        <source>Device %1 refused to open channel %2.
Check the bit rate and the other parameters.</source>
        <translation>设备%1拒绝打开通道%2。
请检查波特率和其他参数。</translation>
    </message>
    <message>
        <source>Device %1, channel %2 could not be opened.</source>
        <translation>无法打开设备%1的通道%2。</translation>
    </message>
    <message>
        <source>Device %1 does not answer any more. Was it unplugged?
What was received stays in its tabs and can be saved. To go on, close these tabs, plug it in and open the channels again.</source>
        <translation>设备 %1 不再响应。是否已被拔出？
已接收的内容保留在其标签页中，仍可保存。如要继续，请关闭这些标签页，重新插入设备，再打开通道。</translation>
    </message>
    <message>
        <source>The adapter library %1 is a %2-bit one; this is the %3-bit program.
Put the adapter's %3-bit library beside the program and start it again.</source>
        <translation>适配器动态库 %1 是 %2 位的，而本程序是 %3 位的。
请将适配器的 %3 位动态库放到程序所在目录，然后重新启动程序。</translation>
    </message>
    <message>
        <source>The adapter library %1 is a %2-bit one; this is the %3-bit program.
Install the program that fits: the download with "%4" in its name. Or put the adapter's %3-bit library beside this program and start it again.</source>
        <translation>适配器动态库 %1 是 %2 位的，而本程序是 %3 位的。
请安装与之对应的程序，即名称中带“%4”的下载文件；或者将适配器的 %3 位动态库放到本程序所在目录，然后重新启动程序。</translation>
    </message>
    <message>
        <source>This computer has no CAN interface for it.</source>
        <translation>本机没有与该通道对应的 CAN 接口。</translation>
    </message>
    <message>
        <source>Its interface runs at another bit rate, which this program may not change.</source>
        <translation>其接口正以其他波特率运行，本程序无权更改。</translation>
    </message>
    <message>
        <source>Its interface is in another mode, which this program may not change.</source>
        <translation>其接口处于其他模式，本程序无权更改。</translation>
    </message>
    <message>
        <source>Its interface is down, and this program may not bring it up.</source>
        <translation>其接口未启用，本程序无权启用。</translation>
    </message>
    <message>
        <source>Its interface has no CAN FD.</source>
        <translation>其接口不支持 CAN FD。</translation>
    </message>
    <message>
        <source>This bit rate cannot be set.</source>
        <translation>无法设置此波特率。</translation>
    </message>
    <message>
        <source>This adapter has no LIN.</source>
        <translation>此适配器不支持 LIN。</translation>
    </message>
    <message>
        <source>The system refused it.</source>
        <translation>系统拒绝了该操作。</translation>
    </message>
    <message>
        <source>An administrator can help with this command:
%1</source>
        <translation>管理员可用以下命令解决：
%1</translation>
    </message>
    <message>
        <source>Device %1 could not open channel %2.</source>
        <translation>设备 %1 无法打开通道 %2。</translation>
    </message>
</context>
<context>
    <name>GUI_DeviceInfo</name>
    <message>
        <source>About Device</source>
        <translation>关于设备</translation>
    </message>
    <message>
        <source>Product SN：</source>
        <translation>产品SN：</translation>
    </message>
    <message>
        <source>Firmware version:</source>
        <translation>固件版本：</translation>
    </message>
    <message>
        <source>Check updates</source>
        <translation>检查更新</translation>
    </message>
    <message>
        <source>Updating...</source>
        <translation>正在更新...</translation>
    </message>
    <message>
        <source>Migration</source>
        <translation>迁移</translation>
    </message>
    <message>
        <source>New version detected</source>
        <translation>检测到新版本</translation>
    </message>
    <message>
        <source>Do you wish to update it now?</source>
        <translation>是否立即更新？</translation>
    </message>
    <message>
        <source>The upgrade program has crashed.</source>
        <translation>升级程序已崩溃。</translation>
    </message>
    <message>
        <source>The upgrade program cannot be started.</source>
        <translation>无法启动升级程序。</translation>
    </message>
    <message>
        <source>No device was found. Connect it and open this window again.</source>
        <translation>未找到设备。请连接设备后重新打开此窗口。</translation>
    </message>
    <message>
        <source>No firmware is published for this device.</source>
        <translation>没有适用于此设备的固件。</translation>
    </message>
    <message>
        <source>Network connection exception!</source>
        <translation>网络连接异常！</translation>
    </message>
    <message>
        <source>Server request failed!</source>
        <translation>服务器请求失败！</translation>
    </message>
    <message>
        <source>Congratulations, This is the latest version!</source>
        <translation>恭喜，当前已是最新版本！</translation>
    </message>
    <message>
        <source>The firmware cannot be downloaded: its address names no file.</source>
        <translation>无法下载固件：其地址不含文件名。</translation>
    </message>
    <message>
        <source>The firmware could not be downloaded.</source>
        <translation>固件下载失败。</translation>
    </message>
    <message>
        <source>The firmware was refused and not installed.</source>
        <translation>该固件已被拒绝，未安装。</translation>
    </message>
    <message>
        <source>It is older than V%1, which the device has.</source>
        <translation>该版本比设备中的 V%1 更旧。</translation>
    </message>
</context>
<context>
    <name>GUI_SoftwareInfo</name>
    <message>
        <source>About Software</source>
        <translation>关于软件</translation>
    </message>
    <message>
        <source>Software name:</source>
        <translation>软件名称：</translation>
    </message>
    <message>
        <source>Software version:</source>
        <translation>软件版本：</translation>
    </message>
    <message>
        <source>Technical support:</source>
        <translation>技术支持：</translation>
    </message>
    <message>
        <source>Check updates</source>
        <translation>检查更新</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>正在检查...</translation>
    </message>
</context>
<context>
    <name>GUI_LINDevice</name>
    <message>
        <source>List mode</source>
        <translation>列表模式</translation>
    </message>
    <message>
        <source>Monitor mode</source>
        <translation>监听模式</translation>
    </message>
    <message>
        <source>Developer mode</source>
        <translation>开发者模式</translation>
    </message>
    <message>
        <source>LIN Baudrate:</source>
        <translation>LIN波特率：</translation>
    </message>
    <message>
        <source>Checksum:</source>
        <translation>校验：</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Standard checksum</source>
        <translation>标准校验</translation>
    </message>
    <message>
        <source>Enhanced checksum</source>
        <translation>增强校验</translation>
    </message>
    <message>
        <source>Switchover failure</source>
        <translation>切换失败</translation>
    </message>
    <message>
        <source>Switchover successful</source>
        <translation>切换成功</translation>
    </message>
    <message>
        <source>Baudrate in force: %1</source>
        <translation>当前生效的波特率：%1</translation>
    </message>
</context>
<context>
    <name>GUI_LINModeList</name>
    <message>
        <source>Parameter setting</source>
        <translation>参数设置</translation>
    </message>
    <message>
        <source>Frame count:</source>
        <translation>帧数量：</translation>
    </message>
    <message>
        <source>Display mode:</source>
        <translation>显示模式：</translation>
    </message>
    <message>
        <source>Dynamic display</source>
        <translation>动态显示</translation>
    </message>
    <message>
        <source>Static display</source>
        <translation>静态显示</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>数据</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>Interval</source>
        <translation>间隔</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>发送</translation>
    </message>
    <message>
        <source>Revice</source>
        <translation>接收</translation>
    </message>
    <message>
        <source>The ID is out of range, Error line</source>
        <translation>ID超出范围，错误行</translation>
    </message>
    <message>
        <source>Valid ID range: 0x0-0x3F</source>
        <translation>有效ID范围：0x0-0x3F</translation>
    </message>
    <message>
        <source>The data length is out of range, Error line</source>
        <translation>数据长度超出范围，错误行</translation>
    </message>
    <message>
        <source>The interval is out of range, Error line</source>
        <translation>间隔超出范围，错误行</translation>
    </message>
    <message>
        <source>The data is not valid, Error line</source>
        <translation>数据无效，错误行</translation>
    </message>
</context>
<context>
    <name>LINFrameModel</name>
    <message>
        <source>System Time</source>
        <translation>系统时间</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>数据</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>校验</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Revice</source>
        <translation>接收</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>发送</translation>
    </message>
    <message>
        <source>Error state</source>
        <translation>状态错误</translation>
    </message>
    <message>
        <source>Error checksum</source>
        <translation>校验和错误</translation>
    </message>
</context>
<context>
    <name>LINModePage</name>
    <message>
        <source>Communication error</source>
        <translation>通信错误</translation>
    </message>
</context>
<context>
    <name>LINTablePage</name>
    <message>
        <source>Csv File(*.csv)</source>
        <translation>CSV文件(*.csv)</translation>
    </message>
    <message>
        <source>Save successfully</source>
        <translation>保存成功</translation>
    </message>
    <message>
        <source>Save failure</source>
        <translation>保存失败</translation>
    </message>
</context>
<context>
    <name>MigrationWidget</name>
    <message>
        <source>Migration</source>
        <translation>迁移</translation>
    </message>
    <message>
        <source>Result:</source>
        <translation>结果：</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Device migration operation description</source>
        <translation>设备迁移操作说明</translation>
    </message>
    <message>
        <source>Firmware version less than</source>
        <translation>适用于固件版本低于</translation>
    </message>
    <message>
        <source>Do not power off during the upgrade</source>
        <translation>升级过程中请勿断电</translation>
    </message>
    <message>
        <source>If the operation fails, remove and reinsert the device and try again</source>
        <translation>如果操作失败，请拔出并重新插入设备后重试</translation>
    </message>
</context>
<context>
    <name>PlotCurveList</name>
    <message>
        <source>Curves</source>
        <translation>曲线</translation>
    </message>
    <message>
        <source>Curve</source>
        <translation>曲线</translation>
    </message>
    <message>
        <source>At cursor</source>
        <translation>光标处</translation>
    </message>
    <message>
        <source>At second</source>
        <translation>第二光标处</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>差值</translation>
    </message>
    <message>
        <source>Pane</source>
        <translation>窗格</translation>
    </message>
    <message>
        <source>Color...</source>
        <translation>颜色...</translation>
    </message>
    <message>
        <source>To the pane above</source>
        <translation>移到上面的窗格</translation>
    </message>
    <message>
        <source>To the pane below</source>
        <translation>移到下面的窗格</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
</context>
<context>
    <name>PlotExport</name>
    <message>
        <source>It was stopped.</source>
        <translation>已停止。</translation>
    </message>
</context>
<context>
    <name>PlotExpression</name>
    <message>
        <source>A step is from 1ns to a day: 100ms.</source>
        <translation>步长为 1ns 到一天，例如 100ms。</translation>
    </message>
    <message>
        <source>A step of time, such as 100ms, or “of” comes here.</source>
        <translation>这里应为时间步长（例如 100ms）或“of”。</translation>
    </message>
</context>
<context>
    <name>PlotPane</name>
    <message>
        <source>Plot</source>
        <translation>曲线图</translation>
    </message>
</context>
<context>
    <name>PlotPanel</name>
    <message>
        <source>The plots are in a window of their own.</source>
        <translation>曲线图在单独的窗口中。</translation>
    </message>
    <message>
        <source>These are as many curves as there can be.</source>
        <translation>曲线数量已达上限。</translation>
    </message>
    <message>
        <source>Cursor: %1</source>
        <translation>光标：%1</translation>
    </message>
    <message>
        <source>Second: %1</source>
        <translation>第二光标：%1</translation>
    </message>
    <message>
        <source>Difference: %1</source>
        <translation>差值：%1</translation>
    </message>
    <message>
        <source>Save the plots</source>
        <translation>保存曲线图</translation>
    </message>
    <message>
        <source>Picture (*.png)</source>
        <translation>图片 (*.png)</translation>
    </message>
    <message>
        <source>Document (*.pdf)</source>
        <translation>文档 (*.pdf)</translation>
    </message>
    <message>
        <source>Table (*.csv)</source>
        <translation>表格 (*.csv)</translation>
    </message>
    <message>
        <source>Saving %1</source>
        <translation>正在保存 %1</translation>
    </message>
    <message>
        <source>%1 was saved.</source>
        <translation>%1 已保存。</translation>
    </message>
    <message>
        <source>%1 was not saved: %2</source>
        <translation>%1 未能保存：%2</translation>
    </message>
    <message>
        <source>Plot</source>
        <translation>绘制曲线</translation>
    </message>
    <message>
        <source>Frames a second</source>
        <translation>每秒帧数</translation>
    </message>
    <message>
        <source>Byte %1</source>
        <translation>字节 %1</translation>
    </message>
    <message>
        <source>Plots</source>
        <translation>曲线图</translation>
    </message>
    <message>
        <source>The curves cannot be kept for the next time.</source>
        <translation>无法保存曲线设置供下次使用。</translation>
    </message>
</context>
<context>
    <name>PlottedCurves</name>
    <message>
        <source>Memory is full; not all of it is drawn.</source>
        <translation>内存已满，曲线不完整。</translation>
    </message>
</context>
<context>
    <name>PlotTools</name>
    <message>
        <source>Back</source>
        <translation>后退</translation>
    </message>
    <message>
        <source>The view before (Alt+Left)</source>
        <translation>上一个视图 (Alt+Left)</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>前进</translation>
    </message>
    <message>
        <source>The view behind (Alt+Right)</source>
        <translation>下一个视图 (Alt+Right)</translation>
    </message>
    <message>
        <source>Zooms in (+, or the wheel)</source>
        <translation>放大（+ 或滚轮）</translation>
    </message>
    <message>
        <source>Zooms out (-, or the wheel)</source>
        <translation>缩小（- 或滚轮）</translation>
    </message>
    <message>
        <source>Whole capture</source>
        <translation>整个记录</translation>
    </message>
    <message>
        <source>Shows the whole capture (W)</source>
        <translation>显示整个记录 (W)</translation>
    </message>
    <message>
        <source>Fit values</source>
        <translation>数值自适应</translation>
    </message>
    <message>
        <source>Scales of values follow what is shown (A). Ctrl+wheel, or the wheel over a scale, makes them fixed.</source>
        <translation>数值刻度随显示内容自动调整 (A)。Ctrl+滚轮，或在刻度上滚动滚轮，可将其固定。</translation>
    </message>
    <message>
        <source>Clock</source>
        <translation>时钟</translation>
    </message>
    <message>
        <source>Times as the clock shows them instead of since the start</source>
        <translation>显示时钟时间，而不是从开始计起的时间</translation>
    </message>
    <message>
        <source>Own window</source>
        <translation>单独窗口</translation>
    </message>
    <message>
        <source>Takes the plots out into a window of their own</source>
        <translation>把曲线图移到单独的窗口</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>What is &amp;shown...</source>
        <translation>当前显示的部分(&amp;S)...</translation>
    </message>
    <message>
        <source>The &amp;whole capture...</source>
        <translation>整个记录(&amp;W)...</translation>
    </message>
</context>
<context>
    <name>TimeTicks</name>
    <message>
        <source>%1 d</source>
        <translation>%1 天</translation>
    </message>
</context>
<context>
    <name>UpgradeProcess</name>
    <message>
        <source>Device upgrade succeeded</source>
        <translation>设备升级成功</translation>
    </message>
    <message>
        <source>File cannot be accessed</source>
        <translation>文件无法访问</translation>
    </message>
    <message>
        <source>Hardware version does not match</source>
        <translation>硬件版本不匹配</translation>
    </message>
    <message>
        <source>No old device was found</source>
        <translation>未找到旧设备</translation>
    </message>
    <message>
        <source>Enter BootLoader failed</source>
        <translation>进入BootLoader失败</translation>
    </message>
    <message>
        <source>Version read failed</source>
        <translation>版本读取失败</translation>
    </message>
    <message>
        <source>Flash erasing failed</source>
        <translation>Flash擦除失败</translation>
    </message>
    <message>
        <source>Data send failed</source>
        <translation>数据发送失败</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>未知错误</translation>
    </message>
    <message>
        <source>The upgrade program is still running. Wait until it has ended, and do not unplug the adapter meanwhile.</source>
        <translation>升级程序仍在运行。请等待其结束，在此期间请勿拔出适配器。</translation>
    </message>
</context>
<context>
    <name>PopupWidget</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>ValueEdit</name>
    <message>
        <source>Plot, such as  data[0] &lt;&lt; 8 | data[1] of id == 0x123</source>
        <translation>绘制，例如  data[0] &lt;&lt; 8 | data[1] of id == 0x123</translation>
    </message>
    <message>
        <source>A signal, a number of each frame, or “rate”; behind the word “of” a filter for the frames:
Speed
data[0] &lt;&lt; 8 | data[1] of id == 0x123
rate of error
rate 100ms of id == 0x123 and dir == tx</source>
        <translation>信号、每帧的一个数值或“rate”（帧率）；在“of”之后是帧的过滤条件：
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
        <translation>保存文件</translation>
    </message>
</context>
<context>
    <name>CMessageBox</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>SaveAll</source>
        <translation>全部保存</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>YesToAll</source>
        <translation>全部选是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>NoToAll</source>
        <translation>全部选否</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>中止</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>忽略</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>不保存</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>重置</translation>
    </message>
    <message>
        <source>RestoreDefaults</source>
        <translation>恢复默认设置</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>询问</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>成功</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
</context>
<context>
    <name>CNotice</name>
    <message>
        <source>Information</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>询问</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>成功</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
</context>
<context>
    <name>CHexEditView</name>
    <message>
        <source>Edit data</source>
        <translation>编辑数据</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>Byte</source>
        <translation>字节</translation>
    </message>
    <message>
        <source>Bytes per line</source>
        <translation>每行字节数</translation>
    </message>
    <message>
        <source>Data bytes</source>
        <translation>数据字节</translation>
    </message>
</context>
<context>
    <name>CHexLineEdit</name>
    <message>
        <source>Data bytes in hexadecimal</source>
        <translation>十六进制数据字节</translation>
    </message>
    <message>
        <source>Edit data</source>
        <translation>编辑数据</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
</context>
<context>
    <name>CaptureFormat</name>
    <message>
        <source>CAN File(*.can)</source>
        <translation>CAN文件(*.can)</translation>
    </message>
    <message>
        <source>CAN(*.can)</source>
        <translation>CAN文件(*.can)</translation>
    </message>
    <message>
        <source>CANFD File(*.canfd)</source>
        <translation>CANFD文件(*.canfd)</translation>
    </message>
    <message>
        <source>CANFD(*.canfd)</source>
        <translation>CANFD文件(*.canfd)</translation>
    </message>
    <message>
        <source>Csv File(*.csv)</source>
        <translation>CSV文件(*.csv)</translation>
    </message>
    <message>
        <source>CSV File(*.csv)</source>
        <translation>CSV文件(*.csv)</translation>
    </message>
    <message>
        <source>Csv(*.csv)</source>
        <translation>CSV文件(*.csv)</translation>
    </message>
    <message>
        <source>Text File(*.txt)</source>
        <translation>文本文件(*.txt)</translation>
    </message>
    <message>
        <source>Text(*.txt)</source>
        <translation>文本文件(*.txt)</translation>
    </message>
</context>
<context>
    <name>GUI_CanAdvancedOpearation</name>
    <message>
        <source>All</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Invert</source>
        <translation>反选</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Send list</source>
        <translation>发送列表</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>序号</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>帧ID</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>数据</translation>
    </message>
    <message>
        <source>Frame count</source>
        <translation>帧数</translation>
    </message>
    <message>
        <source>Send count</source>
        <translation>发送次数</translation>
    </message>
    <message>
        <source>Interval</source>
        <translation>间隔</translation>
    </message>
    <message>
        <source>Send mode</source>
        <translation>发送模式</translation>
    </message>
    <message>
        <source>Repeat</source>
        <translation>重复</translation>
    </message>
    <message>
        <source>Print to table</source>
        <translation>打印到表格</translation>
    </message>
    <message>
        <source>List send</source>
        <translation>列表发送</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Parallel send mode</source>
        <translation>并行发送模式</translation>
    </message>
    <message>
        <source>Order send mode</source>
        <translation>顺序发送模式</translation>
    </message>
    <message>
        <source>The send list is empty</source>
        <translation>发送列表为空</translation>
    </message>
    <message>
        <source>Please check the items you want to send</source>
        <translation>请勾选要发送的项</translation>
    </message>
    <message>
        <source>Please select the delete item first</source>
        <translation>请先选择要删除的项</translation>
    </message>
    <message>
        <source>Not available in this version</source>
        <translation>此版本暂不提供</translation>
    </message>
</context>
<context>
    <name>WidgetDelegateCAN</name>
    <message>
        <source>Standard</source>
        <translation>标准帧</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>扩展帧</translation>
    </message>
</context>
<context>
    <name>GUI_CanScanBaudrate</name>
    <message>
        <source>Auto scan baudrate</source>
        <translation>自动扫描波特率</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>扫描</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>Baudrate</source>
        <translation>波特率</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>Effective baudrate</source>
        <translation>有效波特率</translation>
    </message>
    <message>
        <source>Invalid baudrate</source>
        <translation>无效波特率</translation>
    </message>
    <message>
        <source>No devices</source>
        <translation>没有可用的设备</translation>
    </message>
    <message>
        <source>Another scan is running</source>
        <translation>已有扫描正在进行</translation>
    </message>
    <message>
        <source>Both CAN channels are in use</source>
        <translation>两个CAN通道均已被占用</translation>
    </message>
    <message>
        <source>Device open failed</source>
        <translation>设备打开失败</translation>
    </message>
    <message>
        <source>The scan was interrupted</source>
        <translation>扫描已中断</translation>
    </message>
    <message>
        <source>CANFD baudrate: %1</source>
        <translation>CANFD波特率：%1</translation>
    </message>
    <message>
        <source>%1, CANFD %2</source>
        <translation>%1，CANFD波特率 %2</translation>
    </message>
    <message>
        <source>Trying %1</source>
        <translation>正在尝试 %1</translation>
    </message>
    <message>
        <source>No baudrate found</source>
        <translation>未找到波特率</translation>
    </message>
    <message>
        <source>Not all baudrates tried, none found</source>
        <translation>扫描未完成，尚未找到波特率</translation>
    </message>
    <message>
        <source>Found: %1</source>
        <translation>已找到：%1</translation>
    </message>
</context>
<context>
    <name>GUI_CanDeviceParam</name>
    <message>
        <source>Parameter validation</source>
        <translation>参数确认</translation>
    </message>
    <message>
        <source>CAN parameters</source>
        <translation>CAN参数</translation>
    </message>
    <message>
        <source>LIN parameters</source>
        <translation>LIN参数</translation>
    </message>
    <message>
        <source>Device index:</source>
        <translation>设备索引：</translation>
    </message>
    <message>
        <source>CAN channal:</source>
        <translation>CAN通道：</translation>
    </message>
    <message>
        <source>LIN channal:</source>
        <translation>LIN通道：</translation>
    </message>
    <message>
        <source>Acc code:</source>
        <translation>验收码：</translation>
    </message>
    <message>
        <source>Acc mask:</source>
        <translation>屏蔽码：</translation>
    </message>
    <message>
        <source>Filter mode:</source>
        <translation>滤波方式：</translation>
    </message>
    <message>
        <source> BTR0/1:</source>
        <translation>定时器BTR0/1：</translation>
    </message>
    <message>
        <source>(Hex)</source>
        <translation>（十六进制）</translation>
    </message>
    <message>
        <source>Operating mode:</source>
        <translation>工作模式：</translation>
    </message>
    <message>
        <source>CAN baudrate:</source>
        <translation>CAN波特率：</translation>
    </message>
    <message>
        <source>CANFD baudrate:</source>
        <translation>CANFD波特率：</translation>
    </message>
    <message>
        <source>Filter configuration tool</source>
        <translation>滤波配置工具</translation>
    </message>
    <message>
        <source>Open all CAN channel</source>
        <translation>打开所有通道</translation>
    </message>
    <message>
        <source>Scan baudrate</source>
        <translation>扫描波特率</translation>
    </message>
    <message>
        <source>Checksum:</source>
        <translation>校验和：</translation>
    </message>
    <message>
        <source>Baudrate:</source>
        <translation>波特率：</translation>
    </message>
    <message>
        <source>LIN Setup</source>
        <translation>LIN设置</translation>
    </message>
    <message>
        <source>LIN setup</source>
        <translation>LIN设置</translation>
    </message>
    <message>
        <source>CAN setup</source>
        <translation>CAN设置</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>自定义</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>Listen</source>
        <translation>只听</translation>
    </message>
    <message>
        <source>Receive all</source>
        <translation>接收所有</translation>
    </message>
    <message>
        <source>Standard checksum</source>
        <translation>标准校验</translation>
    </message>
    <message>
        <source>Enhanced checksum</source>
        <translation>增强校验</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>设备</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>BTR0</source>
        <translation>定时器BTR0</translation>
    </message>
    <message>
        <source>BTR1</source>
        <translation>定时器BTR1</translation>
    </message>
    <message>
        <source>No adapter found. Connect one and open this dialog again.</source>
        <translation>未发现设备，请连接设备后重新打开此对话框。</translation>
    </message>
    <message>
        <source>All CAN channels are open already.</source>
        <translation>所有CAN通道均已打开。</translation>
    </message>
    <message>
        <source>All LIN channels are open already.</source>
        <translation>所有LIN通道均已打开。</translation>
    </message>
</context>
<context>
    <name>GUI_CanFilterTool</name>
    <message>
        <source>Filter configuration tool</source>
        <translation>滤波配置工具</translation>
    </message>
    <message>
        <source>Identifiers to receive</source>
        <translation>要接收的帧ID</translation>
    </message>
    <message>
        <source>Frame type</source>
        <translation>帧类型</translation>
    </message>
    <message>
        <source>From:</source>
        <translation>从：</translation>
    </message>
    <message>
        <source>To (optional):</source>
        <translation>到（可不填）：</translation>
    </message>
    <message>
        <source>(Hex)</source>
        <translation>（十六进制）</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>帧类型</translation>
    </message>
    <message>
        <source>From</source>
        <translation>起始ID</translation>
    </message>
    <message>
        <source>To</source>
        <translation>结束ID</translation>
    </message>
    <message>
        <source>Acceptance filter</source>
        <translation>验收滤波</translation>
    </message>
    <message>
        <source>Acc code:</source>
        <translation>验收码：</translation>
    </message>
    <message>
        <source>Acc mask:</source>
        <translation>屏蔽码：</translation>
    </message>
    <message>
        <source>Others that pass:</source>
        <translation>其他可通过的ID：</translation>
    </message>
    <message>
        <source>Test an identifier</source>
        <translation>测试帧ID</translation>
    </message>
    <message>
        <source>Identifier</source>
        <translation>帧ID</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>标准帧</translation>
    </message>
    <message>
        <source>Extend</source>
        <translation>扩展帧</translation>
    </message>
    <message>
        <source>Standard: %1, extended: %2</source>
        <translation>标准帧：%1，扩展帧：%2</translation>
    </message>
    <message>
        <source>An empty list lets everything pass.</source>
        <translation>列表为空时接收所有帧。</translation>
    </message>
    <message>
        <source>Such standard frames pass or not, depending on their data.</source>
        <translation>这些标准帧能否通过取决于其数据。</translation>
    </message>
    <message>
        <source>Extended identifiers: 0 to 1FFFFFFF, hexadecimal</source>
        <translation>扩展帧ID：0到1FFFFFFF，十六进制</translation>
    </message>
    <message>
        <source>Standard identifiers: 0 to 7FF, hexadecimal</source>
        <translation>标准帧ID：0到7FF，十六进制</translation>
    </message>
    <message>
        <source>The first identifier of the range is above the last one</source>
        <translation>起始ID大于结束ID</translation>
    </message>
    <message>
        <source>Already in the list</source>
        <translation>已在列表中</translation>
    </message>
    <message>
        <source>The list is full: %1 entries</source>
        <translation>列表已满：%1条</translation>
    </message>
    <message>
        <source>Does not pass</source>
        <translation>不能通过</translation>
    </message>
    <message>
        <source>Passes or not, depending on its data</source>
        <translation>能否通过取决于其数据</translation>
    </message>
    <message>
        <source>Passes</source>
        <translation>可以通过</translation>
    </message>
</context>
<context>
    <name>GUI_LINModeMonitor</name>
    <message>
        <source>Monitor Parameter Settings</source>
        <translation>监听参数设置</translation>
    </message>
    <message>
        <source>Monitor mode:</source>
        <translation>监听模式：</translation>
    </message>
    <message>
        <source>Display mode:</source>
        <translation>显示模式：</translation>
    </message>
    <message>
        <source>Fixed ID Settings</source>
        <translation>固定ID设置</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Fixed ID</source>
        <translation>固定ID</translation>
    </message>
    <message>
        <source>Bus monitoring</source>
        <translation>总线监听</translation>
    </message>
    <message>
        <source>Dynamic display</source>
        <translation>动态显示</translation>
    </message>
    <message>
        <source>Static display</source>
        <translation>静态显示</translation>
    </message>
</context>
<context>
    <name>GUI_LINModeDeveloper</name>
    <message>
        <source>Communication parameter area</source>
        <translation>通信参数区</translation>
    </message>
    <message>
        <source>Length:</source>
        <translation>数据长度：</translation>
    </message>
    <message>
        <source>Data:</source>
        <translation>数据：</translation>
    </message>
    <message>
        <source>Calculation parameter</source>
        <translation>计算参数</translation>
    </message>
    <message>
        <source>Checksum:</source>
        <translation>校验：</translation>
    </message>
    <message>
        <source>Automatic slave recognition</source>
        <translation>自动识别从机</translation>
    </message>
    <message>
        <source>Timed receiving interval(ms):</source>
        <translation>定时接收间隔(ms)：</translation>
    </message>
    <message>
        <source>Playback count:</source>
        <translation>回放次数：</translation>
    </message>
    <message>
        <source>Mask send ID</source>
        <translation>屏蔽发送ID</translation>
    </message>
    <message>
        <source>Import data</source>
        <translation>导入数据</translation>
    </message>
    <message>
        <source>Send status:</source>
        <translation>发送状态：</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Cycle</source>
        <translation>次循环</translation>
    </message>
    <message>
        <source>The data is not valid</source>
        <translation>数据无效</translation>
    </message>
    <message>
        <source>Open CSV File</source>
        <translation>打开CSV文件</translation>
    </message>
    <message>
        <source>CSV files (*.csv)</source>
        <translation>CSV文件 (*.csv)</translation>
    </message>
    <message>
        <source>Please import data first</source>
        <translation>请先导入数据</translation>
    </message>
    <message>
        <source>Import failure</source>
        <translation>导入失败</translation>
    </message>
</context>
<context>
    <name>WindowMessages</name>
    <message>
        <source>Tips</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Further messages not shown: %1</source>
        <translation>另有 %1 条消息未显示</translation>
    </message>
</context>
<context>
    <name>FileDownload</name>
    <message>
        <source>The address of the file cannot be used.</source>
        <translation>文件地址无效。</translation>
    </message>
    <message>
        <source>The file on the server is empty.</source>
        <translation>服务器上的文件为空。</translation>
    </message>
    <message>
        <source>The file on the server is too large.</source>
        <translation>服务器上的文件过大。</translation>
    </message>
    <message>
        <source>The connection ended before the file was complete.</source>
        <translation>文件尚未下载完整，连接已断开。</translation>
    </message>
    <message>
        <source>The server does not answer any more.</source>
        <translation>服务器不再响应。</translation>
    </message>
    <message>
        <source>The file cannot be written: %1</source>
        <translation>无法写入文件：%1</translation>
    </message>
    <message>
        <source>The file on the server is not the one that was signed.</source>
        <translation>服务器上的文件不是经过签名的文件。</translation>
    </message>
</context>
<context>
    <name>GUI_Update</name>
    <message>
        <source>This is the latest version</source>
        <translation>当前已是最新版本</translation>
    </message>
    <message>
        <source>Check upgrade failure</source>
        <translation>检查升级失败</translation>
    </message>
    <message>
        <source>New version detected</source>
        <translation>检测到新版本</translation>
    </message>
    <message>
        <source>You are advised to check that the network connection is normal and try again</source>
        <translation>建议您检查网络连接是否正常，然后重试</translation>
    </message>
    <message>
        <source>You can choose to download the installation package from the official website</source>
        <translation>您也可以从官方网站下载安装包</translation>
    </message>
    <message>
        <source>About this version</source>
        <translation>版本说明</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>upgrade</source>
        <translation>立即升级</translation>
    </message>
    <message>
        <source>Exit upgrade</source>
        <translation>退出升级</translation>
    </message>
</context>
<context>
    <name>SoftwareUpdate</name>
    <message>
        <source>Current version</source>
        <translation>当前版本</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>请稍候</translation>
    </message>
    <message>
        <source>Downloading a new version of the program</source>
        <translation>正在下载新版本程序</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>The new version could not be downloaded.</source>
        <translation>新版本下载失败。</translation>
    </message>
    <message>
        <source>The program that installs the new version cannot be started. The new version lies in:</source>
        <translation>无法启动安装新版本的程序。新版本位于：</translation>
    </message>
    <message>
        <source>Tips</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The new version was refused and not installed.</source>
        <translation>新版本已被拒绝，未安装。</translation>
    </message>
</context>
<context>
    <name>SingleInstance</name>
    <message>
        <source>The system gives no shared memory.</source>
        <translation>系统无法提供共享内存。</translation>
    </message>
    <message>
        <source>The lock file %1 cannot be written.</source>
        <translation>锁文件 %1 无法写入。</translation>
    </message>
    <message>
        <source>Check that the folder for temporary files exists and that you may write to it.</source>
        <translation>请检查临时文件夹是否存在，以及您是否有写入权限。</translation>
    </message>
    <message>
        <source>The lock file %1 stands in the way, and no running X9CAN holds it.</source>
        <translation>锁文件 %1 阻碍了程序启动，且没有正在运行的 X9CAN 占用它。</translation>
    </message>
    <message>
        <source>Remove it and start the program again.</source>
        <translation>请删除它，然后重新启动程序。</translation>
    </message>
    <message>
        <source>Tips</source>
        <translation>提示</translation>
    </message>
</context>
<context>
    <name>SignedDownload</name>
    <message>
        <source>Its signature cannot be downloaded: %1</source>
        <translation>无法下载其签名：%1</translation>
    </message>
    <message>
        <source>The key for updates that this program was built with cannot be used.</source>
        <translation>编译本程序时设定的更新公钥无法使用。</translation>
    </message>
    <message>
        <source>What the server sends as its signature is not one.</source>
        <translation>服务器提供的签名文件不是签名。</translation>
    </message>
    <message>
        <source>It was signed with another key.</source>
        <translation>它是用另一个密钥签名的。</translation>
    </message>
    <message>
        <source>Its signature was changed or forged.</source>
        <translation>其签名被改动过或是伪造的。</translation>
    </message>
</context>
<context>
    <name>OfferedPackage</name>
    <message>
        <source>Its signature is for something else: %1</source>
        <translation>其签名属于另一个文件：%1</translation>
    </message>
    <message>
        <source>It is version %1; what was offered is version %2.</source>
        <translation>其版本是 %1，而服务器提供的是版本 %2。</translation>
    </message>
    <message>
        <source>It is version %1, which is not newer than this program, version %2.</source>
        <translation>其版本是 %1，并不比本程序的版本 %2 新。</translation>
    </message>
    <message>
        <source>It is the package for %1; this program needs the one for %2.</source>
        <translation>这是 %1 的软件包，本程序需要 %2 的软件包。</translation>
    </message>
</context>
<context>
    <name>FindingTexts</name>
    <message>
        <source>no frame of a bus: skipped</source>
        <translation>不是总线帧，已跳过</translation>
    </message>
    <message>
        <source>damaged line: skipped</source>
        <translation>该行已损坏，已跳过</translation>
    </message>
    <message>
        <source>fewer bytes than the length says: frame skipped</source>
        <translation>字节数少于长度所示，该帧已跳过</translation>
    </message>
    <message>
        <source>damaged: skipped up to the next record</source>
        <translation>已损坏，跳到下一条记录</translation>
    </message>
    <message>
        <source>the file ends within a record</source>
        <translation>文件在一条记录中间结束</translation>
    </message>
    <message>
        <source>damaged compressed data: the rest of the container skipped</source>
        <translation>压缩数据已损坏，容器的其余部分已跳过</translation>
    </message>
    <message>
        <source>unknown compression: container skipped</source>
        <translation>未知的压缩方式，容器已跳过</translation>
    </message>
    <message>
        <source>container holds another number of bytes than it says</source>
        <translation>容器中的字节数与其所示不符</translation>
    </message>
    <message>
        <source>request to send, no frame: skipped</source>
        <translation>发送请求，不是帧，已跳过</translation>
    </message>
    <message>
        <source>kind of the error not written: this kind of file does not tell it</source>
        <translation>未写入错误的种类：此类文件不区分</translation>
    </message>
    <message>
        <source>data of a LIN frame with an error not written: this kind of file has none</source>
        <translation>未写入出错的 LIN 帧的数据：此类文件没有</translation>
    </message>
    <message>
        <source>length %1 is none of CAN FD: padded to %2</source>
        <translation>CAN FD 没有长度 %1，已补足到 %2</translation>
    </message>
    <message>
        <source>the output is a pipe: the file&apos;s size, counts and end time are left out of its header</source>
        <translation>输出是管道：文件头中没有文件大小、数量和结束时间</translation>
    </message>
    <message>
        <source>the file&apos;s header is damaged</source>
        <translation>文件头已损坏</translation>
    </message>
    <message>
        <source>unknown version of the format: read as the latest known</source>
        <translation>未知的格式版本，按已知的最新版本读取</translation>
    </message>
    <message>
        <source>time beyond the year 2262: left out</source>
        <translation>时间超出 2262 年，已略去</translation>
    </message>
</context>
<context>
    <name>TimeOrigin</name>
    <message>
        <source>frame without a time: written with that of the one before</source>
        <translation>帧没有时间，按前一帧的时间写入</translation>
    </message>
    <message>
        <source>time beyond the year 2262: written with that of the frame before</source>
        <translation>时间超出 2262 年，按前一帧的时间写入</translation>
    </message>
    <message>
        <source>time before the capture&apos;s start: written as the start</source>
        <translation>时间早于记录的开始，按开始时间写入</translation>
    </message>
</context>
<context>
    <name>CanFdFormat</name>
    <message>
        <source>the header is missing</source>
        <translation>缺少文件头</translation>
    </message>
    <message>
        <source>%1 bytes that are no records</source>
        <translation>有 %1 个字节不是记录</translation>
    </message>
    <message>
        <source>bits are set that have no meaning</source>
        <translation>设置了没有含义的位</translation>
    </message>
</context>
<context>
    <name>CanFormat</name>
    <message>
        <source>the header is missing</source>
        <translation>缺少文件头</translation>
    </message>
    <message>
        <source>zeros where records should be</source>
        <translation>应为记录的位置全是零</translation>
    </message>
    <message>
        <source>bits are set that have no meaning</source>
        <translation>设置了没有含义的位</translation>
    </message>
    <message>
        <source>the last record is cut and was left out</source>
        <translation>最后一条记录不完整，已略去</translation>
    </message>
    <message>
        <source>a standard frame with an identifier of more than 11 bits was left out</source>
        <translation>标准帧的标识符超过 11 位，已略去</translation>
    </message>
    <message>
        <source>a length of more than 8 was taken as 8</source>
        <translation>长度大于 8，按 8 处理</translation>
    </message>
</context>
<context>
    <name>CandumpFormat</name>
    <message>
        <source>a line that holds no frame was left out</source>
        <translation>该行没有帧，已略去</translation>
    </message>
</context>
<context>
    <name>CaptureCheck</name>
    <message>
        <source>the time jumps back</source>
        <translation>时间倒退</translation>
    </message>
    <message>
        <source>the time jumps forward by more than an hour</source>
        <translation>时间向前跳跃超过一小时</translation>
    </message>
    <message>
        <source>the adapter&apos;s time stamp jumps back</source>
        <translation>适配器的时间戳倒退</translation>
    </message>
    <message>
        <source>an identifier that no frame has</source>
        <translation>没有帧会有这样的标识符</translation>
    </message>
    <message>
        <source>a length that no frame has</source>
        <translation>没有帧会有这样的长度</translation>
    </message>
</context>
<context>
    <name>CaptureSink</name>
    <message>
        <source>%1 cannot be written.</source>
        <translation>无法写入 %1。</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>无法写入 %1：%2</translation>
    </message>
</context>
<context>
    <name>CaptureSource</name>
    <message>
        <source>%1 is a folder.</source>
        <translation>%1 是文件夹。</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>无法读取 %1：%2</translation>
    </message>
    <message>
        <source>%1 is no capture of a known kind. Name the kind with --from.</source>
        <translation>%1 不是已知类型的捕获文件。请用 --from 指定类型。</translation>
    </message>
    <message>
        <source>the file has become shorter while it was read</source>
        <translation>读取过程中文件变短了</translation>
    </message>
</context>
<context>
    <name>FrameLosses</name>
    <message>
        <source>CAN frame left out: this kind of file holds none</source>
        <translation>略去 CAN 帧：这种文件不能保存</translation>
    </message>
    <message>
        <source>CAN FD frame left out: this kind of file holds none</source>
        <translation>略去 CAN FD 帧：这种文件不能保存</translation>
    </message>
    <message>
        <source>remote frame left out: this kind of file holds none</source>
        <translation>略去远程帧：这种文件不能保存</translation>
    </message>
    <message>
        <source>error frame left out: this kind of file holds none</source>
        <translation>略去错误帧：这种文件不能保存</translation>
    </message>
    <message>
        <source>LIN frame left out: this kind of file holds none</source>
        <translation>略去 LIN 帧：这种文件不能保存</translation>
    </message>
    <message>
        <source>frame that the adapter refused: this kind of file does not tell it apart</source>
        <translation>适配器拒绝的帧：这种文件无法区分</translation>
    </message>
    <message>
        <source>channel not written: this kind of file has one</source>
        <translation>未写入通道：这种文件只有一个通道</translation>
    </message>
    <message>
        <source>direction not written: this kind of file does not tell it</source>
        <translation>未写入方向：这种文件不记录方向</translation>
    </message>
    <message>
        <source>error state indicator not written: this kind of file has none</source>
        <translation>未写入错误状态指示：这种文件没有该项</translation>
    </message>
</context>
<context>
    <name>LinCsvFormat</name>
    <message>
        <source>a line without eight cells was left out</source>
        <translation>该行没有八个单元格，已略去</translation>
    </message>
    <message>
        <source>a line with an unknown direction was left out</source>
        <translation>该行的方向未知，已略去</translation>
    </message>
    <message>
        <source>a state that is not known</source>
        <translation>未知的状态</translation>
    </message>
    <message>
        <source>a time of day that cannot be read; that of the frame before was taken</source>
        <translation>无法读取时刻，采用前一帧的时刻</translation>
    </message>
    <message>
        <source>a line with an identifier that no frame has was left out</source>
        <translation>该行的标识符无效，已略去</translation>
    </message>
    <message>
        <source>a line with a damaged payload was left out</source>
        <translation>该行的数据已损坏，已略去</translation>
    </message>
    <message>
        <source>a line with a damaged checksum was left out</source>
        <translation>该行的校验和已损坏，已略去</translation>
    </message>
</context>
<context>
    <name>OwnRecords</name>
    <message>
        <source>the last record is cut and was left out</source>
        <translation>最后一条记录不完整，已略去</translation>
    </message>
</context>
<context>
    <name>OwnTextFormat</name>
    <message>
        <source>a line that is too long was left out</source>
        <translation>该行过长，已略去</translation>
    </message>
    <message>
        <source>the header is missing</source>
        <translation>缺少文件头</translation>
    </message>
    <message>
        <source>the titles are missing</source>
        <translation>缺少标题行</translation>
    </message>
</context>
<context>
    <name>OwnTextLine</name>
    <message>
        <source>a line with too few cells was left out</source>
        <translation>该行的单元格太少，已略去</translation>
    </message>
    <message>
        <source>a line with an unknown direction was left out</source>
        <translation>该行的方向未知，已略去</translation>
    </message>
    <message>
        <source>a line with an unknown protocol, format or type was left out</source>
        <translation>该行的协议、帧格式或帧类型未知，已略去</translation>
    </message>
    <message>
        <source>a line with an identifier that no frame has was left out</source>
        <translation>该行的标识符无效，已略去</translation>
    </message>
    <message>
        <source>a line with a damaged payload was left out</source>
        <translation>该行的数据已损坏，已略去</translation>
    </message>
    <message>
        <source>the length is not that of the payload, which was taken</source>
        <translation>长度与数据不符，以数据为准</translation>
    </message>
    <message>
        <source>a classic frame of more than 8 bytes was left out</source>
        <translation>超过 8 字节的经典帧，已略去</translation>
    </message>
    <message>
        <source>a time of day that cannot be read; that of the frame before was taken</source>
        <translation>无法读取时刻，采用前一帧的时刻</translation>
    </message>
    <message>
        <source>a time stamp that cannot be read</source>
        <translation>无法读取时间戳</translation>
    </message>
    <message>
        <source>a number that cannot be read</source>
        <translation>无法读取序号</translation>
    </message>
    <message>
        <source>frames are missing: their numbers jump</source>
        <translation>缺少帧：序号不连续</translation>
    </message>
    <message>
        <source>the numbers jump back</source>
        <translation>序号倒退</translation>
    </message>
</context>
<context>
    <name>x9capture</name>
    <message>
        <source>Tells what is in captures.</source>
        <translation>说明捕获文件的内容。</translation>
    </message>
    <message>
        <source>Writes a capture as one of another kind.</source>
        <translation>将捕获文件转换为另一种类型。</translation>
    </message>
    <message>
        <source>Tells what is wrong with captures, and where.</source>
        <translation>检查捕获文件，指出错误及其位置。</translation>
    </message>
    <message>
        <source>Saves what is left of a damaged capture.</source>
        <translation>保存损坏的捕获文件中剩余的内容。</translation>
    </message>
    <message>
        <source>Tells how often and how regularly each identifier comes.</source>
        <translation>统计每个标识符的次数和周期。</translation>
    </message>
    <message>
        <source>Writes several captures as one, by their times.</source>
        <translation>按时间将多个捕获文件合并为一个。</translation>
    </message>
    <message>
        <source>Writes the wanted part of a capture.</source>
        <translation>写出捕获文件中需要的部分。</translation>
    </message>
    <message>
        <source>Writes the signals of a capture as a table, by a DBC or LDF file.</source>
        <translation>按 DBC 或 LDF 文件将捕获文件中的信号写成表格。</translation>
    </message>
    <message>
        <source>--%1: %2 is no such number.</source>
        <translation>--%1：%2 不是有效的数值。</translation>
    </message>
    <message>
        <source>--%1: there is no kind of capture named %2.</source>
        <translation>--%1：没有名为 %2 的捕获类型。</translation>
    </message>
    <message>
        <source>--date: %1 is no date such as 2026-03-31.</source>
        <translation>--date:%1 不是形如 2026-03-31 的日期。</translation>
    </message>
    <message>
        <source>kind</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Kind of capture that is read.</source>
        <translation>读取的捕获类型。</translation>
    </message>
    <message>
        <source>Kind of capture that is written.</source>
        <translation>写入的捕获类型。</translation>
    </message>
    <message>
        <source>date</source>
        <translation>日期</translation>
    </message>
    <message>
        <source>Day of the last frame, for times without a date; otherwise the file&apos;s.</source>
        <translation>最后一帧的日期，用于没有日期的时间；否则取文件的日期。</translation>
    </message>
    <message>
        <source>Replaces a file that exists.</source>
        <translation>替换已存在的文件。</translation>
    </message>
    <message>
        <source>Writes nothing where something would be lost.</source>
        <translation>如有内容会丢失，则不写入。</translation>
    </message>
    <message>
        <source>Says nothing when all went well.</source>
        <translation>一切正常时不输出。</translation>
    </message>
    <message>
        <source>Which of two times becomes a frame&apos;s only one; auto: the adapter&apos;s.</source>
        <translation>两个时间中取哪一个作为帧的时间；auto:适配器的时间。</translation>
    </message>
    <message>
        <source>Language of the words in captures of the program.</source>
        <translation>本程序捕获文件中文字的语言。</translation>
    </message>
    <message>
        <source>name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Encoding of captures of the program, such as UTF-8 or GBK.</source>
        <translation>本程序捕获文件的编码，例如 UTF-8 或 GBK。</translation>
    </message>
    <message>
        <source>Goes on while the file grows, until it is interrupted.</source>
        <translation>文件增长时继续，直到被中断。</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>秒</translation>
    </message>
    <message>
        <source>Ends --follow when for so long nothing has come.</source>
        <translation>这么久没有新内容时结束 --follow。</translation>
    </message>
    <message>
        <source>Bit rate of the CAN buses, to tell their load.</source>
        <translation>CAN 总线的波特率，用于计算负载。</translation>
    </message>
    <message>
        <source>Bit rate of CAN FD frames&apos; data (2000000).</source>
        <translation>CAN FD 帧数据段的波特率 (2000000)。</translation>
    </message>
    <message>
        <source>Bit rate of LIN buses (19200).</source>
        <translation>LIN 总线的波特率 (19200)。</translation>
    </message>
    <message>
        <source>Separates the cells by commas.</source>
        <translation>用逗号分隔单元格。</translation>
    </message>
    <message>
        <source>Each capture gets channels of its own.</source>
        <translation>每个捕获文件使用各自的通道。</translation>
    </message>
    <message>
        <source>All captures begin at the time of the first one.</source>
        <translation>所有捕获文件从第一个捕获文件的时间开始。</translation>
    </message>
    <message>
        <source>time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>From this time on: seconds since the first frame, or 2026-03-31T10:20:30.5.</source>
        <translation>从此时间开始：距第一帧的秒数，或 2026-03-31T10:20:30.5。</translation>
    </message>
    <message>
        <source>Before this time.</source>
        <translation>在此时间之前。</translation>
    </message>
    <message>
        <source>number</source>
        <translation>数值</translation>
    </message>
    <message>
        <source>Leaves out the first so many.</source>
        <translation>略去开头的这么多帧。</translation>
    </message>
    <message>
        <source>No more frames than these.</source>
        <translation>最多这么多帧。</translation>
    </message>
    <message>
        <source>range</source>
        <translation>范围</translation>
    </message>
    <message>
        <source>Identifiers, hexadecimal: 7DF or 100-1FF. May be given several times.</source>
        <translation>标识符，十六进制：7DF 或 100-1FF。可多次给出。</translation>
    </message>
    <message>
        <source>A channel, from 1. May be given several times.</source>
        <translation>通道，从 1 开始。可多次给出。</translation>
    </message>
    <message>
        <source>file</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>A column for each signal instead of a line.</source>
        <translation>每个信号一列，而不是一行。</translation>
    </message>
    <message>
        <source>Reads, checks, turns into each other and decodes captures of CAN, CAN FD and LIN buses.</source>
        <translation>读取、检查、转换和解码 CAN、CAN FD 和 LIN 总线的捕获文件。</translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation>命令：</translation>
    </message>
    <message>
        <source>Kinds of captures:</source>
        <translation>捕获类型：</translation>
    </message>
    <message>
        <source>x9capture COMMAND --help tells more. &quot;-&quot; stands for standard input or output.
It ends with 0 when all went well, 1 when a file cannot be read or written, 2 when it was called wrongly,
3 when verify has found something or --strict has kept something from being lost.</source>
        <translation>x9capture 命令 --help 给出更多说明。“-” 表示标准输入或标准输出。
退出码：0 一切正常,1 文件无法读取或写入,2 用法错误,
3 verify 发现问题，或 --strict 阻止了内容丢失。</translation>
    </message>
    <message>
        <source>Examples:</source>
        <translation>示例：</translation>
    </message>
    <message>
        <source>%1 wants: %2</source>
        <translation>%1 需要：%2</translation>
    </message>
    <message>
        <source>--words is en or zh, --times is auto, system or device.</source>
        <translation>--words 为 en 或 zh，--times 为 auto、system 或 device。</translation>
    </message>
    <message>
        <source>%1 could not be read to its end.</source>
        <translation>%1 未能读到末尾。</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 秒</translation>
    </message>
    <message>
        <source>%1 classic CAN</source>
        <translation>%1 个经典 CAN</translation>
    </message>
    <message>
        <source>%1 CAN FD</source>
        <translation>%1 个 CAN FD</translation>
    </message>
    <message>
        <source>%1 LIN</source>
        <translation>%1 个 LIN</translation>
    </message>
    <message>
        <source>%1 error frames</source>
        <translation>%1 个错误帧</translation>
    </message>
    <message>
        <source>%1 of them remote</source>
        <translation>其中 %1 个远程帧</translation>
    </message>
    <message>
        <source>%1 sent</source>
        <translation>%1 个已发送</translation>
    </message>
    <message>
        <source>%1 refused</source>
        <translation>%1 个被拒绝</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 帧</translation>
    </message>
    <message>
        <source>bus load %1 %</source>
        <translation>总线负载 %1 %</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>通道 %1</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>帧数</translation>
    </message>
    <message>
        <source>First</source>
        <translation>第一帧</translation>
    </message>
    <message>
        <source>Last</source>
        <translation>最后一帧</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>时长</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>速率</translation>
    </message>
    <message>
        <source>%1 frames/s</source>
        <translation>%1 帧/秒</translation>
    </message>
    <message>
        <source>Identifiers</source>
        <translation>标识符</translation>
    </message>
    <message>
        <source>more than %1</source>
        <translation>多于 %1</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>问题</translation>
    </message>
    <message>
        <source>%1; x9capture verify lists them</source>
        <translation>%1 个；x9capture verify 可列出</translation>
    </message>
    <message>
        <source>error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>extended</source>
        <translation>扩展</translation>
    </message>
    <message>
        <source>standard</source>
        <translation>标准</translation>
    </message>
    <message>
        <source>%1: %2 frames, %3 findings</source>
        <translation>%1：%2 帧,%3 个问题</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>帧ID</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Mean ms</source>
        <translation>平均 ms</translation>
    </message>
    <message>
        <source>Min ms</source>
        <translation>最小 ms</translation>
    </message>
    <message>
        <source>Max ms</source>
        <translation>最大 ms</translation>
    </message>
    <message>
        <source>Deviation ms</source>
        <translation>标准差 ms</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>Changing bytes</source>
        <translation>变化的字节</translation>
    </message>
    <message>
        <source>%1 frames of further identifiers are not listed</source>
        <translation>另有 %1 帧的标识符未列出</translation>
    </message>
    <message>
        <source>%1: which kind of capture is to be written? Name it with --to.</source>
        <translation>%1：要写入哪种类型的捕获文件?请用 --to 指定。</translation>
    </message>
    <message>
        <source>%1 would not hold everything; it was not written.</source>
        <translation>%1 不能保存全部内容，未写入。</translation>
    </message>
    <message>
        <source>%1: %2 frames from %3</source>
        <translation>%1：%2 帧，来自 %3</translation>
    </message>
    <message>
        <source>--%1: %2 is neither a number of seconds nor a time such as 2026-03-31T10:20:30.</source>
        <translation>--%1：%2 既不是秒数，也不是形如 2026-03-31T10:20:30 的时间。</translation>
    </message>
    <message>
        <source>--start and --end must both be seconds or both be times with a date.</source>
        <translation>--start 和 --end 必须同为秒数或同为带日期的时间。</translation>
    </message>
    <message>
        <source>--id: %1 is neither an identifier nor a range of them (hexadecimal).</source>
        <translation>--id:%1 既不是标识符也不是标识符范围(十六进制)。</translation>
    </message>
    <message>
        <source>--channel: %1 is no channel.</source>
        <translation>--channel:%1 不是通道。</translation>
    </message>
    <message>
        <source>%1 has times of another kind than %2. With --align all begin together.</source>
        <translation>%1 的时间类型与 %2 不同。使用 --align 可使所有捕获文件同时开始。</translation>
    </message>
    <message>
        <source>%1 captures</source>
        <translation>%1 个捕获文件</translation>
    </message>
    <message>
        <source>%1: %2 values from %3 of %4 frames</source>
        <translation>%1：%2 个信号值，来自 %4 帧中的 %3 帧</translation>
    </message>
    <message>
        <source>%1 frames are in no database.</source>
        <translation>%1 帧不在任何数据库中。</translation>
    </message>
    <message>
        <source>%1 frames are too short for all of their signals.</source>
        <translation>%1 帧过短，容不下其全部信号。</translation>
    </message>
    <message>
        <source>By which DBC or LDF file? Name it with --database.</source>
        <translation>按哪个 DBC 或 LDF 文件解码？请用 --database 指定。</translation>
    </message>
    <message>
        <source>--signal: no database has %1.</source>
        <translation>--signal：没有数据库包含 %1。</translation>
    </message>
    <message>
        <source>The DBC or LDF file. May be given several times.</source>
        <translation>DBC 或 LDF 文件，可多次给出。</translation>
    </message>
    <message>
        <source>With --wide: a column keeps its last value.</source>
        <translation>与 --wide 同用：列保持其最近的值。</translation>
    </message>
    <message>
        <source>Only this: &quot;Message&quot; or &quot;Message.Signal&quot;, with * and ?. May be given several times.</source>
        <translation>只输出此项：“报文”或“报文.信号”，可含 * 和 ?，可多次给出。</translation>
    </message>
    <message>
        <source>%1 exists already. It is replaced with --force only.</source>
        <translation>%1 已存在。只有使用 --force 才会替换。</translation>
    </message>
</context>
<context>
    <name>DatabaseFile</name>
    <message>
        <source>The encoding %1 is not known</source>
        <translation>未知的编码 %1</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>无法读取 %1：%2</translation>
    </message>
    <message>
        <source>%1 is larger than %2 MB</source>
        <translation>%1 大于 %2 MB</translation>
    </message>
    <message>
        <source>%1 has no messages that can be decoded</source>
        <translation>%1 中没有可以解码的报文</translation>
    </message>
</context>
<context>
    <name>DatabaseParser</name>
    <message>
        <source>a keyword</source>
        <translation>关键字</translation>
    </message>
    <message>
        <source>a name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>数字</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>整数</translation>
    </message>
    <message>
        <source>a quoted text</source>
        <translation>带引号的文本</translation>
    </message>
    <message>
        <source>the end of the line</source>
        <translation>行尾</translation>
    </message>
    <message>
        <source>Expected here: %1</source>
        <translation>此处应为：%1</translation>
    </message>
    <message>
        <source>This text has no end</source>
        <translation>此文本没有结尾</translation>
    </message>
    <message>
        <source>More than %1 of these are not read</source>
        <translation>此类内容超过 %1 个的部分不予读取</translation>
    </message>
    <message>
        <source>%1 is multiplexed by nothing that the message has</source>
        <translation>%1 的复用信号不在该报文中</translation>
    </message>
    <message>
        <source>What multiplexes %1 is left out, goes round in a circle or is nested too deep</source>
        <translation>%1 的复用信号已被略去、循环引用或嵌套过深</translation>
    </message>
    <message>
        <source>%1 does not fit into any frame and is left out</source>
        <translation>%1 超出任何帧的长度，已略去</translation>
    </message>
    <message>
        <source>%1 needs %2 bytes, its message has %3</source>
        <translation>%1 需要 %2 字节，而其报文只有 %3 字节</translation>
    </message>
    <message>
        <source>The keyword %1 is not known</source>
        <translation>未知的关键字 %1</translation>
    </message>
    <message>
        <source>%1 is longer than any frame</source>
        <translation>%1 比任何帧都长</translation>
    </message>
    <message>
        <source>Another message has this identifier, or none can have it: %1 is left out</source>
        <translation>该标识符已被其他报文使用或无效：%1 已略去</translation>
    </message>
    <message>
        <source>The identifier of %1 has more than 11 bits and is taken for an extended one</source>
        <translation>%1 的标识符超过 11 位，按扩展标识符处理</translation>
    </message>
    <message>
        <source>Its message has another signal with the name %1</source>
        <translation>该报文中已有名为 %1 的信号</translation>
    </message>
    <message>
        <source>The length of a signal is from 1 to 64 bits: %1 is left out</source>
        <translation>信号长度应为 1 到 64 位：%1 已略去</translation>
    </message>
    <message>
        <source>Not understood: %1</source>
        <translation>无法理解：%1</translation>
    </message>
    <message>
        <source>No message has the identifier %1</source>
        <translation>没有标识符为 %1 的报文</translation>
    </message>
    <message>
        <source>%1 has no signal %2</source>
        <translation>%1 没有信号 %2</translation>
    </message>
    <message>
        <source>A float has 32 bits and the type 1, a double 64 and the type 2</source>
        <translation>单精度浮点数为 32 位、类型 1，双精度为 64 位、类型 2</translation>
    </message>
    <message>
        <source>A signal has 1 to 64 bits, an array 1 to 8 bytes: %1 is left out</source>
        <translation>信号应为 1 到 64 位，数组应为 1 到 8 字节：%1 已略去</translation>
    </message>
    <message>
        <source>Another signal has the name %1</source>
        <translation>已有名为 %1 的信号</translation>
    </message>
    <message>
        <source>Another frame has the name %1</source>
        <translation>已有名为 %1 的帧</translation>
    </message>
    <message>
        <source>The identifier of a LIN frame is from 0 to 63: %1 is left out</source>
        <translation>LIN 帧的标识符应为 0 到 63：%1 已略去</translation>
    </message>
    <message>
        <source>%1 is no signal</source>
        <translation>%1 不是信号</translation>
    </message>
    <message>
        <source>%1 is no encoding</source>
        <translation>%1 不是编码</translation>
    </message>
    <message>
        <source>%1 is no frame of its own</source>
        <translation>%1 不是独立的帧</translation>
    </message>
</context>
<context>
    <name>CaptureFile</name>
    <message>
        <source>The file cannot be opened: %1</source>
        <translation>无法打开文件：%1</translation>
    </message>
    <message>
        <source>The file is of no known kind.</source>
        <translation>无法识别文件的格式。</translation>
    </message>
    <message>
        <source>This is not a file.</source>
        <translation>这不是文件。</translation>
    </message>
</context>
<context>
    <name>CaptureTab</name>
    <message>
        <source>Overview</source>
        <translation>概览</translation>
    </message>
    <message>
        <source>&amp;Filter:</source>
        <translation>过滤(&amp;F)：</translation>
    </message>
    <message>
        <source>Find, in the same language</source>
        <translation>查找，语法与过滤相同</translation>
    </message>
    <message>
        <source>F&amp;ind:</source>
        <translation>查找(&amp;I)：</translation>
    </message>
    <message>
        <source>Stop loading</source>
        <translation>停止加载</translation>
    </message>
    <message>
        <source>Stop following</source>
        <translation>停止跟踪</translation>
    </message>
    <message>
        <source>Last data at the &amp;selected frame instead of at the end</source>
        <translation>最后数据取自选中的帧，而不是末尾(&amp;S)</translation>
    </message>
    <message>
        <source>Frame %1 is not among those that are shown.</source>
        <translation>帧 %1 不在所显示的帧中。</translation>
    </message>
    <message>
        <source>Frame %1 does not pass the filter; this is the next one that does.</source>
        <translation>帧 %1 未通过过滤；这是下一个通过的帧。</translation>
    </message>
    <message>
        <source>Go to</source>
        <translation>转到</translation>
    </message>
    <message>
        <source>Number of a frame, seconds (12.5, 300 ms) or clock time (13:45:06):</source>
        <translation>帧序号、秒数（12.5，300 ms）或时刻（13:45:06）：</translation>
    </message>
    <message>
        <source>There is no frame “%1”.</source>
        <translation>没有帧“%1”。</translation>
    </message>
    <message>
        <source>Bookmark</source>
        <translation>书签</translation>
    </message>
    <message>
        <source>Note for frame %1; without a note the bookmark goes:</source>
        <translation>帧 %1 的备注；留空则删除书签：</translation>
    </message>
    <message>
        <source>The bookmarks cannot be saved.</source>
        <translation>无法保存书签。</translation>
    </message>
    <message>
        <source>There is no further bookmark.</source>
        <translation>没有更多书签。</translation>
    </message>
    <message>
        <source>loading</source>
        <translation>正在加载</translation>
    </message>
    <message>
        <source>loading, %1 s left</source>
        <translation>正在加载，还需 %1 秒</translation>
    </message>
    <message>
        <source>following the file</source>
        <translation>正在跟踪文件</translation>
    </message>
    <message>
        <source>complete</source>
        <translation>已全部加载</translation>
    </message>
    <message>
        <source>loading was stopped</source>
        <translation>已停止加载</translation>
    </message>
    <message>
        <source>memory is full; the rest was not loaded</source>
        <translation>内存已满；其余部分未加载</translation>
    </message>
    <message>
        <source>%1 over %2</source>
        <translation>%1，历时 %2</translation>
    </message>
    <message>
        <source>%1 of %2 frames</source>
        <translation>%2 帧中的 %1 帧</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1，%2</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 帧</translation>
    </message>
    <message>
        <source>Findings: %1...</source>
        <translation>发现的问题：%1...</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>发现的问题</translation>
    </message>
    <message>
        <source>Plots</source>
        <translation>曲线图</translation>
    </message>
    <message>
        <source>Bookmarks</source>
        <translation>书签</translation>
    </message>
    <message>
        <source>There are %1 bookmarks already.</source>
        <translation>书签已有 %1 个。</translation>
    </message>
</context>
<context>
    <name>Filter</name>
    <message>
        <source>The expression is too long.</source>
        <translation>表达式过长。</translation>
    </message>
    <message>
        <source>This is no number.</source>
        <translation>这不是数字。</translation>
    </message>
    <message>
        <source>The quotation mark at the end is missing.</source>
        <translation>缺少末尾的引号。</translation>
    </message>
    <message>
        <source>This character has no meaning here.</source>
        <translation>此字符在这里没有意义。</translation>
    </message>
    <message>
        <source>“%1” is missing here.</source>
        <translation>这里缺少“%1”。</translation>
    </message>
    <message>
        <source>“and”, “or” or a comparison is missing before this.</source>
        <translation>此处之前缺少“and”、“or”或比较。</translation>
    </message>
    <message>
        <source>A comparison is missing behind this.</source>
        <translation>此处之后缺少比较。</translation>
    </message>
    <message>
        <source>This can be equal or not equal only.</source>
        <translation>这里只能比较相等或不相等。</translation>
    </message>
    <message>
        <source>Only “data”, “name” and a signal alone are compared with a text.</source>
        <translation>只有“data”、“name”和单独的信号可与文本比较。</translation>
    </message>
    <message>
        <source>What a value stands for is a text in quotation marks.</source>
        <translation>值的含义是引号中的文本。</translation>
    </message>
    <message>
        <source>No value of the signal stands for this text.</source>
        <translation>该信号没有任何值表示此文本。</translation>
    </message>
    <message>
        <source>The range&apos;s end is below its beginning.</source>
        <translation>范围的终点小于起点。</translation>
    </message>
    <message>
        <source>A number is missing here.</source>
        <translation>这里缺少数字。</translation>
    </message>
    <message>
        <source>A direction is “rx”, “tx” or “refused”.</source>
        <translation>方向为“rx”、“tx”或“refused”。</translation>
    </message>
    <message>
        <source>Data are bytes in quotation marks, such as &quot;DE AD ?? EF&quot;.</source>
        <translation>数据是引号中的字节，例如 &quot;DE AD ?? EF&quot;。</translation>
    </message>
    <message>
        <source>A name is a text in quotation marks.</source>
        <translation>名称是引号中的文本。</translation>
    </message>
    <message>
        <source>A field, a signal or a number is missing here.</source>
        <translation>这里缺少字段、信号或数字。</translation>
    </message>
    <message>
        <source>A byte&apos;s number is 0 to %1.</source>
        <translation>字节编号为 0 到 %1。</translation>
    </message>
    <message>
        <source>“%1” is neither a field nor a signal.</source>
        <translation>“%1”既不是字段也不是信号。</translation>
    </message>
</context>
<context>
    <name>FilterEdit</name>
    <message>
        <source>Filter, such as  id == 0x123 and data[0] &amp; 0x80</source>
        <translation>过滤，例如  id == 0x123 and data[0] &amp; 0x80</translation>
    </message>
    <message>
        <source>Filters that were used lately (Down)</source>
        <translation>最近使用的过滤条件（向下键）</translation>
    </message>
</context>
<context>
    <name>FrameColumns</name>
    <message>
        <source>No.</source>
        <translation>序号</translation>
    </message>
    <message>
        <source>Date and time</source>
        <translation>日期和时间</translation>
    </message>
    <message>
        <source>Time [s]</source>
        <translation>时间 [s]</translation>
    </message>
    <message>
        <source>Since shown [s]</source>
        <translation>距上一显示帧 [s]</translation>
    </message>
    <message>
        <source>Since ID [s]</source>
        <translation>距同ID帧 [s]</translation>
    </message>
    <message>
        <source>Since mark [s]</source>
        <translation>距标记 [s]</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>帧ID</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>数据</translation>
    </message>
    <message>
        <source>Rx</source>
        <translation>接收</translation>
    </message>
    <message>
        <source>Tx</source>
        <translation>发送</translation>
    </message>
    <message>
        <source>Refused</source>
        <translation>被拒绝</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误帧</translation>
    </message>
    <message>
        <source>Remote</source>
        <translation>远程帧</translation>
    </message>
</context>
<context>
    <name>FrameTableView</name>
    <message>
        <source>Frames</source>
        <translation>帧</translation>
    </message>
    <message>
        <source>Only the first %1 frames of the selection were copied.</source>
        <translation>只复制了所选的前 %1 帧。</translation>
    </message>
    <message>
        <source>Frames copied: %1</source>
        <translation>已复制帧数：%1</translation>
    </message>
    <message>
        <source>Co&amp;lumns...</source>
        <translation>列(&amp;L)...</translation>
    </message>
</context>
<context>
    <name>OverviewModel</name>
    <message>
        <source>Channel</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>帧ID</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>数量</translation>
    </message>
    <message>
        <source>Rate [1/s]</source>
        <translation>频率 [1/s]</translation>
    </message>
    <message>
        <source>Period [ms]</source>
        <translation>周期 [ms]</translation>
    </message>
    <message>
        <source>Least [ms]</source>
        <translation>最小 [ms]</translation>
    </message>
    <message>
        <source>Greatest [ms]</source>
        <translation>最大 [ms]</translation>
    </message>
    <message>
        <source>Deviation [ms]</source>
        <translation>标准差 [ms]</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>First [s]</source>
        <translation>首次 [s]</translation>
    </message>
    <message>
        <source>Last [s]</source>
        <translation>末次 [s]</translation>
    </message>
    <message>
        <source>Last data, [changed]</source>
        <translation>最后数据，[有变化]</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误帧</translation>
    </message>
</context>
<context>
    <name>StoreLoader</name>
    <message>
        <source>Reading failed before the end of the file.</source>
        <translation>读取在文件结束之前失败。</translation>
    </message>
    <message>
        <source>The file has become shorter while it was followed.</source>
        <translation>文件在跟踪期间变短了。</translation>
    </message>
    <message>
        <source>The file was deleted, moved away, replaced or emptied while it was followed. What was read before is here.</source>
        <translation>文件在跟踪期间被删除、移走、替换或清空。之前读取的内容仍在此处。</translation>
    </message>
</context>
<context>
    <name>ViewerWindow</name>
    <message>
        <source>Drop captures here, or open them with Ctrl+O.</source>
        <translation>将记录文件拖放到此处，或按 Ctrl+O 打开。</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>打开(&amp;O)...</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>最近打开(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>关闭(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Go</source>
        <translation>转到(&amp;G)</translation>
    </message>
    <message>
        <source>&amp;Filter</source>
        <translation>过滤(&amp;F)</translation>
    </message>
    <message>
        <source>F&amp;ind</source>
        <translation>查找(&amp;I)</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>查找下一个(&amp;N)</translation>
    </message>
    <message>
        <source>Find &amp;previous</source>
        <translation>查找上一个(&amp;P)</translation>
    </message>
    <message>
        <source>Go &amp;to...</source>
        <translation>转到(&amp;T)...</translation>
    </message>
    <message>
        <source>Time &amp;zero here</source>
        <translation>以此为时间零点(&amp;Z)</translation>
    </message>
    <message>
        <source>&amp;Bookmark...</source>
        <translation>书签(&amp;B)...</translation>
    </message>
    <message>
        <source>Next boo&amp;kmark</source>
        <translation>下一个书签(&amp;K)</translation>
    </message>
    <message>
        <source>Pre&amp;vious bookmark</source>
        <translation>上一个书签(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Panels below the frames</source>
        <translation>下方面板(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>语言(&amp;L)</translation>
    </message>
    <message>
        <source>Chinese</source>
        <translation>中文</translation>
    </message>
    <message>
        <source>English</source>
        <translation>英文</translation>
    </message>
    <message>
        <source>Open captures</source>
        <translation>打开记录文件</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>The language changes when the program is started again.</source>
        <translation>重新启动程序后语言将改变。</translation>
    </message>
    <message>
        <source>&amp;Save as...</source>
        <translation>另存为(&amp;S)...</translation>
    </message>
    <message>
        <source>&amp;Load again</source>
        <translation>重新加载(&amp;L)</translation>
    </message>
    <message>
        <source>C&amp;olumns...</source>
        <translation>列(&amp;O)...</translation>
    </message>
    <message>
        <source>Colour &amp;rules...</source>
        <translation>颜色规则(&amp;R)...</translation>
    </message>
    <message>
        <source>Databases</source>
        <translation>数据库</translation>
    </message>
    <message>
        <source>A database belongs to a capture. Open the capture first.</source>
        <translation>数据库属于某个记录。请先打开该记录。</translation>
    </message>
</context>
<context>
    <name>CaptureSaver</name>
    <message>
        <source>There is not enough memory.</source>
        <translation>内存不足。</translation>
    </message>
</context>
<context>
    <name>CaptureKinds</name>
    <message>
        <source>Captures (%1)</source>
        <translation>记录文件 (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
</context>
<context>
    <name>EndButton</name>
    <message>
        <source>Stay at the &amp;end</source>
        <translation>停在末尾(&amp;E)</translation>
    </message>
    <message>
        <source>Shows new frames as they come; off when the table is scrolled back, on again at its end</source>
        <translation>随时显示新到的帧；向回滚动时关闭，回到末尾时重新打开</translation>
    </message>
</context>
<context>
    <name>LoadNotice</name>
    <message>
        <source>&amp;Load again</source>
        <translation>重新加载(&amp;L)</translation>
    </message>
</context>
<context>
    <name>ExchangeFormat</name>
    <message>
        <source>X9CAN classic capture</source>
        <translation>X9CAN 经典记录</translation>
    </message>
    <message>
        <source>X9CAN CAN FD capture</source>
        <translation>X9CAN CAN FD 记录</translation>
    </message>
    <message>
        <source>X9CAN table of LIN frames</source>
        <translation>X9CAN LIN 帧表</translation>
    </message>
    <message>
        <source>X9CAN table of frames, commas</source>
        <translation>X9CAN 帧表，逗号分隔</translation>
    </message>
    <message>
        <source>X9CAN table of frames, blanks</source>
        <translation>X9CAN 帧表，空格分隔</translation>
    </message>
    <message>
        <source>candump log</source>
        <translation>candump 日志</translation>
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
        <translation>pcapng，SocketCAN</translation>
    </message>
    <message>
        <source>pcap, SocketCAN</source>
        <translation>pcap，SocketCAN</translation>
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
        <translation>第 %1 行：</translation>
    </message>
    <message>
        <source>byte %1: </source>
        <translation>第 %1 字节：</translation>
    </message>
    <message>
        <source>frame %1: </source>
        <translation>第 %1 帧：</translation>
    </message>
    <message>
        <source> (%1 times)</source>
        <translation> (%1 次)</translation>
    </message>
    <message>
        <source>%1 more of the same</source>
        <translation>另有 %1 处相同</translation>
    </message>
</context>
<context>
    <name>SaveDialog</name>
    <message>
        <source>Save as</source>
        <translation>另存为</translation>
    </message>
    <message>
        <source>-part</source>
        <translation>-部分</translation>
    </message>
    <message>
        <source>Those that the &amp;filter passes</source>
        <translation>通过过滤的帧(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>全部(&amp;A)</translation>
    </message>
    <message>
        <source>The &amp;selected ones: %1</source>
        <translation>选中的帧(&amp;S)：%1</translation>
    </message>
    <message>
        <source>Those of a &amp;time</source>
        <translation>某段时间的帧(&amp;T)</translation>
    </message>
    <message>
        <source>A&amp;ll, also those that the filter hides</source>
        <translation>全部，包括被过滤隐藏的帧(&amp;L)</translation>
    </message>
    <message>
        <source>12.5 or 13:45:06</source>
        <translation>12.5 或 13:45:06</translation>
    </message>
    <message>
        <source>the end</source>
        <translation>末尾</translation>
    </message>
    <message>
        <source>f&amp;rom</source>
        <translation>从(&amp;R)</translation>
    </message>
    <message>
        <source>t&amp;o</source>
        <translation>到(&amp;O)</translation>
    </message>
    <message>
        <source>With the a&amp;dapter&apos;s times instead of the computer&apos;s</source>
        <translation>使用适配器的时间，而不是计算机的时间(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>浏览(&amp;B)...</translation>
    </message>
    <message>
        <source>Frames:</source>
        <translation>帧：</translation>
    </message>
    <message>
        <source>&amp;Kind:</source>
        <translation>类型(&amp;K)：</translation>
    </message>
    <message>
        <source>F&amp;ile:</source>
        <translation>文件(&amp;I)：</translation>
    </message>
    <message>
        <source>Sa&amp;ve</source>
        <translation>保存(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>停止(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>关闭(&amp;C)</translation>
    </message>
    <message>
        <source>Looking what this kind of file can hold...</source>
        <translation>正在检查这种文件能容纳的内容...</translation>
    </message>
    <message>
        <source>“%1” is no time of this capture.</source>
        <translation>“%1”不是此记录中的时间。</translation>
    </message>
    <message>
        <source>There are no such frames.</source>
        <translation>没有这样的帧。</translation>
    </message>
    <message>
        <source>The file needs a name.</source>
        <translation>请输入文件名。</translation>
    </message>
    <message>
        <source>This file is open here. Choose another name.</source>
        <translation>该文件正在此处打开。请选择其他名称。</translation>
    </message>
    <message>
        <source>%1 exists already. Is it to be replaced?</source>
        <translation>%1 已存在。要替换它吗？</translation>
    </message>
    <message>
        <source>Saving...</source>
        <translation>正在保存...</translation>
    </message>
    <message>
        <source>Saving was stopped; nothing was written.</source>
        <translation>保存已停止，没有写入任何内容。</translation>
    </message>
    <message>
        <source>%1 frames, %2. This kind of file can hold all of it.</source>
        <translation>%1 帧，%2。这种文件可以容纳全部内容。</translation>
    </message>
    <message>
        <source>%1 frames, %2. This kind of file cannot hold everything:</source>
        <translation>%1 帧，%2。这种文件无法容纳以下内容：</translation>
    </message>
    <message>
        <source>%1 frames were saved, %2.</source>
        <translation>已保存 %1 帧，%2。</translation>
    </message>
    <message>
        <source>%1 frames were saved, %2, but for this:</source>
        <translation>已保存 %1 帧，%2，以下内容除外：</translation>
    </message>
</context>
<context>
    <name>BookmarkPanel</name>
    <message>
        <source>Note</source>
        <translation>备注</translation>
    </message>
    <message>
        <source>Return goes to the frame, F2 changes the note, Del removes the bookmark. Ctrl+B in the table sets one.</source>
        <translation>回车跳到该帧，F2 修改备注，Del 删除书签。在表格中按 Ctrl+B 添加书签。</translation>
    </message>
</context>
<context>
    <name>CaptureSearch</name>
    <message>
        <source>Nothing was found.</source>
        <translation>未找到。</translation>
    </message>
    <message>
        <source>Nothing more was found up to the beginning; once more goes on from the end.</source>
        <translation>到开头为止没有更多结果；再次查找将从末尾继续。</translation>
    </message>
    <message>
        <source>Nothing more was found up to the end; once more goes on from the beginning.</source>
        <translation>到末尾为止没有更多结果；再次查找将从开头继续。</translation>
    </message>
    <message>
        <source>Went on from the end.</source>
        <translation>已从末尾继续查找。</translation>
    </message>
    <message>
        <source>Went on from the beginning.</source>
        <translation>已从开头继续查找。</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>第 %1 个，共 %2 个</translation>
    </message>
</context>
<context>
    <name>ColorButton</name>
    <message>
        <source>Red</source>
        <translation>红色</translation>
    </message>
    <message>
        <source>Orange</source>
        <translation>橙色</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>黄色</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>绿色</translation>
    </message>
    <message>
        <source>Cyan</source>
        <translation>青色</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>蓝色</translation>
    </message>
    <message>
        <source>Violet</source>
        <translation>紫色</translation>
    </message>
    <message>
        <source>Grey</source>
        <translation>灰色</translation>
    </message>
    <message>
        <source>As other rows</source>
        <translation>与其他行相同</translation>
    </message>
    <message>
        <source>Another...</source>
        <translation>其他颜色...</translation>
    </message>
</context>
<context>
    <name>ColorRulesDialog</name>
    <message>
        <source>Colour rules</source>
        <translation>颜色规则</translation>
    </message>
    <message>
        <source>The first rule that is on and passes a frame gives its row the colours.</source>
        <translation>启用的规则中第一条符合某帧的规则决定该行的颜色。</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>添加(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>删除(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Up</source>
        <translation>上移(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Down</source>
        <translation>下移(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Standard</source>
        <translation>默认(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Filter:</source>
        <translation>过滤(&amp;F)：</translation>
    </message>
    <message>
        <source>&amp;Text</source>
        <translation>文字(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Background</source>
        <translation>背景(&amp;B)</translation>
    </message>
    <message>
        <source>A rule without a filter colours nothing.</source>
        <translation>没有过滤条件的规则不着色。</translation>
    </message>
</context>
<context>
    <name>ColumnsDialog</name>
    <message>
        <source>&amp;Up</source>
        <translation>上移(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Down</source>
        <translation>下移(&amp;D)</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>列</translation>
    </message>
    <message>
        <source>&amp;Standard</source>
        <translation>默认(&amp;S)</translation>
    </message>
    <message>
        <source>Shown while a frame is marked as time zero.</source>
        <translation>有帧被标为时间零点时显示。</translation>
    </message>
</context>
<context>
    <name>FrameTableActions</name>
    <message>
        <source>&amp;Only these</source>
        <translation>只看这些(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Not these</source>
        <translation>排除这些(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Find next like this</source>
        <translation>查找下一个相同的(&amp;F)</translation>
    </message>
    <message>
        <source>Find &amp;previous like this</source>
        <translation>查找上一个相同的(&amp;P)</translation>
    </message>
    <message>
        <source>Co&amp;lour these...</source>
        <translation>为这些着色(&amp;L)...</translation>
    </message>
    <message>
        <source>From h&amp;ere on</source>
        <translation>从这里开始(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Up to here</source>
        <translation>到这里为止(&amp;U)</translation>
    </message>
    <message>
        <source>Time &amp;zero here</source>
        <translation>以此为时间零点(&amp;Z)</translation>
    </message>
    <message>
        <source>&amp;Bookmark...</source>
        <translation>书签(&amp;B)...</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>Copy as C&amp;SV</source>
        <translation>复制为 CSV(&amp;S)</translation>
    </message>
</context>
<context>
    <name>BitView</name>
    <message>
        <source>Bits of the frame</source>
        <translation>帧的各个位</translation>
    </message>
    <message>
        <source>Byte %1, bit %2: %3</source>
        <translation>字节 %1，位 %2：%3</translation>
    </message>
</context>
<context>
    <name>CaptureDatabases</name>
    <message>
        <source>%1 is not used: frames %2 are %3 of %4</source>
        <translation>未使用 %1：帧 %2 属于 %4 的 %3</translation>
    </message>
</context>
<context>
    <name>CaptureSignals</name>
    <message>
        <source>Signals</source>
        <translation>信号</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>数值</translation>
    </message>
    <message>
        <source>Databases</source>
        <translation>数据库</translation>
    </message>
    <message>
        <source>The databases of this capture cannot be remembered.</source>
        <translation>无法记住此记录的数据库。</translation>
    </message>
    <message>
        <source>Add databases</source>
        <translation>添加数据库</translation>
    </message>
    <message>
        <source>Databases (*.dbc *.ldf *.DBC *.LDF);;All files (*)</source>
        <translation>数据库 (*.dbc *.ldf *.DBC *.LDF);;所有文件 (*)</translation>
    </message>
</context>
<context>
    <name>DatabasePanel</name>
    <message>
        <source>What was found in the database</source>
        <translation>数据库中发现的问题</translation>
    </message>
    <message>
        <source>Databases of the capture</source>
        <translation>记录的数据库</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>数据库</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>报文</translation>
    </message>
    <message>
        <source>Signals</source>
        <translation>信号</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>&amp;Add database...</source>
        <translation>添加数据库(&amp;A)...</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>移除(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Load again</source>
        <translation>重新加载(&amp;L)</translation>
    </message>
    <message>
        <source>loading</source>
        <translation>加载中</translation>
    </message>
    <message>
        <source>not usable</source>
        <translation>无法使用</translation>
    </message>
    <message>
        <source>findings: %1</source>
        <translation>发现的问题：%1</translation>
    </message>
    <message>
        <source>in use</source>
        <translation>使用中</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>第 %1 行，第 %2 列：%3</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>还有 %1 个</translation>
    </message>
    <message>
        <source>all</source>
        <translation>全部</translation>
    </message>
    <message>
        <source>Numbers of channels with commas, such as 1, 3; empty for all</source>
        <translation>用逗号分隔的通道号，例如 1, 3；留空表示全部</translation>
    </message>
    <message>
        <source>DBC and LDF files name the messages and signals of a capture. Add one, or drop it onto the window.</source>
        <translation>DBC 和 LDF 文件为记录中的报文和信号命名。请添加一个，或将其拖放到窗口中。</translation>
    </message>
</context>
<context>
    <name>SignalMenu</name>
    <message>
        <source>Sig&amp;nals</source>
        <translation>信号(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Add database...</source>
        <translation>添加数据库(&amp;A)...</translation>
    </message>
    <message>
        <source>Add &amp;recent</source>
        <translation>添加最近使用的(&amp;R)</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>移除(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Load again</source>
        <translation>重新加载(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Databases of the capture</source>
        <translation>记录的数据库(&amp;D)</translation>
    </message>
    <message>
        <source>%1, channels %2</source>
        <translation>%1，通道 %2</translation>
    </message>
</context>
<context>
    <name>SignalPanel</name>
    <message>
        <source>, </source>
        <translation>，</translation>
    </message>
    <message>
        <source>Signals of the frame</source>
        <translation>帧的信号</translation>
    </message>
    <message>
        <source>Signal</source>
        <translation>信号</translation>
    </message>
    <message>
        <source>Raw</source>
        <translation>原始值</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>数值</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>单位</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文本</translation>
    </message>
    <message>
        <source>Select a frame to see its signals.</source>
        <translation>选择一帧以查看其信号。</translation>
    </message>
    <message>
        <source>No database of this capture describes frame %1.</source>
        <translation>此记录的数据库均未描述帧 %1。</translation>
    </message>
    <message>
        <source>Frame %1. Its signals need a database: Signals, Add database...</source>
        <translation>帧 %1。查看信号需要数据库：信号、添加数据库...</translation>
    </message>
    <message>
        <source>Frame %1: %2 (%3)</source>
        <translation>帧 %1：%2 (%3)</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>来自 %1</translation>
    </message>
    <message>
        <source>every %1 ms</source>
        <translation>每 %1 ms</translation>
    </message>
    <message>
        <source>too short for %1 of its signals</source>
        <translation>长度不足，缺少 %1 个信号</translation>
    </message>
    <message>
        <source>a remote frame has no data</source>
        <translation>远程帧没有数据</translation>
    </message>
    <message>
        <source>these data were not on the bus; filters and plots leave them out</source>
        <translation>这些数据未在总线上有效传输；过滤和曲线不包含它们</translation>
    </message>
    <message>
        <source>&amp;Plot this</source>
        <translation>绘制曲线(&amp;P)</translation>
    </message>
    <message>
        <source>only the first %1 signals are shown</source>
        <translation>仅显示前 %1 个信号</translation>
    </message>
</context>
<context>
    <name>ValuePanel</name>
    <message>
        <source>Messages and signals with their last values</source>
        <translation>报文和信号及其最近的数值</translation>
    </message>
    <message>
        <source>Search messages and signals</source>
        <translation>搜索报文和信号</translation>
    </message>
    <message>
        <source>&amp;Only what is in the capture</source>
        <translation>仅显示记录中出现的(&amp;O)</translation>
    </message>
    <message>
        <source>Only frames of t&amp;his</source>
        <translation>仅显示它的帧(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Plot this</source>
        <translation>绘制曲线(&amp;P)</translation>
    </message>
    <message>
        <source>Values need a database: Signals, Add database...</source>
        <translation>显示数值需要数据库：信号、添加数据库...</translation>
    </message>
    <message>
        <source>Up to frame %1</source>
        <translation>截至帧 %1</translation>
    </message>
    <message>
        <source>At the end, frame %1</source>
        <translation>末尾，帧 %1</translation>
    </message>
    <message>
        <source>&amp;Go to its frame</source>
        <translation>转到它的帧(&amp;G)</translation>
    </message>
</context>
<context>
    <name>ValueTreeModel</name>
    <message>
        <source>Message, signal</source>
        <translation>报文、信号</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>数值</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>单位</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文本</translation>
    </message>
    <message>
        <source>Time [s]</source>
        <translation>时间 [s]</translation>
    </message>
</context>
<context>
    <name>AnalyseMenu</name>
    <message>
        <source>&amp;Analyse</source>
        <translation>分析(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Compare captures...</source>
        <translation>比较记录(&amp;C)...</translation>
    </message>
    <message>
        <source>Compare before and after the &amp;marked frame</source>
        <translation>比较标记帧之前与之后(&amp;M)</translation>
    </message>
    <message>
        <source>Histogram of &amp;periods...</source>
        <translation>周期直方图(&amp;P)...</translation>
    </message>
    <message>
        <source>Bus &amp;load...</source>
        <translation>总线负载(&amp;L)...</translation>
    </message>
</context>
<context>
    <name>BusLoadWindow</name>
    <message>
        <source>%1 s</source>
        <translation>%1 秒</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 毫秒</translation>
    </message>
    <message>
        <source>Bus load - %1</source>
        <translation>总线负载 - %1</translation>
    </message>
    <message>
        <source>Time since the start [s]</source>
        <translation>自开始的时间 [s]</translation>
    </message>
    <message>
        <source>Bus load [%]</source>
        <translation>总线负载 [%]</translation>
    </message>
    <message>
        <source>&amp;Steps of:</source>
        <translation>步长(&amp;S)：</translation>
    </message>
    <message>
        <source>&amp;Limit:</source>
        <translation>限值(&amp;L)：</translation>
    </message>
    <message>
        <source>Bit rates are set in the table (500k, 2M). A click shows the frame at that time.</source>
        <translation>波特率在表中设置（500k、2M）。单击图形显示该时刻的帧。</translation>
    </message>
    <message>
        <source>&amp;Next above the limit</source>
        <translation>下一个超限处(&amp;N)</translation>
    </message>
    <message>
        <source>Save &amp;picture...</source>
        <translation>保存图片(&amp;P)...</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>保存图片</translation>
    </message>
    <message>
        <source>Save &amp;CSV...</source>
        <translation>保存 CSV(&amp;C)...</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>保存 CSV</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>Bit rate [bit/s]</source>
        <translation>波特率 [bit/s]</translation>
    </message>
    <message>
        <source>Data [bit/s]</source>
        <translation>数据段 [bit/s]</translation>
    </message>
    <message>
        <source>LIN [bit/s]</source>
        <translation>LIN [bit/s]</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>帧数</translation>
    </message>
    <message>
        <source>Least [%]</source>
        <translation>最小 [%]</translation>
    </message>
    <message>
        <source>Mean [%]</source>
        <translation>平均 [%]</translation>
    </message>
    <message>
        <source>Greatest [%]</source>
        <translation>最大 [%]</translation>
    </message>
    <message>
        <source>Steps above</source>
        <translation>超限步数</translation>
    </message>
    <message>
        <source>adding up...</source>
        <translation>正在累计...</translation>
    </message>
    <message>
        <source>That is no bit rate: write 500000, 500k or 2M.</source>
        <translation>这不是波特率：请写 500000、500k 或 2M。</translation>
    </message>
    <message>
        <source>Steps of %1, because there are too many.</source>
        <translation>步数过多，步长改为 %1。</translation>
    </message>
    <message>
        <source>There are no frames that have a time.</source>
        <translation>没有带时间的帧。</translation>
    </message>
    <message>
        <source>No step is above the limit.</source>
        <translation>没有超过限值的步。</translation>
    </message>
    <message>
        <source>That was the last one; next comes the first again.</source>
        <translation>这是最后一个；接下来回到第一个。</translation>
    </message>
    <message>
        <source>channel %1 [%]</source>
        <translation>通道 %1 [%]</translation>
    </message>
</context>
<context>
    <name>ComparisonModel</name>
    <message>
        <source>Channel</source>
        <translation>通道</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>帧ID</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>What differs</source>
        <translation>不同之处</translation>
    </message>
    <message>
        <source>Bytes A</source>
        <translation>A 的字节</translation>
    </message>
    <message>
        <source>Bytes B</source>
        <translation>B 的字节</translation>
    </message>
    <message>
        <source>Count A</source>
        <translation>A 数量</translation>
    </message>
    <message>
        <source>Count B</source>
        <translation>B 数量</translation>
    </message>
    <message>
        <source>B - A</source>
        <translation>B - A</translation>
    </message>
    <message>
        <source>Rate A [1/s]</source>
        <translation>A 频率 [1/s]</translation>
    </message>
    <message>
        <source>Rate B [1/s]</source>
        <translation>B 频率 [1/s]</translation>
    </message>
    <message>
        <source>B - A [1/s]</source>
        <translation>B - A [1/s]</translation>
    </message>
    <message>
        <source>Period A [ms]</source>
        <translation>A 周期 [ms]</translation>
    </message>
    <message>
        <source>Period B [ms]</source>
        <translation>B 周期 [ms]</translation>
    </message>
    <message>
        <source>B - A [ms]</source>
        <translation>B - A [ms]</translation>
    </message>
    <message>
        <source>Length A</source>
        <translation>A 长度</translation>
    </message>
    <message>
        <source>Length B</source>
        <translation>B 长度</translation>
    </message>
    <message>
        <source>byte %1</source>
        <translation>字节 %1</translation>
    </message>
    <message>
        <source>%1 bit %2</source>
        <translation>%1 位 %2</translation>
    </message>
    <message>
        <source>only in A</source>
        <translation>仅在 A 中</translation>
    </message>
    <message>
        <source>only in B</source>
        <translation>仅在 B 中</translation>
    </message>
    <message>
        <source>%1 moves in B</source>
        <translation>%1 在 B 中变化</translation>
    </message>
    <message>
        <source>%1 moves in A</source>
        <translation>%1 在 A 中变化</translation>
    </message>
    <message>
        <source>length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>频率</translation>
    </message>
    <message>
        <source>period</source>
        <translation>周期</translation>
    </message>
    <message>
        <source>error frames</source>
        <translation>错误帧</translation>
    </message>
</context>
<context>
    <name>ComparisonWindow</name>
    <message>
        <source>Compare captures</source>
        <translation>比较记录</translation>
    </message>
    <message>
        <source>S&amp;wap</source>
        <translation>交换(&amp;W)</translation>
    </message>
    <message>
        <source>all frames</source>
        <translation>全部帧</translation>
    </message>
    <message>
        <source>before the marked frame</source>
        <translation>标记帧之前</translation>
    </message>
    <message>
        <source>from the marked frame on</source>
        <translation>自标记帧起</translation>
    </message>
    <message>
        <source>from a time to a time</source>
        <translation>时间段</translation>
    </message>
    <message>
        <source>start</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>end</source>
        <translation>结束</translation>
    </message>
    <message>
        <source>Seconds since the start (12.5, 300 ms), a clock time (13:45:06) or a frame's number</source>
        <translation>自开始的秒数（12.5、300 ms）、时刻（13:45:06）或帧的序号</translation>
    </message>
    <message>
        <source>Only what &amp;differs</source>
        <translation>仅显示不同(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Tell channels apart</source>
        <translation>区分通道(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Rates and periods differ from:</source>
        <translation>频率和周期的差异阈值(&amp;R)：</translation>
    </message>
    <message>
        <source>bits that never change, but are not the same in A and B</source>
        <translation>各自不变，但 A 与 B 不同的位</translation>
    </message>
    <message>
        <source>bits that never change in A, but do in B</source>
        <translation>在 A 中不变、在 B 中变化的位</translation>
    </message>
    <message>
        <source>bits that never change in B, but do in A</source>
        <translation>在 B 中不变、在 A 中变化的位</translation>
    </message>
    <message>
        <source>A double click shows the identifier in both captures, and in B the frame in which it is moved.</source>
        <translation>双击在两个记录中显示该帧ID，并在 B 中转到其变化的帧。</translation>
    </message>
    <message>
        <source>&amp;Copy all</source>
        <translation>全部复制(&amp;C)</translation>
    </message>
    <message>
        <source>Save CS&amp;V...</source>
        <translation>保存 CSV(&amp;V)...</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>保存 CSV</translation>
    </message>
    <message>
        <source>Open the captures to compare, and choose them.</source>
        <translation>请打开并选择要比较的记录。</translation>
    </message>
    <message>
        <source>No frame is marked in %1: select one and press Ctrl+M.</source>
        <translation>%1 中没有标记帧：请选择一帧并按 Ctrl+M。</translation>
    </message>
    <message>
        <source>There is no frame “%1”.</source>
        <translation>没有帧“%1”。</translation>
    </message>
    <message>
        <source>comparing...</source>
        <translation>正在比较...</translation>
    </message>
    <message>
        <source>%1 of %2 identifiers differ; frames: A %3, B %4</source>
        <translation>%2 个帧ID中有 %1 个不同；帧数：A %3，B %4</translation>
    </message>
    <message>
        <source>, comparing...</source>
        <translation>，正在比较...</translation>
    </message>
</context>
<context>
    <name>IdentifierNames</name>
    <message>
        <source>error frames</source>
        <translation>错误帧</translation>
    </message>
</context>
<context>
    <name>OverviewActions</name>
    <message>
        <source>Only these</source>
        <translation>只看这些</translation>
    </message>
    <message>
        <source>Not these</source>
        <translation>排除这些</translation>
    </message>
    <message>
        <source>Histogram of its periods...</source>
        <translation>其周期的直方图...</translation>
    </message>
</context>
<context>
    <name>PeriodWindow</name>
    <message>
        <source>Periods - %1</source>
        <translation>周期 - %1</translation>
    </message>
    <message>
        <source>Period [ms]</source>
        <translation>周期 [ms]</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>数量</translation>
    </message>
    <message>
        <source>without outliers</source>
        <translation>不含离群值</translation>
    </message>
    <message>
        <source>all periods</source>
        <translation>全部周期</translation>
    </message>
    <message>
        <source>automatic</source>
        <translation>自动</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Logarithmic counts</source>
        <translation>数量取对数(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Identifier:</source>
        <translation>帧ID(&amp;I)：</translation>
    </message>
    <message>
        <source>&amp;Shown:</source>
        <translation>显示(&amp;S)：</translation>
    </message>
    <message>
        <source>&amp;Bin width:</source>
        <translation>区间宽度(&amp;B)：</translation>
    </message>
    <message>
        <source>A click on a bar shows a frame with such a period, the next click the next one.</source>
        <translation>单击柱形显示具有该周期的帧，再次单击显示下一个。</translation>
    </message>
    <message>
        <source>Save &amp;picture...</source>
        <translation>保存图片(&amp;P)...</translation>
    </message>
    <message>
        <source>Save &amp;CSV...</source>
        <translation>保存 CSV(&amp;C)...</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>保存图片</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>保存 CSV</translation>
    </message>
    <message>
        <source>least</source>
        <translation>最小</translation>
    </message>
    <message>
        <source>mean</source>
        <translation>平均</translation>
    </message>
    <message>
        <source>greatest</source>
        <translation>最大</translation>
    </message>
    <message>
        <source>There are no periods: fewer than two frames that have a time.</source>
        <translation>没有周期：带时间的帧少于两个。</translation>
    </message>
    <message>
        <source>%1 periods: least %2 ms, mean %3 ms, greatest %4 ms, standard deviation %5 ms; %6 frames a second; bins of %7 ms</source>
        <translation>%1 个周期：最小 %2 ms，平均 %3 ms，最大 %4 ms，标准差 %5 ms；每秒 %6 帧；区间宽 %7 ms</translation>
    </message>
    <message>
        <source>; %1 shorter and %2 longer ones are not shown</source>
        <translation>；更短的 %1 个和更长的 %2 个未显示</translation>
    </message>
</context>
<context>
    <name>TableText</name>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Copy as CSV</source>
        <translation>复制为 CSV</translation>
    </message>
    <message>
        <source>“%1” cannot be written.</source>
        <translation>无法写入“%1”。</translation>
    </message>
</context>
</TS>
