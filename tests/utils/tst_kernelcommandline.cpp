// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/bootenvironment.h"
#include "utils/kernelcommandline.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

CmdLineInfo parsed(const QByteArray& commandLine)
{
    CmdLineInfo info;
    for (const KernelParameter& parameter : parseKernelParameters(commandLine)) {
        info.*parameter.field = (parameter.isDevicePath ? u"device "_s : QString()) + parameter.value;
    }
    return info;
}

} // namespace

class KernelCommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parameters_data();
    void parameters();
    void environment_data();
    void environment();
};

void KernelCommandLineTest::parameters_data()
{
    QTest::addColumn<QByteArray>("commandLine");
    QTest::addColumn<QString>("fields");

    QTest::newRow("every parameter")
        << QByteArray("BOOT_IMAGE=/live/vmlinuz-6.1 boot=live boot-from=recovery live-media-path=recovery_live "
                      "toram=filesystem.squashfs union=overlay root=UUID=1111 quiet\n")
        << u"/live/vmlinuz-6.1|1111|live|recovery|overlay|recovery_live|filesystem.squashfs"_s;
    QTest::newRow("last piece of several") << QByteArray("boot=a=b root=UUID=c=d") << u"|d|b||||"_s;
    QTest::newRow("PARTUUID counts too") << QByteArray("root=PARTUUID=77") << u"|77|||||"_s;
    QTest::newRow("device path") << QByteArray("root=/dev/mapper/vg-root\n") << u"|device /dev/mapper/vg-root|||||"_s;
    QTest::newRow("other keys") << QByteArray("rdroot=UUID=1 reboot=k xboot=live ro quiet") << u"||||||"_s;
    QTest::newRow("empty values") << QByteArray("boot= root=UUID= ") << u"||||||"_s;
}

void KernelCommandLineTest::parameters()
{
    QFETCH(QByteArray, commandLine);
    const CmdLineInfo info = parsed(commandLine);
    const QStringList fields{
        info.bootImage, info.rootUuid, info.boot, info.bootFrom, info.unionType, info.liveMediaPath, info.toram};
    QTEST(fields.join(u'|'), "fields");
}

void KernelCommandLineTest::environment_data()
{
    QTest::addColumn<QByteArray>("commandLine");
    QTest::addColumn<int>("environment");

    const auto row = [](const char* name, const char* commandLine, int environment) {
        QTest::newRow(name) << QByteArray(commandLine) << environment;
    };
    row("generic live", "boot=live union=overlay BOOT_IMAGE=/live/vmlinuz-6.1", 2);
    row("generic live needs the overlay", "boot=live union=aufs BOOT_IMAGE=/live/vmlinuz", -1);
    row("generic live needs its kernel", "boot=live union=overlay BOOT_IMAGE=/vmlinuz", -1);
    row("squashfs medium", "boot=live toram=filesystem.squashfs live-media-path=usr/doppel", 1);
    row("squashfs medium, exactly", "boot=live toram=filesystem.squashfs live-media-path=/usr/doppel", -1);
    row("recovery live", "boot=live union=overlay live-media-path=recovery_live BOOT_IMAGE=/kestro/vmlinuz", 3);
    row("generic goes before squashfs",
        "boot=live union=overlay BOOT_IMAGE=/live/vmlinuz toram=filesystem.squashfs live-media-path=usr/doppel", 2);
    row("live although the root is known", "boot=live root=UUID=abc", -1);
    row("installed", "root=UUID=abc", 0);
    row("root elsewhere in the fstab", "root=UUID=def boot=local", 1);
    row("root not in the fstab", "root=UUID=xyz", 1);
    row("no root", "quiet", -1);
}

void KernelCommandLineTest::environment()
{
    QFETCH(QByteArray, commandLine);
    const FSTabInfoList fstab = FSTab::parseFSTab("UUID=abc / ext4 rw 0 1\nUUID=def /data ext4 rw 0 1\n");
    QTEST(static_cast<int>(bootEnvironment(parsed(commandLine), fstab)), "environment");
}

QTEST_GUILESS_MAIN(KernelCommandLineTest)
#include "tst_kernelcommandline.moc"
