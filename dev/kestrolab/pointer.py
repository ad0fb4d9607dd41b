# SPDX-License-Identifier: GPL-3.0-or-later
"""A person's mouse and keyboard. Places are in pixels from the middle of the display, where the window and its dialogs are
centred."""
import time

from .process import output_of, run

RESTORE_NOW = (0, 260)
REBOOT_NOW = (0, 260)


def click(right: int, down: int):
    width, height = map(int, output_of("xdotool", "getdisplaygeometry").split())
    run("xdotool", "mousemove", width // 2 + right, height // 2 + down, "click", 1)


def press(key: str):
    """Presses a key while the pointer lies outside the window, where it must not matter."""
    run("xdotool", "mousemove", 0, 0, "key", key)


def settle():
    """Time for a page or a dialog to come up."""
    time.sleep(4)
