# Completion of vistorama-cli for fish.

# Names of layouts ("Templates") or styles ("Styles"): those of their definition files, without ".xml".
function __vistorama_cli_definitions
    set -l data $VISTORAMA_DATA
    if test -z "$data"
        set -l program (command -s vistorama-cli)
        or return
        set data (dirname (realpath $program))/../share/vistorama
    end
    for file in $data/$argv[1]/*.xml
        string replace -r '.*/(.*)\.xml$' '$1' $file
    end
end

function __vistorama_cli_destinations
    vistorama-cli destination list 2>/dev/null | cut -f 2
end

function __vistorama_cli_no_command
    test (count (commandline -opc)) -eq 1
end

# The words after the command, options with their values aside, are as many as that.
function __vistorama_cli_command_and
    set -l words (commandline -opc)
    test "$words[2]" = $argv[1]; and test (count $words) -eq $argv[2]
end

function __vistorama_cli_destination_action
    set -l words (commandline -opc)
    test "$words[2]" = destination; and test "$words[3]" = "$argv[1]"
end

set -l command complete -c vistorama-cli
$command -f
$command -n __vistorama_cli_no_command -a new -d 'Make a project'
$command -n __vistorama_cli_no_command -a deploy -d 'Write the site into a folder or send it to a server'
$command -n __vistorama_cli_no_command -a info -d 'Show the tree of galleries'
$command -n __vistorama_cli_no_command -a check -d 'Look for errors in layouts and styles'
$command -n __vistorama_cli_no_command -a relink -d 'Look for missing pictures'
$command -n __vistorama_cli_no_command -a cache -d 'Show or remove what is kept from run to run'
$command -n __vistorama_cli_no_command -a destination -d 'Store, list or remove destinations'
$command -n __vistorama_cli_no_command -a ftp-test -d 'Log in to a server and enter a directory'
$command -n __vistorama_cli_no_command -a ftp-ls -d 'List a directory of a server'
$command -n __vistorama_cli_no_command -a ftp-mkdir -d 'Make a directory on a server'
$command -n __vistorama_cli_no_command -a ftp-rename -d 'Rename a directory on a server'
$command -n __vistorama_cli_no_command -l help -d 'Print the usage'
$command -n __vistorama_cli_no_command -l version -d 'Print the version'

for each in new deploy info relink
    $command -n "__vistorama_cli_command_and $each 2" -k -a '(__fish_complete_suffix .gallery)'
end
$command -n '__fish_seen_subcommand_from new' -F
$command -n '__fish_seen_subcommand_from new' -x -l layout -a '(__vistorama_cli_definitions Templates)' -d 'Layout of all galleries'
$command -n '__fish_seen_subcommand_from new' -x -l style -a '(__vistorama_cli_definitions Styles)' -d 'Style of all galleries'
$command -n '__fish_seen_subcommand_from new' -x -l tree -a '(__fish_complete_directories)' -d 'A child gallery for each subfolder'
$command -n '__fish_seen_subcommand_from new' -r -F -l watermark -d 'Picture to lay over all pictures'
$command -n '__fish_seen_subcommand_from new' -x -l signature -d 'Text to write on all pictures'
$command -n '__fish_seen_subcommand_from new' -x -l position -a 'top-left top top-right left centre right bottom-left bottom bottom-right' -d 'Place of watermark and signature'
$command -n '__fish_seen_subcommand_from new' -x -l margin -d 'Distance from the edges in pixels'
$command -n '__fish_seen_subcommand_from new' -x -l size-class -a 'small middle large all' -d 'Pictures to mark'
$command -n '__vistorama_cli_command_and deploy 3' -a '(__fish_complete_directories)'
$command -n '__fish_seen_subcommand_from deploy' -x -l to -a '(__vistorama_cli_destinations)' -d 'Send to a stored destination'
$command -n '__fish_seen_subcommand_from deploy' -x -l directory -d 'In place of the stored directory'
$command -n '__fish_seen_subcommand_from deploy' -l leave-out-missing -d 'Publish without what is missing'
$command -n '__fish_seen_subcommand_from deploy' -l overwrite -d 'Overwrite files of others'
$command -n '__fish_seen_subcommand_from deploy' -l dry-run -d 'Say what would be sent to the server'
for each in deploy ftp-test ftp-ls ftp-mkdir ftp-rename
    $command -n "__fish_seen_subcommand_from $each" -r -F -l identity -d 'Key file to log in with by SFTP'
    $command -n "__fish_seen_subcommand_from $each" -x -l fingerprint -d 'That the server has to have'
end
$command -n '__fish_seen_subcommand_from relink' -a '(__fish_complete_directories)'
$command -n '__fish_seen_subcommand_from cache' -l size -d 'Print the bytes'
$command -n '__fish_seen_subcommand_from cache' -l clear -d 'Remove all'
$command -n '__fish_seen_subcommand_from deploy' -l quiet -d 'No progress'
$command -n '__fish_seen_subcommand_from info' -l json -d 'Print JSON'
$command -n '__fish_seen_subcommand_from info' -x -l clusters -d 'Show groups by date'
$command -n '__fish_seen_subcommand_from check' -k -a '(__fish_complete_suffix .xml)'
$command -n '__vistorama_cli_command_and destination 2' -a 'add list remove'
$command -n '__vistorama_cli_destination_action add' -l all-users -d 'For all users of the machine'
$command -n '__vistorama_cli_destination_action add' -r -F -l identity -d 'Key file to log in with by SFTP'
$command -n '__vistorama_cli_destination_action remove' -a '(__vistorama_cli_destinations)'
$command -n '__fish_seen_subcommand_from ftp-test' -l transcript -d 'Print what was said'
$command -n '__fish_seen_subcommand_from ftp-ls' -l raw -d "Print the server's own lines"
