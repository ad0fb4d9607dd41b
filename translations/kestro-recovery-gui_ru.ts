<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>Резервное копирование</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>Тип резервной копии</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>Способ сохранения</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>Создать копию</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>Полная резервная копия</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>Резервная копия системы</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>Новая резервная копия</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>Инкрементная копия системы</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>Выберите, куда сохранить файлы резервной копии</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Изменения применяются к системе…</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>Всё готово к резервному копированию системы. Перезагрузить компьютер и создать копию сейчас?</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>Перезагрузить и создать копию</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>Резервное копирование</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Восстановление</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>Клонирование системы</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>Резервное копирование и восстановление</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>Резервное копирование среды и данных, восстановление состояния системы или данных, возврат к заводским настройкам</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>Ошибка резервного копирования, попробуйте ещё раз</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>Резервные копии не найдены</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>Выбор каталога</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Вверх</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Путь к каталогу</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Носители</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Каталоги</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Выбрать</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>Системный диск</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>Недостаточно места на диске</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>Эта файловая система не подходит для резервных копий. Выберите ext4, btrfs, xfs или reiserfs.</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>Недопустимый путь</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>Копию нельзя хранить на исходном диске, выберите другое место</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>Файл резервной копии повреждён или не подходит</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>Нельзя сохранить копию на устройство только для чтения</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>В этом каталоге нельзя хранить резервные копии, выберите другой.</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>В системе есть зашифрованный раздел. Расшифруйте его, прежде чем пользоваться резервным копированием и восстановлением.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>Выйти и перезагрузить</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>Не выключайте компьютер и не отключайте его от сети</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>Перезагрузить</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>Резервная копия создана</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>Система восстановлена</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>Выключить</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>Не удалось создать резервную копию</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>Не удалось восстановить систему</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>Не удалось создать резервную копию, ошибка: %1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>Не удалось восстановить систему, ошибка: %1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>Выйти и перезагрузить компьютер?</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Перезагрузить</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>Создаётся резервная копия, подождите…</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>С файлом резервной копии что-то не так</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>Версия системы не соответствует резервной копии. Обновите систему и повторите восстановление</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>Сведения о диске не совпадают со сведениями в резервной копии, поэтому восстановить систему сейчас нельзя</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>Место назначения не найдено</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>Файл копии</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Дата</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>Восстановление</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>Вернуть заводские настройки</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>Исходной резервной копии нет, поэтому вернуть заводские настройки нельзя.</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>Сохранить личные файлы и приложения</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>Восстановить из файлов резервной копии</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>Каталог резервной копии</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>Восстановить из точки восстановления</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>Точки восстановления</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Изменения применяются к системе…</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>Восстановить</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>Исходная резервная копия повреждена, поэтому вернуть заводские настройки нельзя.</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>Возврат к заводским настройкам</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>Сохранение личных файлов</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>Данные всех пользователей этого устройства будут безвозвратно удалены. Подтвердите, чтобы продолжить</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>Данные на системном диске будут сброшены, но ваши личные данные сохранятся. Чтобы получить к ним доступ, потребуется создать учётную запись с именем нынешнего пользователя. Подтвердите, чтобы продолжить.</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>Подтвердить и сбросить</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>Всё готово к восстановлению системы. Перезагрузить компьютер и восстановить систему сейчас?</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>Перезагрузить и восстановить</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>С исходной резервной копией что-то не так</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>Не удалось подготовить задачу</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>Обзор…</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Путь к каталогу</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>Ход выполнения</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>Система восстанавливается, подождите…</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>Не отключайте накопитель, не выключайте компьютер и не отключайте его от сети</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Ход выполнения</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
</context>
</TS>
