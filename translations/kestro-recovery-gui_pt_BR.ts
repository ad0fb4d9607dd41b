<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>Backup</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>Tipo de backup</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>Método de gravação</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>Fazer backup</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>Backup completo</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>Backup do sistema</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>Novo backup</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>Backup incremental do sistema</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>Escolha onde salvar os arquivos de backup</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Aplicando as alterações ao sistema…</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>O backup do sistema está pronto. Deseja reiniciar e fazer o backup do sistema agora?</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>Reiniciar e fazer backup</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>Backup</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Restauração</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>Clonagem do sistema</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>Backup e restauração</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>Faça backup do ambiente e dos dados do sistema, restaure o estado ou os dados e recupere as configurações de fábrica</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>Erro no backup, tente novamente</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>Nenhum backup encontrado</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>Escolher um diretório</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Subir</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Caminho do diretório</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Mídias</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Diretórios</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Escolher</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>Disco do sistema</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>Espaço em disco insuficiente</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>O sistema de arquivos não é compatível com backups. Escolha um no formato ext4, btrfs, xfs ou reiserfs.</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>Caminho inválido</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>O local não pode estar no disco de origem, escolha outro</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>O arquivo de backup é inválido</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>Não é possível gravar backups em um dispositivo somente leitura</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>Este diretório não pode ser usado para guardar backups, escolha outro.</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>O sistema contém uma partição criptografada. Descriptografe-a antes de usar o backup e a restauração.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>Sair e reiniciar</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>Não desligue o computador nem o tire da tomada</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>Reiniciar agora</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>Backup concluído</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>Restauração concluída</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>Desligar</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>Falha no backup</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>Falha na restauração</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>Falha no backup, erro: %1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>Falha na restauração, erro: %1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>Tem certeza de que deseja sair e reiniciar o computador?</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Reiniciar</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>Fazendo backup, aguarde…</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>Há um problema com o arquivo de backup</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>A versão do sistema não corresponde à do arquivo de backup. Atualize o sistema e restaure novamente</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>As informações do disco e as do backup não correspondem, portanto não é possível restaurar agora</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>O local de destino não foi encontrado</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>Arquivo de backup</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Data</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>Restauração</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>Restaurar configurações de fábrica</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>O backup inicial não existe, portanto não é possível restaurar as configurações de fábrica.</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>Manter arquivos pessoais e aplicativos</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>Restaurar de arquivos de backup</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>Diretório do backup</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>Restaurar de um ponto de restauração</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>Pontos de restauração</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Aplicando as alterações ao sistema…</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>Restaurar agora</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>O backup inicial está danificado, portanto não é possível restaurar as configurações de fábrica.</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>Restaurar configurações de fábrica</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>Manter arquivos pessoais</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>Os dados de todos os usuários deste dispositivo serão apagados permanentemente. Confirme antes de continuar</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>Os dados do disco do sistema serão redefinidos, mas seus dados pessoais serão mantidos. Para acessá-los depois, será preciso criar uma conta com o mesmo nome do usuário atual. Confirme antes de continuar.</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>Confirmar e redefinir</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>A restauração do sistema está pronta. Deseja reiniciar e restaurar o sistema agora?</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>Reiniciar e restaurar</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>Há um problema com o backup inicial</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>Não foi possível preparar a tarefa</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>Procurar…</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Caminho do diretório</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>Progresso</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>Restaurando o sistema, aguarde…</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>Não remova o dispositivo de armazenamento nem desligue o computador</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progresso</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
</context>
</TS>
