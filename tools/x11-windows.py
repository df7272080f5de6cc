#!/usr/bin/env python3
"""The windows of one process on an X display without a window manager.

x11-windows.py show PID    waits until the main window of the process is on the screen and painted; prints its title
x11-windows.py close PID   asks all its windows to close, again and again, until the process has ended
Both give up after 30 seconds.
"""
import sys
import time

from Xlib import X, display, error, protocol

LIMIT_S = 30
INTERVAL_S = 0.2


def windows_of(screen_display, pid):
    """Viewable top-level windows, the topmost first."""
    pid_atom = screen_display.intern_atom("_NET_WM_PID")
    for window in reversed(screen_display.screen().root.query_tree().children):
        try:
            owner = window.get_full_property(pid_atom, X.AnyPropertyType)
            if owner and owner.value[0] == pid and window.get_attributes().map_state == X.IsViewable:
                yield window
        except error.XError:
            pass  # gone meanwhile


def painted_colours(window):
    geometry = window.get_geometry()
    data = window.get_image(0, 0, geometry.width, geometry.height, X.ZPixmap, 0xFFFFFFFF).data
    return len({data[at:at + 4] for at in range(0, len(data), 4)})


def shown_main_window(screen_display, pid):
    """The title of the main window - the one that belongs to no other - once it has content."""
    for window in windows_of(screen_display, pid):
        try:
            if window.get_wm_transient_for() is None and painted_colours(window) > 16:
                return window.get_full_text_property(screen_display.intern_atom("_NET_WM_NAME")) or "(no title)"
        except error.XError:
            pass
    return None


def ask_to_close(screen_display, pid):
    protocols = screen_display.intern_atom("WM_PROTOCOLS")
    delete = screen_display.intern_atom("WM_DELETE_WINDOW")
    for window in windows_of(screen_display, pid):
        window.send_event(protocol.event.ClientMessage(
            window=window, client_type=protocols, data=(32, [delete, X.CurrentTime, 0, 0, 0])))
    screen_display.flush()


def is_running(pid):
    try:
        with open(f"/proc/{pid}/stat", encoding="ascii", errors="replace") as stat:
            return stat.read().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


def main():
    action, pid = sys.argv[1], int(sys.argv[2])
    screen_display = display.Display()
    end = time.monotonic() + LIMIT_S
    while time.monotonic() < end:
        if action == "close":
            if not is_running(pid):
                return 0
            ask_to_close(screen_display, pid)
        else:
            title = shown_main_window(screen_display, pid)
            if title is not None:
                print(title)
                return 0
            if not is_running(pid):
                sys.exit(f"process {pid} ended by itself")
        time.sleep(INTERVAL_S)
    sys.exit(f"process {pid}: no main window" if action == "show" else f"process {pid} does not close")


if __name__ == "__main__":
    sys.exit(main())
