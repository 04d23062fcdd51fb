#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "apiMgmt/common/threadpool/mutexWrapper.h"

/** A trap command: an event of the array application that may become a notification. */
struct TrapToSend {
    /** The event's code in three parts. Copied to the log and to trapEventId, never interpreted. */
    int32_t eventIdA = 0;
    int32_t eventIdB = 0;
    int32_t eventIdC = 0;
    /** Number of the notification, see data/mib/notifications.def. */
    int32_t trapNum = 0;
    /** The object: usually its API index. */
    int32_t trapArgA = 0;
    /** Component number, or type of a SCSI initiator's device. */
    int32_t trapArgB = 0;
    /** The component, or the device's status. */
    int32_t trapArgC = 0;
    /** kClearingArgument if the alert is over; other values have no meaning. */
    int32_t trapArgD = 0;
    /** A prefix, "@@@", and the alert text. */
    std::string alertString;
};

/** Value of trapArgD for an alert that is over. */
inline constexpr int32_t kClearingArgument = 5;

/** Maximum length of a trap command, including the terminating null character. The rest is ignored. */
inline constexpr size_t kTrapCommandBuffer = 501;

/**
 * Commands that wait for the main loop, oldest first. Filled by the listener, by SETs and at start-up;
 * emptied by the main thread only. Guarded by the mutex. The length is not limited.
 */
extern std::deque<std::unique_ptr<TrapToSend>> trapsToSend;
extern MUTEXWrapper& trapsToSend_mutex;

/**
 * Parses and queues a command: eight numbers, each followed by a space, then the alert string. Returns 0, or
 * 1 if the command is too short, which is not logged. `scratch` is a buffer whose size limits the command's
 * length. Any thread. Throws GENERALError if the mutex fails.
 */
int ParseTrapCommand(const char* command, char* scratch, size_t scratch_size);

/** Appends a command and wakes the main loop from its rest. Any thread. Throws like ParseTrapCommand. */
void queue_trap(std::unique_ptr<TrapToSend> trap);

/** Returns a descriptor that is readable while commands are waiting. Owned by the queue. */
int trap_queue_descriptor();

/**
 * Runs `process` on the oldest command, then removes it. The mutex is not held meanwhile, because the command
 * may wait for the array and new commands must be queued. Returns false if there is none. Main thread only.
 */
bool process_oldest_trap(void (*process)(TrapToSend& trap));
