"""Every column of every table, and every scalar, against the array's objects, in the preset of SNMPSUBAGENT_PRESET."""

import os

from harness import mib, systemTest


def differences(expected, served):
    """Returns one line for each instance that is missing, unexpected, or has another type or value."""
    return [f"{oid}: served {served.get(oid)}, expected {expected.get(oid)}"
            for oid in {**expected, **served} if expected.get(oid) != served.get(oid)]


class EveryColumn(systemTest.SharedSystemTest):
    PRESET = os.environ.get("SNMPSUBAGENT_PRESET", "small")

    def test_a_bulk_walk_of_the_enterprise_returns_the_whole_array(self):
        expected = {oid: value for oid, value in self.wait_until_settled().items() if oid.startswith(mib.ENTERPRISE)}
        self.assertGreater(len(expected), 500)
        response = self.manager.bulk_walk(mib.ENTERPRISE, "-Cr20")
        self.assertEqual(response.status, 0, response.errors)
        oids = response.oids()
        self.assertEqual(oids, sorted(set(oids), key=mib.arcs))
        lines = differences(expected, {each.oid: (each.type, each.value) for each in response.bindings})
        self.assertFalse(lines, f"{len(lines)} of {len(expected)} differ:\n" + "\n".join(lines[:40]))


if __name__ == "__main__":
    systemTest.main()
