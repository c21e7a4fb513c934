# fish completion for zemtime

function __zemtime_is --description 'Whether this is the subcommand, empty for none yet'
    set -l words (commandline -opc)
    test "$words[2]" = "$argv[1]"
end

function __zemtime_measured --description 'The command that measure is to run, if it has begun'
    __zemtime_is measure; or return
    set -l words (commandline -opc) (commandline -ct)
    argparse --stop-nonopt h/help version n/runs= -- $words[3..-1] 2>/dev/null; or return
    set -q argv[1]; and not string match -q -- '-*' $argv[1]; or return
    printf '%s\0' $argv
end

function __zemtime_complete_measured
    __fish_complete_subcommand --commandline (__zemtime_measured | string split0)
end

complete -c zemtime -f
complete -c zemtime -n 'not __zemtime_measured >/dev/null' -s h -l help -d 'show help'
complete -c zemtime -n 'not __zemtime_measured >/dev/null' -l version -d 'show the version'

set -l group 'group the timestamped lines of logs into spans of activity'
set -l measure 'run a command and show how long it takes'
complete -c zemtime -n '__zemtime_is ""' -a spans -d $group
complete -c zemtime -n '__zemtime_is ""' -a lines -d 'print the lines of logs in a window of time'
complete -c zemtime -n '__zemtime_is ""' -a convert -d 'show instants and durations in other forms'
complete -c zemtime -n '__zemtime_is ""' -a now -d 'show the clocks and the UTC offset of this process'
complete -c zemtime -n '__zemtime_is ""' -a measure -d $measure

complete -c zemtime -n '__zemtime_is spans' -F
complete -c zemtime -n '__zemtime_is spans' -l gap -x -a '1m 5m 30m 1h 1d' \
    -d 'events less than this apart share a span'
complete -c zemtime -n '__zemtime_is spans' -l explain -d 'show how the files are read'
complete -c zemtime -n '__zemtime_is spans' -l overlap -d 'show when files were active at once'
complete -c zemtime -n '__zemtime_is spans' -l merge -d 'merge what --json printed'
complete -c zemtime -n '__zemtime_is spans' -l chart -d 'draw the events over time'
complete -c zemtime -n '__zemtime_is spans' -l no-chart -d 'do not draw them'
complete -c zemtime -n '__zemtime_is spans' -l json -d 'print one JSON object a line'
complete -c zemtime -n '__zemtime_is spans' -l local -d 'show local times'
complete -c zemtime -n '__zemtime_is spans' -l utc -d 'show times in UTC'
complete -c zemtime -n '__zemtime_is spans' -l zone -x -a 'utc local' -d 'show times in this zone'
complete -c zemtime -n '__zemtime_is spans' -l offset -x -d 'show times at this offset'
complete -c zemtime -n '__zemtime_is spans' -s j -l jobs -x -d 'parts of a file read at once'

complete -c zemtime -n '__zemtime_is lines' -F
complete -c zemtime -n '__zemtime_is lines' -l from -x -a 'now -1h -1d' -d 'the window begins'
complete -c zemtime -n '__zemtime_is lines' -l to -x -a 'now -1h -1d' -d 'the window has ended'
complete -c zemtime -n '__zemtime_is lines' -l scan -d 'read files whole'

for command in spans lines
    set -l is "__zemtime_is $command"
    complete -c zemtime -n $is -l assume -x -a 'utc local' -d 'the zone of times without one'
    complete -c zemtime -n $is -l year -x -d 'the year of the first time without one'
    complete -c zemtime -n $is -l input -x -d 'the form of times' \
        -a 'iso ctime syslog access dmy klog audit logcat spark compact epoch json logfmt'
    complete -c zemtime -n $is -l key -x -d 'the key whose value is the time'
end

complete -c zemtime -n '__zemtime_is convert' -l assume -x -a 'utc local' \
    -d 'the zone of times without one'
complete -c zemtime -n '__zemtime_is convert' -l year -x -d 'of times without one'
complete -c zemtime -n '__zemtime_is convert' -l json -d 'print one JSON object a line'
complete -c zemtime -n '__zemtime_is convert' -l to -x \
    -a 'rfc3339 text utc local seconds nanoseconds ntp duration compact' -d 'print this form alone'

complete -c zemtime -n '__zemtime_is measure; and not __zemtime_measured >/dev/null' \
    -s n -l runs -x -d 'how many times to run it'
complete -c zemtime -n '__zemtime_measured >/dev/null' -a '(__zemtime_complete_measured)'
