<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Ascommand</name>
    <message>
        <source>the filter names the table</source>
        <translation>der Filter die Tabelle nennt</translation>
    </message>
    <message>
        <source>%1 is no longer there</source>
        <translation>%1 nicht mehr da ist</translation>
    </message>
    <message>
        <source>%1 has changed since it was read</source>
        <translation>%1 sich seit dem Einlesen geändert hat</translation>
    </message>
</context>
<context>
    <name>Asking</name>
    <message>
        <source>Password</source>
        <translation>Kennwort</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>It is kept until the program ends, and stored nowhere.</source>
        <translation>Es wird behalten, bis das Programm endet, und nirgends gespeichert.</translation>
    </message>
    <message>
        <source>Values of the parameters</source>
        <translation>Werte der Parameter</translation>
    </message>
</context>
<context>
    <name>ChoiceTable</name>
    <message>
        <source>infinite</source>
        <translation>unendlich</translation>
    </message>
    <message>
        <source>-infinite</source>
        <translation>-unendlich</translation>
    </message>
    <message>
        <source>does not exist</source>
        <translation>gibt es nicht</translation>
    </message>
</context>
<context>
    <name>ChoiceWords</name>
    <message>
        <source>There is no variable to choose from</source>
        <translation>Es gibt keine Variable zur Auswahl</translation>
    </message>
    <message>
        <source>The model fits exactly</source>
        <translation>Das Modell passt genau</translation>
    </message>
    <message>
        <source>Every variable is in the model</source>
        <translation>Jede Variable ist im Modell</translation>
    </message>
    <message>
        <source>No variable is left in the model</source>
        <translation>Keine Variable ist mehr im Modell</translation>
    </message>
    <message>
        <source>No variable can enter: what is left depends on those in the model or would leave no degrees of freedom</source>
        <translation>Keine Variable kann aufgenommen werden: Was übrig ist, hängt von denen im Modell ab oder ließe keine Freiheitsgrade</translation>
    </message>
    <message>
        <source>No variable can be judged: there are no degrees of freedom</source>
        <translation>Keine Variable lässt sich beurteilen: Es gibt keine Freiheitsgrade</translation>
    </message>
    <message>
        <source>No variable below the threshold</source>
        <translation>Keine Variable unter der Schwelle</translation>
    </message>
    <message>
        <source>Every variable is in the model, none below the threshold to stay</source>
        <translation>Jede Variable ist im Modell, keine unter der Schwelle zum Bleiben</translation>
    </message>
    <message>
        <source>No variable above the threshold to enter, none below the one to stay</source>
        <translation>Keine Variable über der Schwelle zur Aufnahme, keine unter der zum Bleiben</translation>
    </message>
    <message>
        <source>No variable above the threshold</source>
        <translation>Keine Variable über der Schwelle</translation>
    </message>
    <message>
        <source>None: no record can be used by every variable.</source>
        <translation>Keines: Kein Datensatz ist für jede Variable brauchbar.</translation>
    </message>
    <message>
        <source>None: %1 does not vary over the records that every variable can use.</source>
        <translation>Keines: %1 ist in allen Datensätzen gleich, die für jede Variable brauchbar sind.</translation>
    </message>
    <message>
        <source>The constant alone: there is no variable to choose from.</source>
        <translation>Die Konstante allein: Es gibt keine Variable zur Auswahl.</translation>
    </message>
    <message>
        <source>The variables as they were before: %1 exists for no subset, as it needs every observation, not a sample of them.</source>
        <translation>Die Variablen wie zuvor: %1 gibt es für keine Teilmenge, denn dafür braucht es jede Beobachtung und nicht nur eine Stichprobe.</translation>
    </message>
    <message>
        <source>The variables as they were before: %1 exists for no subset, as %2 observations leave the full model no degrees of freedom.</source>
        <translation>Die Variablen wie zuvor: %1 gibt es für keine Teilmenge, denn %2 Beobachtungen lassen dem vollen Modell keine Freiheitsgrade.</translation>
    </message>
    <message>
        <source>The variables as they were before: %1 exists for no subset.</source>
        <translation>Die Variablen wie zuvor: %1 gibt es für keine Teilmenge.</translation>
    </message>
    <message>
        <source>The constant alone</source>
        <translation>Die Konstante allein</translation>
    </message>
    <message>
        <source>%1 (number %2 of the list, put in the place of the chosen one).</source>
        <translation>%1 (Nummer %2 der Liste, anstelle des gewählten eingesetzt).</translation>
    </message>
    <message>
        <source>%1 (number %2 of the steps, put in the place of the chosen one).</source>
        <translation>%1 (Nummer %2 der Schritte, anstelle des gewählten eingesetzt).</translation>
    </message>
    <message>
        <source>%1: the largest %2 of all subsets, %3.</source>
        <translation>%1: größter Wert von %2 unter allen Teilmengen, %3.</translation>
    </message>
    <message>
        <source>%1: the smallest %2 of all subsets, %3.</source>
        <translation>%1: kleinster Wert von %2 unter allen Teilmengen, %3.</translation>
    </message>
    <message>
        <source>an exact fit</source>
        <translation>eine genaue Anpassung</translation>
    </message>
    <message>
        <source>%1 %2 null, %3 impossible</source>
        <comment>a term and numbers of records</comment>
        <translation>%1 %2-mal leer, %3-mal unmöglich</translation>
    </message>
    <message>
        <source>%1 %2 null</source>
        <comment>a term and a number of records</comment>
        <translation>%1 %2-mal leer</translation>
    </message>
    <message>
        <source>%1 %2 impossible</source>
        <comment>a term and a number of records</comment>
        <translation>%1 %2-mal unmöglich</translation>
    </message>
    <message>
        <source>adjusted R²</source>
        <translation>korrigiertes R²</translation>
    </message>
    <message>
        <source>Adding %1: the fit is exact with it and without</source>
        <translation>Aufnahme von %1: Die Anpassung ist mit und ohne genau</translation>
    </message>
    <message>
        <source>Removing %1: the fit is exact with it and without</source>
        <translation>Ausschluss von %1: Die Anpassung ist mit und ohne genau</translation>
    </message>
    <message>
        <source>Adding %1: the fit becomes exact</source>
        <translation>Aufnahme von %1: Die Anpassung wird genau</translation>
    </message>
    <message>
        <source>Removing %1: the fit becomes exact</source>
        <translation>Ausschluss von %1: Die Anpassung wird genau</translation>
    </message>
    <message>
        <source>Adding %1: F = %2, p = %3</source>
        <translation>Aufnahme von %1: F = %2, p = %3</translation>
    </message>
    <message>
        <source>Removing %1: F = %2, p = %3</source>
        <translation>Ausschluss von %1: F = %2, p = %3</translation>
    </message>
    <message>
        <source>Nulls and impossible values took %1 of %2 records away from all candidates. Without some of these variables there are more records, and the choice can be another one.</source>
        <translation>Leere und unmögliche Werte nehmen allen Kandidaten %1 von %2 Datensätzen. Ohne einige dieser Variablen sind es mehr Datensätze, und die Wahl kann anders ausfallen.</translation>
    </message>
    <message>
        <source>Nulls and impossible values took %1 of %2 records away from all candidates (%3). Without some of these variables there are more records, and the choice can be another one.</source>
        <translation>Leere und unmögliche Werte nehmen allen Kandidaten %1 von %2 Datensätzen (%3). Ohne einige dieser Variablen sind es mehr Datensätze, und die Wahl kann anders ausfallen.</translation>
    </message>
    <message>
        <source>The p-values after a selection are too small and the intervals too narrow: they do not know that the model was chosen on the same records.</source>
        <translation>Nach einer Modellwahl sind p-Werte zu klein und Intervalle zu schmal: Sie wissen nicht, dass das Modell an denselben Datensätzen gewählt wurde.</translation>
    </message>
    <message>
        <source>%1 of the subsets are dependent: a variable in them is a linear combination of the others. They are never the best.</source>
        <translation>%1 der Teilmengen sind abhängig: Eine Variable darin ist eine Linearkombination der anderen. Sie sind nie die besten.</translation>
    </message>
</context>
<context>
    <name>Comparison</name>
    <message>
        <source>They are of different tables: R², s and AIC do not compare.</source>
        <translation>Sie beruhen auf verschiedenen Tabellen: R², s und AIC sind nicht vergleichbar.</translation>
    </message>
    <message>
        <source>They have different responses: R², s and AIC do not compare.</source>
        <translation>Sie haben verschiedene Zielgrößen: R², s und AIC sind nicht vergleichbar.</translation>
    </message>
    <message>
        <source>They are of different numbers of records: R², s and AIC do not compare. Where a field has nulls, a filter such as FIELD IS NOT NULL gives both the same.</source>
        <translation>Sie beruhen auf verschieden vielen Datensätzen: R², s und AIC sind nicht vergleichbar. Wo ein Feld Lücken hat, gibt ein Filter wie FELD IS NOT NULL beiden dieselben.</translation>
    </message>
    <message>
        <source>They are of as many records, but not of the same ones: R², s and AIC do not compare.</source>
        <translation>Sie beruhen auf gleich vielen Datensätzen, aber nicht auf denselben: R², s und AIC sind nicht vergleichbar.</translation>
    </message>
    <message>
        <source>F(%1, %2) = %3, p = %4</source>
        <translation>F(%1, %2) = %3, p = %4</translation>
    </message>
    <message>
        <source>The further terms of &quot;%1&quot; are needed at 5 %: %2.</source>
        <translation>Die weiteren Terme von „%1“ sind zum Niveau 5 % nötig: %2.</translation>
    </message>
    <message>
        <source>The further terms of &quot;%1&quot; are not needed at 5 %: %2.</source>
        <translation>Die weiteren Terme von „%1“ sind zum Niveau 5 % nicht nötig: %2.</translation>
    </message>
    <message>
        <source>First: %1</source>
        <translation>Erstes: %1</translation>
    </message>
    <message>
        <source>Second: %1</source>
        <translation>Zweites: %1</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Datensätze</translation>
    </message>
    <message>
        <source>R²</source>
        <translation>R²</translation>
    </message>
    <message>
        <source>Adjusted R²</source>
        <translation>Korrigiertes R²</translation>
    </message>
    <message>
        <source>s</source>
        <translation>s</translation>
    </message>
    <message>
        <source>AIC</source>
        <translation>AIC</translation>
    </message>
</context>
<context>
    <name>CsvWords</name>
    <message>
        <source>line %1 has &quot;%2&quot;</source>
        <translation>Zeile %1 enthält „%2“</translation>
    </message>
    <message>
        <source>commas could be decimal or part thousands; --decimal says which</source>
        <translation>Kommas könnten Dezimalzeichen sein oder Tausender trennen; das Dezimalzeichen lässt sich angeben</translation>
    </message>
    <message>
        <source>points could be decimal or part thousands; --decimal says which</source>
        <translation>Punkte könnten Dezimalzeichen sein oder Tausender trennen; das Dezimalzeichen lässt sich angeben</translation>
    </message>
    <message>
        <source>no number has a decimal sign</source>
        <translation>keine Zahl enthält ein Dezimalzeichen</translation>
    </message>
    <message>
        <source>the header row has a semicolon and no comma</source>
        <translation>die Kopfzeile enthält ein Semikolon und kein Komma</translation>
    </message>
    <message>
        <source>the header row has %1 semicolons and no comma</source>
        <translation>die Kopfzeile enthält %1 Semikolons und kein Komma</translation>
    </message>
    <message>
        <source>the header row has a tab and no comma</source>
        <translation>die Kopfzeile enthält einen Tabulator und kein Komma</translation>
    </message>
    <message>
        <source>the header row has %1 tabs and no comma</source>
        <translation>die Kopfzeile enthält %1 Tabulatoren und kein Komma</translation>
    </message>
    <message>
        <source>every record has %1 cells with it, where a semicolon gives them different numbers</source>
        <translation>damit hat jeder Datensatz %1 Zellen, mit Semikolon verschieden viele</translation>
    </message>
    <message>
        <source>every record has %1 cells with it, where a tab gives them different numbers</source>
        <translation>damit hat jeder Datensatz %1 Zellen, mit Tabulator verschieden viele</translation>
    </message>
    <message>
        <source>every record has %1 cells with it, where a comma gives them different numbers</source>
        <translation>damit hat jeder Datensatz %1 Zellen, mit Komma verschieden viele</translation>
    </message>
    <message>
        <source>every record has %1 cells with it, and the header row no other separator</source>
        <translation>damit hat jeder Datensatz %1 Zellen, und die Kopfzeile enthält kein anderes Trennzeichen</translation>
    </message>
    <message>
        <source>the first line says so</source>
        <translation>die erste Zeile gibt es an</translation>
    </message>
    <message>
        <source>the file begins with its byte-order mark</source>
        <translation>die Datei beginnt mit der Marke dieser Kodierung</translation>
    </message>
    <message>
        <source>every second byte is zero</source>
        <translation>jedes zweite Byte ist null</translation>
    </message>
    <message>
        <source>as told</source>
        <translation>wie angegeben</translation>
    </message>
    <message>
        <source>every byte is part of a character</source>
        <translation>jedes Byte gehört zu einem Zeichen</translation>
    </message>
    <message>
        <source>some byte is no UTF-8</source>
        <translation>ein Byte ist kein UTF-8</translation>
    </message>
    <message>
        <source>the header row has a comma</source>
        <translation>die Kopfzeile enthält ein Komma</translation>
    </message>
    <message>
        <source>there is one column</source>
        <translation>es gibt nur eine Spalte</translation>
    </message>
    <message>
        <source>comma</source>
        <translation>Komma</translation>
    </message>
    <message>
        <source>semicolon</source>
        <translation>Semikolon</translation>
    </message>
    <message>
        <source>tab</source>
        <translation>Tabulator</translation>
    </message>
    <message>
        <source>blank</source>
        <translation>Leerzeichen</translation>
    </message>
</context>
<context>
    <name>FigureWords</name>
    <message>
        <source>%1 from %2 to %3</source>
        <translation>%1 von %2 bis %3</translation>
    </message>
    <message>
        <source>%1. Across: %2; up: %3.</source>
        <translation>%1. Waagrecht: %2; senkrecht: %3.</translation>
    </message>
    <message>
        <source>1 point.</source>
        <translation>1 Punkt.</translation>
    </message>
    <message>
        <source>%1 points.</source>
        <translation>%1 Punkte.</translation>
    </message>
    <message>
        <source>%1 bars.</source>
        <translation>%1 Balken.</translation>
    </message>
    <message>
        <source>Also: %1.</source>
        <translation>Außerdem: %1.</translation>
    </message>
    <message>
        <source>Record %1</source>
        <translation>Datensatz %1</translation>
    </message>
    <message>
        <source>Point %1</source>
        <translation>Punkt %1</translation>
    </message>
    <message>
        <source>%1 from %2 to %3
%4: %5</source>
        <translation>%1 von %2 bis %3
%4: %5</translation>
    </message>
    <message>
        <source>None of its values exist for this fit.</source>
        <translation>Für diese Anpassung gibt es keinen der Werte.</translation>
    </message>
    <message>
        <source>%1 confidence band</source>
        <comment>of a level in percent</comment>
        <translation>Konfidenzband zu %1</translation>
    </message>
    <message>
        <source>%1 by %2</source>
        <translation>%1 gegen %2</translation>
    </message>
    <message>
        <source>Observed</source>
        <translation>Beobachtet</translation>
    </message>
    <message>
        <source>Fit, other terms at their means</source>
        <translation>Anpassung, andere Terme im Mittel</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Anpassung</translation>
    </message>
    <message>
        <source>Added variable: %1</source>
        <translation>Partielle Regression: %1</translation>
    </message>
    <message>
        <source>%1, without what the others explain</source>
        <translation>%1, ohne was die anderen erklären</translation>
    </message>
    <message>
        <source>%1, likewise</source>
        <translation>%1, ebenso</translation>
    </message>
    <message>
        <source>Observations</source>
        <translation>Beobachtungen</translation>
    </message>
    <message>
        <source>Slope: the coefficient</source>
        <translation>Steigung: der Koeffizient</translation>
    </message>
    <message>
        <source>Normal quantiles</source>
        <translation>Normalquantile</translation>
    </message>
    <message>
        <source>Normal quantile</source>
        <translation>Normalquantil</translation>
    </message>
    <message>
        <source>Standardized residual</source>
        <translation>Standardisiertes Residuum</translation>
    </message>
    <message>
        <source>Line through the quartiles</source>
        <translation>Gerade durch die Quartile</translation>
    </message>
    <message>
        <source>Scale and location</source>
        <translation>Streuung und Lage</translation>
    </message>
    <message>
        <source>Fitted value</source>
        <translation>Angepasster Wert</translation>
    </message>
    <message>
        <source>√|standardized residual|</source>
        <translation>√|standardisiertes Residuum|</translation>
    </message>
    <message>
        <source>Residuals and leverage</source>
        <translation>Residuen und Hebelwerte</translation>
    </message>
    <message>
        <source>Leverage</source>
        <translation>Hebelwert</translation>
    </message>
    <message>
        <source>Cook&apos;s distance</source>
        <translation>Cook-Distanz</translation>
    </message>
    <message>
        <source>%1 by fitted value</source>
        <translation>%1 gegen angepasste Werte</translation>
    </message>
    <message>
        <source>Observed = fitted</source>
        <translation>Beobachtet = angepasst</translation>
    </message>
    <message>
        <source>Distribution of the residuals</source>
        <translation>Verteilung der Residuen</translation>
    </message>
    <message>
        <source>Residual</source>
        <translation>Residuum</translation>
    </message>
    <message>
        <source>Residuals</source>
        <translation>Residuen</translation>
    </message>
    <message>
        <source>Normal curve</source>
        <translation>Normalverteilung</translation>
    </message>
    <message>
        <source>Residuals by fitted value</source>
        <translation>Residuen gegen angepasste Werte</translation>
    </message>
    <message>
        <source>Residuals by record</source>
        <translation>Residuen der Reihe nach</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <source>Residuals by %1</source>
        <translation>Residuen gegen %1</translation>
    </message>
    <message>
        <source>%1 by number of terms</source>
        <translation>%1 nach Anzahl der Terme</translation>
    </message>
    <message>
        <source>Number of terms</source>
        <translation>Anzahl der Terme</translation>
    </message>
    <message>
        <source>Best of each size</source>
        <translation>Bestes jeder Größe</translation>
    </message>
    <message>
        <source>Models</source>
        <translation>Modelle</translation>
    </message>
    <message>
        <source>There are no models to show.</source>
        <translation>Es gibt keine Modelle zu zeigen.</translation>
    </message>
</context>
<context>
    <name>Leaveout</name>
    <message>
        <source>There is no record %1 any more.</source>
        <translation>Den Datensatz %1 gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>Records of a query are left out in its statement.</source>
        <translation>Datensätze einer Abfrage werden in ihrer Anweisung weggelassen.</translation>
    </message>
    <message>
        <source>Record %1 is not the only one with its values: a filter cannot leave it out alone.</source>
        <translation>Datensatz %1 ist nicht der einzige mit seinen Werten: Ein Filter kann ihn nicht allein weglassen.</translation>
    </message>
    <message>
        <source>Leave records out</source>
        <translation>Datensätze weglassen</translation>
    </message>
    <message>
        <source>Looking for what tells the records…</source>
        <translation>Woran die Datensätze zu erkennen sind, wird gesucht…</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Speak this language: de or en. Otherwise the system&apos;s.</source>
        <translation>Diese Sprache sprechen: de oder en. Sonst die des Systems.</translation>
    </message>
    <message>
        <source>code</source>
        <translation>Kürzel</translation>
    </message>
    <message>
        <source>CSV files, SQLite databases or forms to open, or the address of a server.</source>
        <translation>CSV-Dateien, SQLite-Datenbanken oder Formulare, die zu öffnen sind, oder die Adresse eines Servers.</translation>
    </message>
    <message>
        <source>[files…]</source>
        <translation>[Dateien…]</translation>
    </message>
    <message>
        <source>A workbench for people with a table and a question: linear regression on CSV files and databases.</source>
        <translation>Eine Werkbank für Leute mit einer Tabelle und einer Frage: lineare Regression an CSV-Dateien und Datenbanken.</translation>
    </message>
    <message>
        <source>There is no language &quot;%1&quot; here: %2.</source>
        <translation>Die Sprache „%1“ gibt es hier nicht: %2.</translation>
    </message>
    <message>
        <source>There is no display here that a window could be shown on. The program nuvostat does the same from the command line.</source>
        <translation>Hier gibt es keinen Bildschirm, auf dem ein Fenster gezeigt werden könnte. Das Programm nuvostat tut dasselbe von der Befehlszeile aus.</translation>
    </message>
</context>
<context>
    <name>ModelState</name>
    <message>
        <source>%1 on %2</source>
        <comment>response, terms</comment>
        <translation>%1 auf %2</translation>
    </message>
</context>
<context>
    <name>ModelWords</name>
    <message>
        <source>&quot;%1&quot; is not a number.</source>
        <translation>„%1“ ist keine Zahl.</translation>
    </message>
    <message>
        <source>It cannot be divided by 0.</source>
        <translation>Durch 0 lässt sich nicht teilen.</translation>
    </message>
    <message>
        <source>The exponent has to be a whole number of at least 1.</source>
        <translation>Der Exponent muss eine ganze Zahl ab 1 sein.</translation>
    </message>
    <message>
        <source>There is no field &quot;%1&quot;.</source>
        <translation>Es gibt kein Feld „%1“.</translation>
    </message>
    <message>
        <source>The field &quot;%1&quot; holds no number (%2).</source>
        <translation>Das Feld „%1“ enthält keine Zahl (%2).</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no transformation that is known here.</source>
        <translation>„%1“ ist keine Transformation, die hier bekannt ist.</translation>
    </message>
    <message>
        <source>No field is chosen.</source>
        <translation>Es ist kein Feld gewählt.</translation>
    </message>
    <message>
        <source>No second field is chosen.</source>
        <translation>Es ist kein zweites Feld gewählt.</translation>
    </message>
    <message>
        <source>This is the response itself.</source>
        <translation>Das ist die Zielgröße selbst.</translation>
    </message>
    <message>
        <source>This is the same term as %1.</source>
        <translation>Das ist derselbe Term wie %1.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>money</source>
        <translation>Geldbetrag</translation>
    </message>
    <message>
        <source>whole number</source>
        <translation>ganze Zahl</translation>
    </message>
    <message>
        <source>bits</source>
        <translation>Bits</translation>
    </message>
    <message>
        <source>yes or no</source>
        <translation>ja oder nein</translation>
    </message>
    <message>
        <source>date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>time</source>
        <translation>Uhrzeit</translation>
    </message>
    <message>
        <source>date and time</source>
        <translation>Datum und Uhrzeit</translation>
    </message>
    <message>
        <source>binary</source>
        <translation>Binärdaten</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a number</source>
        <translation>„%1“ ist keine Zahl</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a number: digits are written without groups</source>
        <translation>„%1“ ist keine Zahl: Ziffern werden ohne Gruppen geschrieben</translation>
    </message>
</context>
<context>
    <name>ModelsWords</name>
    <message>
        <source>%1 where %2</source>
        <translation>%1 mit %2</translation>
    </message>
    <message>
        <source>every record of %1</source>
        <translation>alle Datensätze von %1</translation>
    </message>
    <message>
        <source>every record of %1, added up by the server</source>
        <translation>alle Datensätze von %1, vom Server summiert</translation>
    </message>
    <message>
        <source>Database: %1, %2</source>
        <translation>Datenbank: %1, %2</translation>
    </message>
    <message>
        <source>Records: %1, %2</source>
        <translation>Datensätze: %1, %2</translation>
    </message>
    <message>
        <source>Response: %1, %2</source>
        <translation>Zielgröße: %1, %2</translation>
    </message>
    <message>
        <source>Only in the first: %1</source>
        <translation>Nur im ersten: %1</translation>
    </message>
    <message>
        <source>Only in the second: %1</source>
        <translation>Nur im zweiten: %1</translation>
    </message>
    <message>
        <source>The same terms in another order</source>
        <translation>Dieselben Terme in anderer Reihenfolge</translation>
    </message>
</context>
<context>
    <name>Openfile</name>
    <message>
        <source>The form &quot;%1&quot; has no regression component.</source>
        <translation>Das Formular „%1“ hat keine Regressionskomponente.</translation>
    </message>
    <message>
        <source>Open %1</source>
        <translation>%1 öffnen</translation>
    </message>
    <message>
        <source>Reading the file…</source>
        <translation>Die Datei wird gelesen…</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Cannot read &quot;%1&quot;: %2.</source>
        <translation>„%1“ lässt sich nicht lesen: %2.</translation>
    </message>
    <message>
        <source>Cannot copy &quot;%1&quot;: %2.</source>
        <translation>„%1“ lässt sich nicht kopieren: %2.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a folder; open a file in it.</source>
        <translation>„%1“ ist ein Ordner; öffnen Sie eine Datei darin.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a device or a pipe, no file.</source>
        <translation>„%1“ ist ein Gerät oder eine Pipe, keine Datei.</translation>
    </message>
</context>
<context>
    <name>PageWords</name>
    <message>
        <source>No result.</source>
        <translation>Kein Ergebnis.</translation>
    </message>
    <message>
        <source>Covariances of the coefficients</source>
        <translation>Kovarianzen der Koeffizienten</translation>
    </message>
    <message>
        <source>Correlations of the coefficients</source>
        <translation>Korrelationen der Koeffizienten</translation>
    </message>
    <message>
        <source>(constant)</source>
        <translation>(Konstante)</translation>
    </message>
    <message>
        <source>Linear regression of %1 on a constant alone</source>
        <translation>Lineare Regression von %1 auf eine Konstante allein</translation>
    </message>
    <message>
        <source>Linear regression of %1 on %2</source>
        <translation>Lineare Regression von %1 auf %2</translation>
    </message>
    <message>
        <source>Query %1, %2. %3</source>
        <comment>source, time, what became of the records</comment>
        <translation>Abfrage %1, %2. %3</translation>
    </message>
    <message>
        <source>Table %1, %2. %3</source>
        <comment>source, time, what became of the records</comment>
        <translation>Tabelle %1, %2. %3</translation>
    </message>
    <message>
        <source>%1 is null in %2 and impossible in %3</source>
        <translation>%1 ist in %2 leer und in %3 unmöglich</translation>
    </message>
    <message>
        <source>%1 is null in %2</source>
        <translation>%1 ist in %2 leer</translation>
    </message>
    <message>
        <source>%1 is impossible in %2</source>
        <translation>%1 ist in %2 unmöglich</translation>
    </message>
    <message>
        <source>%1 of %2 records were used.</source>
        <translation>%1 von %2 Datensätzen wurden verwendet.</translation>
    </message>
    <message>
        <source>%1 of %2 records were used, %3 could not be.</source>
        <translation>%1 von %2 Datensätzen wurden verwendet, %3 nicht.</translation>
    </message>
    <message>
        <source>%1 of %2 records were used, %3 could not be: %4.</source>
        <translation>%1 von %2 Datensätzen wurden verwendet, %3 nicht: %4.</translation>
    </message>
    <message>
        <source>These are the first 2,500 records; --records all uses every one (in a form, AllRecords).</source>
        <translation>Das sind die ersten 2.500 Datensätze; alle verwendet Modell &gt; Alle Datensätze (--records all, in einem Formular AllRecords).</translation>
    </message>
    <message>
        <source>Diagnostics, robust errors and what is told of single observations are those of a sample of %1 records, drawn evenly over all of them.</source>
        <translation>Diagnosen, robuste Fehler und was zu einzelnen Beobachtungen steht, beruhen auf einer Stichprobe von %1 Datensätzen, gleichmäßig aus allen gezogen.</translation>
    </message>
    <message>
        <source>Diagnostics, robust errors and what is told of single observations are those of a sample of %1 records, the first ones.</source>
        <translation>Diagnosen, robuste Fehler und was zu einzelnen Beobachtungen steht, beruhen auf einer Stichprobe von %1 Datensätzen, den ersten.</translation>
    </message>
    <message>
        <source>The dataset has %1 records.</source>
        <translation>Insgesamt sind es %1 Datensätze.</translation>
    </message>
    <message>
        <source>Coefficients with %1 intervals</source>
        <translation>Koeffizienten mit Intervallen zu %1</translation>
    </message>
    <message>
        <source>Coefficients</source>
        <translation>Koeffizienten</translation>
    </message>
    <message>
        <source>Term</source>
        <translation>Term</translation>
    </message>
    <message>
        <source>Estimate</source>
        <translation>Schätzwert</translation>
    </message>
    <message>
        <source>Std. error</source>
        <translation>Standardfehler</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Bis</translation>
    </message>
    <message>
        <source>Analysis of variance</source>
        <translation>Varianzanalyse</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>df</source>
        <translation>FG</translation>
    </message>
    <message>
        <source>Sum of squares</source>
        <translation>Quadratsumme</translation>
    </message>
    <message>
        <source>Mean square</source>
        <translation>Mittleres Quadrat</translation>
    </message>
    <message>
        <source>Regression</source>
        <translation>Regression</translation>
    </message>
    <message>
        <source>Residual</source>
        <translation>Residuen</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Gesamt</translation>
    </message>
    <message>
        <source>adjusted R²</source>
        <translation>korrigiertes R²</translation>
    </message>
    <message>
        <source>Worth a warning</source>
        <translation>Zu beachten</translation>
    </message>
    <message>
        <source>Diagnostics</source>
        <translation>Diagnosen</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>Statistic</source>
        <translation>Prüfgröße</translation>
    </message>
    <message>
        <source>asks for</source>
        <translation>prüft auf</translation>
    </message>
    <message>
        <source>even scatter</source>
        <translation>gleichmäßige Streuung</translation>
    </message>
    <message>
        <source>normal residuals</source>
        <translation>normalverteilte Residuen</translation>
    </message>
    <message>
        <source>the right form</source>
        <translation>die richtige Form</translation>
    </message>
    <message>
        <source>predicted R²</source>
        <translation>Vorhersage-R²</translation>
    </message>
    <message>
        <source>What each term does</source>
        <translation>Was jeder Term beiträgt</translation>
    </message>
    <message>
        <source>Standardized</source>
        <translation>Standardisiert</translation>
    </message>
    <message>
        <source>Partial r</source>
        <translation>Partielles r</translation>
    </message>
    <message>
        <source>Semipartial r</source>
        <translation>Semipartielles r</translation>
    </message>
    <message>
        <source>SS added in order</source>
        <translation>QS der Reihe nach</translation>
    </message>
    <message>
        <source>SS added last</source>
        <translation>QS zuletzt</translation>
    </message>
    <message>
        <source>Tolerance</source>
        <translation>Toleranz</translation>
    </message>
    <message>
        <source>log likelihood</source>
        <translation>Log-Likelihood</translation>
    </message>
    <message>
        <source>Condition indices:</source>
        <translation>Konditionsindizes:</translation>
    </message>
    <message>
        <source>Robust standard errors (%1)</source>
        <translation>Robuste Standardfehler (%1)</translation>
    </message>
    <message>
        <source>Predictions of %1 with %2 intervals</source>
        <translation>Vorhersagen von %1 mit Intervallen zu %2</translation>
    </message>
    <message>
        <source>At</source>
        <translation>Bei</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Mean low</source>
        <translation>Mittel von</translation>
    </message>
    <message>
        <source>Mean high</source>
        <translation>Mittel bis</translation>
    </message>
    <message>
        <source>New low</source>
        <translation>Neu von</translation>
    </message>
    <message>
        <source>New high</source>
        <translation>Neu bis</translation>
    </message>
    <message>
        <source>Observations worth looking at</source>
        <translation>Auffällige Beobachtungen</translation>
    </message>
    <message>
        <source>None stands out.</source>
        <translation>Keine ist auffällig.</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <source>Fitted</source>
        <translation>Angepasst</translation>
    </message>
    <message>
        <source>Leverage</source>
        <translation>Hebelwert</translation>
    </message>
    <message>
        <source>Studentized</source>
        <translation>Studentisiert</translation>
    </message>
    <message>
        <source>stands out by</source>
        <translation>auffällig durch</translation>
    </message>
    <message>
        <source>The %1 with the largest Cook&apos;s distances of %2 that stand out.</source>
        <translation>Die %1 mit den größten Cook-Distanzen von %2 auffälligen.</translation>
    </message>
    <message>
        <source>Figures</source>
        <translation>Abbildungen</translation>
    </message>
    <message>
        <source>en</source>
        <comment>code of the page&apos;s language</comment>
        <translation>de</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <comment>of a list, all but the last and the last</comment>
        <translation>%1 und %2</translation>
    </message>
    <message>
        <source>Infinite or no number in some of the records used, so that no figure can be had: %1.</source>
        <translation>In einigen der verwendeten Datensätze unendlich oder keine Zahl, sodass es keine Kennzahl gibt: %1.</translation>
    </message>
    <message>
        <source>Linear combinations of the terms before them: %1. They add nothing; the other figures are those of the fit without them.</source>
        <translation>Linearkombinationen der Terme davor: %1. Sie tragen nichts bei; die übrigen Kennzahlen sind die der Anpassung ohne sie.</translation>
    </message>
    <message>
        <source>Linear combinations of the terms before them: %1. The fitted values hold, what belongs to the terms combined means nothing: leave some of them out.</source>
        <translation>Linearkombinationen der Terme davor: %1. Die angepassten Werte gelten, die Kennzahlen der beteiligten Terme bedeuten nichts: Lassen Sie einige davon weg.</translation>
    </message>
    <message>
        <source>%1 observations for %2 coefficients leave no degrees of freedom: the fit goes through every observation and nothing tells its error.</source>
        <translation>%1 Beobachtungen für %2 Koeffizienten lassen keine Freiheitsgrade: Die Anpassung geht durch jede Beobachtung, und nichts verrät ihren Fehler.</translation>
    </message>
    <message>
        <source>The fit is exact: the response is a combination of the terms, and nothing is left to tell errors from.</source>
        <translation>Die Anpassung ist genau: Die Zielgröße ist eine Kombination der Terme, und für Fehler bleibt nichts übrig.</translation>
    </message>
    <message>
        <source>All terms together are not distinguished from none at 5 % (F test, p = %1).</source>
        <translation>Alle Terme zusammen unterscheiden sich zum Niveau 5 % nicht von gar keinem (F-Test, p = %1).</translation>
    </message>
    <message>
        <source>An odd power is that of the absolute value with a minus sign: %1. Of values above 0 its coefficient has the opposite sign of what it would have otherwise.</source>
        <translation>Eine ungerade Potenz ist die des Betrags mit Minuszeichen: %1. Bei Werten über 0 hat ihr Koeffizient das umgekehrte Vorzeichen dessen, das er sonst hätte.</translation>
    </message>
    <message>
        <source>Variance inflation above 10: %1. The other terms say nearly what this one says; their coefficients are uncertain and can turn when one of them is left out.</source>
        <translation>Varianzinflation über 10: %1. Die anderen Terme sagen fast dasselbe wie dieser; ihre Koeffizienten sind unsicher und können sich umkehren, wenn einer davon wegfällt.</translation>
    </message>
    <message>
        <source>Variance inflation above 10: %1. The other terms say nearly what each of these says; their coefficients are uncertain and can turn when one of them is left out.</source>
        <translation>Varianzinflation über 10: %1. Die anderen Terme sagen fast dasselbe wie jeder von diesen; ihre Koeffizienten sind unsicher und können sich umkehren, wenn einer davon wegfällt.</translation>
    </message>
    <message>
        <source>record %1</source>
        <translation>Datensatz %1</translation>
    </message>
    <message>
        <source>%1 more</source>
        <translation>%1 weitere</translation>
    </message>
    <message>
        <source>A leverage of 1: %1. The fit goes through it whatever the response is there; PRESS, predicted R², HC2 and HC3 do not exist.</source>
        <translation>Ein Hebelwert von 1: %1. Die Anpassung geht hindurch, gleich was die Zielgröße dort ist; PRESS, Vorhersage-R², HC2 und HC3 gibt es nicht.</translation>
    </message>
    <message>
        <source>A leverage of 1: %1. The fit goes through them whatever the response is there; PRESS, predicted R², HC2 and HC3 do not exist.</source>
        <translation>Ein Hebelwert von 1: %1. Die Anpassung geht durch sie alle, gleich was die Zielgröße dort ist; PRESS, Vorhersage-R², HC2 und HC3 gibt es nicht.</translation>
    </message>
    <message>
        <source>record %1 (leverage %2, studentized residual %3)</source>
        <translation>Datensatz %1 (Hebelwert %2, studentisiertes Residuum %3)</translation>
    </message>
    <message>
        <source>Far from the others in the terms and badly fitted: %1. The coefficients depend on it.</source>
        <translation>In den Termen fern von den anderen und schlecht angepasst: %1. Die Koeffizienten hängen davon ab.</translation>
    </message>
    <message>
        <source>Far from the others in the terms and badly fitted: %1. The coefficients depend on them.</source>
        <translation>In den Termen fern von den anderen und schlecht angepasst: %1. Die Koeffizienten hängen von ihnen ab.</translation>
    </message>
    <message>
        <source>%1 fails at 5 % (p = %2): the residuals do not scatter evenly, so that standard errors mislead; robust ones allow for that.</source>
        <translation>%1 schlägt zum Niveau 5 % an (p = %2): Die Residuen streuen ungleichmäßig, sodass die Standardfehler täuschen; robuste berücksichtigen das.</translation>
    </message>
    <message>
        <source>%1 fails at 5 % (p = %2): the residuals are not normally distributed; p-values and intervals of a small sample mislead.</source>
        <translation>%1 schlägt zum Niveau 5 % an (p = %2): Die Residuen sind nicht normalverteilt; p-Werte und Intervalle einer kleinen Stichprobe täuschen.</translation>
    </message>
    <message>
        <source>%1 fails at 5 % (p = %2): something curved is left; a square, a product or a logarithm may be missing.</source>
        <translation>%1 schlägt zum Niveau 5 % an (p = %2): Etwas Gekrümmtes ist übrig; ein Quadrat, ein Produkt oder ein Logarithmus könnte fehlen.</translation>
    </message>
    <message>
        <source>leverage</source>
        <translation>Hebelwert</translation>
    </message>
    <message>
        <source>residual</source>
        <translation>Residuum</translation>
    </message>
</context>
<context>
    <name>Predictions</name>
    <message>
        <source>Cannot write &quot;%1&quot;: %2.</source>
        <translation>„%1“ lässt sich nicht schreiben: %2.</translation>
    </message>
    <message>
        <source>The predictions were stopped; no file was written.</source>
        <translation>Die Vorhersagen wurden angehalten; es wurde keine Datei geschrieben.</translation>
    </message>
    <message>
        <source>%1 is null in %2</source>
        <translation>%1 ist in %2 leer</translation>
    </message>
    <message>
        <source>%1 holds no number in %2</source>
        <translation>%1 enthält in %2 keine Zahl</translation>
    </message>
    <message>
        <source>a term cannot be worked out in %1</source>
        <translation>ein Term lässt sich in %1 nicht berechnen</translation>
    </message>
    <message>
        <source>Predictions</source>
        <translation>Vorhersagen</translation>
    </message>
    <message>
        <source>CSV file (*.csv)</source>
        <translation>CSV-Datei (*.csv)</translation>
    </message>
    <message>
        <source>Writing predictions…</source>
        <translation>Vorhersagen werden geschrieben…</translation>
    </message>
    <message>
        <source>%1 records</source>
        <translation>%1 Datensätze</translation>
    </message>
    <message>
        <source>Predict a table</source>
        <translation>Tabelle vorhersagen</translation>
    </message>
    <message>
        <source>Table with the fields of the model:</source>
        <translation>Tabelle mit den Feldern des Modells:</translation>
    </message>
    <message>
        <source>File with the fields of the model</source>
        <translation>Datei mit den Feldern des Modells</translation>
    </message>
    <message>
        <source>CSV file (*.csv *.tsv *.txt)</source>
        <translation>CSV-Datei (*.csv *.tsv *.txt)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>The fields that the model is made of are not all there: %1. There are: %2.</source>
        <translation>Die Felder, aus denen das Modell besteht, sind nicht alle da: %1. Es gibt: %2.</translation>
    </message>
    <message numerus="yes">
        <source>Predictions for %1 records in %2.</source>
        <translation>
            <numerusform>Vorhersagen für %1 Datensatz in %2.</numerusform>
            <numerusform>Vorhersagen für %1 Datensätze in %2.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Predictions for %1 records in %2; %3 of them have no value: %4.</source>
        <translation>
            <numerusform>Vorhersagen für %1 Datensätze in %2; %3 davon hat keinen Wert: %4.</numerusform>
            <numerusform>Vorhersagen für %1 Datensätze in %2; %3 davon haben keinen Wert: %4.</numerusform>
        </translation>
    </message>
    <message>
        <source>Opening the table…</source>
        <translation>Die Tabelle wird geöffnet…</translation>
    </message>
    <message numerus="yes">
        <source>%1 records in %2, and none of them has a value: %3.</source>
        <translation>
            <numerusform>%1 Datensatz in %2, ohne Wert: %3.</numerusform>
            <numerusform>%1 Datensätze in %2, und keiner davon hat einen Wert: %3.</numerusform>
        </translation>
    </message>
    <message>
        <source>Every record is being read: predictions are made when that is done.</source>
        <translation>Jeder Datensatz wird gerade gelesen: Vorhersagen gibt es, wenn das getan ist.</translation>
    </message>
</context>
<context>
    <name>Sitting</name>
    <message>
        <source>There is no place to keep the sitting in: &quot;%1&quot; cannot be written, and there is no room for temporary files: %2.</source>
        <translation>Die Sitzung kann nirgends aufbewahrt werden: „%1“ ist nicht beschreibbar, und für temporäre Dateien ist kein Platz: %2.</translation>
    </message>
    <message>
        <source>This sitting will not come back: &quot;%1&quot; cannot be written. Save what you want to keep.</source>
        <translation>Diese Sitzung kommt nicht wieder: „%1“ ist nicht beschreibbar. Speichern Sie, was Sie behalten wollen.</translation>
    </message>
</context>
<context>
    <name>TDiagnosticsPage</name>
    <message>
        <source>Diagnostics</source>
        <translation>Diagnosen</translation>
    </message>
    <message>
        <source>Tests of the fit, what each term does, and the observations worth looking at</source>
        <translation>Tests der Anpassung, was jeder Term beiträgt, und die auffälligen Beobachtungen</translation>
    </message>
    <message>
        <source>There is no fit to look into.</source>
        <translation>Es gibt noch keine Anpassung.</translation>
    </message>
</context>
<context>
    <name>TFigureView</name>
    <message>
        <source>Save Figure</source>
        <translation>Abbildung speichern</translation>
    </message>
    <message>
        <source>PNG picture (*.png)</source>
        <translation>PNG-Bild (*.png)</translation>
    </message>
    <message>
        <source>SVG picture (*.svg)</source>
        <translation>SVG-Bild (*.svg)</translation>
    </message>
    <message>
        <source>PDF document (*.pdf)</source>
        <translation>PDF-Dokument (*.pdf)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Save As…</source>
        <translation>&amp;Speichern unter…</translation>
    </message>
    <message>
        <source>Show &amp;All</source>
        <translation>&amp;Alles zeigen</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Verk&amp;leinern</translation>
    </message>
</context>
<context>
    <name>TFiguresPage</name>
    <message>
        <source>Save A&amp;ll</source>
        <translation>A&amp;lle speichern</translation>
    </message>
    <message>
        <source>Figure</source>
        <translation>Abbildung</translation>
    </message>
    <message>
        <source>Fi&amp;gure:</source>
        <translation>Abb&amp;ildung:</translation>
    </message>
    <message>
        <source>Previous figure (Page Up)</source>
        <translation>Vorige Abbildung (Bild auf)</translation>
    </message>
    <message>
        <source>Next figure (Page Down)</source>
        <translation>Nächste Abbildung (Bild ab)</translation>
    </message>
    <message>
        <source>Save all figures into a folder</source>
        <translation>Alle Abbildungen in einem Ordner speichern</translation>
    </message>
    <message>
        <source>As &amp;PNG…</source>
        <translation>Als &amp;PNG…</translation>
    </message>
    <message>
        <source>As &amp;SVG…</source>
        <translation>Als &amp;SVG…</translation>
    </message>
    <message>
        <source>As P&amp;DF…</source>
        <translation>Als P&amp;DF…</translation>
    </message>
    <message>
        <source>There are no figures.</source>
        <translation>Es gibt keine Abbildungen.</translation>
    </message>
    <message>
        <source>Folder for the Figures</source>
        <translation>Ordner für die Abbildungen</translation>
    </message>
    <message numerus="yes">
        <source>%n of the pictures are in this folder already. Replace them?</source>
        <translation>
            <numerusform>%n der Bilder ist schon in diesem Ordner. Ersetzen?</numerusform>
            <numerusform>%n der Bilder sind schon in diesem Ordner. Ersetzen?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TModelDialog</name>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Takes the model (Ctrl+Enter)</source>
        <translation>Übernimmt das Modell (Strg+Eingabe)</translation>
    </message>
    <message>
        <source>Leaves the model as it was (Escape)</source>
        <translation>Lässt das Modell, wie es war (Esc)</translation>
    </message>
    <message>
        <source>%1 is not finished.</source>
        <translation>%1 ist nicht fertig.</translation>
    </message>
    <message>
        <source>%1 are not finished.</source>
        <translation>%1 sind nicht fertig.</translation>
    </message>
    <message>
        <source>%1 Model</source>
        <translation>Modell von %1</translation>
    </message>
</context>
<context>
    <name>TModelEditor</name>
    <message>
        <source>Make it &amp;Y</source>
        <translation>Als &amp;Y</translation>
    </message>
    <message>
        <source>The marked field becomes the response (Y in the list)</source>
        <translation>Das markierte Feld wird die Zielgröße (Y in der Liste)</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>Hin&amp;zufügen</translation>
    </message>
    <message>
        <source>The marked fields become control variables, in the next free places (Enter or Insert in the list, or a double click)</source>
        <translation>Die markierten Felder werden Einflussgrößen, auf den nächsten freien Plätzen (Eingabe oder Einfg in der Liste, oder ein Doppelklick)</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Empties the place (Delete)</source>
        <translation>Leert den Platz (Entf)</translation>
    </message>
    <message>
        <source>Move &amp;up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Exchanges the control variable with the one above (Alt+Up)</source>
        <translation>Tauscht die Einflussgröße mit der darüber (Alt+Auf)</translation>
    </message>
    <message>
        <source>Move &amp;down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>Exchanges the control variable with the one below (Alt+Down)</source>
        <translation>Tauscht die Einflussgröße mit der darunter (Alt+Ab)</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Transformation</source>
        <translation>Transformation</translation>
    </message>
    <message>
        <source>With</source>
        <translation>Mit</translation>
    </message>
    <message>
        <source>Term in the report</source>
        <translation>Term im Bericht</translation>
    </message>
    <message>
        <source>In the list, Enter, Insert or a double click adds a field and Y makes it the response. At a place, Delete removes, Alt+Up and Alt+Down move, F2 types a name. Everything can be dragged.</source>
        <translation>In der Liste fügt Eingabe, Einfg oder ein Doppelklick ein Feld hinzu, und Y macht es zur Zielgröße. Auf einem Platz entfernt Entf, Alt+Auf und Alt+Ab verschieben, F2 tippt einen Namen. Alles lässt sich ziehen.</translation>
    </message>
    <message>
        <source>%1 holds no number (%2): it cannot be a variable of a regression.</source>
        <translation>%1 enthält keine Zahl (%2): Es kann keine Variable einer Regression sein.</translation>
    </message>
    <message>
        <source>All ten places are taken: %1 found none.</source>
        <translation>Alle zehn Plätze sind belegt: Für %1 war keiner frei.</translation>
    </message>
</context>
<context>
    <name>TModelsPage</name>
    <message>
        <source>SSE</source>
        <translation>SSE</translation>
    </message>
    <message>
        <source>Sum of squared residuals</source>
        <translation>Summe der quadrierten Residuen</translation>
    </message>
    <message>
        <source>Coefficient of determination</source>
        <translation>Bestimmtheitsmaß</translation>
    </message>
    <message>
        <source>Adjusted R²</source>
        <translation>Korrigiertes R²</translation>
    </message>
    <message>
        <source>Adjusted coefficient of determination; the largest is the best</source>
        <translation>Korrigiertes Bestimmtheitsmaß; das größte ist das beste</translation>
    </message>
    <message>
        <source>Residual mean square</source>
        <translation>Mittleres Quadrat der Residuen</translation>
    </message>
    <message>
        <source>Overall F statistic; the largest is the best</source>
        <translation>F-Wert des ganzen Modells; der größte ist der beste</translation>
    </message>
    <message>
        <source>Mallows&apos; Cp; the smallest is the best</source>
        <translation>Cp nach Mallows; das kleinste ist das beste</translation>
    </message>
    <message>
        <source>Akaike&apos;s information criterion; the smallest is the best</source>
        <translation>Informationskriterium nach Akaike; das kleinste ist das beste</translation>
    </message>
    <message>
        <source>Schwarz&apos;s information criterion; the smallest is the best</source>
        <translation>Informationskriterium nach Schwarz; das kleinste ist das beste</translation>
    </message>
    <message>
        <source>Squared residuals of each observation from the fit without it; the smallest is the best</source>
        <translation>Quadrierte Residuen jeder Beobachtung aus der Anpassung ohne sie; die kleinste Summe ist die beste</translation>
    </message>
    <message>
        <source>best by %1</source>
        <comment>a criterion</comment>
        <translation>bestes nach %1</translation>
    </message>
    <message>
        <source>in use</source>
        <translation>in Gebrauch</translation>
    </message>
    <message>
        <source>dependent</source>
        <translation>abhängig</translation>
    </message>
    <message>
        <source>Use th&amp;is model</source>
        <translation>D&amp;ieses Modell verwenden</translation>
    </message>
    <message>
        <source>Models</source>
        <translation>Modelle</translation>
    </message>
    <message>
        <source>The best models of each size with their figures; a click on a heading sorts</source>
        <translation>Die besten Modelle jeder Größe mit ihren Kennzahlen; ein Klick auf eine Überschrift sortiert</translation>
    </message>
    <message>
        <source>Put the selected model on the component, loaded and fitted (Enter)</source>
        <translation>Das ausgewählte Modell einsetzen, geladen und angepasst (Eingabe)</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Number in the list</source>
        <translation>Nummer in der Liste</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Number of terms</source>
        <translation>Anzahl der Terme</translation>
    </message>
    <message>
        <source>Terms</source>
        <translation>Terme</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Anmerkung</translation>
    </message>
    <message>
        <source>What is to be said of the model</source>
        <translation>Was zum Modell zu sagen ist</translation>
    </message>
    <message>
        <source>%1 (the criterion of the choice)</source>
        <translation>%1 (das Kriterium der Wahl)</translation>
    </message>
</context>
<context>
    <name>TObservationsPage</name>
    <message>
        <source>Record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <source>Place of the record in the dataset</source>
        <translation>Stelle des Datensatzes in der Tabelle</translation>
    </message>
    <message>
        <source>Response</source>
        <translation>Zielgröße</translation>
    </message>
    <message>
        <source>Term %1</source>
        <translation>Term %1</translation>
    </message>
    <message>
        <source>Fitted</source>
        <translation>Angepasst</translation>
    </message>
    <message>
        <source>Fitted value</source>
        <translation>Angepasster Wert</translation>
    </message>
    <message>
        <source>Residual</source>
        <translation>Residuum</translation>
    </message>
    <message>
        <source>Response less fitted value</source>
        <translation>Zielgröße minus angepasster Wert</translation>
    </message>
    <message>
        <source>Leverage</source>
        <translation>Hebelwert</translation>
    </message>
    <message>
        <source>Leverage; stands out above 2 p/n</source>
        <translation>Hebelwert; auffällig über 2 p/n</translation>
    </message>
    <message>
        <source>Standardized</source>
        <translation>Standardisiert</translation>
    </message>
    <message>
        <source>Standardized residual</source>
        <translation>Standardisiertes Residuum</translation>
    </message>
    <message>
        <source>Studentized</source>
        <translation>Studentisiert</translation>
    </message>
    <message>
        <source>Studentized residual; stands out beyond 2 either way</source>
        <translation>Studentisiertes Residuum; auffällig über 2 und unter -2</translation>
    </message>
    <message>
        <source>Cook&apos;s distance; stands out above 4/n</source>
        <translation>Cook-Distanz; auffällig über 4/n</translation>
    </message>
    <message>
        <source>Change of the fitted value without the observation; stands out beyond 2 sqrt(p/n)</source>
        <translation>Änderung des angepassten Werts ohne die Beobachtung; auffällig jenseits von 2 sqrt(p/n)</translation>
    </message>
    <message>
        <source>Stands out by</source>
        <translation>Auffällig durch</translation>
    </message>
    <message>
        <source>What makes the observation worth looking at</source>
        <translation>Was die Beobachtung auffällig macht</translation>
    </message>
    <message>
        <source>Record %1</source>
        <translation>Datensatz %1</translation>
    </message>
    <message>
        <source>does not exist</source>
        <translation>gibt es nicht</translation>
    </message>
    <message>
        <source>Stands out by: %1</source>
        <translation>Auffällig durch: %1</translation>
    </message>
    <message>
        <source>&amp;Only what stands out</source>
        <translation>&amp;Nur Auffällige</translation>
    </message>
    <message>
        <source>Save &amp;table…</source>
        <translation>&amp;Tabelle speichern…</translation>
    </message>
    <message>
        <source>Observations</source>
        <translation>Beobachtungen</translation>
    </message>
    <message>
        <source>Every observation with its fitted value, residual and influence on the fit</source>
        <translation>Jede Beobachtung mit angepasstem Wert, Residuum und Einfluss auf die Anpassung</translation>
    </message>
    <message>
        <source>Save all observations with all digits, as CSV</source>
        <translation>Alle Beobachtungen mit allen Ziffern speichern, als CSV</translation>
    </message>
    <message>
        <source>There is no fit with observations.</source>
        <translation>Es gibt keine Anpassung mit Beobachtungen.</translation>
    </message>
    <message>
        <source>%1 observations</source>
        <translation>%1 Beobachtungen</translation>
    </message>
    <message>
        <source>%1 of %2 observations stands out</source>
        <translation>%1 von %2 Beobachtungen ist auffällig</translation>
    </message>
    <message>
        <source>%1 of %2 observations stand out</source>
        <translation>%1 von %2 Beobachtungen sind auffällig</translation>
    </message>
    <message>
        <source>Save observations</source>
        <translation>Beobachtungen speichern</translation>
    </message>
    <message>
        <source>Comma separated values (*.csv)</source>
        <translation>Durch Kommas getrennte Werte (*.csv)</translation>
    </message>
</context>
<context>
    <name>TSqlDialog</name>
    <message>
        <source>Takes the statement (Ctrl+Enter)</source>
        <translation>Die Anweisung übernehmen (Strg+Eingabe)</translation>
    </message>
    <message>
        <source>Leaves the statement as it was (Escape)</source>
        <translation>Die Anweisung lassen, wie sie war (Esc)</translation>
    </message>
</context>
<context>
    <name>TSqlEditor</name>
    <message>
        <source>&amp;Try</source>
        <translation>&amp;Probieren</translation>
    </message>
    <message>
        <source>Shows the first ten rows (F5)</source>
        <translation>Die ersten zehn Zeilen zeigen (F5)</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Anhalten</translation>
    </message>
    <message>
        <source>Ends the trial (Escape)</source>
        <translation>Den Versuch beenden (Esc)</translation>
    </message>
    <message>
        <source>SQL statement</source>
        <translation>SQL-Anweisung</translation>
    </message>
    <message>
        <source>The statement that is read: SELECT, WITH, VALUES or SHOW</source>
        <translation>Die Anweisung, die gelesen wird: SELECT, WITH, VALUES oder SHOW</translation>
    </message>
    <message>
        <source>First rows</source>
        <translation>Erste Zeilen</translation>
    </message>
    <message>
        <source>Stopping…</source>
        <translation>Wird angehalten…</translation>
    </message>
    <message>
        <source>Reading…</source>
        <translation>Wird gelesen…</translation>
    </message>
    <message>
        <source>F5 tries the statement and shows its first rows.</source>
        <translation>F5 probiert die Anweisung aus und zeigt ihre ersten Zeilen.</translation>
    </message>
    <message>
        <source>Stopped.</source>
        <translation>Angehalten.</translation>
    </message>
    <message>
        <source>%1, %2 of them with numbers; the first %3.</source>
        <translation>%1, davon %2 mit Zahlen; die ersten %3.</translation>
    </message>
    <message>
        <source>%1, %2 of them with numbers; %3.</source>
        <translation>%1, davon %2 mit Zahlen; %3.</translation>
    </message>
    <message>
        <source>1 column</source>
        <translation>1 Spalte</translation>
    </message>
    <message>
        <source>%1 columns</source>
        <translation>%1 Spalten</translation>
    </message>
    <message>
        <source>1 row</source>
        <translation>1 Zeile</translation>
    </message>
    <message>
        <source>%1 rows</source>
        <translation>%1 Zeilen</translation>
    </message>
    <message>
        <source>Without a value, and taken as null here: %1.</source>
        <translation>Ohne Wert und hier als leer genommen: %1.</translation>
    </message>
    <message>
        <source>(Line %1, letter %2.)</source>
        <translation>(Zeile %1, Zeichen %2.)</translation>
    </message>
</context>
<context>
    <name>TStepsPage</name>
    <message>
        <source>add</source>
        <translation>aufnehmen:</translation>
    </message>
    <message>
        <source>remove</source>
        <translation>ausschließen:</translation>
    </message>
    <message>
        <source>end</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>depends on the model</source>
        <translation>hängt vom Modell ab</translation>
    </message>
    <message>
        <source>could enter</source>
        <translation>könnte aufgenommen werden</translation>
    </message>
    <message>
        <source>could leave</source>
        <translation>könnte ausgeschlossen werden</translation>
    </message>
    <message>
        <source>enters</source>
        <translation>wird aufgenommen</translation>
    </message>
    <message>
        <source>leaves</source>
        <translation>wird ausgeschlossen</translation>
    </message>
    <message>
        <source>stays out</source>
        <translation>bleibt draußen</translation>
    </message>
    <message>
        <source>stays in</source>
        <translation>bleibt im Modell</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>the constant alone</source>
        <translation>die Konstante allein</translation>
    </message>
    <message>
        <source>in use</source>
        <translation>in Gebrauch</translation>
    </message>
    <message>
        <source>Use th&amp;is model</source>
        <translation>D&amp;ieses Modell verwenden</translation>
    </message>
    <message>
        <source>Steps</source>
        <translation>Schritte</translation>
    </message>
    <message>
        <source>The steps of the search, the end last</source>
        <translation>Die Schritte der Suche, das Ende zuletzt</translation>
    </message>
    <message>
        <source>Candidates</source>
        <translation>Kandidaten</translation>
    </message>
    <message>
        <source>Every candidate of the selected step with its F and p</source>
        <translation>Jeder Kandidat des ausgewählten Schritts mit F und p</translation>
    </message>
    <message>
        <source>Put the model after the selected step on the component, loaded and fitted (Enter)</source>
        <translation>Das Modell nach dem ausgewählten Schritt einsetzen, geladen und angepasst (Eingabe)</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Schritt</translation>
    </message>
    <message>
        <source>Number of the step</source>
        <translation>Nummer des Schritts</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>What is done</source>
        <translation>Was getan wird</translation>
    </message>
    <message>
        <source>Partial F of the variable</source>
        <translation>Partielles F der Variablen</translation>
    </message>
    <message>
        <source>Its upper tail</source>
        <translation>Wahrscheinlichkeit darüber</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Schwelle</translation>
    </message>
    <message>
        <source>The F that it was held against</source>
        <translation>Das F, mit dem verglichen wurde</translation>
    </message>
    <message>
        <source>SSE</source>
        <translation>SSE</translation>
    </message>
    <message>
        <source>Sum of squared residuals after the step</source>
        <translation>Summe der quadrierten Residuen nach dem Schritt</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Terms in the model after the step</source>
        <translation>Terme im Modell nach dem Schritt</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Anmerkung</translation>
    </message>
    <message>
        <source>Whether the component has this model</source>
        <translation>Ob dieses Modell in Gebrauch ist</translation>
    </message>
    <message>
        <source>Select a step to see its candidates.</source>
        <translation>Wählen Sie einen Schritt aus, um seine Kandidaten zu sehen.</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Number of the variable</source>
        <translation>Nummer der Variablen</translation>
    </message>
    <message>
        <source>Variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <source>Partial F</source>
        <translation>Partielles F</translation>
    </message>
    <message>
        <source>What becomes of it</source>
        <translation>Was daraus wird</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
</context>
<context>
    <name>TSummaryPage</name>
    <message>
        <source>Summary</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Coefficients, analysis of variance and warnings of the fit</source>
        <translation>Koeffizienten, Varianzanalyse und Warnungen der Anpassung</translation>
    </message>
</context>
<context>
    <name>nuvo::ChoicePage</name>
    <message>
        <source>&amp;best by</source>
        <translation>bestes na&amp;ch</translation>
    </message>
    <message>
        <source>of each si&amp;ze</source>
        <translation>&amp;je Größe</translation>
    </message>
    <message>
        <source>e&amp;nters below p =</source>
        <translation>Aufnahme: &amp;p &lt;</translation>
    </message>
    <message>
        <source>&amp;leaves above p =</source>
        <translation>Aussch&amp;luss: p &gt;</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Wählen</translation>
    </message>
    <message>
        <source>Method</source>
        <translation>Verfahren</translation>
    </message>
    <message>
        <source>All subsets</source>
        <translation>Alle Teilmengen</translation>
    </message>
    <message>
        <source>Stepwise</source>
        <translation>Schrittweise</translation>
    </message>
    <message>
        <source>Forward selection</source>
        <translation>Vorwärtsauswahl</translation>
    </message>
    <message>
        <source>Backward elimination</source>
        <translation>Rückwärtselimination</translation>
    </message>
    <message>
        <source>Cp</source>
        <translation>Cp</translation>
    </message>
    <message>
        <source>AIC</source>
        <translation>AIC</translation>
    </message>
    <message>
        <source>BIC</source>
        <translation>BIC</translation>
    </message>
    <message>
        <source>adjusted R²</source>
        <translation>korrigiertes R²</translation>
    </message>
    <message>
        <source>PRESS</source>
        <translation>PRESS</translation>
    </message>
    <message>
        <source>Choose among the control variables; the model stays until you take one of the results</source>
        <translation>Unter den Einflussgrößen wählen; das Modell bleibt, bis Sie eines der Ergebnisse übernehmen</translation>
    </message>
    <message>
        <source>Choose finds out which of the control variables of the model are worth keeping. The model stays as it is until you take one of the results.</source>
        <translation>Wählen findet heraus, welche Einflussgrößen des Modells sich lohnen. Das Modell bleibt, wie es ist, bis Sie eines der Ergebnisse übernehmen.</translation>
    </message>
    <message>
        <source>There is no model yet to choose from: drag a field to Y and the candidates to X1, X2, …</source>
        <translation>Es gibt noch kein Modell zur Auswahl: Ziehen Sie ein Feld auf Y und die Kandidaten auf X1, X2, …</translation>
    </message>
</context>
<context>
    <name>nuvo::ConnectionDialog</name>
    <message>
        <source>SQLite file</source>
        <translation>SQLite-Datei</translation>
    </message>
    <message>
        <source>For the try alone, stored nowhere. Programs take it from the password file ~/.pgpass (PGPASSFILE), a line host:port:database:user:password, or from a service file.</source>
        <translation>Nur für den Test, nirgends gespeichert. Programme lesen es aus der Kennwortdatei ~/.pgpass (PGPASSFILE), einer Zeile host:port:database:user:password, oder aus einer Dienstdatei.</translation>
    </message>
    <message>
        <source>For the try alone, stored nowhere. The driver reads no password file: programs use an account that needs no password, or register a connection of their own and name it here.</source>
        <translation>Nur für den Test, nirgends gespeichert. Der Treiber liest keine Kennwortdatei: Programme verwenden ein Konto ohne Kennwort, oder sie melden eine eigene Verbindung an und nennen sie hier.</translation>
    </message>
    <message>
        <source>ODBC data source</source>
        <translation>ODBC-Datenquelle</translation>
    </message>
    <message>
        <source>For the try alone, stored nowhere. Programs take it from the data source (~/.odbc.ini).</source>
        <translation>Nur für den Test, nirgends gespeichert. Programme lesen es aus der Datenquelle (~/.odbc.ini).</translation>
    </message>
    <message>
        <source>Connection to a Database</source>
        <translation>Verbindung zu einer Datenbank</translation>
    </message>
    <message>
        <source>&amp;Kind:</source>
        <translation>&amp;Art:</translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation>Durch&amp;suchen…</translation>
    </message>
    <message>
        <source>&amp;File:</source>
        <translation>&amp;Datei:</translation>
    </message>
    <message>
        <source>Data &amp;source:</source>
        <translation>Daten&amp;quelle:</translation>
    </message>
    <message>
        <source>&amp;Host:</source>
        <translation>&amp;Rechner:</translation>
    </message>
    <message>
        <source>P&amp;ort:</source>
        <translation>&amp;Port:</translation>
    </message>
    <message>
        <source>&amp;Database:</source>
        <translation>Daten&amp;bank:</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>Ben&amp;utzer:</translation>
    </message>
    <message>
        <source>How long a server may take to let us in</source>
        <translation>Wie lange der Server für die Anmeldung brauchen darf</translation>
    </message>
    <message>
        <source>&amp;Wait to connect:</source>
        <translation>&amp;Warten auf Verbindung:</translation>
    </message>
    <message>
        <source>as long as it takes</source>
        <translation>beliebig lange</translation>
    </message>
    <message>
        <source>How long the answer to one statement may take</source>
        <translation>Wie lange die Antwort auf eine Anweisung dauern darf</translation>
    </message>
    <message>
        <source>Wait for &amp;answers:</source>
        <translation>Warten auf Antw&amp;orten:</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>The DatabaseName that is taken</source>
        <translation>Der DatabaseName, der übernommen wird</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&amp;Try</source>
        <translation>&amp;Testen</translation>
    </message>
    <message>
        <source>Tables of the database</source>
        <translation>Tabellen der Datenbank</translation>
    </message>
    <message>
        <source>Choose a Database</source>
        <translation>Datenbank auswählen</translation>
    </message>
    <message>
        <source>SQLite databases (*.db *.db3 *.sqlite *.sqlite3)</source>
        <translation>SQLite-Datenbanken (*.db *.db3 *.sqlite *.sqlite3)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Opening it…</source>
        <translation>Wird geöffnet…</translation>
    </message>
    <message>
        <source>It opens, and has no tables.</source>
        <translation>Sie lässt sich öffnen und hat keine Tabellen.</translation>
    </message>
    <message>
        <source>It opens, with one table:</source>
        <translation>Sie lässt sich öffnen, mit einer Tabelle:</translation>
    </message>
    <message>
        <source>It opens, with %1 tables and views:</source>
        <translation>Sie lässt sich öffnen, mit %1 Tabellen und Sichten:</translation>
    </message>
    <message>
        <source>Use it anyway</source>
        <translation>Trotzdem verwenden</translation>
    </message>
    <message>
        <source>Kept until the program ends, and stored nowhere.</source>
        <translation>Wird behalten, bis das Programm endet, und nirgends gespeichert.</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
</context>
<context>
    <name>nuvo::CsvPreview</name>
    <message>
        <source>comma</source>
        <translation>Komma</translation>
    </message>
    <message>
        <source>semicolon</source>
        <translation>Semikolon</translation>
    </message>
    <message>
        <source>tab</source>
        <translation>Tabulator</translation>
    </message>
    <message>
        <source>bar |</source>
        <translation>senkrechter Strich |</translation>
    </message>
    <message>
        <source>blank</source>
        <translation>Leerzeichen</translation>
    </message>
    <message>
        <source>&amp;Missing values:</source>
        <translation>&amp;Fehlende Werte:</translation>
    </message>
    <message>
        <source>empty cells and NA; further ones, with blanks between: . -999</source>
        <translation>leere Zellen und NA; weitere, durch Leerzeichen getrennt: . -999</translation>
    </message>
    <message>
        <source>point</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>Open %1</source>
        <translation>%1 öffnen</translation>
    </message>
    <message>
        <source>&amp;Encoding:</source>
        <translation>&amp;Kodierung:</translation>
    </message>
    <message>
        <source>Cells are &amp;parted by:</source>
        <translation>Zellen &amp;getrennt durch:</translation>
    </message>
    <message>
        <source>&amp;Decimal sign:</source>
        <translation>&amp;Dezimalzeichen:</translation>
    </message>
    <message>
        <source>First records</source>
        <translation>Erste Datensätze</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Einlesen</translation>
    </message>
    <message>
        <source>recognised: %1</source>
        <translation>erkannt: %1</translation>
    </message>
    <message>
        <source>There are no records below the first line.</source>
        <translation>Unter der ersten Zeile stehen keine Datensätze.</translation>
    </message>
    <message>
        <source>The first records are too long to show more of them.</source>
        <translation>Die ersten Datensätze sind zu lang, um mehr davon zu zeigen.</translation>
    </message>
    <message>
        <source>(no name)</source>
        <translation>(ohne Namen)</translation>
    </message>
    <message>
        <source>The header row has no name for this column.</source>
        <translation>In der Kopfzeile hat diese Spalte keinen Namen.</translation>
    </message>
</context>
<context>
    <name>nuvo::FieldList</name>
    <message>
        <source>Filter fields</source>
        <translation>Felder filtern</translation>
    </message>
    <message>
        <source>Shows the fields that have this in their names (Ctrl+F). Down: into the list</source>
        <translation>Zeigt die Felder, die das im Namen haben (Strg+F). Ab: in die Liste</translation>
    </message>
    <message>
        <source>Fields</source>
        <translation>Felder</translation>
    </message>
    <message>
        <source>Enter or Insert adds a field to the next free place, Y makes it the response</source>
        <translation>Eingabe oder Einfg setzt ein Feld auf den nächsten freien Platz, Y macht es zur Zielgröße</translation>
    </message>
    <message>
        <source>The fields are not known; their names can be typed.</source>
        <translation>Die Felder sind nicht bekannt; ihre Namen lassen sich eintippen.</translation>
    </message>
    <message>
        <source>%1 Names can be typed all the same.</source>
        <comment>why the fields are not known</comment>
        <translation>%1 Namen lassen sich trotzdem eintippen.</translation>
    </message>
    <message>
        <source>There are no fields.</source>
        <translation>Es gibt keine Felder.</translation>
    </message>
    <message>
        <source>None of the fields holds numbers.</source>
        <translation>Keines der Felder enthält Zahlen.</translation>
    </message>
    <message>
        <source>%1 of %2 fields</source>
        <translation>%1 von %2 Feldern</translation>
    </message>
</context>
<context>
    <name>nuvo::FieldsModel</name>
    <message>
        <source>%1 holds no number (%2): it cannot be a variable of a regression.</source>
        <translation>%1 enthält keine Zahl (%2): Es kann keine Variable einer Regression sein.</translation>
    </message>
    <message>
        <source>%1 (%2). Double click, Enter or Insert: the next free place. Y: the response. Or drag it to a place.</source>
        <translation>%1 (%2). Doppelklick, Eingabe oder Einfg: der nächste freie Platz. Y: die Zielgröße. Oder auf einen Platz ziehen.</translation>
    </message>
    <message>
        <source>%1, cannot be used</source>
        <translation>%1, nicht brauchbar</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Holds</source>
        <translation>Enthält</translation>
    </message>
    <message>
        <source>Used as</source>
        <translation>Dient als</translation>
    </message>
</context>
<context>
    <name>nuvo::Guide</name>
    <message>
        <source>Back (Alt+Left)</source>
        <translation>Zurück (Alt+Links)</translation>
    </message>
    <message>
        <source>Forward (Alt+Right)</source>
        <translation>Vor (Alt+Rechts)</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>Leitfaden</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Page of the guide</source>
        <translation>Seite des Leitfadens</translation>
    </message>
    <message>
        <source>Find in the guide</source>
        <translation>Im Leitfaden suchen</translation>
    </message>
    <message>
        <source>Find in the guide (Ctrl+F, F3 for the next place)</source>
        <translation>Im Leitfaden suchen (Strg+F, F3 für die nächste Stelle)</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not part of the guide; it comes with the sources.</source>
        <translation>„%1“ gehört nicht zum Leitfaden; es liegt bei den Quelltexten.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is nowhere in the guide.</source>
        <translation>„%1“ kommt im Leitfaden nicht vor.</translation>
    </message>
</context>
<context>
    <name>nuvo::Handout</name>
    <message>
        <source>Save &amp;Report…</source>
        <translation>Be&amp;richt speichern…</translation>
    </message>
    <message>
        <source>Save summary, diagnostics and figures: PDF, HTML, text or Markdown</source>
        <translation>Übersicht, Diagnosen und Abbildungen speichern: PDF, HTML, Text oder Markdown</translation>
    </message>
    <message>
        <source>Save &amp;Figure…</source>
        <translation>A&amp;bbildung speichern…</translation>
    </message>
    <message>
        <source>Save the figure that is shown: PNG, SVG or PDF</source>
        <translation>Die gezeigte Abbildung speichern: PNG, SVG oder PDF</translation>
    </message>
    <message>
        <source>Save &amp;All Figures</source>
        <translation>Alle Abb&amp;ildungen speichern</translation>
    </message>
    <message>
        <source>As &amp;PNG…</source>
        <translation>Als &amp;PNG…</translation>
    </message>
    <message>
        <source>As &amp;SVG…</source>
        <translation>Als &amp;SVG…</translation>
    </message>
    <message>
        <source>As P&amp;DF…</source>
        <translation>Als P&amp;DF…</translation>
    </message>
    <message>
        <source>Print Previe&amp;w…</source>
        <translation>Druck&amp;vorschau…</translation>
    </message>
    <message>
        <source>Show the sheets before they are printed</source>
        <translation>Die Blätter vor dem Drucken zeigen</translation>
    </message>
    <message>
        <source>&amp;Print…</source>
        <translation>&amp;Drucken…</translation>
    </message>
    <message>
        <source>Print summary, diagnostics and figures, on paper or into a PDF file</source>
        <translation>Übersicht, Diagnosen und Abbildungen drucken, auf Papier oder in eine PDF-Datei</translation>
    </message>
    <message>
        <source>&amp;Copy Page</source>
        <translation>&amp;Seite kopieren</translation>
    </message>
    <message>
        <source>Copy what the page shows: text and HTML, rows, or the figure</source>
        <translation>Kopieren, was die Seite zeigt: Text und HTML, Zeilen oder die Abbildung</translation>
    </message>
    <message>
        <source>Copy the table of the page, or the models where they have the focus, as text and HTML</source>
        <translation>Die Tabelle der Seite kopieren, oder die Modelle, wo diese den Fokus haben, als Text und HTML</translation>
    </message>
    <message>
        <source>Copy the same table as Markdown</source>
        <translation>Dieselbe Tabelle als Markdown kopieren</translation>
    </message>
    <message>
        <source>query</source>
        <translation>Abfrage</translation>
    </message>
    <message>
        <source>Saved %1.</source>
        <translation>%1 wurde gespeichert.</translation>
    </message>
    <message>
        <source>Save report</source>
        <translation>Bericht speichern</translation>
    </message>
    <message>
        <source>PDF document (*.pdf)</source>
        <translation>PDF-Dokument (*.pdf)</translation>
    </message>
    <message>
        <source>HTML page (*.html)</source>
        <translation>HTML-Seite (*.html)</translation>
    </message>
    <message>
        <source>Plain text (*.txt)</source>
        <translation>Text (*.txt)</translation>
    </message>
    <message>
        <source>Markdown (*.md)</source>
        <translation>Markdown (*.md)</translation>
    </message>
    <message>
        <source>report</source>
        <translation>Bericht</translation>
    </message>
    <message>
        <source>Save figure</source>
        <translation>Abbildung speichern</translation>
    </message>
    <message>
        <source>PNG picture (*.png)</source>
        <translation>PNG-Bild (*.png)</translation>
    </message>
    <message>
        <source>SVG picture (*.svg)</source>
        <translation>SVG-Bild (*.svg)</translation>
    </message>
    <message>
        <source>The printer did not take the report.</source>
        <translation>Der Drucker hat den Bericht nicht angenommen.</translation>
    </message>
    <message>
        <source>Cannot write &quot;%1&quot;.</source>
        <translation>„%1“ lässt sich nicht schreiben.</translation>
    </message>
    <message>
        <source>The report was printed.</source>
        <translation>Der Bericht wurde gedruckt.</translation>
    </message>
    <message>
        <source>There is no table to copy on this page.</source>
        <translation>Auf dieser Seite gibt es keine Tabelle zu kopieren.</translation>
    </message>
    <message numerus="yes">
        <source>Copied %n row(s).</source>
        <translation>
            <numerusform>%n Zeile kopiert.</numerusform>
            <numerusform>%n Zeilen kopiert.</numerusform>
        </translation>
    </message>
    <message>
        <source>There is no fit yet: drag a field to Y and others to X1, X2, … first.</source>
        <translation>Es gibt noch keine Anpassung: Erst ein Feld auf Y und andere auf X1, X2, … ziehen.</translation>
    </message>
</context>
<context>
    <name>nuvo::KeptModelsModel</name>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Datensätze</translation>
    </message>
    <message>
        <source>R²</source>
        <translation>R²</translation>
    </message>
    <message>
        <source>Adjusted R²</source>
        <translation>Korrigiertes R²</translation>
    </message>
    <message>
        <source>s</source>
        <translation>s</translation>
    </message>
    <message>
        <source>AIC</source>
        <translation>AIC</translation>
    </message>
    <message>
        <source>Its name, or its terms. F2 names it.</source>
        <translation>Sein Name, oder seine Terme. F2 benennt es.</translation>
    </message>
    <message>
        <source>Records that the fit is of</source>
        <translation>Datensätze, auf denen die Anpassung beruht</translation>
    </message>
    <message>
        <source>Share of the sum of squares that the model explains</source>
        <translation>Anteil der Quadratsumme, den das Modell erklärt (Bestimmtheitsmaß)</translation>
    </message>
    <message>
        <source>The same with variances instead of sums of squares</source>
        <translation>Dasselbe mit Varianzen anstelle von Quadratsummen</translation>
    </message>
    <message>
        <source>Standard error of the estimate</source>
        <translation>Standardfehler der Schätzung</translation>
    </message>
    <message>
        <source>Akaike&apos;s criterion: smaller is better, of fits to the same records</source>
        <translation>Kriterium nach Akaike: kleiner ist besser, bei Anpassungen an dieselben Datensätze</translation>
    </message>
</context>
<context>
    <name>nuvo::LiveFit</name>
    <message>
        <source>%1 is null in %2</source>
        <comment>a term and a number of records</comment>
        <translation>%1 ist in %2 leer</translation>
    </message>
    <message>
        <source>%1 cannot be worked out in %2</source>
        <comment>a term and a number of records</comment>
        <translation>%1 lässt sich in %2 nicht berechnen</translation>
    </message>
    <message>
        <source>There are no records.</source>
        <translation>Es gibt keine Datensätze.</translation>
    </message>
    <message numerus="yes">
        <source>None of the %1 records can be used.</source>
        <translation>
            <numerusform>%1 Datensatz, und er ist nicht brauchbar.</numerusform>
            <numerusform>Keiner der %1 Datensätze ist brauchbar.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>None of the %1 records can be used: %2.</source>
        <translation>
            <numerusform>%1 Datensatz, und er ist nicht brauchbar: %2.</numerusform>
            <numerusform>Keiner der %1 Datensätze ist brauchbar: %2.</numerusform>
        </translation>
    </message>
    <message>
        <source>The reading was stopped.</source>
        <translation>Das Lesen wurde angehalten.</translation>
    </message>
</context>
<context>
    <name>nuvo::MainWindow</name>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>&amp;Leitfaden</translation>
    </message>
    <message>
        <source>Open the guide where it is about what is shown</source>
        <translation>Den Leitfaden dort öffnen, wo es um das Gezeigte geht (auf Englisch)</translation>
    </message>
    <message>
        <source>&amp;Keys…</source>
        <translation>&amp;Tasten…</translation>
    </message>
    <message>
        <source>Show the keys of all menus</source>
        <translation>Die Tasten aller Menüs zeigen</translation>
    </message>
    <message>
        <source>&amp;About Nuvo Workbench…</source>
        <translation>&amp;Über Nuvo Workbench…</translation>
    </message>
    <message>
        <source>Show version and licence</source>
        <translation>Version und Lizenz zeigen</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Alt and the underlined letter opens a menu or goes to a field. F6 goes on to the next part of the window, Tab to the next field. In the list of fields Y makes the marked field the response, Enter takes it as a control variable.</source>
        <translation>Alt und der unterstrichene Buchstabe öffnet ein Menü oder geht zu einem Feld. F6 geht zum nächsten Bereich des Fensters, Tab zum nächsten Feld. In der Liste der Felder macht Y das markierte Feld zur Zielgröße, Eingabe nimmt es als Einflussgröße.</translation>
    </message>
    <message>
        <source>About Nuvo Workbench</source>
        <translation>Über Nuvo Workbench</translation>
    </message>
    <message>
        <source>Nuvo Workbench %1</source>
        <translation>Nuvo Workbench %1</translation>
    </message>
    <message>
        <source>Linear regression for people with a table and a question. An application of Nuvo Statistics. Free software under the MIT licence, with Qt %1 under the LGPL.</source>
        <translation>Lineare Regression für Leute mit einer Tabelle und einer Frage. Eine Anwendung von Nuvo Statistics. Freie Software unter der MIT-Lizenz, mit Qt %1 unter der LGPL.</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>&amp;Öffnen…</translation>
    </message>
    <message>
        <source>Open a CSV file, an SQLite database or a form</source>
        <translation>Eine CSV-Datei, eine SQLite-Datenbank oder ein Formular öffnen</translation>
    </message>
    <message>
        <source>Open Ser&amp;ver…</source>
        <translation>&amp;Server öffnen…</translation>
    </message>
    <message>
        <source>Open a database on a server; the connection is tried first</source>
        <translation>Eine Datenbank auf einem Server öffnen; die Verbindung wird erst getestet</translation>
    </message>
    <message>
        <source>&amp;Save as Form…</source>
        <translation>Als &amp;Formular speichern…</translation>
    </message>
    <message>
        <source>Save the model as a form that Qt Designer opens and nuvostat runs</source>
        <translation>Das Modell als Formular speichern, das Qt Designer öffnet und nuvostat ausführt</translation>
    </message>
    <message>
        <source>Save &amp;Database…</source>
        <translation>Da&amp;tenbank speichern…</translation>
    </message>
    <message>
        <source>Save the tables that came from CSV files as an SQLite database</source>
        <translation>Die Tabellen aus CSV-Dateien als SQLite-Datenbank speichern</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>B&amp;eenden</translation>
    </message>
    <message>
        <source>Quit; the sitting comes back at the next start</source>
        <translation>Beenden; die Sitzung ist beim nächsten Start wieder da</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Take the last change back</source>
        <translation>Die letzte Änderung zurücknehmen</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Make the change that was taken back again</source>
        <translation>Die zurückgenommene Änderung wieder machen</translation>
    </message>
    <message>
        <source>&amp;Undo %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>&amp;Redo %1</source>
        <translation>&amp;Wiederholen: %1</translation>
    </message>
    <message>
        <source>Copied.</source>
        <translation>Kopiert.</translation>
    </message>
    <message>
        <source>%1 It names the database of this sitting: File &gt; Save Database first gives it one that stays.</source>
        <translation>%1 Darin steht die Datenbank dieser Sitzung: Datei &gt; Datenbank speichern gibt ihr zuvor eine, die bleibt.</translation>
    </message>
    <message>
        <source>There is no model yet to copy.</source>
        <translation>Es gibt noch kein Modell zu kopieren.</translation>
    </message>
    <message>
        <source>Copy as Co&amp;mmand</source>
        <translation>Als &amp;Befehl kopieren</translation>
    </message>
    <message>
        <source>Copy the nuvostat line that makes this fit</source>
        <translation>Die Zeile für nuvostat kopieren, die diese Anpassung macht</translation>
    </message>
    <message>
        <source>Copy as C&amp;++</source>
        <translation>Als &amp;C++ kopieren</translation>
    </message>
    <message>
        <source>Copy the program that makes this fit</source>
        <translation>Das Programm kopieren, das diese Anpassung macht</translation>
    </message>
    <message>
        <source>&amp;Model</source>
        <translation>&amp;Modell</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Datensätze</translation>
    </message>
    <message>
        <source>&amp;First 2500 Records</source>
        <translation>&amp;Erste 2500 Datensätze</translation>
    </message>
    <message>
        <source>Fit to the first 2500 records that can be used</source>
        <translation>An die ersten 2500 brauchbaren Datensätze anpassen</translation>
    </message>
    <message>
        <source>&amp;Every Record</source>
        <translation>&amp;Alle Datensätze</translation>
    </message>
    <message>
        <source>Read every record, in the background</source>
        <translation>Alle Datensätze lesen, im Hintergrund</translation>
    </message>
    <message>
        <source>Every Record, on the &amp;Server</source>
        <translation>Alle Datensätze, auf dem &amp;Server</translation>
    </message>
    <message>
        <source>Have the database add up every record</source>
        <translation>Die Datenbank alle Datensätze summieren lassen</translation>
    </message>
    <message>
        <source>&amp;Read Again</source>
        <translation>Neu &amp;lesen</translation>
    </message>
    <message>
        <source>Read the records again and fit</source>
        <translation>Die Datensätze neu lesen und anpassen</translation>
    </message>
    <message>
        <source>&amp;Compare Two Models…</source>
        <translation>Zwei Modelle &amp;vergleichen…</translation>
    </message>
    <message>
        <source>Compare the two models that are selected below</source>
        <translation>Die zwei Modelle vergleichen, die unten ausgewählt sind</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Next Part of the Window</source>
        <translation>&amp;Nächster Bereich des Fensters</translation>
    </message>
    <message>
        <source>Go on: tables, model, page, models tried</source>
        <translation>Weiter: Tabellen, Modell, Seite, versuchte Modelle</translation>
    </message>
    <message>
        <source>&amp;Previous Part of the Window</source>
        <translation>&amp;Voriger Bereich des Fensters</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Everything that can be opened (*.csv *.tsv *.txt *.db *.sqlite *.sqlite3 *.ui);;All files (*)</source>
        <translation>Alles, was sich öffnen lässt (*.csv *.tsv *.txt *.db *.sqlite *.sqlite3 *.ui);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>There is no model yet to save.</source>
        <translation>Es gibt noch kein Modell zu speichern.</translation>
    </message>
    <message>
        <source>Save as form</source>
        <translation>Als Formular speichern</translation>
    </message>
    <message>
        <source>Form (*.ui)</source>
        <translation>Formular (*.ui)</translation>
    </message>
    <message>
        <source>Cannot write &quot;%1&quot;: %2.</source>
        <translation>„%1“ lässt sich nicht schreiben: %2.</translation>
    </message>
    <message>
        <source>Saved %1.</source>
        <translation>%1 wurde gespeichert.</translation>
    </message>
    <message>
        <source>No CSV file has been opened in this sitting: there is nothing to save.</source>
        <translation>In dieser Sitzung wurde keine CSV-Datei geöffnet: Es gibt nichts zu speichern.</translation>
    </message>
    <message>
        <source>Save database</source>
        <translation>Datenbank speichern</translation>
    </message>
    <message>
        <source>SQLite database (*.db)</source>
        <translation>SQLite-Datenbank (*.db)</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Select two models in the list below to compare them.</source>
        <translation>Wählen Sie unten in der Liste zwei Modelle aus, um sie zu vergleichen.</translation>
    </message>
    <message>
        <source>Two models</source>
        <translation>Zwei Modelle</translation>
    </message>
    <message>
        <source>Change of the model</source>
        <translation>Änderung des Modells</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Take a chosen model</source>
        <translation>Gewähltes Modell übernehmen</translation>
    </message>
    <message>
        <source>Reading every record…</source>
        <translation>Alle Datensätze werden gelesen…</translation>
    </message>
    <message>
        <source>%1 It was put aside as %2.</source>
        <translation>%1 Sie wurde als %2 beiseitegelegt.</translation>
    </message>
    <message>
        <source>Tables</source>
        <translation>Tabellen</translation>
    </message>
    <message>
        <source>Models tried</source>
        <translation>Versuchte Modelle</translation>
    </message>
    <message>
        <source>Stop reading (Escape)</source>
        <translation>Lesen anhalten (Esc)</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
    <message>
        <source>Fitted to the first %1 records that can be used; Model &gt; Every Record uses them all.</source>
        <translation>An die ersten %1 brauchbaren Datensätze angepasst; Modell &gt; Alle Datensätze verwendet sie alle.</translation>
    </message>
    <message numerus="yes">
        <source>Fitted to %1 records.</source>
        <translation>
            <numerusform>An %1 Datensatz angepasst.</numerusform>
            <numerusform>An %1 Datensätze angepasst.</numerusform>
        </translation>
    </message>
    <message>
        <source>Drag a field to Y and others to X1, X2, …; each change is fitted at once.</source>
        <translation>Ziehen Sie ein Feld auf Y und andere auf X1, X2, …; jede Änderung wird sofort angepasst.</translation>
    </message>
    <message>
        <source>Drop a CSV file or an SQLite database here, or choose File &gt; Open.</source>
        <translation>Ziehen Sie eine CSV-Datei oder eine SQLite-Datenbank hierher, oder wählen Sie Datei &gt; Öffnen.</translation>
    </message>
    <message>
        <source>Query</source>
        <translation>Abfrage</translation>
    </message>
    <message>
        <source>Nuvo Workbench</source>
        <translation>Nuvo Workbench</translation>
    </message>
    <message>
        <source>%1, %2 - Nuvo Workbench</source>
        <translation>%1, %2 - Nuvo Workbench</translation>
    </message>
    <message>
        <source>Open a database</source>
        <translation>Datenbank öffnen</translation>
    </message>
    <message>
        <source>Open a table</source>
        <translation>Tabelle öffnen</translation>
    </message>
    <message>
        <source>Open a form</source>
        <translation>Formular öffnen</translation>
    </message>
    <message>
        <source>Open a CSV file</source>
        <translation>CSV-Datei öffnen</translation>
    </message>
    <message>
        <source>Open Re&amp;cent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Leave Selected Records Out</source>
        <translation>Ausgewählte Datensätze &amp;weglassen</translation>
    </message>
    <message>
        <source>Leave the selected records out of everything, by the filter</source>
        <translation>Die ausgewählten Datensätze überall weglassen, durch den Filter</translation>
    </message>
    <message>
        <source>model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>data</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Select what to leave out first: records, observations, or points of a figure.</source>
        <translation>Wählen Sie erst aus, was wegbleiben soll: Datensätze, Beobachtungen oder Punkte einer Abbildung.</translation>
    </message>
    <message>
        <source>Leave records out</source>
        <translation>Datensätze weglassen</translation>
    </message>
    <message>
        <source>Type an SQL statement and look at what it gives</source>
        <translation>Eine SQL-Anweisung eingeben und ansehen, was sie liefert</translation>
    </message>
    <message>
        <source>Reading the records…</source>
        <translation>Die Datensätze werden gelesen…</translation>
    </message>
    <message>
        <source>Reading the records: %1 so far…</source>
        <translation>Die Datensätze werden gelesen: bisher %1…</translation>
    </message>
    <message>
        <source>The reading was stopped.</source>
        <translation>Das Lesen wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Opening %1…</source>
        <translation>%1 wird geöffnet…</translation>
    </message>
    <message>
        <source>Open a database first: a statement reads its tables.</source>
        <translation>Öffnen Sie zuerst eine Datenbank: eine Anweisung liest ihre Tabellen.</translation>
    </message>
    <message>
        <source>The sitting is not saved: %1</source>
        <translation>Die Sitzung ist nicht gespeichert: %1</translation>
    </message>
    <message>
        <source>Quer&amp;y…</source>
        <translation>Abfra&amp;ge…</translation>
    </message>
    <message>
        <source>Choose a table on the left.</source>
        <translation>Wählen Sie links eine Tabelle.</translation>
    </message>
    <message>
        <source>%1 It names the database of this sitting, as %2: File &gt; Save Database first gives it one that stays.</source>
        <translation>%1 Darin steht die Datenbank dieser Sitzung, weil %2: Datei &gt; Datenbank speichern gibt ihr zuvor eine, die bleibt.</translation>
    </message>
    <message>
        <source>The sitting is saved again.</source>
        <translation>Die Sitzung ist wieder gespeichert.</translation>
    </message>
    <message>
        <source>File &gt; Query can make a number of it, such as CASE WHEN %1 = &apos;yes&apos; THEN 1 ELSE 0 END AS yes.</source>
        <translation>Datei &gt; Abfrage kann eine Zahl daraus machen, etwa CASE WHEN %1 = &apos;ja&apos; THEN 1 ELSE 0 END AS ja.</translation>
    </message>
</context>
<context>
    <name>nuvo::ModelsTable</name>
    <message>
        <source>Models tried</source>
        <translation>Versuchte Modelle</translation>
    </message>
    <message>
        <source>&amp;Bring Back</source>
        <translation>&amp;Zurückholen</translation>
    </message>
    <message>
        <source>&amp;Name</source>
        <translation>&amp;Benennen</translation>
    </message>
    <message>
        <source>Throw A&amp;way</source>
        <translation>&amp;Wegwerfen</translation>
    </message>
</context>
<context>
    <name>nuvo::NearRecords</name>
    <message>
        <source>There is no place to copy records to: %1.</source>
        <translation>Es gibt keinen Platz, um Datensätze hinzukopieren: %1.</translation>
    </message>
</context>
<context>
    <name>nuvo::Pages</name>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Diagnostics</source>
        <translation>Diagnose</translation>
    </message>
    <message>
        <source>Observations</source>
        <translation>Beobachtungen</translation>
    </message>
    <message>
        <source>Figures</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Choice</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Predict</source>
        <translation>Vorhersage</translation>
    </message>
    <message>
        <source>%1 (Alt+%2)</source>
        <translation>%1 (Alt+%2)</translation>
    </message>
    <message>
        <source>No fit yet</source>
        <translation>Noch keine Anpassung</translation>
    </message>
    <message>
        <source>Drag the field whose values you want to explain to Y, and those that may explain them to X1, X2, … The summary of the fit is shown here at once.</source>
        <translation>Ziehen Sie das Feld, dessen Werte Sie erklären wollen, auf Y, und die, die sie erklären könnten, auf X1, X2, … Die Übersicht der Anpassung steht dann sofort hier.</translation>
    </message>
    <message>
        <source>Choose a table on the left.</source>
        <translation>Wählen Sie links eine Tabelle.</translation>
    </message>
    <message>
        <source>The reading was stopped; nothing was copied.</source>
        <translation>Das Lesen wurde angehalten; es wurde nichts kopiert.</translation>
    </message>
</context>
<context>
    <name>nuvo::PlaceRow</name>
    <message>
        <source>inactive</source>
        <translation>inaktiv</translation>
    </message>
    <message>
        <source>x as it is</source>
        <translation>x unverändert</translation>
    </message>
    <message>
        <source>ln x</source>
        <translation>ln x</translation>
    </message>
    <message>
        <source>square root of x</source>
        <translation>Wurzel aus x</translation>
    </message>
    <message>
        <source>x to a power</source>
        <translation>x hoch</translation>
    </message>
    <message>
        <source>x times a field</source>
        <translation>x mal Feld</translation>
    </message>
    <message>
        <source>x over a field</source>
        <translation>x durch Feld</translation>
    </message>
    <message>
        <source>x over a number</source>
        <translation>x durch Zahl</translation>
    </message>
    <message>
        <source>response</source>
        <translation>Zielgröße</translation>
    </message>
    <message>
        <source>Drop a field here, or type its name (F2). Delete removes, Alt+Up and Alt+Down move, Up and Down go to the next place</source>
        <translation>Ein Feld hierher ziehen oder seinen Namen eintippen (F2). Entf entfernt, Alt+Auf und Alt+Ab verschieben, Auf und Ab gehen zum nächsten Platz</translation>
    </message>
    <message>
        <source>field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>transformation</source>
        <translation>Transformation</translation>
    </message>
    <message>
        <source>What is made of the field</source>
        <translation>Was aus dem Feld gemacht wird</translation>
    </message>
    <message>
        <source>second field</source>
        <translation>zweites Feld</translation>
    </message>
    <message>
        <source>Drop the second field here, or type its name (F2)</source>
        <translation>Das zweite Feld hierher ziehen oder seinen Namen eintippen (F2)</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>The power: a whole number of at least 1</source>
        <translation>Der Exponent: eine ganze Zahl ab 1</translation>
    </message>
    <message>
        <source>The number that the field is divided by</source>
        <translation>Die Zahl, durch die das Feld geteilt wird</translation>
    </message>
</context>
<context>
    <name>nuvo::PredictPage</name>
    <message>
        <source>Predict a &amp;table…</source>
        <translation>&amp;Tabelle vorhersagen…</translation>
    </message>
    <message>
        <source>Level of the intervals</source>
        <translation>Niveau der Intervalle</translation>
    </message>
    <message>
        <source>Write the predictions for every record of a table of this database into a CSV file</source>
        <translation>Die Vorhersagen für jeden Datensatz einer Tabelle dieser Datenbank in eine CSV-Datei schreiben</translation>
    </message>
    <message>
        <source>&amp;Level</source>
        <translation>&amp;Niveau</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>eine Zahl</translation>
    </message>
    <message>
        <source>There is no fit to predict with: drag a field to Y and others to X1, X2, …</source>
        <translation>Es gibt noch keine Anpassung für Vorhersagen: Ziehen Sie ein Feld auf Y und andere auf X1, X2, …</translation>
    </message>
    <message>
        <source>%1 has no value yet.</source>
        <translation>%1 hat noch keinen Wert.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number.</source>
        <translation>„%1“ ist keine Zahl.</translation>
    </message>
    <message>
        <source>%1 = %2
Standard error of the mean %3
Mean, %4 %: %5 to %6
New observation, %4 %: %7 to %8</source>
        <translation>%1 = %2
Standardfehler des Mittelwerts %3
Mittelwert, %4 %: %5 bis %6
Neue Beobachtung, %4 %: %7 bis %8</translation>
    </message>
    <message>
        <source>Predict a &amp;CSV file…</source>
        <translation>&amp;CSV-Datei vorhersagen…</translation>
    </message>
    <message>
        <source>Write the predictions for every record of another CSV file into a CSV file</source>
        <translation>Die Vorhersagen für jeden Datensatz einer anderen CSV-Datei in eine CSV-Datei schreiben</translation>
    </message>
    <message>
        <source>Standard error</source>
        <translation>Standardfehler</translation>
    </message>
    <message>
        <source>Mean low</source>
        <translation>Mittel von</translation>
    </message>
    <message>
        <source>Mean high</source>
        <translation>Mittel bis</translation>
    </message>
    <message>
        <source>New low</source>
        <translation>Neu von</translation>
    </message>
    <message>
        <source>New high</source>
        <translation>Neu bis</translation>
    </message>
</context>
<context>
    <name>nuvo::RecordsModel</name>
    <message>
        <source>The records are not shown any more.</source>
        <translation>Die Datensätze werden nicht mehr gezeigt.</translation>
    </message>
    <message>
        <source>The texts of these records are too long to copy, more than %1 characters: select fewer of them.</source>
        <translation>Die Texte dieser Datensätze sind zum Kopieren zu lang, mehr als %1 Zeichen: Wählen Sie weniger aus.</translation>
    </message>
    <message>
        <source>Copy records</source>
        <translation>Datensätze kopieren</translation>
    </message>
    <message>
        <source>Reading the records…</source>
        <translation>Die Datensätze werden gelesen…</translation>
    </message>
</context>
<context>
    <name>nuvo::RecordsPage</name>
    <message>
        <source>Filter: a condition such as  YEAR &gt; 1950</source>
        <translation>Filter: eine Bedingung wie  YEAR &gt; 1950</translation>
    </message>
    <message>
        <source>An SQL condition; records that do not fulfil it are left out everywhere (Enter)</source>
        <translation>Eine SQL-Bedingung; Datensätze, die sie nicht erfüllen, bleiben überall weg (Eingabe)</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Datensätze</translation>
    </message>
    <message>
        <source>Number of the record to go to (Enter)</source>
        <translation>Nummer des Datensatzes, zu dem gegangen wird (Eingabe)</translation>
    </message>
    <message>
        <source>Go to record</source>
        <translation>Gehe zu Datensatz</translation>
    </message>
    <message>
        <source>Click to sort the records, by the database</source>
        <translation>Klicken, um die Datensätze von der Datenbank sortieren zu lassen</translation>
    </message>
    <message>
        <source>Go to 1 … %1</source>
        <translation>Gehe zu 1 … %1</translation>
    </message>
    <message>
        <source>Counting…</source>
        <translation>Wird gezählt…</translation>
    </message>
    <message>
        <source>%1 records are too many to copy: select at most %2 of them.</source>
        <translation>%1 Datensätze sind zum Kopieren zu viele: Wählen Sie höchstens %2 davon aus.</translation>
    </message>
</context>
<context>
    <name>nuvo::Sitting</name>
    <message>
        <source>Rename a model</source>
        <translation>Modell umbenennen</translation>
    </message>
    <message numerus="yes">
        <source>Throw models away</source>
        <translation>
            <numerusform>Modell verwerfen</numerusform>
            <numerusform>Modelle verwerfen</numerusform>
        </translation>
    </message>
    <message>
        <source>Bring a model back</source>
        <translation>Modell zurückholen</translation>
    </message>
    <message>
        <source>Cannot write &quot;%1&quot;: %2.</source>
        <translation>„%1“ lässt sich nicht schreiben: %2.</translation>
    </message>
    <message>
        <source>Cannot read &quot;%1&quot;: %2.</source>
        <translation>„%1“ lässt sich nicht lesen: %2.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no sitting of this program.</source>
        <translation>„%1“ ist keine Sitzung dieses Programms.</translation>
    </message>
</context>
<context>
    <name>nuvo::TableFinder</name>
    <message>
        <source>Find a table</source>
        <translation>Tabelle suchen</translation>
    </message>
</context>
<context>
    <name>nuvo::TableTree</name>
    <message>
        <source>Tables and their fields</source>
        <translation>Tabellen und ihre Felder</translation>
    </message>
    <message>
        <source>Enter puts the name into the statement</source>
        <translation>Die Eingabetaste setzt den Namen in die Anweisung</translation>
    </message>
    <message>
        <source>A double click or Enter puts the name into the statement; it can be dragged, too</source>
        <translation>Ein Doppelklick oder die Eingabetaste setzt den Namen in die Anweisung; er lässt sich auch ziehen</translation>
    </message>
    <message>
        <source>Tables and fields</source>
        <translation>Tabellen und Felder</translation>
    </message>
    <message>
        <source>Holds</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>There are no tables.</source>
        <translation>Es gibt keine Tabellen.</translation>
    </message>
</context>
<context>
    <name>nuvo::Tablecopy</name>
    <message>
        <source>Copy &amp;Table</source>
        <translation>&amp;Tabelle kopieren</translation>
    </message>
    <message>
        <source>Copy Table as Mar&amp;kdown</source>
        <translation>Tabelle als Mar&amp;kdown kopieren</translation>
    </message>
    <message>
        <source>&amp;Sort by</source>
        <translation>&amp;Sortieren nach</translation>
    </message>
</context>
<context>
    <name>nuvo::Welcome</name>
    <message>
        <source>A table, and a question</source>
        <translation>Eine Tabelle und eine Frage</translation>
    </message>
    <message>
        <source>How much does one column go with others, how sure is that, and what is to be expected next? Drop a CSV file or an SQLite database on this window, drag one field to Y and others to X1, X2, …, and read what comes out.</source>
        <translation>Wie sehr hängt eine Spalte mit anderen zusammen, wie sicher ist das, und was ist als Nächstes zu erwarten? Ziehen Sie eine CSV-Datei oder eine SQLite-Datenbank auf dieses Fenster, ein Feld auf Y und andere auf X1, X2, …, und lesen Sie, was herauskommt.</translation>
    </message>
    <message>
        <source>&amp;Open a file</source>
        <translation>Datei &amp;öffnen</translation>
    </message>
    <message>
        <source>CSV, SQLite database or form (Ctrl+O)</source>
        <translation>CSV, SQLite-Datenbank oder Formular (Strg+O)</translation>
    </message>
    <message>
        <source>Open a &amp;server</source>
        <translation>&amp;Server öffnen</translation>
    </message>
    <message>
        <source>PostgreSQL, MySQL, ODBC; tried before it is taken</source>
        <translation>PostgreSQL, MySQL, ODBC; wird vorher getestet</translation>
    </message>
    <message>
        <source>&amp;Look at the samples</source>
        <translation>B&amp;eispiele ansehen</translation>
    </message>
    <message>
        <source>Employment, ozone, states and cement: four small tables</source>
        <translation>Beschäftigung, Ozon, Bundesstaaten und Zement: vier kleine Tabellen</translation>
    </message>
    <message>
        <source>&amp;Read the guide</source>
        <translation>&amp;Leitfaden lesen</translation>
    </message>
    <message>
        <source>What the words and the figures mean, in half an hour (F1; in English)</source>
        <translation>Was die Wörter und die Zahlen bedeuten, in einer halben Stunde (F1; auf Englisch)</translation>
    </message>
    <message>
        <source>Opened before:</source>
        <translation>Zuletzt geöffnet:</translation>
    </message>
</context>
</TS>
