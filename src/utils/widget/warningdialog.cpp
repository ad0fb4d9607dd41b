// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/warningdialog.h"

#include "platform/velk/VDialog.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

bool confirmWarning(QWidget* parent, const WarningQuestion& question)
{
    VDialog dialog(question.title, question.message, parent);
    dialog.setIcon(QIcon::fromTheme(u"dialog-warning"_s, QIcon(u":/warning.svg"_s)));
    if (question.bypassWindowManager) {
        dialog.setWindowFlag(Qt::BypassWindowManagerHint);
    }
    dialog.addButton(QCoreApplication::translate("button", "Cancel"));
    const int confirm = dialog.addButton(question.confirmText, true, VDialog::ButtonWarning);
    return dialog.exec() == confirm;
}
