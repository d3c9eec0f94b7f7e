# Completions of brivane-ctl for fish.

function __brivane_ctl_displays
    brivane-ctl list 2>/dev/null | string replace --filter --regex '^\[(\d+)\] (.*)' '$1\t$2'
end

function __brivane_ctl_at --argument-names count command
    set -l words (commandline --tokenize --cut-at-cursor --current-process)
    test (count $words) -eq $count; and test "$words[2]" = "$command"
end

complete -c brivane-ctl -f
complete -c brivane-ctl -n __fish_use_subcommand -a up -d 'One step up on the display under the pointer'
complete -c brivane-ctl -n __fish_use_subcommand -a down -d 'One step down on the display under the pointer'
complete -c brivane-ctl -n __fish_use_subcommand -a set -d 'Set a level'
complete -c brivane-ctl -n __fish_use_subcommand -a get -d 'Print the level'
complete -c brivane-ctl -n __fish_use_subcommand -a list -d 'Print the displays and their levels'
complete -c brivane-ctl -n __fish_use_subcommand -a menu -d 'Open the menu at the pointer'
complete -c brivane-ctl -n __fish_use_subcommand -l help -d 'Print the commands'
complete -c brivane-ctl -n __fish_use_subcommand -l version -d 'Print the version'
complete -c brivane-ctl -n '__brivane_ctl_at 3 set' -a '(__brivane_ctl_displays)'
complete -c brivane-ctl -n '__brivane_ctl_at 2 get' -a '(__brivane_ctl_displays)'
complete -c brivane-ctl -n '__brivane_ctl_at 2 list' -l json -d 'As a JSON array'
complete -c brivane-ctl -n '__brivane_ctl_at 2 menu' -l start -d 'Start Brivane if it isn’t running'
