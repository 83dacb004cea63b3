# Completion of the command tessary in fish.

set -l commands diff diff-folder convert convert-folder check restore explain info show roundtrip help

# Options and operands of several commands: "__tessary COMMAND..." is true behind one of these.
function __tessary
    set -l words (commandline -opc)
    for word in $words[2..-1]
        string match -q -- '-*' $word; and continue
        contains -- $word $argv
        return
    end
    return 1
end

complete -c tessary -f
complete -c tessary -s h -l help -d Hilfe
set -l none "not __fish_seen_subcommand_from $commands"
complete -c tessary -n $none -l version -d 'Version von Tessary'
complete -c tessary -n $none -a diff -d 'zwei Versionen eines Berichts vergleichen'
complete -c tessary -n $none -a diff-folder -d 'alle Berichte zweier Ordner vergleichen'
complete -c tessary -n $none -a convert -d 'einen Bericht konvertieren'
complete -c tessary -n $none -a convert-folder -d 'alle Berichte eines Ordners konvertieren'
complete -c tessary -n $none -a check -d 'prüfen, wie weit die Differenz-Dateien jeden Bericht bringen'
complete -c tessary -n $none -a restore -d 'Berichte aus den Sicherungen zurückholen'
complete -c tessary -n $none -a explain -d 'Ursache und Abhilfe zu einer Meldung anzeigen'
complete -c tessary -n $none -a info -d 'Version und Referenz von Berichten anzeigen'
complete -c tessary -n $none -a show -d 'die Elemente eines Berichts als Baum anzeigen'
complete -c tessary -n $none -a roundtrip -d 'einen Bericht lesen und wieder schreiben'
complete -c tessary -n $none -a help -d 'einen Befehl erklären'

complete -c tessary -n '__tessary diff diff-folder' -l verify -d 'die Differenz nachprüfen'
complete -c tessary -n '__tessary diff diff-folder' -l strict -d 'mit --verify: mit 1 enden, wenn etwas nicht entsteht'
complete -c tessary -n '__tessary convert convert-folder' -l backup -x -a '(__fish_complete_directories)' -d 'Ordner für die Sicherungen'
complete -c tessary -n '__tessary check convert-folder' -l omit -r -F -d 'Bericht dieses Dateinamens auslassen'
complete -c tessary -n '__tessary convert convert-folder' -l on-backup-failure -x -a 'abort continue' -d 'Antwort, wenn eine Sicherung misslingt'
complete -c tessary -n '__tessary convert convert-folder restore' -l dry-run -d 'nur zeigen, was geschähe'
complete -c tessary -n '__tessary convert convert-folder' -l journal -r -F -d 'jede Änderung als JSON-Zeile schreiben'
complete -c tessary -n '__tessary diff diff-folder convert convert-folder' -l html -r -F -d 'Protokoll auch als HTML-Seite schreiben'
complete -c tessary -n '__tessary diff diff-folder convert convert-folder check' -l json -d 'Ergebnis als ein JSON-Objekt ausgeben'
complete -c tessary -n '__tessary restore' -l oldest -d 'die älteste Sicherung, also das Original'
complete -c tessary -n '__tessary diff diff-folder convert convert-folder check restore explain info show roundtrip' -l quiet -d 'nur Fehler und Warnungen ausgeben'

complete -c tessary -n '__tessary diff convert restore info show roundtrip' -F
complete -c tessary -n '__tessary diff-folder convert-folder check' -a '(__fish_complete_directories)'
complete -c tessary -n '__tessary help' -a "$commands"
