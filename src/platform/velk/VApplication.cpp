// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"

#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VGuiApplicationHelper.h"
#include "platform/velk/VStyle.h"

#include <QFontDatabase>

using namespace Qt::StringLiterals;

// Outside any namespace, as the macro demands: a static library's resources are not registered by themselves.
static void registerResources()
{
    Q_INIT_RESOURCE(kestro);
}

namespace {

// One family for Latin, Greek and Cyrillic where it is installed; the font system finds the other scripts.
QFont interfaceFont()
{
    QFont font = QGuiApplication::font();
    for (const QString& family : {u"Noto Sans"_s, u"DejaVu Sans"_s}) {
        if (QFontDatabase::hasFamily(family)) {
            font.setFamily(family);
            break;
        }
    }
    return VFontSizeManager::get(VFontSizeManager::T6, font);
}

} // namespace

VApplication::VApplication(int& argc, char** argv)
    : QApplication(argc, argv)
{
    registerResources();
    const auto look = VGuiApplicationHelper::preferredType(palette());
    setStyle(new VStyle);
    VGuiApplicationHelper::setPaletteType(look);
    setFont(interfaceFont());
}
