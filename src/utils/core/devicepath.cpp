// SPDX-License-Identifier: GPL-3.0-or-later
#include "devicepath.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

bool isDevicePath(const QString& path)
{
    static const QRegularExpression pattern(uR"(\A/dev(/[A-Za-z0-9_][A-Za-z0-9._+:@-]*)+\z)"_s);
    return pattern.match(path).hasMatch();
}
