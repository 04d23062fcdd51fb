"""The real Zabbix server of Debian 12 with its database and its API, which the frontend's PHP files serve."""

import gzip
import json
import os
import shutil
import subprocess
import urllib.request

from . import machine, waiting

HOME = "/tmp/monitors/zabbix"
SCHEMA = "/usr/share/zabbix-server-pgsql"
FRONTEND = "/usr/share/zabbix"
POSTGRES = "/usr/lib/postgresql/15/bin"
TRAPS = os.path.join(HOME, "traps.log")
API = "127.0.0.1:8880"
PROGRAMS = ("/usr/sbin/zabbix_server", "/usr/bin/php", f"{POSTGRES}/initdb", f"{FRONTEND}/api_jsonrpc.php")
LOG = os.path.join(HOME, "server.log")
SERVER_CONF = f"""\
DBHost={HOME}
DBName=postgres
DBUser=postgres
LogFile={LOG}
PidFile={HOME}/server.pid
SocketDir={HOME}
SNMPTrapperFile={TRAPS}
StartSNMPTrapper=1
CacheUpdateFrequency=1
StartPollers=4
Timeout=30
AllowRoot=1
"""
FRONTEND_CONF = f"""\
<?php
$DB = ['TYPE' => 'POSTGRESQL', 'SERVER' => '{HOME}', 'PORT' => '0', 'DATABASE' => 'postgres', 'USER' => 'postgres',
  'PASSWORD' => '', 'SCHEMA' => '', 'ENCRYPTION' => false, 'VAULT_URL' => '', 'DOUBLE_IEEE754' => true];
"""


def missing():
    """Returns the programs that are not installed."""
    return [path for path in PROGRAMS if not os.path.exists(path)]


def as_postgres(*command):
    return ["setpriv", "--reuid=postgres", "--regid=postgres", "--clear-groups", *command]


class Zabbix:
    def __init__(self):
        self.processes, self.token = [], None

    def start(self):
        os.makedirs(HOME)
        os.chmod(HOME, 0o755)
        shutil.chown(HOME, "postgres")
        self.start_database()
        machine.write_file(TRAPS, "")
        machine.write_file(f"{HOME}/server.conf", SERVER_CONF)
        self.spawn("zabbix_server", "--foreground", "--config", f"{HOME}/server.conf")
        machine.write_file("/etc/zabbix/zabbix.conf.php", FRONTEND_CONF)
        self.spawn("php", "-S", API, "-t", FRONTEND)
        waiting.wait_until(self.log_in, "Zabbix responds", 60)
        return self

    def spawn(self, *command):
        with open(f"{HOME}/output", "ab") as output:
            self.processes.append(subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=output))

    def start_database(self):
        data = f"{HOME}/data"
        machine.run(*as_postgres(f"{POSTGRES}/initdb", "-D", data, "-A", "trust", "-N", "-E", "UTF8",
                                 "--locale=C.UTF-8"))
        options = [word for each in ("listen_addresses=", "fsync=off", "full_page_writes=off") for word in ("-c", each)]
        self.spawn(*as_postgres(f"{POSTGRES}/postgres", "-D", data, "-k", HOME, *options))
        psql = ["psql", "-q", "-v", "ON_ERROR_STOP=1", "-h", HOME, "-U", "postgres"]
        waiting.wait_until(lambda: subprocess.run([*psql, "-c", "select 1"], capture_output=True).returncode == 0,
                           "the database responds")
        for name in ("schema", "images", "data"):
            with gzip.open(f"{SCHEMA}/{name}.sql.gz") as script:
                subprocess.run(psql, input=script.read(), stdout=subprocess.DEVNULL, check=True)

    def log_in(self):
        try:
            self.token = self.call("user.login", user="Admin", password="zabbix")
        except OSError:
            return False
        return True

    def call(self, method, *plain, **parameters):
        request = {"jsonrpc": "2.0", "id": 1, "auth": self.token, "method": method,
                   "params": plain[0] if plain else parameters}
        http_request = urllib.request.Request(f"http://{API}/api_jsonrpc.php", json.dumps(request).encode(),
                                          {"Content-Type": "application/json-rpc"})
        with urllib.request.urlopen(http_request, timeout=300 * waiting.PATIENCE) as file:
            response = json.load(file)
        if "error" in response:
            raise AssertionError(f"{method}: {response['error']}")
        return response["result"]

    def close(self):
        for process in reversed(self.processes):
            process.terminate()
            process.wait(30 * waiting.PATIENCE)
