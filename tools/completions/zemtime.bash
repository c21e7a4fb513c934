# bash completion for zemtime

# Behind the options of measure stands a command of any kind, at COMP_WORDS[$1].
_zemtime_command()
{
    local complete
    for complete in _comp_command_offset _command_offset; do
        if declare -F $complete >/dev/null; then
            $complete "$1"
            return
        fi
    done
    # Without that package: the names of commands, then those of files.
    if [ "$COMP_CWORD" -eq "$1" ]; then
        mapfile -t COMPREPLY < <(compgen -A command -- "${COMP_WORDS[COMP_CWORD]}")
    fi
}

# Where the command begins that measure is to run, or the option or argument that is written now.
_zemtime_command_at()
{
    local at=2
    while [ "$at" -lt "$COMP_CWORD" ]; do
        case ${COMP_WORDS[at]} in
            --)
                at=$((at + 1))
                break
                ;;
            -n | --runs)
                at=$((at + 2))
                [ "${COMP_WORDS[at - 1]}" != = ] || at=$((at + 1))
                ;;
            -*) at=$((at + 1)) ;;
            *) break ;;
        esac
    done
    echo "$at"
}

_zemtime()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]} words=

    # The shell takes --gap=1h for three words.
    if [ "$current" = = ]; then
        current=
    elif [ "$previous" = = ]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        words='spans lines convert now measure --help --version'
    elif [ "$command" = measure ]; then
        local at
        at=$(_zemtime_command_at)
        if [ "$at" -gt "$COMP_CWORD" ]; then
            return
        elif [[ $at -lt $COMP_CWORD || $previous == -- || $current != -* ]]; then
            _zemtime_command "$at"
            return
        fi
        words='--runs -- --help --version'
    else
        # With no words the shell completes the names of files.
        case $command:$previous:$current in
            lines:--from:* | lines:--to:*) words='now -1h -1d' ;;
            spans:--gap:*) words='1m 5m 30m 1h 1d' ;;
            *:--assume:* | spans:--zone:*) words='utc local' ;;
            spans:--offset:* | spans:--jobs:* | spans:-j:*) ;;
            *:--input:*)
                words='iso ctime syslog access dmy klog audit logcat spark compact epoch json logfmt'
                ;;
            *:--year:* | *:--key:*) ;;
            convert:--to:*) words='rfc3339 text utc local seconds nanoseconds ntp duration compact' ;;
            spans:*:-*)
                words='--gap --assume --year --input --key --explain --overlap --merge --chart --no-chart'
                words+=' --json --local --utc --zone --offset --jobs --help --version'
                ;;
            lines:*:-*) words='--from --to --scan --assume --year --input --key --help --version' ;;
            convert:*:-*) words='--to --assume --year --json --help --version' ;;
            now:*:-*) words='--help --version' ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -o default -F _zemtime zemtime
