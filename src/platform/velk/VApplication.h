// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>

/// The application object: installs the style, the palette, the fonts and the resources of the program.
class VApplication : public QApplication
{
    Q_OBJECT

public:
    VApplication(int& argc, char** argv);
};
