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
    void inAndOut();
    void defaults();
};

/// Every record with a different value in every field, so that no two can be mistaken for each other.
void JsonRecordsTest::inAndOut()
{
    const QByteArray item(R"({"devicePath":"d","deviceType":2,"fsType":"f","label":"l","mountPoint":"m","status":1,)"
                          R"("uuid":"u"})");
    QCOMPARE(textOf(PartitionCheckItem::fromJson(objectOf(item)).toJson()), item);

    const QByteArray info(R"({"backupInfo":"b","isDeviceOS":true,"isEncrypted":false,"isExitsInitBackup":true,)"
                          R"("isFileManagerEncrypted":true,"isLvm":false,"osType":"t","osVersion":7,)"
                          R"("recoveryInfo":"r","recoveryUUID":"u"})");
    const QByteArray inverted(R"({"backupInfo":"","isDeviceOS":false,"isEncrypted":true,"isExitsInitBackup":false,)"
                              R"("isFileManagerEncrypted":false,"isLvm":true,"osType":"","osVersion":-1,)"
                              R"("recoveryInfo":"","recoveryUUID":""})");
    QCOMPARE(textOf(RestoreBaseInfo::fromJson(objectOf(info)).toJson()), info);
    QCOMPARE(textOf(RestoreBaseInfo::fromJson(objectOf(inverted)).toJson()), inverted);

    const QByteArray list(R"({"BackupFileInfoList":[{"backupPath":"p","backupTime":"t","backupUUID":"u",)"
                          R"("createTime":"c"},{"backupPath":"","backupTime":"","backupUUID":"","createTime":"9"}]})");
    QCOMPARE(textOf(backupListToJson(backupListFromJson(objectOf(list)))), list);
    QCOMPARE(textOf(backupListToJson(backupListFromJson({}))), QByteArray(R"({"BackupFileInfoList":[]})"));
}

void JsonRecordsTest::defaults()
{
    const auto text = [](const QByteArray& json) { return PartitionCheckItem::fromJson(objectOf(json)).toText(); };
    QCOMPARE(text(R"({"label":"l","status":-1})"),
        u"devicePath: , label: l, uuid: , mountPoint: , fsType: , status: -1, deviceType: 0"_s);
    QCOMPARE(text(R"({"label":5,"status":"1","deviceType":true,"uuid":"%1","mountPoint":"%2"})"),
        u"devicePath: , label: , uuid: %1, mountPoint: %2, fsType: , status: 0, deviceType: 0"_s);
}

QTEST_GUILESS_MAIN(JsonRecordsTest)
#include "tst_jsonrecords.moc"
