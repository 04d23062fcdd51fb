"""Bad senders on the management socket, none of which may disturb a manager."""

import os
from contextlib import contextmanager

from harness import management

from ..timeline import EVENTS
from .kind import NOTHING, Kind, no_arguments

MARK = management.trap("1 2 3 201 0 0 0 0 of a bad sender")
# The bytes that the senders send before they close the connection.
TORN = {"half a length": MARK[:2], "half a body": MARK[:-5], "only a length": MARK[:4], "nothing": b"",
        "garbage": management.frame(b"\xff" * 40), "an empty body": management.frame(b""),
        "too large a length": b"\xff\xff\xff\xff", "noise": None}


@contextmanager
def hanging(testbed, words):
    """Occupies the listener, which serves one connection at a time, so that events wait."""
    with management.Sender() as sender:
        sender.send(TORN[words[0]])
        yield


@contextmanager
def torn(testbed, words):
    for word in words:
        octets = TORN[word]
        for _ in range(20):
            try:
                management.send(os.urandom(300) if octets is None else octets)
            except ConnectionError:
                pass  # the daemon may close early
    yield


@contextmanager
def flood(testbed, words):
    """Sends many events, each of which must cause a notification."""
    for _ in range(int(words[0])):
        testbed.notices.send(int(words[1]))
    yield


@contextmanager
def switched(testbed, _):
    """Switches debug lines and reduced objects on and off."""
    switches = (management.VERBOSE_ON, management.TEMP_TEST, management.DISPLAY_TRAPS)
    restore = (management.TEMP_TEST, management.VERBOSE_OFF)
    management.send(*(management.message(code) for code in switches))
    yield
    management.send(*(management.message(code) for code in restore))


KINDS = (
    Kind("a sender hangs", lambda random: (random.choice(("half a length", "half a body", "nothing")),), hanging,
         disturbs=(EVENTS,), recovery_s=3),
    Kind("senders tear their messages", lambda random: tuple(random.sample(sorted(TORN), 3)), torn, disturbs=NOTHING,
         seconds=(0, 1), recovery_s=3),
    Kind("a flood of events", lambda random: random.choice((("1", "1000"), ("40", "20"), ("3", "300"))), flood,
         disturbs=NOTHING, seconds=(2, 4), recovery_s=3),
    Kind("debug lines are switched on", no_arguments, switched, disturbs=NOTHING, seconds=(3, 6), recovery_s=3),
)
