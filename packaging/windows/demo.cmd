@echo off
rem Starts X9CAN in the virtual adapter's folder, so that it works without hardware.
start "" /d "%~dp0virtual-adapter" "%~dp0X9CAN.exe"
