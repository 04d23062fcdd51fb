# Completion for bash. The program lists the candidates for its last word; without any, bash offers files.

_snmpsubagent_complete() {
    local words=() word glue="" i current
    COMPREPLY=()
    # Bash splits NAME=VALUE into three words. The program needs one, without a quotation mark that is still open.
    for ((i = 1; i <= COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ ($word == = || -n $glue) && ${#words[@]} -gt 0 ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
        [[ $word == = ]] && glue=1 || glue=""
    done
    current=${words[-1]}
    words[-1]=${current#[\"\']}
    mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" --complete "${words[@]}" 2>/dev/null)

    # Bash replaces only what follows the last "=".
    if [[ $current == *=* && $COMP_WORDBREAKS == *=* && $current != [\"\']* ]]; then
        COMPREPLY=("${COMPREPLY[@]#"${current%"${current##*=}"}"}")
    fi
    if [[ ${#COMPREPLY[@]} -gt 0 && ${COMPREPLY[0]} == *[=.\ ,] ]]; then
        compopt -o nospace 2>/dev/null
    fi
}
complete -o default -F _snmpsubagent_complete apiClient arraySim mgmtSend snmpSubagent-checkconf
complete -W "--help --version" snmpSubagent  # not run for completion, because it is the daemon
