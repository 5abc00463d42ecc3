<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_US">
<context>
    <name>GraphGrid</name>
    <message>
        <source>Frequency (bpm)</source>
        <translation>Fréquence (bpm)</translation>
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
        <translation>Ajustement automatique</translation>
    </message>
    <message>
        <source>Selection area</source>
        <translation>Sélectionner une zone</translation>
    </message>
</context>
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
        <source>Not written: %1</source>
        <translation>Non enregistré : %1</translation>
    </message>
    <message>
        <source>No sound from the device</source>
        <translation>Aucun son ne vient de l’appareil</translation>
    </message>
    <message>
        <source>File already imported !</source>
        <translation>Fichier déjà importé !</translation>
    </message>
    <message>
        <source>Could not be written: %1</source>
        <translation>Écriture impossible : %1</translation>
    </message>
    <message>
        <source>Non-compliant file !</source>
        <translation>Fichier non conforme !</translation>
    </message>
    <message>
        <source>New file has been created and loaded into color tab !!</source>
        <translation>Le nouveau fichier est créé et chargé dans l’onglet des couleurs !!</translation>
    </message>
    <message>
        <source>The sound server was lost. Start the program again.</source>
        <translation>Le serveur de son est perdu. Relancez le programme.</translation>
    </message>
    <message>
        <source>The device isn&apos;t there: %1</source>
        <translation>L’appareil est absent : %1</translation>
    </message>
</context>
<context>
    <name>SaveColorPhrasing</name>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Save configuration of phrasing colors: </source>
        <translation>Enregistrer les couleurs de phrasing : </translation>
    </message>
    <message>
        <source>Input DeckB</source>
        <translation>Entrée platine B</translation>
    </message>
    <message>
        <source>Input DeckA</source>
        <translation>Entrée platine A</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Nom du fichier</translation>
    </message>
</context>
</TS>
