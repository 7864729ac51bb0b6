# Completion of glimra, glimra-replay and glimra-strip for bash. What options there are, the program itself says.

_glimra_words() {
    case ${1##*/}:$3 in
        glimra:--keyboard) "$1" --help 2>/dev/null | sed -nE 's/.*--keyboard NAME:\{([^}]*)\}.*/\1/p' | tr , ' ' ;;
        glimra:--capture) echo auto screen window ;;
        glimra:--profile) echo 1 2 3 4 5 6 7 8 9 ;;
        glimra:--fast-response | glimra:--end-stale-effects) echo on off ;;
        glimra:doctor | glimra:--status) echo --json ;;
        glimra-replay:--only)
            echo led log system-log process sound alert panel modal window url activity frame quit dump
            ;;
        *:--settings | *:--trace | *:--record | *:--sdk | *:--film | *:--install-addon) ;; # files
        *)
            case ${1##*/}:$2 in
                *:-*) "$1" --help 2>/dev/null | grep -oE -e '(^ +|,)--[a-z][a-z-]*' | tr -d ' ,' ;;
                glimra:*) echo doctor ;;
                glimra-strip:*) echo send frame calibrate off demo ;;
            esac
            ;;
    esac
}

_glimra() {
    COMPREPLY=($(compgen -W "$(_glimra_words "$1" "$2" "$3")" -- "$2"))
}

# Where none of these words fits, bash offers files.
complete -o bashdefault -o default -F _glimra glimra glimra-replay glimra-strip
