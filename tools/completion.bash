# bash completion for zemtime

_zemtime()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]} words=

    if [ "$COMP_CWORD" -eq 1 ]; then
        words='spans convert now measure --help --version'
    else
        # With no words the shell completes the names of files.
        case $command:$previous:$current in
            spans:--gap:*) words='1m 5m 30m 1h 1d' ;;
            spans:--assume:*) words='utc local' ;;
            spans:--offset:*) ;;
            convert:--to:*) words='text utc local seconds nanoseconds ntp' ;;
            spans:*:-*)
                words='--gap --assume --overlap --chart --no-chart --json --local --utc --offset'
                words+=' --help --version'
                ;;
            convert:*:-*) words='--to --help --version' ;;
            measure:measure:-*) words='-n -- --help --version' ;;
            now:*:-*) words='--help --version' ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -o default -F _zemtime zemtime
