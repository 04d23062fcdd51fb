"""Settings of notifications that keep them from leaving, and destinations by name. Settings are read at the start
alone, so each case has a daemon of its own."""

from harness import machine, management, story
from harness.receiver import Receiver
from harness.trapStory import COLD_START, COMMUNITY, MARK, TrapStory
from harness.traps import Event


class Settings(TrapStory):
    """The array is shared; each test starts its daemons."""

    @classmethod
    def launch(cls):
        cls.array.start(objects=cls.objects())
        machine.write_file("/etc/hosts", machine.read_file("/etc/hosts") + "127.0.0.1 watch.example watcher\n")

    def start(self, **settings):
        values = {"trapsEnabled": "yes", "trapDest": "127.0.0.1", "trapPort": self.receiver.port,
                  "trapCommun": COMMUNITY, "trapVer": self.VERSION, **settings}
        machine.configure_daemon(**values)
        self.daemon.start()

    def tearDown(self):
        self.daemon.stop()

    def test_traps_that_are_not_enabled(self):
        """Objects are remembered all the same; the cold start is not even tried."""
        for word in ("no", "Yes", "yes "):
            self.start(trapsEnabled=word, verbose="yes", sendTestTrap="yes")
            disk = self.array.first("TsDisk")
            self.change("TsDisk", disk, Status="Down")
            self.tell(*[Event((1, 2, 3), 202, int(disk))] * 2)
            self.daemon.wait_for_log("we're not sending out this trap cuz it would be redundant: trapNum: 202")
            self.assertEqual(len(self.daemon.lines_with("Traps are disabled")), 2)
            self.assertEqual(self.daemon.lines_with("coldstart"), [])
            self.change("TsDisk", disk, Status="Up")
            self.daemon.stop()
        self.assertTrue(self.receiver.is_empty())

    def test_a_sender_in_the_middle_of_a_frame_does_not_hold_up_the_end(self):
        self.start()
        self.expect(COLD_START)
        with management.Sender() as sender:
            sender.send(management.trap(MARK.command()), management.trap(MARK.command())[:-1])
            self.expect(MARK)
            self.daemon.stop()
            sender.wait_until_dropped()

    def test_destinations_by_name(self):
        for name in ("localhost", "watcher"):
            self.start(trapDest=name)
            self.expect(COLD_START)
            self.daemon.stop()

    def test_nobody_listens_at_the_destination(self):
        """What cannot be delivered is lost, and what comes later arrives."""
        self.start()
        self.expect(COLD_START)
        self.receiver.close()
        self.tell(*[MARK] * 3, Event((1, 2, 3), 999))
        self.daemon.wait_for_log("unknown trapNum passed fron lumivant-app: 999")
        type(self).receiver = Receiver(self.LISTEN, self.receiver.port)
        self.tell_and_expect(MARK)
        self.assertTrue(self.receiver.is_empty())


if __name__ == "__main__":
    story.tell()
