"""Checks notifications about objects: each must report a state that its object had, none may be repeated without a
change, and none may be missing."""

import re
import time
from collections import defaultdict, namedtuple

from harness import waiting

from .history import STALE_S
from .notices import DELIVERY_S
from .states import FETCHED_SINGLY, KINDS, PARTS, UP
from .timeline import EVENTS, RECORDS

EVENT_S = DELIVERY_S * waiting.PATIENCE  # an event is reported within this time
RECHECK_S = 90 + EVENT_S  # the daemon re-checks a record after 60 s, one record per second
MINUTE_S = (45, 90)  # between repeats that a re-check sends
QUOTED = re.compile(r"'(.*)'")
CLEARED = "Alert Cleared - "

RECORD_DELAY_S = 1  # between a change in the array and its record here

Finding = namedtuple("Finding", "moment text")
Received = namedtuple("Received", "notice is_new")


class NotificationChecks:
    def __init__(self, states, history, notices):
        self.states, self.history, self.timeline = states, history, history.timeline
        self.notices = sorted(notices.about_objects, key=lambda notice: notice.arrival)
        self.sent_events = sorted(states.sent_events)
        self.forced = notices.forced
        self.received = defaultdict(list)  # by subject
        self.wrong, self.repeated, self.endless = [], [], []
        for notice in self.notices:
            self.check(notice)
        self.find_endless()
        self.due = [change for change in states.changes if self.was_notified(change) or self.is_due(change)]
        self.lost = [change for change in self.due if not self.was_notified(change)]

    # --- received notifications

    def check(self, notice):
        subject = self.states.shown.get(notice.shown_as)
        if subject is None:
            if not self.may_be_false(notice.number, notice.arrival):
                self.wrong.append(self.finding(notice, "no such object"))
            return
        for text in self.errors_in(subject, notice):
            self.wrong.append(self.finding(notice, text))
        received = self.received[subject]
        is_new = self.is_new(subject, notice, received[-1].notice if received else None)
        if not is_new:
            self.repeated.append(self.finding(notice, "no event and no change since the previous one"))
        received.append(Received(notice, is_new))

    @staticmethod
    def finding(notice, what):
        return Finding(notice.arrival, f"trap {notice.number} of {notice.shown_as[1:]}, status {notice.status}, "
                                       f"trapAlertState {notice.alert_state}, '{notice.text}': {what}")

    def recent(self, moment):
        """Returns the earliest time whose status may be reported now. After a failed refresh, old ones are allowed."""
        has_old = self.timeline.is_disturbed(RECORDS, self.timeline.undisturbed_before(moment, EVENT_S), moment)
        return self.timeline.undisturbed_before(moment, STALE_S if has_old else EVENT_S)

    def may_be_false(self, number, moment):
        return any(self.history.was_falsely_reported(kind, self.history.oldest(moment), moment)
                   for kind in (KINDS.get(number), *(kind for kind, key in PARTS.items() if key[0] == number)))

    def errors_in(self, subject, notice):
        """Yields the errors in a notification."""
        begin = self.recent(notice.arrival)
        if self.may_be_false(notice.number, notice.arrival):
            return
        statuses = self.states.between(subject, begin, notice.arrival)
        if notice.status not in statuses:
            yield f"the status was one of {statuses}"
        if notice.alert_state == UP and UP not in statuses:
            yield "cleared, but the object was not Up"
        if notice.number != 211 and notice.text.startswith(CLEARED) != (notice.alert_state == UP) and not (
                notice.number == 212 and notice.status != UP):
            yield "the alert text contradicts trapAlertState"
        named = QUOTED.search(notice.text)
        if named and named.group(1) != subject.name:
            yield f"the alert is about another object than '{subject.name}'"
        for oid, value in notice.instances:
            if not self.history.allows(oid, value, notice.arrival, notice.arrival):
                yield f"{oid} is {value}"

    def is_new(self, subject, notice, before):
        has_changed = before and before.status != notice.status
        # The event of a recovery is reported even if a re-check has found the recovery first.
        if has_changed and notice.status == UP or self.uses_event(subject, notice, before) or has_changed:
            return True
        return bool(before) and len(self.states.between(subject, before.arrival - RECORD_DELAY_S, notice.arrival)) > 1

    def uses_event(self, subject, notice, before):
        """Returns whether an event explains the notification; each explains one."""
        begin = self.timeline.undisturbed_before(notice.arrival, EVENT_S)
        named = QUOTED.search(notice.text)
        for event in self.sent_events:
            if not begin <= event.moment <= notice.arrival or event.subject.number != notice.number:
                continue
            if notice.number != 211 and (not named or event.subject.name != named.group(1)):
                continue
            if event.is_repeat and before and before.status == notice.status != UP and not self.may_lack_record(
                    subject, before.arrival, notice.arrival):
                continue
            self.sent_events.remove(event)
            return True
        # A manager that gets no response repeats its request, so one of these may explain several.
        return not named and any(begin <= moment <= notice.arrival and number == notice.number
                                 for moment, number in self.forced)

    def may_lack_record(self, subject, begin, end):
        """Returns whether the daemon may have dropped the record of an object within a period."""
        number, state = subject.number, self.states.known[subject]
        stale = self.history.oldest(begin)
        return (self.timeline.life_ended(begin, end) or self.timeline.is_disturbed(RECORDS, begin, end) or
                self.history.was_falsely_reported(state.kind, stale, end) or
                not self.states.was_all_the_time(subject, stale, end) or
                bool(state.parent) and not self.states.was_all_the_time(state.parent, begin, end, UP) or
                number in FETCHED_SINGLY.values() and self.states.has_moved(number, stale, end) or
                number == 204 and self.states.has_moved(203, stale, end))

    def find_endless(self):
        """Finds notifications repeated at least twice without a change, about a minute apart."""
        for received in self.received.values():
            for before, one, other in zip(received, received[1:], received[2:]):
                gaps = (one.notice.arrival - before.notice.arrival, other.notice.arrival - one.notice.arrival)
                if not one.is_new and not other.is_new and all(MINUTE_S[0] < gap < MINUTE_S[1] for gap in gaps):
                    self.endless.append(self.finding(other.notice, "repeated every minute"))
                    break

    # --- missing notifications

    def previous(self, change):
        """Returns the latest notification about the object before a change."""
        return next((each.notice for each in reversed(self.received[change.subject])
                     if each.notice.arrival < change.begin), None)

    def was_notified(self, change):
        until = (change.until or time.monotonic()) + RECORD_DELAY_S
        return any(notice.status == change.status and change.begin <= notice.arrival <= until
                   for notice, _ in self.received[change.subject])

    def is_due(self, change):
        before = self.previous(change)
        if change.status != UP and before and before.status == change.status:
            return False  # no change for the daemon, which did not notice the state in between
        return change.reported and self.is_due_by_event(change) or self.is_due_by_recheck(change, before)

    def is_due_by_event(self, change):
        end = change.begin + EVENT_S
        if (change.until or time.monotonic()) < end or self.timeline.is_disturbed(EVENTS, change.begin - 1, end):
            return False
        state, stored = self.states.known[change.subject], self.history.oldest(change.begin)
        if state.parent and not (self.states.was_all_the_time(state.parent, stored, end) and
                                 self.states.was_all_the_time(state.parent, change.begin - 1, end, UP)):
            return False
        return not (self.timeline.life_ended(change.begin, end) or
                    not self.states.was_all_the_time(change.subject, stored, change.begin) or
                    self.history.was_falsely_reported(state.kind, stored, end))

    def is_due_by_recheck(self, change, before):
        """Returns whether the daemon has a record of the object, and enough time to find the change by a re-check."""
        until = change.until or time.monotonic()
        return bool(before and before.status != UP and
                    self.timeline.undisturbed_s(change.begin, until) >= RECHECK_S and
                    not self.may_lack_record(change.subject, before.arrival, until))
