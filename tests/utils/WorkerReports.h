// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/AsyncTask.h"

#include <QStringList>

#include <functional>

/// Runs the worker to its end. @param meanwhile runs once the worker has been started
/// @return its signals in order, each as a word with its argument, as a receiver in another thread gets them
///
/// The receiver's thread looks into its queue only after the worker's end, which it is told by an atomic: the thread
/// sanitizer sees that, but not what Qt's own library does to pass an event on.
QStringList reportsOf(
    AsyncTask& task, const std::function<void()>& meanwhile = [] {});
