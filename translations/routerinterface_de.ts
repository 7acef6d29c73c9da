<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>PELLU300ROUTERINTERFACEXML::MastershipState</name>
    <message>
        <source>NoMasterPresent</source>
        <translation>Kein Master vorhanden</translation>
    </message>
    <message>
        <source>MasterPresent</source>
        <translation>Master vorhanden</translation>
    </message>
    <message>
        <source>RouterIsMaster</source>
        <translation>Router ist Master</translation>
    </message>
</context>
<context>
    <name>PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage</name>
    <message>
        <source>Request</source>
        <translation>Anfrage</translation>
    </message>
    <message>
        <source>Reply</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>Event</source>
        <translation>Ereignis</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Request</source>
        <translation>Anfrage</translation>
    </message>
    <message>
        <source>Reply</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>Event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>MastershipState</source>
        <translation>Master-Status</translation>
    </message>
    <message>
        <source>AcquireMastership</source>
        <translation>Master-Rolle übernehmen</translation>
    </message>
    <message>
        <source>ReleaseMastership</source>
        <translation>Master-Rolle abgeben</translation>
    </message>
    <message>
        <source>OstraInterfacePort</source>
        <translation>Port der Ostra-Schnittstelle</translation>
    </message>
    <message>
        <source>PelVtConnectServer</source>
        <translation>Zielserver (PelVt)</translation>
    </message>
    <message>
        <source>RouterVtServerPort</source>
        <translation>Port des Router-Servers (Vt)</translation>
    </message>
    <message>
        <source>DF_Params</source>
        <translation>Peilparameter</translation>
    </message>
    <message>
        <source>NoMasterPresent</source>
        <translation>Kein Master vorhanden</translation>
    </message>
    <message>
        <source>MasterPresent</source>
        <translation>Master vorhanden</translation>
    </message>
    <message>
        <source>RouterIsMaster</source>
        <translation>Router ist Master</translation>
    </message>
</context>
</TS>
