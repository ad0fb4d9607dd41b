// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/screenfitting.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ScreenFittingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void centring_data();
    void centring();
    void firstChanged_data();
    void firstChanged();
    void rememberedName();
};

void ScreenFittingTest::centring_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<QMargins>("hidden");
    QTest::newRow("larger") << QSize(1920, 1080) << QPoint(560, 240) << QMargins();
    QTest::newRow("odd") << QSize(1367, 769) << QPoint(283, 84) << QMargins();
    QTest::newRow("same") << QSize(800, 600) << QPoint(0, 0) << QMargins();
    QTest::newRow("smaller") << QSize(640, 480) << QPoint(-80, -60) << QMargins(80, 60, 80, 60);
    // One pixel less: half of it, toward zero.
    QTest::newRow("odd and smaller") << QSize(799, 597) << QPoint(0, -1) << QMargins(0, 1, 0, 1);
    QTest::newRow("narrow only") << QSize(720, 1280) << QPoint(-40, 340) << QMargins(40, 0, 40, 0);
}

void ScreenFittingTest::centring()
{
    QFETCH(QSize, screen);
    const QSize window(800, 600);
    QTEST(centredPosition(screen, window), "position");
    QTEST(overhang(screen, window), "hidden");
}

using Known = std::optional<QRect>;
Q_DECLARE_METATYPE(Known)

void ScreenFittingTest::firstChanged_data()
{
    const QRect full(0, 0, 1920, 1080);
    const ScreenState left{u"HDMI-1"_s, full};
    const ScreenState right{u"DP-1"_s, QRect(1920, 0, 1280, 1024)};
    QTest::addColumn<QList<ScreenState>>("screens");
    QTest::addColumn<QString>("name");
    QTest::addColumn<Known>("geometry");
    QTest::addColumn<int>("index");
    QTest::newRow("none") << QList<ScreenState>() << u"HDMI-1"_s << Known(full) << -1;
    QTest::newRow("nothing known") << QList{left} << QString() << Known() << 0;
    QTest::newRow("as known") << QList{left} << u"HDMI-1"_s << Known(full) << -1;
    QTest::newRow("known by name only") << QList{left} << u"HDMI-1"_s << Known() << -1;
    QTest::newRow("size") << QList{left} << u"HDMI-1"_s << Known(QRect(0, 0, 1280, 1024)) << 0;
    QTest::newRow("offset") << QList{left} << u"HDMI-1"_s << Known(QRect(10, 0, 1920, 1080)) << 0;
    // With two screens of different names one of them is always another one: deliberate.
    QTest::newRow("second") << QList{left, right} << u"HDMI-1"_s << Known(full) << 1;
    QTest::newRow("first of two") << QList{left, right} << u"DP-1"_s << Known() << 0;
}

void ScreenFittingTest::firstChanged()
{
    QFETCH(QList<ScreenState>, screens);
    QFETCH(QString, name);
    QFETCH(Known, geometry);
    QTEST(int(firstChangedScreen(screens, name, geometry)), "index");
}

// A screen that only has the display's name is "changed" each time: deliberate.
void ScreenFittingTest::rememberedName()
{
    QCOMPARE(rememberedScreenName(u"HDMI-1"_s), u"HDMI-1"_s);
    QCOMPARE(rememberedScreenName(u":0.0"_s), QString());
    QCOMPARE(rememberedScreenName(u"host:0.0 screen"_s), QString());
}

QTEST_APPLESS_MAIN(ScreenFittingTest)

#include "tst_screenfitting.moc"
