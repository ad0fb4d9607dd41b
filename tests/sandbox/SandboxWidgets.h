// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sandbox/Sandbox.h"

#include <QApplication>

namespace Sandbox {

/// As run(), with a widget application on the offscreen platform (unless QT_QPA_PLATFORM names another).
template <class Test>
int runWidgets(int argc, char** argv)
{
    enter(argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace Sandbox
