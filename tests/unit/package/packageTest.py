"""The library as another program gets it: installed, found, linked, and run before a peer.

packageTest.py BUILD [unittest arguments]
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import apiPeer

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "../../.."))
sys.path.insert(0, ROOT)
from codegen.model import catalogueReader  # noqa: E402  (found through the line above)
from codegen.reader import Data  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = ("share", "doc", "tesseraApi", "examples")

GOOD = "<ApiMethodReturn><Successful>True</Successful></ApiMethodReturn>"
DISKS = ("<ReturnObjectArray><TsDisk><InstanceId>64702.17</InstanceId><Name>01-17</Name><Size>3221225472</Size>"
         "<StatusMessage>pulled</StatusMessage></TsDisk>"
         "<TsToaster><Name>of another release</Name></TsToaster>"
         "<TsDisk><InstanceId>64702.18</InstanceId><Name>01-18</Name><Size>2</Size></TsDisk></ReturnObjectArray>")
ENCLOSURE = "<ReturnObject><TsEnclosure><InstanceName>Enclosure 4</InstanceName></TsEnclosure></ReturnObject>"


def run(*command, check=True):
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if check and result.returncode != 0:
        raise AssertionError(f"{' '.join(command)} ended with {result.returncode}:\n{result.stdout}{result.stderr}")
    return result


def answer(document):
    if "<Command>GetList</Command>" in document:
        return f"<lumapi>{GOOD}{DISKS}</lumapi>"
    return f"<lumapi>{GOOD}{ENCLOSURE if '64702.17' in document else '<ReturnObjectArray />'}</lumapi>"


class Package(unittest.TestCase):
    build = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="apiPackage")
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.prefix = cls.path("prefix")
        cls.socket = cls.path("api.sock")
        run("cmake", "--install", cls.build, "--component", "api_library", "--prefix", cls.prefix)
        cls.example = cls.compile(os.path.join(cls.prefix, *EXAMPLES, "listDisks"), "listDisks")

    @classmethod
    def path(cls, *names):
        return os.path.join(cls.folder, *names)

    @classmethod
    def compile(cls, source, program, *options):
        """Builds a project that knows of the package nothing but its prefix; returns the program's path."""
        build = cls.path("build-" + program)
        run("cmake", "-G", "Ninja", "-S", source, "-B", build, f"-DCMAKE_PREFIX_PATH={cls.prefix}",
            "-DCMAKE_BUILD_TYPE=Debug", *options)
        run("cmake", "--build", build)
        return os.path.join(build, program)

    def run_example(self, key="KEY"):
        result = run(self.example, "Down", self.socket, key, check=False)
        return result.returncode, result.stdout, result.stderr

    def test_the_example_lists_disks_with_their_enclosures(self):
        with apiPeer.Peer(self.socket, answer) as peer:
            status, output, errors = self.run_example()
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(output, "01-17  1.50 TB  pulled  Enclosure 4\n01-18  1 KB    no enclosure\n")
        self.assertIn("<sessionkey>KEY</sessionkey>", peer.requests[0])
        self.assertIn("<Filter>and Status = Down-</Filter>", peer.requests[0])
        self.assertEqual(len(peer.requests), 3)

    def test_the_example_says_what_went_wrong(self):
        refusal = ("<lumapi><ApiMethodReturn><Successful>False</Successful><ErrorCode>UserPrivilegeError</ErrorCode>"
                   "<Error>not for you</Error></ApiMethodReturn></lumapi>")
        with apiPeer.Peer(self.socket, lambda document: refusal):
            self.assertEqual(self.run_example(), (1, "", "listDisks: GetList: UserPrivilegeError: not for you\n"))
        status, output, errors = self.run_example()
        self.assertEqual((status, output), (1, ""))
        self.assertIn(self.socket, errors)
        self.assertIn("Session identifier not specified", self.run_example(key="")[2])

    def test_all_classes_reach_a_program_through_its_own_library(self):
        """Every installed header compiles by itself, too."""
        include = os.path.join(self.prefix, "include", "tesseraApi")
        units = self.path("units")
        os.mkdir(units)
        headers = [os.path.relpath(os.path.join(folder, name), include)
                   for folder, _, names in os.walk(include) for name in names]
        self.assertIn("apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h", headers)
        # Each is the first of a unit, so that none leans on what stands before it; those of the objects are all made
        # by one generator, and are included one behind the other.
        for header in headers:
            if not header.endswith(".pb.h") and "/tessera/src/apiT" not in header:
                with open(os.path.join(units, header.replace("/", "_") + ".cpp"), "w", encoding="utf-8") as file:
                    file.write(f'#include "{header}"\n#include "{header}"\n')
        with open(os.path.join(units, "objects.cpp"), "w", encoding="utf-8") as file:
            file.writelines(f'#include "{header}"\n' for header in headers)
        consumer = self.compile(os.path.join(HERE, "consumer"), "consumer", f"-DHEADER_UNITS={units}")
        catalogue, _ = catalogueReader.read(Data(os.path.join(ROOT, "data")))
        methods = sum(len(each.commands) for each in catalogue.objects)
        # The status record of an answer is an object, too.
        expected = f"{len(catalogue.objects) + 1} {methods} {len(catalogue.method_objects)}\n"
        self.assertEqual(run(consumer).stdout, expected)


if __name__ == "__main__":
    Package.build = sys.argv.pop(1)
    unittest.main(verbosity=2)
