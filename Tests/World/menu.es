# The menu in the language of the user, from one job to the next.
expect tooltip Su próxima tarea programada comenzará el 60
expect menu Mostrar progreso (off)
expect menu Desactivar todas las tareas programadas
click Desactivar todas las tareas programadas
expect tooltip Ha desactivado todas sus tareas programadas
expect menu Activar todas las tareas programadas
expect menu Programador
expect menu Salir del monitor de la aplicación
