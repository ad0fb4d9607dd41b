# SPDX-License-Identifier: GPL-3.0-or-later
"""The lab: a machine made of loop devices on which the real program runs with the real tools and daemons.

disk        an image file as a disk of one's own; refuses every other device
namespace   the place where the machine is seen: own mounts, processes and network, and own /dev, /proc/cmdline, /run
content     the file trees that the machine's partitions hold
machine     the partitions together: what the recovery partition knows, what is mounted where for a look
services    udevd, the system bus, udisksd and the display of one start of the machine
program     one run of the program: its log, its pages, its end
root        who may make such a machine
blocks      block by block comparison of a partition
compare     file by file comparison of two trees
checks      what must hold at the end, printed one line each
scenarios   the whole stories
"""
