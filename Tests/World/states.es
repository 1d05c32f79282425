# What the tool tip says from one job to the next.
expect tooltip Su próxima tarea programada comenzará el 60
job 300
expect tooltip La copia de seguridad programada está en curso. 60
pause
expect tooltip Su tarea programada está en pausa. 60
resume
expect tooltip La copia de seguridad programada está en curso. 60
stop
expect tooltip Su próxima tarea programada comenzará el 60
