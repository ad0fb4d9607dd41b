// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"
#include "platform/velk/VFileChooserEdit.h"
#include "platform/velk/VListView.h"
#include "platform/velk/VWaterProgress.h"
#include "support/DialogAnswer.h"
#include "support/FakePrograms.h"
#include "support/LogCapture.h"
#include "support/buttons.h"
#include "utils/widget/BaseTableView.h"
#include "utils/widget/ErrorLabel.h"
#include "utils/widget/TreeViewModel.h"
#include "utils/widget/backuppage.h"
#include "utils/widget/restorepage.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class BackupPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void requests_data();
    void requests();
    void errors();
    void rowsOfTheMethod();
    void ownerEndsTheWaiting();
    void listIsRequestedOnce();
    void cancelling();
    void hostsCreateItByName();

private:
    [[nodiscard]] QPushButton* backupButton() const;
    [[nodiscard]] VFileChooserEdit* edit() const { return m_page->findChild<VFileChooserEdit*>(); }
    [[nodiscard]] BaseTableView* table() const { return m_page->findChild<BaseTableView*>(); }
    [[nodiscard]] bool isWaiting() const { return m_page->findChild<VWaterProgress*>()->isVisible(); }

    std::unique_ptr<BackupPage> m_page;
    QList<TreeViewModel*> m_listRequests;
};

QPushButton* BackupPageTest::backupButton() const
{
    return buttonIn(*m_page, u"Back Up"_s);
}

void BackupPageTest::init()
{
    m_listRequests.clear();
    m_page = std::make_unique<BackupPage>();
    connect(m_page.get(), &BackupPage::requestTreeViewListItem, this,
        [this](TreeViewModel* model) { m_listRequests.append(model); });
    m_page->show();
}

void BackupPageTest::requests_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("requests");
    QTest::newRow("full, new") << 0 << 0 << u"/m/b"_s << QStringList{u"full /m/b"_s};
    QTest::newRow("full, list") << 0 << 1 << u"/m/b"_s << QStringList{u"full /m/b"_s};
    QTest::newRow("system, new") << 1 << 0 << u"/m/b"_s << QStringList{u"system /m/b"_s};
    QTest::newRow("new without path") << 0 << 0 << QString() << QStringList{};
    QTest::newRow("list without row") << 1 << 1 << QString() << QStringList{};
}

void BackupPageTest::requests()
{
    QFETCH(int, type);
    QFETCH(int, method);
    QFETCH(QString, path);
    QFETCH(QStringList, requests);
    QStringList asked;
    connect(m_page.get(), &BackupPage::requestSetManualBackupDirectory, this,
        [&asked](const QString& directory) { asked.append(u"full "_s + directory); });
    connect(m_page.get(), &BackupPage::requestSetSystemBackupDirectory, this,
        [&asked](const QString& directory) { asked.append(u"system "_s + directory); });

    auto* types = m_page->findChild<VListView*>();
    types->setCurrentIndex(types->model()->index(type, 0));
    QTest::keyClick(types, Qt::Key_Space);
    QCOMPARE(types->model()->index(type, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(types->model()->index(1 - type, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    m_page->onChoose(method);
    if (method == 0) {
        edit()->setText(path);
    } else if (!path.isEmpty()) {
        auto* item = new QStandardItem(u"shown, not read"_s);
        item->setData(path, TreeViewModel::DirectoryRole);
        m_listRequests.first()->appendRow({item, new QStandardItem(u"2026/01/01"_s)});
        table()->setCurrentIndex(table()->model()->index(0, TreeViewModel::TimeColumn));
    }
    m_page->onManualBackupErrorTypeChanged(Utils::InvalidPath);
    backupButton()->click();

    QCOMPARE(asked, requests);
    QCOMPARE(isWaiting(), !requests.isEmpty());
    QCOMPARE(backupButton()->isVisible(), requests.isEmpty());
    QVERIFY(!m_page->findChild<ErrorLabel*>()->isVisible());
}

void BackupPageTest::errors()
{
    const QMap<int, QString> texts{{1, u"Insufficient disk space"_s},
        {2, u"The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format."_s},
        {3, u"Invalid path"_s}, {4, u"The storage location cannot be in source disk, please reselect"_s},
        {6, u"Cannot back up data to the read-only device"_s},
        {7, u"This directory cannot be used to store backup files, please select a different directory."_s}};
    const auto* label = m_page->findChild<ErrorLabel*>();
    for (int code = -1; code <= 16; ++code) {
        m_page->onManualBackupErrorTypeChanged(Utils::InvalidPath);
        m_page->onManualBackupErrorTypeChanged(static_cast<Utils::ErrorType>(code));
        QCOMPARE(label->isVisible() ? label->text() : QString(), texts.value(code));
    }
}

void BackupPageTest::rowsOfTheMethod()
{
    QVERIFY(edit()->isVisible());
    QVERIFY(!table()->isVisible());
    m_page->onChoose(1);
    QVERIFY(!edit()->isVisible());
    QVERIFY(table()->isVisible());
    m_page->onChoose(7);
    QVERIFY(table()->isVisible());
    m_page->onChoose(0);
    QVERIFY(edit()->isVisible());
}

void BackupPageTest::ownerEndsTheWaiting()
{
    edit()->setText(u"/m/b"_s);
    backupButton()->click();
    QVERIFY(isWaiting());
    QCOMPARE(m_page->focusWidget(), m_page.get());
    m_page->onBackupButtonVisibleChanged(true);
    QVERIFY(!isWaiting());
    QVERIFY(backupButton()->isVisible());
    m_page->onBackupButtonVisibleChanged(false);
    QVERIFY(!backupButton()->isVisible());
}

void BackupPageTest::listIsRequestedOnce()
{
    m_page->hide();
    m_page->show();
    QCOMPARE(m_listRequests, QList<TreeViewModel*>{static_cast<TreeViewModel*>(table()->model())});
}

void BackupPageTest::cancelling()
{
    FakePrograms programs;
    programs.reply({u"systemctl"_s, u"reboot"_s});
    programs.reply({u"pkexec"_s});
    const LogCapture log;
    for (const int answer : {1, -1}) {
        const DialogAnswer dialog(answer);
        m_page->onCancelBackup();
        QVERIFY(dialog.asksAsWarning);
        QCOMPARE(dialog.message, u"System backup is ready. Do you want to reboot and backup your system now?"_s);
        QCOMPARE(dialog.confirmText, u"Reboot and Backup"_s);
    }
    QCOMPARE(programs.callLines(),
        (QStringList{u"systemctl reboot"_s, u"pkexec /bin/kestro-recovery-tool -a cancel_backup"_s}));
    // Deliberate: the first is the restore page's text.
    QCOMPARE(log.messages(QtDebugMsg),
        (QStringList{u", RestorePage::onCancelRestore reboot now"_s,
            u"doCancelBackup, exitCode: 0 , args:  QList(\"/bin/kestro-recovery-tool\", \"-a\", "
            "\"cancel_backup\") , error:  \"\""_s}));
    QVERIFY(backupButton()->isVisible());
}

void BackupPageTest::hostsCreateItByName()
{
    const RestorePage page; // registers the others
    for (const char* name : {"BackupPage", "BackupRestoreWidget"}) {
        const QMetaType type = QMetaType::fromName(name);
        QVERIFY2(type.isValid(), name);
        auto* widget = static_cast<QWidget*>(type.create());
        QVERIFY2(widget != nullptr, name);
        QCOMPARE(widget->metaObject()->className(), name);
        type.destroy(widget);
    }
    for (const char* name : {"Utils::ErrorType", "SortOrder", "Qt::SortOrder"}) {
        QVERIFY2(QMetaType::fromName(name).isValid(), name);
    }
}

int main(int argc, char** argv)
{
    VApplication app(argc, argv);
    BackupPageTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_backuppage.moc"
