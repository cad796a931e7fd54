#!/usr/bin/python3
"""A small FTP server for the tests: serves a folder on 127.0.0.1 with one user.

    ftp_test_server.py --root DIR --port-file FILE [--user U --password P]
                       [--layout flat|memory] [--hostile-names] [--cut-transfer]
                       [--refuse-login] [--slow SECONDS] [--list-fallback-only]
                       [--names-only]
                       [--lifetime SECONDS] [--host ADDR] [--port N]
                       [--command-log FILE]

The server picks a free port (or takes --port) on --host (default 127.0.0.1, any
loopback address serves) and writes it to --port-file once it listens.
--layout memory makes the folders S000000 (with T000000 under it) and MEMORY in
the root; flat leaves the root as it is. Switches for a hostile server:
  --hostile-names       lists extra names that must never become local files
                        ("../x.FDT", "/etc/S1.FDT", names with control characters)
  --cut-transfer        sends only the first half of every file, then reports success
  --refuse-login        refuses every login
  --slow SECONDS        waits that long before every reply (the greeting too)
  --list-fallback-only  refuses a plain LIST; only "LIST *.FDT" and NLST answer
  --names-only          refuses every LIST; only NLST answers
--command-log appends every command the server receives (but PASS) to FILE, one a
line, so that a test can count what a client asked for.
The server ends by itself after --lifetime seconds (default 120).
"""
import argparse
import fnmatch
import os
import signal
import sys
import threading
import time
from io import BytesIO

from pyftpdlib.authorizers import DummyAuthorizer, AuthenticationFailed
from pyftpdlib.filesystems import AbstractedFS
from pyftpdlib.handlers import BufferedIteratorProducer, FTPHandler, FileProducer
from pyftpdlib.servers import FTPServer

HOSTILE_NAMES = ["../x.FDT", "/etc/S1.FDT", "S\x01CTL.FDT", "S..\\evil.FDT", "C:S2.FDT"]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", required=True)
    parser.add_argument("--port-file", required=True)
    parser.add_argument("--user", default="user")
    parser.add_argument("--password", default="pass")
    parser.add_argument("--layout", choices=["flat", "memory"], default="flat")
    parser.add_argument("--hostile-names", action="store_true")
    parser.add_argument("--cut-transfer", action="store_true")
    parser.add_argument("--refuse-login", action="store_true")
    parser.add_argument("--slow", type=float, default=0.0)
    parser.add_argument("--list-fallback-only", action="store_true")
    parser.add_argument("--names-only", action="store_true")
    parser.add_argument("--lifetime", type=float, default=120.0)
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--command-log", default="")
    args = parser.parse_args()

    root = os.path.abspath(args.root)
    if args.layout == "memory":
        os.makedirs(os.path.join(root, "S000000", "T000000"), exist_ok=True)
        os.makedirs(os.path.join(root, "MEMORY"), exist_ok=True)

    class Authorizer(DummyAuthorizer):
        def validate_authentication(self, username, password, handler):
            if args.refuse_login:
                raise AuthenticationFailed("Login refused.")
            return DummyAuthorizer.validate_authentication(self, username, password, handler)

    authorizer = Authorizer()
    authorizer.add_user(args.user, args.password, root, perm="elradfmwMT")

    class HostileFS(AbstractedFS):
        def format_list(self, basedir, listing, ignore_err=True):
            for line in AbstractedFS.format_list(self, basedir, listing, ignore_err):
                yield line
            if args.hostile_names:
                for name in HOSTILE_NAMES:
                    line = "-rw-r--r--   1 owner    group        2048 Jan 05  2024 %s\r\n" % name
                    yield line.encode("utf8", self.cmd_channel.unicode_errors)

    class Handler(FTPHandler):
        abstracted_fs = HostileFS
        # The server's list times are the folder's own clock, as a recorder has it.
        use_gmt_times = False

        def respond(self, resp, logfun=None):
            if args.slow > 0:
                time.sleep(args.slow)
            if logfun is None:
                return FTPHandler.respond(self, resp)
            return FTPHandler.respond(self, resp, logfun)

        def pre_process_command(self, line, cmd, arg):
            self._last_arg = arg or ""
            if args.command_log and cmd != "PASS":
                with open(args.command_log, "a", encoding="utf8", errors="replace") as out:
                    out.write(("%s %s" % (cmd, arg or "")).rstrip() + "\n")
            return FTPHandler.pre_process_command(self, line, cmd, arg)

        def _pattern(self):
            words = self._last_arg.split()
            return words[-1] if words and "*" in words[-1] else None

        def _matching(self, pattern):
            folder = self.fs.ftp2fs(self.fs.cwd)
            return folder, sorted(n for n in os.listdir(folder) if fnmatch.fnmatch(n, pattern))

        def ftp_LIST(self, path):
            pattern = self._pattern()
            if args.names_only:
                self.respond("550 LIST not supported here.")
                return None
            if pattern is None:
                if args.list_fallback_only:
                    self.respond("550 LIST not supported here.")
                    return None
                return FTPHandler.ftp_LIST(self, path)
            folder, names = self._matching(pattern)
            producer = BufferedIteratorProducer(self.fs.format_list(folder, names))
            self.push_dtp_data(producer, isproducer=True, cmd="LIST")
            return path

        def ftp_NLST(self, path):
            pattern = self._pattern()
            if pattern is None and not args.hostile_names:
                return FTPHandler.ftp_NLST(self, path)
            if pattern is None:
                folder, names = self.fs.ftp2fs(self.fs.cwd), sorted(os.listdir(self.fs.ftp2fs(self.fs.cwd)))
            else:
                folder, names = self._matching(pattern)
            if args.hostile_names:
                names = names + HOSTILE_NAMES
            data = "".join(n + "\r\n" for n in names)
            self.push_dtp_data(data.encode("utf8", self.unicode_errors), cmd="NLST")
            return path

        def ftp_RETR(self, file):
            if not args.cut_transfer:
                return FTPHandler.ftp_RETR(self, file)
            with open(file, "rb") as source:
                data = source.read()
            half = BytesIO(data[: len(data) // 2])
            producer = FileProducer(half, self._current_type)
            self.push_dtp_data(producer, isproducer=True, file=half, cmd="RETR")
            return file

    Handler.authorizer = authorizer
    Handler.passive_ports = None
    Handler.timeout = 60
    Handler.banner = "test server ready."
    Handler._last_arg = ""

    server = FTPServer((args.host, args.port), Handler)
    port = server.socket.getsockname()[1]
    temp = args.port_file + ".tmp"
    with open(temp, "w") as out:
        out.write("%d\n" % port)
    os.rename(temp, args.port_file)

    def end(*_):
        server.close_all()
        os._exit(0)

    signal.signal(signal.SIGTERM, end)
    timer = threading.Timer(args.lifetime, end)
    timer.daemon = True
    timer.start()
    server.serve_forever(timeout=0.2, blocking=True, handle_exit=True)


if __name__ == "__main__":
    import logging

    logging.basicConfig(level=logging.CRITICAL)
    sys.exit(main())
