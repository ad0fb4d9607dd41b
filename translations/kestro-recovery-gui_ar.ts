<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>النسخ الاحتياطي</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>نوع النسخة الاحتياطية</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>طريقة الحفظ</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>إنشاء نسخة احتياطية</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>نسخة احتياطية كاملة</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>نسخة احتياطية للنظام</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>نسخة احتياطية جديدة</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>نسخة احتياطية تزايدية للنظام</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>اختر مسارًا لحفظ ملفات النسخة الاحتياطية</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>جارٍ تطبيق التغييرات على نظامك…</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>النسخ الاحتياطي للنظام جاهز. هل تريد إعادة التشغيل ونسخ نظامك احتياطيًا الآن؟</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>إعادة التشغيل والنسخ</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>النسخ الاحتياطي</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>الاستعادة</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>استنساخ النظام</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>النسخ الاحتياطي والاستعادة</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>نسخ بيئة النظام وبياناته احتياطيًا، واستعادة حالة النظام أو بياناته، وإعادة ضبط المصنع</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>حدث خطأ في النسخ الاحتياطي، يُرجى المحاولة مرة أخرى</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>لم يُعثر على نسخ احتياطية</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>اختيار مجلد</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>إلى الأعلى</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>مسار المجلد</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>الوسائط</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>المجلدات</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>اختيار</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>قرص النظام</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>المساحة على القرص غير كافية</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>نظام الملفات هذا غير مدعوم للنسخ الاحتياطي. يُرجى اختيار ext4 أو btrfs أو xfs أو reiserfs.</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>مسار غير صالح</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>لا يمكن أن يكون مكان الحفظ على القرص المصدر، يُرجى اختيار مكان آخر</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>ملف النسخة الاحتياطية غير صالح</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>لا يمكن النسخ الاحتياطي إلى جهاز للقراءة فقط</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>لا يمكن حفظ ملفات النسخ الاحتياطي في هذا المجلد، يُرجى اختيار مجلد آخر.</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>يحتوي النظام على قسم مشفَّر، يُرجى فك تشفيره قبل استخدام النسخ الاحتياطي والاستعادة.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>الخروج وإعادة التشغيل</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>لا تُطفئ جهازك ولا تفصله عن الكهرباء</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>إعادة التشغيل الآن</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>اكتمل النسخ الاحتياطي بنجاح</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>اكتملت الاستعادة بنجاح</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>إيقاف التشغيل</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>فشل النسخ الاحتياطي</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>فشلت الاستعادة</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>فشل النسخ الاحتياطي، الخطأ: %1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>فشلت الاستعادة، الخطأ: %1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>هل تريد بالتأكيد الخروج وإعادة تشغيل جهازك؟</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>إعادة التشغيل</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>جارٍ النسخ الاحتياطي، يُرجى الانتظار…</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>هناك مشكلة في ملف النسخة الاحتياطية</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>إصدار نظامك لا يطابق ملف النسخة الاحتياطية، يُرجى تحديث النظام ثم الاستعادة مرة أخرى</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>معلومات القرص لا تطابق معلومات النسخة الاحتياطية، لذلك لا يمكنك الاستعادة الآن</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>تعذّر العثور على الموقع الهدف</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>ملف النسخة الاحتياطية</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>الوقت</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>الاستعادة</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>إعادة ضبط المصنع</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>لا توجد نسخة احتياطية أولية، لذلك لا يمكن إعادة نظامك إلى ضبط المصنع.</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>الاحتفاظ بالملفات الشخصية والتطبيقات</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>الاستعادة من ملفات النسخ الاحتياطي</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>مجلد النسخة الاحتياطية</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>الاستعادة من نقطة استعادة</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>نقاط الاستعادة</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>جارٍ تطبيق التغييرات على نظامك…</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>الاستعادة الآن</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>النسخة الاحتياطية الأولية تالفة، لذلك لا يمكن إعادة نظامك إلى ضبط المصنع.</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>إعادة ضبط المصنع</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>الاحتفاظ بالملفات الشخصية</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>ستُمحى بيانات جميع المستخدمين على هذا الجهاز نهائيًا، يُرجى التأكيد قبل المتابعة</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>ستُعاد بيانات قرص النظام إلى حالتها الأصلية مع الاحتفاظ ببياناتك الشخصية. للوصول إليها لاحقًا عليك إنشاء حساب بالاسم نفسه للمستخدم الحالي. يُرجى التأكيد قبل المتابعة.</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>التأكيد وإعادة الضبط</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>استعادة النظام جاهزة. هل تريد إعادة التشغيل واستعادة نظامك الآن؟</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>إعادة التشغيل والاستعادة</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>هناك مشكلة في ملف النسخة الاحتياطية الأولية</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>تعذّر إعداد المهمة</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>استعراض…</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>مسار المجلد</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>التقدّم</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>جارٍ استعادة نظامك، يُرجى الانتظار…</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>لا تُزل جهاز التخزين ولا تُطفئ جهازك ولا تفصله عن الكهرباء</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>التقدّم</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
</context>
</TS>
