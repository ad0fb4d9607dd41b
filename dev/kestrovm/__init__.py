# SPDX-License-Identifier: GPL-3.0-or-later
"""The whole machine: an installed system, its recovery partition and the real program in an emulated computer.

layout       the partitions of the two disks, and how they are made without mounting anything
base         the file tree of the installed system
stages       what is built once and kept under build/vm/cache, named by what it was built from
product      the packages and the recovery system of this very checkout
installed    a machine on which both are installed, as an installer leaves it
emulator     QEMU: one switched-on computer, its screen, keyboard, mouse and plug
qmp          the emulator's control socket
sockets      the emulator's sockets, from the moment on at which it listens
console      what the computer says on its serial line, and a root shell on a second one
starting     a start of the computer up to where it can be used, once more when the emulation stood still
view         the disks of a computer that is switched off, looked at from outside
recovery     the recovery system in the computer: its program's log, its pages, its end
story        what every scenario works with: disks, starts of the machine, findings
series       several scenarios, some of them at the same time, and their table
scenarios    the whole stories
"""
