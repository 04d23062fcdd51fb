#include <sys/types.h>

#include <sys/resource.h>

#include "apiMgmt/common/platform/resourceLimitTable.h"

std::span<const ResourceLimit> ResourceLimitTable() {
    static constexpr ResourceLimit limits[] = {
        {RLIMIT_CPU, "RLIMIT_CPU", "maximum cpu time in seconds"},
        {RLIMIT_FSIZE, "RLIMIT_FSIZE", "maximum file size"},
        {RLIMIT_DATA, "RLIMIT_DATA", "datasize"},
        {RLIMIT_STACK, "RLIMIT_STACK", "stack size"},
        {RLIMIT_CORE, "RLIMIT_CORE", "core file size"},
        {RLIMIT_RSS, "RLIMIT_RSS", "resident set size"},
        {RLIMIT_MEMLOCK, "RLIMIT_MEMLOCK", "locked-in-memory"},
        {RLIMIT_NPROC, "RLIMIT_NPROC", "number of processes"},
        {RLIMIT_NOFILE, "RLIMIT_NOFILE", "number of files"},
        {RLIMIT_SBSIZE, "RLIMIT_SBSIZE", "socket buffers"},
        {RLIMIT_VMEM, "RLIMIT_VMEM", "virtual process size (inclusive of mmap)"},
        {RLIMIT_AS, "RLIMIT_AS", "same as vmem"},
        {RLIMIT_NPTS, "RLIMIT_NPTS", "number of pseudo terminals"},
        {RLIMIT_SWAP, "RLIMIT_SWAP", "swap space"},
    };
    return limits;
}
