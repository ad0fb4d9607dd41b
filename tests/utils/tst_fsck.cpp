// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"
#include "support/FakePrograms.h"
#include "support/LogCapture.h"
#include "utils/fsck.h"

#include <QTest>

using namespace Qt::StringLiterals;

class FsckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endings_data();
    void endings();
    void refusals();
};

void FsckTest::endings_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("hasErrors");
    QTest::addColumn<bool>("isFixed");
    // fsck(8): 0 none, 1 corrected, 2 reboot, 4 left uncorrected, 8 operational, 16 usage, 32 cancelled, 128 library
    QTest::newRow("no errors") << 0 << 0 << false << true;
    QTest::newRow("corrected") << 1 << 0 << false << true;
    QTest::newRow("reboot") << 2 << 0 << false << false;
    QTest::newRow("left") << 4 << 0 << true << false;
    QTest::newRow("operational") << 8 << 0 << false << false;
    // Deliberate: the sum is compared as a whole.
    QTest::newRow("left and operational") << 12 << 0 << false << false;
    QTest::newRow("killed") << 0 << 9 << false << false;
}

void FsckTest::endings()
{
    QFETCH(int, exitCode);
    QFETCH(int, signal);
    QFETCH(bool, hasErrors);
    QFETCH(bool, isFixed);
    FakePrograms programs;
    programs.reply({u"fsck"_s}, {.out = "out", .err = "err", .exitCode = exitCode, .signal = signal});
    const LogCapture log;

    QCOMPARE(Utils::checkPartitionErrorByFsck(u"/dev/sda1"_s), hasErrors);
    QString output;
    QString error;
    QCOMPARE(Utils::fixPartitionByFsck(u"/dev/mapper/vg-root"_s, output, error), isFixed);
    QCOMPARE(output, u"out"_s);
    QVERIFY(error.startsWith("err"_L1));
    QCOMPARE(
        programs.callLines(), (QStringList{u"sudo fsck -v -n /dev/sda1"_s, u"sudo fsck -y /dev/mapper/vg-root"_s}));
    if (signal == 0) {
        const QString outcome = u"fsck: exitCode: %1, exitStatus: 0"_s.arg(exitCode);
        QCOMPARE(log.messages(), (QStringList{outcome + u", devicePath: /dev/sda1"_s, outcome}));
        QCOMPARE(log.lines().first().function, u"bool Utils::checkPartitionErrorByFsck(const QString&)"_s);
    }
}

void FsckTest::refusals()
{
    const FakePrograms programs;
    for (const char* path : {"", "/dev", "/dev/", "/dev/sda1; reboot", "/dev/sda1 /dev/sda2", "/dev/$(reboot)",
             "/dev/sda1\n", "/dev/../etc", "/dev/-y", "sda1", "/tmp/image", "/dev/a'b"}) {
        const QString device = QString::fromUtf8(path);
        QVERIFY2(!Utils::checkPartitionErrorByFsck(device), path);
        QString output;
        QString error;
        QVERIFY2(!Utils::fixPartitionByFsck(device, output, error), path);
        QVERIFY2(error.contains(device), path);
    }
    QCOMPARE(programs.callLines(), QStringList());
}

int main(int argc, char** argv)
{
    return Sandbox::run<FsckTest>(argc, argv);
}

#include "tst_fsck.moc"
