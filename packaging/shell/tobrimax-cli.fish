# Completions of tobrimax-cli for fish.

# Whether the words before the cursor are exactly these, or none.
function __tobrimax_cli_at
    set -l words (commandline -poc)
    test "$words[2..]" = "$argv"
end

# Whether the words before the cursor begin with these.
function __tobrimax_cli_in
    set -l words (commandline -poc)
    set -l last (math 1 + (count $argv))
    test "$words[2..$last]" = "$argv"
end

# Whether behind the command, in the words from the second on, there are fewer operands than the first word says.
function __tobrimax_cli_wants
    __tobrimax_cli_in $argv[2..]
    or return
    set -l valued -o -p -l --out --platform --round-corner --border --border-color --compress --catalogue --jobs --format --size --fit --padding --small --proof \
        --svg-limit --background --layout --name --dark --tinted --foreground --monochrome
    set -l words (commandline -poc)
    set -l given 0
    set -l is_value 0
    set -l is_ended 0
    for word in $words[(math 1 + (count $argv))..]
        if test $is_value = 1
            set is_value 0
        else if test $is_ended = 0; and test "$word" = --
            set is_ended 1
        else if test $is_ended = 0; and contains -- "$word" $valued
            set is_value 1
        else if test $is_ended = 1; or not string match -q -- '-*' "$word"
            set given (math $given + 1)
        end
    end
    test $given -lt $argv[1]
end

# The names of layouts, each with its title.
function __tobrimax_cli_layouts
    tobrimax-cli layouts 2>/dev/null | string replace -r '  +' '\t'
end

# The folders that the value of an option may mean, which stands behind the option or behind its "=".
function __tobrimax_cli_folders
    __fish_complete_directories (commandline -ct | string replace -r '^--[^=]*=' '')
end

complete -c tobrimax-cli -f
complete -c tobrimax-cli -s h -l help -d 'show help and exit'
complete -c tobrimax-cli -n __tobrimax_cli_at -s V -l version -d 'print the version and exit'
complete -c tobrimax-cli -n __tobrimax_cli_at -a generate -d 'write the icon sets of pictures'
complete -c tobrimax-cli -n __tobrimax_cli_at -a layouts -d 'list the layouts for projects'
complete -c tobrimax-cli -n __tobrimax_cli_at -a icns -d 'list, extract and make icns files'
complete -c tobrimax-cli -n __tobrimax_cli_at -a custom-icon -d 'give files and folders icons of their own'
complete -c tobrimax-cli -n __tobrimax_cli_at -a export -d 'write a picture in one of six formats'

set -l command
for command in generate 'icns make'
    set -l condition "__tobrimax_cli_in $command"
    complete -c tobrimax-cli -n $condition -x -l round-corner -d 'corner radius as a fraction of the side, 0 to 1'
    complete -c tobrimax-cli -n $condition -x -l border -d 'border width as a fraction of the width, 0 to 1'
    complete -c tobrimax-cli -n $condition -x -l border-color -d '#RGB, #RRGGBB, #RRGGBBAA or a name'
    complete -c tobrimax-cli -n $condition -x -l background -d 'an opaque colour under the icons'
    complete -c tobrimax-cli -n $condition -r -F -l small -d 'a picture for icons of up to as many pixels as stand behind its colon'
end

for command in generate 'icns make' export
    set -l condition "__tobrimax_cli_in $command"
    complete -c tobrimax-cli -n $condition -x -l fit -a 'stretch contain cover' -d 'how a picture of another shape is laid on its icon'
    complete -c tobrimax-cli -n $condition -x -l padding -d 'free margin as a fraction of the shorter side, below 0.5'
end

for command in generate 'icns make' export
    set -l condition "__tobrimax_cli_in $command"
    complete -c tobrimax-cli -n $condition -x -l svg-limit -d 'how many seconds an SVG picture may take'
end

set -l condition '__tobrimax_cli_in generate'
complete -c tobrimax-cli -n '__tobrimax_cli_wants 100000 generate' -F
complete -c tobrimax-cli -n $condition -x -s o -l out -a '(__tobrimax_cli_folders)' -d 'the folder that the sets go into'
complete -c tobrimax-cli -n $condition -x -s p -l platform -a 'iphone ipad universal watch mac android all' -d 'whose icons to make'
complete -c tobrimax-cli -n $condition -r -F -s l -l layout -a '(__tobrimax_cli_layouts)' -d 'write icons into a project'
complete -c tobrimax-cli -n $condition -x -l name -d 'the name of the app'
complete -c tobrimax-cli -n $condition -r -F -l dark -d 'the picture for dark icons'
complete -c tobrimax-cli -n $condition -r -F -l tinted -d 'the picture for tinted icons'
complete -c tobrimax-cli -n $condition -r -F -l foreground -d 'the front layer of icons for Android'
complete -c tobrimax-cli -n $condition -r -F -l monochrome -d 'the shape of themed icons'
complete -c tobrimax-cli -n $condition -x -l compress -a 'fast best' -d 'how PNG files are compressed'
complete -c tobrimax-cli -n $condition -r -F -l catalogue -d 'icon names and sizes instead of the built-in ones'
complete -c tobrimax-cli -n $condition -x -l jobs -d 'how many of several pictures at once'
complete -c tobrimax-cli -n $condition -l dry-run -d 'list what would be written, and write nothing'
complete -c tobrimax-cli -n $condition -l check -d 'compare the folder with what would be written'
complete -c tobrimax-cli -n $condition -l watch -d 'make the icons again whenever a file changes'
complete -c tobrimax-cli -n $condition -r -F -l proof -d 'show the icons on a page, HTML or PNG'
complete -c tobrimax-cli -n $condition -l open -d 'open the folder in the file browser afterwards'
complete -c tobrimax-cli -n $condition -s q -l quiet -d 'print nothing but warnings and errors'
complete -c tobrimax-cli -n $condition -s v -l verbose -d 'list every file, and show the diagnostic log'
complete -c tobrimax-cli -n $condition -l json -d 'print one JSON document'
complete -c tobrimax-cli -n $condition -l timings -d 'tell how long each stage of the work took'

complete -c tobrimax-cli -n '__tobrimax_cli_wants 1 layouts' -F -a '(__tobrimax_cli_layouts)'
complete -c tobrimax-cli -n '__tobrimax_cli_in layouts' -l json -d 'print one JSON document'

set condition '__tobrimax_cli_at icns'
complete -c tobrimax-cli -n $condition -a list -d 'print what an icns file holds'
complete -c tobrimax-cli -n $condition -a extract -d 'write each picture of an icns file as a PNG file'
complete -c tobrimax-cli -n $condition -a make -d 'write an icns file of one picture'

complete -c tobrimax-cli -n '__tobrimax_cli_wants 1 icns list' -F
complete -c tobrimax-cli -n '__tobrimax_cli_in icns list' -r -F -l proof -d 'show the pictures on a page, HTML or PNG'
complete -c tobrimax-cli -n '__tobrimax_cli_in icns list' -l json -d 'print one JSON document'

set condition '__tobrimax_cli_in icns extract'
complete -c tobrimax-cli -n '__tobrimax_cli_wants 1 icns extract' -F
complete -c tobrimax-cli -n $condition -x -s o -l out -a '(__tobrimax_cli_folders)' -d 'the folder that the files go into'

complete -c tobrimax-cli -n '__tobrimax_cli_wants 1 icns make' -F
complete -c tobrimax-cli -n '__tobrimax_cli_in icns make' -r -F -s o -l out -d 'the file to write'

set condition '__tobrimax_cli_at custom-icon'
complete -c tobrimax-cli -n $condition -a set -d 'make an icns file the icon of a file or folder'
complete -c tobrimax-cli -n $condition -a remove -d 'take the icon off a file or folder'

set condition '__tobrimax_cli_in custom-icon set'
complete -c tobrimax-cli -n '__tobrimax_cli_wants 2 custom-icon set' -F
complete -c tobrimax-cli -n $condition -l apple-double -d 'keep forks in AppleDouble files beside the items'
complete -c tobrimax-cli -n $condition -l compatibility -d 'also store what old systems show'
complete -c tobrimax-cli -n $condition -l create -d 'make an empty file where there is none'

complete -c tobrimax-cli -n '__tobrimax_cli_wants 1 custom-icon remove' -F
complete -c tobrimax-cli -n '__tobrimax_cli_in custom-icon remove' -l apple-double -d 'keep forks in AppleDouble files beside the items'

set condition '__tobrimax_cli_in export'
complete -c tobrimax-cli -n '__tobrimax_cli_wants 1 export' -F
complete -c tobrimax-cli -n $condition -x -l format -a 'jpeg tiff bmp gif png jpeg2000' -d 'the format to write'
complete -c tobrimax-cli -n $condition -r -F -s o -l out -d 'the file to write'
complete -c tobrimax-cli -n $condition -x -l size -d 'width and height in pixels, such as 640x480'
