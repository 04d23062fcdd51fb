# The sandbox kind 'container': the container itself, whose files are replaced and restored. Sourced by
# sandbox/sandbox.

# The container's lock file. It is not empty while a sandbox has replaced files.
state=/run/snmpsubagent-sandbox
aside=.before-sandbox
# Everything that a run creates: the daemon, snmpd and the tests.
taken_paths=(
    /etc/{hosts,snmpd.conf,snmpSubagent.conf,wirelink.key,nsswitch.conf,zabbix/zabbix.conf.php}
    /tmp/{apps,chaos,manager,monitors,recording,trapd,wallClock,arraySim.model,arraySim.dump}
    /tmp/{demonstration.txt,open.key,wrong.key}
    /var/{agentx,lib/snmp,lib/snmpsubagent} /var/log/{snmpSubagent.log,arraySim.log}
    /run/{snmpd.pid,snmpSubagent.pid,snmpSubagent.prom}
    /mnt/{root,cores} /usr/local/sbin/snmpd /usr/local/bin/snmpget /dev/log
)
sockets=(/tmp/apimgr.sock /tmp/mcshim.sock /tmp/snmpsubagent.sock)
programs=(snmpd snmpSubagent arraySim)

# --- outside -----------------------------------------------------------------------------------------------

# The initial PID namespace has this number. A container that shares it with the host shows the host's processes.
has_own_processes() {
    [[ $(readlink /proc/self/ns/pid) != "pid:[4026531836]" ]]
}

looks_like_container() {
    [[ -e /.dockerenv || -e /run/.containerenv ]] && return
    tr '\0' '\n' 2>/dev/null </proc/1/environ | grep -q '^container=' && return
    systemd-detect-virt --quiet --container 2>/dev/null && return
    [[ $(stat -f -c %T /) == overlayfs && $(</proc/1/comm) != @(init|systemd) ]]
}

container_allowed() {
    ((EUID == 0)) || { echo "must be run as root"; return 1; }
    [[ -z "${SNMPSUBAGENT_SANDBOX_RUN:-}" ]] || { echo "this is a sandbox already"; return 1; }
    [[ "${SNMPSUBAGENT_SANDBOX:-}" == container ]] && return
    has_own_processes || { echo "the processes of the whole machine are visible"; return 1; }
    looks_like_container || { echo "this is not a container"; return 1; }
}

describe_container() {
    echo "this container itself; its files are restored afterwards"
}

# As a subreaper, the first process of the sandbox becomes the parent of all orphaned processes inside.
run_container() {
    exec /usr/bin/python3 -c 'import ctypes, os, sys
PR_SET_CHILD_SUBREAPER = 36
if ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0: sys.exit("sandbox: no subreaper here")
os.execvp("env", ["env", "--default-signal=PIPE,XFSZ", "/bin/bash", *sys.argv[1:]])' "$script" "$@"
}

# --- inside ------------------------------------------------------------------------------------------------

lock_container() {
    exec 9>>"$state" || fail "could not write $state"
    flock --nonblock 9 && return
    echo "sandbox: waiting for another sandbox in this container" >&2
    step flock 9
}

exists() {
    [[ -e "$1" || -L "$1" ]]
}

# Fails if there is anything that does not belong to a sandbox and would be killed, replaced or in the way.
check_container() {
    local name path found
    for name in "${programs[@]}"; do
        found=$(pgrep --runstates RSDT --exact "$name" | tr '\n' ' ')
        [[ -z "$found" ]] || fail "$name runs in this container (process ${found% }); stop it, because a run would kill it"
    done
    for path in "${sockets[@]}"; do
        exists "$path" && fail "$path exists; stop the program that uses it, or remove the file if there is none"
    done
    [[ -z $(ss -Hlun 'sport = :161'; ss -Hltn 'sport = :35003') ]] ||
        fail "UDP port 161 or TCP port 35003 is in use in this container; the daemon and its snmpd need them"
    for path in "${kept[@]}"; do
        for found in "${taken_paths[@]}"; do
            lies_below "$path" "$found" && fail "$path is in $found, which a run replaces; move it elsewhere"
        done
    done
}

# A container's /etc/hosts is often a mount point, which cannot be renamed.
put_files_aside() {
    local path
    for path in "${taken_paths[@]}"; do
        if mountpoint -q "$path"; then
            step cp -aT "$path" "$path$aside"
        elif exists "$path"; then
            step mv -T "$path" "$path$aside"
        fi
    done
    echo taken >"$state"
}

# The state is emptied in between, so that the next run can continue if this one is killed here.
restore_files() {
    local path
    if [[ -s "$state" ]]; then
        rm -rf "${taken_paths[@]}" "${sockets[@]}" 2>/dev/null
        find /dev/shm -name '*faketime_*' -newer "$state" -delete
        : >"$state"
    fi
    for path in "${taken_paths[@]}"; do
        exists "$path$aside" || continue
        if mountpoint -q "$path"; then
            step cp -aT "$path$aside" "$path"
            rm -rf "$path$aside"
        else
            exists "$path" && fail "both $path and $path$aside exist; remove one of them"
            step mv -T "$path$aside" "$path"
        fi
    done
}

# Kills the processes that the command has left. Children of a killed process become children of this one.
kill_children() {
    local file line pids=(none)
    while ((${#pids[@]} > 0)); do
        pids=()
        for file in /proc/[0-9]*/stat; do
            { read -r line <"$file"; } 2>/dev/null || continue
            [[ "${line##*) }" == [!ZX]" $$ "* ]] && pids+=("${line%% *}")
        done
        ((${#pids[@]} == 0)) || { kill -KILL "${pids[@]}" 2>/dev/null; sleep 0.05; }
    done
}

# Kills the processes of a sandbox that was killed itself. A container's root often cannot read the environment of another
# user's process, but snmpd has this path only while a sandbox has replaced files.
kill_marked_processes() {
    local process found=yes
    while [[ -n "$found" ]]; do
        found=""
        for process in /proc/[0-9]*; do
            grep -qzs '^SNMPSUBAGENT_SANDBOX_RUN=' "$process/environ" ||
                grep -qzs '^/usr/local/sbin/snmpd$' "$process/cmdline" || continue
            kill -KILL "${process#/proc/}" 2>/dev/null
            found=yes
        done
    done
}

leave_container() {
    trap '' INT TERM HUP
    kill_children
    restore_files
}

prepare_container() {
    lock_container
    if [[ -s "$state" ]]; then
        echo "sandbox: cleaning up after a sandbox that was killed" >&2
        kill_marked_processes
    fi
    restore_files
    check_container
    trap leave_container EXIT
    put_files_aside
    step install -m 644 "$defaults/nsswitch.conf" /etc
    step cp "$defaults/hosts" /etc/hosts
    echo "127.0.0.1 $(hostname)" >>/etc/hosts
    make_daemon_folders ""
    [[ "$bare" == yes ]] || make_default_files ""
    export SNMPSUBAGENT_SANDBOX_RUN=$$
}
