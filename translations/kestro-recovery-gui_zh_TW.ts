<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>備份</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>備份類型</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>儲存方式</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>開始備份</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>完整備份</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>系統備份</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>新增備份</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>系統增量備份</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>請選擇備份檔案的儲存路徑</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>正在對您的系統套用變更...</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>系統備份已準備就緒，是否立即重新啟動並備份系統？</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>重新啟動並備份</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>備份</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>還原</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>系統複製</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>備份與還原</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>備份系統環境和資料，還原系統狀態或資料，並支援恢復原廠設定</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>備份發生錯誤，請重試</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>找不到備份</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>選擇目錄</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上一層</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>目錄路徑</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>儲存裝置</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>目錄</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>選擇</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>系統磁碟</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>磁碟空間不足</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>備份不支援此檔案系統，請選擇 ext4、btrfs、xfs 或 reiserfs 格式的檔案系統。</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>路徑無效</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>儲存位置不能在來源磁碟上，請重新選擇</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>備份檔案無效</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>無法將資料備份到唯讀裝置</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>此目錄無法用於儲存備份檔案，請選擇其他目錄。</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>系統含有加密分割區，請先解密再使用備份與還原功能。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>離開並重新啟動</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>請勿關機或拔除電源</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>立即重新啟動</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>備份成功</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>還原成功</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>關機</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>備份失敗</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>還原失敗</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>備份失敗，錯誤：%1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>還原失敗，錯誤：%1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>確定要離開並重新啟動電腦嗎？</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>重新啟動</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>正在備份，請稍候...</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>您的備份檔案有問題</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>系統版本與備份檔案不符，請更新系統後再還原</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>磁碟資訊與備份資訊不符，目前無法還原</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>找不到目標位置</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>備份檔案</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>時間</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>還原</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>恢復原廠設定</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>初始備份檔案不存在，無法恢復原廠設定。</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>保留個人檔案和應用程式</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>從備份檔案還原</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>備份目錄</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>從還原點還原</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>還原點</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>正在對您的系統套用變更...</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>立即還原</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>初始備份檔案已損毀，無法恢復原廠設定。</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>恢復原廠設定</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>保留個人檔案</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>此裝置上所有使用者的資料將被永久清除，請確認後再繼續</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>系統磁碟上的資料將被重設，但會保留您的個人資料。您需要建立一個與目前使用者同名的帳號，之後才能存取您的個人資料。請確認後再繼續。</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>確認重設</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>系統還原已準備就緒，是否立即重新啟動並還原系統？</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>重新啟動並還原</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>您的初始備份檔案有問題</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>工作初始化失敗</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>瀏覽...</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>目錄路徑</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>進度</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>正在還原系統，請稍候...</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>請勿移除儲存裝置、關機或拔除電源</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進度</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
</TS>
