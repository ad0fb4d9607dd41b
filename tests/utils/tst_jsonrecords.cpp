// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/backuplistjson.h"
#include "utils/partitioncheckitem.h"
#include "utils/restorebaseinfo.h"

#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QJsonObject objectOf(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

QByteArray textOf(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

class JsonRecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inAndOut_data();
    void inAndOut();
    void defaults_data();
    void defaults();
};

/// Every record with a different value in every field, so that no two can be mistaken for each other.
void JsonRecordsTest::inAndOut_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("back");

    const QByteArray item(R"({"devicePath":"d","deviceType":2,"fsType":"f","label":"l","mountPoint":"m","status":1,)"
                          R"("uuid":"u"})");
    QTest::newRow("partition") << item << textOf(PartitionCheckItem::fromJson(objectOf(item)).toJson());
    const QByteArray info(R"({"backupInfo":"b","isDeviceOS":true,"isEncrypted":false,"isExitsInitBackup":true,)"
                          R"("isFileManagerEncrypted":true,"isLvm":false,"osType":"t","osVersion":7,)"
                          R"("recoveryInfo":"r","recoveryUUID":"u"})");
    QTest::newRow("restore page") << info << textOf(RestoreBaseInfo::fromJson(objectOf(info)).toJson());
    const QByteArray inverted(R"({"backupInfo":"","isDeviceOS":false,"isEncrypted":true,"isExitsInitBackup":false,)"
                              R"("isFileManagerEncrypted":false,"isLvm":true,"osType":"","osVersion":-1,)"
                              R"("recoveryInfo":"","recoveryUUID":""})");
    QTest::newRow("restore page, inverted")
        << inverted << textOf(RestoreBaseInfo::fromJson(objectOf(inverted)).toJson());
    const QByteArray list(R"({"BackupFileInfoList":[{"backupPath":"p","backupTime":"t","backupUUID":"u",)"
                          R"("createTime":"c"},{"backupPath":"","backupTime":"","backupUUID":"","createTime":"9"}]})");
    QTest::newRow("backups in list order") << list << textOf(backupListToJson(backupListFromJson(objectOf(list))));
    const QByteArray empty(R"({"BackupFileInfoList":[]})");
    QTest::newRow("no backup") << empty << textOf(backupListToJson(backupListFromJson({})));
}

void JsonRecordsTest::inAndOut()
{
    QFETCH(QByteArray, json);
    QTEST(json, "back");
}

void JsonRecordsTest::defaults_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    QTest::newRow("absent keys")
        << QByteArray(R"({"label":"l","status":-1})")
        << u"devicePath: , label: l, uuid: , mountPoint: , fsType: , status: -1, deviceType: 0"_s;
    QTest::newRow("other types")
        << QByteArray(R"({"label":5,"status":"1","deviceType":true,"uuid":"%1","mountPoint":"%2"})")
        << u"devicePath: , label: , uuid: %1, mountPoint: %2, fsType: , status: 0, deviceType: 0"_s;
}

void JsonRecordsTest::defaults()
{
    QFETCH(QByteArray, json);
    QTEST(PartitionCheckItem::fromJson(objectOf(json)).toText(), "text");
}

QTEST_GUILESS_MAIN(JsonRecordsTest)
#include "tst_jsonrecords.moc"
