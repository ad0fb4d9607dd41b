// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/UDisksObjectTree.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString blockInterface = u"org.freedesktop.UDisks2.Block"_s;
const QString driveInterface = u"org.freedesktop.UDisks2.Drive"_s;
const QString partitionInterface = u"org.freedesktop.UDisks2.Partition"_s;

QByteArray bytes(const QJsonValue& numbers)
{
    QByteArray bytes;
    for (const QJsonValue& number : numbers.toArray()) {
        bytes += static_cast<char>(number.toInt());
    }
    return bytes;
}

// A value of the recording as the bus library would deliver it.
QVariant recordedValue(const QString& type, const QJsonValue& data)
{
    if (type == "ay"_L1) {
        return bytes(data);
    }
    if (type == "o"_L1) {
        return QVariant::fromValue(QDBusObjectPath(data.toString()));
    }
    if (type != "aay"_L1) {
        return data.toVariant();
    }
    QByteArrayList list;
    for (const QJsonValue& element : data.toArray()) {
        list << bytes(element);
    }
    return QVariant::fromValue(list);
}

UDisksManagedObjects recordedObjects()
{
    QFile file(QStringLiteral(KESTRO_TEST_DATA "/objects-2.9.4.json"));
    const QJsonObject all =
        file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    UDisksManagedObjects objects;
    for (const QString& path : all.keys()) {
        auto& interfaces = objects[QDBusObjectPath(path)];
        const QJsonObject recorded = all[path].toObject();
        for (const QString& interface : recorded.keys()) {
            const QJsonObject properties = recorded[interface].toObject();
            for (const QString& name : properties.keys()) {
                const QJsonObject value = properties[name].toObject();
                interfaces[interface][name] = recordedValue(value[u"type"_s].toString(), value[u"data"_s]);
            }
        }
    }
    return objects;
}

QVariant path(const QString& text)
{
    return QVariant::fromValue(QDBusObjectPath(text));
}

// Object, device node, drive: one block device as the daemon would list it.
void addBlock(UDisksManagedObjects& objects, const QString& object, const char* node, const QString& drive)
{
    objects[QDBusObjectPath(object)][blockInterface] = {
        {u"Device"_s, QByteArray(node, qstrlen(node) + 1)}, {u"Drive"_s, path(drive)}};
}

} // namespace

class UDisksObjectTreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordedAnswer();
    void order();
    void valuesOfOtherTypes_data();
    void valuesOfOtherTypes();
    void mountPoints_data();
    void mountPoints();
};

void UDisksObjectTreeTest::recordedAnswer()
{
    const UDisksObjectTree tree = parseObjectTree(recordedObjects());
    QStringList lines;
    for (const UDisksBlock& block : tree.blocks) {
        lines << QStringList{block.path.section(u'/', -1), block.device, block.drive, block.idType,
            block.table.section(u'/', -1), QString::fromUtf8(block.mountPoints.join(',')),
            block.isPartition ? u"partition"_s : QString(), block.isRemovable ? u"removable"_s : QString()}
                     .join(u'|');
    }
    QCOMPARE(lines,
        QStringList({u"loop0|/dev/loop0|/|||||"_s, u"loop1|/dev/loop1|/|||||"_s,
            u"loop1p1|/dev/loop1p1|/|ext4|loop1|/media/root/My Disk|partition|"_s,
            u"loop1p2|/dev/loop1p2|/||loop1||partition|"_s}));
    QCOMPARE(tree.blocks[2].idUUID, u"25a8231f-7911-4629-ac7c-a5d517318108"_s);
    QVERIFY(tree.blocks[3].idUUID.isEmpty());
    QCOMPARE(tree.find(tree.blocks[2].path), &tree.blocks[2]);
    QVERIFY(!tree.find(QString()));
    QVERIFY(!tree.find(u"/org/freedesktop/UDisks2/Manager"_s));
}

// Whatever the object paths are: internal disks first, then by device node; a drive that is not listed is internal.
void UDisksObjectTreeTest::order()
{
    UDisksManagedObjects objects;
    objects[QDBusObjectPath(u"/d/stick"_s)][driveInterface] = {{u"Removable"_s, true}};
    objects[QDBusObjectPath(u"/d/disk"_s)][driveInterface] = {{u"Removable"_s, false}};
    addBlock(objects, u"/b/1"_s, "/dev/sda1", u"/d/stick"_s);
    addBlock(objects, u"/b/2"_s, "/dev/sdb2", u"/d/disk"_s);
    addBlock(objects, u"/b/3"_s, "/dev/sdb", u"/d/disk"_s);
    addBlock(objects, u"/b/4"_s, "/dev/sda", u"/d/stick"_s);
    addBlock(objects, u"/b/5"_s, "/dev/loop0", u"/"_s);
    addBlock(objects, u"/b/6"_s, "/dev/sdc", u"/d/gone"_s);
    QStringList nodes;
    for (const UDisksBlock& block : parseObjectTree(objects).blocks) {
        nodes << block.device;
    }
    QCOMPARE(nodes,
        QStringList({u"/dev/loop0"_s, u"/dev/sdb"_s, u"/dev/sdb2"_s, u"/dev/sdc"_s, u"/dev/sda"_s, u"/dev/sda1"_s}));
}

void UDisksObjectTreeTest::valuesOfOtherTypes_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("invalid") << QVariant();
    QTest::newRow("number") << QVariant(5);
    QTest::newRow("true") << QVariant(true);
    QTest::newRow("map") << QVariant(QVariantMap{{u"a"_s, 1}});
    QTest::newRow("list of texts") << QVariant(QStringList{u"/dev/sda"_s});
}

void UDisksObjectTreeTest::valuesOfOtherTypes()
{
    QFETCH(QVariant, value);
    UDisksManagedObjects objects;
    auto& object = objects[QDBusObjectPath(u"/b"_s)];
    for (const QString& name : {u"Device"_s, u"Drive"_s, u"IdType"_s, u"IdUUID"_s}) {
        object[blockInterface][name] = value;
    }
    object[partitionInterface][u"Table"_s] = value;
    const UDisksBlock block = parseObjectTree(objects).blocks.value(0);
    QCOMPARE(block.path, u"/b"_s);
    QCOMPARE(block.device + block.drive + block.idType + block.idUUID + block.table, QString());
    QVERIFY(block.isPartition);
}

void UDisksObjectTreeTest::mountPoints_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArrayList>("mountPoints");
    const auto row = [](const char* name, const QByteArrayList& value, const QByteArrayList& expected) {
        QTest::newRow(name) << QVariant::fromValue(value) << expected;
    };
    row("none", {}, {});
    row("trailing NUL", {QByteArray("/media/My Disk\0", 15)}, {"/media/My Disk"});
    row("without NUL", {"/media/x"}, {"/media/x"});
    row("two", {QByteArray("/a\0", 3), QByteArray("/b\0", 3)}, {"/a", "/b"});
    row("empty ones", {QByteArray(), QByteArray("\0", 1)}, {});
    row("not UTF-8", {QByteArray("/\xFF\0", 3)}, {"/\xFF"});
    QTest::newRow("a text") << QVariant(u"/media/x"_s) << QByteArrayList();
    QTest::newRow("invalid") << QVariant() << QByteArrayList();
}

void UDisksObjectTreeTest::mountPoints()
{
    QFETCH(QVariant, value);
    QTEST(parseMountPoints(value), "mountPoints");
}

QTEST_GUILESS_MAIN(UDisksObjectTreeTest)
#include "tst_udisksobjecttree.moc"
