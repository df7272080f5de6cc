; The installer's own texts in its two languages. In UTF-8.

!define MUI_LANGDLL_WINDOWTITLE "X9CAN"
!define MUI_LANGDLL_INFO "请选择语言。$\r$\nPlease select a language."

; Shortcuts. The uninstaller removes those of either language.
!define DEMO_ENGLISH "X9CAN (virtual adapter)"
!define DEMO_CHINESE "X9CAN（虚拟适配器）"
!define GUIDE_ENGLISH "X9CAN guide"
!define GUIDE_CHINESE "X9CAN 用户手册"
!define UNINSTALL_ENGLISH "Uninstall X9CAN"
!define UNINSTALL_CHINESE "卸载 X9CAN"

!macro X9Texts
  LangString Demo ${LANG_ENGLISH} "${DEMO_ENGLISH}"
  LangString Demo ${LANG_SIMPCHINESE} "${DEMO_CHINESE}"
  LangString Guide ${LANG_ENGLISH} "${GUIDE_ENGLISH}"
  LangString Guide ${LANG_SIMPCHINESE} "${GUIDE_CHINESE}"
  LangString GuideFile ${LANG_ENGLISH} "guide.html"
  LangString GuideFile ${LANG_SIMPCHINESE} "guide.zh.html"
  LangString Uninstall ${LANG_ENGLISH} "${UNINSTALL_ENGLISH}"
  LangString Uninstall ${LANG_SIMPCHINESE} "${UNINSTALL_CHINESE}"

  LangString Program ${LANG_ENGLISH} "X9CAN (required)"
  LangString Program ${LANG_SIMPCHINESE} "X9CAN（必需）"
  LangString ProgramHint ${LANG_ENGLISH} "The program for adapters with a ${X9_BITS}-bit library, the viewer of captures, the virtual adapter and the guide."
  LangString ProgramHint ${LANG_SIMPCHINESE} "适用于 ${X9_BITS} 位适配器库的程序、记录查看器、虚拟适配器和用户手册。"
  LangString Desktop ${LANG_ENGLISH} "Icon on the desktop"
  LangString Desktop ${LANG_SIMPCHINESE} "桌面图标"
  LangString DesktopHint ${LANG_ENGLISH} "Starts the program from the desktop."
  LangString DesktopHint ${LANG_SIMPCHINESE} "从桌面启动程序。"

  LangString ViewerComment ${LANG_ENGLISH} "Search, decode and draw captures of CAN, CAN FD and LIN buses"
  LangString ViewerComment ${LANG_SIMPCHINESE} "查找、解码和绘制 CAN、CAN FD 及 LIN 总线的记录"
  LangString Comment ${LANG_ENGLISH} "CAN, CAN FD and LIN bus analyser"
  LangString Comment ${LANG_SIMPCHINESE} "CAN、CAN FD 和 LIN 总线分析仪"
  LangString DemoComment ${LANG_ENGLISH} "Try the bus analyser on simulated buses, without hardware"
  LangString DemoComment ${LANG_SIMPCHINESE} "无需硬件，在模拟总线上试用总线分析仪"

  LangString Capture ${LANG_ENGLISH} "Capture of a bus"
  LangString Capture ${LANG_SIMPCHINESE} "总线记录"
  LangString InUse ${LANG_ENGLISH} "$2 cannot be overwritten. Please close the program and try again."
  LangString InUse ${LANG_SIMPCHINESE} "无法覆盖 $2。请先关闭该程序，然后重试。"
  LangString OlderStays ${LANG_ENGLISH} "The version in $0 could not be removed."
  LangString OlderStays ${LANG_SIMPCHINESE} "无法删除 $0 中的版本。"
  LangString NeedsAdministrator ${LANG_ENGLISH} "X9CAN can be installed or removed for all users with administrator rights only."
  LangString NeedsAdministrator ${LANG_SIMPCHINESE} "为所有用户安装或卸载 X9CAN 需要管理员权限。"
  LangString NotInstalled ${LANG_ENGLISH} "$INSTDIR is not the folder of an installed X9CAN."
  LangString NotInstalled ${LANG_SIMPCHINESE} "$INSTDIR 中没有已安装的 X9CAN。"
  LangString YoursStay ${LANG_ENGLISH} "Files that were not installed stay in $INSTDIR"
  LangString YoursStay ${LANG_SIMPCHINESE} "未由安装程序安装的文件保留在 $INSTDIR"
!macroend
