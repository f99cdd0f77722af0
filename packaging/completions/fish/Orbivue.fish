# SPDX-License-Identifier: MIT
# fish completion for Orbivue(1)
complete -c Orbivue -k -a '(__fish_complete_suffix .3ds .zip .obj .orv)'
complete -c Orbivue -s c -l convert -d 'convert to POV-Ray, without a window'
complete -c Orbivue -s h -l help -d 'print a summary'
complete -c Orbivue -l version -d 'print the version'
