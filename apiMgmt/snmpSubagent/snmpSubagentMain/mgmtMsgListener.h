#pragma once

namespace protoIPCMsg {
class GPBIPCMsg;
}

/**
 * The listener for the array application: a thread that receives management messages from the local socket,
 * queues trap commands and sets flags for the main loop. It never responds. It serves one connection at a
 * time, each with any number of messages.
 */

/** Starts the thread, which is never joined. Returns 0, or 1 after logging the error. */
int StartMgmtMsgListener();

/** Thread function. Returns only if the socket cannot be set up, after setting abort_snmpSubagent. */
void* MgmtMsgListenerMain(void* argument);

/**
 * Processes one envelope. Logs and ignores an envelope that is not a management message. Listener thread
 * only. Throws GENERALError if the queue's lock fails.
 */
void HandleMgmtMsg(const protoIPCMsg::GPBIPCMsg& envelope);
