#compdef apiClient arraySim mgmtSend snmpSubagent snmpSubagent-checkconf
# Completion for zsh. The program lists the candidates for its last word; without any, zsh offers files.

if [[ $service == snmpSubagent ]]; then  # not run for completion, because it is the daemon
    compadd -- --help --version
    return
fi
local -a candidates
local matcher='m:{[:lower:][:upper:]}={[:upper:][:lower:]}'
# (Q) removes quotation marks, the pattern one that is still open.
candidates=(${(f)"$($words[1] --complete "${(@)${(@Q)words[2,CURRENT]}#[\"\']}" 2>/dev/null)"})
(( $#candidates )) || { _files; return }
# After these, the word continues.
compadd -M $matcher -S '' -- ${(M)candidates:#*[=., ]}
compadd -M $matcher -- ${candidates:#*[=., ]}
