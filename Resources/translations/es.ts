<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Your Scheduled job is paused.</source>
        <translation>Su tarea programada está en pausa.</translation>
    </message>
    <message>
        <source>Quota Exceeded - You have utilized the allocated storage space.</source>
        <translation>Cuota superada: ha utilizado todo el espacio de almacenamiento asignado.</translation>
    </message>
    <message>
        <source>You have exceeded the allocated</source>
        <translation>Ha superado el límite de cuota asignado</translation>
    </message>
    <message>
        <source>You have exceeded the</source>
        <translation>Ha superado</translation>
    </message>
    <message>
        <source>Next scheduled backup will start immediately</source>
        <translation>La próxima copia de seguridad programada comenzará de inmediato</translation>
    </message>
    <message>
        <source>Your next scheduled event: You have no scheduled jobs.</source>
        <translation>Su próximo evento programado: no tiene tareas programadas.</translation>
    </message>
    <message>
        <source>Backup: %@
Cloud Drive: %@</source>
        <translation>Copia de seguridad: %@
Cloud Drive: %@</translation>
    </message>
    <message>
        <source>Backup: %@
Cloud Drive: %@
You have exceeded the allocated quota limit. For further syncing you have to upgrade your account. Click the &apos;Upgrade Storage&apos; menu item to upgrade your %@ account</source>
        <translation>Copia de seguridad: %@
Cloud Drive: %@
Ha superado el límite de cuota asignado. Para seguir sincronizando debe ampliar su cuenta. Haga clic en la opción de menú «Ampliar almacenamiento» para ampliar su cuenta de %@</translation>
    </message>
    <message>
        <source>%@ 
Your account has been cancelled</source>
        <translation>%@ 
Su cuenta se ha cancelado</translation>
    </message>
    <message>
        <source>Cloud Drive: All files are up to date</source>
        <translation>Cloud Drive: Todos los archivos están actualizados</translation>
    </message>
    <message>
        <source>Cloud Drive: All files are synced</source>
        <translation>Cloud Drive: Todos los archivos están sincronizados</translation>
    </message>
    <message>
        <source>%@ is already running, but it does not answer.</source>
        <translation>%@ ya se está ejecutando, pero no responde.</translation>
    </message>
    <message>
        <source> is up-to-date</source>
        <translation> está actualizado</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Warning! Backup operations will not work without these permissions. Learn more</source>
        <translation>¡Advertencia! Las operaciones de copia de seguridad no funcionarán sin estos permisos. Más información</translation>
    </message>
    <message>
        <source>Learn more</source>
        <translation>Más información</translation>
    </message>
    <message>
        <source>Start application</source>
        <translation>Iniciar la aplicación</translation>
    </message>
    <message>
        <source>Access %@ web</source>
        <translation>Acceder a %@ en la web</translation>
    </message>
    <message>
        <source>Access, Restore, Share files / folders, etc via Web</source>
        <translation>Acceda, restaure y comparta archivos y carpetas, etc. a través de la web</translation>
    </message>
    <message>
        <source>Scheduler</source>
        <translation>Programador</translation>
    </message>
    <message>
        <source>Upgrade storage</source>
        <translation>Ampliar almacenamiento</translation>
    </message>
    <message>
        <source>Upgrade to a higher storage plan</source>
        <translation>Cambiar a un plan con más almacenamiento</translation>
    </message>
    <message>
        <source>Show progress</source>
        <translation>Mostrar progreso</translation>
    </message>
    <message>
        <source>Proxy settings</source>
        <translation>Configuración de proxy</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Configuración</translation>
    </message>
    <message>
        <source>View logs</source>
        <translation>Ver registros</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Estado</translation>
    </message>
    <message>
        <source>Send error report</source>
        <translation>Enviar informe de errores</translation>
    </message>
    <message>
        <source>Online help</source>
        <translation>Ayuda en línea</translation>
    </message>
    <message>
        <source>Disable Web Access</source>
        <translation>Desactivar acceso web</translation>
    </message>
    <message>
        <source>Enable Web Access</source>
        <translation>Activar acceso web</translation>
    </message>
    <message>
        <source>Manage backup set, Schedule backup etc via Web</source>
        <translation>Gestione el conjunto de copias de seguridad, programe copias, etc. a través de la web</translation>
    </message>
    <message>
        <source>Continuous Data Protection</source>
        <translation>Protección continua de datos</translation>
    </message>
    <message>
        <source>Check for latest version</source>
        <translation>Buscar la última versión</translation>
    </message>
    <message>
        <source>Update to latest version of application</source>
        <translation>Actualizar a la última versión de la aplicación</translation>
    </message>
    <message>
        <source>Quit application monitor</source>
        <translation>Salir del monitor de la aplicación</translation>
    </message>
    <message>
        <source>Remote Manage</source>
        <translation>Gestión remota</translation>
    </message>
    <message>
        <source>Manage all scheduled jobs</source>
        <translation>Gestionar todas las tareas programadas</translation>
    </message>
    <message>
        <source>Pause the scheduled job</source>
        <translation>Pausar la tarea programada</translation>
    </message>
    <message>
        <source>Resume the scheduled job</source>
        <translation>Reanudar la tarea programada</translation>
    </message>
    <message>
        <source>Stop the scheduled job</source>
        <translation>Detener la tarea programada</translation>
    </message>
    <message>
        <source>Disable all scheduled jobs</source>
        <translation>Desactivar todas las tareas programadas</translation>
    </message>
    <message>
        <source>Enable all scheduled jobs</source>
        <translation>Activar todas las tareas programadas</translation>
    </message>
    <message>
        <source>Cloud Drive</source>
        <translation>Cloud Drive</translation>
    </message>
    <message>
        <source>My Cloud Drive folder</source>
        <translation>Mi carpeta de Cloud Drive</translation>
    </message>
    <message>
        <source>View your Cloud Drive folder</source>
        <translation>Ver su carpeta de Cloud Drive</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Reanudar</translation>
    </message>
    <message>
        <source>Recently modified items</source>
        <translation>Elementos modificados recientemente</translation>
    </message>
    <message>
        <source>View files that have been recently modified</source>
        <translation>Ver los archivos modificados recientemente</translation>
    </message>
    <message>
        <source>Halt the Sync operations</source>
        <translation>Detener las operaciones de sincronización</translation>
    </message>
    <message>
        <source>Sync files with linked devices</source>
        <translation>Sincronizar los archivos con los dispositivos vinculados</translation>
    </message>
    <message>
        <source>Sync Status</source>
        <translation>Estado de la sincronización</translation>
    </message>
    <message>
        <source>Re-initialize</source>
        <translation>Reinicializar</translation>
    </message>
    <message>
        <source>Scheduled Backup is in progress</source>
        <translation>La copia de seguridad programada está en curso</translation>
    </message>
    <message>
        <source>Scheduled Backup is Paused...</source>
        <translation>La copia de seguridad programada está en pausa...</translation>
    </message>
    <message>
        <source>Retrying...</source>
        <translation>Reintentando...</translation>
    </message>
    <message>
        <source>Elapsed Time:</source>
        <translation>Tiempo transcurrido:</translation>
    </message>
    <message>
        <source>Estimated Time:</source>
        <translation>Tiempo estimado:</translation>
    </message>
    <message>
        <source>Pending Files:</source>
        <translation>Archivos pendientes:</translation>
    </message>
    <message>
        <source>Completed Files:</source>
        <translation>Archivos completados:</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source> Pause</source>
        <translation> Pausar</translation>
    </message>
    <message>
        <source> Resume</source>
        <translation> Reanudar</translation>
    </message>
    <message>
        <source>Bandwidth usage:</source>
        <translation>Uso del ancho de banda:</translation>
    </message>
    <message>
        <source>Resume backup operation</source>
        <translation>Reanudar la operación de copia de seguridad</translation>
    </message>
    <message>
        <source>Pause backup operation</source>
        <translation>Pausar la operación de copia de seguridad</translation>
    </message>
    <message>
        <source>Calculating...</source>
        <translation>Calculando...</translation>
    </message>
    <message>
        <source>Are you sure you wish to stop the scheduled job operation? </source>
        <translation>¿Seguro que desea detener la operación de la tarea programada? </translation>
    </message>
    <message>
        <source>Regulates the amount of bandwidth usage during backup operation.</source>
        <translation>Regula el ancho de banda que se utiliza durante la operación de copia de seguridad.</translation>
    </message>
    <message>
        <source>You have selected Auto-Pause. This means backups may be very slow during user activity.</source>
        <translation>Ha seleccionado Pausa automática. Las copias de seguridad pueden ser muy lentas mientras se utiliza el equipo.</translation>
    </message>
    <message>
        <source>All files are up to date</source>
        <translation>Todos los archivos están actualizados</translation>
    </message>
    <message>
        <source>Syncing %@</source>
        <translation>Sincronizando %@</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files</source>
        <translation>Sincronizando %@ de %@ archivos</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files, %@ left</source>
        <translation>Sincronizando %@ de %@ archivos, faltan %@</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files (%@ of %@)</source>
        <translation>Sincronizando %@ de %@ archivos (%@ de %@)</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Procesando</translation>
    </message>
    <message>
        <source>Processing %@</source>
        <translation>Procesando %@</translation>
    </message>
    <message>
        <source>Processing %@ of %@ files</source>
        <translation>Procesando %@ de %@ archivos</translation>
    </message>
    <message>
        <source>Preparing file list...</source>
        <translation>Preparando la lista de archivos...</translation>
    </message>
    <message>
        <source>Backing up</source>
        <translation>Copiando</translation>
    </message>
    <message>
        <source>Restoring</source>
        <translation>Restaurando</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>Subiendo</translation>
    </message>
    <message>
        <source>Uploading %@</source>
        <translation>Subiendo %@</translation>
    </message>
    <message>
        <source>Uploading %@ of %@ files</source>
        <translation>Subiendo %@ de %@ archivos</translation>
    </message>
    <message>
        <source>Uploading %@ (%@ of %@)</source>
        <translation>Subiendo %@ (%@ de %@)</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>Descargando</translation>
    </message>
    <message>
        <source>Downloading %@</source>
        <translation>Descargando %@</translation>
    </message>
    <message>
        <source>Downloading %@ of %@ files</source>
        <translation>Descargando %@ de %@ archivos</translation>
    </message>
    <message>
        <source>Downloading %@ (%@ of %@)</source>
        <translation>Descargando %@ (%@ de %@)</translation>
    </message>
    <message>
        <source>Deleting %@</source>
        <translation>Eliminando %@</translation>
    </message>
    <message>
        <source>Deleting %@ of %@ files</source>
        <translation>Eliminando %@ de %@ archivos</translation>
    </message>
    <message>
        <source>Renaming %@ to %@</source>
        <translation>Cambiando el nombre de %@ a %@</translation>
    </message>
    <message>
        <source>Moving</source>
        <translation>Moviendo</translation>
    </message>
    <message>
        <source>Moving %@</source>
        <translation>Moviendo %@</translation>
    </message>
    <message>
        <source>Moving %@ to %@</source>
        <translation>Moviendo %@ a %@</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>En pausa</translation>
    </message>
    <message>
        <source>Re-initializing</source>
        <translation>Reinicializando</translation>
    </message>
    <message>
        <source>Re-initializing: %@ of %@ files checked</source>
        <translation>Reinicializando: %@ de %@ archivos comprobados</translation>
    </message>
    <message>
        <source>No network connectivity</source>
        <translation>Sin conexión de red</translation>
    </message>
    <message>
        <source>Connecting to the server...</source>
        <translation>Conectando con el servidor...</translation>
    </message>
    <message>
        <source>Calculating the storage used...</source>
        <translation>Calculando el almacenamiento utilizado...</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit. For further syncing you have to upgrade your account.</source>
        <translation>Ha superado el límite de cuota asignado. Para seguir sincronizando debe ampliar su cuenta.</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit of %@. For further syncing you have to upgrade your account.</source>
        <translation>Ha superado el límite de cuota asignado de %@. Para seguir sincronizando debe ampliar su cuenta.</translation>
    </message>
    <message>
        <source>The account has been cancelled</source>
        <translation>La cuenta se ha cancelado</translation>
    </message>
    <message>
        <source>The account is under maintenance. Syncing goes on when it is available again.</source>
        <translation>La cuenta está en mantenimiento. La sincronización continuará cuando vuelva a estar disponible.</translation>
    </message>
    <message>
        <source>The account has been blocked. Contact support to have it opened again.</source>
        <translation>La cuenta está bloqueada. Póngase en contacto con el servicio de asistencia para desbloquearla.</translation>
    </message>
    <message>
        <source>The Cloud Drive folder cannot be found</source>
        <translation>No se encuentra la carpeta de Cloud Drive</translation>
    </message>
    <message>
        <source>The Cloud Drive folder %@ cannot be found</source>
        <translation>No se encuentra la carpeta de Cloud Drive %@</translation>
    </message>
    <message>
        <source>This computer has been unlinked from Cloud Drive</source>
        <translation>Este equipo se ha desvinculado de Cloud Drive</translation>
    </message>
    <message>
        <source>Sign in again to go on syncing</source>
        <translation>Vuelva a iniciar sesión para seguir sincronizando</translation>
    </message>
    <message>
        <source>Not enough free space on this computer</source>
        <translation>No hay suficiente espacio libre en este equipo</translation>
    </message>
    <message>
        <source>Not enough free space on this computer: %@ more needed</source>
        <translation>No hay suficiente espacio libre en este equipo: faltan %@</translation>
    </message>
    <message>
        <source>%@ could not be synced</source>
        <translation>No se pudo sincronizar %@</translation>
    </message>
    <message>
        <source>%@ could not be synced: %@</source>
        <translation>No se pudo sincronizar %@: %@</translation>
    </message>
    <message>
        <source>%@ is in use and will be synced when it is closed</source>
        <translation>%@ está en uso y se sincronizará al cerrarse</translation>
    </message>
    <message>
        <source>%@ was changed in two places. Both versions have been kept.</source>
        <translation>%@ se modificó en dos lugares. Se han conservado ambas versiones.</translation>
    </message>
    <message>
        <source>%@ was also changed on %@. Both versions have been kept.</source>
        <translation>%@ también se modificó en %@. Se han conservado ambas versiones.</translation>
    </message>
    <message>
        <source>The name of %@ cannot be used on all your computers</source>
        <translation>El nombre de %@ no se puede usar en todos sus equipos</translation>
    </message>
    <message>
        <source>You are not allowed to change %@</source>
        <translation>No tiene permiso para modificar %@</translation>
    </message>
    <message>
        <source>Scheduled Backup is in progress.</source>
        <translation>La copia de seguridad programada está en curso.</translation>
    </message>
    <message>
        <source>Scheduled backup is paused.</source>
        <translation>La copia de seguridad programada está en pausa.</translation>
    </message>
    <message>
        <source>Backup operation is in progress.</source>
        <translation>La operación de copia de seguridad está en curso.</translation>
    </message>
    <message>
        <source>Backup operation is paused.</source>
        <translation>La operación de copia de seguridad está en pausa.</translation>
    </message>
    <message>
        <source>You have disabled all your scheduled job(s)</source>
        <translation>Ha desactivado todas sus tareas programadas</translation>
    </message>
    <message>
        <source>Your next scheduled job will start on %@</source>
        <translation>Su próxima tarea programada comenzará el %@</translation>
    </message>
    <message>
        <source>Backed up %@ of %@ files</source>
        <translation>Copiados %@ de %@ archivos</translation>
    </message>
    <message>
        <source>Restored %@ of %@ files</source>
        <translation>Restaurados %@ de %@ archivos</translation>
    </message>
    <message>
        <source>%@ has been added to your Cloud Drive.</source>
        <translation>%@ se ha añadido a su Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ and %@ more have been added to your Cloud Drive.</source>
        <translation>%@ y %@ más se han añadido a su Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ has been updated in your Cloud Drive.</source>
        <translation>%@ se ha actualizado en su Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ and %@ more have been updated in your Cloud Drive.</source>
        <translation>%@ y %@ más se han actualizado en su Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ has been deleted from your Cloud Drive.</source>
        <translation>%@ se ha eliminado de su Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ and %@ more have been deleted from your Cloud Drive.</source>
        <translation>%@ y %@ más se han eliminado de su Cloud Drive.</translation>
    </message>
    <message>
        <source>%@ has been renamed to %@.</source>
        <translation>%@ ahora se llama %@.</translation>
    </message>
    <message>
        <source>%@ has been moved to %@.</source>
        <translation>%@ se ha movido a %@.</translation>
    </message>
    <message>
        <source>%@ has shared %@ with you.</source>
        <translation>%@ ha compartido %@ con usted.</translation>
    </message>
    <message>
        <source>%@ no longer shares %@ with you.</source>
        <translation>%@ ya no comparte %@ con usted.</translation>
    </message>
    <message>
        <source>%@ has been restored to your Cloud Drive.</source>
        <translation>%@ se ha restaurado en su Cloud Drive.</translation>
    </message>
    <message>
        <source>You have signed out. Your Cloud Drive is no longer synced.</source>
        <translation>Ha cerrado la sesión. Su Cloud Drive ya no se sincroniza.</translation>
    </message>
    <message>
        <source>Your account has been signed in on %@.</source>
        <translation>Se ha iniciado sesión con su cuenta en %@.</translation>
    </message>
    <message>
        <source>Your session has ended. Sign in again.</source>
        <translation>Su sesión ha finalizado. Vuelva a iniciar sesión.</translation>
    </message>
    <message>
        <source>Your password has been changed. Sign in again to go on syncing.</source>
        <translation>Su contraseña ha cambiado. Vuelva a iniciar sesión para seguir sincronizando.</translation>
    </message>
    <message>
        <source>You have used %@ of your storage.</source>
        <translation>Ha utilizado el %@ de su almacenamiento.</translation>
    </message>
    <message>
        <source>You have used %@ of %@.</source>
        <translation>Ha utilizado %@ de %@.</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit. Upgrade your account to go on syncing.</source>
        <translation>Ha superado el límite de cuota asignado. Amplíe su cuenta para seguir sincronizando.</translation>
    </message>
    <message>
        <source>Your account has enough space again. Syncing goes on.</source>
        <translation>Su cuenta vuelve a tener espacio suficiente. La sincronización continúa.</translation>
    </message>
    <message>
        <source>Your account has expired. Renew it to go on backing up and syncing.</source>
        <translation>Su cuenta ha caducado. Renuévela para seguir haciendo copias de seguridad y sincronizando.</translation>
    </message>
    <message>
        <source>Your account has been cancelled.</source>
        <translation>Su cuenta se ha cancelado.</translation>
    </message>
    <message>
        <source>Your plan has been changed to %@.</source>
        <translation>Su plan ha cambiado a %@.</translation>
    </message>
    <message>
        <source>Your backup has been completed.</source>
        <translation>Su copia de seguridad se ha completado.</translation>
    </message>
    <message>
        <source>Your backup has been completed: %@ of %@ files are stored.</source>
        <translation>Su copia de seguridad se ha completado: se han guardado %@ de %@ archivos.</translation>
    </message>
    <message>
        <source>Your backup has failed.</source>
        <translation>Su copia de seguridad ha fallado.</translation>
    </message>
    <message>
        <source>Your backup has failed: %@</source>
        <translation>Su copia de seguridad ha fallado: %@</translation>
    </message>
    <message>
        <source>Your backup has been stopped.</source>
        <translation>Su copia de seguridad se ha detenido.</translation>
    </message>
    <message>
        <source>Your restore has been completed.</source>
        <translation>Su restauración se ha completado.</translation>
    </message>
    <message>
        <source>Your restore has been completed: %@ of %@ files are back.</source>
        <translation>Su restauración se ha completado: se han recuperado %@ de %@ archivos.</translation>
    </message>
    <message>
        <source>Your restore has failed.</source>
        <translation>Su restauración ha fallado.</translation>
    </message>
    <message>
        <source>Your restore has failed: %@</source>
        <translation>Su restauración ha fallado: %@</translation>
    </message>
    <message>
        <source>Syncing has been paused.</source>
        <translation>La sincronización se ha pausado.</translation>
    </message>
    <message>
        <source>Syncing has been resumed.</source>
        <translation>La sincronización se ha reanudado.</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder has been moved to %@.</source>
        <translation>Su carpeta de Cloud Drive se ha movido a %@.</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder could not be moved.</source>
        <translation>No se pudo mover su carpeta de Cloud Drive.</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder has been deleted. Syncing has stopped.</source>
        <translation>Su carpeta de Cloud Drive se ha eliminado. La sincronización se ha detenido.</translation>
    </message>
    <message>
        <source>The folders to sync have been changed.</source>
        <translation>Las carpetas que se sincronizan han cambiado.</translation>
    </message>
    <message>
        <source>Your account has been reset on the web. Cloud Drive has been turned off on this computer.</source>
        <translation>Su cuenta se ha restablecido en la web. Cloud Drive se ha desactivado en este equipo.</translation>
    </message>
    <message>
        <source>This computer has been removed from your account.</source>
        <translation>Este equipo se ha quitado de su cuenta.</translation>
    </message>
    <message>
        <source>This computer has been replaced by %@ in your account.</source>
        <translation>Este equipo se ha sustituido por %@ en su cuenta.</translation>
    </message>
    <message>
        <source>%@ keeps watch here. Click the icon to see your backups and to change your settings.</source>
        <translation>%@ vigila desde aquí. Haga clic en el icono para ver sus copias de seguridad y cambiar la configuración.</translation>
    </message>
    <message>
        <source>Online backup</source>
        <translation>Copia de seguridad en línea</translation>
    </message>
    <message>
        <source>Online restore</source>
        <translation>Restauración en línea</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Búsqueda</translation>
    </message>
    <message>
        <source>Online delete</source>
        <translation>Eliminación en línea</translation>
    </message>
    <message>
        <source>click here</source>
        <translation>haga clic aquí</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Haga clic aquí</translation>
    </message>
    <message>
        <source>Click here to edit the cut-off time.</source>
        <translation>Haga clic aquí para editar la hora límite.</translation>
    </message>
    <message>
        <source>Click here to view excluded files / folders</source>
        <translation>Haga clic aquí para ver los archivos y carpetas excluidos</translation>
    </message>
    <message>
        <source>Reason: Missing permission for one or more files / folders in the backup set content.</source>
        <translation>Motivo: faltan permisos para uno o más archivos o carpetas del contenido del conjunto de copia de seguridad.</translation>
    </message>
    <message>
        <source>Some files / folders could not be backed up due to missing permissions.</source>
        <translation>No se pudo hacer una copia de seguridad de algunos archivos o carpetas por falta de permisos.</translation>
    </message>
    <message>
        <source>Reason: Missing permission for one or more files / folders in the backup set content. %@</source>
        <translation>Motivo: faltan permisos para uno o más archivos o carpetas del contenido del conjunto de copia de seguridad. %@</translation>
    </message>
    <message>
        <source>Some files / folders could not be backed up due to missing permissions. %@</source>
        <translation>No se pudo hacer una copia de seguridad de algunos archivos o carpetas por falta de permisos. %@</translation>
    </message>
    <message>
        <source>To enable access, add %@ and %@ under Full Disk Access. To know more visit %@.
</source>
        <translation>Para habilitar el acceso, agregue %@ y %@ en Acceso total al disco. Para obtener más información, visite %@.
</translation>
    </message>
    <message>
        <source>Grant full disk access to %@.</source>
        <translation>Conceda a %@ acceso total al disco.</translation>
    </message>
    <message>
        <source>Full Disk Access</source>
        <translation>Acceso total al disco</translation>
    </message>
    <message>
        <source>To know more visit %@</source>
        <translation>Para obtener más información, visite %@</translation>
    </message>
    <message>
        <source>To know more, read FAQ.</source>
        <translation>Para obtener más información, lea las preguntas frecuentes.</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Detalles</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>Resumen</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Subidas</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Descargas</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Cambio de nombre</translation>
    </message>
    <message>
        <source>Continuous data protection</source>
        <translation>Protección continua de datos</translation>
    </message>
    <message>
        <source>Archive cleanup</source>
        <translation>Limpieza de archivo</translation>
    </message>
    <message>
        <source>Putback</source>
        <translation>Devolución</translation>
    </message>
    <message>
        <source>Sync</source>
        <translation>Sincronización</translation>
    </message>
    <message>
        <source>Local backup</source>
        <translation>Copia de seguridad local</translation>
    </message>
    <message>
        <source>Local restore</source>
        <translation>Restauración local</translation>
    </message>
    <message>
        <source>Local delete</source>
        <translation>Eliminación local</translation>
    </message>
    <message>
        <source>Express backup</source>
        <translation>Copia de seguridad exprés</translation>
    </message>
    <message>
        <source>Express restore</source>
        <translation>Restauración exprés</translation>
    </message>
    <message>
        <source>Express delete</source>
        <translation>Eliminación exprés</translation>
    </message>
    <message>
        <source>Network and external drive backup</source>
        <translation>Copia de seguridad de unidades externas y de red</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Eliminación</translation>
    </message>
    <message>
        <source>... 
 [Log clipped]  </source>
        <translation>... 
 [Registro recortado]  </translation>
    </message>
    <message>
        <source>View entire log</source>
        <translation>Ver el registro completo</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Seleccionar todo</translation>
    </message>
    <message>
        <source>Select another</source>
        <translation>Seleccionar otra</translation>
    </message>
    <message>
        <source>Selected folder doesn&apos;t have write permission. </source>
        <translation>La carpeta seleccionada no tiene permiso de escritura. </translation>
    </message>
    <message>
        <source>Unable to write the file(s)</source>
        <translation>No se pueden escribir los archivos</translation>
    </message>
    <message>
        <source>Activity logs</source>
        <translation>Registros de actividad</translation>
    </message>
    <message>
        <source>View logs from</source>
        <translation>Ver registros de</translation>
    </message>
    <message>
        <source>Past week</source>
        <translation>Última semana</translation>
    </message>
    <message>
        <source>Past 2 weeks</source>
        <translation>Últimas 2 semanas</translation>
    </message>
    <message>
        <source>Past month</source>
        <translation>Último mes</translation>
    </message>
    <message>
        <source>Beginning of time</source>
        <translation>Desde el principio</translation>
    </message>
    <message>
        <source>Archived logs</source>
        <translation>Registros archivados</translation>
    </message>
    <message>
        <source>Operation</source>
        <translation>Operación</translation>
    </message>
    <message>
        <source>Date and time</source>
        <translation>Fecha y hora</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Duración</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Archivos</translation>
    </message>
    <message>
        <source>Delete Log</source>
        <translation>Eliminar registro</translation>
    </message>
    <message>
        <source>No items found</source>
        <translation>No se encontraron elementos</translation>
    </message>
    <message>
        <source>Reading the logs...</source>
        <translation>Leyendo los registros...</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>Delete selected item(s)</source>
        <translation>Eliminar elementos seleccionados</translation>
    </message>
    <message>
        <source>Delete all items</source>
        <translation>Eliminar todos los elementos</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>Archivar</translation>
    </message>
    <message>
        <source>Would you like to delete all item(s)?</source>
        <translation>¿Desea eliminar todos los elementos?</translation>
    </message>
    <message>
        <source>Would you like to delete selected item?</source>
        <translation>¿Desea eliminar el elemento seleccionado?</translation>
    </message>
    <message>
        <source>Would you like to delete selected item(s)?</source>
        <translation>¿Desea eliminar los elementos seleccionados?</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Correcto</translation>
    </message>
    <message>
        <source>Failure</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>In Progress</source>
        <translation>En curso</translation>
    </message>
    <message>
        <source>Look in:</source>
        <translation>Buscar en:</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Carpeta:</translation>
    </message>
    <message>
        <source>Kind:</source>
        <translation>Tipo:</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Cancelado</translation>
    </message>
</context>
</TS>
