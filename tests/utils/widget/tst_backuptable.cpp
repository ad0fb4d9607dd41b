// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"
#include "utils/widget/BaseItemDelegate.h"
#include "utils/widget/BaseTableView.h"
#include "utils/widget/SettingsItem.h"
#include "utils/widget/TreeViewModel.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

using namespace Qt::StringLiterals;

class BackupTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void header();
    void newestFirst();
    void emptyListSaysSo();
    void currentRowIsSelected();
    void washIsNearlyInvisible();
    void toolTip_data();
    void toolTip();
    void onlyAMarkedItemPaints();
};

void BackupTableTest::header()
{
    const TreeViewModel model;
    const auto data = [&model](int section, int role) { return model.headerData(section, Qt::Horizontal, role); };
    QCOMPARE(data(0, Qt::DisplayRole), QVariant(u"Backup File"_s));
    QCOMPARE(data(1, Qt::DisplayRole), QVariant(u"Time"_s));
    QCOMPARE(data(0, Qt::TextAlignmentRole), QVariant(129));
    QCOMPARE(data(1, Qt::InitialSortOrderRole), QVariant(1));
    QCOMPARE(data(2, Qt::TextAlignmentRole), QVariant());
}

void BackupTableTest::newestFirst()
{
    TreeViewModel model;
    BaseTableView table;
    table.setModel(&model);
    QCOMPARE(table.header()->sortIndicatorSection(), int(TreeViewModel::TimeColumn));
    QCOMPARE(table.header()->sortIndicatorOrder(), Qt::DescendingOrder);
    for (const char* day : {"2026/01/09", "2026/11/21", "2025/12/31"}) {
        model.appendRow({new QStandardItem(u"/b"_s), new QStandardItem(QString::fromLatin1(day))});
    }
    Q_EMIT
    model.itemsIsReady();
    QStringList days;
    for (int row = 0; row < model.rowCount(); ++row) {
        days.append(model.item(row, TreeViewModel::TimeColumn)->text());
    }
    QCOMPARE(days, (QStringList{u"2026/11/21"_s, u"2026/01/09"_s, u"2025/12/31"_s}));
}

void BackupTableTest::emptyListSaysSo()
{
    TreeViewModel model;
    BaseTableView table;
    table.setModel(&model);
    QCOMPARE(table.accessibleDescription(), QString()); // it has not come yet
    Q_EMIT
    model.itemsIsReady();
    QCOMPARE(table.accessibleDescription(), u"No backups found"_s);
    model.appendRow({new QStandardItem(u"/b"_s), new QStandardItem(u"2026/01/01"_s)});
    Q_EMIT
    model.itemsIsReady();
    QCOMPARE(table.accessibleDescription(), QString());
}

void BackupTableTest::currentRowIsSelected()
{
    // What a page takes for chosen must look chosen, also when the keyboard came here without a click.
    TreeViewModel model;
    model.appendRow({new QStandardItem(u"/b"_s), new QStandardItem(u"2026/01/01"_s)});
    BaseTableView table;
    table.setModel(&model);
    table.show();
    QVERIFY(!table.currentIndex().isValid());
    QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(&table, &focus);
    QCOMPARE(table.currentIndex().row(), 0);
    QVERIFY(table.selectionModel()->isRowSelected(0));
    QTest::mouseClick(
        table.viewport(), Qt::LeftButton, Qt::ControlModifier, table.visualRect(table.currentIndex()).center());
    QVERIFY(table.selectionModel()->isRowSelected(0));
}

void BackupTableTest::washIsNearlyInvisible()
{
    TreeViewModel model;
    BaseTableView table;
    table.setModel(&model);
    table.resize(200, 150);
    QImage image(200, 150, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    table.render(&image, {}, {}, QWidget::DrawChildren);
    // Deliberate: one percent.
    const int alpha = image.pixelColor(100, 100).alpha();
    QVERIFY2(alpha > 0 && alpha <= 3, qPrintable(QString::number(alpha)));
}

void BackupTableTest::toolTip_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("spare"); // the cell's width beyond that of the text
    QTest::addColumn<QString>("shown");
    const QString name = u"/media/kestro/backup-1"_s;
    QTest::newRow("fits exactly") << name << 0 << QString();
    QTest::newRow("one pixel too narrow") << name << -1 << u"<div>/media/kestro/backup-1</div>"_s;
    QTest::newRow("wide") << name << 100 << QString();
    QTest::newRow("markup stays text") << u"/media/<b>x"_s << -5 << u"<div>/media/&lt;b&gt;x</div>"_s;
}

void BackupTableTest::toolTip()
{
    QFETCH(QString, text);
    QFETCH(int, spare);
    QFETCH(QString, shown);
    TreeViewModel model;
    model.appendRow({new QStandardItem(text), new QStandardItem(u"2026/01/01"_s)});
    BaseTableView table;
    table.setModel(&model);
    table.show();
    QToolTip::showText({5, 5}, u"left over"_s, &table);

    QStyleOptionViewItem option;
    const int width = QFontMetrics(table.font()).boundingRect({}, Qt::TextSingleLine, text).width();
    option.rect = QRect(10, 0, width + spare, 30);
    QHelpEvent help(QEvent::ToolTip, {12, 5}, {12, 5});
    BaseItemDelegate delegate;
    QVERIFY(delegate.helpEvent(&help, &table, option, model.index(0, 0)));
    if (shown.isEmpty()) {
        QTRY_VERIFY(!QToolTip::isVisible());
    } else {
        QCOMPARE(QToolTip::text(), shown);
    }
}

void BackupTableTest::onlyAMarkedItemPaints()
{
    SettingsItem item(u"Row"_s);
    QCOMPARE(item.accessibleName(), u"Row"_s);
    item.resize(60, 40);
    const auto center = [&item] {
        QImage image(60, 40, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        item.render(&image, {}, {}, QWidget::DrawChildren);
        return image.pixelColor(30, 20);
    };
    QCOMPARE(center().alpha(), 0);
    item.setIsErr(true);
    QCOMPARE(center().alpha(), 255);
}

int main(int argc, char** argv)
{
    VApplication app(argc, argv);
    BackupTableTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_backuptable.moc"
