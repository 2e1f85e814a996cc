# SPDX-License-Identifier: GPL-3.0-or-later
# fish completion for tavrin-cli

function __tavrin_cli_presets
    tavrin-cli presets list 2>/dev/null | string replace -r '  \(shipped\)$' ''
end

function __tavrin_cli_logs
    # Paths of saved logs stand behind date and number of files; rollback takes their names, too.
    tavrin-cli logs 2>/dev/null | string replace -r '^.*/' '' | string replace -r '\.renameLog$' ''
end

set -l verbs preview rename rollback logs recover tags table presets rules archive
set -l batch preview rename
set -l recipes preview rename presets
set -l long preview rename rollback tags
set -l runs rename rollback

complete -c tavrin-cli -n __fish_use_subcommand -s V -l version -d 'Show the version'
complete -c tavrin-cli -f -n __fish_use_subcommand -a preview -d 'Show what each file would be called'
complete -c tavrin-cli -f -n __fish_use_subcommand -a rename -d 'Rename files'
complete -c tavrin-cli -f -n __fish_use_subcommand -a rollback -d 'Undo a past run'
complete -c tavrin-cli -f -n __fish_use_subcommand -a logs -d 'List the rollback logs'
complete -c tavrin-cli -f -n __fish_use_subcommand -a recover -d 'Make rollback logs of interrupted runs'
complete -c tavrin-cli -f -n __fish_use_subcommand -a tags -d 'Show the metadata that the rules see'
complete -c tavrin-cli -f -n __fish_use_subcommand -a table -d 'Show the rows of a CSV file'
complete -c tavrin-cli -f -n __fish_use_subcommand -a presets -d 'List, show, save, delete, export, import'
complete -c tavrin-cli -f -n __fish_use_subcommand -a rules -d 'List the kinds of rules'
complete -c tavrin-cli -f -n __fish_use_subcommand -a archive -d 'Show a log or preset as JSON'
complete -c tavrin-cli -f -n __fish_use_subcommand -a help -d 'Explain a verb'
complete -c tavrin-cli -f -n '__fish_seen_subcommand_from help' -a "$verbs"
complete -c tavrin-cli -f -n '__fish_seen_subcommand_from logs recover rules'

complete -c tavrin-cli -n "__fish_seen_subcommand_from $verbs" -l json -d 'Print one JSON document'
complete -c tavrin-cli -s h -l help -d 'Explain the verb'

complete -c tavrin-cli -n "__fish_seen_subcommand_from $recipes" -x -l rule -d 'A kind of rule and its settings' \
    -a 'Text Counter Original Date ImageTag AudioTag VideoTag CSVTag RegExTag Separator'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $recipes" -r -l preset -d 'The rules of a preset' \
    -a '(__tavrin_cli_presets)'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $recipes" -r -l recipe -d 'A JSON file'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $recipes" -x -l extension -d 'What becomes of extensions'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $recipes" -l compliance -d 'Keep ":" and "/"'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $recipes" -l leading-period -d 'Record that names may start with a period'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $recipes" -l duplicates-critical -d 'Duplicates are critical'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $recipes" -l keep-unchanged -d 'Leave unchanged names alone'

complete -c tavrin-cli -n "__fish_seen_subcommand_from $batch" -r -l files-from -d 'Read more paths from a file'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $batch" -s 0 -l null -d 'Paths end in NUL bytes'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $batch" -x -l sort -d 'Order of the files' \
    -a 'fileName targetName creationDate modificationDate size error'

complete -c tavrin-cli -n "__fish_seen_subcommand_from $runs" -s y -l yes -d 'Do it without asking'
complete -c tavrin-cli -n '__fish_seen_subcommand_from rename' -l no-undo -d 'Rename even when it cannot be undone'
complete -c tavrin-cli -n '__fish_seen_subcommand_from rollback' -a '(__tavrin_cli_logs)'
complete -c tavrin-cli -n '__fish_seen_subcommand_from rollback' -l last -d 'The newest log with something to undo'
complete -c tavrin-cli -n '__fish_seen_subcommand_from rollback' -l check -d 'Only show what could be undone'
complete -c tavrin-cli -n '__fish_seen_subcommand_from rollback' -l reverse -d 'From the last record to the first'

complete -c tavrin-cli -n "__fish_seen_subcommand_from $long" -l jsonl -d 'Print one JSON object a line'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $long" -s q -l quiet -d 'Print only problems'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $long" -s v -l verbose -d 'Show whole paths'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $long" -x -l color -a 'auto always never' -d 'Colour names by rule'
complete -c tavrin-cli -n "__fish_seen_subcommand_from $long" -x -l progress -a 'auto always never' -d 'Show progress'

complete -c tavrin-cli -f -n '__fish_seen_subcommand_from presets; and not __fish_seen_subcommand_from list show save delete export import' \
    -a 'list show save delete export import'
complete -c tavrin-cli -n '__fish_seen_subcommand_from show delete export' -a '(__tavrin_cli_presets)'
