<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en_US">
<context>
    <name>GraphGrid</name>
    <message>
        <source>Frequency (bpm)</source>
        <translation>Frecuencia (bpm)</translation>
    </message>
</context>
<context>
    <name>QWContextGraph</name>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>Auto-resize</source>
        <translation>Ajuste automático</translation>
    </message>
    <message>
        <source>Selection area</source>
        <translation>Seleccionar un área</translation>
    </message>
</context>
<context>
    <name>QWGridTool</name>
    <message>
        <source>Record the session</source>
        <translation>Grabar la sesión</translation>
    </message>
    <message>
        <source>Crossfader position decides which deck sounds</source>
        <translation>La posición del crossfader decide qué plato suena</translation>
    </message>
    <message>
        <source>Reverse the crossfader (hamster)</source>
        <translation>Invertir el crossfader (hamster)</translation>
    </message>
    <message>
        <source>Hold the graph while the vinyl stands still</source>
        <translation>Detener el gráfico mientras el vinilo está quieto</translation>
    </message>
    <message>
        <source>Metronome</source>
        <translation>Metrónomo</translation>
    </message>
    <message>
        <source>Start or stop the session (Space)</source>
        <translation>Iniciar o detener la sesión (Espacio)</translation>
    </message>
    <message>
        <source>Choose deck A, deck B or both</source>
        <translation>Elegir el plato A, el plato B o ambos</translation>
    </message>
    <message>
        <source>Beats that the graph shows</source>
        <translation>Tiempos que muestra el gráfico</translation>
    </message>
    <message>
        <source>Regular Training</source>
        <translation>Entrenamiento libre</translation>
    </message>
</context>
<context>
    <name>QWPainter</name>
    <message>
        <source>Graph of deck A</source>
        <translation>Gráfico del plato A</translation>
    </message>
    <message>
        <source>Graph of deck B</source>
        <translation>Gráfico del plato B</translation>
    </message>
    <message>
        <source>Out of memory: %1 samples lost</source>
        <translation>Memoria llena: %1 muestras perdidas</translation>
    </message>
    <message>
        <source>Not written: %1</source>
        <translation>No se ha guardado: %1</translation>
    </message>
    <message>
        <source>No sound from the device</source>
        <translation>No llega sonido del dispositivo</translation>
    </message>
    <message>
        <source>File already imported !</source>
        <translation>¡El archivo ya está importado!</translation>
    </message>
    <message>
        <source>Could not be written: %1</source>
        <translation>No se ha podido escribir: %1</translation>
    </message>
    <message>
        <source>Non-compliant file !</source>
        <translation>¡Archivo no conforme!</translation>
    </message>
    <message>
        <source>New file has been created and loaded into color tab !!</source>
        <translation>¡¡El archivo nuevo se ha creado y cargado en la pestaña de colores!!</translation>
    </message>
    <message>
        <source>The sound server was lost. Start the program again.</source>
        <translation>Se ha perdido el servidor de sonido. Vuelva a iniciar el programa.</translation>
    </message>
    <message>
        <source>The device isn&apos;t there: %1</source>
        <translation>El dispositivo no está: %1</translation>
    </message>
</context>
<context>
    <name>SaveColorPhrasing</name>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Save configuration of phrasing colors: </source>
        <translation>Guardar la configuración de colores de fraseo: </translation>
    </message>
    <message>
        <source>Input DeckB</source>
        <translation>Entrada del plato B</translation>
    </message>
    <message>
        <source>Input DeckA</source>
        <translation>Entrada del plato A</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Nombre de archivo</translation>
    </message>
</context>
</TS>
