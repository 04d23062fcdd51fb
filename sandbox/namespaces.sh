# The sandbox kinds 'namespaces' and 'user': a separate machine made of namespaces. Sourced by sandbox/sandbox.

# If the repository is in one of these, it is bind-mounted back to its path.
private_folders=(/etc /tmp /var /run /mnt /usr/local /dev)
namespaces=(--mount --propagation private --pid --fork --kill-child --mount-proc --net --ipc --uts)

# --- outside -----------------------------------------------------------------------------------------------

can_make() {  # OPTION...: of unshare
    unshare "$@" "${namespaces[@]}" sh -c 'mount -t tmpfs sandbox /mnt && ip link set lo up'
}

namespaces_allowed() {
    ((EUID == 0)) || { echo "must be run as root"; return 1; }
    can_make
}

describe_namespaces() {
    echo "namespaces, as root"
}

run_namespaces() {
    run_machine unshare "${namespaces[@]}" /bin/bash "$script" "$@"
}

# Maps a range of users if this user has one, or only root.
user_options() {
    echo --user --map-root-user
    command -v newuidmap >/dev/null && can_make --user --map-root-user --map-auto 2>/dev/null && echo --map-auto
}

user_allowed() {
    can_make --user --map-root-user
}

describe_user() {
    echo "user namespaces"
}

run_user() {
    run_machine unshare $(user_options) "${namespaces[@]}" /bin/bash "$script" "$@"
}

on_signal() {
    local inside
    inside=$(ps -o pid= --ppid "$machine") && pass_on "$1" $inside "$machine"
}

run_machine() {
    # A background job would get no input and ignore Ctrl-C; setpriv kills it when this script is killed.
    env --default-signal=INT,QUIT setpriv --pdeathsig KILL "$@" <&0 &
    machine=$!
    local signal
    for signal in INT TERM HUP; do
        trap "signalled=$signal; on_signal $signal" "$signal"
    done
    wait_for "$machine"
}

# --- inside ------------------------------------------------------------------------------------------------

choose_stage() {
    local folder path
    for folder in /run /mnt /media /srv; do
        [[ -d "$folder" ]] || continue
        for path in "${kept[@]}"; do
            lies_below "$path" "$folder" && continue 2
        done
        echo "$folder"
        return
    done
    fail "the kept paths leave no directory to work in"
}

has_root_only() {
    [[ $(awk '{ids += $3} END {print ids}' /proc/self/uid_map) == 1 ]]
}

copy_etc() {
    if [[ "$kind" == namespaces ]]; then
        step cp -a /etc "$stage/etc"
        return
    fi
    # Files that this user cannot read are omitted. Root owns all copies: their real owners do not exist in here.
    cp -dR --preserve=mode,timestamps,links /etc "$stage/etc" 2>/dev/null
    # snmpd must be able to change to this user.
    has_root_only && step sed -i 's/^\(daemon:[^:]*\):[0-9]*:[0-9]*:/\1:0:0:/' "$stage/etc/passwd"
}

fill_etc() {
    copy_etc
    rm -f "$stage/etc/resolv.conf"
    step install -m 644 "$defaults/hosts" "$defaults/nsswitch.conf" "$stage/etc"
    echo "127.0.0.1 $hostname" >>"$stage/etc/hosts"
    echo "$hostname" >"$stage/etc/hostname"
    rm -f "$stage/etc/"{wirelink.key,snmpSubagent.conf,snmpd.conf}
}

fill_dev() {
    local node
    mkdir -p "$stage/dev/shm" "$stage/dev/pts"
    chmod 1777 "$stage/dev/shm"
    for node in null zero full random urandom tty; do
        touch "$stage/dev/$node"
        step mount --bind "/dev/$node" "$stage/dev/$node"
    done
    [[ -d /dev/pts ]] && step mount --rbind /dev/pts "$stage/dev/pts"
    ln -s pts/ptmx "$stage/dev/ptmx"
    ln -s /proc/self/fd "$stage/dev/fd"
    ln -s fd/0 "$stage/dev/stdin"
    ln -s fd/1 "$stage/dev/stdout"
    ln -s fd/2 "$stage/dev/stderr"
    # A regular file: without syslog, messages go to the console, and must not reach the one outside.
    touch "$stage/dev/console"
}

fill_other_folders() {
    step mkdir -p "$stage"/{tmp,run/lock} "$stage"/usr/local/{lib,share} "$stage"/var/{cache,tmp}
    chmod 1777 "$stage/tmp" "$stage/var/tmp"
    ln -s /run "$stage/var/run"
    make_daemon_folders "$stage"
}

hold_kept_paths() {
    local number
    for number in "${!kept[@]}"; do
        if [[ -d "${kept[number]}" ]]; then
            mkdir -p "$stage/kept/$number"
        else
            mkdir -p "$stage/kept" && touch "$stage/kept/$number"
        fi
        step mount --rbind "${kept[number]}" "$stage/kept/$number"
    done
}

put_kept_paths_back() {
    local number path
    for number in "${!kept[@]}"; do
        path=${kept[number]}
        if [[ -d "$stage/kept/$number" ]]; then
            step mkdir -p "$path"
        else
            step mkdir -p "$(dirname "$path")"
            step touch "$path"
        fi
        step mount --rbind "$stage/kept/$number" "$path"
    done
}

# Only paths that would be hidden need to be kept.
drop_visible_paths() {
    local path folder hidden=()
    for path in "${kept[@]}"; do
        for folder in "${private_folders[@]}"; do
            lies_below "$path" "$folder" && hidden+=("$path") && break
        done
    done
    kept=("${hidden[@]}")
}

prepare_folders() {
    drop_visible_paths
    local place folder
    place=$(choose_stage) || exit 125
    step mount -t tmpfs -o mode=755 sandbox "$place"
    stage=$place/.stage
    mkdir "$stage"
    hold_kept_paths
    fill_etc
    fill_dev
    fill_other_folders
    [[ "$bare" == yes ]] || make_default_files "$stage"
    # The directory that contains the stage comes last because mounting it hides the stage.
    for folder in "${private_folders[@]}"; do
        [[ "$folder" == "$place" ]] || step mount --rbind "$stage$folder" "$folder"
    done
    put_kept_paths_back
    if [[ -d "$stage$place" ]]; then
        step mount --rbind "$stage$place" "$place"
    else
        umount --lazy "$place"
    fi
}

prepare_namespaces() {
    (($$ == 1)) || fail "--inside is for the sandbox itself"
    step ip link set lo up
    step hostname "$hostname"
    prepare_folders
}

prepare_user() {
    prepare_namespaces
}
