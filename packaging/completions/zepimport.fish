# Completes commands, options and choices of zepimport in fish.

function __zepimport_command
    set -l words (commandline -opc)
    test (count $words) -gt 1; and contains -- $words[2] $argv
end

function __zepimport_no_command
    test (count (commandline -opc)) -eq 1
end

complete -c zepimport -n __zepimport_no_command -f
complete -c zepimport -n __zepimport_no_command -a laps -d 'List the laps of recordings'
complete -c zepimport -n __zepimport_no_command -a info -d 'Show everything known about a lap'
complete -c zepimport -n __zepimport_no_command -a channels -d 'Show the channels of laps'
complete -c zepimport -n __zepimport_no_command -a compare -d 'Show where one lap is faster than another'
complete -c zepimport -n __zepimport_no_command -a export -d 'Write laps to CSV, JSON or MAT files'
complete -c zepimport -n __zepimport_no_command -a report -d 'Write a web page with charts of laps'
complete -c zepimport -n __zepimport_no_command -a check -d 'Check recordings for damage'
complete -c zepimport -n __zepimport_no_command -a formats -d 'List the plug-ins and their formats'
complete -c zepimport -n __zepimport_no_command -l version -d 'Show the versions'
complete -c zepimport -s h -l help -d 'Show the options'

set -l every laps info channels compare export report check formats
set -l files laps info channels compare export report
set -l batch laps info channels export check
complete -c zepimport -n "__zepimport_command $every" -s v -l verbose -d 'Show all messages from the plug-ins'
complete -c zepimport -n "__zepimport_command $every" -l plugin -r -d 'Plug-in, or folder of plug-ins, to use'
complete -c zepimport -n "__zepimport_command $files check" -s r -l recursive -d 'Include recordings in subfolders'
complete -c zepimport -n "__zepimport_command $files" -l lap -x -a 'best last all' -d 'Laps by number, best, last or all'
complete -c zepimport -n "__zepimport_command $batch compare report" -s q -l quiet -d 'Show no progress bar and no summary'
complete -c zepimport -n "__zepimport_command $batch" -s j -l jobs -x -d 'Files to process in parallel'
complete -c zepimport -n '__zepimport_command laps info channels compare check formats' -l json -d 'Print JSON'
complete -c zepimport -n '__zepimport_command laps' -l best -d 'Show one row per file'
complete -c zepimport -n '__zepimport_command channels export report' -l channels -x -a 'driver engine position tyres' -d 'Channels by name, or a preset'
complete -c zepimport -n '__zepimport_command compare' -l grid -x -d 'Metres between the points compared'
complete -c zepimport -n '__zepimport_command compare export report' -s o -l output -r -d 'What to write, or -'
complete -c zepimport -n '__zepimport_command export' -l format -x -a 'csv json mat' -d 'Format of the files'
complete -c zepimport -n '__zepimport_command export' -l split -d 'Write one file per lap'
complete -c zepimport -n '__zepimport_command compare export report' -l force -d 'Replace existing files'
complete -c zepimport -n '__zepimport_command export' -l sep -x -a tab -d 'Separator of CSV'
complete -c zepimport -n '__zepimport_command export' -l units -x -a 'header row none' -d 'Place of the units of CSV'
complete -c zepimport -n '__zepimport_command laps info channels compare' -l units -x -a 'metric imperial raw' -d 'Units of tables'
complete -c zepimport -n '__zepimport_command laps' -l sort -x -a 'time date' -d 'With --best: sort the rows'
complete -c zepimport -n '__zepimport_command export' -l time -d 'Add the time of each tick to CSV'
