<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en_US">
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
        <source>No sound from the device</source>
        <translation>No llega sonido del dispositivo</translation>
    </message>
</context>
</TS>
