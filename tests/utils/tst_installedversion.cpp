// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/installedversion.h"

#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class InstalledVersionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void edition();
    void minorVersion_data();
    void minorVersion();
    void missingFiles();
};

void InstalledVersionTest::edition()
{
    const QTemporaryDir root;
    writeWholeFile(root.filePath(u"usr/lib/kestro/desktop-version"_s), "[Other]\nType=Home\n[Release]\nType=Device\n");
    QCOMPARE(installedEdition(root.path()), u"Device"_s);
}

void InstalledVersionTest::minorVersion_data()
{
    QTest::addColumn<QString>("linkTarget"); // empty: a plain file
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("version");

    const QByteArray content("[Version]\nMinorVersion=1041\n");
    const auto link = [&content](const char* name, const QString& target, const QString& file) {
        QTest::newRow(name) << target << file << content << 1041;
    };
    link("plain file", {}, u"etc/os-version"_s);
    link("absolute link", u"/usr/lib/os-version"_s, u"usr/lib/os-version"_s);
    link("link beside it", u"os-version.real"_s, u"etc/os-version.real"_s);
    link("link above the root stays inside", u"../../../../../../../../usr/x"_s, u"usr/x"_s);
    QTest::newRow("dangling link") << u"/none"_s << u"usr/x"_s << content << 0;
    QTest::newRow("no number") << QString() << u"etc/os-version"_s << QByteArray("[Version]\nMinorVersion=20.5\n") << 0;
}

void InstalledVersionTest::minorVersion()
{
    QFETCH(QString, linkTarget);
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    const QTemporaryDir root;
    writeWholeFile(root.filePath(file), content);
    if (!linkTarget.isEmpty()) {
        QVERIFY(QDir(root.path()).mkpath(u"etc"_s));
        QVERIFY(QFile::link(linkTarget, root.filePath(u"etc/os-version"_s)));
    }
    QTEST(installedMinorVersion(root.path()), "version");
}

void InstalledVersionTest::missingFiles()
{
    const QTemporaryDir root;
    QCOMPARE(installedEdition(root.path()), u"Professional"_s);
    QCOMPARE(installedMinorVersion(root.path()), 0);
}

QTEST_GUILESS_MAIN(InstalledVersionTest)
#include "tst_installedversion.moc"
