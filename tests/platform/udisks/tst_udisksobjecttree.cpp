// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/UDisksObjectTree.h"
#include <QTest>
QTEST_GUILESS_MAIN(QObject)
