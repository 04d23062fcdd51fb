"""Notifications as received, in each of the three forms that can be configured."""

import json
import os
import shlex
import unittest

from harness import machine, mib, systemTest, traps, waiting
from harness.expected import Expectation
from harness.receiver import Trapd
from harness.notificationTest import COMMUNITY, MARK, NotificationTest
from harness.traps import NOTIFICATIONS, TRAP_OID, Event

MGMT_SEND = os.path.join(machine.BUILD, "tools", "mgmtSend", "mgmtSend")
UPTIME = "1.3.6.1.2.1.1.3.0"
DISK = ("tsDiskNbr", "tsDiskStatus", "tsDiskName", "tsDiskHealthy", "tsDiskStatusMsg")


class EachForm:
    """The tests of each form; see the subclasses."""

    SETTINGS = {"sendTestTrap": "yes"}
    PDU, WIRE_VERSION = "trap2", "2c"

    @classmethod
    def launch(cls):
        super().launch()
        cls.expect(Event((28, 0, 0), 200))  # requested by the settings, after the cold start

    def test_a_failing_disk(self):
        case = self.object_case(202, 1, text="the prefix@@@the alert")
        self.change(case.kind, case.index, Status="Down")
        got = self.send_and_expect(case.event)
        self.assertEqual((got.version, got.pdu, got.community), (self.WIRE_VERSION, self.PDU, COMMUNITY))
        values = Expectation(self.array.dump()).values
        bindings = {each.oid: (each.type, each.value) for each in got.bindings}
        for name in DISK:
            oid = mib.oid(name, 2)
            kind, value = values[oid]
            # In a notification, an enumeration is an unsigned value, unlike in the response to a GET.
            kind = "Gauge32" if mib.COLUMNS[name].type == "enumeration" else kind
            self.assertEqual(bindings.pop(oid), (kind, value), name)
        for name, value in (("trapAlertText", b"the alert"), ("trapEventId", b"11,-22,2147483647"),
                            ("trapActionText", b"Disk is Down: Schedule disk replacement.")):
            self.assertEqual(bindings.pop(mib.scalar(name)), ("STRING", value))
        self.assertEqual(bindings.pop(mib.scalar("trapAlertState")), ("INTEGER", 2))
        self.assert_head(got, 202)
        self.send(case.event, MARK)  # it is reported only once
        self.expect(MARK)
        self.change(case.kind, case.index, Status="Up")
        self.send_and_expect(case.event)

    def assert_head(self, got, number):
        self.assertEqual(got.bindings[0][:2], (UPTIME, "Timeticks"))
        self.assertEqual(got.bindings[1], (TRAP_OID, "OID", f"{NOTIFICATIONS}.0.{number}"))


class Version1(EachForm, NotificationTest):
    VERSION = 1
    DESTINATION = "localhost"
    PDU, WIRE_VERSION = "trap", "1"

    def assert_head(self, got, number):
        self.assertEqual((got.enterprise, got.generic, got.specific), (NOTIFICATIONS, 6, number))
        self.assertEqual(got.agent_address, self.array.get("Tessera", 1, "ManagementIp"))


class Version2(EachForm, NotificationTest):
    VERSION = 2


class Inform(EachForm, NotificationTest):
    VERSION = 3
    PDU = "inform"
    LISTEN = DESTINATION = "::1" if machine.has_ipv6() else "127.0.0.1"


class ThroughSnmpd(NotificationTest):
    """Receivers only in snmpd's configuration: version 2c traps, and SNMPv3 informs, repeated until acknowledged."""

    DESTINATION = "**none**"
    USER = 'notifier SHA-256 "signing passphrase" AES "encrypting passphrase"'
    ENGINE = "0x80001f880472656365697665"  # of snmptrapd, so that snmpd need not discover it

    @classmethod
    def begin(cls):
        super().begin()
        cls.snmpd_conf = machine.read_file(machine.SNMPD_CONF)
        cls.trapd_port = cls.receiver.port + 1
        name, digest, signing, cipher, encrypting = shlex.split(cls.USER)
        machine.write_file(machine.SNMPD_CONF, cls.snmpd_conf + f"""
trap2sink 127.0.0.1 {COMMUNITY} {cls.receiver.port}
trapsess -Ci -r 20 -t 1 -v 3 -e {cls.ENGINE} -l authPriv -u {name} -a {digest} -A "{signing}" -x {cipher} \
-X "{encrypting}" 127.0.0.1:{cls.trapd_port}
""")

    @classmethod
    def launch(cls):
        cls.array.start(objects=cls.objects())
        cls.daemon.start()
        cls.send(MARK)
        while traps.summary_of(cls.receiver.take()) != MARK.summary():  # cold starts, of snmpd and of the daemon
            pass

    @classmethod
    def end(cls):
        super().end()
        machine.write_file(machine.SNMPD_CONF, cls.snmpd_conf)

    def test_each_receiver_gets_each_notification_once(self):
        case = self.object_case(205, 0, text="@@@broken")
        self.change(case.kind, case.index, Status="Down")
        own = [self.send_and_expect(case.event)]
        broken = (self.array.get(case.kind, case.index, "Name"), "Down", "tsEnclStatusChange")
        waiting.wait_until(lambda: self.unhealthy() == [broken], "mgmtSend status shows the object")
        # Started late, so that snmpd must resend.
        trapd = Trapd(f"exactEngineID {self.ENGINE}\ncreateUser {self.USER}\nauthUser log notifier priv", self.trapd_port)
        try:
            self.change(case.kind, case.index, Status="Up")
            own.append(self.receiver.take(90))  # at the re-check, after any repetitions
            self.assertIn((mib.scalar("trapAlertText"), "STRING", b"Alert Cleared - broken"), own[1].bindings)
            for each in own:
                self.assertEqual((each.version, each.pdu, each.community), ("2c", "trap2", COMMUNITY))
            waiting.wait_until(lambda: self.texts_of(trapd)[-1:] == ["Alert Cleared - broken"], "the last inform")
            self.assertEqual(self.texts_of(trapd), ["broken", "Alert Cleared - broken"])
            waiting.wait_until(lambda: self.unhealthy() == [], "mgmtSend status shows the recovery")
            self.assertEqual({head[0] for head, _ in trapd.received()},
                             {"INFORM, SNMP v3, user notifier, context "})
        finally:
            trapd.close()

    @staticmethod
    def unhealthy():
        """Returns (name, status, notification) of all objects that the daemon publishes as unhealthy."""
        status = json.loads(machine.run(MGMT_SEND, "status", "--json"))
        return [(each["object"], each["status"], each["notification"])
                for each in status.get("unhealthy_object_since_seconds", [])]

    @staticmethod
    def texts_of(trapd):
        return [each.value.decode() for _, bindings in trapd.received() for each in bindings
                if each.oid == mib.scalar("trapAlertText")]


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    systemTest.main()
