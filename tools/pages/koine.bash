# Completion of koine for bash. Made by generate.py.
_koine() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]} options=
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W 'request info profiles stream get set dump diff survey simulate demo -h --help --version' -- "$current")
        return
    fi
    case $previous in
        -u | --user | --timeout | --connections | --vendor | --uid | --token | --size | --fps | --quality | --bitrate | --gov | --channel | --rtsp-port | -j | --jobs | --address | --port | --nonce-lifetime | --fault | --delay)
            :
            return
            ;;
        --password-file | --ca-file | --tls-certificate | --tls-key)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        --mode)
            mapfile -t COMPREPLY < <(compgen -W 'AUTO MOBILE ONLY_META ONLY_STATUS' -- "$current")
            return
            ;;
        --encoding)
            mapfile -t COMPREPLY < <(compgen -W 'H264 H265 MPEG4 JPEG' -- "$current")
            return
            ;;
        --transport)
            mapfile -t COMPREPLY < <(compgen -W 'TCP UDP' -- "$current")
            return
            ;;
        --model)
            mapfile -t COMPREPLY < <(compgen -W "$(koine simulate --list-models 2>/dev/null | awk 'NR > 1 { print $1 }')" -- "$current")
            return
            ;;
        --models)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            return
            ;;
        --auth)
            mapfile -t COMPREPLY < <(compgen -W 'none basic digest digest-sha256' -- "$current")
            return
            ;;
    esac
    case $command in
        request) options='-h --help -u --user --password-file --timeout --ca-file --insecure --connections --vendor --uid -v --verbose --trace --json' ;;
        info) options='-h --help -u --user --password-file --timeout --ca-file --insecure --connections --vendor --uid -v --verbose --trace --json' ;;
        profiles) options='-h --help -u --user --password-file --timeout --ca-file --insecure --connections --vendor --uid -v --verbose --trace --json' ;;
        stream) options='-h --help -u --user --password-file --timeout --ca-file --insecure --connections --vendor --uid -v --verbose --trace --mode --token --size --fps --quality --bitrate --gov --encoding --channel --transport --rtsp-port --with-credentials --uri-only --json' ;;
        get) options='-h --help -u --user --password-file --timeout --ca-file --insecure --connections --vendor --uid -v --verbose --trace --json' ;;
        set) options='-h --help -u --user --password-file --timeout --ca-file --insecure --connections --vendor --uid -v --verbose --trace --json' ;;
        dump) options='-h --help -u --user --password-file --timeout --ca-file --insecure --connections --vendor --uid -v --verbose --trace --json' ;;
        diff) options='-h --help -u --user --password-file --timeout --ca-file --insecure --connections --vendor --uid -v --verbose --trace --json' ;;
        survey) options='-h --help -j --jobs -u --user --password-file --timeout --ca-file --insecure --connections --vendor -v --verbose --trace --json' ;;
        simulate) options='-h --help --model --models --list-models --list-faults --address --port --auth -u --user --password-file --nonce-lifetime --tls-certificate --tls-key --fault -v --verbose --json' ;;
        demo) options='-h --help --delay -v --verbose --trace --json' ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    case $command in
        diff | survey)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
        get)
            mapfile -t COMPREPLY < <(compgen -W 'Login Capability Media Video Camera Notification Misc VideoAnalytics' -- "$current")
            ;;
    esac
}
complete -F _koine koine
