#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "apiMgmt/common/threadpool/mutexWrapper.h"

/** One trap command: an event of the array application that may become a notification. */
struct TrapToSend {
    /** The event's code in three parts: carried into the log and trapEventId, never interpreted. */
    int32_t eventIdA = 0;
    int32_t eventIdB = 0;
    int32_t eventIdC = 0;
    /** Which notification, see data/mib/notifications.def. */
    int32_t trapNum = 0;
    /** The object. */
    int32_t trapArgA = 0;
    /** H/W component number, or type of a SCSI initiator's device. */
    int32_t trapArgB = 0;
    /** Component, or status of that device. */
    int32_t trapArgC = 0;
    /** kClearingArgument, or anything else. */
    int32_t trapArgD = 0;
    /** A prefix, "@@@", and the text for the receiver. */
    std::string alertString;
};

/** As trapArgD: the notification tells that something is over. */
inline constexpr int32_t kClearingArgument = 5;

/** So many bytes of a trap command text are looked at, with the NUL behind them. */
inline constexpr size_t kTrapCommandBuffer = 501;

/** Commands that wait for the main loop, oldest first. Owned; guarded by the mutex. Filled by the listener,
   by SETs and at start-up; emptied by the main thread alone. Has no limit. */
extern std::deque<std::unique_ptr<TrapToSend>> trapsToSend;
extern MUTEXWrapper& trapsToSend_mutex;

/**
 * Queues the command in a text: eight numbers, a blank behind each, then the alert string to the end. 0, or 1
 * for a text that is too short, which leaves no other trace. `scratch` bounds what is looked at. Any thread;
 * throws GENERALError when the mutex fails.
 */
int ParseTrapCommand(const char* command, char* scratch, size_t scratch_size);

/** Appends a command and wakes a main loop that rests. Any thread; throws like ParseTrapCommand. */
void queue_trap(std::unique_ptr<TrapToSend> trap);

/** Readable while commands wait: ends the rest of the main loop. Owned by the queue. */
int trap_queue_descriptor();

/** Runs `process` on the oldest command and then removes it, without holding the mutex: the command may wait
   for the array, and new commands are queued behind it. False when none waits. Main thread only. */
bool process_oldest_trap(void (*process)(TrapToSend& trap));
