"""Every column of every table, and every scalar, against what the array holds. The preset comes as
SNMPSUBAGENT_PRESET."""

import os

from harness import mib, story


def differences(expected, served):
    """One line for each instance that is missing, unknown, or has another type or value."""
    lines = [f"{oid}: not served, expected {value}" for oid, value in expected.items() if oid not in served]
    for oid, (kind, value) in served.items():
        if oid not in expected:
            lines.append(f"{oid}: served {kind} {value}, expected nothing")
        elif expected[oid] != (kind, value):
            lines.append(f"{oid}: served {kind} {value}, expected {expected[oid]}")
    return lines


class EveryColumn(story.SharedStory):
    PRESET = os.environ.get("SNMPSUBAGENT_PRESET", "small")

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.expected = cls.wait_until_settled()

    def assert_same(self, expected, answer):
        self.assertEqual(answer.status, 0, answer.complaints)
        oids = answer.oids()
        self.assertEqual(len(oids), len(set(oids)), "an instance came twice")
        self.assertEqual(oids, sorted(oids, key=mib.arcs))
        served = {binding.oid: (binding.type, binding.value) for binding in answer.bindings}
        lines = differences(expected, served)
        self.assertFalse(lines, f"{len(lines)} of {len(expected)} differ:\n" + "\n".join(lines[:40]))

    def below(self, root):
        return {oid: value for oid, value in self.expected.items() if oid.startswith(root + ".")}

    def test_a_bulk_walk_of_the_enterprise_gives_the_whole_array(self):
        expected = self.below(mib.ENTERPRISE)
        self.assertGreater(len(expected), 500)
        self.assert_same(expected, self.manager.bulk_walk(mib.ENTERPRISE, "-Cr20"))

    def test_the_older_enterprise_number_gives_the_same(self):
        expected = {mib.old_form(oid): value for oid, value in self.below(mib.ENTERPRISE).items()}
        # After a walk that has run off the end, the next one in the old form ends at once; a delivered value
        # makes it start anew.
        self.manager.value(mib.scalar("productName"))
        self.assert_same(expected, self.manager.bulk_walk(mib.OLD_ENTERPRISE, "-Cr20"))


if __name__ == "__main__":
    story.tell()
