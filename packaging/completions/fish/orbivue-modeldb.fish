# SPDX-License-Identifier: MIT
# fish completion for orbivue-modeldb(1)
set -l commands import export remove list check backup restore upgrade token serve
set -l always complete -c orbivue-modeldb
set -l first $always -n "not __fish_seen_subcommand_from $commands"

$always -f
$always -l store -r -F -d 'the store: a file, or postgresql://...'
$always -s h -l help -d 'print a summary'
$always -l version -d 'print the version'

$first -a import -d 'add models'
$first -a export -d 'write models into a folder'
$first -a remove -d 'remove models, or a group'
$first -a list -d 'list groups or models'
$first -a check -d 'look for damage'
$first -a backup -d 'copy the store into one file'
$first -a restore -d 'make a store from a backup'
$first -a upgrade -d 'bring an older store up to date'
$first -a token -d 'make, list and void tokens'
$first -a serve -d 'serve the store by HTTP'

$always -n '__fish_seen_subcommand_from import backup restore' -F
$always -n '__fish_seen_subcommand_from import export remove' -l group -x -d 'the group'

set -l import $always -n '__fish_seen_subcommand_from import'
$import -l previews -d 'draw a preview of each model'
$import -l verbose -d 'name each model that is in the store'

$always -n '__fish_seen_subcommand_from export' -l into -x -a '(__fish_complete_directories)' -d 'where the files go'
$always -n '__fish_seen_subcommand_from list' -l json -d 'print JSON'
$always -n '__fish_seen_subcommand_from check' -l full -d 'compare all bytes with their hashes'
$always -n '__fish_seen_subcommand_from restore' -l forget-tokens -d "leave out the backup's tokens"

# The tokens have a list, too.
set -l list $always -n '__fish_seen_subcommand_from list; and not __fish_seen_subcommand_from token'
$list -l group -x -d 'the group'
$list -l search -x -d 'models whose names hold the text'

$always -n '__fish_seen_subcommand_from token; and not __fish_seen_subcommand_from create list revoke' -a 'create list revoke'
$always -n '__fish_seen_subcommand_from create' -l rights -x -a '(__fish_append , read upload remove)' -d 'what the token allows'

set -l serve $always -n '__fish_seen_subcommand_from serve'
$serve -l listen -x -d 'where to listen'
$serve -l private -d 'nothing is told without a token'
$serve -l open-uploads -d 'uploads need no token; on this machine alone'
$serve -l base-url -x -d 'the public address, behind a proxy'
$serve -l cache-dir -x -a '(__fish_complete_directories)' -d 'where files lie that are asked for often'
$serve -l cache-size -x -d 'what they may take together'
$serve -l workers -x -d 'connections that read the store'
$serve -l threads -x -d 'threads that read requests and send answers'
$serve -l trust-proxy -x -d 'proxies whose X-Forwarded-For names the client'
$serve -l max-upload -x -d 'the longest upload'
$serve -l group-models -x -d 'uploads fill a group up to this'
$serve -l upload-rate -x -d 'uploads a minute of one address'
$serve -l connections -x -d 'connections at once'
$serve -l no-previews -d 'draw no pictures of models'
$serve -l quiet -d 'write no line for each request'
