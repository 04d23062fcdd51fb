#pragma once

#include <cstdint>

/**
 * Service during waits: whenever the main thread waits for the array or a child process, it serves requests.
 * The store is consistent at each such point, because a merge never waits. Main thread only.
 */

/**
 * Waits up to `timeout_ms` for poll(2) events on a descriptor (-1: none). Returns whether they have occurred.
 * Returns false early if the daemon must exit.
 */
bool wait_and_serve(int descriptor, short events, int timeout_ms);

/**
 * While an instance exists, exchanges of this thread with the API manager wait like wait_and_serve. If the
 * daemon must exit, the exchange in progress fails.
 */
class serving_exchanges {
  public:
    serving_exchanges();
    ~serving_exchanges();
    serving_exchanges(const serving_exchanges&) = delete;
    serving_exchanges& operator=(const serving_exchanges&) = delete;
};
