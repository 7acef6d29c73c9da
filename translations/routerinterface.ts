<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1">
<context>
    <name>PELLU300ROUTERINTERFACEXML::MastershipState</name>
    <message>
        <source>NoMasterPresent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MasterPresent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RouterIsMaster</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage</name>
    <message>
        <source>Request</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Event</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Request</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Event</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MastershipState</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>AcquireMastership</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ReleaseMastership</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OstraInterfacePort</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PelVtConnectServer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RouterVtServerPort</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DF_Params</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NoMasterPresent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MasterPresent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RouterIsMaster</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
