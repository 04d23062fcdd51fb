"""Checks notifications about objects against the states that the objects had: each reports a state of its object, none
comes a second time without news, and no change is left out."""

import re
import time
from collections import defaultdict, namedtuple

from harness import waiting

from .history import STALE_S
from .notices import DELIVERY_S
from .states import FETCHED_SINGLY, KINDS, PARTS, UP
from .timeline import EVENTS, RECORDS

EVENT_S = DELIVERY_S * waiting.PATIENCE  # an event is notified within this time
RECHECK_S = 90 + EVENT_S  # the daemon re-checks a record after 60 s, one record per second
MINUTE_S = (45, 90)  # between repeats that a re-check sends
QUOTED = re.compile(r"'(.*)'")
CLEARED = "Alert Cleared - "

BREAK_S = 1  # between a change in the array and its record here

Finding = namedtuple("Finding", "moment text")
Heard = namedtuple("Heard", "notice is_news")


class StatusJudge:
    def __init__(self, states, history, notices):
        self.states, self.history, self.timeline = states, history, history.timeline
        self.notices = sorted(notices.about_objects, key=lambda notice: notice.arrival)
        self.tellings = sorted(states.tellings)
        self.forced = notices.forced
        self.heard = defaultdict(list)  # by subject
        self.wrong, self.repeated, self.endless = [], [], []
        for notice in self.notices:
            self.take(notice)
        self.find_endless()
        self.due = [change for change in states.changes if self.has_come(change) or self.is_due(change)]
        self.lost = [change for change in self.due if not self.has_come(change)]

    # --- received notifications

    def take(self, notice):
        subject = self.states.shown.get(notice.shown_as)
        if subject is None:
            if not self.may_be_false(notice.number, notice.arrival):
                self.wrong.append(self.finding(notice, "no such object"))
            return
        for text in self.mistakes(subject, notice):
            self.wrong.append(self.finding(notice, text))
        heard = self.heard[subject]
        is_news = self.is_news(subject, notice, heard[-1].notice if heard else None)
        if not is_news:
            self.repeated.append(self.finding(notice, "no event and no change since the one before"))
        heard.append(Heard(notice, is_news))

    @staticmethod
    def finding(notice, what):
        return Finding(notice.arrival, f"trap {notice.number} of {notice.shown_as[1:]}, status {notice.status}, "
                                       f"trapAlertState {notice.alert_state}, '{notice.text}': {what}")

    def recent(self, moment):
        """Returns the time since which a status may be notified now: a failed refresh leaves old ones."""
        has_old = self.timeline.is_disturbed(RECORDS, self.timeline.back(moment, EVENT_S), moment)
        return self.timeline.back(moment, STALE_S if has_old else EVENT_S)

    def may_be_false(self, number, moment):
        return any(self.history.was_falsely_reported(kind, self.history.horizon(moment), moment)
                   for kind in (KINDS.get(number), *(kind for kind, key in PARTS.items() if key[0] == number)))

    def mistakes(self, subject, notice):
        """Yields what is wrong in a notification."""
        begin = self.recent(notice.arrival)
        if self.may_be_false(notice.number, notice.arrival):
            return
        statuses = self.states.between(subject, begin, notice.arrival)
        if notice.status not in statuses:
            yield f"the object had {statuses}"
        if notice.alert_state == UP and UP not in statuses:
            yield "cleared, and the object was not Up"
        if notice.number != 211 and notice.text.startswith(CLEARED) != (notice.alert_state == UP) and not (
                notice.number == 212 and notice.status != UP):
            yield "the alert text contradicts trapAlertState"
        named = QUOTED.search(notice.text)
        if named and named.group(1) != subject.name:
            yield f"the alert is about another object than '{subject.name}'"
        for oid, value in notice.cells:
            if not self.history.allows(oid, value, notice.arrival, notice.arrival):
                yield f"{oid} is {value}"

    def is_news(self, subject, notice, before):
        has_changed = before and before.status != notice.status
        # The event of a recovery is notified even if a re-check has found the recovery first.
        if has_changed and notice.status == UP or self.uses_event(subject, notice, before) or has_changed:
            return True
        return bool(before) and len(self.states.between(subject, before.arrival - BREAK_S, notice.arrival)) > 1

    def uses_event(self, subject, notice, before):
        """Returns whether an event explains the notification; each explains one."""
        begin = self.timeline.back(notice.arrival, EVENT_S)
        named = QUOTED.search(notice.text)
        for telling in self.tellings:
            if not begin <= telling.moment <= notice.arrival or telling.subject.number != notice.number:
                continue
            if notice.number != 211 and (not named or telling.subject.name != named.group(1)):
                continue
            if telling.is_repeat and before and before.status == notice.status != UP and not self.may_be_forgotten(
                    subject, before.arrival, notice.arrival):
                continue
            self.tellings.remove(telling)
            return True
        # A manager that gets no response repeats its request, so one of these may explain several.
        return not named and any(begin <= moment <= notice.arrival and number == notice.number
                                 for moment, number in self.forced)

    def may_be_forgotten(self, subject, begin, end):
        """Returns whether the daemon may have dropped the record of an object within a period."""
        number, standing = subject.number, self.states.known[subject]
        stale = self.history.horizon(begin)
        return (self.timeline.life_ended(begin, end) or self.timeline.is_disturbed(RECORDS, begin, end) or
                self.history.was_falsely_reported(standing.kind, stale, end) or
                not self.states.was_all_the_time(subject, stale, end) or
                bool(standing.parent) and not self.states.was_all_the_time(standing.parent, begin, end, UP) or
                number in FETCHED_SINGLY.values() and self.states.has_moved(number, stale, end) or
                number == 204 and self.states.has_moved(203, stale, end))

    def find_endless(self):
        """Notifications that came more than twice, about a minute apart, and had no news the second and third time."""
        for heard in self.heard.values():
            for before, one, other in zip(heard, heard[1:], heard[2:]):
                gaps = (one.notice.arrival - before.notice.arrival, other.notice.arrival - one.notice.arrival)
                if not one.is_news and not other.is_news and all(MINUTE_S[0] < gap < MINUTE_S[1] for gap in gaps):
                    self.endless.append(self.finding(other.notice, "again every minute"))
                    break

    # --- missing notifications

    def came_before(self, change):
        """Returns the latest notification about the object before a change."""
        return next((each.notice for each in reversed(self.heard[change.subject])
                     if each.notice.arrival < change.begin), None)

    def has_come(self, change):
        until = (change.until or time.monotonic()) + BREAK_S
        return any(notice.status == change.status and change.begin <= notice.arrival <= until
                   for notice, _ in self.heard[change.subject])

    def is_due(self, change):
        before = self.came_before(change)
        if change.status != UP and before and before.status == change.status:
            return False  # no news: the state between was not noticed
        return change.told and self.is_due_by_event(change) or self.is_due_by_recheck(change, before)

    def is_due_by_event(self, change):
        end = change.begin + EVENT_S
        if (change.until or time.monotonic()) < end or self.timeline.is_disturbed(EVENTS, change.begin - 1, end):
            return False
        standing, stored = self.states.known[change.subject], self.history.horizon(change.begin)
        if standing.parent and not (self.states.was_all_the_time(standing.parent, stored, end) and
                                    self.states.was_all_the_time(standing.parent, change.begin - 1, end, UP)):
            return False
        return not (self.timeline.life_ended(change.begin, end) or
                    not self.states.was_all_the_time(change.subject, stored, change.begin) or
                    self.history.was_falsely_reported(standing.kind, stored, end))

    def is_due_by_recheck(self, change, before):
        """Returns whether the daemon has a record of the object, and enough time to find the change by a re-check."""
        until = change.until or time.monotonic()
        return bool(before and before.status != UP and
                    self.timeline.undisturbed_s(change.begin, until) >= RECHECK_S and
                    not self.may_be_forgotten(change.subject, before.arrival, until))
