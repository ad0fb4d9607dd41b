// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"
#include "sandbox/Sandbox.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "utils/widget/BackupRestoreWidget.h"
#include "utils/widget/ItemFrame.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDragEnterEvent>
#include <QLayout>
#include <QListView>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <memory>

using namespace Qt::StringLiterals;

/// The session service: notes what is called.
class SessionService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.kestro.daemon.ArxRecoverySession")

public Q_SLOTS:
    void ShowBackupPage()
    {
        Q_EMIT
        called(u"ShowBackupPage"_s);
    }
    void ShowRestorePage()
    {
        Q_EMIT
        called(u"ShowRestorePage"_s);
    }
    void ShowSystemClonePage()
    {
        Q_EMIT
        called(u"ShowSystemClonePage"_s);
    }

Q_SIGNALS:
    void called(const QString& method);
};

namespace {

// Tiles in the order of the rows.
QList<plugins::ItemFrame*> tilesOf(const BackupRestoreWidget& widget)
{
    return widget.findChildren<plugins::ItemFrame*>();
}

} // namespace

class BackupRestoreWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tilesCallTheService();
    void withoutService();
    void withoutBus();
    void tilesAreButtons();
    void subtitleIsDrawnCloser();
    void nothingIsDragged();
    void namesAndSizes();
    void moduleList();
};

// The service has a thread and a connection of its own: the widget's calls wait for their answers.
void BackupRestoreWidgetTest::tilesCallTheService()
{
    const QString address = PrivateBus::start();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    QThread thread;
    SessionService service;
    service.moveToThread(&thread);
    thread.start();
    QDBusConnection bus = QDBusConnection::connectToBus(address, u"service"_s);
    QVERIFY(bus.registerObject(u"/com/kestro/daemon/ArxRecoverySession"_s, &service,
        QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(u"com.kestro.daemon.ArxRecoverySession"_s));
    QStringList calls;
    connect(&service, &SessionService::called, this, [&calls](const QString& method) { calls.append(method); });

    BackupRestoreWidget widget;
    widget.show();
    const LogCapture log;
    widget.onItemChanged(true); // no row is current yet
    QCOMPARE(calls, QStringList{});
    const QStringList methods = {u"ShowBackupPage"_s, u"ShowRestorePage"_s, u"ShowSystemClonePage"_s};
    for (int i = 2; i >= 0; --i) {
        QTest::mouseClick(tilesOf(widget).at(i), Qt::LeftButton);
        QTRY_COMPARE(calls, QStringList{methods.at(i)});
        calls.clear();
    }
    QCOMPARE(log.messages(), QStringList{});
    thread.quit();
    thread.wait();
}

void BackupRestoreWidgetTest::withoutService()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", PrivateBus::start().toUtf8());
    BackupRestoreWidget widget;
    widget.show();
    const LogCapture log;
    for (plugins::ItemFrame* tile : tilesOf(widget)) {
        QTest::keyClick(tile, Qt::Key_Return);
    }
    const QStringList lines = log.messages(QtCriticalMsg);
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines[0].startsWith(u"error: showBackupDbus invalid, errMsg = "_s), qPrintable(lines[0]));
    QVERIFY2(lines[1].startsWith(u"error: showRestoreDbus invalid, errMsg = "_s), qPrintable(lines[1]));
    QVERIFY2(lines[2].startsWith(u"error: showSystemCloneDbus invalid, errMsg = "_s), qPrintable(lines[2]));
    QVERIFY(lines[0].contains(u"com.kestro.daemon.ArxRecoverySession"_s));
    QVERIFY(widget.isVisible());
}

void BackupRestoreWidgetTest::withoutBus()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    BackupRestoreWidget widget;
    widget.show();
    const LogCapture log;
    QTest::mouseClick(tilesOf(widget).first(), Qt::LeftButton);
    QCOMPARE(log.messages(QtCriticalMsg).size(), 1);
    QVERIFY(widget.isVisible());
}

void BackupRestoreWidgetTest::tilesAreButtons()
{
    plugins::ItemFrame tile(u"Restore"_s, {}, {});
    tile.show();
    QSignalSpy clicked(&tile, &plugins::ItemFrame::clicked);
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&tile);
    QCOMPARE(interface->role(), QAccessible::Button);
    QCOMPARE(interface->text(QAccessible::Name), u"Restore"_s);
    QVERIFY(interface->state().focusable);

    QCOMPARE(int(tile.backgroundType()), 1);
    QHoverEvent enter(QEvent::HoverEnter, QPointF(5, 5), QPointF(5, 5), QPointF(-1, -1));
    QCoreApplication::sendEvent(&tile, &enter);
    QCOMPARE(int(tile.backgroundType()), 11);
    QHoverEvent leave(QEvent::HoverLeave, QPointF(-1, -1), QPointF(-1, -1), QPointF(5, 5));
    QCoreApplication::sendEvent(&tile, &leave);
    QCOMPARE(int(tile.backgroundType()), 1);

    QVERIFY(!tile.isClicked());
    QTest::mouseClick(&tile, Qt::LeftButton);
    QTest::mouseClick(&tile, Qt::LeftButton);
    QTest::keyClick(&tile, Qt::Key_Space);
    QCOMPARE(clicked.count(), 3);
    QVERIFY(tile.isClicked());
    QCOMPARE(clicked.last().first().toBool(), true);
}

void BackupRestoreWidgetTest::subtitleIsDrawnCloser()
{
    const BackupRestoreWidget widget;
    QList<int> spaces;
    for (int i = 0; i < widget.layout()->count(); ++i) {
        if (const QSpacerItem* spacer = widget.layout()->itemAt(i)->spacerItem()) {
            spaces.append(spacer->sizeHint().height());
        }
    }
    // Deliberate: less than nothing. The two zeros stretch.
    QCOMPARE(spaces, (QList<int>{49, 0, 12, -15, 30, 0}));
}

void BackupRestoreWidgetTest::nothingIsDragged()
{
    const BackupRestoreWidget widget;
    auto* modules = widget.findChild<QListView*>();
    QVERIFY(!modules->dragEnabled());
    // Drops go to the viewport; the view itself takes none, whatever its own property says.
    QVERIFY(!modules->viewport()->acceptDrops());
    const std::unique_ptr<QMimeData> tile(modules->model()->mimeData({modules->model()->index(0, 0)}));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, tile.get(), Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(modules, &enter);
    QVERIFY(!enter.isAccepted());
}

// Assistive technologies and the tests of hosts find the parts by these names.
void BackupRestoreWidgetTest::namesAndSizes()
{
    const BackupRestoreWidget widget;
    QMap<QString, QSize> found;
    for (const QWidget* part : widget.findChildren<QWidget*>()) {
        found.insert(part->accessibleName(), part->minimumSize());
    }
    QVERIFY(found.contains(u"arxBackupRestoreLogoLabel"_s));
    QVERIFY(found.contains(u"arx_BackupAndRestoreTitleLabel"_s));
    QCOMPARE(found.value(u"arx_BackupAndRestoreSubTitleLabel"_s), QSize(590, 50));
    QCOMPARE(found.value(u"arxBackupRestoreListView"_s), QSize(590, 300));
    QStringList rows;
    const QAbstractItemModel* modules = widget.findChild<QListView*>()->model();
    for (int row = 0; row < modules->rowCount(); ++row) {
        rows << modules->index(row, 0).data(Qt::AccessibleTextRole).toString();
        QCOMPARE(tilesOf(widget).at(row)->size(), QSize(130, 130));
    }
    QCOMPARE(rows, (QStringList{u"arx_Backup"_s, u"arx_Restore"_s, u"arx_SystemClone"_s}));
}

void BackupRestoreWidgetTest::moduleList()
{
    BackupRestoreWidget widget;
    QSignalSpy clicked(&widget, &BackupRestoreWidget::moduleClicked);
    const std::unique_ptr<QWidget> modules(widget.createModuleWidget(nullptr));
    QCOMPARE(modules->accessibleName(), u"moduleWidget_"_s);
    QCOMPARE(modules->size(), QSize(251, 251));
    QVERIFY(modules->layout()->contentsMargins().isNull());
    auto* list = modules->findChild<QListView*>();
    QCOMPARE(list->accessibleName(), u"moduleListView_"_s);
    modules->show();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(list->model()->index(1, 0)).center());
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first().first().toModelIndex().row(), 1);
}

int main(int argc, char** argv)
{
    Sandbox::enter(argv);
    VApplication app(argc, argv);
    BackupRestoreWidgetTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_backuprestorewidget.moc"
