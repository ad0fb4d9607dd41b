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
    void parameters();
    void environment();
};

void KernelCommandLineTest::parameters()
{
    const auto fields = [](const QByteArray& commandLine) {
        const CmdLineInfo info = parsed(commandLine);
        return QStringList{
            info.bootImage, info.rootUuid, info.boot, info.bootFrom, info.unionType, info.liveMediaPath, info.toram}
            .join(u'|');
    };
    QCOMPARE(fields("BOOT_IMAGE=/live/vmlinuz-6.1 boot=live boot-from=recovery live-media-path=recovery_live "
                    "toram=filesystem.squashfs union=overlay root=UUID=1111 quiet\n"),
        u"/live/vmlinuz-6.1|1111|live|recovery|overlay|recovery_live|filesystem.squashfs"_s);
    QCOMPARE(fields("boot=a=b root=UUID=c=d"), u"|d|b||||"_s); // the last piece of several
    QCOMPARE(fields("root=PARTUUID=77"), u"|77|||||"_s);
    QCOMPARE(fields("root=/dev/mapper/vg-root\n"), u"|device /dev/mapper/vg-root|||||"_s);
    QCOMPARE(fields("rdroot=UUID=1 reboot=k xboot=live ro quiet"), u"||||||"_s);
    QCOMPARE(fields("boot= root=UUID= "), u"||||||"_s);
}

void KernelCommandLineTest::environment()
{
    const FSTabInfoList fstab = FSTab::parseFSTab("UUID=abc / ext4 rw 0 1\nUUID=def /data ext4 rw 0 1\n");
    const auto environment = [&fstab](const QByteArray& commandLine) {
        return static_cast<int>(bootEnvironment(parsed(commandLine), fstab));
    };
    QCOMPARE(environment("root=UUID=abc"), 0);
    QCOMPARE(environment("root=UUID=def boot=local"), 1); // elsewhere in the fstab
    QCOMPARE(environment("root=UUID=xyz"), 1);
    QCOMPARE(environment("boot=live toram=filesystem.squashfs live-media-path=usr/doppel"), 1);
    QCOMPARE(environment("boot=live union=overlay BOOT_IMAGE=/live/vmlinuz-6.1"), 2);
    // The generic live system goes before the squashfs medium.
    QCOMPARE(environment("boot=live union=overlay BOOT_IMAGE=/live/vmlinuz toram=filesystem.squashfs "
                         "live-media-path=usr/doppel"),
        2);
    QCOMPARE(environment("boot=live union=overlay live-media-path=recovery_live BOOT_IMAGE=/kestro/vmlinuz"), 3);
    // Each lacks one thing; the fourth is no installed system although its root is known.
    for (const char* commandLine :
        {"boot=live union=aufs BOOT_IMAGE=/live/vmlinuz", "boot=live union=overlay BOOT_IMAGE=/vmlinuz",
            "boot=live toram=filesystem.squashfs live-media-path=/usr/doppel", "boot=live root=UUID=abc", "quiet"}) {
        QVERIFY2(environment(commandLine) == -1, commandLine);
    }
}

QTEST_GUILESS_MAIN(KernelCommandLineTest)
#include "tst_kernelcommandline.moc"
