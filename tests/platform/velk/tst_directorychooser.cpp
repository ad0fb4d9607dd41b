// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"
#include "platform/velk/directorychooser.h"
#include "platform/velk/mountedmedia.h"
#include "support/buttons.h"

#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class DirectoryChooserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mediaComeFirst();
    void onlyStoresAreOffered_data();
    void onlyStoresAreOffered();
    void opensTheNearestDirectory();
    void markedDirectoryIsChosen();
    void typedDirectoryIsOpened();
    void typedDirectoryIsChosen();
    void tabOpensNoMedium();
};

void DirectoryChooserTest::mediaComeFirst()
{
    const QList<MountedVolume> volumes = {
        {u"/"_s, u"/dev/sda2"_s, {}, u"ext4"_s},
        {u"/home"_s, u"/dev/sda3"_s, u"Home"_s, u"ext4"_s},
        {u"/media/kestro/stick"_s, u"/dev/sdb1"_s, {}, u"vfat"_s},
        {u"/run/media/kestro/disk"_s, u"/dev/sdc1"_s, u"Big disk"_s, u"btrfs"_s},
        {u"/media/kestro/stick"_s, u"/dev/sdb1"_s, {}, u"vfat"_s},
    };
    const QList<MediaPlace> expected = {{u"/media/kestro/stick"_s, u"stick"_s},
        {u"/run/media/kestro/disk"_s, u"Big disk"_s}, {u"/"_s, u"/"_s}, {u"/home"_s, u"Home"_s}};
    QCOMPARE(placesOf(volumes), expected);
}

void DirectoryChooserTest::onlyStoresAreOffered_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("fsType");
    QTest::addColumn<bool>("offered");
    QTest::newRow("stick") << u"/media/a"_s << u"/dev/sdb1"_s << u"vfat"_s << true;
    QTest::newRow("memory") << u"/run"_s << u"tmpfs"_s << u"tmpfs"_s << false;
    QTest::newRow("image of a live system") << u"/run/live/rootfs"_s << u"/dev/loop0"_s << u"squashfs"_s << false;
    QTest::newRow("boot") << u"/boot"_s << u"/dev/sda1"_s << u"ext4"_s << false;
    QTest::newRow("EFI") << u"/boot/efi"_s << u"/dev/sda1"_s << u"vfat"_s << false;
    QTest::newRow("a name that begins like boot") << u"/bootstrap"_s << u"/dev/sda5"_s << u"ext4"_s << true;
}

void DirectoryChooserTest::onlyStoresAreOffered()
{
    QFETCH(QString, path);
    QFETCH(QString, device);
    QFETCH(QString, fsType);
    QFETCH(bool, offered);
    QCOMPARE(!placesOf({{path, device, {}, fsType}}).isEmpty(), offered);
}

void DirectoryChooserTest::opensTheNearestDirectory()
{
    const QTemporaryDir folder;
    DirectoryChooser chooser;
    chooser.openDirectory(folder.path() + u"/missing/deeper"_s);
    QCOMPARE(chooser.directory(), folder.path());
}

void DirectoryChooserTest::markedDirectoryIsChosen()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"backup-1"_s));
    DirectoryChooser chooser;
    chooser.openDirectory(folder.path());
    QCOMPARE(chooser.directory(), folder.path());

    auto* view = chooser.findChild<QListView*>(u"folders"_s);
    QVERIFY(view != nullptr);
    QTRY_COMPARE(view->model()->rowCount(view->rootIndex()), 1);
    view->setCurrentIndex(view->model()->index(0, 0, view->rootIndex()));
    QCOMPARE(chooser.directory(), folder.filePath(u"backup-1"_s));

    Q_EMIT
    view->activated(view->currentIndex());
    QCOMPARE(chooser.findChild<QLineEdit*>()->text(), folder.filePath(u"backup-1"_s));
}

void DirectoryChooserTest::typedDirectoryIsOpened()
{
    const QTemporaryDir folder;
    DirectoryChooser chooser;
    auto* path = chooser.findChild<QLineEdit*>();
    path->setText(folder.path());
    QTest::keyClick(path, Qt::Key_Return);
    QCOMPARE(chooser.directory(), folder.path());
    QCOMPARE(chooser.result(), 0); // Enter in the line opens, it does not choose yet
}

void DirectoryChooserTest::typedDirectoryIsChosen()
{
    const QTemporaryDir folder;
    DirectoryChooser chooser;
    auto* path = chooser.findChild<QLineEdit*>();
    path->selectAll();
    QTest::keyClicks(path, folder.path());
    buttonIn(chooser, u"Choose"_s)->click();
    QCOMPARE(chooser.result(), int(QDialog::Accepted));
    QCOMPARE(chooser.directory(), folder.path());
}

void DirectoryChooserTest::tabOpensNoMedium()
{
    const QTemporaryDir folder;
    const QTemporaryDir medium;
    DirectoryChooser chooser;
    auto* places = chooser.findChild<QListWidget*>();
    auto* item = new QListWidgetItem(u"medium"_s);
    item->setData(Qt::UserRole, medium.path());
    places->insertItem(0, item);
    chooser.openDirectory(folder.path());
    chooser.show();
    QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(places, &focus);
    QCOMPARE(chooser.directory(), folder.path());
}

int main(int argc, char** argv)
{
    VApplication app(argc, argv);
    DirectoryChooserTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_directorychooser.moc"
