<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_US">
<context>
    <name>QWGridTool</name>
    <message>
        <source>Record the session</source>
        <translation>Enregistrer la session</translation>
    </message>
    <message>
        <source>Crossfader position decides which deck sounds</source>
        <translation>La position du crossfader décide quelle platine s’entend</translation>
    </message>
    <message>
        <source>Reverse the crossfader (hamster)</source>
        <translation>Inverser le crossfader (hamster)</translation>
    </message>
    <message>
        <source>Hold the graph while the vinyl stands still</source>
        <translation>Figer le graphe tant que le vinyle est immobile</translation>
    </message>
    <message>
        <source>Metronome</source>
        <translation>Métronome</translation>
    </message>
    <message>
        <source>Start or stop the session (Space)</source>
        <translation>Démarrer ou arrêter la session (Espace)</translation>
    </message>
    <message>
        <source>Choose deck A, deck B or both</source>
        <translation>Choisir la platine A, la platine B ou les deux</translation>
    </message>
    <message>
        <source>Beats that the graph shows</source>
        <translation>Nombre de temps affichés par le graphe</translation>
    </message>
    <message>
        <source>Regular Training</source>
        <translation>Entraînement libre</translation>
    </message>
</context>
<context>
    <name>QWPainter</name>
    <message>
        <source>Graph of deck A</source>
        <translation>Graphe de la platine A</translation>
    </message>
    <message>
        <source>Graph of deck B</source>
        <translation>Graphe de la platine B</translation>
    </message>
    <message>
        <source>Out of memory: %1 samples lost</source>
        <translation>Mémoire pleine : %1 échantillons perdus</translation>
    </message>
    <message>
        <source>No sound from the device</source>
        <translation>Aucun son ne vient de l’appareil</translation>
    </message>
</context>
</TS>
