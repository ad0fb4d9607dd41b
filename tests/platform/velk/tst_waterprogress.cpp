// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"
#include "platform/velk/VStyle.h"
#include "platform/velk/VWaterProgress.h"

#include <QAccessible>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QTest>

namespace {

// What a platform theme does that wants no motion.
class StillStyle : public QProxyStyle
{
public:
    int styleHint(
        StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const override
    {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

// How much of the middle column of the vessel is water.
double waterShare(VWaterProgress& progress)
{
    const QImage image = progress.grab().toImage();
    const QColor water = progress.palette().color(QPalette::Highlight);
    int wet = 0;
    const int x = image.width() / 4;
    for (int y = 0; y < image.height(); ++y) {
        const QColor pixel = image.pixelColor(x, y);
        wet += qAbs(pixel.blue() - water.blue()) < 40 && qAbs(pixel.red() - water.red()) < 40 ? 1 : 0;
    }
    return static_cast<double>(wet) / image.height();
}

} // namespace

class WaterProgressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data();
    void values();
    void aRunNeverFalls();
    void movesOnlyWhileSeen();
    void standsStillWhenMotionIsUnwanted();
    void levelGlidesToTheValue();
    void isAProgressBarForScreenReaders();
};

void WaterProgressTest::values_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("shown");
    QTest::newRow("below") << -1 << 0;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("some") << 42 << 42;
    QTest::newRow("all") << 100 << 100;
    QTest::newRow("one job above all") << 101 << 100;
    QTest::newRow("far above") << 40000 << 100;
}

void WaterProgressTest::values()
{
    QFETCH(int, given);
    QFETCH(int, shown);
    VWaterProgress progress;
    progress.start();
    progress.setValue(given);
    QCOMPARE(progress.value(), shown);
}

void WaterProgressTest::aRunNeverFalls()
{
    VWaterProgress progress;
    QSignalSpy changed(&progress, &VWaterProgress::valueChanged);
    progress.start();
    for (const int value : {1, 30, 20, 30, 31}) {
        progress.setValue(value);
    }
    QList<int> shown;
    for (const QList<QVariant>& arguments : changed) {
        shown.append(arguments.first().toInt());
    }
    QCOMPARE(shown, (QList<int>{1, 30, 31}));

    progress.stop();
    progress.start();
    progress.setValue(5);
    QCOMPARE(progress.value(), 5);
    progress.setValue(2);
    QCOMPARE(progress.value(), 5);
}

void WaterProgressTest::movesOnlyWhileSeen()
{
    VWaterProgress progress;
    progress.start();
    QVERIFY(!progress.isAnimating());
    progress.show();
    QVERIFY(progress.isAnimating());
    progress.hide();
    QVERIFY(!progress.isAnimating());
    progress.show();
    QVERIFY(progress.isAnimating());
    progress.stop();
    QVERIFY(!progress.isAnimating());
}

void WaterProgressTest::standsStillWhenMotionIsUnwanted()
{
    QApplication::setStyle(new StillStyle);
    {
        VWaterProgress progress;
        progress.start();
        progress.show();
        QVERIFY(!progress.isAnimating());
        progress.setValue(100);
        QVERIFY(waterShare(progress) > 0.6);
    }
    QApplication::setStyle(new VStyle);
}

void WaterProgressTest::levelGlidesToTheValue()
{
    VWaterProgress progress;
    progress.setTextVisible(false);
    progress.resize(200, 200);
    progress.start();
    progress.show();
    progress.setValue(100);
    QVERIFY(waterShare(progress) < 0.3);
    QTRY_VERIFY_WITH_TIMEOUT(waterShare(progress) > 0.6, 5000);
}

void WaterProgressTest::isAProgressBarForScreenReaders()
{
    VWaterProgress progress;
    progress.setValue(42);
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&progress);
    QVERIFY(interface != nullptr);
    QCOMPARE(interface->role(), QAccessible::ProgressBar);
    QVERIFY(!interface->text(QAccessible::Name).isEmpty());
    QAccessibleValueInterface* value = interface->valueInterface();
    QVERIFY(value != nullptr);
    QCOMPARE(value->currentValue().toInt(), 42);
    QCOMPARE(value->minimumValue().toInt(), 0);
    QCOMPARE(value->maximumValue().toInt(), 100);
    value->setCurrentValue(99);
    QCOMPARE(progress.value(), 42);
}

int main(int argc, char** argv)
{
    VApplication app(argc, argv);
    WaterProgressTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_waterprogress.moc"
