#compdef zemtime
# zsh completion for zemtime

local context state state_descr line
typeset -A opt_args
local -a common=(
    '(- *)'{-h,--help}'[show help]'
    '(- *)--version[show the version]'
)

local -a times=(
    '--assume=[the zone of times without one]:zone:(utc local)'
    '--year=[the year of the first time without one]:year: '
    '--input=[the form of times]:form:(iso ctime syslog access dmy klog audit logcat spark compact epoch json logfmt)'
    '--key=[the key whose value is the time]:name: '
)

_arguments -C $common '1:command:->command' '*:: :->arguments' && return

if [[ $state == command ]]; then
    local -a commands=(
        'spans:group the timestamped lines of logs into spans of activity'
        'lines:print the lines of logs in a window of time'
        'convert:show instants and durations in other forms'
        'now:show the clocks and the UTC offset of this process'
        'measure:run a command and show how long it takes'
    )
    _describe command commands
    return
fi

case $words[1] in
    spans)
        _arguments -s -S $common \
            '--gap=[events less than this apart share a span]:duration:(1m 5m 30m 1h 1d)' \
            $times \
            '--explain[show how the files are read]' \
            '--overlap[also show when files were active at once]' \
            '--merge[merge what --json printed]' \
            '--chart[draw the events over time]' \
            '--no-chart[do not draw them]' \
            '--json[print one JSON object a line]' \
            '--local[show local times]' \
            '--utc[show times in UTC]' \
            '--zone=[show times in this zone]:zone:(utc local)' \
            '--offset=[show times at this offset]:offset, such as +01\:00: ' \
            '(-j --jobs)'{-j+,--jobs=}'[parts of a file read at once]:number: ' \
            '*:file:_files'
        ;;
    lines)
        _arguments -S $common \
            '--from=[the first time of the window]:time:(now -1h -1d)' \
            '--to=[the first time behind the window]:time:(now -1h -1d)' \
            '--scan[read files whole]' \
            $times \
            '*:file:_files'
        ;;
    convert)
        _arguments -S $common \
            '--to=[print this form alone]:form:(rfc3339 text utc local seconds nanoseconds ntp duration compact)' \
            '--assume=[the zone of times without one]:zone:(utc local)' \
            '--year=[of times without one]:year: ' \
            '--json[print one JSON object a line]' \
            '*:timestamp or duration: '
        ;;
    now)
        _arguments $common
        ;;
    measure)
        _arguments -S $common \
            '(-n --runs)'{-n+,--runs=}'[how many times to run it]:number: ' \
            '(-):command:_command_names -e' \
            '*:: :_normal'
        ;;
esac
