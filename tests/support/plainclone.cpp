// SPDX-License-Identifier: GPL-3.0-or-later
// Part of every test program that the thread sanitizer watches.
//
// QProcess starts a child that shares its parent's memory until it executes its program (CLONE_VM | CLONE_VFORK). The
// sanitizer's own clone() takes it for a child of a multi-threaded fork, tells it to ignore whatever its thread does
// from then on, and so writes that into the parent's memory: afterwards the parent's thread is not watched any more,
// and its atomics order nothing in the eyes of the sanitizer. The C library's clone() does without that.
#include <sched.h>

#include <cstdarg>

extern "C" int __clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept;

extern "C" int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept
{
    std::va_list list;
    va_start(list, argument);
    void* parentId = va_arg(list, void*);
    void* threadStorage = va_arg(list, void*);
    void* childId = va_arg(list, void*);
    va_end(list);
    return __clone(function, stack, flags, argument, parentId, threadStorage, childId);
}
