# Completion for fish. The program lists the candidates for its last word; without any, fish offers files.

function __snmpsubagent_complete
    set -l words (commandline -opc) (commandline -ct | string trim --left --chars '"\'')
    set -l candidates ($words[1] --complete $words[2..] 2>/dev/null)
    if set -q candidates[1]
        printf '%s\n' $candidates
    else
        __fish_complete_path $words[-1]
    end
end
for program in apiClient arraySim mgmtSend snmpSubagent-checkconf
    complete --command $program --no-files --arguments '(__snmpsubagent_complete)'
end
complete --command snmpSubagent --no-files --arguments '--help --version' # not run for completion, because it is the daemon
