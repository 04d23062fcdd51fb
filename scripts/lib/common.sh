# What the scripts share; they read it with the repository's root as working directory.

# An ordinary user's PATH lacks the directories of some programs that the tests run.
export PATH=$PATH:/usr/sbin:/sbin

say() {
    printf '\n== %s\n' "$*"
}

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# The comment at the head of the script is its usage. A wrong option gets it too, with status 2.
usage_and_exit() {
    sed -n '2,/^set -eu/{/^#/{s/^# \{0,1\}//;p}}' "scripts/$(basename "$0")"
    case $1 in -h | --help) exit 0 ;; *) exit 2 ;; esac
}

check_preset() {
    case $1 in
        release | debug | asan | tsan | coverage) ;;
        *) fail "there is no preset '$1': release, debug, asan or tsan" ;;
    esac
}

check_compiler() {
    local compiler=${CXX:-c++} version
    command -v "$compiler" >/dev/null || fail "there is no compiler '$compiler'"
    version=$("$compiler" -dumpfullversion -dumpversion)
    # Clang answers with a number of its own; what it can do shows itself at configuring.
    "$compiler" --version | grep -qi clang || [[ ${version%%.*} -ge 12 ]] ||
        fail "the compiler is too old: $compiler is GCC $version, 12 or newer is needed"
}

check_sandbox() {
    sandbox/sandbox true || fail "the sandbox cannot be made here, so the daemon cannot run"
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
