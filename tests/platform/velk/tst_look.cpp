// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"
#include "platform/velk/VGuiApplicationHelper.h"
#include "platform/velk/VIconButton.h"
#include "platform/velk/VLabel.h"
#include "platform/velk/VPalette.h"

#include <QDir>
#include <QIcon>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

double channel(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return (0.2126 * channel(color.redF())) + (0.7152 * channel(color.greenF())) + (0.0722 * channel(color.blueF()));
}

// As WCAG 2 defines it: 1 to 21.
double contrast(const QColor& one, const QColor& other)
{
    const double lighter = qMax(luminance(one), luminance(other));
    const double darker = qMin(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

class LookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsReadable_data();
    void textIsReadable();
    void adjustedColors_data();
    void adjustedColors();
    void themeToBeginWith_data();
    void themeToBeginWith();
    void labelsFollowTheTheme();
    void everyIconIsDrawn_data();
    void everyIconIsDrawn();
};

void LookTest::textIsReadable_data()
{
    QTest::addColumn<bool>("dark");
    for (const bool dark : {false, true}) {
        QTest::newRow(dark ? "dark" : "light") << dark;
    }
}

void LookTest::textIsReadable()
{
    QFETCH(bool, dark);
    const VPalette palette(VPalette::standard(dark));
    const auto role = [&palette](QPalette::ColorRole name) { return palette.color(QPalette::Active, name); };
    const auto type = [&palette](VPalette::ColorType name) { return palette.color(QPalette::Active, name); };

    const QList<QColor> grounds = {
        role(QPalette::Window), role(QPalette::Base), type(VPalette::ItemBackground), type(VPalette::HoverBackground)};
    const QList<QColor> texts = {role(QPalette::WindowText), role(QPalette::Text), role(QPalette::PlaceholderText),
        type(VPalette::TitleText), type(VPalette::TipText), type(VPalette::ErrorText), type(VPalette::AccentText),
        type(VPalette::SuccessText)};
    for (const QColor& ground : grounds) {
        for (const QColor& text : texts) {
            QVERIFY2(contrast(text, ground) >= 4.5, qPrintable(text.name() + u" on "_s + ground.name()));
        }
        for (const auto mark : {VPalette::ControlBorder, VPalette::FocusRing}) {
            QVERIFY2(contrast(type(mark), ground) >= 3, qPrintable(type(mark).name() + u" on "_s + ground.name()));
        }
    }
    QVERIFY(contrast(role(QPalette::ButtonText), role(QPalette::Button)) >= 4.5);
    QVERIFY(contrast(Qt::white, role(QPalette::Highlight)) >= 4.5);
    QVERIFY(contrast(Qt::white, type(VPalette::WarningButton)) >= 4.5);
    QVERIFY(contrast(role(QPalette::ToolTipText), role(QPalette::ToolTipBase)) >= 4.5);
}

void LookTest::adjustedColors_data()
{
    QTest::addColumn<QColor>("base");
    QTest::addColumn<int>("steps");
    QTest::addColumn<QColor>("result");
    QTest::newRow("grey, darker") << QColor(150, 150, 150) << -100 << QColor(50, 50, 50);
    QTest::newRow("white stays white") << QColor(Qt::white) << 50 << QColor(Qt::white);
    QTest::newRow("dark ends at black") << QColor(10, 10, 10) << -100 << QColor(Qt::black);
}

void LookTest::adjustedColors()
{
    QFETCH(QColor, base);
    QFETCH(int, steps);
    QFETCH(QColor, result);
    QCOMPARE(VGuiApplicationHelper::adjustColor(base, steps).rgba(), result.rgba());
}

void LookTest::themeToBeginWith_data()
{
    QTest::addColumn<QByteArray>("wish");
    QTest::addColumn<bool>("darkPlatform");
    QTest::addColumn<bool>("dark");
    QTest::newRow("platform light") << QByteArray() << false << false;
    QTest::newRow("platform dark") << QByteArray() << true << true;
    QTest::newRow("asked for dark") << QByteArray("dark") << false << true;
    QTest::newRow("asked for light") << QByteArray("light") << true << false;
    QTest::newRow("unknown wish") << QByteArray("purple") << true << true;
}

void LookTest::themeToBeginWith()
{
    QFETCH(QByteArray, wish);
    QFETCH(bool, darkPlatform);
    QFETCH(bool, dark);
    qputenv("KESTRO_THEME", wish);
    const auto type = VGuiApplicationHelper::preferredType(VPalette::standard(darkPlatform));
    qunsetenv("KESTRO_THEME");
    QCOMPARE(type, dark ? VGuiApplicationHelper::DarkType : VGuiApplicationHelper::LightType);
}

void LookTest::labelsFollowTheTheme()
{
    QWidget window;
    VLabel label(u"Explanation"_s, &window);
    label.setForegroundRole(VPalette::TipText);
    window.show();
    for (const auto theme : {VGuiApplicationHelper::DarkType, VGuiApplicationHelper::LightType}) {
        VGuiApplicationHelper::setPaletteType(theme);
        QCOMPARE(VGuiApplicationHelper::themeType(), theme);
        const VPalette expected(VPalette::standard(theme == VGuiApplicationHelper::DarkType));
        QTRY_COMPARE(label.palette().color(QPalette::WindowText), expected.color(QPalette::Active, VPalette::TipText));
    }
}

void LookTest::everyIconIsDrawn_data()
{
    QTest::addColumn<QString>("icon");
    const QStringList names = QDir(u":/"_s).entryList({u"*.svg"_s});
    QVERIFY(!names.isEmpty());
    QCOMPARE(names, QDir(QStringLiteral(KESTRO_SOURCE_DIR "/resources")).entryList({u"*.svg"_s}));
    for (const QString& name : names) {
        QTest::newRow(qPrintable(name)) << u":/"_s + name;
    }
}

// An icon that cannot be read is silently empty.
void LookTest::everyIconIsDrawn()
{
    QFETCH(QString, icon);
    const QImage image = QIcon(icon).pixmap(QSize(32, 32), 2).toImage();
    QCOMPARE(image.size(), QSize(64, 64));
    int painted = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            painted += image.pixelColor(x, y).alpha() > 128 ? 1 : 0;
        }
    }
    QVERIFY2(painted > 64, qPrintable(QString::number(painted)));
}

int main(int argc, char** argv)
{
    VApplication app(argc, argv);
    LookTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_look.moc"
