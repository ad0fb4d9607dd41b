// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"

#include "platform/velk/VGuiApplicationHelper.h"
#include "platform/velk/VStyle.h"
#include "platform/velk/interfacefont.h"

#include <QLocale>

// Outside any namespace, as the macro demands: a static library's resources are not registered by themselves.
static void registerResources()
{
    Q_INIT_RESOURCE(kestro);
}

VApplication::VApplication(int& argc, char** argv)
    : QApplication(argc, argv)
{
    registerResources();
    const auto look = VGuiApplicationHelper::preferredType(palette());
    setStyle(new VStyle);
    VGuiApplicationHelper::setPaletteType(look);
    setFont(interfaceFont(QLocale::system()));
}
