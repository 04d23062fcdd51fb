#pragma once

#include <cstdint>

/**
 * SNMP service and the waits of the main thread. While it waits for the array, or for anything else, it
 * serves requests; the store is consistent at every such point, since a merge never waits. Main thread only.
 */

/** Waits for poll(2) events on a descriptor (-1: none) for at most this many milliseconds. Returns whether
   they have occurred; false also as soon as the daemon is to exit. */
bool wait_and_serve(int descriptor, short events, int timeout_ms);

/** While one exists, the exchanges of this thread with the API manager wait like that. One in progress fails
   as soon as the daemon is to exit. */
class serving_exchanges {
  public:
    serving_exchanges();
    ~serving_exchanges();
    serving_exchanges(const serving_exchanges&) = delete;
    serving_exchanges& operator=(const serving_exchanges&) = delete;
};
