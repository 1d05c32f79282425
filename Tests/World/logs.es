# The list, its texts and its questions in Spanish; the session logs are, too.
expect tooltip Su próxima tarea programada 60
history none
log failure 3
log sync 2
log links on
log success
click Ver registros
expect window Registros de actividad
expect logs 3
expect log 1 Correcto
expect log 2 Sincronización
expect log 3 Error
choose Último mes
expect logs 3
select log 1
expect window text Nombre de usuario: ana@example.com
expect window text Resumen
press log delete 3
expect window text ¿Desea eliminar el elemento seleccionado?
key Return
expect logs 2
select log 1 2
key Delete
expect window text ¿Desea eliminar los elementos seleccionados?
key Return
expect logs 0
expect window text No se encontraron elementos
