# Functions that all scripts source, with the repository's root as working directory.

# An ordinary user's PATH lacks the directories of some programs that the tests run.
export PATH=$PATH:/usr/sbin:/sbin

say() {
    printf '\n== %s\n' "$*"
}

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# Prints the comment at the top of the script. Exits with status 2 unless the option is that for help.
usage_and_exit() {
    sed -n '2,/^set -eu/{/^#/{s/^# \{0,1\}//;p}}' "scripts/$(basename "$0")"
    case $1 in -h | --help) exit 0 ;; *) exit 2 ;; esac
}

check_preset() {
    case $1 in
        release | debug | asan | tsan | coverage) ;;
        *) fail "unknown preset '$1'; expected release, debug, asan or tsan" ;;
    esac
}

check_compiler() {
    local compiler=${CXX:-c++} version
    command -v "$compiler" >/dev/null || fail "compiler '$compiler' not found"
    version=$("$compiler" -dumpfullversion -dumpversion)
    # Clang has its own version numbers; CMake checks its features.
    "$compiler" --version | grep -qi clang || [[ ${version%%.*} -ge 12 ]] ||
        fail "the compiler is too old: $compiler is GCC $version, 12 or newer is needed"
}

check_sandbox() {
    sandbox/sandbox true || fail "cannot create a sandbox here, so the daemon cannot run"
}

run_quietly() {
    local output
    output=$("$@" 2>&1) || {
        echo "$output" >&2
        fail "failed: $*"
    }
}

# PRESET COMMAND...: runs a command in the sandbox with the programs of that build.
in_sandbox() {
    local build=$PWD/build/$1
    shift
    SNMPSUBAGENT_BUILD=$build sandbox/sandbox --keep "$build" -- "$@"
}

# PRESET SIZE: records what the daemon serves of a simulated array, where cmake --install looks for it.
record_array() {
    local recording=$PWD/build/$1/monitoring/snmpsim/$2.snmprec
    mkdir -p "$(dirname "$recording")"
    in_sandbox "$1" /usr/bin/python3 scripts/lib/recordArray.py "$2" "$recording"
    echo "$(wc -l <"$recording") variables in $recording"
}
