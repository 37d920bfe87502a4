<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
    <context>
        <name>Orlop</name>
        <message>
            <location filename="../../src/app/addresses/address_change.cpp" />
            <source>It is the same file.</source>
            <translation>Es ist dieselbe Datei.</translation>
        </message>
        <message>
            <location filename="../../src/app/addresses/address_change.cpp" />
            <source>Nobody answers at this address.</source>
            <translation>Unter dieser Adresse antwortet niemand.</translation>
        </message>
        <message>
            <location filename="../../src/app/addresses/address_change.cpp" />
            <source>Nothing tells whether the same file is there. Should it be another one, it begins anew, and what has come stays until that is complete.</source>
            <translation>Ob dort dieselbe Datei liegt, verrät nichts. Ist es eine andere, beginnt sie von vorn, und was schon da ist, bleibt, bis sie vollständig ist.</translation>
        </message>
        <message>
            <location filename="../../src/app/addresses/address_change.cpp" />
            <source>There is another file at this address, of %@ in place of %@.</source>
            <translation>Unter dieser Adresse liegt eine andere Datei, mit %@ statt %@.</translation>
        </message>
        <message>
            <location filename="../../src/app/addresses/address_change.cpp" />
            <source>There is another file at this address.</source>
            <translation>Unter dieser Adresse liegt eine andere Datei.</translation>
        </message>
        <message>
            <location filename="../../src/app/addresses/address_change.cpp" />
            <source>This address does not give the file out: %@.</source>
            <translation>Diese Adresse gibt die Datei nicht heraus: %@.</translation>
        </message>
        <message>
            <location filename="../../src/app/addresses/address_change.cpp" />
            <source>What has come so far is of no use for it, and stays until the new file is complete.</source>
            <translation>Was schon da ist, taugt dafür nicht und bleibt, bis die neue Datei vollständig ist.</translation>
        </message>
        <message>
            <location filename="../../src/app/alert_lines.cpp" />
            <source>(%lu more)</source>
            <translation>(%lu weitere)</translation>
        </message>
        <message>
            <location filename="../../src/app/application.cpp" />
            <source>Orlop is running already, and a setting for one run cannot be handed to it: %1. Nothing was handed over.</source>
            <translation>Orlop läuft bereits, und eine Einstellung für einen Lauf kann ihm nicht übergeben werden: %1. Es wurde nichts übergeben.</translation>
        </message>
        <message>
            <location filename="../../src/app/application.cpp" />
            <source>The queue of an earlier run cannot be read and will not be touched.</source>
            <translation>Die Warteschlange eines früheren Laufs ist nicht lesbar und bleibt unberührt.</translation>
        </message>
        <message>
            <location filename="../../src/app/application.cpp" />
            <source>The queue of an earlier run cannot be read; it was kept as %@.</source>
            <translation>Die Warteschlange eines früheren Laufs ist nicht lesbar; sie wurde als %@ aufbewahrt.</translation>
        </message>
        <message>
            <location filename="../../src/app/authentication/http_authentication_manager.cpp" />
            <source>You need to log in before downloading "%@" from "%@".</source>
            <translation>Sie müssen sich anmelden, um „%@“ von „%@“ zu laden.</translation>
        </message>
        <message>
            <location filename="../../src/app/authentication/http_authentication_manager.cpp" />
            <source>You need to log in before downloading "%@".</source>
            <translation>Sie müssen sich anmelden, um „%@“ zu laden.</translation>
        </message>
        <message>
            <location filename="../../src/app/authentication/http_authentication_manager.cpp" />
            <source>Your password will be submitted as plain text.</source>
            <translation>Ihr Passwort wird unverschlüsselt übertragen.</translation>
        </message>
        <message>
            <location filename="../../src/app/authentication/http_authentication_manager.cpp" />
            <source>Your password will be submitted securely.</source>
            <translation>Ihr Passwort wird sicher übertragen.</translation>
        </message>
        <message>
            <location filename="../../src/app/checksums/checksum_texts.cpp" />
            <source>Cannot be read for its checksum</source>
            <translation>Für die Prüfsumme nicht lesbar</translation>
        </message>
        <message>
            <location filename="../../src/app/checksums/checksum_texts.cpp" />
            <source>This is not the file that was expected: its %@ is %@ and not %@.</source>
            <translation>Das ist nicht die erwartete Datei: Ihr %@ ist %@ und nicht %@.</translation>
        </message>
        <message>
            <location filename="../../src/app/checksums/checksum_texts.cpp" />
            <source>Verified %@</source>
            <translation>%@ geprüft</translation>
        </message>
        <message>
            <location filename="../../src/app/checksums/checksum_texts.cpp" />
            <source>Verifying %@...</source>
            <translation>%@ wird geprüft …</translation>
        </message>
        <message>
            <location filename="../../src/app/checksums/checksum_texts.cpp" />
            <source>Wrong %@: %@ in place of %@</source>
            <translation>%@ falsch: %@ statt %@</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Cancel</source>
            <translation>Abbrechen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Cancel %@ downloads?</source>
            <translation>%@ Downloads abbrechen?</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Cancel 1 download?</source>
            <translation>1 Download abbrechen?</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Cancel downloads</source>
            <translation>Downloads abbrechen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Each of them opens in a page of its own.</source>
            <translation>Jede öffnet sich in einer eigenen Seite.</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Each of them opens in its application.</source>
            <translation>Jede öffnet sich in ihrem Programm.</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Keep downloading</source>
            <translation>Weiterladen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Open</source>
            <translation>Öffnen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Open %@ addresses?</source>
            <translation>%@ Adressen öffnen?</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>Open %@ files?</source>
            <translation>%@ Dateien öffnen?</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/bulk_commands.cpp" />
            <source>What has come of them is kept until Orlop quits: Edit &gt; Undo brings them back until then.</source>
            <translation>Was davon angekommen ist, bleibt, bis Orlop beendet wird: Bis dahin holt Bearbeiten &gt; Rückgängig sie zurück.</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;About Orlop</source>
            <translation>Ü&amp;ber Orlop</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Add Addresses...</source>
            <translation>&amp;Adressen hinzufügen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Address</source>
            <translation>&amp;Adresse</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Cancel...</source>
            <translation>Ab&amp;brechen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Close Window</source>
            <translation>Fenster &amp;schließen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Copy URLs</source>
            <translation>URLs &amp;kopieren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Date Added</source>
            <translation>&amp;Datum</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Descending</source>
            <translation>A&amp;bsteigend</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Divider Line</source>
            <translation>&amp;Trennlinie</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Downloads</source>
            <translation>&amp;Downloads</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Filter</source>
            <translation>Fi&amp;ltern</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Full Screen</source>
            <translation>&amp;Vollbild</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Help</source>
            <translation>&amp;Hilfe</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Host</source>
            <translation>&amp;Server</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Lively Background</source>
            <translation>&amp;Lebhafter Hintergrund</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Minimize</source>
            <translation>&amp;Minimieren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Name</source>
            <translation>&amp;Name</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Open...</source>
            <translation>Ö&amp;ffnen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Paste</source>
            <translation>&amp;Einfügen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Pause</source>
            <translation>&amp;Anhalten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Pill</source>
            <translation>Ka&amp;psel</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Private Downloading</source>
            <translation>&amp;Privat herunterladen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Progress</source>
            <translation>&amp;Fortschritt</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Queue Order</source>
            <translation>&amp;Warteschlange</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Quit</source>
            <translation>&amp;Beenden</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Remove</source>
            <translation>Ent&amp;fernen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Report a Problem...</source>
            <translation>Ein Problem &amp;melden …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Reverse Order</source>
            <translation>&amp;Umkehren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Search the Manual...</source>
            <translation>Im Handbuch &amp;suchen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Settings...</source>
            <translation>E&amp;instellungen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Start Paused</source>
            <translation>Ange&amp;haltene starten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Subtle Background</source>
            <translation>&amp;Dezenter Hintergrund</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Undo</source>
            <translation>Rück&amp;gängig</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>&amp;Verify...</source>
            <translation>&amp;Prüfen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>A&amp;scending</source>
            <translation>Aufs&amp;teigend</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Accelerate Downl&amp;oads</source>
            <translation>Downloads besch&amp;leunigen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Add &amp;from Clipboard</source>
            <translation>Aus &amp;Zwischenablage hinzufügen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>C&amp;lear</source>
            <translation>Aufrä&amp;umen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Change Address...</source>
            <translation>Adresse ändern …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Check for &amp;Updates...</source>
            <translation>Nach &amp;Updates suchen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Customize &amp;Toolbar...</source>
            <translation>&amp;Symbolleiste anpassen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>D&amp;eselect All</source>
            <translation>A&amp;uswahl aufheben</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>D&amp;etails</source>
            <translation>D&amp;etails</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Details Besi&amp;de the List</source>
            <translation>Details ne&amp;ben der Liste</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Enable Debug &amp;Logging</source>
            <translation>Ausführlich &amp;protokollieren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Move &amp;Up</source>
            <translation>Nach &amp;oben</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Move Do&amp;wn</source>
            <translation>Nach &amp;unten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Move to &amp;Bottom</source>
            <translation>Ans &amp;Ende</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Move to &amp;Top</source>
            <translation>An den An&amp;fang</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Open Fol&amp;der...</source>
            <translation>&amp;Ordner öffnen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Open in Browser</source>
            <translation>Im Browser öffnen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Orlop &amp;News...</source>
            <translation>Orlop-&amp;Neuigkeiten ...</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Pause &amp;Waiting</source>
            <translation>&amp;Wartende anhalten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Pause According to Schedule</source>
            <translation>Nach Zeitplan anhalten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Rando&amp;m Order</source>
            <translation>&amp;Mischen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Retr&amp;y</source>
            <translation>Er&amp;neut versuchen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>S&amp;tart/Pause</source>
            <translation>&amp;Starten/Anhalten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>S&amp;top Adding</source>
            <translation>&amp;Hinzufügen abbrechen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Select &amp;All</source>
            <translation>&amp;Alles auswählen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Show &amp;Addresses</source>
            <translation>&amp;Adressen anzeigen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Shut &amp;Down When Done...</source>
            <translation>Danach herunter&amp;fahren …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Sle&amp;ep When Done</source>
            <translation>&amp;Danach in Bereitschaft</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Speed Limit...</source>
            <translation>Geschwindigkeit begrenzen …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Start According to Schedule</source>
            <translation>Nach Zeitplan starten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Start Downloads &amp;Automatically</source>
            <translation>Downloads au&amp;tomatisch starten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/command.cpp" />
            <source>Throttle &amp;Bandwidth</source>
            <translation>Bandbreite be&amp;grenzen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Accelerate</source>
            <translation>Beschleunigen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Copy Original URL</source>
            <translation>Ursprüngliche URL kopieren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Copy Path</source>
            <translation>Pfad kopieren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Copy URL</source>
            <translation>URL kopieren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Copy URLs</source>
            <translation>URLs kopieren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Debug Logging</source>
            <translation>Ausführlich protokollieren</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Download to</source>
            <translation>Herunterladen nach</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Get It Again from Its Page</source>
            <translation>Von seiner Seite neu holen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>History</source>
            <translation>Verlauf</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Move to Trash</source>
            <translation>In den Papierkorb verschieben</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Pause Download</source>
            <translation>Download anhalten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Pause Downloads</source>
            <translation>Downloads anhalten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Progress Indicator</source>
            <translation>Fortschrittsanzeige</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Rearrange Queue by</source>
            <translation>Warteschlange umordnen nach</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Remove</source>
            <translation>Entfernen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Retry</source>
            <translation>Erneut versuchen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Retry All</source>
            <translation>Alle erneut versuchen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Show in Folder</source>
            <translation>Im Ordner zeigen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Sort by</source>
            <translation>Sortieren nach</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Start Download</source>
            <translation>Download starten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Start Download Now</source>
            <translation>Download jetzt starten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/context_menu.cpp" />
            <source>Start Downloads</source>
            <translation>Downloads starten</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/folder_items.cpp" />
            <source>Edit...</source>
            <translation>Bearbeiten …</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/folder_items.cpp" />
            <source>Remove All Rules</source>
            <translation>Alle Regeln entfernen</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/folder_items.cpp" />
            <source>Remove all rules?</source>
            <translation>Alle Regeln entfernen?</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/folder_items.cpp" />
            <source>This cannot be undone.</source>
            <translation>Das lässt sich nicht rückgängig machen.</translation>
        </message>
        <message>
            <location filename="../../src/app/commands/open_with.cpp" />
            <source>Open with</source>
            <translation>Öffnen mit</translation>
        </message>
        <message>
            <location filename="../../src/app/details/attempt_log.cpp" />
            <source>Aborted</source>
            <translation>Fehlgeschlagen</translation>
        </message>
        <message>
            <location filename="../../src/app/details/attempt_log.cpp" />
            <source>Address changed</source>
            <translation>Adresse geändert</translation>
        </message>
        <message>
            <location filename="../../src/app/details/attempt_log.cpp" />
            <source>Had to begin anew</source>
            <translation>Musste von vorn beginnen</translation>
        </message>
        <message>
            <location filename="../../src/app/details/attempt_log.cpp" />
            <source>The server had no place for it</source>
            <translation>Der Server hatte keinen Platz dafür</translation>
        </message>
        <message>
            <location filename="../../src/app/details/attempt_log.cpp" />
            <source>Tried again</source>
            <translation>Erneut versucht</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>%@ (%@ bytes)</source>
            <translation>%@ (%@ Bytes)</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>%@/s</source>
            <translation>%@/s</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Added</source>
            <translation>Hinzugefügt</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Address</source>
            <translation>Adresse</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Addresses</source>
            <translation>Adressen</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Arrived</source>
            <translation>Da</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>At %@</source>
            <translation>Am %@</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Changed on the server</source>
            <translation>Auf dem Server geändert</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Changes of the file are noticed</source>
            <translation>Änderungen der Datei fallen auf</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Checksum of the file</source>
            <translation>Prüfsumme der Datei</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Coding</source>
            <translation>Kodierung</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Completed</source>
            <translation>Vollständig</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Date of the version</source>
            <translation>Datum der Fassung</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Entity tag</source>
            <translation>Kennung der Fassung</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Expected checksum</source>
            <translation>Erwartete Prüfsumme</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>File</source>
            <translation>Datei</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Found on</source>
            <translation>Gefunden auf</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Goes to</source>
            <translation>Kommt nach</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Hidden while downloading in private</source>
            <translation>Beim privaten Laden verborgen</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Name</source>
            <translation>Name</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Partial file</source>
            <translation>Teildatei</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Ranges</source>
            <translation>Teile</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Redirected to</source>
            <translation>Umgeleitet nach</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Size</source>
            <translation>Größe</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Speed limit</source>
            <translation>Höchstens</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>State</source>
            <translation>Zustand</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>The server sends the file only as a whole</source>
            <translation>Der Server schickt die Datei nur im Ganzen</translation>
        </message>
        <message>
            <location filename="../../src/app/details/download_facts.cpp" />
            <source>Type</source>
            <translation>Typ</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>A name and a password are needed.</source>
            <translation>Ein Name und ein Kennwort sind nötig.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>No secure connection to the server could be made.</source>
            <translation>Es kam keine sichere Verbindung zum Server zustande.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>Nobody who is trusted vouches for the server’s certificate.</source>
            <translation>Niemand, dem vertraut wird, bürgt für das Zertifikat des Servers.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>Nothing can be fetched from this address.</source>
            <translation>Von dieser Adresse lässt sich nichts holen.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>Something else came in place of the file. Does the network ask for a login?</source>
            <translation>Statt der Datei kam etwas anderes. Verlangt das Netz eine Anmeldung?</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The address leads on to others without end.</source>
            <translation>Die Adresse führt endlos zu anderen weiter.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The certificate is not valid for this host.</source>
            <translation>Das Zertifikat gilt nicht für diesen Server.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The certificate of the server has expired, or the clock is wrong.</source>
            <translation>Das Zertifikat des Servers ist abgelaufen, oder die Uhr geht falsch.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The certificate of the server is not valid yet, or the clock is wrong.</source>
            <translation>Das Zertifikat des Servers gilt noch nicht, oder die Uhr geht falsch.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The disk is full.</source>
            <translation>Der Datenträger ist voll.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The disk is full: %@ free on “%@”.</source>
            <translation>Der Datenträger ist voll: %@ frei auf „%@“.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The disk is full: nothing is free on “%@”.</source>
            <translation>Der Datenträger ist voll: Auf „%@“ ist nichts mehr frei.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The disk reports an error.</source>
            <translation>Der Datenträger meldet einen Fehler.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The download failed. The log says more.</source>
            <translation>Das Laden ist fehlgeschlagen. Das Protokoll sagt mehr.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The file cannot be written.</source>
            <translation>Die Datei kann nicht geschrieben werden.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The file is too large for its disk.</source>
            <translation>Die Datei ist zu groß für ihren Datenträger.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The file or its folder is gone.</source>
            <translation>Die Datei oder ihr Ordner ist nicht mehr da.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The folder cannot be written to. Choose another one.</source>
            <translation>In den Ordner kann nicht geschrieben werden. Wählen Sie einen anderen.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The proxy %@ answered %@.</source>
            <translation>Der Proxy %@ hat mit %@ geantwortet.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The proxy does not lead to the server.</source>
            <translation>Der Proxy führt nicht zum Server.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The sandbox keeps Orlop out of the folder. Resume to unlock it.</source>
            <translation>Die Sandbox sperrt Orlop aus dem Ordner aus. Setzen Sie fort, um ihn freizugeben.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server cannot be answered with this name and password.</source>
            <translation>Dem Server lässt sich mit diesem Namen und Kennwort nicht antworten.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server cannot be reached. Try again later.</source>
            <translation>Der Server ist nicht zu erreichen. Versuchen Sie es später noch einmal.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server closed the connection after %@ of %@.</source>
            <translation>Der Server hat die Verbindung nach %@ von %@ geschlossen.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server closed the connection.</source>
            <translation>Der Server hat die Verbindung geschlossen.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server does not give this file out.</source>
            <translation>Der Server gibt diese Datei nicht heraus.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server does not have this file any more.</source>
            <translation>Der Server hat diese Datei nicht mehr.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server does not have this file.</source>
            <translation>Der Server hat diese Datei nicht.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server has a fault. Try again later.</source>
            <translation>Der Server hat eine Störung. Versuchen Sie es später noch einmal.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server refused the connection. Try again later.</source>
            <translation>Der Server hat die Verbindung abgelehnt. Versuchen Sie es später noch einmal.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server sent something else than what was asked for.</source>
            <translation>Der Server hat etwas anderes geschickt, als verlangt war.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server stopped answering. Try again later.</source>
            <translation>Der Server antwortet nicht mehr. Versuchen Sie es später noch einmal.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server wants a certificate from you.</source>
            <translation>Der Server verlangt ein Zertifikat von Ihnen.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server’s answer cannot be used.</source>
            <translation>Die Antwort des Servers ist nicht zu gebrauchen.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The server’s kind of login has no way to send a character of the name or the password.</source>
            <translation>Die Art der Anmeldung beim Server kann ein Zeichen des Namens oder des Kennworts nicht übertragen.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>The settings for proxies cannot be understood. Check them.</source>
            <translation>Die Einstellungen für Proxys sind nicht zu verstehen. Prüfen Sie sie.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>There is no proxy of the name in the network settings.</source>
            <translation>Es gibt keinen Proxy des Namens, der in den Netzwerkeinstellungen steht.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>There is no server of this name. Check the address and your connection.</source>
            <translation>Es gibt keinen Server dieses Namens. Prüfen Sie die Adresse und Ihre Verbindung.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>This is not the file that was expected.</source>
            <translation>Das ist nicht die erwartete Datei.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/failure_sentence.cpp" />
            <source>What has come lies under another name as well and is left alone.</source>
            <translation>Was da ist, liegt auch unter einem anderen Namen und bleibt, wie es ist.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/file_problem.cpp" />
            <source>A file lies where its folder should be.</source>
            <translation>Wo ihr Ordner sein sollte, liegt eine Datei.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/file_problem.cpp" />
            <source>A folder lies in its place.</source>
            <translation>An ihrer Stelle liegt ein Ordner.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/file_problem.cpp" />
            <source>It is a folder.</source>
            <translation>Es ist ein Ordner.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/file_problem.cpp" />
            <source>Its disk cannot be written to.</source>
            <translation>Auf ihr Laufwerk kann nicht geschrieben werden.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/file_problem.cpp" />
            <source>Its folder cannot be written to.</source>
            <translation>In ihren Ordner kann nicht geschrieben werden.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/file_problem.cpp" />
            <source>The file is too large.</source>
            <translation>Die Datei ist zu groß.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/file_problem.cpp" />
            <source>The log says more.</source>
            <translation>Mehr steht im Protokoll.</translation>
        </message>
        <message>
            <location filename="../../src/app/failures/file_problem.cpp" />
            <source>You are not allowed to read it.</source>
            <translation>Sie dürfen sie nicht lesen.</translation>
        </message>
        <message>
            <location filename="../../src/app/history/history_item_menu.cpp" />
            <source>Download Again</source>
            <translation>Erneut herunterladen</translation>
        </message>
        <message>
            <location filename="../../src/app/history/history_item_menu.cpp" />
            <source>Gone from %@</source>
            <translation>Nicht mehr in %@</translation>
        </message>
        <message>
            <location filename="../../src/app/history/history_item_menu.cpp" />
            <source>Wrong %@</source>
            <translation>%@ falsch</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/file_collector.cpp" />
            <source>100 files and counting...</source>
            <translation>100 Dateien, und es werden mehr …</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/file_collector.cpp" />
            <source>Are you sure you still want more?</source>
            <translation>Möchten Sie wirklich noch mehr?</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/file_collector.cpp" />
            <source>Continue</source>
            <translation>Weiter</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/file_collector.cpp" />
            <source>Stop</source>
            <translation>Aufhören</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/file_collector.cpp" />
            <source>There are more than 100 files in what was given, and nobody to ask whether they are all meant; none was taken.</source>
            <translation>Es sind mehr als 100 Dateien, und niemand kann gefragt werden, ob alle gemeint sind; keine wurde genommen.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/intake.cpp" />
            <source>The rest of the series was left out: too many downloads wait.</source>
            <translation>Der Rest der Reihe wurde weggelassen: Zu viele Downloads warten.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/intake.cpp" />
            <source>There is nothing to download in %@.</source>
            <translation>In %@ ist nichts zu laden.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/intake_run.cpp" />
            <source>The download begun in %@ has no address to go on from.</source>
            <translation>Der in %@ begonnene Download hat keine Adresse, an der es weitergehen könnte.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/intake_run.cpp" />
            <source>The list of addresses %@ cannot be read: %@</source>
            <translation>Die Adressenliste %@ ist nicht lesbar: %@</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/intake_run.cpp" />
            <source>There is no address in the list %@.</source>
            <translation>In der Liste %@ steht keine Adresse.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/intake_run.cpp" />
            <source>There is no begun download in %@.</source>
            <translation>In %@ liegt kein begonnener Download.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/offered_documents.cpp" />
            <source>%@ It is no list of addresses, so they were not taken: %@</source>
            <translation>%@ Es ist keine Liste von Adressen, darum wurden sie nicht genommen: %@</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/offered_documents.cpp" />
            <source>%@ addresses in %@ text documents.</source>
            <translation>%@ Adressen in %@ Textdokumenten.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/offered_documents.cpp" />
            <source>%@ addresses in %@.</source>
            <translation>%@ Adressen in %@.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/offered_documents.cpp" />
            <source>1 address in %@.</source>
            <translation>1 Adresse in %@.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/offered_documents.cpp" />
            <source>Download</source>
            <translation>Laden</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/offered_documents.cpp" />
            <source>Download them?</source>
            <translation>Sollen sie geladen werden?</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>Addresses that lacked their scheme got https in front of them.</source>
            <translation>Adressen, denen der Anfang fehlte, wurde https vorangestellt.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>An address that names no server cannot be downloaded.</source>
            <translation>Eine Adresse, die keinen Server nennt, kann nicht geladen werden.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>No server takes an address of more than a million characters.</source>
            <translation>Kein Server nimmt eine Adresse von mehr als einer Million Zeichen an.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>Orlop downloads addresses of http, https and files, no others.</source>
            <translation>Orlop lädt Adressen von http, https und Dateien, keine anderen.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>There is no address in the text that is left.</source>
            <translation>Im übrigen Text steht keine Adresse.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>no address of http, https or a file: %@</source>
            <translation>keine Adresse von http, https oder einer Datei: %@</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>no address without its scheme, as in %@: %@</source>
            <translation>keine Adresse ohne ihren Anfang wie in %@: %@</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>no address: %@</source>
            <translation>keine Adresse: %@</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>no valid address: %@</source>
            <translation>keine gültige Adresse: %@</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/refused_text.cpp" />
            <source>too long for an address: %@</source>
            <translation>zu lang für eine Adresse: %@</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/series_gate.cpp" />
            <source>Do you really want to download all of “%@”?</source>
            <translation>Möchten Sie wirklich alles aus „%@“ herunterladen?</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/series_gate.cpp" />
            <source>Download All</source>
            <translation>Alle herunterladen</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/series_gate.cpp" />
            <source>This series stands for %@ addresses.</source>
            <translation>Diese Reihe steht für %@ Adressen.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/series_gate.cpp" />
            <source>“%@” stands for %@ addresses and was not taken: the setting “Largest Series” allows %@.</source>
            <translation>„%@“ steht für %@ Adressen und wurde nicht übernommen: Die Einstellung „Largest Series“ erlaubt %@.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/target_consent.cpp" />
            <source>%@ wants its download written to %@, which is not one of your download folders; it was not taken.</source>
            <translation>%@ will seinen Download nach %@ geschrieben haben; das ist keiner Ihrer Download-Ordner. Er wurde nicht aufgenommen.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/target_consent.cpp" />
            <source>The file comes from
%@
and would be written to
%@
which is not one of your download folders.</source>
            <translation>Die Datei kommt von
%@
und würde nach
%@
geschrieben; das ist keiner Ihrer Download-Ordner.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/target_consent.cpp" />
            <source>Use Download Folder</source>
            <translation>Download-Ordner nehmen</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/target_consent.cpp" />
            <source>What is written there can run by itself or change what your programs do. Allow it only if you know why.</source>
            <translation>Was dort steht, kann von selbst ausgeführt werden oder verändern, was Ihre Programme tun. Erlauben Sie es nur, wenn Sie wissen, wozu.</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/target_consent.cpp" />
            <source>Write There</source>
            <translation>Dorthin schreiben</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/target_consent.cpp" />
            <source>“%@” chooses where its download goes</source>
            <translation>„%@“ bestimmt, wohin sein Download geht</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/text_preview.cpp" />
            <source>%@ addresses</source>
            <translation>%@ Adressen</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/text_preview.cpp" />
            <source>%@ already in the list</source>
            <translation>%@ schon in der Liste</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/text_preview.cpp" />
            <source>%@ lines not understood</source>
            <translation>%@ Zeilen nicht verstanden</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/text_preview.cpp" />
            <source>1 address</source>
            <translation>1 Adresse</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/text_preview.cpp" />
            <source>1 already in the list</source>
            <translation>1 schon in der Liste</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/text_preview.cpp" />
            <source>1 line not understood</source>
            <translation>1 Zeile nicht verstanden</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/text_preview.cpp" />
            <source>and more</source>
            <translation>und mehr</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/url_handler_command.cpp" />
            <source>Download %lu Linked Files...</source>
            <translation>%lu verlinkte Dateien laden …</translation>
        </message>
        <message>
            <location filename="../../src/app/intake/url_handler_command.cpp" />
            <source>Several linked files are asked about first, so %@ were not taken.</source>
            <translation>Bei mehreren verlinkten Dateien wird erst gefragt; darum wurden %@ nicht aufgenommen.</translation>
        </message>
        <message>
            <location filename="../../src/app/lifecycle/command_line.cpp" />
            <source>standard input can be read only once</source>
            <translation>Die Standardeingabe lässt sich nur einmal lesen</translation>
        </message>
        <message>
            <location filename="../../src/app/lifecycle/command_line.cpp" />
            <source>the setting %1 needs a value</source>
            <translation>Die Einstellung %1 braucht einen Wert</translation>
        </message>
        <message>
            <location filename="../../src/app/lifecycle/command_line.cpp" />
            <source>there is no setting "%1"; did you mean "%2"?</source>
            <translation>Es gibt keine Einstellung „%1“; ist „%2“ gemeint?</translation>
        </message>
        <message>
            <location filename="../../src/app/lifecycle/command_line.cpp" />
            <source>unknown option: %1</source>
            <translation>Unbekannte Option: %1</translation>
        </message>
        <message>
            <location filename="../../src/app/lifecycle/lifecycle.cpp" />
            <source>The computer did not go to sleep: %1</source>
            <translation>Der Computer ist nicht schlafen gegangen: %1</translation>
        </message>
        <message>
            <location filename="../../src/app/lifecycle/lifecycle.cpp" />
            <source>The computer was not shut down: %1</source>
            <translation>Der Computer wurde nicht ausgeschaltet: %1</translation>
        </message>
        <message>
            <location filename="../../src/app/main_controller.cpp" />
            <source>%@ downloads</source>
            <translation>%@ Downloads</translation>
        </message>
        <message>
            <location filename="../../src/app/main_controller.cpp" />
            <source>Added to Queue</source>
            <translation>Zur Warteschlange hinzugefügt</translation>
        </message>
        <message>
            <location filename="../../src/app/main_controller.cpp" />
            <source>The queue cannot be saved: %1</source>
            <translation>Die Warteschlange kann nicht gesichert werden: %1</translation>
        </message>
        <message>
            <location filename="../../src/app/main_controller.cpp" />
            <source>The queue’s file cannot be removed: %1 What is done may come back at the next start.</source>
            <translation>Die Datei der Warteschlange kann nicht entfernt werden: %1 Was fertig ist, kommt beim nächsten Start womöglich wieder.</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/missing_volume_alert_controller.cpp" />
            <source>(Unknown)</source>
            <translation>(Unbekannt)</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/missing_volume_alert_controller.cpp" />
            <source>The partial download files for the following downloads are on volumes that are currently not available:

%@</source>
            <translation>Die Teildateien der folgenden Downloads liegen auf Datenträgern, die zurzeit nicht verfügbar sind:

%@</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/missing_volumes.cpp" />
            <source>%@ cannot go on: what has come of it lies on %@, which is not available.</source>
            <translation>%@ kann nicht fortgesetzt werden: Was davon da ist, liegt auf %@ und ist nicht verfügbar.</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/queue_archive.cpp" />
            <source>Orlop is not done downloading yet.

If you quit now, Orlop will remember its downloads, but depending on the servers you were downloading from, downloads cannot always be resumed.

Do you really want to quit now?</source>
            <translation>Orlop lädt noch.

Wenn Sie jetzt beenden, merkt sich Orlop die Downloads; je nach Server lassen sie sich aber nicht immer fortsetzen.

Möchten Sie jetzt wirklich beenden?</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/queue_archive.cpp" />
            <source>Quit</source>
            <translation>Beenden</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/queue_archive.cpp" />
            <source>Wait! You seem to have forgotten something on the stove...</source>
            <translation>Halt! Da steht noch etwas auf dem Herd …</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/queue_follower.cpp" />
            <source>Download Complete</source>
            <translation>Download fertig</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/queue_follower.cpp" />
            <source>Download Failed</source>
            <translation>Download fehlgeschlagen</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/queue_follower.cpp" />
            <source>Download Interrupted</source>
            <translation>Download unterbrochen</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/removed_downloads.cpp" />
            <source>Removed %@</source>
            <translation>%@ entfernt</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/removed_downloads.cpp" />
            <source>Removed %@ (%@ kept)</source>
            <translation>%@ entfernt (%@ aufbewahrt)</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/removed_downloads.cpp" />
            <source>Removed %@ downloads</source>
            <translation>%@ Downloads entfernt</translation>
        </message>
        <message>
            <location filename="../../src/app/queue/removed_downloads.cpp" />
            <source>Removed %@ downloads (%@ kept)</source>
            <translation>%@ Downloads entfernt (%@ aufbewahrt)</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/row_actions.cpp" />
            <source>%@ files are gone</source>
            <translation>%@ Dateien sind nicht mehr da</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/row_actions.cpp" />
            <source>Open Its Folder</source>
            <translation>Ordner öffnen</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/row_actions.cpp" />
            <source>The file was in %@ and has been moved or deleted.</source>
            <translation>Die Datei lag in %@ und wurde verschoben oder gelöscht.</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/row_actions.cpp" />
            <source>They have been moved or deleted.</source>
            <translation>Sie wurden verschoben oder gelöscht.</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/row_actions.cpp" />
            <source>“%@” is gone</source>
            <translation>„%@“ ist nicht mehr da</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source> - Acceleration failed</source>
            <translation> - Beschleunigung gescheitert</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source> - Acceleration not supported</source>
            <translation> - Beschleunigung nicht möglich</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source> - Begun anew</source>
            <translation> - Neu begonnen</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%@ - %lu connections</source>
            <translation>%@ - %lu Verbindungen</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%@ at %@/s</source>
            <translation>%@ mit %@/s</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%@ at %@/s - %@ remaining</source>
            <translation>%@ mit %@/s - noch %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%@ kept</source>
            <translation>%@ behalten</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%@ of %@</source>
            <translation>%@ von %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%@%@%@</source>
            <translation>%@%@%@</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%@%@⎇</source>
            <translation>%@%@⎇</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%lu</source>
            <translation>%lu</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>%lu @ %@</source>
            <translation>%lu @ %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Complete</source>
            <translation>Fertig</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Connecting...</source>
            <translation>Verbinden …</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Downloading: %ld%%</source>
            <translation>Laden: %ld%%</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Interrupted</source>
            <translation>Unterbrochen</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Lies in %@</source>
            <translation>Liegt in %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Paused</source>
            <translation>Angehalten</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Pending</source>
            <translation>Ausstehend</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Waiting</source>
            <translation>Wartet</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Waiting for %@</source>
            <translation>Wartet auf %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Waiting for %@: %@</source>
            <translation>Wartet auf %@: %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rows/status_text.cpp" />
            <source>Waiting: #%@</source>
            <translation>Wartet: Nr. %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Clear Menu</source>
            <translation>Menü leeren</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Default Downloads Folder</source>
            <translation>Allgemeiner Download-Ordner</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Define Rule...</source>
            <translation>Regel anlegen …</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Download to %@</source>
            <translation>Herunterladen nach %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>General</source>
            <translation>Allgemein</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Hold shift to specify an individual download folder.</source>
            <translation>Umschalttaste gedrückt halten, um einen eigenen Ordner zu wählen.</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Ineffective</source>
            <translation>Ohne Wirkung</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Open with %@</source>
            <translation>Öffnen mit %@</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Other...</source>
            <translation>Anderer …</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/folder_menu.cpp" />
            <source>Rules</source>
            <translation>Regeln</translation>
        </message>
        <message>
            <location filename="../../src/app/rules/subdivision_suggestions.cpp" />
            <source>%@ (%lu nested subfolders)</source>
            <translation>%@ (%lu verschachtelte Unterordner)</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/explanation.cpp" />
            <source>The toolbar button you just clicked is a shortcut to the more detailed settings you can access in this section of Orlop's settings.</source>
            <translation>Der Knopf, auf den Sie gerade geklickt haben, ist eine Abkürzung zu den ausführlicheren Einstellungen in diesem Abschnitt.</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>All downloads are done already, so the computer would be shut down at once.</source>
            <translation>Alle Downloads sind schon fertig, der Computer würde also sofort ausgeschaltet.</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>All downloads are done already, so the computer would go to sleep at once.</source>
            <translation>Alle Downloads sind schon fertig, der Computer ginge also sofort schlafen.</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>Are you sure you want Orlop to shut down your computer once all downloads are done?

Please note that Orlop will not remember this setting across restarts. Also, Orlop cannot guarantee your computer will actually shut down, as other applications may refuse to quit without any user interaction.</source>
            <translation>Soll Orlop Ihren Rechner wirklich herunterfahren, sobald alle Downloads fertig sind?

Orlop merkt sich das nicht über einen Neustart hinaus. Es kann auch nicht dafür bürgen, dass der Rechner wirklich herunterfährt, denn andere Programme können sich weigern, ohne Rückfrage zu beenden.</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>Shut Down Now</source>
            <translation>Jetzt ausschalten</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>Shut down now?</source>
            <translation>Jetzt ausschalten?</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>Shut down when done</source>
            <translation>Danach herunterfahren</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>Shut down when done?</source>
            <translation>Danach herunterfahren?</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>Sleep Now</source>
            <translation>Jetzt schlafen</translation>
        </message>
        <message>
            <location filename="../../src/app/schedule/toggles.cpp" />
            <source>Sleep now?</source>
            <translation>Jetzt schlafen?</translation>
        </message>
        <message>
            <location filename="../../src/app/status/queue_status_reporter.cpp" />
            <source>Done</source>
            <translation>Fertig</translation>
        </message>
        <message>
            <location filename="../../src/app/status/queue_status_reporter.cpp" />
            <source>No active downloads remaining</source>
            <translation>Keine Downloads mehr aktiv</translation>
        </message>
        <message>
            <location filename="../../src/app/status/queue_totals.cpp" />
            <source>%@ - %@ remaining</source>
            <translation>%@ - noch %@</translation>
        </message>
        <message>
            <location filename="../../src/app/status/status_line.cpp" />
            <source>%d downloads</source>
            <translation>%d Downloads</translation>
        </message>
        <message>
            <location filename="../../src/app/status/status_line.cpp" />
            <source>%d filtered</source>
            <translation>%d gefiltert</translation>
        </message>
        <message>
            <location filename="../../src/app/status/status_line.cpp" />
            <source>%d hidden</source>
            <translation>%d ausgeblendet</translation>
        </message>
        <message>
            <location filename="../../src/app/status/status_line.cpp" />
            <source>%d of %d downloads</source>
            <translation>%d von %d Downloads</translation>
        </message>
        <message>
            <location filename="../../src/app/status/status_line.cpp" />
            <source>1 download</source>
            <translation>1 Download</translation>
        </message>
        <message>
            <location filename="../../src/app/status/user_notification_manager.cpp" />
            <source>and %@ more</source>
            <translation>und %@ weitere</translation>
        </message>
        <message>
            <location filename="../../src/desktop/updates/news_manager.cpp" />
            <source>The page of news cannot be reached.</source>
            <translation>Die Seite mit Neuigkeiten ist nicht zu erreichen.</translation>
        </message>
        <message>
            <location filename="../../src/desktop/updates/sparkle_wrapper.cpp" />
            <source>%@ %@ is now available! You are currently using %@ %@.</source>
            <translation>%@ %@ ist jetzt verfügbar! Sie verwenden zurzeit %@ %@.</translation>
        </message>
        <message>
            <location filename="../../src/desktop/updates/sparkle_wrapper.cpp" />
            <source>%@ %@ is up to date.</source>
            <translation>%@ %@ ist auf dem neuesten Stand.</translation>
        </message>
        <message>
            <location filename="../../src/desktop/updates/sparkle_wrapper.cpp" />
            <source>Last check: %@</source>
            <translation>Letzte Prüfung: %@</translation>
        </message>
        <message>
            <location filename="../../src/desktop/updates/sparkle_wrapper.cpp" />
            <source>The server that knows of updates cannot be reached.</source>
            <translation>Der Server, der von Aktualisierungen weiß, ist nicht zu erreichen.</translation>
        </message>
        <message>
            <location filename="../../src/desktop/updates/sparkle_wrapper.cpp" />
            <source>What the server says of updates is not signed by Orlop's makers and is not believed.</source>
            <translation>Was der Server von Aktualisierungen sagt, ist nicht von Orlops Herstellern unterschrieben und wird nicht geglaubt.</translation>
        </message>
        <message>
            <location filename="../../src/engine/paths/file_access.cpp" />
            <source>Orlop cannot download files to this folder at the moment. This is most likely due to the sandbox blocking access to it. Click "Unlock" to ask the sandbox for permanent access to the folder.</source>
            <translation>Orlop kann im Moment nicht in diesen Ordner laden. Wahrscheinlich sperrt die Sandbox den Zugriff. Klicken Sie auf „Freigeben“, um dauerhaften Zugriff auf den Ordner zu erbitten.</translation>
        </message>
        <message>
            <location filename="../../src/engine/record/download_identity.cpp" />
            <source>File "%@"</source>
            <translation>Datei „%@“</translation>
        </message>
        <message>
            <location filename="../../src/help/default_link.cpp" />
            <source>%@ is now set to %@.</source>
            <translation>%@ ist jetzt %@.</translation>
        </message>
        <message>
            <location filename="../../src/help/default_link.cpp" />
            <source>%@ was already set to %@.</source>
            <translation>%@ war schon %@.</translation>
        </message>
        <message>
            <location filename="../../src/help/default_link.cpp" />
            <source>(No Value)</source>
            <translation>(Kein Wert)</translation>
        </message>
        <message>
            <location filename="../../src/help/default_link.cpp" />
            <source>No</source>
            <translation>Nein</translation>
        </message>
        <message>
            <location filename="../../src/help/default_link.cpp" />
            <source>Revert to %@</source>
            <translation>Zurück zu %@</translation>
        </message>
        <message>
            <location filename="../../src/help/default_link.cpp" />
            <source>That didn't do anything</source>
            <translation>Das hat nichts geändert</translation>
        </message>
        <message>
            <location filename="../../src/help/default_link.cpp" />
            <source>User default updated</source>
            <translation>Einstellung geändert</translation>
        </message>
        <message>
            <location filename="../../src/help/default_link.cpp" />
            <source>Yes</source>
            <translation>Ja</translation>
        </message>
        <message>
            <location filename="../../src/help/help_manager.cpp" />
            <source>%@ Help</source>
            <translation>%@-Hilfe</translation>
        </message>
        <message>
            <location filename="../../src/links/format/byte_counts.cpp" />
            <source> Bytes</source>
            <translation> Byte</translation>
        </message>
        <message>
            <location filename="../../src/links/format/byte_counts.cpp" />
            <source> EB</source>
            <translation> EB</translation>
        </message>
        <message>
            <location filename="../../src/links/format/byte_counts.cpp" />
            <source> GB</source>
            <translation> GB</translation>
        </message>
        <message>
            <location filename="../../src/links/format/byte_counts.cpp" />
            <source> KB</source>
            <translation> kB</translation>
        </message>
        <message>
            <location filename="../../src/links/format/byte_counts.cpp" />
            <source> MB</source>
            <translation> MB</translation>
        </message>
        <message>
            <location filename="../../src/links/format/byte_counts.cpp" />
            <source> PB</source>
            <translation> PB</translation>
        </message>
        <message>
            <location filename="../../src/links/format/byte_counts.cpp" />
            <source> TB</source>
            <translation> TB</translation>
        </message>
        <message>
            <location filename="../../src/links/format/dates.cpp" />
            <source>%d minutes ago</source>
            <translation>vor %d Minuten</translation>
        </message>
        <message>
            <location filename="../../src/links/format/dates.cpp" />
            <source>1 minute ago</source>
            <translation>vor 1 Minute</translation>
        </message>
        <message>
            <location filename="../../src/links/format/dates.cpp" />
            <source>just now</source>
            <translation>gerade eben</translation>
        </message>
        <message>
            <location filename="../../src/links/format/durations.cpp" />
            <source>%@ days</source>
            <translation>%@ Tage</translation>
        </message>
        <message>
            <location filename="../../src/links/format/durations.cpp" />
            <source>1 day</source>
            <translation>1 Tag</translation>
        </message>
        <message>
            <location filename="../../src/links/names/sort_keys.cpp" />
            <source>a an the</source>
            <translation>der die das ein eine</translation>
        </message>
        <message>
            <location filename="../../src/links/paths/path_display.cpp" />
            <source>Currently not available</source>
            <translation>Zurzeit nicht verfügbar</translation>
        </message>
        <message>
            <location filename="../../src/links/paths/path_display.cpp" />
            <source>Home</source>
            <translation>Persönlicher Ordner</translation>
        </message>
        <message>
            <location filename="../../src/links/paths/path_display.cpp" />
            <source>Not found</source>
            <translation>Nicht gefunden</translation>
        </message>
        <message>
            <location filename="../../src/scripting/hand_overs/hand_overs.cpp" />
            <source>It cannot be added to the list.</source>
            <translation>Es kann nicht in die Liste aufgenommen werden.</translation>
        </message>
        <message>
            <location filename="../../src/scripting/hand_overs/renewal.cpp" />
            <source>Begin Anew</source>
            <translation>Von vorn beginnen</translation>
        </message>
        <message>
            <location filename="../../src/scripting/hand_overs/renewal.cpp" />
            <source>Go On</source>
            <translation>Weiterladen</translation>
        </message>
        <message>
            <location filename="../../src/scripting/hand_overs/renewal.cpp" />
            <source>Go on with %@?</source>
            <translation>Mit %@ weitermachen?</translation>
        </message>
        <message>
            <location filename="../../src/scripting/hand_overs/renewal.cpp" />
            <source>It was handed over again from the same page, with the same name and size. What has come of it can be kept.</source>
            <translation>Es kam noch einmal von derselben Seite, mit demselben Namen und derselben Größe. Was davon schon da ist, kann bleiben.</translation>
        </message>
        <message>
            <location filename="../../src/scripting/requests.cpp" />
            <source>no address of http or https</source>
            <translation>keine Adresse für http oder https</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A backslash must be followed by one of " \ / b f n r t u. To mean the backslash itself, double it.</source>
            <translation>Auf einen Backslash muss eines von " \ / b f n r t u folgen. Für den Backslash selbst verdoppeln Sie ihn.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A colon is missing behind the key.</source>
            <translation>Hinter dem Schlüssel fehlt ein Doppelpunkt.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A comma or a closing brace is missing before this.</source>
            <translation>Davor fehlt ein Komma oder eine schließende geschweifte Klammer.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A comma or a closing bracket is missing before this.</source>
            <translation>Davor fehlt ein Komma oder eine schließende eckige Klammer.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A control character within a text must be written as an escape such as \u001F.</source>
            <translation>Ein Steuerzeichen in einem Text muss umschrieben werden, etwa als \u001F.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A key in double quotation marks is missing.</source>
            <translation>Es fehlt ein Schlüssel in Anführungszeichen.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A tab within a text must be written as \t.</source>
            <translation>Ein Tabulator in einem Text muss als \t geschrieben werden.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A text has no closing quotation mark on its line.</source>
            <translation>Einem Text fehlt auf seiner Zeile das schließende Anführungszeichen.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A text has no closing quotation mark.</source>
            <translation>Einem Text fehlt das schließende Anführungszeichen.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A value is missing before this bracket.</source>
            <translation>Vor dieser Klammer fehlt ein Wert.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>A value is missing before this.</source>
            <translation>Davor fehlt ein Wert.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>No comma may stand before a closing brace.</source>
            <translation>Vor einer schließenden geschweiften Klammer darf kein Komma stehen.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>Nothing may follow the end of the whole.</source>
            <translation>Hinter dem Ende darf nichts folgen.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>The text ends before everything is closed.</source>
            <translation>Der Text endet, bevor alles geschlossen ist.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>This escape is half a character; its other half is missing.</source>
            <translation>Diese Umschreibung ist ein halbes Zeichen; die andere Hälfte fehlt.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>This is no value. A text must stand in double quotation marks; the only bare words are true, false and null.</source>
            <translation>Das ist kein Wert. Ein Text muss in Anführungszeichen stehen; ohne sie gibt es nur true, false und null.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>This is not valid JSON.</source>
            <translation>Das ist kein gültiges JSON.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>This is not valid UTF-8.</source>
            <translation>Das ist kein gültiges UTF-8.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>This number is incomplete: a digit is missing.</source>
            <translation>Diese Zahl ist unvollständig: Es fehlt eine Ziffer.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>This number is too large.</source>
            <translation>Diese Zahl ist zu groß.</translation>
        </message>
        <message>
            <location filename="../../src/structured/json/json_complaints.cpp" />
            <source>\u must be followed by four hexadecimal digits.</source>
            <translation>Auf \u müssen vier hexadezimale Ziffern folgen.</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>%@ have come already. The address is asked first whether it has the same file.</source>
            <translation>%@ sind schon da. Die Adresse wird zuerst gefragt, ob sie dieselbe Datei hat.</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>Asking %1...</source>
            <translation>Frage bei %1 …</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>Change Address</source>
            <translation>Adresse ändern</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>New address</source>
            <translation>Neue Adresse</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>New address of “%@”:</source>
            <translation>Neue Adresse von „%@“:</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>The download has gone on by itself meanwhile. Pause it first.</source>
            <translation>Der Download ist inzwischen von selbst weitergegangen. Halten Sie ihn zuerst an.</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>The download is not in the list any more.</source>
            <translation>Der Download ist nicht mehr in der Liste.</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>This is no address of the web.</source>
            <translation>Das ist keine Web-Adresse.</translation>
        </message>
        <message>
            <location filename="../../src/ui/addresses/address_panel.cpp" />
            <source>Use It Anyway</source>
            <translation>Trotzdem verwenden</translation>
        </message>
        <message>
            <location filename="../../src/ui/authentication/authentication_panel.cpp" />
            <source>&amp;Domain:</source>
            <translation>&amp;Domäne:</translation>
        </message>
        <message>
            <location filename="../../src/ui/authentication/authentication_panel.cpp" />
            <source>&amp;Name:</source>
            <translation>&amp;Name:</translation>
        </message>
        <message>
            <location filename="../../src/ui/authentication/authentication_panel.cpp" />
            <source>&amp;Password:</source>
            <translation>&amp;Passwort:</translation>
        </message>
        <message>
            <location filename="../../src/ui/authentication/authentication_panel.cpp" />
            <source>&amp;Remember this password</source>
            <translation>Passwort &amp;merken</translation>
        </message>
        <message>
            <location filename="../../src/ui/authentication/authentication_panel.cpp" />
            <source>Authentication</source>
            <translation>Anmeldung</translation>
        </message>
        <message>
            <location filename="../../src/ui/authentication/authentication_panel.cpp" />
            <source>Log In</source>
            <translation>Anmelden</translation>
        </message>
        <message>
            <location filename="../../src/ui/authentication/authentication_panel.cpp" />
            <source>Proxy:</source>
            <translation>Proxy:</translation>
        </message>
        <message>
            <location filename="../../src/ui/authentication/authentication_panel.cpp" />
            <source>Server:</source>
            <translation>Server:</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Checksum</source>
            <translation>Prüfsumme</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Checksum that “%@” is to have:</source>
            <translation>Prüfsumme, die „%@“ haben soll:</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Found in %1</source>
            <translation>Gefunden in %1</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Look Beside It</source>
            <translation>Daneben suchen</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Looking for a list of checksums...</source>
            <translation>Suche eine Liste von Prüfsummen …</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Looks on the server for a list of checksums</source>
            <translation>Sucht auf dem Server nach einer Liste von Prüfsummen</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>The file has %@.</source>
            <translation>Die Datei hat %@.</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>There is no list of checksums beside it.</source>
            <translation>Daneben liegt keine Liste von Prüfsummen.</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>This is no MD5, SHA-1 or SHA-2.</source>
            <translation>Das ist keine MD5, SHA-1 oder SHA-2.</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Verify</source>
            <translation>Prüfen</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Without one, the SHA-256 of the file is shown.</source>
            <translation>Ohne sie wird die SHA-256 der Datei gezeigt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/checksums/checksum_panel.cpp" />
            <source>Without one, the file is taken as it comes.</source>
            <translation>Ohne sie wird die Datei genommen, wie sie kommt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>&amp;Edit</source>
            <translation>&amp;Bearbeiten</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>&amp;File</source>
            <translation>&amp;Datei</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>&amp;Move Selected</source>
            <translation>Auswahl &amp;verschieben</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>&amp;Queue</source>
            <translation>&amp;Warteschlange</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>&amp;Sort by</source>
            <translation>S&amp;ortieren nach</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>&amp;View</source>
            <translation>&amp;Ansicht</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>&amp;Window</source>
            <translation>&amp;Fenster</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>Progress &amp;Indicator</source>
            <translation>&amp;Fortschrittsanzeige</translation>
        </message>
        <message>
            <location filename="../../src/ui/commands/main_menu.cpp" />
            <source>Rearran&amp;ge Queue by</source>
            <translation>Warteschlange umo&amp;rdnen nach</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/connections_model.cpp" />
            <source>Part</source>
            <translation>Teil</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/connections_model.cpp" />
            <source>Speed</source>
            <translation>Geschwindigkeit</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/connections_model.cpp" />
            <source>from %1</source>
            <translation>ab %1</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/connections_model.cpp" />
            <source>the whole file</source>
            <translation>die ganze Datei</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>%1 downloads are selected.</source>
            <translation>%1 Downloads sind ausgewählt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>Checksum...</source>
            <translation>Prüfsumme …</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>Close Details</source>
            <translation>Details schließen</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>Connections</source>
            <translation>Verbindungen</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>Copy Address</source>
            <translation>Adresse kopieren</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>Copy Addresses</source>
            <translation>Adressen kopieren</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>Details</source>
            <translation>Details</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>Facts</source>
            <translation>Angaben</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/details_pane.cpp" />
            <source>Select a download to see what is known of it.</source>
            <translation>Wählen Sie einen Download, um zu sehen, was über ihn bekannt ist.</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/facts_model.cpp" />
            <source>How it stands</source>
            <translation>Angabe</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/facts_model.cpp" />
            <source>What</source>
            <translation>Was</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/speed_curve.cpp" />
            <source>%1 minutes ago</source>
            <translation>vor %1 Minuten</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/speed_curve.cpp" />
            <source>%1 now, %2 at most</source>
            <translation>%1 jetzt, höchstens %2</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/speed_curve.cpp" />
            <source>Nothing has come in the last minutes of this run</source>
            <translation>In den letzten Minuten seit dem Start ist nichts angekommen</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/speed_curve.cpp" />
            <source>Speed over the last minutes</source>
            <translation>Geschwindigkeit der letzten Minuten</translation>
        </message>
        <message>
            <location filename="../../src/ui/details/speed_curve.cpp" />
            <source>now</source>
            <translation>jetzt</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/about_panel.cpp" />
            <source>A download manager for the desktop.</source>
            <translation>Ein Download-Manager für den Desktop.</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/about_panel.cpp" />
            <source>About &amp;Qt</source>
            <translation>Über &amp;Qt</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/about_panel.cpp" />
            <source>About Orlop</source>
            <translation>Über Orlop</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/about_panel.cpp" />
            <source>Version %@</source>
            <translation>Version %@</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/help_window.cpp" />
            <source>Contents</source>
            <translation>Inhalt</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/help_window.cpp" />
            <source>Search the Manual</source>
            <translation>Im Handbuch suchen</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/key_tables.cpp" />
            <source>Keys in the list</source>
            <translation>Tasten in der Liste</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/key_tables.cpp" />
            <source>Keys of the %@ menu</source>
            <translation>Tasten des Menüs „%@“</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/key_tables.cpp" />
            <source>Pause or resume the selected downloads</source>
            <translation>Ausgewählte Downloads anhalten oder fortsetzen</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/key_tables.cpp" />
            <source>Remove the selected downloads</source>
            <translation>Ausgewählte Downloads entfernen</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/key_tables.cpp" />
            <source>Select nothing</source>
            <translation>Auswahl aufheben</translation>
        </message>
        <message>
            <location filename="../../src/ui/help/quick_access_bar.cpp" />
            <source>Quick Access</source>
            <translation>Schnellzugriff</translation>
        </message>
        <message>
            <location filename="../../src/ui/history/history_list_menu.cpp" />
            <source>No Matches</source>
            <translation>Keine Treffer</translation>
        </message>
        <message>
            <location filename="../../src/ui/history/history_menu.cpp" />
            <source>Clear History</source>
            <translation>Verlauf löschen</translation>
        </message>
        <message>
            <location filename="../../src/ui/history/history_menu.cpp" />
            <source>History cleared</source>
            <translation>Verlauf gelöscht</translation>
        </message>
        <message>
            <location filename="../../src/ui/history/history_menu.cpp" />
            <source>History is empty</source>
            <translation>Der Verlauf ist leer</translation>
        </message>
        <message>
            <location filename="../../src/ui/history/history_menu.cpp" />
            <source>Search</source>
            <translation>Suchen</translation>
        </message>
        <message>
            <location filename="../../src/ui/history/history_search.cpp" />
            <source>Search:</source>
            <translation>Suchen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/history/history_search.cpp" />
            <source>URL</source>
            <translation>URL</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/download_list.cpp" />
            <source>Downloads</source>
            <translation>Downloads</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/empty_list_offers.cpp" />
            <source>Add Addresses...</source>
            <translation>Adressen hinzufügen …</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/empty_list_offers.cpp" />
            <source>Paste</source>
            <translation>Einfügen</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/empty_list_offers.cpp" />
            <source>or paste them with %@</source>
            <translation>oder mit %@ einfügen</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/empty_list_text.cpp" />
            <source>Drag URLs Here</source>
            <translation>URLs hierher ziehen</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/empty_list_text.cpp" />
            <source>Drag URLs Here &amp; Choose Download Folder</source>
            <translation>URLs hierher ziehen &amp; Ordner wählen</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Added earlier today</source>
            <translation>Heute hinzugefügt</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Added on %@</source>
            <translation>Hinzugefügt am %@</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Double-click to reveal target file</source>
            <translation>Doppelklick zeigt die Zieldatei</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Go on after %@</source>
            <translation>Nach %@ weitermachen</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Pause</source>
            <translation>Anhalten</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Remove from the list, keeps the file</source>
            <translation>Aus der Liste entfernen, die Datei bleibt</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Remove, deletes %@ when Orlop quits</source>
            <translation>Entfernen, löscht %@ beim Beenden von Orlop</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Start</source>
            <translation>Starten</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Try again</source>
            <translation>Erneut versuchen</translation>
        </message>
        <message>
            <location filename="../../src/ui/list/row_texts.cpp" />
            <source>Try again, goes on after %@</source>
            <translation>Erneut versuchen, macht nach %@ weiter</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_find_bar.cpp" />
            <source>Find Next</source>
            <translation>Nächste Fundstelle</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_find_bar.cpp" />
            <source>Find Previous</source>
            <translation>Vorherige Fundstelle</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_find_bar.cpp" />
            <source>Find in the Log</source>
            <translation>Im Protokoll suchen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source> — Finding Older Messages…</source>
            <translation> – sucht ältere Meldungen …</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>%1 Log</source>
            <translation>%1-Protokoll</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>&amp;Debug Logging</source>
            <translation>&amp;Ausführlich protokollieren</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>&amp;Equal Messages as One</source>
            <translation>&amp;Gleiche Meldungen zusammenfassen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>&amp;Find...</source>
            <translation>&amp;Suchen …</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>&amp;Names of Senders</source>
            <translation>&amp;Namen der Absender</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>All Lines</source>
            <translation>Alle Zeilen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Clear</source>
            <translation>Aufräumen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Earlier</source>
            <translation>Früher</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Find Earlier Messages</source>
            <translation>Frühere Meldungen suchen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Finding Older Messages</source>
            <translation>Ältere Meldungen werden gesucht</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Lines Shown</source>
            <translation>Gezeigte Zeilen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Log Lines</source>
            <translation>Protokollzeilen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Log Not Supported</source>
            <translation>Protokoll nicht verfügbar</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Problems Only</source>
            <translation>Nur Probleme</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Property Lists (%1)</source>
            <translation>Eigenschaftslisten (%1)</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Save Log</source>
            <translation>Protokoll sichern</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Save...</source>
            <translation>Sichern …</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Selected Lines</source>
            <translation>Ausgewählte Zeilen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>The lines selected above are shown here whole.</source>
            <translation>Die oben ausgewählten Zeilen stehen hier ganz.</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>The log cannot be saved as %1.</source>
            <translation>Das Protokoll kann nicht als %1 gesichert werden.</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>The program that reads the log, orlop-log, is missing.</source>
            <translation>Das Programm, das das Protokoll liest, orlop-log, fehlt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>View</source>
            <translation>Darstellung</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>What Is Shown of the Lines</source>
            <translation>Was von den Zeilen gezeigt wird</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>Without Debug Lines</source>
            <translation>Ohne Debug-Zeilen</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>⇤ %1 days before %2…</source>
            <translation>⇤ %1 Tage vor %2 …</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>⇤ %1…</source>
            <translation>⇤ %1 …</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>⇤ 1 day before %1…</source>
            <translation>⇤ 1 Tag vor %1 …</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/log_window.cpp" />
            <source>⇤ 1 hour before %1…</source>
            <translation>⇤ 1 Stunde vor %1 …</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/problem_report_dialog.cpp" />
            <source>Addresses, names and personal folders are replaced, since Private Downloading is on.</source>
            <translation>Adressen, Namen und persönliche Ordner sind ersetzt, weil privates Laden eingeschaltet ist.</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/problem_report_dialog.cpp" />
            <source>Archives (%1)</source>
            <translation>Archive (%1)</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/problem_report_dialog.cpp" />
            <source>Files of the Report</source>
            <translation>Dateien des Berichts</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/problem_report_dialog.cpp" />
            <source>It may name what you download. With Private Downloading on, addresses and names are replaced.</source>
            <translation>Er kann nennen, was Sie laden. Ist privates Laden eingeschaltet, werden Adressen und Namen ersetzt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/problem_report_dialog.cpp" />
            <source>Report a Problem</source>
            <translation>Ein Problem melden</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/problem_report_dialog.cpp" />
            <source>The report cannot be saved: %1</source>
            <translation>Der Bericht kann nicht gesichert werden: %1</translation>
        </message>
        <message>
            <location filename="../../src/ui/log/problem_report_dialog.cpp" />
            <source>This is all that the report will hold. It is written to a file of your choice and sent nowhere: attach it to a message yourself.</source>
            <translation>Dies ist alles, was der Bericht enthalten wird. Er wird in eine Datei Ihrer Wahl geschrieben und nirgendwohin gesendet: Hängen Sie ihn selbst an eine Nachricht an.</translation>
        </message>
        <message>
            <location filename="../../src/ui/news/news_window.cpp" />
            <source>Automatically show news updates in the menu bar</source>
            <translation>Neuigkeiten automatisch in der Menüleiste zeigen</translation>
        </message>
        <message>
            <location filename="../../src/ui/news/news_window.cpp" />
            <source>Orlop News</source>
            <translation>Orlop-Neuigkeiten</translation>
        </message>
        <message>
            <location filename="../../src/ui/news/news_window.cpp" />
            <source>Orlop News are generated from an online source without uploading any data about your setup.
So in case you've been wondering about this, let us assure you: Orlop does not 'phone home'.</source>
            <translation>Orlop-Neuigkeiten kommen aus einer Quelle im Netz; Angaben über Ihren Rechner werden dabei nicht übertragen.
Falls Sie sich also gefragt haben: Seien Sie versichert, Orlop „telefoniert nicht nach Hause“.</translation>
        </message>
        <message>
            <location filename="../../src/ui/news/news_window.cpp" />
            <source>This page cannot be shown.</source>
            <translation>Diese Seite kann nicht gezeigt werden.</translation>
        </message>
        <message>
            <location filename="../../src/ui/news/online_services.cpp" />
            <source>News</source>
            <translation>Neues</translation>
        </message>
        <message>
            <location filename="../../src/ui/news/online_services.cpp" />
            <source>Read</source>
            <translation>Lesen</translation>
        </message>
        <message>
            <location filename="../../src/ui/news/online_services.cpp" />
            <source>Show...</source>
            <translation>Zeigen ...</translation>
        </message>
        <message>
            <location filename="../../src/ui/news/online_services.cpp" />
            <source>There are news of Orlop.</source>
            <translation>Es gibt Neuigkeiten von Orlop.</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/folder_selector.cpp" />
            <source>Choose Folder</source>
            <translation>Ordner wählen</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>&amp;Download to:</source>
            <translation>&amp;Herunterladen nach:</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>Application</source>
            <translation>Programm</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>Define Rule</source>
            <translation>Regel anlegen</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>Edit Rule</source>
            <translation>Regel bearbeiten</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>From these &amp;hosts, one on each line</source>
            <translation>Von diesen &amp;Servern, je einer pro Zeile</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>Open &amp;with:</source>
            <translation>Öffnen &amp;mit:</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>Say which downloads the rule is for: those from certain hosts, those of certain types, or those that are both.</source>
            <translation>Geben Sie an, für welche Downloads die Regel gilt: die von bestimmten Servern, die von bestimmter Art, oder die, auf die beides zutrifft.</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>With these e&amp;xtensions, one on each line</source>
            <translation>Mit diesen &amp;Endungen, je eine pro Zeile</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>“%@” is no extension. Write one on each line, as in zip.</source>
            <translation>„%@“ ist keine Endung. Schreiben Sie eine pro Zeile, etwa zip.</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_editor.cpp" />
            <source>“%@” is no name of a host. Write one on each line, as in example.org, without what follows it in an address.</source>
            <translation>„%@“ ist kein Name eines Hosts. Schreiben Sie je Zeile einen, wie example.org, ohne das, was ihm in einer Adresse folgt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_list.cpp" />
            <source>Any</source>
            <translation>Beliebig</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_list.cpp" />
            <source>De&amp;fine Rule...</source>
            <translation>Regel &amp;anlegen …</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_list.cpp" />
            <source>Dupli&amp;cate...</source>
            <translation>&amp;Duplizieren …</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_list.cpp" />
            <source>Ed&amp;it...</source>
            <translation>&amp;Bearbeiten …</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_list.cpp" />
            <source>Extensions</source>
            <translation>Endungen</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_list.cpp" />
            <source>Folder</source>
            <translation>Ordner</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_list.cpp" />
            <source>Hosts</source>
            <translation>Server</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/rule_list.cpp" />
            <source>Re&amp;move</source>
            <translation>Ent&amp;fernen</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/subdivision_field.cpp" />
            <source> - Example: %@</source>
            <translation> - Beispiel: %@</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/subdivision_field.cpp" />
            <source>No subfolders</source>
            <translation>Keine Unterordner</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/subdivision_field.cpp" />
            <source>This is no date format; no subfolder will be made.</source>
            <translation>Das ist kein Datumsformat; es wird kein Unterordner angelegt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/rules/subdivision_field.cpp" />
            <source>Today: %@</source>
            <translation>Heute: %@</translation>
        </message>
        <message>
            <location filename="../../src/ui/schedule/schedule_settings.cpp" />
            <source>&amp;Pause downloads every day</source>
            <translation>Downloads täglich &amp;anhalten</translation>
        </message>
        <message>
            <location filename="../../src/ui/schedule/schedule_settings.cpp" />
            <source>&amp;Start downloads every day</source>
            <translation>Downloads täglich &amp;starten</translation>
        </message>
        <message>
            <location filename="../../src/ui/schedule/schedule_settings.cpp" />
            <source>Pause downloads that are &amp;running as well</source>
            <translation>Auch &amp;laufende Downloads anhalten</translation>
        </message>
        <message>
            <location filename="../../src/ui/schedule/schedule_settings.cpp" />
            <source>at</source>
            <translation>um</translation>
        </message>
        <message>
            <location filename="../../src/ui/schedule/throttle_field.cpp" />
            <source>Bandwidth limit in kilobytes per second</source>
            <translation>Bandbreitenlimit in Kilobyte pro Sekunde</translation>
        </message>
        <message>
            <location filename="../../src/ui/schedule/toolbar_explanation.cpp" />
            <source>Do not show this message again</source>
            <translation>Diesen Hinweis nicht mehr zeigen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>&amp;Date of files:</source>
            <translation>&amp;Datum der Dateien:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>&amp;Full screen:</source>
            <translation>&amp;Vollbild:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>&amp;Height follows the list</source>
            <translation>&amp;Höhe folgt der Liste</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>&amp;Note in the file where it came from</source>
            <translation>In der Datei ver&amp;merken, woher sie kommt</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>&amp;Plus signs in addresses stand for blanks</source>
            <translation>&amp;Pluszeichen in Adressen stehen für Leerzeichen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>&amp;Skip services that only redirect</source>
            <translation>Dienste über&amp;springen, die nur weiterleiten</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>A regular expression for the links that a browser extension hands over. It is grey while it is empty or cannot be read.</source>
            <translation>Ein regulärer Ausdruck für die Links, die eine Browser-Erweiterung übergibt. Er ist grau, solange er leer ist oder nicht gelesen werden kann.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Add if missing</source>
            <translation>Ergänzen, wenn sie fehlt</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Add if missing, correct if wrong</source>
            <translation>Ergänzen und berichtigen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Addresses:</source>
            <translation>Adressen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Allowed</source>
            <translation>Erlaubt</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Always</source>
            <translation>Immer</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Always by the type of the content</source>
            <translation>Immer nach dem Typ des Inhalts</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>An&amp;imations</source>
            <translation>An&amp;imationen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>At login:</source>
            <translation>Bei der Anmeldung:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Basic downloads:</source>
            <translation>Einfache Downloads:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Beside the finished file</source>
            <translation>Neben der fertigen Datei</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Download pages:</source>
            <translation>Download-Seiten:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Drop tar&amp;get:</source>
            <translation>Ablagezie&amp;l:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Edit &amp;Rules...</source>
            <translation>&amp;Regeln bearbeiten …</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Edit rules for download pages</source>
            <translation>Regeln für Download-Seiten bearbeiten</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>File e&amp;xtensions:</source>
            <translation>&amp;Endung:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>In Orlop's own folder</source>
            <translation>In Orlops eigenem Ordner</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Keep &amp;unfinished files:</source>
            <translation>&amp;Unfertige Dateien:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Leave as they are</source>
            <translation>Lassen, wie sie ist</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Lin&amp;ks for browsers:</source>
            <translation>Lin&amp;ks für Browser:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Never</source>
            <translation>Nie</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Not allowed</source>
            <translation>Nicht erlaubt</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Not now...</source>
            <translation>Jetzt nicht ...</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Sho&amp;w Orlop in:</source>
            <translation>Orlop &amp;zeigen in:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Status item</source>
            <translation>Statussymbol</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Task bar</source>
            <translation>Fensterleiste</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Task bar and status item</source>
            <translation>Fensterleiste und Statussymbol</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>The server's date</source>
            <translation>Angabe des Servers</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>The window opens from the status item's menu and by a click on the drop target, a small window that takes addresses and can be dragged to any place.</source>
            <translation>Das Fenster öffnet sich aus dem Menü des Statussymbols und durch einen Klick auf das Ablageziel, ein kleines Fenster, das Adressen annimmt und sich überallhin ziehen lässt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>This counts from the next start of Orlop.</source>
            <translation>Das gilt ab dem nächsten Start von Orlop.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Understood</source>
            <translation>Verstanden</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>User &amp;agent:</source>
            <translation>User-A&amp;gent:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>What servers are told about the program. “-” tells them nothing.</source>
            <translation>Was Server über das Programm erfahren. „-“ verrät ihnen nichts.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>When they were downloaded</source>
            <translation>Zeitpunkt des Downloads</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Window:</source>
            <translation>Fenster:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>With the status item</source>
            <translation>Mit dem Statussymbol</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Without &amp;bandwidth limit and its controls</source>
            <translation>Ohne &amp;Bandbreitenlimit und seine Bedienelemente</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/advanced_section.cpp" />
            <source>Your desktop shows no status items at the moment.</source>
            <translation>Ihre Arbeitsumgebung zeigt im Moment keine Statussymbole.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>&amp;Finished downloads</source>
            <translation>&amp;Fertige Downloads</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>&amp;Handed an address:</source>
            <translation>Nach einer &amp;Übergabe:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>&amp;Quitting while downloading:</source>
            <translation>&amp;Beenden beim Laden:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>After each download</source>
            <translation>Nach jedem Download</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>After the last download</source>
            <translation>Nach dem letzten Download</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Ask for &amp;attention:</source>
            <translation>Auf sich auf&amp;merksam machen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Asks first</source>
            <translation>Fragt vorher</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Clear from the list:</source>
            <translation>Aus der Liste räumen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Closing the &amp;window:</source>
            <translation>Fenster &amp;schließen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Fai&amp;led downloads</source>
            <translation>Fehl&amp;geschlagene Downloads</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Hide</source>
            <translation>Ausblenden</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Keeps Orlop running</source>
            <translation>Orlop läuft weiter</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Pauses without asking</source>
            <translation>Hält ohne Frage an</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Play a &amp;sound:</source>
            <translation>&amp;Klang abspielen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Quit when everything is &amp;done</source>
            <translation>Beenden, wenn alles fertig ist</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Quits</source>
            <translation>Beendet Orlop</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Quits if nothing is active</source>
            <translation>Beendet Orlop, wenn nichts läuft</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Stay where it is</source>
            <translation>Bleiben, wo es ist</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Step back behind other windows</source>
            <translation>Hinter andere Fenster treten</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>What Orlop does once another program has passed it something to download.</source>
            <translation>Was Orlop tut, sobald ein anderes Programm ihm etwas übergeben hat.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/behaviors_section.cpp" />
            <source>Where no panel shows Orlop's icon, it quits as well if nothing is active.</source>
            <translation>Wo keine Leiste das Symbol von Orlop zeigt, beendet es auch, wenn nichts läuft.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/download_pages_section.cpp" />
            <source>In force are all rules but that for %@: what its "Use Source Name" says is no regular expression.</source>
            <translation>Es gelten alle Regeln außer der für %@: Was bei ihr unter „Use Source Name“ steht, ist kein regulärer Ausdruck.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/download_pages_section.cpp" />
            <source>Rules for download pages</source>
            <translation>Regeln für Download-Seiten</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/download_pages_section.cpp" />
            <source>Show &amp;Problem...</source>
            <translation>&amp;Fehler zeigen …</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/download_pages_section.cpp" />
            <source>Some addresses lead to a page that holds the real links. Each rule says which pages these are and how the links are found on them, with regular expressions.</source>
            <translation>Manche Adressen führen zu einer Seite mit den eigentlichen Links. Jede Regel sagt mit regulären Ausdrücken, welche Seiten das sind und wie die Links darauf zu finden sind.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/download_pages_section.cpp" />
            <source>These rules are in force. An empty text brings back those that came with Orlop.</source>
            <translation>Diese Regeln gelten. Ein leerer Text bringt die mitgelieferten zurück.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/download_pages_section.cpp" />
            <source>This text cannot be read. Until it can, no rules are in force.</source>
            <translation>Dieser Text ist nicht lesbar. So lange gelten keine Regeln.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/download_pages_section.cpp" />
            <source>This text holds no complete rules. Until it does, none are in force.</source>
            <translation>Dieser Text enthält keine vollständigen Regeln. So lange gelten keine.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>&amp;Subfolder by date:</source>
            <translation>&amp;Unterordner nach Datum:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>Asked for a folder, choose the &amp;name as well</source>
            <translation>Mit dem Ordner auch den &amp;Namen wählen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>Date &amp;used:</source>
            <translation>Ver&amp;wendetes Datum:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>In &amp;rules' folders:</source>
            <translation>In Ordnern von &amp;Regeln:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>New downloads:</source>
            <translation>Neue Downloads:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>Offer addresses that are copied</source>
            <translation>Kopierte Adressen anbieten</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>Rul&amp;es:</source>
            <translation>Re&amp;geln:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>Skip addresses that are &amp;already in the list</source>
            <translation>Adressen überspringen, die schon in der &amp;Liste sind</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>Start at &amp;once</source>
            <translation>&amp;Sofort starten</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>The first rule that fits a download decides on its folder.</source>
            <translation>Die erste Regel, die auf einen Download passt, bestimmt seinen Ordner.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>Today</source>
            <translation>Heute</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/general_section.cpp" />
            <source>When the download was added</source>
            <translation>Tag, an dem der Download hinzukam</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/history_section.cpp" />
            <source>&amp;Clear when quitting</source>
            <translation>Beim Beenden &amp;löschen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/history_section.cpp" />
            <source>&amp;Only downloads that finished</source>
            <translation>&amp;Nur fertige Downloads</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/history_section.cpp" />
            <source>&amp;Remember downloads:</source>
            <translation>Downloads &amp;merken:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/history_section.cpp" />
            <source>All</source>
            <translation>Alle</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/history_section.cpp" />
            <source>History:</source>
            <translation>Verlauf:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/history_section.cpp" />
            <source>In the &amp;menu itself:</source>
            <translation>Im Menü &amp;selbst:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/history_section.cpp" />
            <source>None</source>
            <translation>Keine</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/history_section.cpp" />
            <source>Older ones stand in a menu of their day.</source>
            <translation>Ältere stehen im Untermenü ihres Tages.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/login_item_switch.cpp" />
            <source>Settings</source>
            <translation>Einstellungen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/login_item_switch.cpp" />
            <source>Start Orlop when you &amp;log in</source>
            <translation>Orlop bei der &amp;Anmeldung starten</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/login_item_switch.cpp" />
            <source>What Orlop needs to be started when you log in cannot be written to %1: %2</source>
            <translation>Was Orlop braucht, um bei der Anmeldung zu starten, kann nicht nach %1 geschrieben werden: %2</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/schedule_section.cpp" />
            <source>Automatically:</source>
            <translation>Automatisch:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/settings_window.cpp" />
            <source>Advanced</source>
            <translation>Erweitert</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/settings_window.cpp" />
            <source>Behaviors</source>
            <translation>Verhalten</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/settings_window.cpp" />
            <source>Experimental</source>
            <translation>Experimental</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/settings_window.cpp" />
            <source>Feedback</source>
            <translation>Feedback</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/settings_window.cpp" />
            <source>Schedule</source>
            <translation>Zeitplan</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/settings_window.cpp" />
            <source>Sections</source>
            <translation>Abschnitte</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/settings_window.cpp" />
            <source>Updates</source>
            <translation>Aktualisierungen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>&amp;Connections:</source>
            <translation>&amp;Verbindungen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>&amp;Downloads at once:</source>
            <translation>&amp;Gleichzeitige Downloads:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>&amp;Fetch large files over several connections</source>
            <translation>Große Dateien über &amp;mehrere Verbindungen laden</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>&amp;Limit the speed of all downloads together</source>
            <translation>Alle Downloads zusammen &amp;begrenzen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>&amp;Try interrupted downloads again</source>
            <translation>&amp;Unterbrochene erneut versuchen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>Acceleration:</source>
            <translation>Beschleunigung:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>B&amp;usy servers are asked again:</source>
            <translation>Ausgelastete Server &amp;erneut fragen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>Bandwidth:</source>
            <translation>Bandbreite:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>Failures:</source>
            <translation>Fehlschläge:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>Fast connections help &amp;slow ones</source>
            <translation>Schnelle Verbindungen &amp;helfen langsamen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>From one &amp;host:</source>
            <translation>Von einem &amp;Server:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>KB per second</source>
            <translation>kB pro Sekunde</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>L&amp;imit:</source>
            <translation>&amp;Limit:</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>Of several that stop within seconds, one; the others wait for you.</source>
            <translation>Von mehreren, die binnen Sekunden abbrechen, einen; die anderen warten auf Sie.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>Once</source>
            <translation>Einmal</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>Some servers allow no more than one connection.</source>
            <translation>Manche Server erlauben nur eine Verbindung.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/speed_section.cpp" />
            <source>Unlimited</source>
            <translation>Unbegrenzt</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/updates_section.cpp" />
            <source>%1 looks after Orlop and brings new versions.</source>
            <translation>%1 kümmert sich um Orlop und bringt neue Versionen.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/updates_section.cpp" />
            <source>&amp;Show Page</source>
            <translation>&amp;Seite zeigen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/updates_section.cpp" />
            <source>Check &amp;Now</source>
            <translation>&amp;Jetzt prüfen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/updates_section.cpp" />
            <source>Look for new versions once a &amp;day</source>
            <translation>Einmal am &amp;Tag nach neuen Versionen sehen</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/updates_section.cpp" />
            <source>Looking for updates...</source>
            <translation>Nach Aktualisierungen wird gesehen ...</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/updates_section.cpp" />
            <source>Orlop tells of new versions and installs nothing by itself.</source>
            <translation>Orlop sagt, wenn es neue Versionen gibt, und installiert nichts von selbst.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/updates_section.cpp" />
            <source>This build of Orlop has no address to look for new versions at.</source>
            <translation>Diese Ausgabe von Orlop hat keine Adresse, bei der sie nach neuen Versionen sehen könnte.</translation>
        </message>
        <message>
            <location filename="../../src/ui/settings/updates_section.cpp" />
            <source>Updates:</source>
            <translation>Aktualisierungen:</translation>
        </message>
        <message>
            <location filename="../../src/ui/speed/speed_limit_panel.cpp" />
            <source>At most, in kilobytes per second:</source>
            <translation>Höchstens, in Kilobyte pro Sekunde:</translation>
        </message>
        <message>
            <location filename="../../src/ui/speed/speed_limit_panel.cpp" />
            <source>Speed Limit</source>
            <translation>Geschwindigkeit begrenzen</translation>
        </message>
        <message>
            <location filename="../../src/ui/speed/speed_limit_panel.cpp" />
            <source>Speed limit in kilobytes per second</source>
            <translation>Höchste Geschwindigkeit in Kilobyte pro Sekunde</translation>
        </message>
        <message>
            <location filename="../../src/ui/speed/speed_limit_panel.cpp" />
            <source>Speed of each of %1 downloads:</source>
            <translation>Geschwindigkeit von jedem der %1 Downloads:</translation>
        </message>
        <message>
            <location filename="../../src/ui/speed/speed_limit_panel.cpp" />
            <source>Speed of “%@”:</source>
            <translation>Geschwindigkeit von „%@“:</translation>
        </message>
        <message>
            <location filename="../../src/ui/speed/speed_limit_panel.cpp" />
            <source>The limit of all downloads together counts as well.</source>
            <translation>Die Grenze für alle Downloads zusammen gilt auch.</translation>
        </message>
        <message>
            <location filename="../../src/ui/status/drop_target.cpp" />
            <source>Orlop Drop Target</source>
            <translation>Orlop-Ablageziel</translation>
        </message>
        <message>
            <location filename="../../src/ui/structured/structured_text_edit.cpp" />
            <source>Format</source>
            <translation>Formatieren</translation>
        </message>
        <message>
            <location filename="../../src/ui/structured/structured_text_edit.cpp" />
            <source>Syntax Error</source>
            <translation>Syntaxfehler</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/state_filter_button.cpp" />
            <source>Active</source>
            <translation>Laufend</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/state_filter_button.cpp" />
            <source>Failed</source>
            <translation>Fehlgeschlagen</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/state_filter_button.cpp" />
            <source>Which rows are shown</source>
            <translation>Welche Zeilen gezeigt werden</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar.cpp" />
            <source>Filter</source>
            <translation>Filter</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar.cpp" />
            <source>Pause what runs (%1)</source>
            <translation>Laufendes anhalten (%1)</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar.cpp" />
            <source>Pause what waits; with Shift, what runs as well (%1)</source>
            <translation>Wartendes anhalten; mit Umschalt auch Laufendes (%1)</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar.cpp" />
            <source>Toolbar</source>
            <translation>Symbolleiste</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_editor.cpp" />
            <source>&amp;Add</source>
            <translation>&amp;Hinzufügen</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_editor.cpp" />
            <source>Available items:</source>
            <translation>Verfügbar:</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_editor.cpp" />
            <source>Customize Toolbar</source>
            <translation>Symbolleiste anpassen</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_editor.cpp" />
            <source>In the toolbar:</source>
            <translation>In der Symbolleiste:</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_editor.cpp" />
            <source>Move &amp;Down</source>
            <translation>Nach &amp;unten</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>Accelerate Downloads/Throttle Bandwidth</source>
            <translation>Beschleunigen/Bandbreite begrenzen</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>Add from Clipboard</source>
            <translation>Aus Zwischenablage hinzufügen</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>Customize</source>
            <translation>Anpassen</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>Flexible Space</source>
            <translation>Flexibler Abstand</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>More Actions</source>
            <translation>Weitere Befehle</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>Separator</source>
            <translation>Trennstrich</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>Space</source>
            <translation>Abstand</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>Start/Pause</source>
            <translation>Starten/Anhalten</translation>
        </message>
        <message>
            <location filename="../../src/ui/toolbar/toolbar_layout.cpp" />
            <source>Start/Pause According to Schedule</source>
            <translation>Nach Zeitplan starten/anhalten</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/address_entry.cpp" />
            <source>Open Folder</source>
            <translation>Ordner öffnen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/address_entry.cpp" />
            <source>These addresses have not been added yet.</source>
            <translation>Diese Adressen sind noch nicht hinzugefügt.</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/clipboard_watch.cpp" />
            <source>%1 addresses were copied</source>
            <translation>%1 Adressen wurden kopiert</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/clipboard_watch.cpp" />
            <source>An address was copied</source>
            <translation>Eine Adresse wurde kopiert</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/clipboard_watch.cpp" />
            <source>The address of %1 was copied</source>
            <translation>Die Adresse von %1 wurde kopiert</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_front_end.cpp" />
            <source>Choose File Location</source>
            <translation>Speicherort wählen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_front_end.cpp" />
            <source>Unlock</source>
            <translation>Freigeben</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>%1 can go on: its volume is back.</source>
            <translation>%1 kann weitergehen: Der Datenträger ist wieder da.</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>%1 could not be moved to the trash and is still there.</source>
            <translation>%1 konnte nicht in den Papierkorb verschoben werden und ist noch da.</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>%1 downloads can go on: their volume is back.</source>
            <translation>%1 Downloads können weitergehen: Ihr Datenträger ist wieder da.</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>&amp;Log</source>
            <translation>&amp;Protokoll</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>Closing the window does not end it. Start Orlop again to see the window.</source>
            <translation>Das Schließen des Fensters beendet es nicht. Starten Sie Orlop noch einmal, um das Fenster zu sehen.</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>H&amp;istory</source>
            <translation>&amp;Verlauf</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>Orlop goes on with %1 downloads</source>
            <translation>Orlop macht mit %1 Downloads weiter</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>Orlop goes on with 1 download</source>
            <translation>Orlop macht mit 1 Download weiter</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>Resume</source>
            <translation>Fortsetzen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>Show</source>
            <translation>Zeigen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/desktop_windows.cpp" />
            <source>The queue is not saved</source>
            <translation>Die Warteschlange ist nicht gesichert</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/intake_progress.cpp" />
            <source>%1 added</source>
            <translation>%1 hinzugefügt</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/intake_progress.cpp" />
            <source>Stop Adding</source>
            <translation>Hinzufügen abbrechen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/main_window.cpp" />
            <source>Already in the list</source>
            <translation>Schon in der Liste</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/main_window.cpp" />
            <source>Not closed: “%1” is still open</source>
            <translation>Nicht geschlossen: „%1“ ist noch offen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/main_window.cpp" />
            <source>Undo</source>
            <translation>Rückgängig</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/notice_bars.cpp" />
            <source>Close</source>
            <translation>Schließen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/url_panel.cpp" />
            <source>&amp;Folder:</source>
            <translation>&amp;Ordner:</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/url_panel.cpp" />
            <source>Add</source>
            <translation>Hinzufügen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/url_panel.cpp" />
            <source>Add Addresses</source>
            <translation>Adressen hinzufügen</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/url_panel.cpp" />
            <source>Chec&amp;ksum:</source>
            <translation>&amp;Prüfsumme:</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/url_panel.cpp" />
            <source>For a single address only.</source>
            <translation>Nur für eine einzelne Adresse.</translation>
        </message>
        <message>
            <location filename="../../src/ui/window/url_panel.cpp" />
            <source>One or several addresses; {1-20} makes a series:</source>
            <translation>Eine oder mehrere Adressen; {1-20} ergibt eine Reihe:</translation>
        </message>
    </context>
</TS>
