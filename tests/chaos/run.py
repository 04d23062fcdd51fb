"""A chaos run in the sandbox, started by scripts/chaos."""

import argparse
import os
import random
import sys
import time

sys.path[:0] = [os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", *more) for more in ((), ("system",))]
from harness import daemon, machine, waiting, wallClock  # noqa: E402  (found through the line above)
from chaos import clients, plan  # noqa: E402
from chaos.changes import Changes  # noqa: E402
from chaos.director import Director  # noqa: E402
from chaos.report import Report  # noqa: E402
from chaos.testbed import Testbed  # noqa: E402

START_S = 5
WARM_UP_S = 22  # so that the first daemon is sampled before the first fault
SETTLE_S = 12  # so that waiting events are reported and the last daemon is sampled


def options():
    parser = argparse.ArgumentParser(prog="scripts/chaos", description="Runs the whole system under random faults.")
    parser.add_argument("--minutes", type=float, default=10, help="how long it lasts (default: 10)")
    parser.add_argument("--seed", type=int, help="the same seed gives the same faults in the same order")
    parser.add_argument("--preset", choices=("small", "typical"), default="small", help="the array (default: small)")
    parser.add_argument("--only", default="", metavar="TEXT", help="only faults whose names contain this")
    return parser.parse_args()


def say(text):
    print(f"\n-- {text}", flush=True)


class Run:
    def __init__(self, minutes, seed, preset, only=""):
        self.seconds, self.only = minutes * 60, only
        self.seed = random.randrange(10**6) if seed is None else seed
        self.preset = preset
        self.testbed = Testbed(self.seed, preset)
        self.began = time.monotonic()

    def say_fault(self, planned, disturbance, outcome):
        number = len(self.testbed.timeline.disturbances)
        affected = "" if self.testbed.affected is None else f"; exchanges affected: {self.testbed.affected}"
        print(f"   {number:3}  {disturbance.begin - self.began:7.1f} s  {planned.seconds:4.1f} s  {outcome:>10}  "
              f"{planned.text()}{affected}", flush=True)

    def run(self):
        """Runs everything and returns the exit status."""
        say(f"chaos with seed {self.seed}: {self.seconds:.0f} s, array '{self.preset}'; to repeat: "
            f"scripts/chaos --minutes {self.seconds / 60:g} --seed {self.seed} --preset {self.preset}" +
            (f" --only '{self.only}'" if self.only else ""))
        try:
            self.testbed.start()
            print(f"   the daemon serves after {time.monotonic() - self.began:.1f} s; notifications of version "
                  f"{self.testbed.version}; its clock {'can' if wallClock.CAN_BE_SET else 'cannot'} be set", flush=True)
            self.run_faults()
            self.testbed.stopping.set()
            for thread in self.threads:
                thread.join(60)
            report = Report(self.testbed, self.began)
            is_good = report.show()
        except BaseException:
            print(f"\n-- the end of the daemon's log\n{daemon.Daemon.log_tail(30)}", flush=True)
            raise
        finally:
            self.testbed.stop()
        if not is_good:
            print(f"\n-- the end of the daemon's log\n{daemon.Daemon.log_tail(30)}")
        say("no problems" if is_good else f"FAILED; seed {self.seed}")
        return 0 if is_good else 1

    def run_faults(self):
        self.threads = [*clients.create_clients(self.testbed, self.seed), Changes(self.testbed, self.seed)]
        for thread in self.threads:
            thread.start()
        end = self.began + self.seconds - SETTLE_S
        time.sleep(WARM_UP_S * waiting.PATIENCE)
        # Not the remaining time, because the same seed must give the same faults.
        planned = plan.make(self.seed, self.seconds - START_S - WARM_UP_S - SETTLE_S, wallClock.CAN_BE_SET,
                            self.only)
        director = Director(self.testbed, planned, self.say_fault)
        say("the faults\n    no.     begins   lasts  well again  fault")
        director.run(end)
        left = 0 if self.testbed.failures else self.began + self.seconds - time.monotonic()
        time.sleep(max(left, SETTLE_S * waiting.PATIENCE))


def main():
    machine.require_sandbox("namespaces", "user")  # it mounts
    chosen = options()
    return Run(chosen.minutes, chosen.seed, chosen.preset, chosen.only).run()


if __name__ == "__main__":
    status = main()
    sys.stdout.flush()
    os._exit(status)  # without joining threads that wait for datagrams
