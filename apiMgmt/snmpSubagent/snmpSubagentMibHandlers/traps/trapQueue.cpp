#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "apiMgmt/common/threadpool/scopedMutex.h"
#include "apiMgmt/common/utils/stringUtil.h"

std::deque<std::unique_ptr<TrapToSend>> trapsToSend;

// Never destroyed, because the listener may wait for it when the process exits.
MUTEXWrapper& trapsToSend_mutex = *new MUTEXWrapper;

namespace {

// The pipe contains one byte while commands are waiting. Without a pipe, the main loop rests its full time.
struct wake_up_pipe {
    wake_up_pipe() {
        if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
            ends[0] = ends[1] = -1;
    }

    void fill() const { [[maybe_unused]] const ssize_t written = write(ends[1], "", 1); }

    void drain() const {
        char byte = 0;
        [[maybe_unused]] const ssize_t count = read(ends[0], &byte, 1);
    }

    int ends[2];
};

const wake_up_pipe& wake_up() {
    static const wake_up_pipe pipe;
    return pipe;
}

// Reads the number before the next space; a word that is not a number yields 0. Returns false if no space
// follows.
bool take_number(char** rest, int32_t* number) {
    char* word = *rest + strspn(*rest, " ");
    char* end = strchr(word, ' ');
    if (end == nullptr)
        return false;
    *end = '\0';
    *number = static_cast<int32_t>(strtol(word, nullptr, 10));
    *rest = end + 1;
    return true;
}

}  // namespace

int trap_queue_descriptor() {
    return wake_up().ends[0];
}

void queue_trap(std::unique_ptr<TrapToSend> trap) {
    scopedMutex lock(trapsToSend_mutex);
    if (trapsToSend.empty())
        wake_up().fill();
    trapsToSend.push_back(std::move(trap));
}

bool process_oldest_trap(void (*process)(TrapToSend& trap)) {
    TrapToSend* oldest = nullptr;
    {
        scopedMutex lock(trapsToSend_mutex);
        if (trapsToSend.empty())
            return false;
        oldest = trapsToSend.front().get();
    }
    process(*oldest);
    scopedMutex lock(trapsToSend_mutex);
    trapsToSend.pop_front();
    if (trapsToSend.empty())
        wake_up().drain();
    return true;
}

int ParseTrapCommand(const char* command, char* scratch, size_t scratch_size) {
    if (scratch == nullptr)
        return 1;
    std::unique_ptr<TrapToSend> trap(new (std::nothrow) TrapToSend);
    if (trap == nullptr)
        return 1;
    SafeStrncpy(scratch, command, scratch_size);
    char* rest = scratch;
    for (int32_t* number : {&trap->eventIdA, &trap->eventIdB, &trap->eventIdC, &trap->trapNum,
                            &trap->trapArgA, &trap->trapArgB, &trap->trapArgC, &trap->trapArgD}) {
        if (!take_number(&rest, number))
            return 1;
    }
    trap->alertString = rest;
    queue_trap(std::move(trap));
    return 0;
}
