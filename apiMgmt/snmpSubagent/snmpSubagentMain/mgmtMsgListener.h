#pragma once

namespace protoIPCMsg {
class GPBIPCMsg;
}

/**
 * The one way in for the array application: a thread that takes management messages from the local socket,
 * queues trap commands and sets flags for the main loop. It never answers. Connections are served one after
 * the other, each with any number of messages.
 */

/** Starts the thread, which is never joined. 0, or 1 when it could not be created, which is logged. */
int StartMgmtMsgListener();

/** The thread's routine. Returns only when the socket cannot be set up, after it has set abort_snmpSubagent.
 */
void* MgmtMsgListenerMain(void* argument);

/** Acts on one envelope; one of another kind is logged and ignored. Listener thread only; throws GENERALError
    when the queue's lock fails. */
void HandleMgmtMsg(const protoIPCMsg::GPBIPCMsg& envelope);
