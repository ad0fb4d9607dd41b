<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>バックアップ</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>バックアップの種類</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>保存方法</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>バックアップする</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>フルバックアップ</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>システムバックアップ</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>新規バックアップ</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>システムの増分バックアップ</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>バックアップファイルの保存先を選択</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>システムに変更を適用しています...</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>システムバックアップの準備ができました。今すぐ再起動してシステムをバックアップしますか？</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>再起動してバックアップ</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>バックアップ</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>復元</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>システムクローン</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>バックアップと復元</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>システム環境とデータのバックアップ、システムの状態やデータの復元、工場出荷時設定へのリセットを行います</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>バックアップでエラーが発生しました。もう一度お試しください</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>バックアップが見つかりません</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>ディレクトリを選択</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上へ</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>ディレクトリのパス</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>メディア</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>ディレクトリ</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>選択</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>システムディスク</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>ディスクの空き容量が不足しています</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>このファイルシステムはバックアップに対応していません。ext4、btrfs、xfs、reiserfs のいずれかを選択してください。</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>パスが無効です</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>バックアップ元のディスクには保存できません。別の場所を選択してください</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>バックアップファイルが無効です</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>読み取り専用デバイスにはバックアップできません</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>このディレクトリにはバックアップファイルを保存できません。別のディレクトリを選択してください。</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>システムに暗号化されたパーティションがあります。復号してからバックアップと復元を使用してください。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>終了して再起動</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>電源を切ったりプラグを抜いたりしないでください</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>今すぐ再起動</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>バックアップが完了しました</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>復元が完了しました</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>シャットダウン</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>バックアップに失敗しました</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>復元に失敗しました</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>バックアップに失敗しました。エラー: %1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>復元に失敗しました。エラー: %1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>終了してコンピューターを再起動しますか？</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>再起動</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>バックアップしています。お待ちください...</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>バックアップファイルに問題があります</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>システムのバージョンがバックアップファイルと一致しません。システムを更新してから復元してください</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>ディスクの情報がバックアップの情報と一致しないため、復元できません</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>復元先が見つかりません</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>バックアップファイル</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>日時</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>復元</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>工場出荷時設定にリセット</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>初期バックアップがないため、工場出荷時設定にリセットできません。</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>個人用ファイルとアプリを保持する</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>バックアップファイルから復元</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>バックアップのディレクトリ</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>復元ポイントから復元</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>復元ポイント</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>システムに変更を適用しています...</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>今すぐ復元</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>初期バックアップが壊れているため、工場出荷時設定にリセットできません。</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>工場出荷時設定にリセット</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>個人用ファイルを保持</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>このデバイスのすべてのユーザーのデータが完全に消去されます。続行する前に確認してください</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>システムディスクのデータはリセットされますが、個人用データは保持されます。後で個人用データにアクセスするには、現在のユーザーと同じ名前のアカウントを作成する必要があります。続行する前に確認してください。</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>確認してリセット</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>システムの復元の準備ができました。今すぐ再起動してシステムを復元しますか？</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>再起動して復元</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>初期バックアップファイルに問題があります</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>タスクを準備できませんでした</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>参照...</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>ディレクトリのパス</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>システムを復元しています。お待ちください...</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>記憶装置を取り外したり、電源を切ったりしないでください</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
</context>
</TS>
