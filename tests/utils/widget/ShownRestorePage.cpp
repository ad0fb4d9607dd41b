// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/ShownRestorePage.h"

#include "support/buttons.h"
#include "utils/widget/ErrorLabel.h"
#include "utils/widget/TreeViewModel.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::StringLiterals;

ShownRestorePage::ShownRestorePage(bool haveInitBackup)
{
    window.resize(800, 600);
    page.resize(600, 560);
    page.setHaveInitBackup(haveInitBackup);
    page.initUI();
    QObject::connect(&page, &RestorePage::requestTreeViewListItem, &page, [this](TreeViewModel* asked) {
        ++listRequests;
        model = asked;
    });
    const auto note = [this](const QString& text) { requests.append(text); };
    QObject::connect(&page, &RestorePage::requestSystemRestore, &page, [this, note](bool formatData) {
        waitingDuringRequest = !restoreButton()->isVisible();
        note(formatData ? u"format"_s : u"keep"_s);
    });
    QObject::connect(&page, &RestorePage::requestManualRestore, &page, note);
    QObject::connect(&page, &RestorePage::requestManualRestoreNew, &page,
        [note](const QString& directory, const QString& uuid) { note(directory + u' ' + uuid); });
    window.show();
}

QPushButton* ShownRestorePage::button(const QString& text) const
{
    return buttonIn(page, text);
}

QPushButton* ShownRestorePage::restoreButton() const
{
    return button(u"Restore Now"_s);
}

QPushButton* ShownRestorePage::waitingButton() const
{
    return button(u"Applying changes to your system..."_s);
}

QRadioButton* ShownRestorePage::row(const QString& title) const
{
    const auto rows = page.findChildren<QRadioButton*>();
    const auto found = std::find_if(
        rows.cbegin(), rows.cend(), [&title](const QRadioButton* radio) { return radio->accessibleName() == title; });
    return found == rows.cend() ? nullptr : *found;
}

QCheckBox* ShownRestorePage::keepFiles() const
{
    return page.findChild<QCheckBox*>();
}

void ShownRestorePage::choose(int option) const
{
    const QString titles[] = {
        u"Reset to factory settings"_s, u"Restore from backup files"_s, u"Restore from a restore point"_s};
    row(titles[option])->click();
}

QString ShownRestorePage::errorText() const
{
    const auto* error = page.findChild<ErrorLabel*>();
    return error->isVisible() ? error->text() : QString();
}
