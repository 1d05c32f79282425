# The menu pauses and resumes in any language, and so does the window.
expect tooltip Su próxima tarea programada comenzará el 60
prepare 0
job 300
expect tooltip La copia de seguridad programada está en curso. 60
click Mostrar progreso
expect window text ana@example.com : La copia de seguridad programada está en curso
click Pausar la tarea programada
expect daemon SetPauseState
expect window text ana@example.com : La copia de seguridad programada está en pausa...
press  Reanudar
expect daemon SetResumeState
expect menu Pausar la tarea programada
click Detener la tarea programada
expect window text ¿Seguro que desea detener la operación de la tarea programada?
key Return
expect daemon "actionType":3
expect no window
