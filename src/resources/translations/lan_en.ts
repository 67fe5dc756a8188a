<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>MainWindow</name>
    <message numerus="yes">
        <source>Move %n captured file(s) to the trash?</source>
        <translation>
            <numerusform>Move %n captured file to the trash?</numerusform>
            <numerusform>Move %n captured files to the trash?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) could not be moved to the trash and stay in the list: </source>
        <translation>
            <numerusform>%n file could not be moved to the trash and stays in the list: </numerusform>
            <numerusform>%n files could not be moved to the trash and stay in the list: </numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) cannot be shown in this list: </source>
        <translation>
            <numerusform>%n file cannot be shown in this list: </numerusform>
            <numerusform>%n files cannot be shown in this list: </numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n capture(s) are still being written. The program ends when they are done.</source>
        <translation>
            <numerusform>%n capture is still being written. The program ends when it is done.</numerusform>
            <numerusform>%n captures are still being written. The program ends when they are done.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n capture(s) are still being written. Close and give them up?</source>
        <translation>
            <numerusform>%n capture is still being written. Close and give it up?</numerusform>
            <numerusform>%n captures are still being written. Close and give them up?</numerusform>
        </translation>
    </message>
</context>
</TS>
